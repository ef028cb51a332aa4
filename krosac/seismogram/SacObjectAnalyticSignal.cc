#include <algorithm>
#include <cmath>
#include <span>

#include "krosac/dsp/internal/PackedSpectrum.h"
#include "krosac/seismogram/internal/SacObjectAccess.h"

namespace krosac {
namespace {

// The one-sided complex spectrum of a trace padded to n values: the bins below the Nyquist
// frequency are doubled, also the zero-frequency bin (intended), and the others are 0. Real and
// imaginary parts are interleaved. The buffer holds `arrays` arrays of n complex values; the first
// is the spectrum, the others are zeros. Empty when memory runs out.
Ref<ByteBuffer> oneSidedSpectrum(std::span<const float> x, std::size_t n, std::size_t arrays = 1) {
  auto buffer = ByteBuffer::zeroed(arrays * 2 * n * sizeof(float));
  if (!buffer) return nullptr;
  auto* z = reinterpret_cast<float*>(buffer->mutableBytes());
  for (std::size_t i = 0; i < x.size(); ++i) z[2 * i] = x[i];
  four1(z - 1, n, 1);
  for (std::size_t i = 0; i < n; ++i) z[i] *= 2.0f;
  std::fill(z + n, z + 2 * n, 0.0f);
  return buffer;
}

// Reflects an index beyond an end about the end sample.
std::size_t mirrored(std::ptrdiff_t i, std::ptrdiff_t n) {
  while (i < 0 || i >= n) i = i < 0 ? -i : 2 * (n - 1) - i;
  return static_cast<std::size_t>(i);
}

// The phase rate times the power, Im(conj(a) d) / n, of an analytic signal a with the derivative d,
// and the power |a|^2 / n.
struct Motion {
  float rate = 0.0f, power = 0.0f;

  Motion operator+(Motion other) const { return {rate + other.rate, power + other.power}; }
  Motion operator*(float factor) const { return {rate * factor, power * factor}; }
};

}  // namespace

void SacObject::Envelope() {
  clearReason();
  const auto x = samplesOf(*this);
  const std::size_t n = paddedLength(x.size());
  const auto signal = x.empty() ? nullptr : oneSidedSpectrum(x, n);
  if (!signal) return;
  auto* z = reinterpret_cast<float*>(signal->mutableBytes());
  four1(z - 1, n, -1);
  for (std::size_t i = 0; i < x.size(); ++i) {
    const double re = z[2 * i], im = z[2 * i + 1];
    x[i] = static_cast<float>(std::sqrt(re * re + im * im) / static_cast<double>(n));
  }
  samplesChanged(*this);
}

void SacObject::InstantaneousPeriod() {
  clearReason();
  constexpr float kOneOverTwoPi = 0.15915494f;
  constexpr float kNoFrequency = -0.01f;
  const auto x = samplesOf(*this);
  const std::size_t n = paddedLength(x.size());
  const auto arrays = x.empty() ? nullptr : oneSidedSpectrum(x, n, 2);
  if (!arrays) return;
  auto* a = reinterpret_cast<float*>(arrays->mutableBytes());  // the signal
  auto* d = a + 2 * n;                                         // its derivative

  const float omegaStep = static_cast<float>(kTwoPi * (1.0f / (static_cast<float>(n) * delta())));
  for (std::size_t k = 0; k < n / 2; ++k) {
    // Uses the bin index minus one; this is intended.
    const float omega = (static_cast<float>(k) - 1.0f) * omegaStep;
    d[2 * k] = -omega * a[2 * k + 1];
    d[2 * k + 1] = omega * a[2 * k];
  }
  four1(a - 1, n, -1);
  four1(d - 1, n, -1);
  const float scale = 1.0f / static_cast<float>(n);
  const auto motion = [&](std::ptrdiff_t index) {
    const std::size_t i = mirrored(index, static_cast<std::ptrdiff_t>(n));
    const float re = a[2 * i], im = a[2 * i + 1], dRe = d[2 * i], dIm = d[2 * i + 1];
    return Motion{re * dIm - im * dRe, re * re + im * im} * scale;
  };
  // Five-point running means, in place: the two preceding values enter already smoothed. This is
  // intended.
  Motion before2 = motion(-2), before1 = motion(-1), here = motion(0), after1 = motion(1);
  for (std::ptrdiff_t i = 0; i < std::ssize(x); ++i) {
    const Motion after2 = motion(i + 2);
    const Motion mean = (Motion{} + before2 + before1 + here + after1 + after2) * 0.2f;
    x[static_cast<std::size_t>(i)] =
        mean.power == 0.0f ? kNoFrequency : mean.rate / mean.power * kOneOverTwoPi;
    before2 = before1;
    before1 = mean;
    here = after1;
    after1 = after2;
  }
  samplesChanged(*this);
}

}  // namespace krosac
