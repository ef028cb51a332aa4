// The rays that the tables are made from, against closed forms and a slow quadrature.
#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

#include "models/Models.h"
#include "raytracing/Phases.h"
#include "raytracing/PsDelays.h"

namespace krosac::raytracing {
namespace {

double radians(double degrees) {
  return degrees * std::numbers::pi / 180.0;
}

// With v = a - b r^2 rays are circles, and times are distances in the hyperbolic disc; S is twice
// as slow as P.
TEST(RayTracing, VelocityFallingWithTheSquareOfTheRadius) {
  const double a = 12.0, fall = 6.0, b = fall / (kEarthRadius * kEarthRadius), c2 = a / b;
  const EarthModel model({{kEarthRadius, 0.0, {{a, 0, -fall, 0}}, {{a / 2, 0, -fall / 2, 0}}}});
  const std::vector<double> degrees{0, 0.5, 1, 7, 30, 60, 89, 90, 91, 137, 179, 180};
  for (const double depth : {0.0, 0.1, 33.0, 300.0, 2000.0}) {
    const double r = kEarthRadius - depth;
    const Column column(model, depth);
    const auto p = column.arrivals("p", degrees, Beyond::Ends);
    const auto s = column.arrivals("s", degrees, Beyond::Ends);
    for (std::size_t i = 0; i < degrees.size(); ++i) {
      const double half = std::sin(radians(degrees[i]) / 2);
      const double chord2 = depth * depth + 4 * r * kEarthRadius * half * half;
      const double ends = (c2 - r * r) * (c2 - kEarthRadius * kEarthRadius);
      const double time = std::asinh(std::sqrt(chord2 * c2 / ends)) / std::sqrt(a * b);
      EXPECT_NEAR(p[i].time, time, 1e-6) << depth << " km, " << degrees[i];
      EXPECT_NEAR(s[i].time, 2 * time, 1e-6) << depth << " km, " << degrees[i];
    }
  }
}

// One way of the ray of p down from the top by the midpoint rule over the model's polynomials, with
// the substitution r = bottom + y^2, which takes the singularity from the turning point.
Path quadrature(const EarthModel& model, Wave wave, double p, double top, double bottom) {
  constexpr int kSteps = 20000;
  Path way;
  for (const Layer& layer : model.layers()) {
    const auto slowness = [&](double r) { return r / layer.velocity(wave).at(r); };
    const double from = std::min(top, layer.top);
    double to = std::max(bottom, layer.bottom);
    if (from <= to || slowness(from) <= p) continue;
    if (slowness(to) < p) {
      double above = from;
      while (above - to > 1e-10) (slowness((above + to) / 2) < p ? to : above) = (above + to) / 2;
      to = above;
    }
    const double step = std::sqrt(from - to) / kSteps;
    for (int i = 0; i < kSteps; ++i) {
      const double y = (i + 0.5) * step, r = to + y * y, u = slowness(r);
      const double slope = 2 * y * step / (r * std::sqrt(u * u - p * p));
      way.time += u * u * slope;
      way.distance += p * slope;
    }
    if (to > layer.bottom) break;
  }
  return way;
}

TEST(RayTracing, AgreesWithQuadratureOfThePolynomials) {
  const EarthModel model = iasp91();
  const double core = model.coreRadius(), inner = model.innerCoreRadius(), depth = 300.0;
  const double source = kEarthRadius - depth;
  const Column column(model, depth);
  const struct {
    const char* phase;
    double degrees;
    Wave down, up;
    int outerCore, innerCore;  // ways
  } rays[] = {{"p", 22, Wave::P, Wave::P, 0, 0},      {"p", 85, Wave::P, Wave::P, 0, 0},
              {"s", 60, Wave::S, Wave::S, 0, 0},      {"pcp", 40, Wave::P, Wave::P, 0, 0},
              {"scp", 25, Wave::S, Wave::P, 0, 0},    {"sksac", 100, Wave::S, Wave::S, 2, 0},
              {"pkpab", 160, Wave::P, Wave::P, 2, 0}, {"pkpdf", 150, Wave::P, Wave::P, 2, 2}};
  for (const auto& ray : rays) {
    SCOPED_TRACE(ray.phase);
    const Arrival found = column.arrivals(ray.phase, {ray.degrees}, Beyond::Ends)[0];
    Path sum;
    const auto add = [&](int ways, Wave wave, double top, double bottom) {
      const Path way = quadrature(model, wave, found.p, top, bottom);
      sum.distance += ways * way.distance;
      sum.time += ways * way.time;
    };
    add(1, ray.down, source, core);
    add(1, ray.up, kEarthRadius, core);
    add(ray.outerCore, Wave::P, core, inner);
    add(ray.innerCore, Wave::P, inner, 0);
    // The ray of p arrives at the distance, and at the time: both together bound the error.
    EXPECT_NEAR(found.time, sum.time + found.p * (radians(ray.degrees) - sum.distance), 2e-4);
    EXPECT_NEAR(sum.distance, radians(ray.degrees), 1e-6);
  }
}

TEST(RayTracing, PsDelaysAgreeWithQuadrature) {
  const EarthModel model = iasp91();
  const std::vector<double> depths{0.0, 20.0, 35.0, 410.0, 660.0, 760.0};
  // The second P turns above 760 km.
  for (const double p : {300.0, 530.0}) {
    const auto delays = psDelays(model, p, depths);
    for (std::size_t i = 0; i < depths.size(); ++i) {
      const double bottom = kEarthRadius - depths[i];
      const Path sWay = quadrature(model, Wave::S, p, kEarthRadius, bottom);
      const Path pWay = quadrature(model, Wave::P, p, kEarthRadius, bottom);
      EXPECT_NEAR(delays[i], sWay.time - pWay.time - p * (sWay.distance - pWay.distance), 1e-4);
    }
  }
}

}  // namespace
}  // namespace krosac::raytracing
