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

TEST(SacObjectInstrument, ConvolutionMultipliesByTheResponse) {
  for (const int code : {1, 2, 3}) {
    const auto s = traceOf(richNoise(100), kDelta);
    s->ConvolveInstrument(code);
    const auto response = [code](std::size_t, double omega) {
      float re, im;
      GetInstrumentResponse(code, &re, &im, static_cast<float>(omega));
      return Complex(re, im);
    };
    expectSamples(*s, slowlyFiltered(richNoise(100), kDelta, response));
  }
}

TEST(SacObjectInstrument, RemovalDividesByTheResponseInABand) {
  // A sensor of 120 s with damping 0.707 and a pair far above the band; one zero is not listed.
  const TemporaryFolder folder;
  const std::string sensor = folder.write(
                        "sensor",
                        "* made\nzeros 3\n0 0\n 0 0\npoles 4\n-0.037 0.037\n-0.037 -0.037\n"
                        "-314.2 202.3\n-314.2 -202.3\nconstant 1.4e14\n"),
                    flat = folder.write("flat", "CONSTANT 2\n");
  const double atZero = 1 - fallingEdge(0, -1, 0.5);
  const struct {
    std::string path;
    float corners[4];
    double zero, nyquist;  // the weights at these, which have a rule of their own
  } rows[] = {{sensor, {0.3f, 1, 4, 8}, 0, 0},
              {flat, {-1, -0.5f, 5, 8}, 1, 0},
              {flat, {0.2f, 0.5f, 5, 12}, 0, fallingEdge(10, 5, 12)},
              {flat, {0.2f, 0.5f, 11, 12}, 0, 0},  // set to zero with the first pair
              {flat, {-1, 0.5f, 11, 12}, atZero, atZero},
              {flat, {0.2f, 0.2f, 5, 8}, 1, 1},  // no taper
              {flat, {0.2f, 0.5f, 8, 8}, 1, 1}};
  for (const auto& row : rows) {
    const auto [f1, f2, f3, f4] = row.corners;
    SCOPED_TRACE(testing::Message() << f1 << " " << f2 << " " << f3 << " " << f4);
    const auto s = traceOf(richNoise(200), kDelta);
    s->DeconvolveInstrument_TaperCorners(row.path, row.corners);
    const auto weight = [&, f1 = f1, f2 = f2, f3 = f3, f4 = f4](std::size_t k, double omega) {
      const double f = omega / (2 * kPi);
      if (k == 0) return row.zero;
      if (k == 128) return row.nyquist;
      if (!(f2 > f1 && f4 > f3)) return 1.0;
      if (f <= f1 || f > f4) return 0.0;
      return (f <= f2 ? 1 - fallingEdge(f, f1, f2) : 1) * (f >= f3 ? fallingEdge(f, f3, f4) : 1);
    };
    const auto removal = [&](std::size_t k, double omega) -> Complex {
      const Complex i(0, omega), response = 1.4e14 * i * i * i / (i * i + 0.074 * i + 0.002738) /
                                            (i * i + 628.4 * i + 139646.93);
      const double w = weight(k, omega);
      if (row.path == flat) return w / 2;
      return w > 0 ? w / std::conj(response) : 0;
    };
    expectSamples(*s, slowlyFiltered(richNoise(200), kDelta, removal));
  }
  // Without a taper the zero frequency, where the sensor gives nothing, is divided by zero.
  const auto s = traceOf(richNoise(200), kDelta);
  const float none[] = {0, 0, 0, 0};
  s->DeconvolveInstrument_TaperCorners(sensor, none);
  EXPECT_FALSE(std::isfinite(samplesIn(*s)[0]));
}

TEST(SacObjectInstrument, AFileThatSaysNothingLeavesTheTrace) {
  const TemporaryFolder folder;
  const float corners[] = {0.2f, 0.5f, 5, 8};
  for (const std::string& path :
       {folder.path("missing"), folder.path(), folder.write("text", "no response\n1 2\n3 4\n"),
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
