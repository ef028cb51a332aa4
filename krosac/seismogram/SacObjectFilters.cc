#include <algorithm>
#include <cmath>
#include <span>

#include "krosac/dsp/Butterworth.h"
#include "krosac/dsp/internal/Series.h"
#include "krosac/platform/internal/TruncIndex.h"
#include "krosac/seismogram/internal/SacObjectAccess.h"

namespace krosac {
namespace {

constexpr double kPi = 3.141592653589793;

}  // namespace

void SacObject::LPBUfilter_NPasses_NPoles(float corner, std::int32_t passes, std::int32_t poles) {
  if (!(corner > 0.0f)) return;
  const auto x = samplesOf(*this);
  GRLPBUfilter(x.data(), static_cast<int>(x.size()), passes, poles, delta(), corner);
  samplesChanged(*this);
}

void SacObject::HPBUfilter_NPasses_NPoles(float corner, std::int32_t passes, std::int32_t poles) {
  if (!(corner > 0.0f)) return;
  const auto x = samplesOf(*this);
  GRHPBUfilter(x.data(), static_cast<int>(x.size()), passes, poles, delta(), corner);
  samplesChanged(*this);
}

void SacObject::RGaussianFilter(float a) {
  const auto window = [a](double omega) { return gaussian(omega, a); };
  shapeSpectrum(*this, [&](PackedSpectrum& s) {
    s.nyquist() = static_cast<float>(s.nyquist() * window(s.nyquistOmega()));
    s.scaleBins([&](std::size_t k) { return window(s.omega(k)); });
  });
}

void SacObject::RGaussianFilterSwapOld_New(float oldA, float newA) {
  constexpr double kLeastDivisor = 1e-6;
  const auto exchange = [&](double omega) {
    const double divisor = gaussian(omega, oldA), factor = gaussian(omega, newA);
    return divisor > kLeastDivisor ? factor / divisor : factor;
  };
  shapeSpectrum(*this, [&](PackedSpectrum& s) {
    s.nyquist() = static_cast<float>(s.nyquist() * exchange(s.nyquistOmega()));
    s.scaleBins([&](std::size_t k) { return exchange(s.omega(k)); });
  });
}

void SacObject::SGaussianFilter_Alpha(float f0, float alpha) {
  const auto w0 = static_cast<float>(kTwoPi * f0);
  const auto squaredOffset = [w0](double omega) { return (omega - w0) * (omega - w0); };
  const double squaredAlpha = static_cast<double>(alpha) * alpha;
  const auto window = [&](double omega) { return std::exp(-squaredAlpha * squaredOffset(omega)); };
  shapeSpectrum(
      *this,
      [&](PackedSpectrum& s) {
        s.dc() = static_cast<float>(s.dc() * window(0.0));
        // The first power of alpha here is intended.
        s.nyquist() =
            static_cast<float>(s.nyquist() * std::exp(-alpha * squaredOffset(s.nyquistOmega())));
        s.scaleBins([&](std::size_t k) { return window(s.omega(k)); });
      },
      std::sqrt(alpha * kPi / (static_cast<double>(w0) * w0)));
}

void SacObject::CosineTaperFilter(float f1, float f2, float f3, float f4) {
  shapeSpectrum(*this, [&](PackedSpectrum& s) {
    const auto weight = [&](float f) { return cosineEdges(f, f1, f2, f3, f4); };
    s.dc() = static_cast<float>(s.dc() * weight(0.0f));
    s.nyquist() = static_cast<float>(s.nyquist() * weight(s.nyquistFrequency()));
    s.scaleBins([&](std::size_t k) { return weight(s.frequency(k)); });
  });
}

void SacObject::TstarFilter(float tstar) {
  constexpr float kOneOverPi = 0.31830989f;
  constexpr double kLargestExponent = 10.0;
  shapeSpectrum(*this, [&](PackedSpectrum& s) {
    s.nyquist() = 0.0f;
    s.multiplyBins([&](std::size_t k, double& re, double& im) {
      const double omega = s.omega(k), exponent = omega * tstar / 2.0;
      const double amplitude = std::fabs(exponent) <= kLargestExponent ? std::exp(-exponent) : 0.0;
      const double dispersion = k > 1 ? std::log(omega) * omega * tstar * kOneOverPi : 0.0;
      const double phase = dispersion - omega * tstar;
      re = amplitude * std::cos(phase);
      im = -amplitude * std::sin(phase);
    });
  });
}

void SacObject::CosineTimeFunctionFilterDuration(float duration) {
  clearReason();
  if (!(duration >= 0.0f)) return;
  const std::int32_t m = truncInt32(duration / delta() + 0.5);
  if (m >= 2 && convolveWithCosinePulse(samplesOf(*this), delta(), duration, m))
    samplesChanged(*this);
}

void SacObject::TrapezoidFilter(float rise, float top, float fall) {
  clearReason();
  if (convolveWithTrapezoid(samplesOf(*this), delta(), rise, top, fall)) samplesChanged(*this);
}

void SacObject::NoiseFilterStartingAtTime(float t) {
  clearReason();
  const auto x = samplesOf(*this);
  const std::int64_t index = truncIndex((t - b()) / delta());
  if (x.empty() || index == kNoIndex) return;
  const auto k = static_cast<std::size_t>(std::clamp<std::int64_t>(index, 0, std::ssize(x)));
  auto [signal, noise] = PackedSpectrum::ofTwo(x, x.first(k), paddedLength(x.size()), delta());
  if (!signal) return;

  const std::span window(noise.values(), k);
  float sum = 0.0f;
  for (const float value : window) sum += value;
  const float mean = sum / static_cast<float>(k), half = static_cast<float>(k / 2);
  for (std::size_t i = 0; i < k; ++i) {
    const auto place = static_cast<float>(i);
    window[i] = (window[i] - mean) * (i < k / 2 ? place / half : 1.0f - (place - half) / half);
  }
  noise.forward();

  float greatest = std::max(std::fabs(noise.dc()), std::fabs(noise.nyquist()));
  noise.forEachBin([&](std::size_t, float& re, float& im) {
    re = std::sqrt(re * re + im * im);  // the amplitude replaces the real part
    greatest = std::max(greatest, re);
  });
  // Without noise these factors are NaN, and so is the trace.
  const auto factor = [greatest](float amplitude) {
    return 1.0f - std::fabs(amplitude) / greatest;
  };
  signal.forward();
  signal.dc() *= factor(noise.dc());
  signal.nyquist() *= factor(noise.nyquist());
  const float* amplitude = noise.values();
  signal.forEachBin([&](std::size_t bin, float& re, float& im) {
    re *= factor(amplitude[2 * bin]);
    im *= factor(amplitude[2 * bin]);
  });
  takeBack(*this, signal);
}

Ref<ByteBuffer> SacObject::spectrum() const {
  clearReason();
  const auto x = samplesOf(*this);
  PackedSpectrum spectrum(x, paddedLength(x.size()), delta());
  if (!spectrum) return nullptr;
  for (float& value : std::span(spectrum.values(), x.size())) value *= delta();
  spectrum.forward();
  return spectrum.buffer();
}

// Only scales the samples: the whitened spectrum itself is never used. This is intended.
void SacObject::prewhiten() {
  const auto x = samplesOf(*this);
  if (x.empty()) return;
  ScaleAmplitudes(2.0f / (static_cast<float>(paddedLength(x.size())) * delta()));
}

}  // namespace krosac
