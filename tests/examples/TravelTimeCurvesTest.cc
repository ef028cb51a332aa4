#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <sstream>
#include <string>

#include "RunExample.h"

namespace {

struct Point {
  double time, slowness;
};
using Curve = std::map<double, Point>;  // by distance

std::map<std::string, Curve> curves(const std::string& text) {
  std::map<std::string, Curve> result;
  std::istringstream lines(text);
  std::string name;
  for (std::string line; std::getline(lines, line);) {
    if (line.starts_with("# ")) name = line.substr(2, line.find(',') - 2);
    double degrees;
    Point point;
    if (std::istringstream(line) >> degrees >> point.time >> point.slowness)
      result[name][degrees] = point;
  }
  return result;
}

TEST(TravelTimeCurves, AgreeWithWhatIsKnownOfThem) {
  const TemporaryFolder folder;
  const auto surface = curves(runExample(folder, "travel_time_curves", "0").out);
  const auto deep = curves(runExample(folder, "travel_time_curves").out);
  EXPECT_EQ(surface.size(), 19u);
  EXPECT_EQ(deep.size(), 19u);
  const auto time = [](const auto& phases, const char* name, double degrees) {
    return phases.at(name).at(degrees).time;
  };
  // SKS overtakes S at 82 to 84 degrees, PcP merges with P where the core casts its shadow, and a
  // ray from surface to surface takes as long backward.
  EXPECT_LT(time(surface, "S", 81), time(surface, "SKSac", 81));
  EXPECT_GT(time(surface, "S", 85), time(surface, "SKSac", 85));
  EXPECT_NEAR(time(surface, "P", 97), time(surface, "PcP", 97), 1.0);
  for (double degrees = 50; degrees < 130; degrees += 10)
    EXPECT_NEAR(time(surface, "SP", degrees), time(surface, "PS", degrees), 1.0) << degrees;
  for (double degrees = 30; degrees < 90; degrees += 5) {
    const double arrivals[] = {time(deep, "P", degrees), time(deep, "pP", degrees),
                               time(deep, "sP", degrees), time(deep, "S", degrees),
                               time(deep, "sS", degrees)};
    EXPECT_TRUE(std::ranges::is_sorted(arrivals)) << degrees;
  }
  // Slowness is the slope of the curve, here in s/degree over one row of the table.
  const Curve& p = surface.at("P");
  EXPECT_NEAR(p.at(60.5).slowness, p.at(61).time - p.at(60).time, 0.01);
}

TEST(TravelTimeCurves, RefuseADepthBelowTheTables) {
  const TemporaryFolder folder;
  for (const char* depth : {"801", "-1", "deep", "10 20"})
    EXPECT_EQ(runExample(folder, "travel_time_curves", depth).exitCode, 2) << depth;
}

}  // namespace
