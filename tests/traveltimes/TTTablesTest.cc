#include "krosac/traveltimes/TTTables.h"

#include "krosac/traveltimes/TTTableObject.h"
#include "traveltimes/TableFolder.h"

namespace krosac {
namespace {

SeismicPhaseTimeSlowness lookUp(const std::vector<float>& table, std::int32_t rows, float gcarc,
                                float depth) {
  SeismicPhaseTimeSlowness all;
  GetTTTimeSlownesses("p", table.data(), rows, &all.time, &all.slowness, &all.depthDerivative,
                      gcarc, depth);
  return all;
}

TEST(TTTables, Interpolates) {
  // Interpolation reproduces times that are linear: 100 + 10 gcarc + depth / 4.
  std::vector<float> table;
  for (float row = 0; row < 10; ++row)
    for (const float z :
         {0, 25, 50, 100, 150, 200, 250, 300, 350, 400, 450, 500, 550, 600, 650, 700, 750, 800})
      table.push_back(100 + 10 * row + z / 4);
  const float cases[][4] = {
      {10, 0, 0, 100.026f},   {10, 0.5f, 25, 111.25f},    {10, -3, 30, 137.5f},
      {10, 8.5f, 800, 385},   {10, 8.5f, 801, 384.875f},  {10, 8.5f, -1, 185.025f},
      {10, 9, 100, 215},      {10, 9.1f, 100, kNone},     {10, 1e30f, 100, kNone},
      {10, kNaN, 100, kNone}, {10, 5, kNaN, kNone},       {1, 0.5f, 0, kNone},
      {0, 0.5f, 0, 105.025f}, {-1e9f, 0.5f, 0, 105.025f}, {10, 9, 5, 191.25f}};
  for (const auto& [rows, gcarc, depth, time] : cases) {
    SCOPED_TRACE(testing::Message() << rows << " rows, " << gcarc << ", " << depth);
    const auto found = lookUp(table, int(rows), gcarc, depth);
    EXPECT_NEAR(found.time, time, 1e-4);
    EXPECT_NEAR(found.slowness, time == kNone ? kNone : 10 / 111.19f, 1e-6);
    EXPECT_NEAR(found.depthDerivative, time == kNone ? kNone : 0.25f, 1e-6);
  }
  for (float depth = 5; depth < 800; depth += 10)
    EXPECT_NEAR(lookUp(table, 10, 3, depth).time, 130 + depth / 4, 1e-4) << depth;
}

TEST(TTTables, SlownessOfTheDeeperOrOfBothColumns) {
  std::vector<float> table(3 * 18);
  table[0] = 1, table[1] = 2, table[18] = 5, table[19] = 12;
  float time, slowness;
  GetTTTimeSlowness("p", table.data(), 3, &time, &slowness, 0.5f, 12.5f);
  const auto both = lookUp(table, 3, 0.5f, 12.5f);
  EXPECT_NEAR(time, 5, 1e-6);
  EXPECT_EQ(time, both.time);
  EXPECT_NEAR(slowness, 10 / 111.19, 1e-7);
  EXPECT_NEAR(both.slowness, 7 / 111.19, 1e-7);
  EXPECT_NEAR(both.depthDerivative, 4 / 25.0, 1e-7);
  for (const std::size_t node : {0u, 1u, 18u, 19u}) {
    auto absent = table;
    absent[node] = -1;
    EXPECT_EQ(lookUp(absent, 3, 0.0f, 0.0f).time, kNone) << "one is enough: " << node;
  }
}

TEST(TTTableObject, ReadsEachTableUpToItsCapacity) {
  const TableFolder folder;
  const std::pair<std::string, int> capacities[] = {
      {"p", 145},     {"s", 144},     {"pcp", 99},    {"scs", 100},   {"pcs", 63},
      {"scp", 63},    {"pp", 339},    {"ss", 337},    {"sp", 277},    {"ps", 277},
      {"sksac", 145}, {"sksdf", 257}, {"pkpab", 217}, {"pkpdf", 248}, {"pkikp", 360},
      {"lpp", 107},   {"lss", 107},   {"lps", 107},   {"lsp", 107}};
  for (int place = 0; place < 19; ++place) {
    std::string text;
    for (int row = 0; row < 400; ++row) {
      for (int column = 0; column < 19; ++column) text += std::to_string(1000 * place + row) + ' ';
      text += '\n';
    }
    folder.write("iasp91_" + capacities[place].first + ".txt", text);
  }
  const auto object = make<TTTableObject>();
  ASSERT_TRUE(object->init());
  for (int place = 0; place < 19; ++place) {
    const auto& [phase, rows] = capacities[place];
    const std::string key = phase == "pkikp" ? "PKLiKP" : phase;
    // P has the row count of S.
    const float last = float(phase == "p" ? 144 : rows) - 1;
    for (const float gcarc : {0.5f, last - 0.5f, last + 0.5f})
      EXPECT_NEAR(object->GetTTPhase_GCARC_Depth(key, gcarc, 0).time,
                  gcarc > last ? kNone : 1000 * place + gcarc, 0.02)
          << phase;
  }
  std::vector<float> whole(360 * 18);
  std::int32_t rows = 0;
  ReadTTTablePhase("IASP91_", "P", whole.data(), &rows);
  EXPECT_TRUE(rows == 360 && object->np() == 145);
  EXPECT_EQ(printedBy([&] { ReadTTTablePhase("iasp91_", nullptr, whole.data(), &rows); }),
            "|Sorry, can't open the Travel Time Table file.\n");
  for (const char* name : {"pkikp", "", "ppp", "sksacxxxxx", "pklikpab", " p"}) {
    EXPECT_EQ(object->GetTTPhase_GCARC_Depth(name, 50, 0).time, kNone) << name;
    EXPECT_EQ(object->GetTTimeSlownessesForPhase_GCARC_Depth(name, 50, 0).time, kNone) << name;
  }
}

}  // namespace
}  // namespace krosac
