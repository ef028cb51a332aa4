#include "krosac/source/BodyWaveResponse.h"

#include <gtest/gtest.h>

#include <random>
#include <set>

#include "DoubleCouple.h"
#include "krosac/timegeo/GreatCircle.h"

namespace krosac {
namespace {

using Block = std::array<float, 13>;

// Solves a x + b y = e, c x + d y = f.
std::pair<double, double> solve(double a, double b, double e, double c, double d, double f) {
  return {(e * d - b * f) / (a * d - b * c), (a * f - e * c) / (a * d - b * c)};
}

// The expected output: radiation patterns of the moment tensor, and reflected potentials for zero
// traction, 2 phi_xz + psi_xx - psi_zz = 0 and lambda (phi_xx + phi_zz) + 2 mu (phi_zz + psi_xz) =
// 0, at the surface of a solid with lambda = mu.
std::array<double, 13> expectedOutput(const Block& in) {
  const double p = in[5], h = in[3], az = in[4];
  const double alpha = in[6] > 0 ? in[6] : 6.2, beta = alpha / std::sqrt(3.0);
  const double a = std::sqrt(1 / (alpha * alpha) - p * p);
  const double b = std::sqrt(1 / (beta * beta) - p * p);
  const double shear = b * b - p * p, normal = 1 / (alpha * alpha) + 2 * a * a;
  const auto [PP, PS] = solve(2 * p * a, -shear, 2 * p * a, normal, 2 * p * b, -normal);
  const auto [SP, SS] = solve(2 * p * a, -shear, shear, normal, 2 * p * b, 2 * p * b);

  const DoubleCouple source(in[0], in[1], in[2]);
  const auto down = source.pattern(az, p * alpha, a * alpha);
  const auto up = source.pattern(az, p * alpha, -a * alpha);
  const auto downS = source.pattern(az, p * beta, b * beta);
  const auto upS = source.pattern(az, p * beta, -b * beta);

  const double ra = std::sqrt(1 / 36.0 - p * p), rb = std::sqrt(1 / 12.0 - p * p), q = ra / rb;
  const double rz = 2 * ra * shear / (4 * p * p * a * b + shear * shear) / (3.46 * 3.46);
  const double rho = in[10] > 0 ? in[10] : 2.67;
  const double k = geospread(in[8]) * 1e4 / (4 * std::numbers::pi * rho);
  const double kp = rz * k / (alpha * alpha), ks = rz * k / (beta * beta);
  const double kh = 2 * k / (beta * beta * beta);
  const double P = down.P * kp, upP = up.P * kp, SV = -downS.SV * ks / q, upSV = upS.SV * ks * q;
  const double SH = downS.SH * kh, sSH = upS.SH * kh, sS = -SS * upSV / q / q,
               pS = PS * upP / q / q;
  // Converted waves have the opposite sign of the potentials.
  return {P,   PP * upP,  -SP * upSV,  SV,        sS,  pS,  SH,
          sSH, 2 * h * a, h * (a + b), 2 * h * b, upP, upSV};
}

TEST(BodyWaveResponse, AgreesWithMomentTensorAndFreeSurface) {
  std::mt19937 random(19600522);
  const Block least = {0, 0, -180, 0, 0, 0, 0, 0, 10, 0, -2, 0, 0};
  const Block most = {360, 90, 180, 50, 360, 0.11f, 8, 1, 110, 1, 4, 1, 1};
  for (int i = 0; i < 2000; ++i) {
    Block in;
    for (std::size_t j = 0; j < 13; ++j)
      in[j] = std::uniform_real_distribution<float>(least[j], most[j])(random);
    // A velocity or density of 0 or less selects the default.
    if (in[6] < 4) in[6] = static_cast<float>(-i % 2);
    if (i % 3 == 0) in[10] = 0;
    if (i % 7 == 0) in[5] = 0;
    const auto truth = expectedOutput(in);
    GetBWResponse(in.data());
    const double scale = std::fabs(truth[6]) + std::fabs(truth[7]);
    // One rounding to single precision; sums that nearly cancel lose digits.
    for (std::size_t j = 0; j < 13; ++j)
      ASSERT_NEAR(in[j], truth[j], 1e-7 * std::fabs(truth[j]) + 1e-14 * scale) << i << ": " << j;
  }
  // Above 1/6 s/km, above the P slowness and above the S slowness at the source.
  for (const auto& [rayParameter, velocity, finite] :
       {std::tuple{0.17f, 5.0f, std::set<std::size_t>{6, 7, 8, 9, 10}},
        {0.15f, 7.0f, {6, 7, 10}},
        {0.35f, 5.0f, {}}}) {
    Block beyond = {0, 45, 30, 9, 10, rayParameter, velocity, 0, 60};
    GetBWResponse(beyond.data());
    for (std::size_t i = 0; i < 13; ++i)
      EXPECT_EQ(std::isfinite(beyond[i]), finite.contains(i)) << i << " for " << rayParameter;
  }
  GetBWResponse(nullptr);
}

}  // namespace
}  // namespace krosac
