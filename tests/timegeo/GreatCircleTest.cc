#include "krosac/timegeo/GreatCircle.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>
#include <random>

namespace krosac {
namespace {

constexpr double kDegree = std::numbers::pi / 180;

struct Arc {
  double distance, azimuth;
};

Arc arc(float lat1, float lon1, float lat2, float lon2) {
  float distance = -1, azimuth = -1;
  delta_az(&lat1, &lon1, &lat2, &lon2, &distance, &azimuth);
  return {distance, azimuth};
}

// Distance and azimuth on a sphere with converted latitudes, by a formula that is well-conditioned
// at every distance.
Arc trueArc(double lat1, double lon1, double lat2, double lon2, double flattening) {
  const double p1 = std::atan(flattening * std::tan(lat1 * kDegree));
  const double p2 = std::atan(flattening * std::tan(lat2 * kDegree));
  const double dlon = (lon2 - lon1) * kDegree, half = std::sin(dlon / 2);
  const double y = std::cos(p2) * std::sin(dlon);
  const double x = std::sin(p2 - p1) + 2 * std::sin(p1) * std::cos(p2) * half * half;
  const double z = std::cos(p2 - p1) - 2 * std::cos(p1) * std::cos(p2) * half * half;
  return {std::atan2(std::hypot(x, y), z) / kDegree, std::atan2(y, x) / kDegree};
}

double angleBetween(double a, double b) {
  return std::fabs(std::remainder(a - b, 360.0));
}

float within(float least, float most) {
  static std::mt19937 random(19640328);
  return std::uniform_real_distribution<float>(least, most)(random);
}

TEST(GreatCircle, AgreesWithAWellConditionedFormula) {
  for (int i = 0; i < 100000; ++i) {
    // Distant points, increasingly close points, and increasingly antipodal points.
    const float off = i % 2 ? 180.0f : std::ldexp(1.0f, -(i % 20));
    const float lat1 = within(-89.9f, 89.9f), lon1 = within(-540, 540);
    float lat2 = std::clamp(lat1 + within(-off, off), -90.0f, 90.0f);
    float lon2 = lon1 + within(-off, off);
    if (i % 3 == 0) lat2 = -lat2, lon2 += 180;
    const Arc a = arc(lat1, lon1, lat2, lon2), truth = trueArc(lat1, lon1, lat2, lon2, 0.9966102);
    // acos loses 3e-6 degrees near +-1; the result is rounded to single precision.
    ASSERT_NEAR(a.distance, truth.distance, 3e-6 + truth.distance / 180 * 7.7e-6);
    // The azimuth is rounded in radians and in degrees. A cosine computed from a sine loses half
    // its digits near 0.
    const double loss = 1e-7 / std::sin(truth.distance * kDegree);
    ASSERT_LE(angleBetween(a.azimuth, truth.azimuth), 4e-5 + loss);
    ASSERT_TRUE(a.azimuth >= 0 && a.azimuth < 360) << a.azimuth;
    ASSERT_EQ(arc(lat1, lon1, lat1, lon1).distance, 0.0) << lat1 << ' ' << lon1;
  }
  EXPECT_NEAR(arc(90, 30, 0, 75).azimuth, 135, 4e-5);
  for (const auto& [lat1, lon1, lat2, lon2] :
       {std::array{0.0f, 0.0f, 10.0f, -1e-30f}, {30, 190, 60, -170}, {0, 0, 10, -0.0f}}) {
    const double azimuth = arc(lat1, lon1, lat2, lon2).azimuth;
    EXPECT_TRUE(azimuth == 0 && !std::signbit(azimuth)) << "from " << lat1 << ' ' << lon1;
  }
  EXPECT_TRUE(std::isnan(arc(NAN, 0, 1, 1).distance) && std::isnan(arc(1, 1, 0, INFINITY).azimuth));
}

TEST(GreatCircle, DirectionCosinesInHalfDegrees) {
  double out[4], reduced;
  dbpt(out, &reduced, 90.0, -620.0, kDegree / 2);
  EXPECT_TRUE(out[0] == 1.0 && out[1] == 0.0 && reduced == 260.0)
      << "latitude 90 is the pole whatever the factor";
  EXPECT_NEAR(out[2], -std::cos(50 * kDegree), 1e-14) << "negative between 90 and 270";
  EXPECT_NEAR(out[3], std::sin(50 * kDegree), 1e-14);
}

TEST(GreatCircle, EndPointsLieAtDistanceAndAzimuth) {
  float endLat, endLon;
  for (int i = 0; i < 20000; ++i) {
    const float lat = within(-89.9f, 89.9f), lon = within(-180, 180), az = within(0, 360);
    const float radius = within(1, 7000), length = radius * within(0.002f, 3.139f);
    latLonFromDistAz(&endLat, &endLon, radius, lat, lon, length, az);
    const Arc back = trueArc(lat, lon, endLat, endLon, 1);
    // The end point is rounded to single precision.
    ASSERT_NEAR(back.distance, length / radius / kDegree, 4e-5) << lat << ' ' << lon << ' ' << az;
    ASSERT_LE(angleBetween(back.azimuth, az) * std::sin(length / radius), 4e-5);
  }
  latLonFromDistAz(&endLat, &endLon, 6371, 12.5f, -77, 0, 33);
  EXPECT_TRUE(endLat == 12.5f && endLon == -77.0f);
  latLonFromDistAz(&endLat, &endLon, 57.29578f, 0, 170, 20, 90);
  EXPECT_NEAR(endLon, 190, 2e-5) << "not wrapped";
  for (float lat = 0; lat <= 90; lat += 0.25f) {
    latLonFromDistAz(&endLat, nullptr, 57.29578f, lat, 0, 90 - lat, 0);
    EXPECT_NEAR(endLat, 90, 1e-4) << "the sine may round above 1, from " << lat;
  }
}

TEST(GeometricSpreading, IsLinearBetweenNodesAndConstantOutside) {
  const float rows[][2] = {{-20, 84}, {30, 84}, {31.25f, 81.75f}, {87.5f, 39.75f}, {120, 38.5f}};
  for (const auto& [distance, micro] : rows)
    EXPECT_NEAR(geospread(distance), micro * 1e-6, 5e-12) << distance;
  double sum = 0;  // of all nodes, and of the midpoints of nodes 5 degrees apart
  for (float distance = 30; distance <= 90; distance += 2.5f) sum += geospread(distance);
  EXPECT_NEAR(sum, 1440.75e-6, 5e-11);
  EXPECT_TRUE(std::isnan(geospread(NAN)));
}

}  // namespace
}  // namespace krosac
