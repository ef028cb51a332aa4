// Travel times of one kind of ray, a source depth given, as a function of distance.
#ifndef KROSAC_TOOLS_RAYTRACING_PHASECURVE_H
#define KROSAC_TOOLS_RAYTRACING_PHASECURVE_H

#include <functional>
#include <vector>

#include "raytracing/Shells.h"

namespace krosac::raytracing {

// A part of the Earth that a ray crosses once, or in which it turns, `ways` times in all.
struct Leg {
  const Shells* shells;
  int ways;
  bool turns;
};

// An arrival at a distance: its ray parameter (s/rad) and time (s).
struct Arrival {
  double p, time;
};

// Distance and time of all rays that consist of the same legs. The range of ray parameters follows
// from the legs. It is sampled between all corners of the curve, densely towards them, and turning
// points of the distance (caustics) are added to the samples, so that the distance is monotone from
// sample to sample.
class PhaseCurve {
 public:
  explicit PhaseCurve(std::vector<Leg> legs);

  // No ray has these legs.
  bool empty() const { return samples_.empty(); }

  // All arrivals at a distance (rad).
  std::vector<Arrival> arrivals(double distance) const;

  // The arrival that follows the boundary where the ray of the least or the greatest ray parameter
  // grazes it, at a distance (rad) beyond that ray's; none of the time -1 before it.
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
