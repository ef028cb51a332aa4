#include "krosac/dsp/Butterworth.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <complex>
#include <numbers>
#include <vector>

namespace krosac {
namespace {

constexpr double kPi = std::numbers::pi;
constexpr float kDt = 0.01f;

using Filter = decltype(&GRLPBUfilter);

std::vector<float> impulseResponse(Filter filter, int npts, int at, int passes, int poles,
                                   float fc) {
  std::vector<float> x(npts, 0.0f);
  x[at] = 1.0f;
  filter(x.data(), npts, passes, poles, kDt, fc);
  return x;
}

double amplitude(const std::vector<float>& x, double f) {
  std::complex<double> sum;
  for (std::size_t j = 0; j < x.size(); ++j)
    sum += double(x[j]) * std::polar(1.0, 2.0 * kPi * f * kDt * double(j));
  return std::abs(sum);
}

// A Butterworth amplitude at the warped frequency ratio; an odd design lacks its real pole.
double expectedAmplitude(double ratio, int poles) {
  const double missing = poles % 2 == 1 ? 1.0 + ratio * ratio : 1.0;
  return std::sqrt(missing / (1.0 + std::pow(ratio, 2.0 * poles)));
}

TEST(Butterworth, AmplitudeResponseIsTheDesign) {
  for (const int poles : {2, 3, 4, 7, 8}) {
    for (const float fc : {3.0f, 12.0f, 35.0f}) {
      for (const bool lowPass : {true, false}) {
        const Filter filter = lowPass ? GRLPBUfilter : GRHPBUfilter;
        const auto once = impulseResponse(filter, 8192, 0, 1, poles, fc);
        const auto three = impulseResponse(filter, 8192, 0, 3, poles, fc);
        const auto twice = impulseResponse(filter, 8192, 4096, 2, poles, fc);
        EXPECT_EQ(once, three);
        for (const double f : {0.0, 0.5, 2.0, 2.9, 3.0, 5.0, 11.0, 12.0, 20.0, 35.0, 44.0, 49.0}) {
          const double ratio = std::tan(kPi * f * kDt) / std::tan(kPi * fc * kDt);
          const double expected = lowPass ? expectedAmplitude(ratio, poles)
                                  : f > 0 ? expectedAmplitude(1.0 / ratio, poles)
                                          : 0.0;
          // Single-precision coefficients move poles near the unit circle by some 1e-5.
          EXPECT_NEAR(amplitude(once, f), expected, 3e-4) << poles << " " << fc << " " << f;
          EXPECT_NEAR(amplitude(twice, f), expected * expected, 6e-4) << poles << " " << fc;
        }
      }
    }
  }
}

TEST(Butterworth, TwoPassesKeepAPulseCentredAndOnePassDelaysIt) {
  constexpr int kCentre = 500;
  std::vector<float> pulse(1001);
  for (int j = 0; j <= 1000; ++j)
    pulse[j] = static_cast<float>(std::exp(-0.01 * (j - kCentre) * (j - kCentre)));
  std::vector<float> once = pulse, twice = pulse;
  GRLPBUfilter(once.data(), 1001, 1, 4, kDt, 4.0f);
  GRLPBUfilter(twice.data(), 1001, 2, 4, kDt, 4.0f);
  EXPECT_GT(std::max_element(once.begin(), once.end()) - once.begin(), kCentre + 3);
  for (int k = 1; k < 400; ++k) ASSERT_NEAR(twice[kCentre + k], twice[kCentre - k], 2e-5) << k;
}

TEST(Butterworth, PoleCountsThatDoNotFitAndEmptyTracesChangeNothing) {
  const std::vector<float> samples = {1, -2, 3, -4};
  std::vector<float> data = samples;
  for (const int poles : {-2147483647, -4, 0, 1, 22, 23, 2147483647}) {
    GRLPBUfilter(data.data(), 4, 2, poles, kDt, 3.0f);
    GRHPBUfilter(data.data(), 4, 1, poles, kDt, 3.0f);
    BUFilterDesign design;
    BUroots(&design, poles);
    EXPECT_EQ(design.nSections, 0) << poles;
  }
  for (const int npts : {0, -1, -2147483647}) GRLPBUfilter(data.data(), npts, 2, 4, kDt, 3.0f);
  EXPECT_EQ(data, samples);

  GRLPBUfilter(data.data(), 4, 1, 21, kDt, 3.0f);
  EXPECT_NE(data, samples);
}

TEST(Butterworth, CornersOutOfRangeStayInsideTheTrace) {
  for (const float fc : {0.0f, -1.0f, 50.0f, 75.0f, 1e30f, std::nanf("")}) {
    for (const Filter filter : {GRLPBUfilter, GRHPBUfilter}) {
      std::vector<float> data(66, 1.0f);
      filter(data.data() + 1, 64, 2, 20, kDt, fc);
      EXPECT_EQ(data.front(), 1.0f) << fc;
      EXPECT_EQ(data.back(), 1.0f) << fc;
      EXPECT_NE(data, std::vector<float>(66, 1.0f)) << fc;
    }
  }
}

TEST(Butterworth, StepsTakeAnySectionCount) {
  BUFilterDesign design = {};
  design.nSections = 1000;
  for (float& gain : design.sectionGain) gain = 1.0f;
  for (float& re : design.poleRe) re = -1.0f;
  std::vector<float> data = {1, 2, 3};
  LPtoHP(&design);
  CutOffs(&design, warp(0.1f, 2.0f));
  BiLin(&design);
  Apply(&design, data.data(), 3, 2);
  EXPECT_EQ(design.nSections, 1000);
  // tan(0.2*pi)/(2*pi), to single precision.
  EXPECT_NEAR(warp(0.1f, 2.0f), 0.11563284, 2e-8);
}

TEST(Butterworth, ThreePolesAreOneSectionAt120Degrees) {
  BUFilterDesign design;
  BUroots(&design, 3);
  EXPECT_EQ(design.nSections, 1);
  EXPECT_NEAR(design.poleRe[0], -0.5, 1e-7);
  EXPECT_NEAR(design.poleIm[0], std::sqrt(3.0) / 2.0, 1e-7);
}

}  // namespace
}  // namespace krosac
