#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <complex>
#include <numbers>

#include "dsp/Noise.h"
#include "krosac/series/rfSpectrum.h"

namespace krosac {
namespace {

using testing::ElementsAre;
using Complex = std::complex<double>;
using Values = std::vector<float>;

Values valuesOf(const Ref<ByteBuffer>& buffer) {
  const auto* first = reinterpret_cast<const float*>(buffer->bytes());
  return {first, first + buffer->length() / sizeof(float)};
}

Ref<rfSpectrum> spectrumOf(const Values& values, float df) {
  auto s = make<rfSpectrum>();
  s->init();
  s->setSpectrum(ByteBuffer::copyOf(values.data(), values.size() * sizeof(float)));
  s->setNpts(static_cast<std::int32_t>(values.size()));
  s->setDf(df);
  return s;
}

TEST(Spectrum, OfAnImpulseIsFlat) {
  const auto s = make<rfSpectrum>();
  EXPECT_FALSE(s->initWithImpulseSpectrumDt_Npts(0.1f, 1 << 30));
  ASSERT_TRUE(s->initWithImpulseSpectrumDt_Npts(0.1f, -5)) << "one value, without a Nyquist term";
  EXPECT_THAT(valuesOf(s->spectrum()), ElementsAre(1));
  ASSERT_EQ(s->initWithImpulseSpectrumDt_Npts(0.1f, 3), s);
  EXPECT_THAT(valuesOf(s->spectrum()), ElementsAre(1, 1, 1, 0));
  EXPECT_EQ(s->description(),
            "Npts=4 df=2.500000 spectrumSize=16 bytes\nminAmp=1.000000e+00 maxAmp=1.000000e+00");
}

TEST(Spectrum, MeasuresBands) {
  // Amplitudes 1, 2 (Nyquist), 5, 10 at 0, 0.75, 0.25, 0.5 Hz.
  const auto s = spectrumOf({1, -2, 3, 4, -6, 8}, 0.25f);
  const float cases[][5] = {{0, 99, 130, 18 / 4.0f, 0.5f},
                            {0.3f, 0.6f, 125, 15 / 2.0f, std::log10(50.0f) / 2},
                            {0.1f, 0.2f, 1, 1, 0},
                            {0.75f, 9, 4, 2, std::log10(2.0f)},
                            {-INFINITY, 0.3f, 26, 3, std::log10(5.0f) / 2}};  // the same as from 0
  for (const auto& [f1, f2, power, mean, meanLog] : cases) {
    EXPECT_FLOAT_EQ(s->signalPowerFromFreq_To(f1, f2), 1.5707963f * power) << f1;
    EXPECT_FLOAT_EQ(s->meanAmplitudeValueFrom_To(f1, f2), mean) << f1;
    EXPECT_FLOAT_EQ(s->meanLog10AmplitudeValueFrom_To(f1, f2), meanLog) << f1;
  }
  for (const auto& [f1, f2] : {std::pair{1.0f, 0.9f}, {0.76f, 9.0f}, {0.0f, NAN}, {-2.0f, -1.0f}})
    EXPECT_EQ(s->meanAmplitudeValueFrom_To(f1, f2), -12345.0f) << f1;
  s->setDf(0.0f);
  EXPECT_EQ(s->signalPower() + s->meanAmplitudeValueFrom_To(2.0f, 1.0f), 0.0f);
  // For some of these lengths halfpts df / df is rounded below halfpts.
  for (int n = 2; n < 200; ++n) {
    const auto t = spectrumOf(noise(static_cast<std::size_t>(n)), 1.0f / (0.3f * float(n)));
    const float nyquist = t->df() * float(t->halfpts()), whole = t->signalPower();
    EXPECT_EQ(t->signalPowerFromFreq_To(0.0f, INFINITY), whole) << n;
    EXPECT_EQ(t->signalPowerFromFreq_To(0.0f, nyquist), whole) << n;
    EXPECT_EQ(t->meanAmplitudeValueFrom_To(nyquist, nyquist), std::abs(valuesOf(t->spectrum())[1]));
  }
}

TEST(Spectrum, FindsExtremaCopiesAndAdds) {
  const auto s = spectrumOf({-3.0f, -0.5f, 3.0f, -4.0f, 0.0f, 1.0f, 5.0f, 12.0f}, 1.0f);
  s->computeExtrema();
  EXPECT_THAT((Values{s->minAmp(), s->maxAmp(), s->meanAmp()}), ElementsAre(0.5, 13, 22.5 / 8));
  EXPECT_THAT(valuesOf(s->amplitudeSpectrum()), ElementsAre(-3, 5, 1, 13, -0.5)) << "with signs";
  const kroSpectrum& base = *s;
  const auto copy = base.copyWithZone();
  EXPECT_TRUE(dynamic_cast<rfSpectrum*>(copy.get()));
  EXPECT_TRUE(copy->description() == s->description() && copy->meanAmp() == s->meanAmp());
  s->addSpectrum(*spectrumOf(Values(8, 9.0f), std::nextafter(1.0f, 2.0f)));
  s->addSpectrum(*spectrumOf(Values(9, 9.0f), 1.0f));
  s->addSpectrum(*s);
  EXPECT_EQ(valuesOf(s->spectrum())[7], 24.0f) << "only the matching spectrum is added";
  EXPECT_EQ(valuesOf(copy->spectrum())[7], 12.0f);
}

TEST(Spectrum, ShapesItsBins) {
  // The expected bin at angular frequency w. The two real values become `ends`, or change as bins.
  const struct {
    void (*shape)(rfSpectrum&);
    Complex (*bin)(Complex, double);
    double ends = NAN;
  } rows[] = {
      {[](rfSpectrum& s) { s.phaseShiftBy(0.7f); },
       [](Complex z, double w) { return z * std::polar(1.0, 0.7 * w); }},
      {[](rfSpectrum& s) { s.multiplyByScalar(3); }, [](Complex z, double) { return 3.0 * z; }},
      {[](rfSpectrum& s) { s.multiplyByIOmega(); },
       [](Complex z, double w) { return z * Complex(0, w); }, 0},
      {[](rfSpectrum& s) { s.divideByIOmega(); },
       [](Complex z, double w) { return z / Complex(0, w); }, 0},
      {[](rfSpectrum& s) { s.prewhiten(); }, [](Complex z, double) { return z / std::abs(z); }, 1}};
  const Values x = noise(64);
  for (const auto& row : rows) {
    SCOPED_TRACE(&row - rows);
    const auto s = spectrumOf(x, 0.1f);
    row.shape(*s);
    const Values y = valuesOf(s->spectrum());
    for (std::size_t k = 1; k < 32; ++k) {
      const Complex truth = row.bin({x[2 * k], x[2 * k + 1]}, 0.2 * std::numbers::pi * double(k));
      EXPECT_LE(std::abs(Complex(y[2 * k], y[2 * k + 1]) - truth), 2e-6 * std::abs(truth)) << k;
    }
    const bool isFixed = !std::isnan(row.ends);
    const double nyquist = row.bin(x[1], 6.4 * std::numbers::pi).real();
    EXPECT_NEAR(y[0], isFixed ? row.ends : row.bin(x[0], 0).real(), 1e-6);
    EXPECT_NEAR(y[1], isFixed ? row.ends : nyquist, 1e-5);
  }
}

TEST(Spectrum, IsSafeWithoutItsValues) {
  const auto none = make<rfSpectrum>(), one = spectrumOf({5.0f}, 1.0f),
             cut = spectrumOf({3.0f, 1.0f, 3.0f, 4.0f, 9.0f}, 1.0f);
  cut->setNpts(12);
  EXPECT_THAT(valuesOf(cut->amplitudeSpectrum()), ElementsAre(3, 5, 0, 0, 0, 0, 1));
  for (const auto& s : {none, one, cut}) {
    s->setNpts(12);  // more than the buffer holds
    EXPECT_TRUE((s->signalPower() > 0.0f) == (s == cut) && !s->amplitudeSpectrum() == (s != cut));
    s->setNpts(1 << 30);
    for (const auto operation : {&rfSpectrum::computeExtrema, &rfSpectrum::prewhiten,
                                 &rfSpectrum::multiplyByIOmega, &rfSpectrum::divideByIOmega})
      (s.get()->*operation)();
    s->phaseShiftBy(1.0f);
    s->multiplyByScalar(2.0f);
    s->addSpectrum(*s);
    s->setZeroFrequencyValue(7.0f);
  }
  EXPECT_THAT(valuesOf(one->spectrum()), ElementsAre(7.0f)) << "set for any npts";
  EXPECT_EQ(valuesOf(cut->spectrum())[4], 36.0f) << "scaled by 2, then doubled";
}

}  // namespace
}  // namespace krosac
