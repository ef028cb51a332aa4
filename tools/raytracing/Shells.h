// Closed-form distance and time of rays through a part of the Earth.
//
// With the slowness u = r / v and kappa = d ln r / d ln u, a ray of the ray parameter p (s/rad) and
// s = sqrt(u^2 - p^2) has
//
//   time = integral of kappa ds,   distance = integral of kappa p / (s^2 + p^2) ds
//
// (Bullen 1963, An introduction to the theory of seismology, chapter 7). Where the velocity is a
// power of the radius, kappa is constant and both integrals are elementary. Here kappa is a
// parabola in u^2 within each thin shell: the integrals remain elementary, kappa is continuous
// across shells, and the turning point, where s = 0, is exact.
#ifndef KROSAC_TOOLS_RAYTRACING_SHELLS_H
#define KROSAC_TOOLS_RAYTRACING_SHELLS_H

#include <vector>

#include "raytracing/EarthModel.h"

namespace krosac::raytracing {

// Distance (rad) and time (s) of a ray or of a part of it.
struct Path {
  double distance = 0.0, time = 0.0;
};

class Shells {
 public:
  // Builds the shells for one wave between two radii (km), which may be equal.
  Shells(const EarthModel& model, Wave wave, double top, double bottom);

  // Returns the path from the top down to the turning point or the bottom.
  Path down(double p) const;

  bool empty() const { return shells_.empty(); }
  double topSlowness() const { return shells_.front().uTop; }
  double bottomSlowness() const { return shells_.back().uBottom; }
  // The minimum slowness: a ray with a smaller ray parameter passes through.
  double leastSlowness() const;
  // The slownesses on both sides of each layer boundary and at both ends, where the distance as a
  // function of p has a corner or a vertical tangent.
  const std::vector<double>& layerSlownesses() const { return layerSlownesses_; }

 private:
  struct Shell {
    double uTop, uBottom;
    double k0, k1, k2;  // kappa = k0 + k1 u^2 + k2 u^4

    // Antiderivatives of distance and time at the top or bottom of the shell.
    Path antiderivative(double p, double u) const;
  };
  static Shell shellBetween(const Velocity& velocity, double top, double bottom);

  std::vector<Shell> shells_;
  std::vector<double> layerSlownesses_;
};

}  // namespace krosac::raytracing

#endif
