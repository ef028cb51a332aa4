// Delays of P-to-S conversions beneath a receiver.
#ifndef KROSAC_TOOLS_RAYTRACING_PSDELAYS_H
#define KROSAC_TOOLS_RAYTRACING_PSDELAYS_H

#include <vector>

#include "raytracing/EarthModel.h"

namespace krosac::raytracing {

// Returns the delay (s) after P of the wave that converts from P to S at each depth (km,
// ascending), both with the ray parameter p (s/rad): the integral over r, from the depth to the
// surface, of sqrt(1/vs^2 - (p/r)^2) - sqrt(1/vp^2 - (p/r)^2), where a negative argument counts as
// 0.
std::vector<double> psDelays(const EarthModel& model, double p, const std::vector<double>& depths);

}  // namespace krosac::raytracing

#endif
