#include <cmath>

#include "krosac/source/Dislocation.h"
#include "krosac/source/internal/Radiation.h"

namespace krosac {
namespace {

struct Excitation {
  float k1, k2, k3, k4, k5;
};

constexpr float kLongPeriod = 360.0f;
constexpr Excitation kAtOtherPeriods{-0.1451f, -0.17929f, -3.34124f, 3.32004f, 1.9275f};
constexpr Excitation kAtLongPeriod{-0.08781f, -0.01324f, -2.65306f, 1.83101f, 0.93984f};

float radians(double degrees) {
  return static_cast<float>(degrees * kShortRadiansPerDegree);
}

}  // namespace

Point Dislocation::ComputeSurfWaveAmplitudeAz_Period(float azimuth, float period) const {
  const auto [k1, k2, k3, k4, k5] = period == kLongPeriod ? kAtLongPeriod : kAtOtherPeriods;
  // Strike minus azimuth, the opposite sign of that for body waves: intended.
  const double phi = radians(strike_) - radians(azimuth);
  const double delta = radians(dip_), lambda = radians(rake_);
  const double sinDip = std::sin(delta), cosDip = std::cos(delta), cos2Dip = std::cos(2.0 * delta);
  const double sinRake = std::sin(lambda), cosRake = std::cos(lambda);
  const double sinPhi = std::sin(phi), cosPhi = std::cos(phi);
  const double sin2Phi = std::sin(2.0 * phi), cos2Phi = std::cos(2.0 * phi);

  const double A = cosDip * cosRake * cosPhi + sinRake * cos2Dip * sinPhi;
  const double B = sinRake * cos2Dip * cosPhi - cosDip * cosRake * sinPhi;
  const double C = cosRake * sinDip * sin2Phi - sinRake * sinDip * cosDip * cos2Phi;
  const double D = cosRake * sinDip * cos2Phi + sinRake * sinDip * cosDip * sin2Phi;
  const double S = sinRake * sinDip * cosDip;

  const auto root = [](double a, double b) { return std::sqrt(a * a + b * b); };
  return {.x = root(k2 * A, k5 * C + k4 * S), .y = root(k1 * B, k3 * D)};
}

}  // namespace krosac
