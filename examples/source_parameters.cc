// Prints the description of a focal mechanism: source_parameters STRIKE DIP RAKE [MAGNITUDE]
//
// Computes the two nodal planes, the T, B and P axes, the moment tensor and the P radiation at one
// take-off angle from the strike, dip and rake of one plane (degrees; Aki and Richards, 1980). The
// tensor is in N m with a moment magnitude, otherwise that of a unit moment.
#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <numbers>

#include "krosac/krosac.h"

namespace {

using krosac::Dislocation;
using Vector = Dislocation::Vector;  // north, east, down

double degrees(double radians) {
  return radians / krosac::kRadiansPerDegree;
}
double wrapped(double angle) {
  return angle - 360 * std::floor(angle / 360);
}

// The angles are computed from the vectors. Those of Dislocation for the auxiliary plane and the
// axes follow other conventions, see its header.
void printPlane(const char* name, Vector normal, Vector slip) {
  if (normal[2] > 0) {  // the normal of the foot wall points up
    for (double& x : normal) x = -x;
    for (double& x : slip) x = -x;
  }
  const double strike = std::atan2(-normal[0], normal[1]);
  const double dip = std::acos(std::clamp(-normal[2], -1.0, 1.0));
  const double along = slip[0] * std::cos(strike) + slip[1] * std::sin(strike);
  const double across = slip[0] * std::sin(strike) - slip[1] * std::cos(strike);  // up the dip
  const double up = across * std::cos(dip) - slip[2] * std::sin(dip);
  std::printf("%-18s %8.2f %8.2f %8.2f\n", name, wrapped(degrees(strike)), degrees(dip),
              degrees(std::atan2(up, along)));
}

void printAxis(const char* name, Vector axis) {
  if (axis[2] < 0)
    for (double& x : axis) x = -x;
  std::printf("%-18s %8.2f %8.2f\n", name, wrapped(degrees(std::atan2(axis[1], axis[0]))),
              degrees(std::asin(std::min(axis[2], 1.0))));
}

Vector cross(const Vector& a, const Vector& b) {
  return {a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]};
}

// Prints the tensor in the directions r (up), t (south) and p (east).
void printTensor(const Vector& normal, const Vector& slip, double moment) {
  const auto m = [&](int i, int k) {
    return moment * (slip[i] * normal[k] + slip[k] * normal[i]) + 0.0;
  };
  std::printf("%-18s %10s %10s %10s %10s %10s %10s\n", "Moment tensor", "Mrr", "Mtt", "Mpp", "Mrt",
              "Mrp", "Mtp");
  std::printf("%-18s %10.3e %10.3e %10.3e %10.3e %10.3e %10.3e\n", moment == 1.0 ? "" : "N m",
              m(2, 2), m(0, 0), m(1, 1), m(0, 2), -m(1, 2), -m(0, 1));
}

// Prints the amplitudes toward eight azimuths of a down-going ray at 30 degrees from the vertical.
void printRadiation(const Dislocation& source) {
  constexpr float kVelocity = 6.5f;  // km/s
  std::printf("P radiation at a take-off angle of 30 degrees\n%-18s", "azimuth");
  for (int azimuth = 0; azimuth < 360; azimuth += 45) std::printf(" %7d", azimuth);
  std::printf("\n%-18s", "amplitude");
  for (int azimuth = 0; azimuth < 360; azimuth += 45) {
    const float amplitude = source.pAmplitudeAz_RayP_Vel_Upgoing(
        static_cast<float>(azimuth), 0.5f / kVelocity, kVelocity, false);
    std::printf(" %7.3f", static_cast<double>(amplitude * kVelocity * kVelocity));
  }
  std::printf("\n");
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 4 && argc != 5)
    return std::fprintf(stderr, "source_parameters STRIKE DIP RAKE [MAGNITUDE]\n"), 2;
  auto source = krosac::make<Dislocation>();
  source->initWithSDR(std::strtof(argv[1], nullptr), std::strtof(argv[2], nullptr),
                      std::strtof(argv[3], nullptr));
  const Vector &normal = source->GetNormalVector(), &slip = source->GetSlipVector();
  // Hanks and Kanamori (1979), in N m.
  const double moment = argc == 5 ? std::pow(10.0, 1.5 * std::strtod(argv[4], nullptr) + 9.1) : 1.0;

  std::printf("%-18s %8s %8s %8s\n", "", "strike", "dip", "rake");
  printPlane("Plane 1", normal, slip);
  printPlane("Plane 2", slip, normal);
  std::printf("%-18s %8s %8s\n", "", "azimuth", "plunge");
  printAxis("T axis", source->GetTaxis());
  printAxis("B axis", cross(normal, slip));
  printAxis("P axis", source->GetPaxis());
  if (argc == 5) std::printf("%-18s %8.3e N m\n", "Moment", moment);
  printTensor(normal, slip, moment);
  printRadiation(*source);
}
