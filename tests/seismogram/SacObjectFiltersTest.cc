#include <functional>
#include <limits>

#include "SpectralTraces.h"
#include "krosac/dsp/Butterworth.h"

namespace krosac {
namespace {

using Method = std::function<void(SacObject&)>;

constexpr float kDelta = 0.5f;
constexpr double kNyquist = kPi / kDelta;
constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();
constexpr float kInfinity = std::numeric_limits<float>::infinity();

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

Complex attenuation(double w, double t, double binWidth) {
  if (w == 0 || w > kNyquist - 1e-9) return w == 0 ? 1 : 0;
  const double dispersion = w < 1.5 * binWidth ? 0 : w * t * std::log(w) / kPi;
  return std::abs(w * t / 2) > 10 ? 0 : std::polar(std::exp(-w * t / 2), w * t - dispersion);
}

TEST(SacObjectFilters, ShapeThePaddedSpectrum) {
  const double f1 = 0.1f, f2 = 0.35f, f3 = 0.6f, f4 = 0.95f;
  const struct {
    Method filter;
    std::function<Complex(double)> factor;  // of omega
    double share = 2e-6;
  } rows[] = {
      {[](auto& s) { s.RGaussianFilter(2.5f); }, [](double w) { return lowPass(w, 2.5); }},
      {[](auto& s) { s.RGaussianFilter(0); }, [](double w) { return w == 0 ? 1.0 : 0.0; }},
      {[](auto& s) { s.RGaussianFilterSwapOld_New(2, 2); }, [](double) { return 1.0; }},
      // The old Gaussian falls to 1e-6 at 5.947 rad/s; up to there it enlarges all roundings.
      {[](auto& s) { s.RGaussianFilterSwapOld_New(0.8f, 4); },
       [](double w) { return lowPass(w, 4) / (w < 5.947 ? lowPass(w, 0.8) : 1); }, 1e-5},
      {[](auto& s) { s.SGaussianFilter_Alpha(0.05f, 2); },
       [](double w) { return window(w, 0.05); }},
      {[](auto& s) { s.SGaussianFilter_Alpha(0.9f, 2); }, [](double w) { return window(w, 0.9); }},
      {[=](auto& s) { s.CosineTaperFilter(0.1f, 0.35f, 0.6f, 0.95f); },
       [=](double w) { return band(w, f1, f2, f3, f4); }},
      {[=](auto& s) { s.CosineTaperFilter(-1, 0.35f, 0.6f, 2); },
       [=](double w) { return band(w, -1, f2, f3, 2); }},
      {[=](auto& s) { s.CosineTaperFilter(0.1f, 0.1f, 0.6f, 0.6f); },
       [=](double w) { return band(w, f1, f1, f3, f3); }},
      {[=](auto& s) { s.CosineTaperFilter(0.1f, 0.6f, 0.35f, 0.95f); },  // edges that overlap
       [=](double w) { return band(w, f1, f3, f2, f4); }},
      {[](auto& s) { s.TstarFilter(0.4f); },
       [](double w) { return attenuation(w, 0.4, kNyquist / 64); }, 4e-6},
      {[](auto& s) { s.TstarFilter(-0.3f); },
       [](double w) { return attenuation(w, -0.3, kNyquist / 64); }, 4e-6},
      {[](auto& s) { s.TstarFilter(4); },  // nothing is left above 5 rad/s
       [](double w) { return attenuation(w, 4, kNyquist / 64); }, 4e-6}};
  for (const auto& row : rows) {
    SCOPED_TRACE(&row - rows);
    for (const int n : {100, 64}) {
      const Samples x = richNoise(n);
      const auto s = madeTrace(x, kDelta);
      row.filter(*s);
      expectChanged(*s);
      const auto factor = [&](std::size_t, double omega) { return row.factor(omega); };
      expectSamples(*s, slowlyFiltered(x, kDelta, factor), row.share);
    }
  }
}

TEST(SacObjectFilters, NoiseFilterWeakensWhatIsStrongBeforeATime) {
  const Samples x = richNoise(90);
  for (const int k : {40, 41, 100}) {
    const auto s = madeTrace(x, kDelta, 7.0f);
    s->NoiseFilterStartingAtTime(7.0f + kDelta * (static_cast<float>(k) + 0.3f));
    expectChanged(*s);
    Samples noise(x.begin(), x.begin() + std::min(k, 90));
    const int half = static_cast<int>(noise.size() / 2);
    float mean = 0;
    for (const float value : noise) mean += value / static_cast<float>(noise.size());
    for (int i = 0; i < std::ssize(noise); ++i)
      noise[i] = static_cast<float>((noise[i] - mean) * (i < half ? i : 2 * half - i) / half);
    Reals amplitude;
    for (const Complex bin : slowSpectrum(noise, 128)) amplitude.push_back(std::abs(bin));
    const double greatest = std::ranges::max(amplitude);
    expectSamples(*s, slowlyFiltered(x, kDelta, [&](std::size_t bin, double) {
      return 1 - amplitude[bin] / greatest;
    }));
  }
  for (const float t : {7.0f, -100.0f, 7.6f}) {  // none, none and one sample of noise
    const auto s = madeTrace(x, kDelta, 7.0f);
    s->NoiseFilterStartingAtTime(t);
    for (const float value : valuesOf(*s)) EXPECT_TRUE(std::isnan(value)) << t;
  }
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
  for (const Samples& x : {richNoise(100), richNoise(64), Samples(64, 3.0f), Samples{2.0f}}) {
    const auto s = madeTrace(x, kDelta);
    s->Envelope();
    expectChanged(*s);
    const Spectrum z = slowAnalyticSignal(x, [](double) { return 1.0; });
    Reals expected;
    for (const Complex value : z)
      expected.push_back(std::abs(value) / static_cast<double>(z.size()));
    expectSamples(*s, expected);
  }
}

TEST(SacObjectAnalyticSignal, InstantaneousPeriodIsTheFrequencyLessOneBin) {
  // A tone and a chirp (Hz/s) under a Gaussian that is nothing at both ends.
  for (const double chirp : {0.0, 0.004}) {
    Samples x;
    const auto time = [](int j) { return 0.1 * j - 75; };
    for (int j = 0; j < 1500; ++j) {
      const double t = time(j), phase = 2 * kPi * (1.3 * t + chirp * t * t / 2);
      x.push_back(static_cast<float>(std::exp(-t * t / 200) * std::cos(phase)));
    }
    const auto s = madeTrace(x, 0.1f);
    s->InstantaneousPeriod();
    expectChanged(*s);
    for (int j = 600; j < 900; ++j)
      ASSERT_NEAR(valuesOf(*s)[j], 1.3 + chirp * time(j) - 1 / 204.8, 1e-4) << j;
  }
  const auto silent = madeTrace(Samples(10));
  silent->InstantaneousPeriod();
  EXPECT_EQ(valuesOf(*silent), Samples(10, -0.01f));
}

TEST(SacObjectAnalyticSignal, InstantaneousPeriodSmoothsInPlace) {
  const Samples x = richNoise(100);
  const auto s = madeTrace(x, kDelta);
  s->InstantaneousPeriod();
  const Spectrum z = slowAnalyticSignal(x, [](double) { return 1.0; });
  const Spectrum d =
      slowAnalyticSignal(x, [](double k) { return Complex(0, (k - 1) * kNyquist / 64); });
  Spectrum both;  // the power and the turning
  for (std::size_t j = 0; j < z.size(); ++j)
    both.emplace_back(std::norm(z[j]), (std::conj(z[j]) * d[j]).imag());
  Reals expected;
  for (int j = 0; j < 100; ++j) {  // mirrored about the first sample; the last lies far behind
    both[j] =
        0.2 * (both[std::abs(j - 2)] + both[std::abs(j - 1)] + both[j] + both[j + 1] + both[j + 2]);
    expected.push_back(both[j].imag() / both[j].real() / (2 * kPi));
  }
  expectSamples(*s, expected, 2e-5);  // quotients by what may be little
}

TEST(SacObjectFilters, PulsesAreAdvancedByOneSampleAndHaveUnitArea) {
  const auto cosine = [](float t) {
    return [=](SacObject& s) { s.CosineTimeFunctionFilterDuration(t); };
  };
  const auto trapezoid = [](float rise, float top, float fall) {
    return [=](SacObject& s) { s.TrapezoidFilter(rise, top, fall); };
  };
  const struct {
    Method filter;
    Samples weights;  // before their area is made 1
  } rows[] = {{cosine(2), {0, 1, 2, 1}},
              {cosine(0.75f), {0, 1.5f}},
              {trapezoid(1, 1, 1), {0, 0.5f, 1, 1, 1, 0.5f}},
              {trapezoid(1.2f, 0.3f, 1.7f), {0, 0.5f / 1.2f, 1, 1, 1 - 0.5f / 1.7f, 1 - 1 / 1.7f}},
              // Without a fall the last weight of the top is dropped.
              {trapezoid(1, 1, 0), {0, 0.5f, 1, 1}},
              {trapezoid(0, 0, 1), {1, 0.5f}},
              {trapezoid(0.5f, 0, 0), {}},
              {trapezoid(0, 0, 0.2f), {}}};
  Samples x(16);
  x[4] = 3;
  for (const auto& row : rows) {
    SCOPED_TRACE(&row - rows);
    const auto s = madeTrace(x, kDelta);
    row.filter(*s);
    expectChanged(*s);
    double area = 0;
    for (const float weight : row.weights) area += weight;
    Reals expected(16);
    for (std::size_t k = 0; k < row.weights.size(); ++k)
      expected[3 + k] = 3 * row.weights[k] / area;
    expectSamples(*s, expected, 1e-6);
  }
  for (const Method& nothing :
       {Method(cosine(0.74f)), Method(cosine(-1)), Method(cosine(kNaN)), Method(cosine(1e8f)),
        Method(trapezoid(-1, 1, 1)), Method(trapezoid(1, kNaN, 1)), Method(trapezoid(1e8f, 1, 1)),
        Method(trapezoid(1e9f, 1e9f, 1e9f))}) {
    const auto s = madeTrace(x, kDelta);
    nothing(*s);
    EXPECT_EQ(valuesOf(*s), x);
    EXPECT_FALSE(s->mSeisHasChanged());
  }
}

TEST(SacObjectFilters, ButterworthNeedsACorner) {
  const Samples x = richNoise(60);
  for (const bool low : {true, false}) {
    const auto filtered = [&](float corner, int passes, int poles) {
      const auto s = madeTrace(x, kDelta);
      (low ? s->LPBUfilter_NPasses_NPoles(corner, passes, poles)
           : s->HPBUfilter_NPasses_NPoles(corner, passes, poles));
      return s;
    };
    for (const float corner : {0.0f, -0.2f, kNaN})
      EXPECT_EQ(imageOf(*filtered(corner, 2, 4)), imageOf(*madeTrace(x, kDelta))) << corner;
    EXPECT_FALSE(filtered(0, 2, 4)->mSeisHasChanged());
    Samples expected = x;
    (low ? GRLPBUfilter : GRHPBUfilter)(expected.data(), 60, 2, 6, kDelta, 0.2f);
    EXPECT_EQ(valuesOf(*filtered(0.2f, 2, 6)), expected);
    expectChanged(*filtered(0.2f, 2, 6));
  }
}

TEST(SacObjectFilters, SpectrumAndPrewhitening) {
  const Samples x = richNoise(64);
  const auto s = madeTrace(x, kDelta), unit = madeTrace(x);
  const auto packed = s->spectrum();
  EXPECT_EQ(imageOf(*s), imageOf(*madeTrace(x, kDelta)));
  ASSERT_EQ(packed->length(), 4u * 128);
  const auto* values = reinterpret_cast<const float*>(packed->bytes());
  const Spectrum bins = slowSpectrum(x, 128);
  for (std::size_t k = 0; k < 64; ++k) {
    EXPECT_NEAR(values[2 * k], kDelta * bins[k].real(), 2e-5);
    EXPECT_NEAR(values[2 * k + 1], kDelta * (k ? bins[k].imag() : bins[64].real()), 2e-5);
  }
  unit->prewhiten();
  s->prewhiten();
  for (std::size_t j = 0; j < x.size(); ++j) {
    EXPECT_EQ(valuesOf(*unit)[j], x[j] / 64);
    EXPECT_EQ(valuesOf(*s)[j], x[j] / 32);
  }
  expectChanged(*s);
}

TEST(SacObjectFilters, ShortTracesAndAbsurdArgumentsDoNoHarm) {
  using MethodOf = std::function<void(SacObject&, float)>;
  const std::vector<MethodOf> spectral = {
      [](auto& s, float v) { s.RGaussianFilter(v); },
      [](auto& s, float v) { s.RGaussianFilterSwapOld_New(v, -v); },
      [](auto& s, float v) { s.SGaussianFilter_Alpha(v, v); },
      [](auto& s, float v) { s.CosineTaperFilter(v, 1, v, v); },
      [](auto& s, float v) { s.TstarFilter(v); },
      [](auto& s, float v) { s.CosineTimeFunctionFilterDuration(v); },
      [](auto& s, float v) { s.TrapezoidFilter(v, v, v); },
      [](auto& s, float) { s.Envelope(); },
      [](auto& s, float) { s.InstantaneousPeriod(); },
      [](auto& s, float v) { s.NoiseFilterStartingAtTime(v); },
      [](auto& s, float) { s.prewhiten(); },
      [](auto& s, float v) { s.ConvolveInstrument(v > 0 ? 1 : 2); },
      [](auto& s, float v) { s.WaterLevelDeconWith_wlevel_tshift_gwidth(s, v, v, v); },
      [](auto& s, float) { s.correlateWith(s); }};
  std::vector<MethodOf> all = {
      [](auto& s, float v) { s.LPBUfilter_NPasses_NPoles(v, 2, 4); },
      [](auto& s, float v) { s.HPBUfilter_NPasses_NPoles(v, -1, 1 << 30); },
      [](auto& s, float) { s.spectrum(); }, [](auto& s, float) { s.GetOptimalShift(s); },
      [](auto& s, float v) { s.subtractZeroLagGaussian(v); }};
  for (const auto& method : spectral) {
    const auto empty = madeTrace({});
    method(*empty, 1);
    EXPECT_EQ(imageOf(*empty), imageOf(*madeTrace({}))) << &method - spectral.data();
    EXPECT_FALSE(empty->mSeisHasChanged());
    all.push_back(method);
  }
  for (const float v : {0.0f, -1.0f, 2.0f, 1e-38f, 1e30f, -1e30f, kInfinity, kNaN}) {
    for (const float delta : {1.0f, 0.0f, -1.0f, 1e-38f, 1e30f, kNaN}) {
      for (const auto& method : all) {
        method(*make<SacObject>(), v);
        for (const int n : {0, 1, 2, 3, 4}) {
          const auto s = madeTrace(noise(n), delta, v);
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
