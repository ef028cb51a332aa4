#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <complex>
#include <numbers>
#include <span>

#include "dsp/Noise.h"
#include "krosac/collections/rfSpectrum.h"
#include "krosac/dsp/Fft.h"

namespace krosac {
namespace {

using testing::ElementsAre;
using testing::FloatEq;
constexpr double kTwoPi = 2.0 * std::numbers::pi;

std::span<float> valuesOf(const Ref<ByteBuffer>& buffer) {
  return {reinterpret_cast<float*>(buffer->mutableBytes()), buffer->length() / sizeof(float)};
}

Ref<rfSpectrum> spectrumOf(const std::vector<float>& values, float df) {
  auto s = make<rfSpectrum>();
  s->init();
  s->setSpectrum(ByteBuffer::copyOf(values.data(), values.size() * sizeof(float)));
  s->setNpts(static_cast<std::int32_t>(values.size()));
  s->setDf(df);
  return s;
}

TEST(Spectrum, OfAnImpulseIsFlat) {
  const auto s = make<rfSpectrum>();
  const std::pair<int, int> lengths[] = {
      {-5, 1}, {0, 1}, {4, 8}, {5, 8}, {1023, 1024}, {(1 << 30) - 1, 1 << 30}, {1 << 30, 0}};
  for (const auto& [n, padded] : lengths) EXPECT_EQ(s->nextPowerOfTwoPts(n), padded) << n;
  EXPECT_FALSE(s->initWithImpulseSpectrumDt_Npts(0.1f, 1 << 30));
  ASSERT_EQ(s->initWithImpulseSpectrumDt_Npts(0.1f, 1000), s);
  EXPECT_EQ(s->halfpts(), 512);
  EXPECT_FLOAT_EQ(s->df(), 1.0f / 102.4f);
  EXPECT_EQ(s->meanAmp(), 513.0f / 1024.0f);
  EXPECT_EQ(s->description(),
            "Npts=1024 df=0.009766 spectrumSize=4096 bytes\n"
            "minAmp=1.000000e+00 maxAmp=1.000000e+00");

  // Delayed by 7 samples and taken back it is the impulse at sample 7; rounding of 1024 values.
  s->phaseShiftBy(0.7f);
  const auto x = valuesOf(s->spectrum());
  realft(x.data() - 1, 1024, -1);
  for (std::size_t i = 0; i < 1024; ++i) ASSERT_NEAR(x[i] / 512.0f, i == 7 ? 1.0f : 0.0f, 1e-4);

  ASSERT_TRUE(s->initWithImpulseSpectrumDt_Npts(0.1f, 0)) << "one value, without a Nyquist term";
  EXPECT_THAT(valuesOf(s->spectrum()), ElementsAre(1.0f));
}

TEST(Spectrum, MeasuresBands) {
  const auto values = noise(32);
  const auto s = spectrumOf(values, 0.25f);
  const struct {
    float f1, f2;
    bool zero, nyquist;
    int first, last;
  } cases[] = {{0.0f, 100.0f, true, true, 1, 15},   {0.0f, 3.99f, true, false, 1, 15},
               {0.3f, 1.1f, false, false, 1, 4},    {0.1f, 0.2f, true, false, 1, 0},
               {4.0f, 9.0f, false, true, 16, 15},   {-0.8f, 0.5f, false, false, -3, 2},
               {-2.0f, -1.0f, false, false, -8, -4}};
  for (const auto& c : cases) {
    double power = 0.0, sum = 0.0, logs = 0.0, n = 0.0;
    const auto add = [&](std::complex<double> value) {
      power += 0.25 * kTwoPi * std::norm(value);
      sum += std::abs(value);
      logs += std::log10(std::abs(value));
      n += 1.0;
    };
    if (c.zero) add(values[0]);
    if (c.nyquist) add(values[1]);
    for (int k = c.first; k < std::min(c.last + 1, 0); ++k) add(0.0);
    for (auto k = static_cast<std::size_t>(std::max(c.first, 0)); int(k) <= c.last; ++k)
      add({values[2 * k], values[2 * k + 1]});  // in bin 0 the two real values
    // The sums hold at most 17 terms of single precision.
    EXPECT_NEAR(s->signalPowerFromFreq_To(c.f1, c.f2), power, 2e-6 * power) << c.f1;
    EXPECT_NEAR(s->meanAmplitudeValueFrom_To(c.f1, c.f2), sum / n, 1e-6) << c.f1;
    const double meanLog = s->meanLog10AmplitudeValueFrom_To(c.f1, c.f2);
    EXPECT_TRUE(meanLog == logs / n || std::fabs(meanLog - logs / n) < 1e-5) << c.f1;
  }
  EXPECT_EQ(s->signalPower(), s->signalPowerFromFreq_To(0.0f, 1e30f));
  const std::pair<float, float> noBands[] = {
      {1.0f, 0.9f}, {4.01f, 9.0f}, {NAN, 1.0f}, {0.0f, NAN}, {-1e30f, 1.0f}};
  for (const auto& [f1, f2] : noBands)
    EXPECT_EQ(s->meanAmplitudeValueFrom_To(f1, f2), -12345.0f) << f1;
  s->setDf(0.0f);
  EXPECT_EQ(s->signalPower() + s->meanAmplitudeValueFrom_To(2.0f, 1.0f), 0.0f);
  s->setDf(-1.0f);
  EXPECT_EQ(s->signalPowerFromFreq_To(-90.0f, -90.0f), 0.0f) << "bins far above the last";
}

TEST(Spectrum, FindsExtremaCopiesAndAdds) {
  const auto s = spectrumOf({-3.0f, -0.5f, 3.0f, -4.0f, 0.0f, 1.0f, 5.0f, 12.0f}, 1.0f);
  s->computeExtrema();
  EXPECT_EQ(std::tuple(s->minAmp(), s->maxAmp(), s->meanAmp()), std::tuple(0.5f, 13.0f, 22.5f / 8));
  EXPECT_THAT(valuesOf(s->amplitudeSpectrum()), ElementsAre(-3.0f, 5.0f, 1.0f, 13.0f, -0.5f));

  const kroSpectrum& base = *s;
  const auto copy = base.copyWithZone();
  EXPECT_TRUE(dynamic_cast<rfSpectrum*>(copy.get()));
  s->multiplyByScalar(0.0f);
  EXPECT_EQ(valuesOf(copy->spectrum())[7], 12.0f);
  EXPECT_EQ(copy->description(), s->description());
  EXPECT_EQ(copy->meanAmp(), s->meanAmp());
  EXPECT_FALSE(make<kroSpectrum>()->copy()->spectrum());

  const auto sum = spectrumOf({1.0f, 2.0f}, 0.1f);
  sum->addSpectrum(*spectrumOf({5.0f, 5.0f}, std::nextafter(0.1f, 1.0f)));
  sum->addSpectrum(*spectrumOf({5.0f, 5.0f, 5.0f}, 0.1f));
  EXPECT_THAT(valuesOf(sum->spectrum()), ElementsAre(1.0f, 2.0f));
  sum->addSpectrum(*sum);
  EXPECT_THAT(valuesOf(sum->spectrum()), ElementsAre(2.0f, 4.0f));
}

TEST(Spectrum, ShapesItsBins) {
  const auto values = noise(64);
  const auto s = spectrumOf(values, 0.1f);
  const auto x = valuesOf(s->spectrum());
  s->phaseShiftBy(0.0f);
  EXPECT_TRUE(std::ranges::equal(x, values));
  s->multiplyByIOmega();
  s->divideByIOmega();
  for (std::size_t i = 0; i < 64; ++i) EXPECT_FLOAT_EQ(x[i], i < 2 ? 0.0f : values[i]) << i;
  s->multiplyByScalar(3.0f);
  s->setZeroFrequencyValue(-1.0f);
  EXPECT_FLOAT_EQ(x[63], 3.0f * values[63]);
  EXPECT_EQ(x[0], -1.0f);
  s->prewhiten();
  for (std::size_t k = 1; k < 32; ++k) {
    const std::complex<double> was(values[2 * k], values[2 * k + 1]), is(x[2 * k], x[2 * k + 1]);
    EXPECT_NEAR(std::abs(is - was / std::abs(was)), 0.0, 1e-6) << k;
  }
  EXPECT_EQ(x[0], 1.0f);
  // A third of the interval turns the Nyquist term by a sixth of a wave, whose cosine is left.
  s->phaseShiftBy(1.0f / (3.0f * 6.4f));
  EXPECT_NEAR(x[1], 0.5, 1e-6);

  // With df = 1 / (2 pi) bin 1 has w = 1: i (3 + 4 i) = -4 + 3 i.
  const auto bin = spectrumOf({9.0f, 9.0f, 3.0f, 4.0f}, static_cast<float>(1.0 / kTwoPi));
  bin->multiplyByIOmega();
  EXPECT_THAT(valuesOf(bin->spectrum()), ElementsAre(0.0f, 0.0f, FloatEq(-4.0f), FloatEq(3.0f)));
}

TEST(Spectrum, IsSafeWithoutItsValues) {
  const auto none = make<rfSpectrum>(), one = spectrumOf({5.0f}, 1.0f),
             cut = spectrumOf({3.0f, 1.0f, 3.0f, 4.0f, 9.0f}, 1.0f);
  cut->setNpts(1 << 30);  // more than there is: what is there counts
  EXPECT_THAT(valuesOf(cut->amplitudeSpectrum()), ElementsAre(3.0f, 5.0f, 1.0f));
  for (const auto& s : {none, one, cut}) {
    s->setNpts(8);
    for (const auto operation : {&rfSpectrum::computeExtrema, &rfSpectrum::prewhiten,
                                 &rfSpectrum::multiplyByIOmega, &rfSpectrum::divideByIOmega})
      (s.get()->*operation)();
    s->phaseShiftBy(1.0f);
    s->multiplyByScalar(2.0f);
    s->addSpectrum(*s);
    s->setZeroFrequencyValue(1.0f);
    EXPECT_EQ(s->signalPower() == 0.0f, s != cut);
    EXPECT_EQ(s->signalPowerFromFreq_To(-1.0f, 1e6f) == 0.0f, s != cut);
    EXPECT_EQ(!s->amplitudeSpectrum(), s != cut);
  }
  EXPECT_THAT(valuesOf(one->spectrum()), ElementsAre(1.0f)) << "set without a look at npts";
}

}  // namespace
}  // namespace krosac
