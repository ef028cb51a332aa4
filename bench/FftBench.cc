// Forward transforms of real samples in place, timed alternately: ours, ours without AVX2, the
// plain loop, and FFTW and KissFFT where they are installed. Each run starts by copying the same
// samples, and the time includes that copy.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <random>
#include <vector>

#include "Pairs.h"
#include "dsp/PlainLoops.h"
#include "krosac/dsp/Fft.h"
#include "krosac/dsp/internal/Kernels.h"

#ifdef KROSAC_HAVE_FFTW
#include <fftw3.h>
#endif
#ifdef KROSAC_HAVE_KISSFFT
#include <kissfft/kiss_fftr.h>
#endif

namespace {

using krosac::bench::Work;

// Short transforms are repeated within one measurement, so that it lasts longer than the resolution
// of the clock and the warm-up of the processor.
constexpr std::size_t kSamplesInATurn = 1 << 17;

template <typename Transform>
class Transforms : public Work {
 public:
  explicit Transforms(std::size_t n)
      : samples_(n), transform_(n), times_(std::max<std::size_t>(1, kSamplesInATurn / n)) {
    std::mt19937 random(1);
    std::uniform_real_distribution<float> uniform(-1.0f, 1.0f);
    for (float& value : samples_) value = uniform(random);
  }
  void run() override {
    for (std::size_t i = 0; i < times_; ++i) {
      std::copy(samples_.begin(), samples_.end(), transform_.data());
      transform_();
      benchmark::ClobberMemory();
    }
  }

 private:
  std::vector<float> samples_;
  Transform transform_;
  std::size_t times_;
};

// The transforms of this library and its tests work on one array.
template <auto kTransform>
class InPlace {
 public:
  explicit InPlace(std::size_t n) : data_(n) {}
  float* data() { return data_.data(); }
  void operator()() { kTransform(data(), data_.size()); }

 private:
  std::vector<float> data_;
};
using Realft = InPlace<[](float* x, std::size_t n) { krosac::realft(x - 1, n, 1); }>;
using Baseline = InPlace<krosac::baseline::realftForward>;
using Plain = InPlace<[](float* x, std::size_t n) { krosac::plain::realft(x - 1, n, 1); }>;

#ifdef KROSAC_HAVE_FFTW
class Fftw {
 public:
  explicit Fftw(std::size_t n)
      : data_(fftwf_alloc_real(n + 2)),
        plan_(fftwf_plan_dft_r2c_1d(static_cast<int>(n), data_,
                                    reinterpret_cast<fftwf_complex*>(data_), FFTW_ESTIMATE)) {}
  Fftw(const Fftw&) = delete;
  Fftw& operator=(const Fftw&) = delete;
  ~Fftw() {
    fftwf_destroy_plan(plan_);
    fftwf_free(data_);
  }
  float* data() { return data_; }
  void operator()() { fftwf_execute(plan_); }

 private:
  float* data_;
  fftwf_plan plan_;
};
#endif

#ifdef KROSAC_HAVE_KISSFFT
class Kissfft {
 public:
  explicit Kissfft(std::size_t n)
      : data_(n),
        bins_(n / 2 + 1),
        plan_(kiss_fftr_alloc(static_cast<int>(n), 0, nullptr, nullptr)) {}
  Kissfft(const Kissfft&) = delete;
  Kissfft& operator=(const Kissfft&) = delete;
  ~Kissfft() { kiss_fftr_free(plan_); }
  float* data() { return data_.data(); }
  void operator()() { kiss_fftr(plan_, data_.data(), bins_.data()); }

 private:
  std::vector<float> data_;
  std::vector<kiss_fft_cpx> bins_;
  kiss_fftr_cfg plan_;
};
#endif

template <typename Ours, typename Peer>
void byTurns(benchmark::State& state) {
  const auto n = static_cast<std::size_t>(state.range(0));
  Transforms<Ours> ours(n);
  Transforms<Peer> peer(n);
  krosac::bench::timeByTurns(state, CLOCK_THREAD_CPUTIME_ID, ours, peer);
}

constexpr int kShortest = 1 << 8, kLongest = 1 << 22, kLongestOfSlowPeers = 1 << 18;

#ifdef KROSAC_HAVE_FFTW
BENCHMARK(byTurns<Realft, Fftw>)->RangeMultiplier(4)->Range(kShortest, kLongest)->UseManualTime();
#endif
#ifdef KROSAC_HAVE_KISSFFT
BENCHMARK(byTurns<Realft, Kissfft>)
    ->RangeMultiplier(4)
    ->Range(kShortest, kLongestOfSlowPeers)
    ->UseManualTime();
#endif
BENCHMARK(byTurns<Plain, Realft>)
    ->RangeMultiplier(4)
    ->Range(kShortest, kLongestOfSlowPeers)
    ->UseManualTime();
BENCHMARK(byTurns<Plain, Baseline>)
    ->RangeMultiplier(4)
    ->Range(kShortest, kLongestOfSlowPeers)
    ->UseManualTime();

}  // namespace
