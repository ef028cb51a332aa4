#include "krosac/timegeo/FlinnEngdahl.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <limits>
#include <string>
#include <vector>

#include "krosac/timegeo/FlinnEngdahlTablesInternal.h"

namespace krosac {
namespace {

// A plain scan of the quadrant's records.
int scannedRegion(float latitude, float longitude) {
  using namespace flinn_engdahl;
  const int q = latitude >= 0 ? (longitude >= 0 ? 1 : 2) : (longitude < 0 ? 3 : 4);
  const double a = std::trunc(std::fabs(latitude)), o = std::trunc(std::fabs(longitude));
  const int end = ind[q] + num[q];
  int i = ind[q];
  while (i < end && lln[i].latitude < a) ++i;
  while (i < end && lln[i].latitude == a && o >= lln[i].longitude) ++i;
  return lln[i - 1].region;
}

struct Numbers {
  std::int32_t geographic, seismic;
};

Numbers lookUp(float latitude, float longitude) {
  Numbers n;
  fe_lookup(latitude, longitude, &n.geographic, &n.seismic);
  return n;
}

// "geographic / seismic"
std::string names(Numbers& n) {
  const char *geographic, *seismic;
  fe_region(&n.geographic, &geographic, &n.seismic, &seismic);
  return std::string(geographic) + " / " + seismic;
}

TEST(FlinnEngdahl, AgreesWithAPlainScanEverywhere) {
  std::vector<float> longitudes{181.0f, -270.0f, 360.0f, -1e9f, 3e38f, -HUGE_VALF};
  for (float x = -180.5f; x <= 180.5f; x += 0.5f) longitudes.push_back(x);
  for (float y = -90.5f; y <= 90.5f; y += 0.5f) {
    for (const float x : longitudes)
      ASSERT_EQ(lookUp(y, x).geographic, scannedRegion(y, x)) << y << ' ' << x;
  }
  EXPECT_EQ(lookUp(-0.0f, -0.0f).geographic, scannedRegion(0, 0));
}

TEST(FlinnEngdahl, PointsInNoRegionAreCounted) {
  std::int32_t last = lookUp(91, 0).geographic;
  EXPECT_GE(last, 758);
  const float points[][2] = {{-91, 0}, {1e30f, 0}, {-HUGE_VALF, 7}, {NAN, 0}, {0, NAN}};
  for (const auto& [latitude, longitude] : points) {
    const Numbers n = lookUp(latitude, longitude);
    EXPECT_TRUE(n.geographic == ++last && n.seismic == 0) << latitude << ' ' << longitude;
  }
}

TEST(FlinnEngdahl, Names) {
  const std::tuple<float, float, const char*> places[] = {
      {64, -150, "Central Alaska, United States / ALASKA - ALEUTIAN ISLANDS ARC"},
      {27.7f, 85.3f, "Nepal / INDIA - XIZANG - SICHUAN - YUNNAN"},
      {-43.5f, 172.6f, "South Island / NEW ZEALAND AREA"},
      {-17.7f, -178.1f, "Fiji Islands region / FIJI ISLANDS AREA"},
      {-90, 0, "Antarctica / ANTARCTICA"}};
  for (const auto& [latitude, longitude, expected] : places) {
    Numbers found = lookUp(latitude, longitude);
    EXPECT_EQ(names(found), expected);
    for (const std::int32_t none : {0, -5}) {
      Numbers n{found.geographic, none};
      EXPECT_EQ(names(n), expected) << "the seismic region follows from the geographic one";
      EXPECT_EQ(n.seismic, found.seismic);
    }
  }
  Numbers n{757, 50};
  EXPECT_EQ(names(n), "Galapagos Triple Junction region / ANTARCTICA");
  using Limits = std::numeric_limits<std::int32_t>;
  const std::string blank(52, ' ');
  for (const std::int32_t geographic : {Limits::min(), 0, 758, Limits::max()}) {
    for (const std::int32_t seismic : {Limits::min(), 0, 51, Limits::max()}) {
      n = {geographic, seismic};
      EXPECT_EQ(names(n), blank + " / " + blank) << geographic << ' ' << seismic;
      EXPECT_EQ(n.seismic, seismic);
    }
  }
  fe_lookup(0, 0, nullptr, nullptr);
  fe_region(nullptr, nullptr, nullptr, nullptr);
}

}  // namespace
}  // namespace krosac
