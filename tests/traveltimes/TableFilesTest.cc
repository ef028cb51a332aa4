// What lastReason() reports of table files.
#include <gmock/gmock.h>

#include "krosac/platform/LastReason.h"
#include "krosac/traveltimes/JBTableObject.h"
#include "krosac/traveltimes/JBTables.h"
#include "krosac/traveltimes/LocsatTTTable.h"
#include "krosac/traveltimes/PsNMOTableObject.h"
#include "krosac/traveltimes/TTTableObject.h"
#include "krosac/traveltimes/TTTables.h"
#include "traveltimes/TableFolder.h"

namespace krosac {
namespace {

using testing::EndsWith;
using testing::HasSubstr;

std::string rows(int count) {
  std::string text;
  for (int i = 0; i < count; ++i) text += "0 1 2 3 4 5 6 7 8 9 10 11 12 13\n";
  return text;
}

TEST(TableFiles, ReasonsOfDamage) {
  const TableFolder folder;
  const auto locsat = make<LocsatTTTable>();
  std::vector<float> p(360 * 18), s(120 * 14);
  std::int32_t n;
  const auto readJB = [&] { ReadJBTables(p.data(), s.data()); };
  const auto readPhase = [&] { ReadJBTablePhase("PP", p.data(), &n); };
  const auto readTT = [&] { ReadTTTablePhase("iasp91_", "p", p.data(), &n); };
  const auto readPs = [&] { ReadPsDelayTable("PsNMO", nullptr, &n); };
  const auto readLocsat = [&] { locsat->loadTimesFromPath(folder.path("own.txt")); };
  const std::string title = "1\n2\n3\n4\n", nodes = "title\n2\n0 5\n3\n0 1\n2\n";
  struct Case {
    std::function<void()> read;
    std::string file, text, reason;
  };
  const Case cases[] = {
      {readJB, "jbtables.txt", title + rows(118) + "S\n" + rows(120), ""},
      {readJB, "jbtables.txt", title + rows(100) + "1 2\n3 x\n",
       ", line 106: 1652 P times needed, 1403 found"},
      {readJB, "jbtables.txt", title + rows(118) + "S\n" + rows(9),
       ", line 133: 1680 S times needed, 126 found"},
      {readPhase, "pp.txt", rows(3), ""},
      {readPhase, "pp.txt", rows(400), ""},
      {readPhase, "pp.txt", "", ", line 1: 14 numbers in a row needed, 0 found"},
      {readPhase, "pp.txt", rows(5000) + "5", ""},
      {readPhase, "pp.txt", rows(7) + "5 6 7\n", ", line 9: 14 numbers in a row needed, 3 found"},
      {readPhase, "pp.txt", rows(7) + "\n?" + rows(1),
       ", line 9: 14 numbers in a row needed, 0 found"},
      {readTT, "iasp91_p.txt", rows(300), ", line 301: 19 numbers in a row needed, 1 found"},
      {readPs, "PsNMO.txt", "> 0 30 500 0.06\n0 0 0\n10 1 0\n>",
       ", line 4: 210 curves needed, 1 found"},
      {readLocsat, "own.txt", nodes + "d\n1\n2\n3\nd\n4\n5\n6\n", ""},
      {readLocsat, "own.txt", "title\n41\n", ", line 2: number of depths from 1 to 40 needed"},
      {readLocsat, "own.txt", "title\n3\n1 2\nx\n", ", line 4: 3 depths needed, 2 found"},
      {readLocsat, "own.txt", nodes + "d\n1\n2\n3\nd\n4\nP\n",
       ", line 13: 6 times needed, 4 found"},
  };
  for (const auto& [read, file, text, reason] : cases) {
    const std::string path = folder.write(file, text);
    read();
    EXPECT_EQ(lastReason(), reason.empty() ? "" : path + reason);
  }
}

TEST(TableFiles, ReasonsOfFilesThatCannotBeOpened) {
  const TableFolder folder;
  std::int32_t n;
  const auto locsat = make<LocsatTTTable>();
  locsat->loadTimesFromPath("/no/such/file");
  EXPECT_STREQ(lastReason(), "/no/such/file: No such file or directory");
  locsat->loadTimesFromPath(folder.path());
  EXPECT_EQ(lastReason(), folder.path() + ": is a folder");
  EXPECT_EQ(printedBy([&] { ReadJBTablePhase("none", nullptr, &n); }),
            "|Sorry, can't open the JB Tables file.\n");
  EXPECT_THAT(lastReason(), HasSubstr("none.txt"));
}

TEST(TableFiles, ReasonsOfObjects) {
  const TableFolder folder;
  // PP alone lies in this folder; the others are those of the library.
  const std::string path = folder.write("pp.txt", rows(3));
  make<JBTableObject>()->init();
  EXPECT_THAT(lastReason(), HasSubstr("different folders"));
  EXPECT_THAT(lastReason(), HasSubstr(folder.path()));
  folder.write("pp.txt", rows(3) + "7");
  make<JBTableObject>()->init();
  EXPECT_EQ(lastReason(), path + ", line 4: 14 numbers in a row needed, 1 found")
      << "although later files are whole";
  make<TTTableObject>()->init();
  EXPECT_STREQ(lastReason(), "");
  make<PsNMOTableObject>()->init();
  EXPECT_STREQ(lastReason(), "");
}

}  // namespace
}  // namespace krosac
