#include "krosac/traveltimes/JBTables.h"

#include <gmock/gmock.h>

#include "krosac/traveltimes/JBTableObject.h"
#include "traveltimes/TableFolder.h"

namespace krosac {
namespace {

constexpr float kDepths[] = {0, 33, 63, 127, 190, 254, 317, 380, 444, 507, 570, 634, 697, 761};
constexpr float kPhaseDepths[] = {0, 25, 65, 130, 191, 256, 322, 387, 453, 518, 584, 650, 715};
constexpr float kSlow = 10 / 111.19f;

// Where the times are 100 + 10 degrees + depth / 4, interpolation gives them back.
TEST(JBTables, InterpolatesPAndS) {
  std::vector<float> table;
  for (float row = 0; row < 120; ++row)
    for (const float z : kDepths)
      table.push_back(100 + (row <= 20 ? 5 * row : 10 * row - 100) + z / 4);
  // Rows are half a degree apart up to 10 degrees, where the slowness is no longer doubled; the
  // bracket from 10 to 11 degrees is taken as half a degree wide.
  const float cases[][4] = {
      {0, 0, 100.026f, kSlow},     {9.9f, 100, 224, kSlow},         {-1, 40, 100, kSlow},
      {10, 40, 210, kSlow / 2},    {10.25f, 40, 215, kSlow},        {11, 40, 230, kSlow},
      {11.5f, 33, 223.25f, kSlow}, {60, kInfinity, 890.25f, kSlow}, {50, kNaN, kNone, kNone},
      {107, -5, 1170.025f, kSlow}, {107.9f, 0, 1179.025f, kSlow},   {108, 0, kNone, kNone},
      {kNaN, 0, kNone, kNone},     {-kInfinity, 0, kNone, kNone}};
  for (const auto& [gcarc, depth, time, slowness] : cases) {
    SCOPED_TRACE(testing::Message() << gcarc << " degrees, " << depth << " km");
    SeismicPhase p, s;
    GetJBTimes(table.data(), table.data(), &p.time, &s.time, &p.slowness, &s.slowness, gcarc,
               depth);
    EXPECT_NEAR(s.time, time, 3e-4);  // floats of 1000 s are 1e-4 s apart
    EXPECT_NEAR(s.slowness, slowness, 1e-6);
    EXPECT_EQ(p.time, gcarc > 107 ? kNone : s.time) << "P has two rows less";
    EXPECT_EQ(p.slowness, gcarc > 107 ? kNone : s.slowness);
  }
  for (float depth = 5, time, other; depth < 761; depth += 10) {
    GetJBTimes(table.data(), table.data(), &time, &other, &other, &other, 60, depth);
    EXPECT_NEAR(time, 700 + depth / 4, 3e-4) << depth;
  }
}

TEST(JBTables, InterpolatesPhaseTables) {
  std::vector<float> table;
  for (float row = 0; row < 181; ++row)
    for (const float z : kPhaseDepths) table.push_back(100 + 10 * row + z / 4);
  const float cases[][4] = {
      {101, 0, 0, 100.026f},   {101, 99.9f, 800, 1277.725f}, {101, 100, 0, 1100.025f},
      {101, 100.1f, 0, kNone}, {181, 180, 0, 1900.024f},     {101, -1, 0, 90.025f},
      {101, 50, kNaN, kNone},  {0, 0.5f, 0, 105.025f},       {2e9f, 2e9f, 0, kNone}};
  float time, slowness;
  for (const auto& [rows, gcarc, depth, expected] : cases) {
    GetJBTimeSlowness("pp", table.data(), int(rows), &time, &slowness, gcarc, depth);
    EXPECT_NEAR(time, expected, 3e-4) << rows << " rows, " << gcarc << " degrees";
    EXPECT_NEAR(slowness, expected == kNone ? kNone : kSlow, 1e-6);
  }
  for (float depth = 5; depth < 715; depth += 10) {
    GetJBTimeSlowness("pp", table.data(), 101, &time, &slowness, 3, depth);
    EXPECT_NEAR(time, 130 + depth / 4, 3e-4) << depth;
  }
  table[1] -= 7;
  GetJBTimeSlowness("pp", table.data(), 2, &time, &slowness, 0.5f, 0.0f);
  EXPECT_NEAR(slowness, 17 / 111.19, 1e-7) << "that of the deeper column";
}

std::string numbers(int count, int from = 0) {
  std::string text;
  for (int i = 0; i < count; ++i) text += std::to_string(from + i) + (i % 14 == 13 ? '\n' : ' ');
  return text;
}

TEST(JBTables, ReadsTheMainFile) {
  const TableFolder folder;
  const std::string header = "1\n2\n3\n4\n", p = numbers(1652), s = numbers(1680, 10000);
  // Of 79 characters, the longest that counts as one line, and of 80, which counts as two.
  const std::string one(78, '1'), two(79, '1');
  const std::tuple<std::string, int, int> cases[] = {
      {one + "\n" + one + "\n" + two + "\n" + p + "S\n" + s + "5", 1652, 1680},
      {header + numbers(1651) + "1651 77 88\nS 5\n" + s, 1652, 1680},
      {header + p + "S\n" + numbers(20, 10000), 1652, 20},
      {header + numbers(100) + "?\n" + s + s, 100, 0}};
  for (const auto& [text, pRead, sRead] : cases) {
    folder.write("jbtables.txt", text);
    std::vector<float> tp(1653, -7), ts(1681, -7);
    ReadJBTables(tp.data(), ts.data());
    for (int i = 0; i < 1653; ++i) ASSERT_EQ(tp[i], i < pRead ? i : -7) << text.substr(0, 9);
    for (int i = 0; i < 1681; ++i) ASSERT_EQ(ts[i], i < sRead ? 10000 + i : -7);
  }
}

TEST(JBTables, ReadCompleteRowsUpToTheirCapacity) {
  const TableFolder folder;
  for (const auto& [count, expected] : {std::pair{2 * 14 + 13, 2}, {400 * 14, 360}}) {
    folder.write("own.txt", numbers(count) + "?" + numbers(14));
    std::vector<float> table(360 * 13 + 1, -7);
    std::int32_t rows = -1;
    ReadJBTablePhase("OWN", table.data(), &rows);
    EXPECT_TRUE(rows == expected && table[std::size_t(rows) * 13] == -7) << expected << " " << rows;
  }
  const std::string phases[] = {"p", "s", "pcp", "scs", "pp", "ss"};
  for (int i = 2; i < 6; ++i) folder.write(phases[i] + ".txt", numbers(400 * 14, 10000 * i));
  folder.write("jbtables.txt", "\n\n\n\n" + numbers(1652) + "\n\n" + numbers(1680, 10000));
  const auto tables = make<JBTableObject>(), unloaded = make<JBTableObject>();
  ASSERT_TRUE(tables->init());
  EXPECT_EQ((std::array{tables->npcp(), tables->nscs(), tables->npp(), tables->nss()}),
            (std::array{101, 101, 211, 215}));
  for (int i = 0; i < 6; ++i) {  // distances are left out of the latter
    EXPECT_NEAR(tables->GetJBPhase_GCARC_Depth(phases[i], 0, 0).time, 10000 * i + (i > 1), 0.1);
    EXPECT_EQ(unloaded->GetJBPhase_GCARC_Depth(phases[i], 50, 10).time, 0);
  }
  EXPECT_EQ(tables->GetJBPhase_GCARC_Depth("sp", 50, 10).time, kNone);
}

TEST(JBTables, SayWhenAFileCannotBeOpened) {
  float untouched = -7;
  std::int32_t rows = 5;
  const std::string said = "|Sorry, can't open the JB Tables file.\n", longName(5000, 'p');
  for (const char* phase : {"no-such-phase", "../..", longName.c_str(), (const char*)nullptr})
    EXPECT_EQ(printedBy([&] { ReadJBTablePhase(phase, &untouched, &rows); }), said);
  EXPECT_TRUE(rows == 5 && untouched == -7);
}

}  // namespace
}  // namespace krosac
