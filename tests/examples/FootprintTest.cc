// What all examples have in common: they write only into the working directory or the given folder,
// report what they cannot do, and show their progress on a terminal only.
#include "RunExample.h"

namespace {

TEST(Examples, EndWriteAndComplainAsTheySay) {
  // Two stations in "in", three components, and a file of the other byte order.
  const TemporaryFolder folder;
  ASSERT_EQ(runExample(folder, "make_stations", "in 2 9000").exitCode, 0);
  ASSERT_EQ(runExample(folder, "receiver_function").exitCode, 0);
  ASSERT_EQ(runExample(folder, "process_sac").exitCode, 0);
  const std::string z = "sample.BHZ.SAC ", n = "sample.BHN.SAC ", e = "sample.BHE.SAC",
                    s = "in/XX.S001.BHZ.SAC ";
  const std::string notSac = "missing: not a SAC file that can be processed\n",
                    depths = "travel_time_curves [DEPTH], from 0 to 800 km\n";
  const struct {
    std::string name, arguments, written;
    int exitCode = 0;
    std::string message = "";
  } cases[] = {
      {"make_stations", "new/folder 1 100", "new/folder/XX.S001.BHZ.SAC"},
      {"mark_and_synthesize", s, "XX.S001.BHZ.SAC.marked XX.S001.BHZ.SAC.synthetic"},
      {"process_sac", "missing " + s, "XX.S001.BHZ.SAC.processed", 1, notSac},
      {"read_edr", "", ""},
      {"receiver_function", z + n + e, "receiver_function.SAC"},
      {"receiver_function", z + z + e, "", 1,
       "the three files are not components of one seismogram\n"},
      {"receiver_function", z + n + "none", "", 1, "none: not a SAC file\n"},
      {"record_section", "in", ""},
      {"record_section", "none", "", 1, "none: no seismograms\n"},
      {"sac_to_text", s, ""},
      {"source_parameters", "30 60 90", ""},
      {"source_parameters", "30 60", "", 2, "source_parameters STRIKE DIP RAKE [MAGNITUDE]\n"},
      {"travel_time_curves", "10", ""},
      {"travel_time_curves", "801", "", 2, depths},
      {"travel_time_curves", "deep", "", 2, depths},
      {"edit_header", s, ""},
      {"edit_header", s + "new.SAC EVDP", "", 1, "edit_header FILE [OUTPUT FIELD VALUE ...]\n"},
      {"edit_header", "sample.SAC", "", 1, "sample.SAC: cannot be read\n"},
      {"edit_header", s + "new.SAC NPTS 3", "", 1, "NPTS: not a field that can be changed\n"},
      {"edit_header", s + "new.SAC EVDP deep", "", 1, "deep: not a value for EVDP\n"},
      {"edit_header", s + "no/new.SAC EVDP 3", "", 1, "no/new.SAC: cannot be written\n"}};
  for (const auto& [name, arguments, written, exitCode, message] : cases) {
    if (name == "edit_header" && !KROSAC_HAS_FORTRAN) continue;
    SCOPED_TRACE(name + " " + arguments);
    std::istringstream words(written);
    const std::vector<std::string> paths(std::istream_iterator<std::string>(words), {});
    for (const auto& path : paths) std::filesystem::remove(folder.path(path));
    auto expected = filesBelow(folder);
    const ExampleRun run = runExample(folder, name, arguments);
    EXPECT_EQ(run.exitCode, exitCode);
    EXPECT_EQ(run.err, message);
    for (const auto& path : paths) expected[path] = folder.read(path);
    EXPECT_EQ(filesBelow(folder), expected);
  }
}

TEST(Examples, TellTheirProgressOnATerminal) {
  const TemporaryFolder folder;
  const ExampleRun terminal = runInShell(folder, "script -q -e -c true /dev/null");
  if (terminal.exitCode != 0) GTEST_SKIP() << "no terminal here: " << terminal.err;
  const ExampleRun run =
      runExample(folder, "make_stations", "in 2 100' /dev/null", "script -q -e -c '");
  EXPECT_THAT(run.out, testing::HasSubstr("\rMaking seismograms: 1 of 2 (50 %)\rMaking"));
}

}  // namespace
