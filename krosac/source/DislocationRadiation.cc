#include <cmath>

#include "krosac/source/Dislocation.h"
#include "krosac/source/internal/Radiation.h"

namespace krosac {

// The terms of the coefficients of one ray, in single precision.
struct Dislocation::Ray {
  float p, eta, velocitySquared;
  float sR, qR, pR, pL, qL;
};

Dislocation::Ray Dislocation::rayTo(float azimuth, float rayParameter, float velocity) const {
  const auto single = [](double value) { return static_cast<float>(value); };
  const double phi = single((azimuth - strike_) * kShortRadiansPerDegree);
  const auto terms = radiationTerms({sd_, cd_, c2d_, sr_, cr_},
                                    {single(std::sin(phi)), single(std::cos(phi)),
                                     single(std::sin(2.0 * phi)), single(std::cos(2.0 * phi))});
  const float velocitySquared = velocity * velocity;
  const float eta = std::sqrt(1.0f / velocitySquared - rayParameter * rayParameter);
  return {rayParameter,     eta,
          velocitySquared,  single(terms.sR),
          single(terms.qR), single(terms.pR),
          single(terms.pL), single(terms.qL)};
}

float Dislocation::pAmplitudeAz_RayP_Vel_Upgoing(float azimuth, float rayParameter, float velocity,
                                                 bool upgoing) const {
  const auto [p, eta, v2, sR, qR, pR, pL, qL] = rayTo(azimuth, rayParameter, velocity);
  const float kP = upgoing ? -2.0f : 2.0f;
  return -(kP * p * eta * qR - p * p * pR + (p * p - 2.0f * eta * eta) * sR);
}

float Dislocation::svAmplitudeAz_RayP_Vel_Upgoing(float azimuth, float rayParameter, float velocity,
                                                  bool upgoing) const {
  const auto [p, eta, v2, sR, qR, pR, pL, qL] = rayTo(azimuth, rayParameter, velocity);
  const float kS = upgoing ? -1.0f : 1.0f;
  return -((eta * eta - p * p) * qR - kS * p * eta * pR + 3.0f * kS * p * eta * sR);
}

float Dislocation::shAmplitudeAz_RayP_Vel_Upgoing(float azimuth, float rayParameter, float velocity,
                                                  bool upgoing) const {
  const auto [p, eta, v2, sR, qR, pR, pL, qL] = rayTo(azimuth, rayParameter, velocity);
  const float kS = upgoing ? -1.0f : 1.0f;
  const float cotangent = p == 0.0f ? static_cast<float>(eta / 0.0001) : eta / p;
  return kS * cotangent / v2 * qL + pL / v2;
}

float Dislocation::ComputePWaveAmplitudeAz_RayP_Vel(float azimuth, float rayParameter,
                                                    float velocity) const {
  return pAmplitudeAz_RayP_Vel_Upgoing(azimuth, rayParameter, velocity, false);
}

float Dislocation::ComputeSVWaveAmplitudeAz_RayP_Vel(float azimuth, float rayParameter,
                                                     float velocity) const {
  return svAmplitudeAz_RayP_Vel_Upgoing(azimuth, rayParameter, velocity, false);
}

// The up-going coefficient, unlike the two above: intended.
float Dislocation::ComputeSHWaveAmplitudeAz_RayP_Vel(float azimuth, float rayParameter,
                                                     float velocity) const {
  return shAmplitudeAz_RayP_Vel_Upgoing(azimuth, rayParameter, velocity, true);
}

}  // namespace krosac
