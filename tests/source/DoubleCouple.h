// Far-field radiation of a double couple (Aki and Richards, 1980) by projection of its moment
// tensor, built from unit vectors along strike and up dip. Angles in degrees; axes north, east and
// down.
#ifndef KROSAC_TESTS_SOURCE_DOUBLECOUPLE_H
#define KROSAC_TESTS_SOURCE_DOUBLECOUPLE_H

#include <array>
#include <cmath>
#include <numbers>

inline constexpr double kDegree = std::numbers::pi / 180;

using Vector3 = std::array<double, 3>;

inline double dot(const Vector3& a, const Vector3& b) {
  return a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
}

struct DoubleCouple {
  struct Pattern {
    double P, SV, SH;
  };
  DoubleCouple(double strike, double dip, double rake) {
    const double f = strike * kDegree, d = dip * kDegree, l = rake * kDegree;
    const Vector3 along = {std::cos(f), std::sin(f), 0};
    const Vector3 upDip = {std::cos(d) * along[1], -std::cos(d) * along[0], -std::sin(d)};
    for (std::size_t i = 0; i < 3; ++i) slip[i] = std::cos(l) * along[i] + std::sin(l) * upDip[i];
    normal = {-std::sin(d) * along[1], std::sin(d) * along[0], -std::cos(d)};
  }
  double project(const Vector3& a, const Vector3& b) const {
    return dot(a, slip) * dot(b, normal) + dot(a, normal) * dot(b, slip);
  }
  // For a ray whose angle from the downward vertical has this sine and cosine.
  Pattern pattern(double azimuth, double sine, double cosine) const {
    const double x = std::cos(azimuth * kDegree), y = std::sin(azimuth * kDegree);
    const Vector3 ray = {sine * x, sine * y, cosine}, sv = {cosine * x, cosine * y, -sine};
    return {project(ray, ray), project(ray, sv), project(ray, {-y, x, 0})};
  }

  Vector3 slip, normal;
};

#endif
