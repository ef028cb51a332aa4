// A spherical Earth of layers in which the velocities are polynomials of the radius.
#ifndef KROSAC_TOOLS_RAYTRACING_EARTHMODEL_H
#define KROSAC_TOOLS_RAYTRACING_EARTHMODEL_H

#include <array>
#include <vector>

namespace krosac::raytracing {

inline constexpr double kEarthRadius = 6371.0;  // km

enum class Wave { P, S };

// A velocity (km/s) in a layer: c0 + c1 x + c2 x^2 + c3 x^3 with x = r / kEarthRadius.
struct Velocity {
  std::array<double, 4> c;

  double at(double radius) const;
  // d ln v / d ln r, by which the velocity is locally a power of the radius.
  double exponentAt(double radius) const;
};

struct Layer {
  double top, bottom;  // radii, km
  Velocity p, s;

  const Velocity& velocity(Wave wave) const { return wave == Wave::P ? p : s; }
};

class EarthModel {
 public:
  // Layers from the surface down to the centre. S velocities are 0 in the outer core, which has the
  // inner core beneath it and the mantle above it; a model without a fluid is all mantle.
  explicit EarthModel(std::vector<Layer> layers);

  struct Node {
    double depth, p, s;
  };
  // The model through nodes, linear in depth between them; a repeated depth is a discontinuity.
  static EarthModel linearInDepth(const std::vector<Node>& nodes);

  const std::vector<Layer>& layers() const { return layers_; }
  double coreRadius() const { return coreRadius_; }
  double innerCoreRadius() const { return innerCoreRadius_; }

 private:
  std::vector<Layer> layers_;
  double coreRadius_ = 0.0, innerCoreRadius_ = 0.0;
};

}  // namespace krosac::raytracing

#endif
