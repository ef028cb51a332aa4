#include "raytracing/PsDelays.h"

#include "raytracing/Shells.h"

namespace krosac::raytracing {
namespace {

// The integral of sqrt(1/v^2 - (p/r)^2) over r between two depths, that is, tau(p).
double tauBetween(const EarthModel& model, Wave wave, double p, double upper, double lower) {
  const Path path = Shells(model, wave, kEarthRadius - upper, kEarthRadius - lower).down(p);
  return path.time - p * path.distance;
}

}  // namespace

std::vector<double> psDelays(const EarthModel& model, double p, const std::vector<double>& depths) {
  std::vector<double> delays;
  double delay = 0.0, above = 0.0;
  for (const double depth : depths) {
    delay +=
        tauBetween(model, Wave::S, p, above, depth) - tauBetween(model, Wave::P, p, above, depth);
    above = depth;
    delays.push_back(delay);
  }
  return delays;
}

}  // namespace krosac::raytracing
