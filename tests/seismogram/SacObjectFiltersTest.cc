#include <functional>
#include <limits>

#include "SpectralTraces.h"
#include "krosac/dsp/Butterworth.h"

namespace krosac {
namespace {

using Method = std::function<void(S&)>;

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
  if (f >= f3 && f < f4) w = std::cos((f - f3) / (f4 - f3) * kPi / 2);
  return w;
}

Complex attenuation(double w, double t) {
  if (w == 0 || w > kNyquist - 1e-9) return w == 0 ? 1 : 0;
  const double dispersion = w < 1.5 * kNyquist / 64 ? 0 : w * t * std::log(w) / kPi;
  return std::abs(w * t / 2) > 10 ? 0 : std::polar(std::exp(-w * t / 2), w * t - dispersion);
}

TEST(SacObjectFilters, ShapeThePaddedSpectrum) {
  const double f1 = 0.1f, f2 = 0.35f, f3 = 0.6f, f4 = 0.95f;
  const struct {
    Method filter;
    std::function<Complex(double)> factor;  // of omega
    double share = 2e-6;
  } rows[] = {
      {[](S& s) { s.RGaussianFilter(2.5f); }, [](double w) { return lowPass(w, 2.5); }},
      {[](S& s) { s.RGaussianFilter(0); }, [](double w) { return w == 0 ? 1.0 : 0.0; }},
      {[](S& s) { s.RGaussianFilterSwapOld_New(2, 3); },
       [](double w) { return lowPass(w, 3) / lowPass(w, 2); }},
      // The old Gaussian falls to 1e-6 at 5.947 rad/s; up to there it enlarges all roundings.
      {[](S& s) { s.RGaussianFilterSwapOld_New(0.8f, 4); },
       [](double w) { return lowPass(w, 4) / (w < 5.947 ? lowPass(w, 0.8) : 1); }, 1e-5},
      {[](S& s) { s.SGaussianFilter_Alpha(0.05f, 2); }, [](double w) { return window(w, 0.05); }},
      {[](S& s) { s.SGaussianFilter_Alpha(0.9f, 2); }, [](double w) { return window(w, 0.9); }},
      {[=](S& s) { s.CosineTaperFilter(0.1f, 0.35f, 0.6f, 0.95f); },
       [=](double w) { return band(w, f1, f2, f3, f4); }},
      {[=](S& s) { s.CosineTaperFilter(-1, 0.35f, 0.6f, 2); },
       [=](double w) { return band(w, -1, f2, f3, 2); }},
      {[=](S& s) { s.CosineTaperFilter(0.1f, 0.1f, 0.6f, 0.6f); },
       [=](double w) { return band(w, f1, f1, f3, f3); }},
      {[=](S& s) { s.CosineTaperFilter(0.1f, 0.6f, 0.35f, 0.95f); },  // edges that overlap
       [=](double w) { return band(w, f1, f3, f2, f4); }},
      {[](S& s) { s.TstarFilter(0.4f); }, [](double w) { return attenuation(w, 0.4); }, 4e-6},
      {[](S& s) { s.TstarFilter(-4); }, [](double w) { return attenuation(w, -4); }, 4e-6}};
  for (const auto& row : rows) {
    SCOPED_TRACE(&row - rows);
    for (const int n : {100, 64}) {
      const auto s = traceOf(richNoise(n), kDelta);
      row.filter(*s);
      const auto factor = [&](std::size_t, double omega) { return row.factor(omega); };
      expectSamples(*s, slowlyFiltered(richNoise(n), kDelta, factor), row.share);
    }
  }
}

TEST(SacObjectFilters, NoiseFilterWeakensWhatIsStrongBeforeATime) {
  const Samples x = richNoise(90);
  const auto filtered = [&](float t) {
    const auto s = traceOf(x, kDelta, 7);
    s->NoiseFilterStartingAtTime(t);
    return s;
  };
  for (const int k : {40, 41, 100}) {
    Samples noise = cutTo(x, std::min(k, 90));
    const int half = static_cast<int>(noise.size() / 2);
    float mean = 0;
    for (const float value : noise) mean += value / static_cast<float>(noise.size());
    for (int i = 0; i < std::ssize(noise); ++i)
      noise[i] = (noise[i] - mean) * static_cast<float>(i < half ? i : 2 * half - i) /
                 static_cast<float>(half);
    const Spectrum bins = slowSpectrum(noise, 128);
    double greatest = 0;
    for (const Complex bin : bins) greatest = std::max(greatest, std::abs(bin));
    const auto factor = [&](std::size_t bin, double) { return 1 - std::abs(bins[bin]) / greatest; };
    expectSamples(*filtered(7.15f + kDelta * static_cast<float>(k)),
                  slowlyFiltered(x, kDelta, factor));
  }
  for (const float t : {7.0f, -100.0f, 7.6f})  // none, none and one sample of noise
    expectNotANumber(*filtered(t));
}

// The samples of the doubled lower half of the bins, times factor(k).
template <typename Factor>
Spectrum slowAnalyticSignal(const Samples& x, Factor factor) {
  Spectrum bins = slowSpectrum(x, 2 * std::bit_floor(x.size()));
  for (std::size_t k = 0; k < bins.size(); ++k)
    bins[k] *= k < bins.size() / 2 ? 2.0 * factor(static_cast<double>(k)) : 0;
  return slowTransform(bins, -1);
}

TEST(SacObjectAnalyticSignal, EnvelopeIsItsModulus) {
  for (const Samples& x : {richNoise(100), Samples(64, 3.0f)}) {
    const auto s = traceOf(x, kDelta);
    s->Envelope();
    Reals expected;
    for (const Complex z : slowAnalyticSignal(x, [](double) { return 1.0; }))
      expected.push_back(std::abs(z) / 128);
    expectSamples(*s, expected);
  }
}

TEST(SacObjectAnalyticSignal, InstantaneousPeriodIsTheFrequencyLessOneBin) {
  Samples tone;  // under a Gaussian that is nothing at both ends
  for (double t = -75; t < 75; t += 0.1)
    tone.push_back(static_cast<float>(std::exp(-t * t / 200) * std::cos(2 * kPi * 1.3 * t)));
  const auto s = traceOf(tone, 0.1f), silent = traceOf(Samples(10));
  s->InstantaneousPeriod();
  for (int j = 600; j < 900; ++j) ASSERT_NEAR(samplesIn(*s)[j], 1.3 - 1 / 204.8, 1e-5) << j;
  silent->InstantaneousPeriod();
  EXPECT_EQ(samplesIn(*silent), Samples(10, -0.01f));
}

TEST(SacObjectAnalyticSignal, InstantaneousPeriodSmoothsInPlace) {
  for (const int count : {100, 127}) {  // the mean of the last of 127 reaches beyond all 128
    const Samples x = richNoise(count);
    const auto s = traceOf(x, kDelta);
    s->InstantaneousPeriod();
    const Spectrum z = slowAnalyticSignal(x, [](double) { return 1.0; });
    const Spectrum d =
        slowAnalyticSignal(x, [](double k) { return Complex(0, (k - 1) * kNyquist / 64); });
    Spectrum y;  // the power and the turning
    for (std::size_t j = 0; j < z.size(); ++j)
      y.emplace_back(std::norm(z[j]), (std::conj(z[j]) * d[j]).imag());
    const auto mirrored = [&y](int j) { return y[127 - std::abs(127 - std::abs(j))]; };
    Reals expected;
    for (int j = 0; j < count; ++j) {
      Complex sum;
      for (int i = j - 2; i <= j + 2; ++i) sum += mirrored(i);
      y[j] = 0.2 * sum;
      expected.push_back(y[j].imag() / y[j].real() / (2 * kPi));
    }
    expectSamples(*s, expected, 2e-5);  // quotients by what may be little
  }
}

TEST(SacObjectFilters, PulsesAreAdvancedByOneSampleAndHaveUnitArea) {
  const auto cosine = [](float t) -> Method {
    return [=](S& s) { s.CosineTimeFunctionFilterDuration(t); };
  };
  const auto trapezoid = [](float rise, float top, float fall) -> Method {
    return [=](S& s) { s.TrapezoidFilter(rise, top, fall); };
  };
  const std::pair<Method, Samples> rows[] = {
      {cosine(2), {0, 1, 2, 1}},  // weights before their area is made 1
      {cosine(0.75f), {0, 1.5f}},
      {trapezoid(1, 1, 1), {0, 0.5f, 1, 1, 1, 0.5f}},
      {trapezoid(1.2f, 0.3f, 1.7f), {0, 0.5f / 1.2f, 1, 1, 1 - 0.5f / 1.7f, 1 - 1 / 1.7f}},
      {trapezoid(1, 1, 0), {0, 0.5f, 1, 1}},  // without a fall the top's last weight is dropped
      {trapezoid(0.5f, 0, 0), {}},
      {trapezoid(0, 0, 0.2f), {}}};
  Samples x(16);
  x[4] = 3;
  for (const auto& [filter, weights] : rows) {
    SCOPED_TRACE(weights.size());
    const auto s = traceOf(x, kDelta);
    filter(*s);
    double area = 0;
    for (const float weight : weights) area += weight;
    Reals expected(16);
    for (std::size_t k = 0; k < weights.size(); ++k) expected[3 + k] = 3 * weights[k] / area;
    expectSamples(*s, expected, 1e-6);
  }
  for (const Method& nothing :
       {cosine(0.74f), cosine(-1), cosine(kNaN), cosine(1e8f), trapezoid(-1, 1, 1),
        trapezoid(1, kNaN, 1), trapezoid(1e8f, 1, 1)}) {
    const auto s = traceOf(x, kDelta);
    nothing(*s);
    expectUnchanged(*s, x);
  }
}

TEST(SacObjectFilters, ButterworthNeedsACorner) {
  const Samples x = richNoise(60);
  for (const bool low : {true, false}) {
    const auto s = traceOf(x, kDelta);
    const auto method = low ? &S::LPBUfilter_NPasses_NPoles : &S::HPBUfilter_NPasses_NPoles;
    for (const float corner : {0.0f, -0.2f, kNaN}) (*s.*method)(corner, 2, 4);
    expectUnchanged(*s, x);
    Samples expected = x;
    (low ? GRLPBUfilter : GRHPBUfilter)(expected.data(), 60, 2, 6, kDelta, 0.2f);
    (*s.*method)(0.2f, 2, 6);
    expectSamples(*s, Reals(expected.begin(), expected.end()), 0);
  }
}

TEST(SacObjectFilters, SpectrumAndPrewhitening) {
  const Samples x = richNoise(64);
  const auto s = traceOf(x, kDelta), unit = traceOf(x);
  const auto packed = s->spectrum();
  expectUnchanged(*s, x);
  ASSERT_EQ(packed->length(), 4u * 128);
  const auto* values = reinterpret_cast<const float*>(packed->bytes());
  const Spectrum bins = slowSpectrum(x, 128);
  for (std::size_t k = 0; k < 64; ++k) {
    EXPECT_NEAR(values[2 * k], kDelta * bins[k].real(), 2e-5);
    EXPECT_NEAR(values[2 * k + 1], kDelta * (k ? bins[k].imag() : bins[64].real()), 2e-5);
  }
  s->prewhiten();
  unit->prewhiten();
  const Samples whitened = samplesIn(*unit);
  for (std::size_t j = 0; j < x.size(); ++j) EXPECT_EQ(whitened[j], x[j] / 64);
  expectSamples(*s, slowlyFiltered(x, kDelta, [](std::size_t, double) { return 1 / 32.0; }));
}

TEST(SacObjectFilters, ShortTracesAndAbsurdArgumentsDoNoHarm) {
  const std::function<void(S&, float)> methods[] = {
      [](S& s, float v) { s.RGaussianFilter(v); },
      [](S& s, float v) { s.RGaussianFilterSwapOld_New(v, -v); },
      [](S& s, float v) { s.SGaussianFilter_Alpha(v, v); },
      [](S& s, float v) { s.CosineTaperFilter(v, 1, v, v); },
      [](S& s, float v) { s.TstarFilter(v); },
      [](S& s, float v) { s.CosineTimeFunctionFilterDuration(v); },
      [](S& s, float v) { s.TrapezoidFilter(v, v, v); }, [](S& s, float) { s.Envelope(); },
      [](S& s, float) { s.InstantaneousPeriod(); },
      [](S& s, float v) { s.NoiseFilterStartingAtTime(v); }, [](S& s, float) { s.prewhiten(); },
      [](S& s, float v) { s.ConvolveInstrument(v > 0 ? 1 : 2); },
      [](S& s, float v) { s.WaterLevelDeconWith_wlevel_tshift_gwidth(s, v, v, v); },
      [](S& s, float) { s.correlateWith(s); },
      // What follows answers also for an empty trace.
      [](S& s, float v) { s.LPBUfilter_NPasses_NPoles(v, 2, 4); },
      [](S& s, float v) { s.HPBUfilter_NPasses_NPoles(v, -1, 1 << 30); },
      [](S& s, float) { s.spectrum(); }, [](S& s, float) { s.GetOptimalShift(s); },
      [](S& s, float v) { s.subtractZeroLagGaussian(v); }};
  for (const auto& method : methods) {
    SCOPED_TRACE(&method - methods);
    const auto empty = traceOf({});
    method(*empty, 1);
    if (&method - methods < 14) expectUnchanged(*empty, {});
    for (const float v : {0.0f, -1.0f, 2.0f, 1e-38f, 1e30f, -1e30f, HUGE_VALF, kNaN}) {
      method(*make<S>(), v);
      for (const float delta : {1.0f, 0.0f, -1.0f, 1e-38f, 1e30f, kNaN}) {
        for (const int n : {0, 1, 2, 3, 4}) {
          const auto s = traceOf(noise(n), delta, v);
          s->setNpts(n == 3 ? 1 << 30 : n);  // more than there are
          method(*s, v);
          EXPECT_EQ(s->myData()->length(), 632u + 4u * static_cast<unsigned>(n));
        }
      }
    }
  }
}

}  // namespace
}  // namespace krosac
