// Filters, instruments, the analytic signal, deconvolution and correlation.
#include <functional>
#include <limits>
#include <numeric>

#include "CapturedLog.h"
#include "SpectralTraces.h"
#include "TemporaryFolder.h"
#include "krosac/dsp/Butterworth.h"
#include "krosac/dsp/InstrumentResponse.h"
#include "krosac/platform/LastReason.h"

namespace krosac {
namespace {

constexpr float kDelta = 0.5f;
constexpr double kNyquist = kPi / kDelta;
constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();

double lowPass(double omega, double a) {
  return std::exp(-omega * omega / (4 * a * a));
}

double window(double omega, double f0) {
  const double w0 = 2 * kPi * f0, power = omega > kNyquist - 1e-9 ? 2 : 4;  // alpha or alpha^2
  return std::sqrt(2 * kPi) / w0 * std::exp(-power * (omega - w0) * (omega - w0));
}

double band(double omega, double f1, double f2, double f3, double f4) {
  const double f = omega / (2 * kPi);
  double w = f > f1 && f < f4 ? 1 : 0;
  if (f > f1 && f <= f2) w = 1 - std::cos((f - f1) / (f2 - f1) * kPi / 2);
  if (f >= f3 && f < f4) w *= std::cos((f - f3) / (f4 - f3) * kPi / 2);
  return w;
}

Complex attenuation(double w, double t) {
  if (w == 0 || w > kNyquist - 1e-9) return w == 0 ? 1 : 0;
  const double dispersion = w < 1.5 * kNyquist / 128 ? 0 : w * t * std::log(w) / kPi;
  return std::abs(w * t / 2) > 10 ? 0 : std::polar(std::exp(-w * t / 2), w * t - dispersion);
}

Complex instrument(int code, double omega) {
  float re, im;
  GetInstrumentResponse(code, &re, &im, static_cast<float>(omega));
  return {re, im};
}

TEST(SacObjectFilters, ShapeThePaddedSpectrum) {
  const struct {
    std::function<void(S&)> filter;
    std::function<Complex(double)> factor;  // at omega
    double share = 4e-6;
  } rows[] = {
      {[](S& s) { s.RGaussianFilter(2.5f); }, [](double w) { return lowPass(w, 2.5); }},
      // The old Gaussian reaches 1e-6 at 5.947 rad/s; dividing by it amplifies rounding errors.
      {[](S& s) { s.RGaussianFilterSwapOld_New(0.8f, 4); },
       [](double w) { return lowPass(w, 4) / (w < 5.947 ? lowPass(w, 0.8) : 1); }, 1e-5},
      {[](S& s) { s.SGaussianFilter_Alpha(0.9f, 2); }, [](double w) { return window(w, 0.9); }},
      {[](S& s) { s.CosineTaperFilter(0.1f, 0.35f, 0.6f, 0.95f); },
       [](double w) { return band(w, 0.1f, 0.35f, 0.6f, 0.95f); }},
      {[](S& s) { s.CosineTaperFilter(-1, 0.35f, 0.6f, 2); },
       [](double w) { return band(w, -1, 0.35f, 0.6f, 2); }},
      {[](S& s) { s.TstarFilter(0.4f); }, [](double w) { return attenuation(w, 0.4); }},
      {[](S& s) { s.TstarFilter(-4); }, [](double w) { return attenuation(w, -4); }},
      {[](S& s) { s.ConvolveInstrument(1); }, [](double w) { return instrument(1, w); }},
      {[](S& s) { s.ConvolveInstrument(2); }, [](double w) { return instrument(2, w); }},
      {[](S& s) { s.ConvolveInstrument(3); }, [](double w) { return instrument(3, w); }}};
  for (const auto& row : rows) {
    SCOPED_TRACE(&row - rows);
    const Samples x = richNoise(200);  // two blocks of bins
    const auto s = traceOf(x, kDelta);
    row.filter(*s);
    const auto factor = [&](std::size_t, double omega) { return row.factor(omega); };
    expectSamples(*s, slowlyFiltered(x, kDelta, factor), row.share);
    const auto empty = traceOf({});
    row.filter(*empty);
    expectUnchanged(*empty, {});
  }
}

TEST(SacObjectFilters, NoiseFilterAttenuatesBinsThatAreStrongBeforeATime) {
  const Samples x = richNoise(90);
  const auto filtered = [&](float t) {
    const auto s = traceOf(x, kDelta, 7);
    s->NoiseFilterStartingAtTime(t);
    return s;
  };
  for (const int k : {41, 100, INT32_MAX}) {
    Samples noise = cutTo(x, std::min(k, 90));
    const float half = static_cast<float>(noise.size() / 2);
    const float mean =
        std::accumulate(noise.begin(), noise.end(), 0.0f) / static_cast<float>(noise.size());
    for (std::size_t i = 0; i < noise.size(); ++i)
      noise[i] = (noise[i] - mean) * (1 - std::abs(static_cast<float>(i) - half) / half);
    const Spectrum bins = slowSpectrum(noise, 128);
    double greatest = 0;
    for (const Complex bin : bins) greatest = std::max(greatest, std::abs(bin));
    const auto factor = [&](std::size_t bin, double) { return 1 - std::abs(bins[bin]) / greatest; };
    expectSamples(*filtered(7.15f + kDelta * static_cast<float>(k)),
                  slowlyFiltered(x, kDelta, factor));
  }
  for (const float t : {-100.0f, 7.6f}) expectNotANumber(*filtered(t));  // no sample and one sample
}

// The inverse transform of the lower half of the bins, doubled and multiplied by factor(k).
template <typename Factor>
Spectrum slowAnalyticSignal(const Samples& x, Factor factor) {
  Spectrum bins = slowSpectrum(x, 2 * std::bit_floor(x.size()));
  for (std::size_t k = 0; k < bins.size(); ++k)
    bins[k] *= k < bins.size() / 2 ? 2.0 * factor(static_cast<double>(k)) : 0;
  return slowTransform(bins, -1);
}

TEST(SacObjectAnalyticSignal, EnvelopeAndFrequencySmoothedInPlace) {
  constexpr int kCount = 127;  // the mean at the last sample reaches beyond all 128
  const Samples x = richNoise(kCount);
  const auto s = traceOf(x, kDelta), envelope = traceOf(x, kDelta), silent = traceOf(Samples(10));
  const Spectrum z = slowAnalyticSignal(x, [](double) { return 1.0; });
  const Spectrum d =  // its derivative, with the frequency of the bin before
      slowAnalyticSignal(x, [](double k) { return Complex(0, (k - 1) * kNyquist / 64); });
  Spectrum y;  // power and phase rate times power
  for (std::size_t j = 0; j < z.size(); ++j)
    y.emplace_back(std::norm(z[j]), (std::conj(z[j]) * d[j]).imag());
  const auto mirrored = [&y](int j) { return y[127 - std::abs(127 - std::abs(j))]; };
  Reals moduli, frequencies;
  for (int j = 0; j < kCount; ++j) {
    moduli.push_back(std::abs(z[j]) / 128);
    Complex sum;
    for (int i = j - 2; i <= j + 2; ++i) sum += mirrored(i);
    y[j] = 0.2 * sum;
    frequencies.push_back(y[j].imag() / y[j].real() / (2 * kPi));
  }
  envelope->Envelope();
  expectSamples(*envelope, moduli);
  s->InstantaneousPeriod();
  expectSamples(*s, frequencies, 2e-5);  // divisors may be small
  silent->InstantaneousPeriod();
  EXPECT_EQ(samplesIn(*silent), Samples(10, -0.01f));
}

TEST(SacObjectFilters, PulsesHaveUnitAreaAndAdvanceByOneSample) {
  const std::pair<void (*)(S&), Samples> rows[] = {
      {[](S& s) { s.CosineTimeFunctionFilterDuration(2); },
       {0, 1, 2, 1}},  // not yet scaled to unit area
      {[](S& s) { s.CosineTimeFunctionFilterDuration(0.75f); }, {0, 1.5f}},
      {[](S& s) { s.TrapezoidFilter(1.2f, 0.3f, 1.7f); },
       {0, 0.5f / 1.2f, 1, 1, 1 - 0.5f / 1.7f, 1 - 1 / 1.7f}},
      // Without a fall the last weight of the top is dropped.
      {[](S& s) { s.TrapezoidFilter(1, 1, 0); }, {0, 0.5f, 1, 1}},
      {[](S& s) { s.TrapezoidFilter(0.5f, 0, 0); }, {}}};
  for (const auto& [filter, weights] : rows) {
    const auto s = traceOf({0, 0, 0, 0, 3, 0, 0, 0, 0, 0, 0, 0}, kDelta);
    filter(*s);
    const double area = std::accumulate(weights.begin(), weights.end(), 0.0);
    Reals expected(12);
    for (std::size_t k = 0; k < weights.size(); ++k) expected[3 + k] = 3 * weights[k] / area;
    expectSamples(*s, expected, 1e-6);
  }
  const auto s = traceOf(richNoise(60), kDelta);
  for (const float refused : {-1.0f, kNaN}) {
    s->LPBUfilter_NPasses_NPoles(refused, 2, 4);
    s->HPBUfilter_NPasses_NPoles(refused, 2, 4);
    s->TrapezoidFilter(refused, 1, 1);
    s->CosineTimeFunctionFilterDuration(refused);
  }
  s->CosineTimeFunctionFilterDuration(0.74f);  // shorter than two samples
  s->CosineTimeFunctionFilterDuration(1e8f);
  s->TrapezoidFilter(1, 1e8f, 1);
  expectUnchanged(*s, richNoise(60));
}

TEST(SacObjectFilters, ButterworthSpectrumAndPrewhitening) {
  const Samples x = richNoise(64);
  const auto s = traceOf(x, kDelta);
  for (const bool isLow : {false, true}) {
    Samples expected = x;
    (isLow ? GRLPBUfilter : GRHPBUfilter)(expected.data(), 64, 2, 6, kDelta, 0.2f);
    const auto filtered = traceOf(x, kDelta);
    ((*filtered).*(isLow ? &S::LPBUfilter_NPasses_NPoles : &S::HPBUfilter_NPasses_NPoles))(0.2f, 2,
                                                                                           6);
    expectSamples(*filtered, Reals(expected.begin(), expected.end()), 0);
  }
  const auto packed = s->spectrum();
  expectUnchanged(*s, x);
  const Spectrum bins = slowSpectrum(x, 128);
  ASSERT_EQ(packed->length(), 4 * bins.size());
  const auto* values = reinterpret_cast<const float*>(packed->bytes());
  for (std::size_t k = 0; k < 64; ++k) {
    EXPECT_NEAR(values[2 * k], kDelta * bins[k].real(), 2e-5);
    EXPECT_NEAR(values[2 * k + 1], kDelta * (k ? bins[k].imag() : bins[64].real()), 2e-5);
  }
  s->prewhiten();
  for (std::size_t j = 0; j < x.size(); ++j) EXPECT_EQ(samplesIn(*s)[j], x[j] / 32);
}

TEST(SacObjectInstrument, DividesByTheResponseInABand) {
  // A 20 s sensor, damping 0.707, with a pole pair far above the band; one zero is not listed.
  const TemporaryFolder folder;
  const std::string sensor =
                        folder.write("sensor",
                                     "* made\nzeros 3\n0 0\n 0 0\npoles 4\n-0.037 0.037\n-0.037 "
                                     "-0.037\n-314.2 202.3\n-314.2 -202.3\nconstant 1.4e14\n"),
                    flat = folder.write("flat", "CONSTANT 2\n"),
                    identity = folder.write("identity", "ZEROS 0\nPOLES 0\nCONSTANT 1\n");
  const double atZero = band(0, -1, 0.05f, 1.1f, 1.2f);
  const struct {
    std::string path;
    float corners[4];
    double zero, nyquist;  // the weights of these two bins, which have their own rule
  } rows[] = {{sensor, {0.03f, 0.1f, 0.4f, 0.8f}, 0, 0},
              {flat, {-1, -0.5f, 0.5f, 0.8f}, 1, 0},
              {flat, {0.02f, 0.05f, 0.5f, 1.2f}, 0, band(kNyquist, 0.02f, 0.05f, 0.5f, 1.2f)},
              {flat,
               {-1, 0.05f, 1.1f, 1.2f},
               atZero,
               atZero},  // both bins of the first pair get the same weight
              {identity, {-1, -0.5f, 0.5f, 0.8f}, 1, 0},
              {flat, {0.02f, 0.02f, 0.5f, 0.8f}, 1, 1},  // no taper
              {flat, {0.02f, 0.05f, 0.8f, 0.8f}, 1, 1}};
  for (const auto& row : rows) {
    const auto [f1, f2, f3, f4] = row.corners;
    SCOPED_TRACE(&row - rows);
    const auto s = traceOf(richNoise(100), kDelta);
    s->DeconvolveInstrument_TaperCorners(row.path, row.corners);
    const auto removal = [&, f1 = f1, f2 = f2, f3 = f3, f4 = f4](std::size_t k,
                                                                 double omega) -> Complex {
      const Complex i(0, omega), response = 1.4e14 * i * i * i / (i * i + 0.074 * i + 0.002738) /
                                            (i * i + 628.4 * i + 139646.93);
      const double w = k == 0               ? row.zero
                       : k == 64            ? row.nyquist
                       : f2 > f1 && f4 > f3 ? band(omega, f1, f2, f3, f4)
                                            : 1;
      if (row.path != sensor) return row.path == flat ? w / 2 : w;
      return w > 0 ? w / std::conj(response) : 0;
    };
    expectSamples(*s, slowlyFiltered(richNoise(100), kDelta, removal));
  }
  // Without a taper the zero-frequency bin, where the response is 0, is divided by 0.
  const auto s = traceOf(richNoise(100), kDelta), kept = traceOf(richNoise(50), kDelta);
  const float none[] = {0, 0, 0, 0}, corners[] = {0.02f, 0.05f, 0.5f, 0.8f};
  s->DeconvolveInstrument_TaperCorners(sensor, none);
  EXPECT_FALSE(std::isfinite(samplesIn(*s)[0]));
  for (const char* text : {"no response\n1 2\n3 4\n", "POLES 1\nnan 0\nCONSTANT 3\n",
                           "ZEROS 1\n1 inf", "ZEROS 1\n1 1\nCONSTANT 1e99\n"}) {
    const CapturedLog log;
    kept->DeconvolveInstrument_TaperCorners(folder.write("no", text), corners);
    expectUnchanged(*kept, richNoise(50));
    EXPECT_EQ(log.texts, Texts{});
    EXPECT_NE(std::string(lastReason()).find(folder.path("no")), std::string::npos);
  }
  kept->DeconvolveInstrument_TaperCorners(identity, corners);
  EXPECT_STREQ(lastReason(), "");
}

TEST(SacObjectDeconvolution, RaisesThePowerOfTheDivisorToTheWaterLevel) {
  constexpr float kLevel = 0.3f, kA = 4, kShift = 1.7f;
  const Samples u = richNoise(100);
  for (const bool isLowPassed : {false, true}) {
    const int otherCount = isLowPassed ? 60 : 300;
    const auto s = traceOf(u, kDelta), iterated = traceOf(u, kDelta),
               other = traceOf(richNoise(otherCount), 9);
    if (!isLowPassed) s->WaterLevelDeconWith_wlevel_tshift(*other, kLevel, kShift);
    if (isLowPassed) s->WaterLevelDeconWith_wlevel_tshift_gwidth(*other, kLevel, kShift, kA);
    iterated->iterDeconWith_wlevel_tshift_gwidth_nIter_minMF(*other, kLevel, kShift, kA, -5, 1e9f);
    EXPECT_EQ(imageOf(*iterated) == imageOf(*s), isLowPassed);
    expectUnchanged(*other, richNoise(otherCount));
    const std::size_t n = otherCount < 128 ? 128 : 512;
    Spectrum r = slowSpectrum(u, n);
    const Spectrum w = slowSpectrum(cutTo(richNoise(otherCount), u.size()), n);
    double greatest = 0;
    for (const Complex bin : w) greatest = std::max(greatest, std::norm(bin));
    for (std::size_t k = 0; k <= n / 2; ++k) {
      const double omega = 2 * kPi * static_cast<double>(k) / (static_cast<double>(n) * kDelta);
      // The zero-frequency and Nyquist bins are squared, neither shifted nor low-passed.
      r[k] *= k % (n / 2) ? std::conj(w[k]) *
                                std::polar(isLowPassed ? lowPass(omega, kA) : 1, omega * kShift)
                          : r[k];
      r[k] /= std::max(kLevel * greatest, std::norm(w[k]));
    }
    expectSamples(*s, slowInverse(r), 5e-6);  // phases up to 50 rad in single precision
  }
  const auto s = traceOf(u);
  s->WaterLevelDeconWith_wlevel_tshift(*traceOf(Samples(20)), 0.1f, 0);
  expectNotANumber(*s);
}

TEST(SacObjectCorrelation, EqualsTheDirectSumWithZeroLagAtTimeZero) {
  const std::tuple<long, long, long> rows[] = {{101, 30, 128}, {100, 300, 512}, {9, 0, 16}};
  for (const auto& [count, otherCount, n] : rows) {
    const Samples a = richNoise(static_cast<int>(count)),
                  b = richNoise(static_cast<int>(otherCount));
    const auto s = traceOf(a, kDelta, 12);
    s->correlateWith(*traceOf(b, 9, 5));
    const long first = (n - count) / 2 - n / 2;
    Reals expected(a.size());
    for (long j = 0; j < count; ++j)
      for (long l = 0; l < std::min(count, otherCount); ++l)
        if (const long i = (l + first + j + n) % n; i < count) expected[j] += double{a[i]} * b[l];
    expectSamples(*s, expected);
    EXPECT_EQ(s->b(), static_cast<float>(first) * kDelta);
    EXPECT_EQ(s->e(), s->b() + static_cast<float>(count - 1) * kDelta);
  }
}

TEST(SacObjectCorrelation, OptimalShiftIsTheDelayOfTheReceiver) {
  Samples early(200), late(200), flipped(200), impulse(100), end(100);
  for (std::size_t j = 60; j < 160; ++j) flipped[j] = -(early[j] = late[j + 3] = noise(200)[j]);
  impulse[0] = end[64] = 2;
  const struct {
    const Samples receiver, argument;
    double shift, correlation, tolerance = 0.02;  // because two bins are squared
  } rows[] = {{early, late, -3, 1},
              {late, flipped, 3, -1},
              {end, impulse, -64, 1, 1e-6},  // lags N/2 and -N/2 are the same
              // Two bins of 3, and two squares of the receiver; the last sample is ignored.
              {{1, 0}, {3, 0, 7}, 0, (1 + 1 + 2 * 3) / 4.0 / 3, 1e-6}};
  for (const auto& row : rows) {
    const auto receiver = traceOf(row.receiver, kDelta), argument = traceOf(row.argument, 9);
    const auto [shift, correlation] = receiver->GetOptimalShift(*argument);
    EXPECT_EQ(shift, row.shift * double{kDelta});
    EXPECT_NEAR(correlation, row.correlation, row.tolerance);
    const auto energy = [n = std::ssize(row.receiver)](const Samples& x) {
      return std::inner_product(x.begin(), x.begin() + n, x.begin(), 0.0f);
    };
    EXPECT_EQ(receiver->userValue(9), energy(row.receiver));
    EXPECT_EQ(argument->userValue(9), energy(row.argument));
    expectUnchanged(*receiver, row.receiver);
  }
  for (const auto& nothing : {traceOf(Samples(9)), traceOf({})}) {  // the first of equal values
    const auto [shift, correlation] = nothing->GetOptimalShift(*traceOf(early));
    EXPECT_EQ(shift, 0.0);
    EXPECT_TRUE(std::isnan(correlation));
  }
}

TEST(SacObjectDeconvolution, ZeroLagGaussianIsMeasuredBeforeTimeZero) {
  // With k = 0 all weights are 1: a trace of ones loses the number of samples in the 5 s before
  // time 0.
  for (const auto& [delta, b, count, sum] : {std::tuple(0.125f, -10.0f, 200, 40.0f),
                                             {0.03125f, -1.0f, 200, 32.0f},
                                             {0.125f, -10.0f, 50, 10.0f},
                                             // 5 / 0.1f is below 50 in double
                                             {0.1f, -10.0f, 200, 51.0f}}) {
    const auto flat = traceOf(Samples(count, 1), delta, b);
    flat->subtractZeroLagGaussian(0);
    expectSamples(*flat, Reals(count, 1 - sum), 0);
  }
  const auto emptyWindow = traceOf(Samples(20, 1), 10, -3);
  emptyWindow->subtractZeroLagGaussian(0);
  expectNotANumber(*emptyWindow);
  // A Gaussian much narrower than DELTA has one sample before time 0 that counts.
  Samples x;
  for (int j = -20; j < 20; ++j) x.push_back(7 * std::exp(-4.0f * static_cast<float>(j * j)));
  const auto narrow = traceOf(x, 0.5f, -10), late = traceOf(x, 0.5f, 0.1f);
  narrow->subtractZeroLagGaussian(16);
  for (const float value : samplesIn(*narrow)) EXPECT_NEAR(value, 0, 1e-6);
  late->subtractZeroLagGaussian(16);
  expectUnchanged(*late, x);
}

}  // namespace
}  // namespace krosac
