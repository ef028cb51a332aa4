#include "krosac/source/BodyWaveResponse.h"

#include <cmath>

#include "krosac/platform/Numbers.h"
#include "krosac/source/internal/Radiation.h"
#include "krosac/timegeo/GreatCircle.h"

namespace krosac {
namespace {

constexpr double kDefaultVelocity = 6.2;
constexpr double kDefaultDensity = 2.67;
constexpr double kFourPi = 12.5663708;
constexpr double kReceiverPSlownessSquared = 0.027777777777777776;  // of 6.0 km/s
constexpr double kReceiverSSlownessSquared = 0.08333333333333333;
constexpr double kReceiverSVelocity = 3.46;

RadiationTerms termsOf(double strike, double dip, double rake, double azimuth) {
  const double phi = (azimuth - strike) * kRadiansPerDegree;
  const double delta = dip * kRadiansPerDegree, lambda = rake * kRadiansPerDegree;
  return radiationTerms(
      {std::sin(delta), std::cos(delta), std::cos(2.0 * delta), std::sin(lambda), std::cos(lambda)},
      {std::sin(phi), std::cos(phi), std::sin(2.0 * phi), std::cos(2.0 * phi)});
}

}  // namespace

void GetBWResponse(float block[13]) {
  if (!block) return;
  const auto [sR, qR, pR, pL, qL] = termsOf(block[0], block[1], block[2], block[4]);
  const double h = block[3], p = block[5];
  const double alpha = block[6] <= 0.0f ? kDefaultVelocity : block[6];
  const double rho = block[10] <= 0.0f ? kDefaultDensity : block[10];

  const double p2 = p * p;
  const double pSlowness2 = 1.0 / (alpha * alpha), sSlowness2 = 3.0 / (alpha * alpha);
  const double etaA = std::sqrt(pSlowness2 - p2), etaB = std::sqrt(sSlowness2 - p2);

  const double product = 4.0 * p2 * etaA * etaB;
  const double difference = etaB * etaB - p2;
  const double D = product + difference * difference;
  const double Rpp = (product - difference * difference) / D;
  const double Csp = -4.0 * etaB * p * difference / D;
  const double Cps = -etaA * Csp / etaB;

  // Mixes D and etaB of the source with etaRA of the receiver and a rounded velocity: intended.
  const double etaRA = std::sqrt(kReceiverPSlownessSquared - p2);
  const double etaRB = std::sqrt(kReceiverSSlownessSquared - p2);
  const double Rz = 2.0 * etaRA * difference / (D * kReceiverSVelocity * kReceiverSVelocity);
  const double Rs = etaRB * Rz / etaRA;
  const double Q = etaRA / etaRB;

  const double pDown = -p2 * pR + 2.0 * p * etaA * qR + (p2 - 2.0 * etaA * etaA) * sR;
  const double pUp = -p2 * pR - 2.0 * p * etaA * qR + (p2 - 2.0 * etaA * etaA) * sR;
  const double sUp = difference * qR + p * etaB * pR - 3.0 * p * etaB * sR;
  const double sDown = difference * qR - p * etaB * pR + 3.0 * p * etaB * sR;
  const double H1 = 2.0 * p * sSlowness2 * pL;
  const double H2 = -2.0 * etaB * sSlowness2 * qL;

  const double K = geospread(block[8]) * (10000.0 / (kFourPi * rho));

  const double output[13] = {
      -pDown * Rz * K,   -Rpp * pUp * Rz * K, -Csp * sUp * Rz * Q * K,
      sDown * Rs * K,    sUp * Rs * Rpp * K,  Cps * pUp * Rs * (etaRB / etaRA) * K,
      (H1 + H2) * K,     (H1 - H2) * K,       2.0 * h * etaA,
      h * (etaA + etaB), 2.0 * h * etaB,      -pUp * Rz * K,
      -sUp * Rz * Q * K,
  };
  for (int i = 0; i < 13; ++i) block[i] = static_cast<float>(output[i]);
}

}  // namespace krosac
