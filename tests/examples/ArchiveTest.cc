// The examples for archives: the same bytes whatever the number of processes, and one bad file does
// no harm.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <string>

#include "RunExample.h"
#include "krosac/krosac.h"

namespace krosac {
namespace {

using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::StartsWith;

// Seven recordings and a file that is none, in "in".
class Archive : public ::testing::Test {
 protected:
  void SetUp() override {
    ASSERT_EQ(runExample(folder, "make_stations", "in 7 9000").exitCode, 0);
    folder.write("in/A text", "no seismogram\n");
  }
  TemporaryFolder folder;
};

#ifdef KROSAC_MPIRUN
constexpr const char* kMpi =
    "OMPI_ALLOW_RUN_AS_ROOT=1 OMPI_ALLOW_RUN_AS_ROOT_CONFIRM=1 OMPI_MCA_rmaps_base_oversubscribe=1 "
    "ASAN_OPTIONS=detect_leaks=0 " KROSAC_MPIRUN " ";

TEST_F(Archive, GivesTheSameBytesOnOneProcessAndOnTwo) {
  for (const char* processes : {"1", "2"}) {
    const ExampleRun run =
        runInShell(folder, std::string(kMpi) + processes + " " + exampleProgram("archive_mpi") +
                               "in out" + processes);
    ASSERT_EQ(run.exitCode, 0) << run.err;
    EXPECT_EQ(run.out, std::string("8 files on ") + processes + " processes, 1 failed\n");
  }
  const auto files = filesBelow(folder, "out1");
  EXPECT_EQ(files, filesBelow(folder, "out2"));
  EXPECT_EQ(files.size(), 8u) << "seven recordings and the summary";
  const std::string& summary = files.at("summary.txt");
  EXPECT_THAT(summary, StartsWith("failed  A text\n"));
  EXPECT_EQ(std::ranges::count(summary, '\n'), 8);

  // The fifth station: P at the predicted time, on the decimated trace, above the noise.
  auto s = make<SacObject>();
  ASSERT_TRUE(s->initWithPath(folder.path("out2/XX.S005.BHZ.SAC")));
  EXPECT_EQ(s->npts(), 4500);
  EXPECT_EQ(s->delta(), 0.2f);
  EXPECT_GT(s->simpleSNR(), 1.5f);
  char row[96];
  std::snprintf(row, sizeof row, "    4500      0.2 %12.6g %10.4g  XX.S005.BHZ.SAC\n",
                static_cast<double>(s->absMax()), static_cast<double>(s->simpleSNR()));
  EXPECT_THAT(summary, HasSubstr(row));
}

TEST_F(Archive, RefusesToWriteOverItsInput) {
  const auto before = filesBelow(folder, "in");
  const ExampleRun run =
      runInShell(folder, std::string(kMpi) + "2 " + exampleProgram("archive_mpi") + "in in/../in");
  EXPECT_EQ(run.exitCode, 1);
  EXPECT_THAT(run.err, HasSubstr("no files, or no such folders"));
  EXPECT_EQ(filesBelow(folder, "in"), before);
}
#else
TEST(ArchiveMpi, NeedsMpi) {
  GTEST_SKIP() << "there was no MPI when this was built";
}
#endif

#ifdef KROSAC_PYTHON_EXAMPLE
TEST_F(Archive, FromPythonMatchesTheSameStepsInCpp) {
  const std::string command = "KROSAC_LIBRARY='" KROSAC_LIBRARY "' " KROSAC_PYTHON_EXAMPLE;
  const ExampleRun one = runInShell(folder, command + " in out1 1");
  const ExampleRun two = runInShell(folder, command + " in out2 2");
  EXPECT_EQ(one.exitCode, 1) << "one file is none";
  EXPECT_EQ(one.out, two.out) << one.err;
  EXPECT_EQ(filesBelow(folder, "out1"), filesBelow(folder, "out2"));
  EXPECT_EQ(filesBelow(folder, "out1").size(), 7u);
  EXPECT_THAT(one.out, StartsWith("failed: in/A text: no SAC file in this byte order\n"));
  EXPECT_THAT(one.out, EndsWith(" Near east coast of eastern Honshu\n"));

  auto ours = make<SacObject>(), theirs = make<SacObject>();
  ASSERT_TRUE(ours->initWithPath(folder.path("in/XX.S003.BHZ.SAC")));
  ASSERT_TRUE(theirs->initWithPath(folder.path("out1/XX.S003.BHZ.SAC")));
  ours->RemoveMean();
  ours->HPBUfilter_NPasses_NPoles(0.02f, 2, 4);
  ours->LPBUfilter_NPasses_NPoles(1.0f, 2, 4);
  ours->Decimate(2);
  ASSERT_EQ(ours->npts(), theirs->npts());
  EXPECT_EQ(ours->delta(), theirs->delta());
  float difference = 0;  // the mean, single against double precision
  for (int i = 0; i < ours->npts(); ++i)
    difference = std::max(difference, std::fabs(ours->GetSacSeis()[i] - theirs->GetSacSeis()[i]));
  EXPECT_LT(difference, 1e-3f * ours->absMax());
}
#else
TEST(ArchivePython, NeedsPython) {
  GTEST_SKIP() << "no Python, or a sanitized library";
}
#endif

}  // namespace
}  // namespace krosac
