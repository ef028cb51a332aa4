#include "krosac/series/rfSpectrum.h"

#include <algorithm>
#include <cmath>
#include <optional>

#include "krosac/dsp/internal/PackedSpectrum.h"
#include "krosac/platform/Numbers.h"
#include "krosac/platform/internal/Reason.h"
#include "krosac/platform/internal/TruncIndex.h"

namespace krosac {
namespace {

constexpr double kPi = 3.141592653589793;

// The first min(npts, values in the buffer) values; none if there are fewer than two.
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

// The terms of a measure: the two real values, and bins first to last.
struct Band {
  bool hasZeroFrequency, hasNyquist;
  std::int64_t first, last;

  float terms() const {
    return static_cast<float>(hasZeroFrequency + hasNyquist + last - first + 1);
  }
};

Band wholeBand(const PackedBins& s) {
  return {true, true, 1, static_cast<std::int64_t>(s.size() / 2) - 1};
}

// None if the limits are invalid.
std::optional<Band> bandBetween(const PackedBins& s, float f1, float f2) {
  const auto half = static_cast<std::int64_t>(s.size() / 2);
  const float nyquist = s.frequency(s.size() / 2);
  f1 = std::max(f1, 0.0f);
  if (!(f1 <= f2) || f1 > nyquist) return std::nullopt;
  // The quotient of the Nyquist frequency itself can be rounded below halfpts.
  const auto binOf = [&](float f) { return f >= nyquist ? half : truncIndex(f / s.df()); };
  const std::int64_t i1 = binOf(f1), i2 = binOf(f2);
  if (i1 == kNoIndex || i2 == kNoIndex) return std::nullopt;
  return Band{i1 == 0, i2 == half, i1 == 0 ? 1 : i1, i2 == half ? half - 1 : i2};
}

// The sum, in single precision, of a measure of a real value or of the two parts of a bin.
template <typename Measure>
float sumOver(const PackedBins& s, const Band& band, Measure measure) {
  float sum = 0.0f;
  const auto add = [&sum](auto term) { sum = static_cast<float>(sum + term); };
  if (band.hasZeroFrequency) add(measure(s.dc()));
  if (band.hasNyquist) add(measure(s.nyquist()));
  const float* value = s.values();
  for (std::int64_t k = band.first; k <= band.last; ++k)
    add(measure(value[2 * k], value[2 * k + 1]));
  return sum;
}

float powerOver(const PackedBins& s, const Band& band) {
  const float sum = sumOver(s, band, [](auto... parts) { return squared(parts...); });
  return static_cast<float>(s.df() * (2.0 * sum * kPi));
}

// Returns measureBand(bins, band), 0.0 without a spectrum, or -12345.0 without a band.
template <typename MeasureBand>
float overBand(const kroSpectrum& spectrum, float f1, float f2, MeasureBand measureBand) {
  const auto s = binsOf(spectrum);
  if (!s || s->df() == 0.0f) return 0.0f;
  const auto band = bandBetween(*s, f1, f2);
  return band ? measureBand(*s, *band) : kSacUndefinedFloat;
}

}  // namespace

Ref<rfSpectrum> rfSpectrum::initWithImpulseSpectrumDt_Npts(float dt, std::int32_t n) {
  clearReason();
  const std::int32_t points = nextPowerOfTwoPts(n);
  const PackedSpectrum flat(static_cast<std::size_t>(points), dt);
  if (points == 0 || !flat) {
    setReason("%d samples: too many, or no memory for their spectrum", n);
    return nullptr;
  }
  if (!init()) return nullptr;
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
  // Divided by the number of values, not of amplitudes; this is intended.
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
  clearReason();
  const auto s = binsOf(*this);
  if (!s) return nullptr;
  const auto half = static_cast<std::size_t>(halfpts());
  auto buffer = ByteBuffer::zeroed((half + 1) * sizeof(float));
  if (!buffer) return nullptr;
  auto* out = reinterpret_cast<float*>(buffer->mutableBytes());
  // These two keep their signs; this is intended.
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
  const auto copy = kroSpectrum::copy();
  return Ref<rfSpectrum>(dynamic_cast<rfSpectrum*>(copy.get()));
}

Ref<kroSpectrum> rfSpectrum::clone() const {
  auto copy = make<rfSpectrum>();
  return copy && copyFieldsTo(*copy) ? Ref<kroSpectrum>(copy) : nullptr;
}

}  // namespace krosac
