#include "krosac/source/Dislocation.h"

#include <gtest/gtest.h>

#include "DoubleCouple.h"

namespace krosac {
namespace {

// The short constant has a relative error of 2.8e-8: 1.7e-7 per turn.
constexpr double kShortConstant = 4e-7;
// A few single-precision roundings of angles up to 360 and of terms up to 3. For nearly horizontal
// rays the vertical slowness is the root of a small difference.
constexpr double kAngle = 1e-4, kSingle = 4e-6;

// Sets all angles of one object through its setters.
template <typename Check>
void forAllFaults(Check check) {
  const auto fault = make<Dislocation>();
  for (float strike = -160; strike <= 360; strike += 65)
    for (float dip = 10; dip <= 80; dip += 14)
      for (float rake = -170; rake <= 170; rake += 20) {
        SCOPED_TRACE(testing::Message() << strike << "/" << dip << "/" << rake);
        fault->SetStrike(strike);
        fault->SetDip(dip);
        fault->SetRake(rake);
        check(*fault, DoubleCouple(strike, dip, rake));
      }
}

void expectNear(const Vector3& a, const Vector3& b, double factor, double tolerance) {
  for (std::size_t i = 0; i < 3; ++i) EXPECT_NEAR(a[i], factor * b[i], tolerance) << i;
}

TEST(Dislocation, VectorsAndAxes) {
  forAllFaults([](const Dislocation& d, const DoubleCouple& truth) {
    const auto &p = d.GetPaxis(), &t = d.GetTaxis(), &b = d.GetBaxis();
    expectNear(d.GetSlipVector(), truth.slip, 1, kShortConstant);
    expectNear(d.GetNormalVector(), truth.normal, 1, kShortConstant);
    EXPECT_NEAR(truth.project(p, p), -1, kShortConstant);
    EXPECT_NEAR(truth.project(t, t), 1, kShortConstant);
    expectNear(b, {p[1] * t[2] - p[2] * t[1], p[2] * t[0] - p[0] * t[2], 0}, 1, 1e-14);
    for (const auto& [axis, azimuth, plunge] : {std::tuple{p, d.GetPAzimuth(), d.GetPPlunge()},
                                                {t, d.GetTAzimuth(), d.GetTPlunge()},
                                                {b, d.GetBAzimuth(), d.GetBPlunge()}}) {
      // Mirrored and not wrapped.
      const double mirrored = std::atan2(axis[0], axis[1]) / kDegree + 90 + (axis[2] < 0 ? 180 : 0);
      EXPECT_NEAR(azimuth, mirrored, kAngle);
      EXPECT_NEAR(std::sin(plunge * kDegree), std::fabs(axis[2]), kSingle);
    }
  });
}

TEST(Dislocation, AuxiliaryPlaneExchangesSlipAndNormal) {
  forAllFaults([](const Dislocation& d, const DoubleCouple& truth) {
    const double sign = d.GetRake() > 0 ? 1 : -1;
    const DoubleCouple auxiliary(d.GetAuxStrike(), d.GetAuxDip(), sign * d.GetAuxRake());
    EXPECT_LE(std::fabs(d.GetAuxStrike()), 180);
    expectNear(auxiliary.normal, truth.slip, sign, kSingle);
    expectNear(auxiliary.slip, truth.normal, sign, kSingle);
  });
  const float special[][6] = {
      {30, 0, -89.1f, 30, 90, 0},   {30, 0, -91, -150, 90, 0},
      {200, 180, 10, 20, 90, 0},    {-400, 0, 45, 140, 90, 0},
      {0, 90, 89.95f, 180, 0, 0},   {30, 60, 0, -120, 90, 150},
      {0, 0.0057f, 45, 180, 90, 0}, {0, 0.0058f, 45, -135, 89.9959f, 90.0041f}};
  for (const auto& [strike, dip, rake, auxStrike, auxDip, auxRake] : special) {
    SCOPED_TRACE(testing::Message() << strike << "/" << dip << "/" << rake);
    const auto d = make<Dislocation>()->initWithSDR(strike, dip, rake);
    expectNear({d->GetAuxStrike(), d->GetAuxDip(), d->GetAuxRake()}, {auxStrike, auxDip, auxRake},
               1, kAngle);
  }
}

TEST(Dislocation, RadiationAgreesWithTheMomentTensor) {
  const double sets[][6] = {{360, -0.08781, -0.01324, -2.65306, 1.83101, 0.93984},
                            {359, -0.1451, -0.17929, -3.34124, 3.32004, 1.9275}};
  forAllFaults([&](const Dislocation& d, const DoubleCouple& truth) {
    for (const float azimuth : {-75.0f, 128.0f}) {
      for (const float depth : {-0.95f, -0.6f, -0.05f, 0.05f, 0.5f, 0.9f}) {
        const bool up = depth < 0;
        const float v = 3.5f, sine = std::sqrt(1 - depth * depth), p = sine / v;
        const float P = d.pAmplitudeAz_RayP_Vel_Upgoing(azimuth, p, v, up);
        const float SV = d.svAmplitudeAz_RayP_Vel_Upgoing(azimuth, p, v, up);
        const float SH = d.shAmplitudeAz_RayP_Vel_Upgoing(azimuth, p, v, up);
        const auto pattern = truth.pattern(azimuth, sine, depth);
        const double reversedSH = truth.pattern(azimuth, sine, -depth).SH;
        expectNear({v * v * P, v * v * SV, p * v * v * v * SH}, {pattern.P, pattern.SV, reversedSH},
                   1, kSingle);
        EXPECT_EQ(up ? P : d.ComputePWaveAmplitudeAz_RayP_Vel(azimuth, p, v), P);
        EXPECT_EQ(up ? SV : d.ComputeSVWaveAmplitudeAz_RayP_Vel(azimuth, p, v), SV);
        EXPECT_EQ(up ? d.ComputeSHWaveAmplitudeAz_RayP_Vel(azimuth, p, v) : SH, SH);
      }
      const auto radial = truth.pattern(azimuth, 1, 0), down = truth.pattern(azimuth, 0, 1);
      const double across = truth.pattern(azimuth + 90, 1, 0).P;
      for (const auto& [period, k1, k2, k3, k4, k5] : sets) {
        const auto surface = d.ComputeSurfWaveAmplitudeAz_Period(azimuth, float(period));
        const double vertical = k4 * down.P / 2 - k5 * (radial.P - across) / 2;
        // Single-precision angles of up to two turns, times k3.
        EXPECT_NEAR(surface.x, std::hypot(k2 * down.SV, vertical), 5e-6);
        EXPECT_NEAR(surface.y, std::hypot(k1 * down.SH, k3 * radial.SH), 5e-6);
      }
    }
  });
  const auto level = make<Dislocation>()->initWithSDR(0, 0, 90);
  EXPECT_NEAR(level->shAmplitudeAz_RayP_Vel_Upgoing(0, 0, 4, false), -156.25, 156.25 * kSingle);
  EXPECT_TRUE(std::isnan(level->pAmplitudeAz_RayP_Vel_Upgoing(50, 0.26f, 4, false)));
}

}  // namespace
}  // namespace krosac
