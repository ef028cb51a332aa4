// Every spectral operation of a seismogram on 2^16 samples, alternating with the minimum that it
// needs: its transforms, in place, of the 2^17 values of the padded trace, and its calls of the
// mathematical library.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <random>
#include <span>
#include <string>
#include <vector>

#include "Pairs.h"
#include "krosac/dsp/Fft.h"
#include "krosac/seismogram/SacObject.h"

namespace {

using krosac::SacObject;
using krosac::bench::Work;

constexpr std::size_t kSamples = 1 << 16, kPadded = 2 * kSamples, kBins = kPadded / 2;
constexpr float kDelta = 0.05f;
constexpr double kOmegaStep = 6.283185307179586 / (kPadded * kDelta);

const std::vector<float>& noise() {
  static const std::vector<float> samples = [] {
    std::mt19937 random(1);
    std::uniform_real_distribution<float> uniform(-1.0f, 1.0f);
    std::vector<float> x(kSamples);
    for (float& value : x) value = uniform(random);
    return x;
  }();
  return samples;
}

// A file with the poles and zeros of a broad-band seismometer, removed at the end.
const std::string& poleZeroFile() {
  struct File {
    std::string path = std::filesystem::temp_directory_path() / "krosac-bench-poles-and-zeros";
    File() {
      if (std::FILE* file = std::fopen(path.c_str(), "w")) {
        std::fputs("ZEROS 2\nPOLES 5\n-0.037 0.037\n-0.037 -0.037\n-251.3 0\n-131 467.3\n", file);
        std::fputs("-131 -467.3\nCONSTANT 6e7\n", file);
        std::fclose(file);
      }
    }
    ~File() { std::filesystem::remove(path); }
  };
  static const File file;
  return file.path;
}

// The sum of a function of the angular frequency over a range of bins.
template <typename Function>
double overBins(Function function, std::size_t first = 1, std::size_t last = kBins) {
  double sum = 0.0;
  for (std::size_t k = first; k < last; ++k) sum += function(static_cast<double>(k) * kOmegaStep);
  return sum;
}

double gaussians(double width, double centre = 0.0) {
  return overBins([=](double omega) {
    const double offset = (omega - centre) / (2.0 * width);
    return std::exp(-offset * offset);
  });
}
double sinesAndCosines() {
  return overBins([](double omega) { return std::cos(omega * 5.0) * std::sin(omega * 5.0); });
}
double singleRoots() {
  return overBins([](double omega) { return std::sqrt(static_cast<float>(omega)); });
}
double roots() {
  return overBins([](double omega) { return std::sqrt(omega); });
}
// A band from 0.01 to 8 Hz whose edges end at 0.02 Hz and start at 4 Hz.
double cosinesOfEdges() {
  const auto edge = [](double omega) { return std::cos(omega * 0.04); };
  const auto bin = [](double f) { return static_cast<std::size_t>(f * kPadded * kDelta); };
  return overBins(edge, bin(0.01), bin(0.02)) + overBins(edge, bin(4), bin(8));
}
double none() {
  return 0.0;
}

const struct Operation {
  const char* name;
  void (*run)(SacObject& s, SacObject& other);
  decltype(&krosac::realft) transform;
  std::size_t forward, inverse;  // how many transforms
  double (*calls)();
} kOperations[] = {
    {"RGaussianFilter", [](SacObject& s, SacObject&) { s.RGaussianFilter(5); },  //
     krosac::realft, 1, 1, [] { return gaussians(5); }},
    {"RGaussianFilterSwap", [](SacObject& s, SacObject&) { s.RGaussianFilterSwapOld_New(5, 10); },
     krosac::realft, 1, 1, [] { return gaussians(5) + gaussians(10); }},
    {"SGaussianFilter", [](SacObject& s, SacObject&) { s.SGaussianFilter_Alpha(1, 0.5f); },
     krosac::realft, 1, 1, [] { return gaussians(1, 6.28); }},
    {"CosineTaperFilter",
     [](SacObject& s, SacObject&) { s.CosineTaperFilter(0.01f, 0.02f, 4, 8); },  //
     krosac::realft, 1, 1, cosinesOfEdges},
    {"TstarFilter", [](SacObject& s, SacObject&) { s.TstarFilter(0.1f); },  //
     krosac::realft, 1, 1,
     [] {
       return overBins([](double omega) {
         const double phase = 0.1 * omega * (0.32 * std::log(omega) - 1.0);
         return std::exp(-0.05 * omega) * std::cos(phase) * std::sin(phase);
       });
     }},
    {"NoiseFilter", [](SacObject& s, SacObject&) { s.NoiseFilterStartingAtTime(300); },
     krosac::realft, 2, 1, singleRoots},
    {"spectrum", [](SacObject& s, SacObject&) { benchmark::DoNotOptimize(s.spectrum()); },
     krosac::realft, 1, 0, none},
    {"Envelope", [](SacObject& s, SacObject&) { s.Envelope(); },  //
     krosac::four1, 1, 1, roots},
    {"InstantaneousPeriod", [](SacObject& s, SacObject&) { s.InstantaneousPeriod(); },
     krosac::four1, 1, 2, none},
    {"WaterLevelDecon",
     [](SacObject& s, SacObject& w) { s.WaterLevelDeconWith_wlevel_tshift(w, 0.01f, 5); },
     krosac::realft, 2, 1, sinesAndCosines},
    {"WaterLevelDeconGaussian",
     [](SacObject& s, SacObject& w) {
       s.WaterLevelDeconWith_wlevel_tshift_gwidth(w, 0.01f, 5, 2.5f);
     },
     krosac::realft, 2, 1, [] { return gaussians(2.5) + sinesAndCosines(); }},
    {"correlateWith", [](SacObject& s, SacObject& w) { s.correlateWith(w); },  //
     krosac::realft, 2, 1, none},
    {"GetOptimalShift",
     [](SacObject& s, SacObject& w) { benchmark::DoNotOptimize(s.GetOptimalShift(w)); },
     krosac::realft, 2, 1, none},
    {"ConvolveInstrument", [](SacObject& s, SacObject&) { s.ConvolveInstrument(1); },
     krosac::realft, 1, 1, none},
    {"DeconvolveInstrument",
     [](SacObject& s, SacObject&) {
       constexpr float kCorners[] = {0.01f, 0.02f, 4, 8};
       s.DeconvolveInstrument_TaperCorners(poleZeroFile(), kCorners);
     },
     krosac::realft, 1, 1, cosinesOfEdges},
};

// Work that runs once before it is timed, so that the caches hold its data and not the peer's.
class Warm : public Work {
 public:
  void prepare() final {
    fill();
    run();
    fill();
  }

 private:
  virtual void fill() = 0;
};

class Ours : public Warm {
 public:
  explicit Ours(const Operation& operation) : operation_(operation) {
    std::ranges::copy(noise(), std::span(other_->GetSacSeis(), kSamples).rbegin());
  }
  void run() override { operation_.run(*s_, *other_); }

 private:
  void fill() override { std::ranges::copy(noise(), s_->GetSacSeis()); }
  static krosac::Ref<SacObject> trace() {
    auto s = krosac::make<SacObject>();
    s->initWithCapacity(static_cast<std::int32_t>(kSamples));
    s->setDelta(kDelta);
    return s;
  }

  const Operation& operation_;
  krosac::Ref<SacObject> s_ = trace(), other_ = trace();
};

class Peer : public Warm {
 public:
  explicit Peer(const Operation& operation)
      : operation_(operation), data_(std::max(operation.forward, operation.inverse)) {}
  void run() override {
    const auto& [name, run, transform, forward, inverse, calls] = operation_;
    for (std::size_t i = 0; i < forward; ++i) transform(data_[i].data() - 1, kPadded, 1);
    for (std::size_t i = 0; i < inverse; ++i) transform(data_[i].data() - 1, kPadded, -1);
    benchmark::DoNotOptimize(calls());
  }

 private:
  void fill() override {
    for (auto& data : data_) {
      data.assign(operation_.transform == krosac::realft ? kPadded : 2 * kPadded, 0.0f);
      std::ranges::copy(noise(), data.begin());
    }
  }

  const Operation& operation_;
  std::vector<std::vector<float>> data_;
};

const bool kRegistered = [] {
  for (const Operation& operation : kOperations) {
    const auto alternating = [&operation](benchmark::State& state) {
      Ours ours(operation);
      Peer peer(operation);
      krosac::bench::timeAlternating(state, CLOCK_THREAD_CPUTIME_ID, ours, peer);
    };
    benchmark::RegisterBenchmark(operation.name, alternating)
        ->UseManualTime()
        ->Unit(benchmark::kMillisecond);
  }
  return true;
}();

}  // namespace
