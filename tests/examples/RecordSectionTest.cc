#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <map>
#include <sstream>
#include <string>

#include "RunExample.h"
#include "krosac/krosac.h"

namespace {

TEST(RecordSection, AlignsTheArrivalsOfAFolderWithTheirPredictions) {
  const TemporaryFolder folder;
  ASSERT_EQ(runExample(folder, "make_stations", "in 6 20000").exitCode, 0);
  folder.write("in/text", "no seismogram\n");
  // One counts its time from a minute after the origin, one does not know the origin.
  auto later = krosac::make<krosac::SacObject>(), unknown = krosac::make<krosac::SacObject>();
  ASSERT_TRUE(later->initWithPath(folder.path("in/XX.S004.BHZ.SAC")));
  later->ZeroThisTime(60.0f);
  ASSERT_TRUE(later->save());
  ASSERT_TRUE(unknown->initWithPath(folder.path("in/XX.S006.BHZ.SAC")));
  unknown->setoriginTimeOffset(krosac::kSacUndefinedFloat);
  ASSERT_TRUE(unknown->save());

  const ExampleRun run = runExample(folder, "record_section", "in");
  EXPECT_EQ(run.exitCode, 0);
  EXPECT_THAT(run.err,
              ::testing::HasSubstr("1 seismograms without origin time or distance are left out\n"));
  const std::size_t curves = run.out.find("\n\n# P\n");
  ASSERT_NE(curves, std::string::npos);
  std::map<double, std::map<double, double>> traces;  // amplitudes by distance and time
  std::istringstream rows(run.out.substr(0, curves));
  for (double time, degrees, amplitude; rows >> time >> degrees >> amplitude;)
    traces[degrees][time] = amplitude;
  EXPECT_EQ(traces.size(), 5u);
  std::map<double, double> p;  // predicted times by distance
  std::istringstream predicted(run.out.substr(curves + 6));
  for (double time, degrees; predicted >> time >> degrees;) p[degrees] = time;
  for (const auto& [degrees, trace] : traces) {
    const auto beyond = p.lower_bound(degrees), before = std::prev(beyond);
    const double share = (degrees - before->first) / (beyond->first - before->first);
    const double arrival = before->second + share * (beyond->second - before->second);
    double noise = 0, signal = 0, greatest = 0;
    for (const auto& [time, amplitude] : trace) {
      greatest = std::max(greatest, std::abs(amplitude));
      // The filter, being without phase shift, rings for some seconds before the arrival too.
      if (time > arrival - 60 && time < arrival - 10) noise = std::max(noise, std::abs(amplitude));
      if (time > arrival && time < arrival + 40) signal = std::max(signal, std::abs(amplitude));
    }
    EXPECT_EQ(greatest, 1.0) << degrees;
    EXPECT_GT(signal, 1.5 * noise) << "P at " << degrees << " degrees";
  }
}

TEST(RecordSection, NeedsAFolderOfSeismograms) {
  const TemporaryFolder folder;
  EXPECT_EQ(runExample(folder, "record_section").exitCode, 2);
  const ExampleRun run = runExample(folder, "record_section", "missing");
  EXPECT_EQ(run.exitCode, 1);
  EXPECT_EQ(run.err, "missing: no seismograms\n");
}

}  // namespace
