#include <cmath>
#include <span>

#include "krosac/dsp/PackedSpectrumInternal.h"
#include "krosac/seismogram/SacObject.h"

namespace krosac {
namespace {

// The one-sided complex spectrum of a trace padded to n values, both parts doubled up to below the
// Nyquist frequency; the value at zero frequency is doubled too, as intended. Interleaved; empty
// where there is no memory.
Ref<ByteBuffer> oneSidedSpectrum(std::span<const float> x, std::size_t n) {
  auto buffer = ByteBuffer::zeroed(2 * n * sizeof(float));
  if (!buffer) return nullptr;
  auto* z = reinterpret_cast<float*>(buffer->mutableBytes());
  for (std::size_t i = 0; i < x.size(); ++i) z[2 * i] = x[i];
  four1(z - 1, n, 1);
  for (std::size_t i = 0; i < n; ++i) z[i] *= 2.0f;
  std::fill(z + n, z + 2 * n, 0.0f);
  return buffer;
}

// The index that a neighbour beyond an end stands for: the sample at the same distance on the other
// side of the end sample.
std::size_t mirrored(std::ptrdiff_t i, std::ptrdiff_t n) {
  while (i < 0 || i >= n) i = i < 0 ? -i : 2 * (n - 1) - i;
  return static_cast<std::size_t>(i);
}

// A five-point running mean, in place, so that values already smoothed enter the later sums; this
// is intended.
void smoothInPlace(std::span<float> x) {
  const std::ptrdiff_t n = std::ssize(x);
  for (std::ptrdiff_t i = 0; i < n; ++i) {
    float sum = 0.0f;
    for (std::ptrdiff_t j = i - 2; j <= i + 2; ++j) sum += x[mirrored(j, n)];
    x[static_cast<std::size_t>(i)] = 0.2f * sum;
  }
}

}  // namespace

void SacObject::Envelope() {
  const auto x = samples();
  const std::size_t n = paddedLength(x.size());
  const auto signal = x.empty() ? nullptr : oneSidedSpectrum(x, n);
  if (!signal) return;
  auto* z = reinterpret_cast<float*>(signal->mutableBytes());
  four1(z - 1, n, -1);
  for (std::size_t i = 0; i < x.size(); ++i) {
    const double re = z[2 * i], im = z[2 * i + 1];
    x[i] = static_cast<float>(std::sqrt(re * re + im * im) / static_cast<double>(n));
  }
  samplesChanged();
}

void SacObject::InstantaneousPeriod() {
  constexpr float kOneOverTwoPi = 0.15915494f;
  constexpr float kNoFrequency = -0.01f;
  const auto x = samples();
  const std::size_t n = paddedLength(x.size());
  const auto signal = x.empty() ? nullptr : oneSidedSpectrum(x, n);
  const auto derivative = signal ? ByteBuffer::copyOf(signal->bytes(), signal->length()) : nullptr;
  if (!derivative) return;
  auto* a = reinterpret_cast<float*>(signal->mutableBytes());
  auto* d = reinterpret_cast<float*>(derivative->mutableBytes());

  const float omegaStep = static_cast<float>(kTwoPi * (1.0f / (static_cast<float>(n) * delta())));
  for (std::size_t k = 0; k < n / 2; ++k) {
    // The bin's index less one; this is intended.
    const float omega = (static_cast<float>(k) - 1.0f) * omegaStep;
    const float re = d[2 * k];
    d[2 * k] = -omega * d[2 * k + 1];
    d[2 * k + 1] = omega * re;
  }
  four1(a - 1, n, -1);
  four1(d - 1, n, -1);
  // The power |a|^2 / n and the turning Im(conj(a) d) / n, each over the front of the array that it
  // comes from.
  const std::span power(a, n), turning(d, n);
  const float scale = 1.0f / static_cast<float>(n);
  for (std::size_t i = 0; i < n; ++i) {
    const float re = a[2 * i], im = a[2 * i + 1], dRe = d[2 * i], dIm = d[2 * i + 1];
    turning[i] = (re * dIm - im * dRe) * scale;
    power[i] = (re * re + im * im) * scale;
  }
  smoothInPlace(turning);
  smoothInPlace(power);
  for (std::size_t i = 0; i < x.size(); ++i) {
    x[i] = power[i] == 0.0f ? kNoFrequency : turning[i] / power[i] * kOneOverTwoPi;
  }
  samplesChanged();
}

}  // namespace krosac
