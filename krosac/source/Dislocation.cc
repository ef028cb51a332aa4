#include "krosac/source/Dislocation.h"

#include <cmath>
#include <cstddef>

#include "krosac/source/internal/Radiation.h"

namespace krosac {
namespace {

constexpr double kHalfPi = 1.5707963267948966;
constexpr double kRootHalf = 0.7071067811865476;
constexpr double kHorizontalFault = 0.0001;
constexpr double kVerticalSlip = 0.001;

// The argument order of atan2 (north, east) and the azimuth without wrapping are intended.
void computeAzimuthAndPlunge(const Dislocation::Vector& axis, double& azimuth, double& plunge) {
  const auto [north, east, down] = axis;
  azimuth = (std::atan2(north, east) + kHalfPi) * kShortDegreesPerRadian;
  plunge = std::atan(down / std::sqrt(north * north + east * east)) * kShortDegreesPerRadian;
  if (plunge < 0.0) {
    plunge = -plunge;
    azimuth += 180.0;
  }
}

bool isNearlyZero(double a, double b, double limit) {
  return std::fabs(a) + std::fabs(b) < limit;
}

}  // namespace

Ref<Dislocation> Dislocation::initWithSDR(float strike, float dip, float rake) {
  if (!init()) return nullptr;
  strike_ = strike;
  dip_ = dip;
  rake_ = rake;
  angleChanged();
  return Ref<Dislocation>(this);
}

void Dislocation::SetStrike(float degrees) {
  strike_ = degrees;
  angleChanged();
}

void Dislocation::SetDip(float degrees) {
  dip_ = degrees;
  angleChanged();
}

void Dislocation::SetRake(float degrees) {
  rake_ = degrees;
  angleChanged();
}

void Dislocation::angleChanged() {
  computeCSs();
  ComputeVectorsFromAngles();
  ComputeAuxillaryPlaneAngles();
}

void Dislocation::computeCSs() {
  cs_ = std::cos(strike_ * kShortRadiansPerDegree);
  ss_ = std::sin(strike_ * kShortRadiansPerDegree);
  cd_ = std::cos(dip_ * kShortRadiansPerDegree);
  sd_ = std::sin(dip_ * kShortRadiansPerDegree);
  cr_ = std::cos(rake_ * kShortRadiansPerDegree);
  sr_ = std::sin(rake_ * kShortRadiansPerDegree);
  c2d_ = std::cos(2.0 * dip_ * kShortRadiansPerDegree);
}

void Dislocation::ComputeVectorsFromAngles() {
  u_ = {cr_ * cs_ + cd_ * sr_ * ss_, cr_ * ss_ - cd_ * sr_ * cs_, -sd_ * sr_};
  nu_ = {-sd_ * ss_, sd_ * cs_, -cd_};
  for (std::size_t i = 0; i < 3; ++i) {
    p_[i] = (nu_[i] - u_[i]) * kRootHalf;
    t_[i] = (nu_[i] + u_[i]) * kRootHalf;
  }
  // The cross product of normal and slip without its third component: intended.
  b_ = {nu_[1] * u_[2] - nu_[2] * u_[1], nu_[2] * u_[0] - nu_[0] * u_[2], 0.0};
  computeAzimuthAndPlunge(p_, p_az_, p_plunge_);
  computeAzimuthAndPlunge(t_, t_az_, t_plunge_);
  computeAzimuthAndPlunge(b_, b_az_, b_plunge_);
}

void Dislocation::ComputeAuxillaryPlaneAngles() {
  const bool isHorizontal = isNearlyZero(nu_[0], nu_[1], kHorizontalFault);
  if (isHorizontal || isNearlyZero(u_[0], u_[1], kVerticalSlip)) {
    astrike_ = std::trunc(rake_ + 90.0) == 0.0 ? strike_ : strike_ + 180.0;
    adip_ = isHorizontal ? 90.0 : 0.0;
    arake_ = 0.0;
  } else {
    adip_ = std::acos(u_[2]) * kShortDegreesPerRadian;
    arake_ = std::atan2(cd_, -sd_ * cr_) * kShortDegreesPerRadian;
    const bool bothInclined = u_[2] != 0.0 && nu_[2] != 0.0;
    astrike_ = std::atan2(bothInclined ? u_[0] : -u_[0], -u_[1]) * kShortDegreesPerRadian;
  }
  if (adip_ > 90.0) {
    astrike_ += 180.0;
    adip_ = 180.0 - adip_;
  }
  if (astrike_ > 180.0) astrike_ -= 360.0;
  if (astrike_ < -180.0) astrike_ += 360.0;
}

}  // namespace krosac
