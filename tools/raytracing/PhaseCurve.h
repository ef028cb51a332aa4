// Travel times of one kind of ray from one source depth as a function of distance.
#ifndef KROSAC_TOOLS_RAYTRACING_PHASECURVE_H
#define KROSAC_TOOLS_RAYTRACING_PHASECURVE_H

#include <functional>
#include <vector>

#include "raytracing/Shells.h"

namespace krosac::raytracing {

// A part of the Earth that a ray traverses `ways` times, counting down and up. It turns there or
// passes through.
struct Leg {
  const Shells* shells;
  int ways;
  bool turns;
};

// An arrival at a distance: its ray parameter (s/rad) and time (s).
struct Arrival {
  double p, time;
};

// Distance and time of all rays with the same legs. The legs determine the range of ray parameters.
// It is sampled between the corners of the curve, more densely near them. Extrema of the distance
// (caustics) are added, so that the distance is monotonic between samples.
class PhaseCurve {
 public:
  explicit PhaseCurve(std::vector<Leg> legs);

  // True if no ray has these legs.
  bool empty() const { return samples_.empty(); }

  // All arrivals at a distance (rad).
  std::vector<Arrival> arrivals(double distance) const;

  // The arrival that diffracts along the boundary grazed by the ray of the least or greatest ray
  // parameter, at a distance (rad); its time is -1 before the distance of that ray.
  Arrival alongLeast(double distance) const { return along(samples_.front(), distance); }
  Arrival alongGreatest(double distance) const { return along(samples_.back(), distance); }

 private:
  struct Sample {
    double p, distance;
  };

  Path path(double p) const;
  Sample sample(double p) const { return {p, path(p).distance}; }
  void addCaustics();
  Sample extremeBetween(double p1, double p2, double sign) const;
  Arrival along(const Sample& grazing, double distance) const;
  Arrival arrivalOf(double p, double distance) const;
  double rayParameterBetween(Sample near, Sample far, double distance) const;

  std::vector<Leg> legs_;
  std::vector<Sample> samples_;  // ascending in p
};

}  // namespace krosac::raytracing

#endif
