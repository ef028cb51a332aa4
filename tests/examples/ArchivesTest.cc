// The examples for archives write the same bytes for any number of processes and skip a bad file.
#include "RunExample.h"
#include "krosac/krosac.h"

namespace krosac {
namespace {

using testing::HasSubstr;
using testing::StartsWith;

// Seven recordings in "in" and a file that is not a recording.
struct Archives : ::testing::Test {
  void SetUp() override {
    ASSERT_EQ(runExample(folder, "make_stations", "in 7 9000").exitCode, 0);
    folder.write("in/A text", "no seismogram\n");
  }
  TemporaryFolder folder;
};

TEST_F(Archives, AreTheSameFromOneProcessAndFromTwo) {
  if (!KROSAC_HAS_MPI) GTEST_SKIP() << "not installed: MPI";
  const std::string mpi =
      "OMPI_ALLOW_RUN_AS_ROOT=1 OMPI_ALLOW_RUN_AS_ROOT_CONFIRM=1 "
      "OMPI_MCA_rmaps_base_oversubscribe=1 ASAN_OPTIONS=detect_leaks=0 " KROSAC_MPIRUN " ";
  if (runInShell(folder, mpi + "1 true").exitCode != 0)
    GTEST_SKIP() << "MPI starts no process here";
  const auto before = filesBelow(folder, "in");
  const ExampleRun one = runExample(folder, "archive_mpi", "in out1", mpi + "1"),
                   two = runExample(folder, "archive_mpi", "in out2", mpi + "2"),
                   same = runExample(folder, "archive_mpi", "in in/../in", mpi + "2");
  EXPECT_EQ(one.out + two.out,
            "8 files on 1 processes, 1 failed\n8 files on 2 processes, 1 failed\n")
      << one.err;
  EXPECT_THAT(same.err, HasSubstr("no files, or not two folders"));
  EXPECT_EQ(filesBelow(folder, "in"), before);
  auto files = filesBelow(folder, "out1");
  EXPECT_EQ(files, filesBelow(folder, "out2"));
  EXPECT_EQ(files.size(), 8u) << "seven recordings and the summary";
  EXPECT_THAT(files["summary.txt"], StartsWith("failed  A text\n"));
  // The fifth station has P at the predicted time, above the noise of the decimated trace.
  auto s = make<SacObject>();
  ASSERT_TRUE(s->initWithPath(folder.path("out2/XX.S005.BHZ.SAC")));
  EXPECT_EQ(s->pickLabelWithKey(10), "P(JB)");
  EXPECT_GT(s->simpleSNR(), 1.5f);
  char row[96];
  std::snprintf(row, sizeof row, "    4500      0.2 %12.6g %10.4g  XX.S005.BHZ.SAC\n",
                static_cast<double>(s->absMax()), static_cast<double>(s->simpleSNR()));
  EXPECT_THAT(files["summary.txt"], HasSubstr(row));
}

TEST_F(Archives, FromPythonMatchTheSameStepsInCpp) {
  const std::string python = KROSAC_PYTHON,
                    command = "KROSAC_LIBRARY='" KROSAC_LIBRARY "' '" + python +
                              "' -B '" KROSAC_SOURCES "/process_archive.py' in ";
  if (KROSAC_IS_SANITIZED) GTEST_SKIP() << "Python cannot load a sanitized library";
  if (python.empty()) GTEST_SKIP() << "not installed: Python";
  const ExampleRun one = runInShell(folder, command + "out1 1"),
                   two = runInShell(folder, command + "out2 2");
  EXPECT_EQ(one.exitCode, 1) << "one file is not a recording";
  EXPECT_EQ(one.out, two.out) << one.err;
  EXPECT_THAT(
      one.out,
      StartsWith("failed: in/A text: not a SAC file in this byte order\nXX.S001.BHZ.SAC 4500 "));
  EXPECT_EQ(filesBelow(folder, "out1"), filesBelow(folder, "out2"));
  EXPECT_EQ(filesBelow(folder, "out1").size(), 7u);
  auto ours = make<SacObject>(), theirs = make<SacObject>();
  ASSERT_TRUE(ours->initWithPath(folder.path("in/XX.S003.BHZ.SAC")));
  ASSERT_TRUE(theirs->initWithPath(folder.path("out1/XX.S003.BHZ.SAC")));
  ours->RemoveMean();
  ours->HPBUfilter_NPasses_NPoles(0.02f, 2, 4);
  ours->LPBUfilter_NPasses_NPoles(1.0f, 2, 4);
  ours->Decimate(2);
  ASSERT_EQ(std::pair(ours->npts(), ours->delta()), std::pair(theirs->npts(), theirs->delta()));
  for (int i = 0; i < ours->npts(); ++i)  // the means are of single and of double precision
    ASSERT_NEAR(ours->GetSacSeis()[i], theirs->GetSacSeis()[i], 1e-3f * ours->absMax());
}

// A reader of CBOR in another language finds the fields and the samples of keyed archives.
TEST(KeyedArchives, OpenInPython) {
  const std::string python = KROSAC_CBOR2_PYTHON;
  if (python.empty()) GTEST_SKIP() << "not installed: cbor2 for Python";
  const TemporaryFolder folder;
  const auto trace = make<SacObject>();
  ASSERT_TRUE(trace->initWithCapacity(1000));
  trace->GetSacSeis()[500] = -2.5f;
  const auto event = make<kroHypocenter>();
  const auto station = make<kroSeismicStation>();
  ASSERT_TRUE(event->init() && station->init());
  event->setMb(6.5f);
  station->setStationCode("TLY");
  for (const char* name : {"P", "S\xc3\xa9"}) {
    const auto phase = make<kroSeismicPhase>();
    ASSERT_TRUE(phase->init());
    phase->setPhaseName(name);
    phase->setStation(station);
    event->addPhase(phase);
  }
  ASSERT_TRUE(archive(*trace)->writeAtomically(folder.path("trace.cbor")));
  ASSERT_TRUE(archive(*event)->writeAtomically(folder.path("event.cbor")));
  const std::string command =
      "PYTHONIOENCODING=utf-8 '" + python + "' -B '" KROSAC_SOURCES "/open_archive.py' ";
  const ExampleRun run = runInShell(folder, command + "trace.cbor event.cbor");
  EXPECT_EQ(run.exitCode, 0) << run.err;
  EXPECT_THAT(run.out,
              StartsWith("trace.cbor: SacObject\n  myData: 1000 samples from -2.5 to 0\n"));
  EXPECT_THAT(run.out, HasSubstr("\n  mb: 6.5\n"));
  EXPECT_THAT(
      run.out,
      HasSubstr(
          "\n      phaseName: P\n      station: kroSeismicStation\n        stationCode: TLY\n"));
  EXPECT_THAT(
      run.out,
      HasSubstr("\n      phaseName: S\xc3\xa9\n      station: kroSeismicStation as above\n"));
  std::string damaged = folder.read("trace.cbor");
  damaged[100] ^= 1;
  folder.write("trace.cbor", damaged);
  EXPECT_THAT(runInShell(folder, command + "trace.cbor").err, HasSubstr("damaged"));
}

}  // namespace
}  // namespace krosac
