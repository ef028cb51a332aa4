// What all examples have in common: they write into the working directory or the folder they are
// told, leave their input alone, and are quiet about their progress but on a terminal.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <pty.h>
#include <unistd.h>

#include <iterator>
#include <string>
#include <vector>

#include "RunExample.h"
#include "examples/Progress.h"
#include "krosac/krosac.h"

namespace {

TEST(Footprint, OfEveryExampleIsWhatItSays) {
  const struct {
    const char *name, *arguments;
    std::vector<std::string> written;
  } cases[] = {
      {"make_stations", "new/folder 1 100", {"new/folder/XX.S001.BHZ.SAC"}},
      {"mark_and_synthesize",
       "in/XX.S002.BHZ.SAC",
       {"XX.S002.BHZ.SAC.marked", "XX.S002.BHZ.SAC.synthetic"}},
      {"process_sac",
       "in/XX.S001.BHZ.SAC in/XX.S002.BHZ.SAC",
       {"XX.S001.BHZ.SAC.processed", "XX.S002.BHZ.SAC.processed"}},
      {"process_sac", "", {"sample.SAC", "sample.SAC.processed"}},
      {"read_edr", "", {}},
      {"receiver_function",
       "in/sample.BHZ.SAC in/sample.BHN.SAC in/sample.BHE.SAC",
       {"receiver_function.SAC"}},
      {"record_section", "in", {}},
      {"sac_to_text", "in/XX.S001.BHZ.SAC", {}},
      {"source_parameters", "30 60 90", {}},
      {"travel_time_curves", "10", {}},
  };
  for (const auto& [name, arguments, written] : cases) {
    const TemporaryFolder folder;
    ASSERT_EQ(runExample(folder, "make_stations", "in 2 9000").exitCode, 0);
    ASSERT_EQ(runInShell(folder, "cd in && " + exampleProgram("receiver_function")).exitCode, 0);
    auto expected = filesBelow(folder);
    const ExampleRun run = runExample(folder, name, arguments);
    EXPECT_EQ(run.exitCode, 0) << name << run.err;
    EXPECT_EQ(run.err.find("of 2"), run.err.npos) << name << " tells its progress to a file";
    const auto files = filesBelow(folder);
    for (const auto& path : written) {
      EXPECT_EQ(files.count(path), 1u) << name << " did not write " << path;
      expected[path] = folder.read(path);
    }
    EXPECT_EQ(files, expected) << name;
  }
}

TEST(SacToText, PrintsSamplesAndPicksAfterTheOrigin) {
  const TemporaryFolder folder;
  auto s = krosac::make<krosac::SacObject>();
  s->initWithCapacity(3);
  s->setDelta(0.5f);
  s->setBeginTime(10.0f);
  s->setoriginTimeOffset(4.0f);
  s->setPTime(10.5f);
  s->setTimePickKey_Value(2, 11.0f);
  s->setPickLabelKey_Value(2, "pP");
  s->setStationID("BKL");
  s->setComponentName("BHZ");
  s->GetSacSeis()[1] = -2.5f;
  s->setPath(folder.path("x.SAC"));
  ASSERT_TRUE(s->save());
  EXPECT_EQ(runExample(folder, "sac_to_text", "x.SAC").out,
            "# BKL BHZ\n6.0000 0\n6.5000 -2.5\n7.0000 0\n\n\n7.0000 \"pP\"\n6.5000 \"A\"\n");
}

TEST(Progress, IsToldOnATerminal) {
  int terminal = -1, screen = -1;
  if (openpty(&screen, &terminal, nullptr, nullptr, nullptr) != 0) GTEST_SKIP() << "no terminals";
  const int errors = dup(STDERR_FILENO);
  dup2(terminal, STDERR_FILENO);
  {
    Progress progress("Reading", 2000);
    for (int i = 0; i < 30; ++i) progress.step();
  }
  dup2(errors, STDERR_FILENO);
  for (const int file : {terminal, errors}) close(file);
  std::string text;  // all of it, now that the terminal is closed
  for (char c; read(screen, &c, 1) == 1;) text += c;
  close(screen);
  EXPECT_EQ(text, "\rReading: 1 of 2000 (0 %)\rReading: 20 of 2000 (1 %)\r\n");
}

}  // namespace
