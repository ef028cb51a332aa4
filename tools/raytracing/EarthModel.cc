#include "raytracing/EarthModel.h"

#include <utility>

namespace krosac::raytracing {

double Velocity::at(double radius) const {
  const double x = radius / kEarthRadius;
  return c[0] + x * (c[1] + x * (c[2] + x * c[3]));
}

double Velocity::exponentAt(double radius) const {
  const double x = radius / kEarthRadius;
  return x * (c[1] + x * (2.0 * c[2] + x * 3.0 * c[3])) / at(radius);
}

EarthModel::EarthModel(std::vector<Layer> layers) : layers_(std::move(layers)) {
  for (const Layer& layer : layers_) {
    const bool fluid = layer.s.at(layer.top) == 0.0;
    if (fluid && coreRadius_ == 0.0) coreRadius_ = layer.top;
    if (fluid) innerCoreRadius_ = layer.bottom;
  }
}

EarthModel EarthModel::linearInDepth(const std::vector<Node>& nodes) {
  std::vector<Layer> layers;
  for (std::size_t i = 1; i < nodes.size(); ++i) {
    const Node &upper = nodes[i - 1], &lower = nodes[i];
    if (lower.depth == upper.depth) continue;
    const double top = kEarthRadius - upper.depth, bottom = kEarthRadius - lower.depth;
    const auto line = [&](double vTop, double vBottom) {
      const double gradient = (vTop - vBottom) / (top - bottom);
      return Velocity{{vTop - gradient * top, gradient * kEarthRadius, 0.0, 0.0}};
    };
    layers.push_back({top, bottom, line(upper.p, lower.p), line(upper.s, lower.s)});
  }
  return EarthModel(std::move(layers));
}

}  // namespace krosac::raytracing
