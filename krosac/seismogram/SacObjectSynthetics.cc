#include <algorithm>
#include <cmath>
#include <span>

#include "krosac/platform/Numbers.h"
#include "krosac/platform/internal/TruncIndex.h"
#include "krosac/seismogram/internal/SacObjectAccess.h"
#include "krosac/source/BodyWaveResponse.h"

namespace krosac {
namespace {

constexpr float kUnmarkedArrival = 5.0f;  // s

// Elements of the block of GetBWResponse. The response overwrites the parameters.
enum { kDepth = 3, kRayParameter = 5, kSelector = 7, kUpgoingP = 11, kUpgoingSP = 12 };

// A spike at a delay after the direct wave of its group.
struct Spike {
  float amplitude, delay;
};

// The sample at the truncated index of a time; null outside the trace.
float* sampleAt(const SacObject& s, float t) {
  const auto x = samplesOf(s);
  const std::int64_t index = truncIndex((t - s.b()) / s.delta());
  return index >= 0 && index < std::ssize(x) ? &x[static_cast<std::size_t>(index)] : nullptr;
}

// Returns false outside the trace.
bool addSpike(const SacObject& s, float t, float amplitude) {
  float* sample = sampleAt(s, t);
  if (sample) *sample += amplitude;
  return sample != nullptr;
}

// Computes the response of a block, which holds it afterwards, and calls place(time, amplitude) for
// each spike of the selected group. The first is at the pick of the group, or at the default time,
// plus the delay. Returns the result of the last call.
template <typename Place>
bool placeResponse(const SacObject& s, float* block, float delay, Place place) {
  const bool isShear = block[kSelector] != 0.0f;
  GetBWResponse(block);
  const Spike p[] = {{block[0], 0.0f}, {block[1], block[8]}, {block[2], block[9]}};
  const Spike sh[] = {{block[6], 0.0f}, {block[7], block[10]}};
  const float pick = isShear ? s.t0() : s.a();
  const float start = (isDefined(pick) ? pick : kUnmarkedArrival) + delay;
  bool isPlaced = false;
  for (const Spike& spike : isShear ? std::span<const Spike>(sh) : std::span<const Spike>(p)) {
    isPlaced = place(start + spike.delay, spike.amplitude);
  }
  return isPlaced;
}

}  // namespace

void SacObject::computeBWResponse(float* block) {
  if (!h_) return;
  const auto x = samplesOf(*this);
  // The first sample keeps its value; this is intended.
  if (x.size() > 1) std::ranges::fill(x.subspan(1), 0.0f);
  const float depth = block[kDepth];
  placeResponse(*this, block, 0.0f, [this](float t, float amplitude) {
    float* sample = sampleAt(*this, t);
    if (sample) *sample = amplitude / (2.0f * delta());
    return sample != nullptr;
  });
  h_->EVDP = depth;
  samplesChanged(*this);
}

void SacObject::addBWResponse_Delay_Moment(float* block, float delay, float moment) {
  // A last spike outside the trace ends the operation before the flag is set; this is intended.
  if (placeResponse(*this, block, delay, [&](float t, float amplitude) {
        return addSpike(*this, t, amplitude * moment / (2.0f * delta()));
      })) {
    mSeisHasChanged_ = true;
  }
}

void SacObject::addBWResponseWater_Delay_Moment_WDepth(float* block, float delay, float moment,
                                                       float waterDepth) {
  constexpr int kReverberations = 125;
  constexpr float kReflection = -0.825f;
  constexpr double kSquaredWaterSlowness = 0.4444444444444444;  // of 1.5 km/s
  const double p = block[kRayParameter];
  const bool shear = block[kSelector] != 0.0f;
  addBWResponse_Delay_Moment(block, delay, moment);
  mSeisHasChanged_ = true;
  if (shear) return;

  // The test is on T0 while the time used is A; this is intended.
  const float start = (isDefined(t0()) ? a() : kUnmarkedArrival) + delay;
  const float twoWay =
      waterDepth * 2.0f * static_cast<float>(std::sqrt(kSquaredWaterSlowness - p * p));
  float t1 = start + block[8], t2 = start + block[9];
  float a1 = block[kUpgoingP] * -0.4f * 0.675f * moment / (2.0f * delta());
  float a2 = block[kUpgoingSP] * 0.044f * 0.675f * moment / (2.0f * delta());
  for (int i = 0; i < kReverberations; ++i) {
    addSpike(*this, t1 += twoWay, a1);
    addSpike(*this, t2 += twoWay, a2);
    a1 *= kReflection;
    a2 *= kReflection;
  }
}

void SacObject::addSpikeDelay_Moment(float t, float moment) {
  // Divided by DELTA, not 2 DELTA as body-wave spikes are; this is intended.
  if (addSpike(*this, t, moment / delta())) mSeisHasChanged_ = true;
}

void SacObject::addSeismogram(const SacObject& other) {
  const auto x = samplesOf(*this), y = samplesOf(other);
  for (std::size_t i = 0; i < std::min(x.size(), y.size()); ++i) x[i] += y[i];
  samplesChanged(*this);
}

}  // namespace krosac
