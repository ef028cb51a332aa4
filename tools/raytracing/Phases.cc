#include "raytracing/Phases.h"

#include <algorithm>
#include <numbers>

namespace krosac::raytracing {
namespace {

constexpr Arrival kNone{0.0, -1.0};

Arrival earliest(const std::vector<Arrival>& arrivals) {
  Arrival first = kNone;
  for (const Arrival& arrival : arrivals) {
    if (first.time < 0.0 || arrival.time < first.time) first = arrival;
  }
  return first;
}

}  // namespace

Column::Mantle::Mantle(const EarthModel& model, Wave wave, double sourceRadius)
    : up(model, wave, kEarthRadius, sourceRadius),
      down(model, wave, sourceRadius, model.coreRadius()),
      whole(model, wave, kEarthRadius, model.coreRadius()) {}

Column::Column(const EarthModel& model, double depth)
    : p_(model, Wave::P, kEarthRadius - depth),
      s_(model, Wave::S, kEarthRadius - depth),
      outerCore_(model, Wave::P, model.coreRadius(), model.innerCoreRadius()),
      innerCore_(model, Wave::P, model.innerCoreRadius(), 0.0) {}

std::vector<Leg> Column::legsOf(const std::string& phase) const {
  const bool depthPhase = phase.size() == 3 && phase.front() == 'l';
  const Mantle& from = mantle(phase[depthPhase ? 1 : 0]);
  const Mantle& to = mantle(phase[std::min<std::size_t>(2, phase.size() - 1)]);
  const Leg fromSourceUp{&from.up, 1, false}, fromSourceDown{&from.down, 1, false};

  // Up to the surface, then down again as the second wave.
  if (depthPhase) return {fromSourceUp, {&to.whole, 2, true}};
  if (phase.size() == 1) return {fromSourceUp, {&from.down, 2, true}};
  // Two turning rays in sequence.
  if (phase.size() == 2) return {fromSourceUp, {&from.down, 2, true}, {&to.whole, 2, true}};

  // Down to the core, through it or reflected at it, and up to the surface.
  std::vector<Leg> legs{fromSourceDown, {&to.down, 1, false}, {&to.up, 1, false}};
  if (phase[1] == 'c') return legs;
  const bool inInnerCore = phase == "pkikp" || phase.ends_with("df");
  legs.push_back({&outerCore_, 2, !inInnerCore});
  if (inInnerCore) legs.push_back({&innerCore_, 2, true});
  return legs;
}

std::vector<Arrival> Column::arrivals(const std::string& phase, const std::vector<double>& degrees,
                                      Beyond beyond) const {
  const PhaseCurve curve(legsOf(phase));
  const bool direct = phase.size() == 1;
  // A direct wave can also leave the source upward.
  const PhaseCurve upward(direct ? std::vector<Leg>{{&mantle(phase[0]).up, 1, false}}
                                 : std::vector<Leg>{});
  const PhaseCurve reflected(
      phase == "pkikp"
          ? std::vector<Leg>{{&p_.down, 2, false}, {&p_.up, 1, false}, {&outerCore_, 2, false}}
          : std::vector<Leg>{});
  std::vector<Arrival> times;
  for (const double degree : degrees) {
    const double distance = degree * std::numbers::pi / 180.0;
    std::vector<Arrival> rays = curve.arrivals(distance);
    for (const Arrival& ray : upward.arrivals(distance)) rays.push_back(ray);
    if (beyond == Beyond::Diffracts) {
      const Arrival along = direct ? curve.alongLeast(distance) : curve.alongGreatest(distance);
      if (along.time >= 0.0) rays.push_back(along);
    }
    if (rays.empty()) rays = reflected.arrivals(distance);
    times.push_back(phase == "pkpab" && !rays.empty() ? rays.back() : earliest(rays));
  }
  return times;
}

}  // namespace krosac::raytracing
