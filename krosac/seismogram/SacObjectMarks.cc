#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

#include "krosac/platform/Log.h"
#include "krosac/platform/Numbers.h"
#include "krosac/platform/internal/TruncIndex.h"
#include "krosac/seismogram/SacObject.h"
#include "krosac/source/BodyWaveResponse.h"
#include "krosac/traveltimes/JBTables.h"

namespace krosac {
namespace {

constexpr float kFarthestMark = 100.0f;          // degrees
constexpr float kDeepestInKilometres = 1000.0f;  // a greater depth is in metres
constexpr float kUnmarkedArrival = 5.0f;         // s
constexpr std::size_t kTableOfP = 118 * 14, kTableOfS = 120 * 14;
constexpr int kSKey = 0, kPKey = 10, kPSlownessKey = 2, kSSlownessKey = 3;

// The parts of the block of GetBWResponse: what goes in at a place is overwritten by what comes out
// there.
enum { kDepth = 3, kRayParameter = 5, kSelector = 7, kUpgoingP = 11, kUpgoingSP = 12 };

// A spike after the direct wave of its group.
struct Spike {
  float amplitude, delay;
};

}  // namespace

// ---- Travel-time marks ----

void SacObject::markFromTables(const char* method, bool withSlowness) {
  // Not a number where the tables cannot be read: then nothing is marked.
  constexpr float kUnread = std::numeric_limits<float>::quiet_NaN();
  std::array<float, kTableOfP> tp;
  std::array<float, kTableOfS> ts;
  tp.fill(kUnread);
  ts.fill(kUnread);
  ReadJBTables(tp.data(), ts.data());

  const float arc = distance() / static_cast<float>(kKilometresPerDegree);
  if (arc > kFarthestMark) return;
  const float depth = evdp() > kDeepestInKilometres ? evdp() / 1000.0f : evdp();
  float pTime = 0.0f, sTime = 0.0f, pSlowness = 0.0f, sSlowness = 0.0f;
  if (isDefined(distance()) && isDefined(evdp()) && isDefined(o())) {
    GetJBTimes(tp.data(), ts.data(), &pTime, &sTime, &pSlowness, &sSlowness, arc, depth);
    if (std::isfinite(pTime) && isDefined(pTime)) {
      setPTime(pTime + o());
      setPickLabelKey_Value(kPKey, "P(JB)");
      if (withSlowness) setUserValueKey_Value(kPSlownessKey, pSlowness);
    }
    if (std::isfinite(sTime) && isDefined(sTime)) {
      setTimePickKey_Value(kSKey, sTime + o());
      setPickLabelKey_Value(kSKey, "S(JB)");
      if (withSlowness) setUserValueKey_Value(kSSlownessKey, sSlowness);
    }
  }
  if (verbose_ > 1) {
    log("From %s: gcarc:%.1f depth:%.1f pTime:%.1f sTime:%.1f\n", method, static_cast<double>(arc),
        static_cast<double>(depth), static_cast<double>(pTime), static_cast<double>(sTime));
  }
}

void SacObject::markJBTimes() {
  markFromTables("markJBTimes", false);
}

void SacObject::markJBTimesAndSlowness() {
  markFromTables("markJBTimesAndSlowness", true);
}

// ---- Spike synthetics ----

// The sample at a time, truncated; null off the trace.
float* SacObject::sampleAt(float t) {
  const auto x = samples();
  const std::int64_t index = truncInt32((t - b()) / delta());
  return index >= 0 && index < std::ssize(x) ? &x[static_cast<std::size_t>(index)] : nullptr;
}

// Calls place(time, amplitude) for each spike of the group that the block selects, the first at the
// group's pick or at the default time, plus the delay; gives the last result. The block holds the
// response afterwards.
template <typename Place>
bool SacObject::placeResponse(float* block, float delay, Place place) {
  const bool shear = block[kSelector] != 0.0f;
  GetBWResponse(block);
  const Spike p[] = {{block[0], 0.0f}, {block[1], block[8]}, {block[2], block[9]}};
  const Spike sh[] = {{block[6], 0.0f}, {block[7], block[10]}};
  const float pick = shear ? t0() : a();
  const float start = (isDefined(pick) ? pick : kUnmarkedArrival) + delay;
  bool placed = false;
  for (const Spike& spike : shear ? std::span<const Spike>(sh) : std::span<const Spike>(p)) {
    placed = place(start + spike.delay, spike.amplitude);
  }
  return placed;
}

void SacObject::computeBWResponse(float* block) {
  if (!h_) return;
  const auto x = samples();
  // The first sample keeps its value; this is intended.
  if (x.size() > 1) std::ranges::fill(x.subspan(1), 0.0f);
  const float depth = block[kDepth];
  placeResponse(block, 0.0f, [this](float t, float amplitude) {
    float* sample = sampleAt(t);
    if (sample) *sample = amplitude / (2.0f * delta());
    return sample != nullptr;
  });
  h_->EVDP = depth;
  samplesChanged();
}

bool SacObject::addSpike(float t, float amplitude) {
  float* sample = sampleAt(t);
  if (sample) *sample += amplitude;
  return sample != nullptr;
}

void SacObject::addBWResponse_Delay_Moment(float* block, float delay, float moment) {
  // A last spike off the trace ends the operation before the flag is set; this is intended.
  if (placeResponse(block, delay, [&](float t, float amplitude) {
        return addSpike(t, amplitude * moment / (2.0f * delta()));
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

  // T0 is asked for and A is taken; this is intended.
  const float start = (isDefined(t0()) ? a() : kUnmarkedArrival) + delay;
  const float twoWay =
      waterDepth * 2.0f * static_cast<float>(std::sqrt(kSquaredWaterSlowness - p * p));
  float t1 = start + block[8], t2 = start + block[9];
  float a1 = block[kUpgoingP] * -0.4f * 0.675f * moment / (2.0f * delta());
  float a2 = block[kUpgoingSP] * 0.044f * 0.675f * moment / (2.0f * delta());
  for (int i = 0; i < kReverberations; ++i) {
    addSpike(t1 += twoWay, a1);
    addSpike(t2 += twoWay, a2);
    a1 *= kReflection;
    a2 *= kReflection;
  }
}

void SacObject::addSpikeDelay_Moment(float t, float moment) {
  // Over DELTA, not 2 DELTA as the body-wave spikes; this is intended.
  if (addSpike(t, moment / delta())) mSeisHasChanged_ = true;
}

void SacObject::addSeismogram(const SacObject& other) {
  const auto x = samples(), y = other.samples();
  for (std::size_t i = 0; i < std::min(x.size(), y.size()); ++i) x[i] += y[i];
  samplesChanged();
}

}  // namespace krosac
