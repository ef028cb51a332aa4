// A spherical Earth model whose velocities are polynomials of the radius in each layer.
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
  // d ln v / d ln r, the exponent of the local power law.
  double exponentAt(double radius) const;
};

struct Layer {
  double top, bottom;  // radii, km
  Velocity p, s;

  const Velocity& velocity(Wave wave) const { return wave == Wave::P ? p : s; }
};

class EarthModel {
 public:
  // Takes the layers from the surface down to the centre. The S velocity is 0 in the outer core,
  // which separates mantle and inner core. A model without a fluid layer is all mantle.
  explicit EarthModel(std::vector<Layer> layers);

  struct Node {
    double depth, p, s;
  };
  // Returns the model that is linear in depth between nodes; a repeated depth is a discontinuity.
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
