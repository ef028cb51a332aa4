#include <functional>
#include <limits>
#include <numeric>

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
      // The old Gaussian falls to 1e-6 at 5.947 rad/s; up to there it enlarges all roundings.
      {[](S& s) { s.RGaussianFilterSwapOld_New(0.8f, 4); },
       [](double w) { return lowPass(w, 4) / (w < 5.947 ? lowPass(w, 0.8) : 1); }, 1e-5},
      {[](S& s) { s.SGaussianFilter_Alpha(0.9f, 2); }, [](double w) { return window(w, 0.9); }},
      {[=](S& s) { s.CosineTaperFilter(0.1f, 0.35f, 0.6f, 0.95f); },
       [=](double w) { return band(w, f1, f2, f3, f4); }},
      {[=](S& s) { s.CosineTaperFilter(-1, 0.35f, 0.6f, 2); },
       [=](double w) { return band(w, -1, f2, f3, 2); }},
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

TEST(SacObjectAnalyticSignal, GivesTheEnvelopeAndTheFrequencySmoothedInPlace) {
  for (const int count : {100, 127}) {  // the mean of the last of 127 reaches beyond all 128
    const Samples x = richNoise(count);
    const auto s = traceOf(x, kDelta), envelope = traceOf(x, kDelta);
    s->InstantaneousPeriod();
    envelope->Envelope();
    const Spectrum z = slowAnalyticSignal(x, [](double) { return 1.0; });
    const Spectrum d =  // its derivative, with the frequency of each bin less that of one
        slowAnalyticSignal(x, [](double k) { return Complex(0, (k - 1) * kNyquist / 64); });
    Spectrum y;  // the power and the turning
    for (std::size_t j = 0; j < z.size(); ++j)
      y.emplace_back(std::norm(z[j]), (std::conj(z[j]) * d[j]).imag());
    const auto mirrored = [&y](int j) { return y[127 - std::abs(127 - std::abs(j))]; };
    Reals moduli, frequencies;
    for (int j = 0; j < count; ++j) {
      moduli.push_back(std::abs(z[j]) / 128);
      Complex sum;
      for (int i = j - 2; i <= j + 2; ++i) sum += mirrored(i);
      y[j] = 0.2 * sum;
      frequencies.push_back(y[j].imag() / y[j].real() / (2 * kPi));
    }
    expectSamples(*envelope, moduli);
    expectSamples(*s, frequencies, 2e-5);  // quotients by what may be little
  }
  const auto silent = traceOf(Samples(10));
  silent->InstantaneousPeriod();
  EXPECT_EQ(samplesIn(*silent), Samples(10, -0.01f));
}

TEST(SacObjectFilters, PulsesAreAdvancedByOneSampleAndHaveUnitArea) {
  const std::pair<Method, Samples> rows[] = {
      {[](S& s) { s.CosineTimeFunctionFilterDuration(2); }, {0, 1, 2, 1}},  // area not yet 1
      {[](S& s) { s.CosineTimeFunctionFilterDuration(0.75f); }, {0, 1.5f}},
      {[](S& s) { s.TrapezoidFilter(1.2f, 0.3f, 1.7f); },
       {0, 0.5f / 1.2f, 1, 1, 1 - 0.5f / 1.7f, 1 - 1 / 1.7f}},
      // Without a fall the top's last weight is dropped.
      {[](S& s) { s.TrapezoidFilter(1, 1, 0); }, {0, 0.5f, 1, 1}},
      {[](S& s) { s.TrapezoidFilter(0.5f, 0, 0); }, {}}};
  Samples x(16);
  x[4] = 3;
  for (const auto& [filter, weights] : rows) {
    SCOPED_TRACE(weights.size());
    const auto s = traceOf(x, kDelta);
    filter(*s);
    const double area = std::accumulate(weights.begin(), weights.end(), 0.0);
    Reals expected(16);
    for (std::size_t k = 0; k < weights.size(); ++k) expected[3 + k] = 3 * weights[k] / area;
    expectSamples(*s, expected, 1e-6);
  }
}

TEST(SacObjectFilters, RefuseArgumentsThatMakeNoFilter) {
  const auto s = traceOf(richNoise(60), kDelta);
  for (const float refused : {-1.0f, kNaN}) {
    s->LPBUfilter_NPasses_NPoles(refused, 2, 4);
    s->HPBUfilter_NPasses_NPoles(refused, 2, 4);
    s->TrapezoidFilter(refused, 1, 1);
    s->TrapezoidFilter(1, refused, 1);
    s->CosineTimeFunctionFilterDuration(refused);
  }
  s->LPBUfilter_NPasses_NPoles(0, 2, 4);
  s->HPBUfilter_NPasses_NPoles(0, 2, 4);
  s->CosineTimeFunctionFilterDuration(0.74f);  // shorter than two samples
  s->CosineTimeFunctionFilterDuration(1e8f);
  s->TrapezoidFilter(1e8f, 1, 1);
  expectUnchanged(*s, richNoise(60));
}

TEST(SacObjectFilters, ButterworthSpectrumAndPrewhiteningAreThePlainOnes) {
  const Samples x = richNoise(64);
  const auto s = traceOf(x, kDelta), low = traceOf(x, kDelta), high = traceOf(x, kDelta);
  Samples lowPassed = x, highPassed = x;
  GRLPBUfilter(lowPassed.data(), 64, 2, 6, kDelta, 0.2f);
  GRHPBUfilter(highPassed.data(), 64, 2, 6, kDelta, 0.2f);
  low->LPBUfilter_NPasses_NPoles(0.2f, 2, 6);
  high->HPBUfilter_NPasses_NPoles(0.2f, 2, 6);
  expectSamples(*low, Reals(lowPassed.begin(), lowPassed.end()), 0);
  expectSamples(*high, Reals(highPassed.begin(), highPassed.end()), 0);

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
  for (std::size_t j = 0; j < x.size(); ++j) EXPECT_EQ(samplesIn(*s)[j], x[j] / 32);
}

// One after the other, since what could do harm comes of the argument, the interval and the counts.
void applyAll(S& s, float v) {
  s.RGaussianFilter(v);
  s.RGaussianFilterSwapOld_New(v, -v);
  s.SGaussianFilter_Alpha(v, v);
  s.CosineTaperFilter(v, 1, v, v);
  s.TstarFilter(v);
  s.CosineTimeFunctionFilterDuration(v);
  s.TrapezoidFilter(v, v, v);
  s.NoiseFilterStartingAtTime(v);
  s.ConvolveInstrument(v > 0 ? 1 : 2);
  s.WaterLevelDeconWith_wlevel_tshift_gwidth(s, v, v, v);
  s.Envelope();
  s.InstantaneousPeriod();
  s.prewhiten();
  s.correlateWith(s);
}

TEST(SacObjectFilters, ShortTracesAndAbsurdArgumentsDoNoHarm) {
  const auto empty = traceOf({});
  applyAll(*empty, 1);
  expectUnchanged(*empty, {});
  for (const float v : {0.0f, -1.0f, 2.0f, 1e-38f, 1e30f, -1e30f, HUGE_VALF, kNaN}) {
    applyAll(*make<S>(), v);
    for (const float delta : {1.0f, 0.0f, 1e-38f, 1e30f, kNaN}) {
      for (const int n : {0, 1, 2, 3}) {
        const auto s = traceOf(noise(n), delta, v);
        s->setNpts(n == 3 ? 1 << 30 : n);  // more than there are
        s->subtractZeroLagGaussian(v);
        s->HPBUfilter_NPasses_NPoles(v, -1, 1 << 30);
        s->GetOptimalShift(*s);
        s->spectrum();
        applyAll(*s, v);
        EXPECT_EQ(s->myData()->length(), 632u + 4u * static_cast<unsigned>(n));
      }
    }
  }
}

}  // namespace
}  // namespace krosac
