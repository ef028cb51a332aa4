// Ray tracing in a medium with a closed-form solution. TableDataTest covers the Earth models.
#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

#include "models/Models.h"
#include "raytracing/Phases.h"

namespace krosac::raytracing {
namespace {

// With v = a - b r^2 rays are circular arcs and times are distances in the hyperbolic disc. The S
// velocity is half the P velocity.
TEST(RayTracing, AgreesWithTheClosedFormForQuadraticVelocity) {
  const double a = 12.0, fall = 6.0, b = fall / (kEarthRadius * kEarthRadius), c2 = a / b;
  const EarthModel model({{kEarthRadius, 0.0, {{a, 0, -fall, 0}}, {{a / 2, 0, -fall / 2, 0}}}});
  const std::vector<double> degrees{0, 0.5, 1, 7, 30, 60, 89, 90, 91, 137, 179, 180};
  for (const double depth : {0.0, 0.1, 33.0, 300.0, 2000.0}) {
    const double r = kEarthRadius - depth;
    const Column column(model, depth);
    const auto p = column.arrivals("p", degrees, Beyond::Ends);
    const auto s = column.arrivals("s", degrees, Beyond::Ends);
    for (std::size_t i = 0; i < degrees.size(); ++i) {
      const double half = std::sin(degrees[i] * std::numbers::pi / 360);
      const double chord2 = depth * depth + 4 * r * kEarthRadius * half * half;
      const double ends = (c2 - r * r) * (c2 - kEarthRadius * kEarthRadius);
      const double time = std::asinh(std::sqrt(chord2 * c2 / ends)) / std::sqrt(a * b);
      EXPECT_NEAR(p[i].time, time, 1e-6) << depth << " km, " << degrees[i];
      EXPECT_NEAR(s[i].time, 2 * time, 1e-6) << depth << " km, " << degrees[i];
    }
  }
}

}  // namespace
}  // namespace krosac::raytracing
