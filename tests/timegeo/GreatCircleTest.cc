#include "krosac/timegeo/GreatCircle.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <random>

namespace krosac {
namespace {

constexpr double kDegree = std::numbers::pi / 180;
// Half a unit of single precision at 180 degrees; the azimuth is rounded in radians and in degrees.
constexpr double kDistanceRounding = 7.7e-6, kAzimuthRounding = 4e-5;
// What acos loses where its argument comes to +-1 within a few units of double precision.
constexpr double kAcosLoss = 3e-6;

struct Arc {
  double distance, azimuth;
};

Arc arc(float lat1, float lon1, float lat2, float lon2) {
  float distance, azimuth;
  delta_az(&lat1, &lon1, &lat2, &lon2, &distance, &azimuth);
  return {distance, azimuth};
}

// In radians.
double flattened(double latitude) {
  return std::atan2(0.9966102 * std::sin(latitude * kDegree), std::cos(latitude * kDegree));
}

// Distance and azimuth on the sphere, by a formula that is well-conditioned at every distance.
Arc trueArc(double p1, double lon1, double p2, double lon2) {
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

TEST(GreatCircle, AgreesWithAnotherFormula) {
  for (int i = 0; i < 100000; ++i) {
    // Points far apart, and pairs ever nearer.
    const float off = i % 2 ? 180.0f : std::ldexp(1.0f, -(i % 20));
    const float lat1 = within(-89.9f, 89.9f), lon1 = within(-540, 540);
    const float lat2 = std::clamp(lat1 + within(-off, off), -90.0f, 90.0f);
    const float lon2 = lon1 + within(-off, off), across = lon2 + 180.0f;
    const Arc a = arc(lat1, lon1, lat2, lon2);
    const Arc truth = trueArc(flattened(lat1), lon1, flattened(lat2), lon2);
    ASSERT_NEAR(a.distance, truth.distance, kAcosLoss + truth.distance / 180 * kDistanceRounding);
    // Cosines built from sines lose half their digits where they vanish.
    const double loss = 1e-7 / std::sin(truth.distance * kDegree);
    ASSERT_LE(angleBetween(a.azimuth, truth.azimuth), kAzimuthRounding + loss);
    ASSERT_TRUE(a.azimuth >= 0.0 && a.azimuth <= 360.0);
    ASSERT_NEAR(arc(lat1, lon1, -lat2, across).distance,
                trueArc(flattened(lat1), lon1, flattened(-lat2), across).distance,
                kAcosLoss + kDistanceRounding);
    ASSERT_EQ(arc(lat1, lon1, lat1, lon1).distance, 0.0) << lat1 << ' ' << lon1;
  }
}

TEST(GreatCircle, KnownArcs) {
  const float cases[][6] = {{0, 0, 0, 90, 90, 90},      {0, 0, 10, 0, 9.96678f, 0},
                            {0, 450, 0, 100, 10, 90},   {0, 170, 0, -170, 20, 90},
                            {0, -170, 0, 170, 20, 270}, {90, 30, 0, 75, 90, 135},
                            {-90, 30, 0, 75, 90, 45},   {90, 0, -90, 0, 180, 180}};
  for (const auto& [lat1, lon1, lat2, lon2, distance, azimuth] : cases) {
    const Arc a = arc(lat1, lon1, lat2, lon2);
    EXPECT_NEAR(a.distance, distance, 1e-5) << lat1 << ' ' << lon1;
    EXPECT_LE(angleBetween(a.azimuth, azimuth), kAzimuthRounding) << lat1 << ' ' << lon1;
  }
  EXPECT_EQ(arc(0, 0, 10, -1e-30f).azimuth, 360.0) << "rounds up to the full circle";
  EXPECT_TRUE(std::isnan(arc(NAN, 0, 1, 1).distance) && std::isnan(arc(1, 1, 0, INFINITY).azimuth));
  const float one = 1;
  float distance = -1;
  delta_az(&one, &one, &one, nullptr, &distance, nullptr);
  EXPECT_EQ(distance, -1);
}

TEST(GreatCircle, DirectionCosines) {
  double out[4], reduced;
  for (double lon = -725; lon <= 725; lon += 2.5) {
    // Two degrees of this circle are one; the signs still change at 90 and 270.
    dbpt(out, &reduced, lon / 10, lon, kDegree / 2);
    const double phi = lon / 20, sign = reduced > 90 && reduced < 270 ? -1 : 1;
    EXPECT_NEAR(out[0], std::sin(flattened(phi)), 1e-15);
    EXPECT_NEAR(out[1], std::cos(flattened(phi)), 1e-14);
    // Where it vanishes the cosine is the root of a rounded 0.
    EXPECT_NEAR(out[2], sign * std::fabs(std::cos(lon / 2 * kDegree)), 2.2e-8) << lon;
    EXPECT_NEAR(out[3], std::sin(lon / 2 * kDegree), 3e-15) << lon;
    EXPECT_EQ(reduced, std::fabs(std::fmod(lon, 360.0)));
  }
  dbpt(out, &reduced, 90.0, 0.0, kDegree / 2);
  EXPECT_TRUE(out[0] == 1.0 && out[1] == 0.0) << "90 is the pole in any unit";
}

TEST(GreatCircle, EndPointsLieAtDistanceAndAzimuth) {
  float endLat, endLon;
  for (int i = 0; i < 20000; ++i) {
    const float lat = within(-89.9f, 89.9f), lon = within(-180, 180), az = within(0, 360);
    const float radius = within(1, 7000), length = radius * within(0.002f, 3.139f);
    latLonFromDistAz(&endLat, &endLon, radius, lat, lon, length, az);
    const Arc back = trueArc(lat * kDegree, lon, endLat * kDegree, endLon);
    // The end is rounded in single precision: latitude in radians and degrees, longitude to 360.
    ASSERT_NEAR(back.distance, length / radius / kDegree, 4e-5) << lat << ' ' << lon << ' ' << az;
    ASSERT_LE(angleBetween(back.azimuth, az) * std::sin(length / radius), 4e-5);
  }
  latLonFromDistAz(&endLat, &endLon, 6371, 12.5f, -77, 0, 33);
  EXPECT_TRUE(endLat == 12.5f && endLon == -77.0f);
  latLonFromDistAz(&endLat, &endLon, 57.29578f, 0, 170, 20, 90);
  EXPECT_NEAR(endLon, 190, 2e-5) << "not wrapped";
  latLonFromDistAz(&endLat, nullptr, 57.29578f, 45, 0, 45, 0);
  EXPECT_NEAR(endLat, 90, 2e-5) << "the pole, where the sine may round above 1";
}

TEST(GeometricSpreading, Table) {
  const float nodes[][2] = {{20, 84.0f},    {30, 84.0f}, {32.5f, 79.5f},   {35, 76.5f},
                            {37.5f, 74.0f}, {40, 71.5f}, {45, 67.0f},      {42.5f, 69.0f},
                            {50, 63.5f},    {55, 59.5f}, {60, 56.0f},      {65, 53.0f},
                            {70, 50.0f},    {75, 47.0f}, {80, 44.0f},      {85, 41.0f},
                            {90, 38.5f},    {95, 38.5f}, {31.25f, 81.75f}, {86, 40.5f}};
  for (const auto& [distance, factor] : nodes)
    EXPECT_NEAR(geospread(distance), factor * 1e-6, 5e-12) << distance;
  EXPECT_TRUE(std::isnan(geospread(NAN)));
}

}  // namespace
}  // namespace krosac
