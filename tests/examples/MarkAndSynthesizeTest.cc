#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>

#include "RunExample.h"
#include "krosac/krosac.h"

namespace krosac {
namespace {

TEST(MarkAndSynthesize, TheSyntheticBeginsAtTheMarkedP) {
  const TemporaryFolder folder;
  const ExampleRun run = runExample(folder, "mark_and_synthesize");
  EXPECT_EQ(run.exitCode, 0) << run.err;
  auto marked = make<SacObject>(), synthetic = make<SacObject>();
  ASSERT_TRUE(marked->initWithPath(folder.path("made.marked")));
  ASSERT_TRUE(synthetic->initWithPath(folder.path("made.synthetic")));
  EXPECT_EQ(marked->pickLabelWithKey(10), "P(JB)");
  EXPECT_EQ(marked->pTime(), synthetic->pTime());
  // The P pulse lasts 4 s from the mark on, less the filter's lead of one sample.
  const auto [least, greatest] =
      synthetic->ComputeMinMaxInRange(marked->pTime() - 60.0f, marked->pTime() - 0.2f);
  EXPECT_EQ(std::max(-least, greatest), 0.0);
  const auto [lowest, highest] =
      synthetic->ComputeMinMaxInRange(marked->pTime(), marked->pTime() + 4.0f);
  EXPECT_GT(std::max(-lowest, highest), 0.0);
  // An independent table of the P time: the models differ by about 2 s.
  auto tables = make<TTTableObject>();
  tables->init();
  EXPECT_NEAR(marked->pTime(), tables->GetTTPhase_GCARC_Depth("p", marked->gcarc(), 29.0f).time,
              4.0f);
}

}  // namespace
}  // namespace krosac
