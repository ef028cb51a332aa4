// The spectrum of a real trace as realft packs it, and what the operations that shape it share.
#ifndef KROSAC_DSP_INTERNAL_PACKEDSPECTRUM_H
#define KROSAC_DSP_INTERNAL_PACKEDSPECTRUM_H

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <span>
#include <utility>

#include "krosac/dsp/Fft.h"
#include "krosac/platform/ByteBuffer.h"

namespace krosac {

inline constexpr double kTwoPi = 6.283185307179586;
inline constexpr double kHalfPi = 1.5707963267948966;

// The smallest power of two greater than a number of samples: 2^k samples are padded to 2^(k+1).
inline std::size_t paddedLength(std::size_t samples) {
  return std::bit_ceil(samples + 1);
}

// The Gaussian low-pass of width a at an angular frequency, both in rad/s.
inline double gaussian(double omega, double a) {
  return std::exp(-omega * omega / (4.0 * a * a));
}

// The largest of size(0) .. size(count - 1), which are not negative, ignoring NaN; 0 if there is
// none. The search runs in independent lanes, which a compiler can keep in vectors.
template <typename Size>
float greatestOf(std::size_t count, Size size) {
  constexpr std::size_t kLanes = 32;
  float greatest[kLanes] = {};
  const auto include = [&](std::size_t lane, float value) {
    greatest[lane] = greatest[lane] < value ? value : greatest[lane];
  };
  const std::size_t whole = count - count % kLanes;
  for (std::size_t i = 0; i < whole; i += kLanes)
    for (std::size_t lane = 0; lane < kLanes; ++lane) include(lane, size(i + lane));
  for (std::size_t i = whole; i < count; ++i) include(i - whole, size(i));
  return *std::ranges::max_element(greatest);
}

// A view of n values in the packed layout: the value at zero frequency, the value at the Nyquist
// frequency, and the complex bins k = 1 .. n/2 - 1 at k df.
class PackedBins {
 public:
  PackedBins(float* values, std::size_t n, float df) : values_(values), n_(n), df_(df) {}

  std::size_t size() const { return n_; }
  float* values() const { return values_; }
  float& dc() const { return values_[0]; }
  float& nyquist() const { return values_[1]; }
  // Calls bin(k, re, im) for k = 1 .. n/2 - 1.
  template <typename Bin>
  void forEachBin(Bin bin) const {
    for (std::size_t k = 1; k < n_ / 2; ++k) bin(k, values_[2 * k], values_[2 * k + 1]);
  }
  // Multiplies bin k by the real factor(k) in double precision. The values at zero and Nyquist
  // frequency do not change. The factors of a block are computed first, so that the compiler can
  // vectorise the multiplications.
  template <typename Factor>
  void scaleBins(Factor factor) const {
    forEachBlock([&](std::size_t first, std::size_t count) {
      double factors[2 * kBlock];
      for (std::size_t i = 0; i < count; ++i)
        factors[2 * i] = factors[2 * i + 1] = factor(first + i);
      float* const values = values_ + 2 * first;
      for (std::size_t j = 0; j < 2 * count; ++j)
        values[j] = static_cast<float>(values[j] * factors[j]);
    });
  }
  // The same with complex factors: fill(first, re, im) computes those of the bins from `first` on.
  template <typename Fill>
  void multiplyBlocks(Fill fill) const {
    forEachBlock([&](std::size_t first, std::size_t count) {
      double re[kBlock], im[kBlock];
      fill(first, std::span(re, count), std::span(im, count));
      float* const values = values_ + 2 * first;
      for (std::size_t i = 0; i < count; ++i)
        multiply(values[2 * i], values[2 * i + 1], re[i], im[i]);
    });
  }
  // The same with a function that sets the factor of one bin: factor(k, re, im).
  template <typename Factor>
  void multiplyBins(Factor factor) const {
    multiplyBlocks([&](std::size_t first, std::span<double> re, std::span<double> im) {
      for (std::size_t i = 0; i < re.size(); ++i) factor(first + i, re[i], im[i]);
    });
  }

  float df() const { return df_; }
  float frequency(std::size_t k) const { return asFloat(k) * df_; }
  // df 2 pi is rounded to single precision before the multiplication.
  float omega(std::size_t k) const { return asFloat(k) * static_cast<float>(df_ * kTwoPi); }

  static constexpr std::size_t kBlock = 64;

 private:
  template <typename Block>
  void forEachBlock(Block block) const {
    for (std::size_t first = 1; first < n_ / 2; first += kBlock)
      block(first, std::min(kBlock, n_ / 2 - first));
  }

  // (re + i im) times (a + i b), in double precision.
  static void multiply(float& re, float& im, double a, double b) {
    const double product = re * a - im * b;
    im = static_cast<float>(re * b + im * a);
    re = static_cast<float>(product);
  }

  // There are fewer than 2^31 bins, and processors convert signed integers in one instruction.
  static float asFloat(std::size_t k) { return static_cast<float>(static_cast<std::int32_t>(k)); }

  float* values_;
  std::size_t n_;
  float df_;
};

// A trace padded with zeros to n values, a power of two, and its transform in the same memory. The
// forward transform has a positive exponent.
class PackedSpectrum : public PackedBins {
 public:
  // Converts to false if there is no memory.
  PackedSpectrum(std::size_t n, float delta)
      : PackedSpectrum(ByteBuffer::zeroed(n * sizeof(float)), 0, n, delta) {}
  PackedSpectrum(std::span<const float> samples, std::size_t n, float delta)
      : PackedSpectrum(n, delta) {
    take(samples);
  }
  // Two spectra in one piece of memory, which a system maps faster than two pieces.
  static std::pair<PackedSpectrum, PackedSpectrum> ofTwo(std::span<const float> first,
                                                         std::span<const float> second,
                                                         std::size_t n, float delta) {
    const auto work = ByteBuffer::zeroed(2 * n * sizeof(float));
    std::pair two{PackedSpectrum(work, 0, n, delta), PackedSpectrum(work, n, n, delta)};
    two.first.take(first);
    two.second.take(second);
    return two;
  }

  explicit operator bool() const { return static_cast<bool>(work_); }
  const Ref<ByteBuffer>& buffer() const { return work_; }

  void forward() { realft(values() - 1, size(), 1); }
  // The inverse transform, normalised so that it undoes forward(), times the scale. Writes as many
  // samples as the span holds.
  void inverse(std::span<float> samples, double scale = 1.0) {
    realft(values() - 1, size(), -1);
    const double factor = scale * 2.0 / static_cast<double>(size());
    const float* value = values();
    for (float& sample : samples) sample = static_cast<float>(*value++ * factor);
  }
  // The same for all n samples, in place of the spectrum.
  std::span<float> inverse() {
    const std::span all(values(), size());
    inverse(all);
    return all;
  }

  float nyquistFrequency() const { return 0.5f / delta_; }
  double nyquistOmega() const { return kTwoPi / 2 / delta_; }

 private:
  PackedSpectrum(Ref<ByteBuffer> work, std::size_t place, std::size_t n, float delta)
      : PackedBins(work ? reinterpret_cast<float*>(work->mutableBytes()) + place : nullptr, n,
                   1.0f / (static_cast<float>(n) * delta)),
        delta_(delta),
        work_(std::move(work)) {}

  void take(std::span<const float> samples) {
    if (work_) std::ranges::copy(samples.first(std::min(size(), samples.size())), values());
  }

  float delta_;
  Ref<ByteBuffer> work_;
};

}  // namespace krosac

#endif
