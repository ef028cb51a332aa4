#include "krosac/timegeo/GreatCircle.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "krosac/platform/Numbers.h"

namespace krosac {
namespace {

constexpr double kDegreesPerRadian = 57.29577951308232;
constexpr double kLatitudeFactor = 0.9966102;

struct DirectionCosines {
  double sinLat, cosLat, cosLon, sinLon;
  bool operator==(const DirectionCosines&) const = default;
};

DirectionCosines directionCosines(float latitude, float longitude) {
  double out[4], reducedLongitude;
  dbpt(out, &reducedLongitude, latitude, longitude, kRadiansPerDegree);
  return {out[0], out[1], out[2], out[3]};
}

double cosineFromSine(double sine) {
  return std::sqrt(1.0 - sine * sine);
}

double clampedToUnit(double value) {
  return std::clamp(value, -1.0, 1.0);
}

struct SpreadingNode {
  float distance, factor;
};

constexpr SpreadingNode kSpreading[16] = {
    {30.0f, 8.40e-5f}, {32.5f, 7.95e-5f}, {35.0f, 7.65e-5f}, {37.5f, 7.40e-5f},
    {40.0f, 7.15e-5f}, {42.5f, 6.90e-5f}, {45.0f, 6.70e-5f}, {50.0f, 6.35e-5f},
    {55.0f, 5.95e-5f}, {60.0f, 5.60e-5f}, {65.0f, 5.30e-5f}, {70.0f, 5.00e-5f},
    {75.0f, 4.70e-5f}, {80.0f, 4.40e-5f}, {85.0f, 4.10e-5f}, {90.0f, 3.85e-5f}};

}  // namespace

void dbpt(double out[4], double* reducedLongitude, double latitude, double longitude,
          double degreesToRadians) {
  const double reduced = std::fabs(std::fmod(longitude, 360.0));
  if (reducedLongitude) *reducedLongitude = reduced;
  if (!out) return;
  out[0] = latitude == 90.0
               ? 1.0
               : std::sin(std::atan(kLatitudeFactor * std::tan(latitude * degreesToRadians)));
  out[1] = cosineFromSine(out[0]);
  out[3] = std::sin(longitude * degreesToRadians);
  out[2] = cosineFromSine(out[3]);
  if (reduced > 90.0 && reduced < 270.0) out[2] = -out[2];
}

void delta_az(const float* lat1, const float* lon1, const float* lat2, const float* lon2,
              float* distance, float* azimuth) {
  if (!lat1 || !lon1 || !lat2 || !lon2) return;
  const DirectionCosines p1 = directionCosines(*lat1, *lon1);
  const DirectionCosines p2 = directionCosines(*lat2, *lon2);

  const double cosDlon = p1.sinLon * p2.sinLon + p1.cosLon * p2.cosLon;
  // Rounding of the sum must not separate equal points.
  const double cosDistance =
      p1 == p2 ? 1.0 : p1.sinLat * p2.sinLat + p1.cosLat * p2.cosLat * cosDlon;
  const double y = (p1.cosLon * p2.sinLon - p1.sinLon * p2.cosLon) * p2.cosLat;
  const double x = p1.cosLat * p2.sinLat - p1.sinLat * p2.cosLat * cosDlon;

  const auto radians = static_cast<float>(std::atan2(y, x));
  auto degrees = static_cast<float>(radians / kRadiansPerDegree);
  if (degrees < 0.0f) degrees += 360.0f;
  // Rounding may yield 360; atan2 may yield -0.0.
  if (degrees >= 360.0f || degrees == 0.0f) degrees = 0.0f;
  if (distance)
    *distance = static_cast<float>(std::acos(clampedToUnit(cosDistance)) / kRadiansPerDegree);
  if (azimuth) *azimuth = degrees;
}

void latLonFromDistAz(float* latitude, float* longitude, float radius, float startLatitude,
                      float startLongitude, float distance, float azimuth) {
  const double d = static_cast<double>(distance) / static_cast<double>(radius);
  const double a = azimuth * kRadiansPerDegree;
  const double p = startLatitude * kRadiansPerDegree;

  const double sine = std::cos(a) * std::cos(p) * std::sin(d) + std::sin(p) * std::cos(d);
  const double x = std::cos(p) * std::cos(d) - std::sin(p) * std::sin(d) * std::cos(a);
  const double y = std::sin(a) * std::sin(d);
  const double offset = x == 0.0 && y == 0.0 ? 0.0 : std::atan2(y, x) * kDegreesPerRadian;

  const auto radians = static_cast<float>(std::asin(clampedToUnit(sine)));
  if (latitude) *latitude = static_cast<float>(radians * kDegreesPerRadian);
  if (longitude) *longitude = static_cast<float>(startLongitude + offset);
}

double geospread(float distance) {
  if (std::isnan(distance)) return std::numeric_limits<double>::quiet_NaN();
  if (distance <= kSpreading[0].distance) return kSpreading[0].factor;
  if (distance >= kSpreading[15].distance) return kSpreading[15].factor;
  int i = 0;
  while (distance >= kSpreading[i + 1].distance) ++i;
  const auto [d0, f0] = kSpreading[i];
  const auto [d1, f1] = kSpreading[i + 1];
  const double fraction = (static_cast<double>(distance) - d0) / (static_cast<double>(d1) - d0);
  return f0 + (static_cast<double>(f1) - f0) * fraction;
}

}  // namespace krosac
