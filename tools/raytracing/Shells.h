// Distance and time of rays through a part of the Earth, in closed form.
//
// With the slowness u = r / v and kappa = d ln r / d ln u, a ray of the ray parameter p (s/rad) and
// s = sqrt(u^2 - p^2) has
//
//   time = integral of kappa ds,   distance = integral of kappa p / (s^2 + p^2) ds
//
// (Bullen 1963, An introduction to the theory of seismology, chapter 7). Where the velocity is a
// power of the radius, kappa is constant and both are elementary. Here kappa is a parabola in u^2
// inside each thin shell, which keeps them so, joins the shells smoothly, and is exact at the
// turning point, where s = 0.
#ifndef KROSAC_TOOLS_RAYTRACING_SHELLS_H
#define KROSAC_TOOLS_RAYTRACING_SHELLS_H

#include <vector>

#include "raytracing/EarthModel.h"

namespace krosac::raytracing {

// One way or path of a ray: distance (rad) and time (s).
struct Path {
  double distance = 0.0, time = 0.0;
};

class Shells {
 public:
  // The shells for one wave between two radii (km), which may be equal.
  Shells(const EarthModel& model, Wave wave, double top, double bottom);

  // The ray's way from the top down to where it turns, or to the bottom.
  Path down(double p) const;

  bool empty() const { return shells_.empty(); }
  double topSlowness() const { return shells_.front().uTop; }
  double bottomSlowness() const { return shells_.back().uBottom; }
  // The slowness nowhere undercut: a ray of a smaller ray parameter passes through.
  double leastSlowness() const;
  // The slownesses on both sides of each boundary of the model's layers, and at both ends. There
  // the distance as a function of p has a corner or a vertical tangent.
  const std::vector<double>& layerSlownesses() const { return layerSlownesses_; }

 private:
  struct Shell {
    double uTop, uBottom;
    double k0, k1, k2;  // kappa = k0 + k1 u^2 + k2 u^4

    // The primitives of time and distance at the upper or lower side, where u is known.
    Path primitive(double p, double u) const;
  };
  static Shell shellBetween(const Velocity& velocity, double top, double bottom);

  std::vector<Shell> shells_;
  std::vector<double> layerSlownesses_;
};

}  // namespace krosac::raytracing

#endif
