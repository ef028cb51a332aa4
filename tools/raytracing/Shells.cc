#include "raytracing/Shells.h"

#include <algorithm>
#include <cmath>

namespace krosac::raytracing {
namespace {

// Halving this thickness changes no time by more than 1e-5 s.
constexpr double kMaxThickness = 20.0;  // km

}  // namespace

Shells::Shells(const EarthModel& model, Wave wave, double top, double bottom) {
  for (const Layer& layer : model.layers()) {
    const double from = std::min(layer.top, top), to = std::max(layer.bottom, bottom);
    if (from <= to) continue;
    const int count = static_cast<int>(std::ceil((from - to) / kMaxThickness));
    const auto boundary = [&](int i) { return i == count ? to : from - (from - to) * i / count; };
    for (int i = 0; i < count; ++i) {
      shells_.push_back(shellBetween(layer.velocity(wave), boundary(i), boundary(i + 1)));
    }
    layerSlownesses_.push_back(shells_[shells_.size() - static_cast<std::size_t>(count)].uTop);
    layerSlownesses_.push_back(shells_.back().uBottom);
  }
}

Shells::Shell Shells::shellBetween(const Velocity& velocity, double top, double bottom) {
  // The parabola through the ends and the middle, by divided differences from the bottom.
  double w[3], kappa[3];
  for (int i = 0; i < 3; ++i) {
    const double radius = i == 0 ? bottom : i == 1 ? 0.5 * (top + bottom) : top;
    const double u = radius / velocity.at(radius);
    w[i] = u * u;
    kappa[i] = 1.0 / (1.0 - velocity.exponentAt(radius));
  }
  const double slope = (kappa[1] - kappa[0]) / (w[1] - w[0]);
  const double nextSlope = (kappa[2] - kappa[1]) / (w[2] - w[1]);
  const double k2 = (nextSlope - slope) / (w[2] - w[0]);
  const double k1 = slope - k2 * (w[0] + w[1]);
  const double k0 = kappa[0] - w[0] * (k1 + w[0] * k2);
  return {std::sqrt(w[2]), std::sqrt(w[0]), k0, k1, k2};
}

Path Shells::Shell::antiderivative(double p, double u) const {
  const double s = std::sqrt((u - p) * (u + p));
  const double ofU2 = s * (s * s / 3.0 + p * p);
  const double ofU4 = s * (s * s * (s * s / 5.0 + 2.0 / 3.0 * p * p) + p * p * p * p);
  return {k0 * std::atan2(s, p) + p * (k1 * s + k2 * ofU2), k0 * s + k1 * ofU2 + k2 * ofU4};
}

Path Shells::down(double p) const {
  Path path;
  for (const Shell& shell : shells_) {
    if (p >= shell.uTop) break;
    const Path upper = shell.antiderivative(p, shell.uTop);
    path.distance += upper.distance;
    path.time += upper.time;
    if (p >= shell.uBottom) break;
    const Path lower = shell.antiderivative(p, shell.uBottom);
    path.distance -= lower.distance;
    path.time -= lower.time;
  }
  return path;
}

double Shells::leastSlowness() const {
  double least = topSlowness();
  for (const Shell& shell : shells_) least = std::min({least, shell.uTop, shell.uBottom});
  return least;
}

}  // namespace krosac::raytracing
