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

double band(double omega, double f1, double f2, double f3, double f4) {
  const double f = omega / (2 * kPi);
  if (!(f2 > f1 && f4 > f3)) return 1;
  if (f <= f1 || f > f4) return 0;
  return (f <= f2 ? 1 - fallingEdge(f, f1, f2) : 1) * (f >= f3 ? fallingEdge(f, f3, f4) : 1);
}

TEST(SacObjectInstrument, ConvolutionMultipliesByTheResponse) {
  for (const int code : {0, 1, 2, 3}) {
    const auto s = traceOf(richNoise(100), kDelta);
    s->ConvolveInstrument(code);
    const auto response = [code](std::size_t, double omega) {
      float re, im;
      GetInstrumentResponse(code, &re, &im, static_cast<float>(omega));
      return Complex(re, im);
    };
    expectSamples(*s, slowlyFiltered(richNoise(100), kDelta, response));
  }
  // An instrument answers after a motion, not before it.
  Samples impulse(400);
  impulse[200] = 1;
  const auto s = traceOf(impulse, kDelta);
  s->RGaussianFilter(8);  // a pulse of about 10 samples to each side
  s->ConvolveInstrument(3);
  double before = 0, after = 0;
  for (int j = 0; j < 400; ++j) (j < 190 ? before : after) += std::pow(samplesIn(*s)[j], 2);
  EXPECT_LT(before, 1e-6 * after);
}

TEST(SacObjectInstrument, RemovedAfterItWasConvolvedGivesTheBandPassedInput) {
  const TemporaryFolder folder;
  const std::string path = folder.write(
      "pz", "ZEROS 2\nPOLES 2\n-6.2831855 4.712389\n-6.2831855 -4.712389\nCONSTANT 2800\n");
  // Noise without the highest frequencies, so that the response ends in the trace.
  Samples x(600);
  std::ranges::copy(noise(60), x.begin() + 200);
  const auto s = traceOf(x, kDelta);
  s->RGaussianFilter(12);
  x = samplesIn(*s);
  const float corners[] = {0.2f, 0.51f, 5, 8}, none[] = {0, 0, 0, 0};
  s->ConvolveInstrument(3);
  s->DeconvolveInstrument_TaperCorners(path, corners);
  const auto pass = [](std::size_t, double w) { return band(w, 0.2f, 0.51f, 5, 8); };
  expectSamples(*s, slowlyFiltered(x, kDelta, pass), 1e-5);  // two more transforms
  // Without a taper the zero frequency, where the instrument gives nothing, is divided by zero.
  s->DeconvolveInstrument_TaperCorners(path, none);
  EXPECT_FALSE(std::isfinite(samplesIn(*s)[0]));
}

TEST(SacObjectInstrument, TaperHasItsOwnRuleAtTheNyquistFrequency) {
  const TemporaryFolder folder;
  const std::string path = folder.write("pz", "CONSTANT 2\n");
  const double atZero = 1 - fallingEdge(0, -1, 0.5);
  const struct {
    float corners[4];
    double zero, nyquist;
  } rows[] = {{{-1, -0.5f, 5, 8}, 1, 0},
              {{0.2f, 0.5f, 5, 12}, 0, fallingEdge(10, 5, 12)},
              {{0.2f, 0.5f, 11, 12}, 0, 0},  // set to zero with the first pair
              {{-1, 0.5f, 11, 12}, atZero, atZero},
              {{0.2f, 0.2f, 5, 8}, 1, 1},  // no taper
              {{0.2f, 0.5f, 8, 8}, 1, 1}};
  for (const auto& row : rows) {
    const auto [f1, f2, f3, f4] = row.corners;
    SCOPED_TRACE(testing::Message() << f1 << " " << f2 << " " << f3 << " " << f4);
    const auto s = traceOf(richNoise(100), kDelta);
    s->DeconvolveInstrument_TaperCorners(path, row.corners);
    const auto weight = [&](std::size_t k, double w) {
      return (k == 0 ? row.zero : k == 64 ? row.nyquist : band(w, f1, f2, f3, f4)) / 2;
    };
    expectSamples(*s, slowlyFiltered(richNoise(100), kDelta, weight));
  }
}

TEST(SacObjectInstrument, RemovesABroadbandSensor) {
  // A sensor of 120 s with damping 0.707 and a pair far above the band; one zero is not listed.
  const TemporaryFolder folder;
  const std::string path =
      folder.write("pz",
                   "* made\nzeros 3\n0 0\n 0 0\npoles 4\n-0.037 0.037\n-0.037 -0.037\n"
                   "-314.2 202.3\n-314.2 -202.3\nconstant 1.4e14\n");
  const auto removal = [](std::size_t, double omega) -> Complex {
    const Complex s(0, omega);
    const Complex response =
        1.4e14 * s * s * s / (s * s + 0.074 * s + 0.002738) / (s * s + 628.4 * s + 139646.93);
    const double pass = band(omega, 0.3f, 1, 4, 8);
    return pass > 0 ? pass / std::conj(response) : 0;
  };
  const auto s = traceOf(richNoise(200), kDelta);
  const float corners[] = {0.3f, 1, 4, 8};
  s->DeconvolveInstrument_TaperCorners(path, corners);
  expectSamples(*s, slowlyFiltered(richNoise(200), kDelta, removal));
}

TEST(SacObjectInstrument, AFileThatSaysNothingLeavesTheTrace) {
  const TemporaryFolder folder;
  const float corners[] = {0.2f, 0.5f, 5, 8};
  for (const std::string& path :
       {folder.path("missing"), folder.path(), folder.path() + std::string(5000, 'x'),
        folder.write("empty", ""), folder.write("text", "no response\n1 2\n3 4\n"),
        folder.write("counts", "POLES many\nZEROS -3\n"),
        folder.write("nan", "POLES 1\nnan 0\nCONSTANT 3\n"), folder.write("inf", "ZEROS 1\n1 inf"),
        folder.write("huge", "ZEROS 1\n1 1\nCONSTANT 1e99\n")}) {
    const CapturedLog log;
    const auto s = traceOf(richNoise(50), kDelta);
    testing::internal::CaptureStderr();  // where unreadable files are told of, too
    s->DeconvolveInstrument_TaperCorners(path, corners);
    testing::internal::GetCapturedStderr();
    expectUnchanged(*s, richNoise(50));
    EXPECT_EQ(log.texts, std::vector{"No instrument response in " + path +
                                     "; the seismogram is left as it is."});
  }
}

}  // namespace
}  // namespace krosac
