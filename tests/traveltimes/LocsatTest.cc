#include "krosac/platform/internal/Text.h"
#include "krosac/traveltimes/LocsatTTController.h"
#include "krosac/traveltimes/LocsatTTTable.h"
#include "traveltimes/TableFolder.h"

namespace krosac {
namespace {

double linear(int i, int k) {
  return 10.0 + 2.0 * k + 0.5 * i;
}

// A table with nodes every 5 km and every degree; node (i, k) has the time time(i, k).
std::string tableText(int depths, int gcarcs, double (*time)(int, int) = linear) {
  std::string text = "a table\n";
  for (const auto& [count, step] : {std::pair{depths, 5}, {gcarcs, 1}}) {
    text += std::to_string(count) + " nodes\n";
    for (int i = 0; i < count; ++i) text += std::to_string(step * i) + (i % 9 == 5 ? '\n' : ' ');
    if (count % 9 != 6) text += '\n';
  }
  for (int i = 0; i < depths; ++i) {
    text += "# depth\n";
    for (int k = 0; k < gcarcs; ++k) text += formatText("%f P x 7\n", time(i, k));
  }
  return text;
}

Ref<LocsatTTTable> loaded(const std::string& text) {
  const TableFolder folder;
  auto table = make<LocsatTTTable>();
  table->init();
  table->loadTimesFromPath(folder.write("locsat.txt", text));
  EXPECT_TRUE(table->hasTimes());
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
  const float cases[][3] = {{0, 0, 10},         {40, 5, 90.5f},  {-40.5f, -7, 91.7f},
                            {206, 195, 441.5f}, {206.1f, 5, -1}, {40, 195.1f, -1},
                            {kNaN, 5, -1},      {5, kNaN, -1}};
  const auto table = loaded(tableText(40, 207));
  for (const auto& [gcarc, depth, time] : cases) expectAnswer(*table, gcarc, depth, time);
  // For the slowness, each row's difference has the weight of the other row.
  const auto product = loaded(tableText(40, 207, [](int i, int k) { return i * k + 1.0; }));
  expectAnswer(*product, 0.5f, 9, 1 + 0.5 * 1.8, (1 * 0.8 + 2 * 0.2) / 111.19, 0.5 / 5);
  const auto holed = loaded(
      tableText(40, 207, [](int i, int k) { return i == 3 && k == 50 ? -1 : linear(i, k); }));
  for (const float gcarc : {49.1f, 50.9f})
    for (const float depth : {10.1f, 19.9f}) expectAnswer(*holed, gcarc, depth, -1);
  // The search covers all nodes, also those after a node that is out of order.
  std::string unordered = tableText(40, 207);
  for (const std::string start : {"\n0 5 10", "\n0 1 2"})
    unordered.replace(unordered.find(start + ' '), start.size(), start + "00");
  expectAnswer(*loaded(unordered), 40.5f, 52, 96.2);
}

TEST(Locsat, RefusesMalformedFilesAndKeepsTheOldTimes) {
  const TableFolder folder;
  const auto whole = tableText(3, 10), cut = whole.substr(0, whole.size() - 20);
  const auto table = loaded(whole);
  for (const std::string& text :
       {tableText(41, 10), tableText(3, 208), tableText(0, 10), tableText(3, 0),
        std::string("x\n-3\n1 2 3\n"), std::string("x\n99999999999999999999999\n1 2 3\n"), cut,
        cut + "\nnone\nnone\n", std::string("\0\0\0\n\0\n\xff", 7),
        std::string(200, 'x') + whole}) {
    table->setHasTimes(true);
    table->loadTimesFromPath(folder.write("locsat.txt", text));
    EXPECT_FALSE(table->hasTimes()) << text.substr(0, 30);
  }
  table->loadTimesFromPath("/no/such/file");
  // Rows keep the stride of the file, so the look-up does not find the second one. The last nodes
  // are 0, so only 0 is inside.
  EXPECT_TRUE(table->times()[10] == 10.5f && table->times()[30] == 0.0f);
  expectAnswer(*table, 1, 1, -1);
  expectAnswer(*table, 0, 0, 10, 0, -10 / 5.0);
}

TEST(Locsat, ListsValues) {
  const auto table = loaded(tableText(40, 207));
  const auto last = table->listValuesForDistanceFrom_To_Step_SrcDepth(10, 11, 0.1f, 5).at(10);
  EXPECT_NEAR(last.gcarc, 11, 1e-5);
  expectAnswer(*table, last.gcarc, 5, last.time, last.slowness, last.depthDerivative);
  const float cases[][4] = {{10, 11, 0.1f, 11},      {10, 9, 1, 0},     {10, 12, -1, 0},
                            {10, 12, 1e-6f, 0},      {10, 12, kNaN, 0}, {10, kInfinity, 1, 0},
                            {0, 999999, 1, 1000000}, {0, 1000000, 1, 0}};
  for (const auto& [from, to, step, rows] : cases)
    EXPECT_EQ(table->listValuesForDistanceFrom_To_Step_SrcDepth(from, to, step, 5).size(), rows)
        << from << " to " << to << " by " << step;
}

TEST(Locsat, ControllerFindsTheTableOfAPhase) {
  const auto controller = make<LocsatTTController>();
  ASSERT_TRUE(controller->init());
  std::vector<Ref<LocsatTTTable>> tables;
  for (const char* phases : {"P, Pn", "P,Pn", "Pn,PKP"}) {
    tables.push_back(make<LocsatTTTable>());
    controller->addTableToList(tables.back());
    EXPECT_FALSE(controller->tableForPhase("PKP")) << "tables without phases serve none";
    tables.back()->setPhases(phases);
  }
  controller->addTableToList(nullptr);
  EXPECT_EQ(controller->tables().size(), 3u);
  for (const auto& [name, i] : {std::pair{"P", 0}, {" Pn", 0}, {"Pn", 1}, {"PKP", 2}})
    EXPECT_EQ(controller->tableForPhase(name), tables[i]) << name;
  for (const char* name : {"", "p", "PK", "P,Pn"})
    EXPECT_FALSE(controller->tableForPhase(name)) << name;
  controller->setTables({nullptr, tables[2]});
  EXPECT_EQ(controller->tableForPhase("Pn"), tables[2]);
}

}  // namespace
}  // namespace krosac
