#include "CapturedLog.h"
#include "SpectralTraces.h"
#include "TemporaryFolder.h"
#include "krosac/dsp/InstrumentResponse.h"

namespace krosac {
namespace {

constexpr float kDelta = 0.05f;  // a Nyquist frequency of 10 Hz

double fallingEdge(double f, double from, double to) {
  return std::cos((f - from) / (to - from) * kPi / 2);
}

double band(double f, double f1, double f2, double f3, double f4) {
  if (!(f2 > f1 && f4 > f3)) return 1;
  if (f <= f1 || f > f4) return 0;
  return (f <= f2 ? 1 - fallingEdge(f, f1, f2) : 1) * (f >= f3 ? fallingEdge(f, f3, f4) : 1);
}

TEST(SacObjectInstrument, ConvolutionMultipliesByTheResponse) {
  const Samples x = richNoise(100);
  for (const int code : {0, 1, 2, 3}) {
    const auto s = madeTrace(x, kDelta);
    s->ConvolveInstrument(code);
    expectChanged(*s);
    expectSamples(*s, slowlyFiltered(x, kDelta, [&](std::size_t, double omega) {
      float re, im;
      GetInstrumentResponse(code, &re, &im, static_cast<float>(omega));
      return Complex(re, im);
    }));
  }
  Samples impulse(400);
  impulse[200] = 1;
  for (const int code : {1, 3}) {  // instruments answer after a motion, not before it
    const auto s = madeTrace(impulse, code == 1 ? 1 : kDelta);
    s->RGaussianFilter(0.4f / s->delta());  // a pulse of about 10 samples to each side
    s->ConvolveInstrument(code);
    double before = 0, after = 0;
    for (int j = 0; j < 400; ++j) (j < 190 ? before : after) += std::pow(valuesOf(*s)[j], 2);
    EXPECT_LT(before, 1e-6 * after) << code;
  }
}

TEST(SacObjectInstrument, RemovedAfterItWasConvolvedGivesTheBandPassedInput) {
  const TemporaryFolder folder;
  const std::string path = folder.write(
      "pz", "ZEROS 2\nPOLES 2\n-6.2831855 4.712389\n-6.2831855 -4.712389\nCONSTANT 2800\n");
  // Noise without the highest frequencies, so that the response ends in the trace.
  Samples x(600);
  std::ranges::copy(noise(60), x.begin() + 200);
  const auto s = madeTrace(x, kDelta);
  s->RGaussianFilter(12);
  const Samples input = valuesOf(*s);
  const float corners[] = {0.2f, 0.51f, 5, 8}, none[] = {0, 0, 0, 0};
  s->ConvolveInstrument(3);
  s->setMSeisHasChanged(false);
  s->DeconvolveInstrument_TaperCorners(path, corners);
  expectChanged(*s);
  expectSamples(*s,
                slowlyFiltered(input, kDelta,
                               [](std::size_t, double omega) {
                                 return band(omega / (2 * kPi), 0.2f, 0.51f, 5, 8);
                               }),
                1e-5);  // two more transforms
  // Without a taper the zero frequency, where the instrument gives nothing, is divided by zero.
  s->DeconvolveInstrument_TaperCorners(path, none);
  EXPECT_FALSE(std::isfinite(valuesOf(*s)[0]));
}

TEST(SacObjectInstrument, TaperHasItsOwnRuleAtTheNyquistFrequency) {
  const TemporaryFolder folder;
  const std::string path = folder.write("pz", "CONSTANT 2\n");
  const double atZero = 1 - fallingEdge(0, -1, 0.5);
  const struct {
    float corners[4];
    double zero, nyquist;
  } rows[] = {{{0.2f, 0.5f, 5, 8}, 0, 0},
              {{0.2f, 0.5f, 5, 12}, 0, fallingEdge(10, 5, 12)},
              {{0.2f, 0.5f, 11, 12}, 0, 0},  // set to zero with the first pair
              {{-1, 0.5f, 11, 12}, atZero, atZero},
              {{-1, -0.5f, 10, 12}, 1, 1},
              {{0.2f, 0.2f, 5, 8}, 1, 1},  // no taper
              {{0.2f, 0.5f, 8, 8}, 1, 1}};
  const Samples x = richNoise(100);
  for (const auto& row : rows) {
    const auto [f1, f2, f3, f4] = row.corners;
    SCOPED_TRACE(testing::Message() << f1 << " " << f2 << " " << f3 << " " << f4);
    const auto s = madeTrace(x, kDelta);
    s->DeconvolveInstrument_TaperCorners(path, row.corners);
    expectSamples(*s, slowlyFiltered(x, kDelta, [&](std::size_t k, double omega) {
      if (k % 64 == 0) return (k ? row.nyquist : row.zero) / 2;
      return band(omega / (2 * kPi), f1, f2, f3, f4) / 2;
    }));
  }
}

TEST(SacObjectInstrument, RemovesABroadbandSensor) {
  // A sensor of 120 s with damping 0.707 and a pair far above the band; one zero is not listed.
  const TemporaryFolder folder;
  const std::string path =
      folder.write("pz",
                   "* made\nzeros 3\n0 0\n 0 0\npoles 4\n-0.037 0.037\n-0.037 -0.037\n"
                   "-314.2 202.3\n-314.2 -202.3\nconstant 1.4e14\n");
  const auto response = [](double omega) {
    const Complex s(0, omega);
    return std::conj(1.4e14 * s * s * s / (s * s + 0.074 * s + 0.002738) /
                     (s * s + 628.4 * s + 139646.93));
  };
  const float zeros[6] = {}, corners[] = {0.3f, 1, 4, 8};
  const float poles[] = {-0.037f, 0.037f, -0.037f, -0.037f, -314.2f, 202.3f, -314.2f, -202.3f};
  for (const float omega : {0.001f, 0.05f, 1.0f, 60.0f, 3000.0f}) {
    float re, im;
    ComputeInstRespnse(3, zeros, 4, poles, &re, &im, omega, 1.4e14f);
    const Complex expected = response(omega);
    EXPECT_NEAR(std::abs(Complex(re, im) / expected - 1.0), 0, 3e-7) << omega;
  }
  const Samples x = richNoise(200);
  const auto s = madeTrace(x, kDelta);
  s->DeconvolveInstrument_TaperCorners(path, corners);
  expectSamples(*s, slowlyFiltered(x, kDelta, [&](std::size_t, double omega) -> Complex {
    const double pass = band(omega / (2 * kPi), 0.3f, 1, 4, 8);
    return pass > 0 ? pass / response(omega) : 0;
  }));
}

TEST(SacObjectInstrument, AFileThatSaysNothingLeavesTheTrace) {
  const TemporaryFolder folder;
  const Samples x = richNoise(50);
  const float corners[] = {0.2f, 0.5f, 5, 8};
  for (const std::string& path :
       {folder.path("missing"), folder.path(), folder.path() + std::string(5000, 'x'),
        folder.write("empty", ""), folder.write("text", "no response\n1 2\n3 4\n"),
        folder.write("bytes", std::string(3000, '\xff')),
        folder.write("counts", "POLES many\nZEROS -3\n"),
        folder.write("nan", "POLES 1\nnan 0\nCONSTANT 3\n"), folder.write("inf", "ZEROS 1\n1 inf"),
        folder.write("huge", "ZEROS 1\n1 1\nCONSTANT 1e99\n")}) {
    const CapturedLog log;
    const auto s = madeTrace(x, kDelta);
    testing::internal::CaptureStderr();  // where unreadable files are told of, too
    s->DeconvolveInstrument_TaperCorners(path, corners);
    testing::internal::GetCapturedStderr();
    EXPECT_EQ(imageOf(*s), imageOf(*madeTrace(x, kDelta))) << path;
    EXPECT_FALSE(s->mSeisHasChanged());
    ASSERT_EQ(log.texts.size(), 1u) << path;
    EXPECT_EQ(log.texts[0],
              "No instrument response in " + path + "; the seismogram is left as it is.");
  }
}

}  // namespace
}  // namespace krosac
