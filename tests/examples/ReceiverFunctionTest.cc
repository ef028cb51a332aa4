#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <sstream>
#include <string>

#include "RunExample.h"
#include "krosac/krosac.h"

namespace {

TEST(ReceiverFunction, FindsTheConvertedWaveAndItsMultiplesWithinOneSample) {
  const TemporaryFolder folder;
  const ExampleRun made = runExample(folder, "receiver_function");
  ASSERT_EQ(made.exitCode, 0) << made.err;
  const ExampleRun read =
      runExample(folder, "receiver_function", "sample.BHZ.SAC sample.BHN.SAC sample.BHE.SAC");
  EXPECT_EQ(read.exitCode, 0) << read.err;
  const std::size_t table = made.out.find("lag, s");
  ASSERT_NE(table, std::string::npos);
  EXPECT_EQ(read.out, made.out.substr(made.out.rfind('\n', table) + 1));

  // Of a crust of 35 km, 6.3 and 3.6 km/s under a ray parameter of 0.06 s/km, at 20 samples a
  // second: the P itself, Ps, PpPs and PpSs + PsPs, in the order of their amplitudes.
  const double p = std::sqrt(1 / (6.3 * 6.3) - 0.06 * 0.06),
               s = std::sqrt(1 / (3.6 * 3.6) - 0.06 * 0.06);
  const double expected[][2] = {
      {0, 0.4}, {35 * (s - p), 0.12}, {35 * (s + p), 0.08}, {35 * 2 * s, -0.06}};
  std::istringstream peaks(made.out.substr(made.out.find('\n', table)));
  peaks.imbue(std::locale::classic());
  for (const auto& [delay, strength] : expected) {
    double lag, amplitude, depth;
    ASSERT_TRUE(peaks >> lag >> amplitude >> depth) << made.out;
    EXPECT_NEAR(lag, delay, 0.05);
    // The crust of IASP91 is as thick, and 5.8 to 6.5 km/s fast.
    if (delay > 0 && delay < 5) {
      EXPECT_NEAR(depth, 35.0, 1.0);
    }
    EXPECT_NEAR(amplitude, strength, 0.15 * std::abs(strength));  // what the water level takes
  }
}

TEST(ReceiverFunction, MarksItsPeaksAndTellsNoDepthWhereThereIsNoCurve) {
  const TemporaryFolder folder;
  ASSERT_EQ(runExample(folder, "receiver_function").exitCode, 0);
  auto function = krosac::make<krosac::SacObject>();
  ASSERT_TRUE(function->initWithPath(folder.path("receiver_function.SAC")));
  EXPECT_EQ(function->pickLabelWithKey(0), "P");
  EXPECT_EQ(function->pickLabelWithKey(1), "35 km");
  EXPECT_NEAR(function->t1(), 4.35, 0.06);
  for (const char* name : {"sample.BHZ.SAC", "sample.BHN.SAC", "sample.BHE.SAC"}) {
    auto near = krosac::make<krosac::SacObject>();
    ASSERT_TRUE(near->initWithPath(folder.path(name)));
    near->setGcarc(20.0f);
    ASSERT_TRUE(near->save());
  }
  const ExampleRun run =
      runExample(folder, "receiver_function", "sample.BHZ.SAC sample.BHN.SAC sample.BHE.SAC");
  EXPECT_THAT(run.out, ::testing::HasSubstr("    4.35      0.116          -\n"));
}

TEST(ReceiverFunction, SaysWhatItNeeds) {
  const TemporaryFolder folder;
  ASSERT_EQ(runExample(folder, "receiver_function").exitCode, 0);
  EXPECT_EQ(runExample(folder, "receiver_function", "sample.BHZ.SAC").err,
            "receiver_function [Z N E]\n");
  const ExampleRun twoVerticals =
      runExample(folder, "receiver_function", "sample.BHZ.SAC sample.BHZ.SAC sample.BHE.SAC");
  EXPECT_EQ(twoVerticals.exitCode, 1);
  EXPECT_EQ(twoVerticals.err, "the three files are no components of one seismogram\n");
  EXPECT_EQ(runExample(folder, "receiver_function", "a sample.BHN.SAC b").err,
            "a: no SAC file\nb: no SAC file\n");
}

}  // namespace
