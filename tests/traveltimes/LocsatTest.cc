#include <gtest/gtest.h>

#include "krosac/traveltimes/LocsatTTController.h"
#include "krosac/traveltimes/LocsatTTTable.h"
#include "traveltimes/TableFolder.h"

namespace krosac {
namespace {

// Nodes every 5 km and every degree; the time of depth i and distance k is time(i, k).
template <typename Time>
std::string tableText(int depths, int gcarcs, Time time) {
  std::string text = "a table\n";
  const auto addNodes = [&](int count, int step) {
    text += std::to_string(count) + " nodes\n";
    for (int i = 0; i < count; ++i) text += std::to_string(step * i) + (i % 9 == 5 ? '\n' : ' ');
    if (count % 9 != 6) text += '\n';
  };
  addNodes(depths, 5);
  addNodes(gcarcs, 1);
  for (int i = 0; i < depths; ++i) {
    text += "# depth\n";
    for (int k = 0; k < gcarcs; ++k) text += std::to_string(time(i, k)) + " P x 7\n";
  }
  return text;
}

double linear(int i, int k) {
  return 10.0 + 2.0 * k + 0.5 * i;
}

Ref<LocsatTTTable> loaded(const std::string& text) {
  TableFolder folder;
  auto table = make<LocsatTTTable>();
  table->init();
  table->loadTimesFromPath(folder.write("locsat.txt", text));
  return table;
}

void expectAnswer(const LocsatTTTable& table, float gcarc, float depth, double time,
                  double slowness = 2 / 111.19, double derivative = 0.1) {
  SCOPED_TRACE(testing::Message() << gcarc << " degrees, " << depth << " km");
  const auto found = table.GetTTimeSlownessesForGCARC_Depth(gcarc, depth);
  EXPECT_NEAR(found.time, time, 1e-5 * std::abs(time));
  EXPECT_NEAR(found.slowness, time < 0 ? -1 : slowness, 1e-6);
  EXPECT_NEAR(found.depthDerivative, time < 0 ? -1 : derivative, 1e-6);
}

TEST(Locsat, Interpolates) {
  const auto table = loaded(tableText(40, 207, linear));
  ASSERT_TRUE(table->hasTimes());
  expectAnswer(*table, 0, 0, 10);
  expectAnswer(*table, 40, 5, 90.5);
  expectAnswer(*table, -40.5f, -7, 91.7);
  expectAnswer(*table, 206, 195, 441.5);
  expectAnswer(*table, 206.1f, 5, -1);
  expectAnswer(*table, 40, 195.1f, -1);
  expectAnswer(*table, kNaN, 5, -1);
  expectAnswer(*table, 5, kNaN, -1);

  // The slowness takes the upper row's difference with the lower row's weight and the reverse.
  const auto product = loaded(tableText(40, 207, [](int i, int k) { return i * k + 1; }));
  expectAnswer(*product, 0.5f, 9, 1 + 0.5 * 1.8, (1 * 0.8 + 2 * 0.2) / 111.19, 0.5 / 5);

  const auto holed = loaded(
      tableText(40, 207, [](int i, int k) { return i == 3 && k == 50 ? -1 : linear(i, k); }));
  for (const float gcarc : {49.1f, 50.9f}) {
    for (const float depth : {10.1f, 19.9f}) expectAnswer(*holed, gcarc, depth, -1);
  }
  expectAnswer(*holed, 51.5f, 12, 114.2);
}

TEST(Locsat, KeepsTheStrideOfTheFile) {
  const auto table = loaded(tableText(3, 10, linear));
  ASSERT_TRUE(table->hasTimes());
  EXPECT_EQ(table->times()[10], 10.5f);
  EXPECT_EQ(table->times()[30], 0.0f);
  // The last slots are 0, and so nothing positive is inside. The second row is not where the
  // look-up takes it from.
  expectAnswer(*table, 1, 1, -1);
  expectAnswer(*table, 0, 0, 10, 0, -10 / 5.0);
}

TEST(Locsat, RefusesWhatIsNoTable) {
  TableFolder folder;
  const auto whole = tableText(3, 10, linear), cut = whole.substr(0, whole.size() - 20);
  const std::pair<const char*, std::string> cases[] = {
      {"empty", ""},
      {"too many depths", tableText(41, 10, linear)},
      {"too many distances", tableText(3, 208, linear)},
      {"no depths", tableText(0, 10, linear)},
      {"no distances", tableText(3, 0, linear)},
      {"negative count", "x\n-3\n1 2 3\n"},
      {"huge count", "x\n99999999999999999999999\n1 2 3\n"},
      {"cut short", cut},
      {"no number", cut + "\nnone\nnone\n"},
      {"binary", std::string("\0\0\0\n\0\n\xff", 7)},
      {"long first line", std::string(200, 'x') + whole}};
  const auto table = loaded(whole);
  for (const auto& [name, text] : cases) {
    SCOPED_TRACE(name);
    table->setHasTimes(true);
    table->loadTimesFromPath(folder.write("locsat.txt", text));
    EXPECT_FALSE(table->hasTimes());
    EXPECT_EQ(table->times()[10], 10.5f);
  }
  table->setHasTimes(true);
  table->loadTimesFromPath("/no/such/file");
  EXPECT_FALSE(table->hasTimes());
}

TEST(Locsat, ListsValues) {
  const auto table = loaded(tableText(40, 207, linear));
  const auto values = table->listValuesForDistanceFrom_To_Step_SrcDepth(10, 11, 0.1f, 5);
  ASSERT_EQ(values.size(), 11u);
  EXPECT_NEAR(values[10].gcarc, 11, 1e-5);
  EXPECT_NEAR(values[10].time, 32.5, 1e-4);
  EXPECT_NEAR(values[10].slowness, 2 / 111.19, 1e-6);
  EXPECT_NEAR(values[10].depthDerivative, 0.1, 1e-6);
  const struct {
    float from, to, step;
    std::size_t rows;
  } cases[] = {{10, 10, 1, 1},          {10, 12.9f, 1, 3},      {10, 9, 1, 0},
               {10, 12, 0, 0},          {10, 12, -1, 0},        {10, 12, 1e-6f, 0},
               {10, 12, kNaN, 0},       {10, 12, kInfinity, 0}, {10, kInfinity, 1, 0},
               {0, 999999, 1, 1000000}, {0, 1000000, 1, 0},     {kNaN, 5, 1, 0}};
  for (const auto& [from, to, step, rows] : cases) {
    EXPECT_EQ(table->listValuesForDistanceFrom_To_Step_SrcDepth(from, to, step, 5).size(), rows)
        << from << " to " << to << " by " << step;
  }
}

TEST(Locsat, ControllerFindsTheTableOfAPhase) {
  const auto controller = make<LocsatTTController>();
  ASSERT_TRUE(controller->init());
  EXPECT_FALSE(controller->tableForPhase("P"));
  std::vector<Ref<LocsatTTTable>> tables;
  for (const char* phases : {"p", "P, Pn", "P,Pn", "Pn,PKP"}) {
    tables.push_back(make<LocsatTTTable>());
    controller->addTableToList(tables.back());
    EXPECT_FALSE(controller->tableForPhase(phases)) << "tables without phases serve none";
    tables.back()->setPhases(phases);
  }
  controller->addTableToList(nullptr);
  EXPECT_EQ(controller->tables().size(), 4u);
  const std::pair<const char*, int> cases[] = {{"p", 0},   {"P", 1}, {" Pn", 1}, {"Pn", 2},
                                               {"PKP", 3}, {"", -1}, {"PK", -1}, {"P,Pn", -1}};
  for (const auto& [name, index] : cases) {
    EXPECT_EQ(controller->tableForPhase(name), index < 0 ? nullptr : tables[index].get()) << name;
  }
  controller->setTables({nullptr, tables[3]});
  EXPECT_EQ(controller->tableForPhase("Pn"), tables[3]);
}

}  // namespace
}  // namespace krosac
