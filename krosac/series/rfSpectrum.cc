#include "krosac/series/rfSpectrum.h"

#include <algorithm>
#include <cmath>
#include <optional>

#include "krosac/dsp/internal/PackedSpectrum.h"
#include "krosac/platform/Numbers.h"
#include "krosac/platform/internal/TruncIndex.h"

namespace krosac {
namespace {

constexpr double kPi = 3.141592653589793;

// The values that are both stated and in the buffer; none where there are fewer than two.
std::optional<PackedBins> binsOf(const kroSpectrum& s) {
  if (s.npts() < 2 || !s.spectrum()) return std::nullopt;
  const std::size_t n =
      std::min(static_cast<std::size_t>(s.npts()), s.spectrum()->length() / sizeof(float));
  if (n < 2) return std::nullopt;
  return PackedBins(reinterpret_cast<float*>(s.spectrum()->mutableBytes()), n, s.df());
}

float squared(float real) {
  return real * real;
}
float squared(float re, float im) {
  return re * re + im * im;
}
double amplitude(float real) {
  return std::fabs(real);
}
double amplitude(float re, float im) {
  return std::sqrt(static_cast<double>(squared(re, im)));
}

// What a measure looks at: the two real values, and bins first to last.
struct Band {
  bool hasZeroFrequency, hasNyquist;
  std::int64_t first, last;

  float terms() const {
    const std::int64_t bins = std::max(last - first + 1, std::int64_t{0});
    return static_cast<float>(hasZeroFrequency + hasNyquist + bins);
  }
};

Band wholeBand(const PackedBins& s) {
  return {true, true, 1, static_cast<std::int64_t>(s.size() / 2) - 1};
}

// None where the limits make no band.
std::optional<Band> bandBetween(const PackedBins& s, float f1, float f2) {
  const auto half = static_cast<std::int64_t>(s.size() / 2);
  const float nyquist = s.frequency(s.size() / 2);
  if (!(f1 <= f2) || f1 > nyquist) return std::nullopt;
  const std::int64_t i1 = truncInt32(f1 / s.df()), i2 = truncInt32(std::min(nyquist, f2) / s.df());
  if (i1 == kNoInt32 || i2 == kNoInt32) return std::nullopt;
  return Band{i1 == 0, i2 == half, i1 == 0 ? 1 : i1, i2 == half ? half - 1 : i2};
}

// The sum, in single precision, of a measure that takes a real value or the parts of a bin.
template <typename Measure>
float sumOver(const PackedBins& s, const Band& band, Measure measure) {
  float sum = 0.0f;
  const auto add = [&sum](auto term) { sum = static_cast<float>(sum + term); };
  if (band.hasZeroFrequency) add(measure(s.dc()));
  if (band.hasNyquist) add(measure(s.nyquist()));
  if (band.first < 0) add(measure(0.0f, 0.0f));  // the same for one bin below 0 as for many
  const std::int64_t last = std::min(band.last, static_cast<std::int64_t>(s.size() / 2) - 1);
  const float* value = s.values();
  for (std::int64_t k = std::max(band.first, std::int64_t{0}); k <= last; ++k)
    add(measure(value[2 * k], value[2 * k + 1]));
  return sum;
}

float powerOver(const PackedBins& s, const Band& band) {
  const float sum = sumOver(s, band, [](auto... parts) { return squared(parts...); });
  return static_cast<float>(s.df() * (2.0 * sum * kPi));
}

// measureBand(bins, band), or what stands for no spectrum and for no band.
template <typename MeasureBand>
float overBand(const kroSpectrum& spectrum, float f1, float f2, MeasureBand measureBand) {
  const auto s = binsOf(spectrum);
  if (!s || s->df() == 0.0f) return 0.0f;
  const auto band = bandBetween(*s, f1, f2);
  return band ? measureBand(*s, *band) : kSacUndefinedFloat;
}

}  // namespace

Ref<rfSpectrum> rfSpectrum::initWithImpulseSpectrumDt_Npts(float dt, std::int32_t n) {
  const std::int32_t points = nextPowerOfTwoPts(n);
  if (!init() || points == 0) return nullptr;
  const PackedSpectrum flat(static_cast<std::size_t>(points), dt);
  if (!flat) return nullptr;
  std::fill_n(flat.values(), std::min(points, 2), 1.0f);
  flat.forEachBin([](std::size_t, float& re, float&) { re = 1.0f; });
  setSpectrum(flat.buffer());
  setNpts(points);
  setDf(flat.df());
  computeExtrema();
  return Ref<rfSpectrum>(this);
}

void rfSpectrum::computeExtrema() {
  const auto s = binsOf(*this);
  if (!s) return;
  float least = std::fabs(s->dc()), greatest = least, sum = least;
  const auto include = [&](float a) {
    if (a < least) least = a;
    if (a > greatest) greatest = a;
    sum += a;
  };
  include(std::fabs(s->nyquist()));
  s->forEachBin([&](std::size_t, float& re, float& im) { include(std::sqrt(squared(re, im))); });
  setMinAmp(least);
  setMaxAmp(greatest);
  // Over the number of values, not of amplitudes; this is intended.
  setMeanAmp(sum / static_cast<float>(s->size()));
}

float rfSpectrum::signalPower() const {
  const auto s = binsOf(*this);
  return s && s->df() != 0.0f ? powerOver(*s, wholeBand(*s)) : 0.0f;
}

float rfSpectrum::signalPowerFromFreq_To(float f1, float f2) const {
  return overBand(*this, f1, f2, powerOver);
}

float rfSpectrum::meanAmplitudeValueFrom_To(float f1, float f2) const {
  return overBand(*this, f1, f2, [](const PackedBins& s, const Band& band) {
    return sumOver(s, band, [](auto... parts) { return amplitude(parts...); }) / band.terms();
  });
}

float rfSpectrum::meanLog10AmplitudeValueFrom_To(float f1, float f2) const {
  return overBand(*this, f1, f2, [](const PackedBins& s, const Band& band) {
    return sumOver(s, band, [](auto... parts) { return std::log10(amplitude(parts...)); }) /
           band.terms();
  });
}

Ref<ByteBuffer> rfSpectrum::amplitudeSpectrum() const {
  const auto s = binsOf(*this);
  if (!s) return nullptr;
  const std::size_t half = s->size() / 2;
  auto buffer = ByteBuffer::zeroed((half + 1) * sizeof(float));
  if (!buffer) return nullptr;
  auto* out = reinterpret_cast<float*>(buffer->mutableBytes());
  // With their signs; this is intended.
  out[0] = s->dc();
  out[half] = s->nyquist();
  s->forEachBin([&](std::size_t k, float& re, float& im) { out[k] = std::sqrt(squared(re, im)); });
  return buffer;
}

void rfSpectrum::prewhiten() {
  const auto s = binsOf(*this);
  if (!s) return;
  s->dc() = s->nyquist() = 1.0f;
  s->forEachBin([](std::size_t, float& re, float& im) {
    const float a = std::sqrt(squared(re, im));
    re /= a;
    im /= a;
  });
}

void rfSpectrum::phaseShiftBy(float tau) {
  const auto s = binsOf(*this);
  if (!s) return;
  const double phase = kTwoPi * tau * static_cast<double>(s->size() / 2) * s->df();
  s->nyquist() = static_cast<float>(s->nyquist() * std::cos(phase));
  s->multiplyBins([&](std::size_t k, double& re, double& im) {
    const double theta = s->omega(k) * tau;
    re = std::cos(theta);
    im = std::sin(theta);
  });
}

void rfSpectrum::multiplyByScalar(float c) {
  const auto s = binsOf(*this);
  if (!s) return;
  for (std::size_t i = 0; i < s->size(); ++i) s->values()[i] *= c;
}

void rfSpectrum::multiplyByIOmega() {
  const auto s = binsOf(*this);
  if (!s) return;
  s->dc() = s->nyquist() = 0.0f;
  s->forEachBin([&](std::size_t k, float& re, float& im) {
    const float omega = s->omega(k), real = re;
    re = -omega * im;
    im = omega * real;
  });
}

void rfSpectrum::divideByIOmega() {
  const auto s = binsOf(*this);
  if (!s) return;
  s->dc() = s->nyquist() = 0.0f;
  s->forEachBin([&](std::size_t k, float& re, float& im) {
    const float omega = s->omega(k), real = re;
    re = im / omega;
    im = -real / omega;
  });
}

void rfSpectrum::addSpectrum(const kroSpectrum& other) {
  const auto s = binsOf(*this), o = binsOf(other);
  if (!s || !o || npts() != other.npts() || df() != other.df()) return;
  for (std::size_t i = 0; i < std::min(s->size(), o->size()); ++i) s->values()[i] += o->values()[i];
}

void rfSpectrum::setZeroFrequencyValue(float v) {
  if (!spectrum() || spectrum()->length() < sizeof v) return;
  *reinterpret_cast<float*>(spectrum()->mutableBytes()) = v;
}

Ref<rfSpectrum> rfSpectrum::copy() const {
  return Ref<rfSpectrum>(dynamic_cast<rfSpectrum*>(clone().get()));
}

Ref<kroSpectrum> rfSpectrum::clone() const {
  auto copy = make<rfSpectrum>();
  return copy && copyFieldsTo(*copy) ? Ref<kroSpectrum>(copy) : nullptr;
}

}  // namespace krosac
