// A null input is refused as bad input is; a null output is skipped.
#include "krosac/traveltimes/JBTables.h"
#include "krosac/traveltimes/PsNMOTables.h"
#include "krosac/traveltimes/TTTables.h"
#include "traveltimes/TableFolder.h"

namespace krosac {
namespace {

TEST(NullPointers, InTravelTimes) {
  std::vector<float> p(118 * 14), s(120 * 14), table(360 * 18);
  std::vector<PsNMO> curves(210);
  std::int32_t rows = -7;
  ReadJBTables(nullptr, s.data());
  ReadJBTables(p.data(), nullptr);
  EXPECT_TRUE(p.back() > 0 && s.back() > p.back()) << "the blocks are still told apart";
  ReadPsDelayTable("PsNMO", nullptr, &rows);
  EXPECT_EQ(rows, 209);
  ReadPsDelayTable("PsNMO", curves.data(), nullptr);
  EXPECT_EQ(curves[209].gcarc, 95);
  ReadJBTablePhase("pp", nullptr, &rows);
  EXPECT_EQ(rows, 181);
  ReadJBTablePhase("pp", table.data(), nullptr);
  EXPECT_GT(table[180 * 13], 0);
  ReadTTTablePhase("iasp91_", "s", nullptr, &rows);
  EXPECT_EQ(rows, 144);
  ReadTTTablePhase("iasp91_", "p", table.data(), nullptr);

  float t[4];
  for (int missing = 0; missing < 4; ++missing) {
    float* out[] = {t, t + 1, t + 2, t + 3};
    out[missing] = nullptr;
    std::fill(t, t + 4, -7.0f);
    GetJBTimes(p.data(), s.data(), out[0], out[1], out[2], out[3], 50, 10);
    for (int i = 0; i < 4; ++i) EXPECT_EQ(t[i] > 0, i != missing) << i;
    std::fill(t, t + 4, -7.0f);
    GetTTTimeSlownesses(nullptr, table.data(), 144, out[0], out[1], out[2], 50, 10);
    for (int i = 0; i < 3; ++i) EXPECT_EQ(t[i] != -7, i != missing) << i;
    GetTTTimeSlowness(nullptr, table.data(), 144, out[0], out[1], 50, 10);
    GetJBTimeSlowness(nullptr, table.data(), 144, out[0], out[1], 50, 10);
  }
  GetJBTimes(nullptr, s.data(), t, t + 1, t + 2, t + 3, 50, 10);
  EXPECT_EQ((std::vector<float>(t, t + 4)), std::vector<float>(4, kNone));
  GetTTTimeSlownesses(nullptr, nullptr, 144, t, t + 1, t + 2, 0, 0);
  GetJBTimeSlowness(nullptr, nullptr, 144, t + 2, t + 3, 0, 0);
  EXPECT_EQ((std::vector<float>(t, t + 4)), std::vector<float>(4, kNone));
}

}  // namespace
}  // namespace krosac
