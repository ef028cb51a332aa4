#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "RunExample.h"
#include "krosac/krosac.h"

namespace krosac {
namespace {

using ::testing::HasSubstr;

TEST(ProcessSac, MakesAndProcessesASampleInTheOtherByteOrder) {
  const TemporaryFolder folder;
  const ExampleRun run = runExample(folder, "process_sac");
  EXPECT_EQ(run.exitCode, 0) << run.err;
  EXPECT_THAT(
      run.out,
      HasSubstr("JAPAN - KURIL ISLANDS - KAMCHATKA PENINSULA / Near east coast of eastern Honshu"));
  EXPECT_THAT(run.out, HasSubstr("Byte order of the file: swapped"));

  auto before = make<SacObject>(), after = make<SacObject>();
  ASSERT_TRUE(before->initWithPath(folder.path("sample.SAC")));
  ASSERT_TRUE(after->initWithPath(folder.path("sample.SAC.processed")));
  EXPECT_TRUE(before->swappedBytes() && after->swappedBytes());
  EXPECT_EQ(after->npts(), before->npts() / 2);
  EXPECT_EQ(after->delta(), 2.0f * before->delta());
  EXPECT_LT(std::abs(after->smean()), 1e-3f * after->smax());
  EXPECT_EQ(after->pickLabelWithKey(0), "maximum");
  // The strongest wave is the Rayleigh wave, which travels at 2.9 to 4.1 km/s.
  EXPECT_NEAR(after->distance() / after->t0(), 3.5f, 0.6f);
  // Its P stands out of the noise: at the time of the Jeffreys-Bullen tables, which differ by 2 s.
  EXPECT_GT(after->simpleSNR(), 2.0f);
  after->markJBTimes();
  EXPECT_NEAR(after->pTime(), before->pTime(), 4.0f);
}

TEST(ProcessSac, LeavesItsInputAloneAndGoesOnBehindAFileThatIsNone) {
  const TemporaryFolder folder;
  ASSERT_EQ(runExample(folder, "process_sac").exitCode, 0);
  const std::string input = folder.read("sample.SAC");
  folder.write("text", "no seismogram\n");
  const ExampleRun run = runExample(folder, "process_sac", "text missing sample.SAC");
  EXPECT_EQ(run.exitCode, 1);
  EXPECT_EQ(
      run.err,
      "text: no SAC file that can be processed\nmissing: no SAC file that can be processed\n");
  EXPECT_THAT(run.out, HasSubstr("Saved and loaded again: sample.SAC.processed"));
  EXPECT_EQ(folder.read("sample.SAC"), input);
}

}  // namespace
}  // namespace krosac
