#include "krosac/timegeo/FlinnEngdahl.h"

#include <gtest/gtest.h>

#include <climits>
#include <cmath>

#include "krosac/timegeo/internal/FlinnEngdahlTables.h"

namespace krosac {
namespace {

using namespace std::string_literals;

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

TEST(FlinnEngdahl, AgreesWithALinearScan) {
  using namespace flinn_engdahl;
  std::vector<float> longitudes{-0.0f, 181.0f, -270.0f, 360.0f, -1e9f, 3e38f, -HUGE_VALF};
  for (float x = -180.5f; x <= 180.5f; x += 0.5f) longitudes.push_back(x);
  for (float y = -90.5f; y <= 90.5f; y += 0.5f) {
    for (const float x : longitudes) {
      const int q = y >= 0 ? (x >= 0 ? 1 : 2) : (x < 0 ? 3 : 4), end = ind[q] + num[q];
      int i = ind[q];
      while (i < end && lln[i].latitude < std::trunc(std::fabs(y))) ++i;
      while (i < end && lln[i].latitude == std::trunc(std::fabs(y)) &&
             std::trunc(std::fabs(x)) >= lln[i].longitude)
        ++i;
      ASSERT_EQ(lookUp(y, x).geographic, lln[i - 1].region) << y << ' ' << x;
    }
  }
}

TEST(FlinnEngdahl, CountsPointsInNoRegion) {
  std::int32_t last = lookUp(91, 0).geographic;
  EXPECT_GE(last, 758);
  for (const auto& [latitude, longitude] :
       {std::pair{-91.0f, 0.0f}, {-HUGE_VALF, 7.0f}, {NAN, 0.0f}, {0.0f, NAN}}) {
    const Numbers n = lookUp(latitude, longitude);
    EXPECT_TRUE(n.geographic == ++last && n.seismic == 0) << latitude << ' ' << longitude;
  }
}

TEST(FlinnEngdahl, Names) {
  const std::tuple<float, float, const char*> places[] = {
      {64, -150, "Central Alaska, United States / ALASKA - ALEUTIAN ISLANDS ARC"},
      {27.7f, 85.3f, "Nepal / INDIA - XIZANG - SICHUAN - YUNNAN"},
      {-43.5f, 172.6f, "South Island / NEW ZEALAND AREA"}};
  for (const auto& [latitude, longitude, expected] : places) {
    Numbers n = lookUp(latitude, longitude), unknown{n.geographic, -5};
    EXPECT_EQ(names(n), expected);
    EXPECT_EQ(names(unknown), expected) << "the seismic region follows from the geographic one";
    EXPECT_EQ(unknown.seismic, n.seismic);
  }
  const std::string blank(52, ' ');
  for (const auto& [geographic, seismic, expected] :
       {std::tuple{757, 50, "Galapagos Triple Junction region / ANTARCTICA"s},
        {INT_MIN, 0, blank + " / " + blank},
        {758, 51, blank + " / " + blank}}) {
    Numbers n{geographic, seismic};
    EXPECT_EQ(names(n), expected);
    EXPECT_EQ(n.seismic, seismic);
  }
}

}  // namespace
}  // namespace krosac
