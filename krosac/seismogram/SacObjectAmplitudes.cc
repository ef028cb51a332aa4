#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

#include "krosac/dsp/internal/PackedSpectrum.h"
#include "krosac/dsp/internal/Series.h"
#include "krosac/platform/Log.h"
#include "krosac/platform/internal/TruncIndex.h"
#include "krosac/seismogram/internal/SacObjectAccess.h"

namespace krosac {
namespace {

// The truncated indexes of a time window, in single precision. A window that starts before any
// 32-bit index starts at the first sample, since its length would lose the index of its end.
struct Window {
  std::int64_t first, end;
  Window(float t1, float t2, float b, float delta) : first(truncIndex((t1 - b) / delta)) {
    if (first == std::numeric_limits<std::int32_t>::min()) t1 = b, first = 0;
    end = truncIndex((t2 - t1) / delta + static_cast<float>(first));
  }
  bool isOutside(std::int64_t n) const { return first == kNoIndex || end < 0 || first > n; }
  std::int64_t start() const { return std::max<std::int64_t>(first, 0); }
};

// The offset of a time from B, first truncated to whole seconds (intended), in samples, plus
// `moreSamples`.
std::int64_t wholeSecondIndex(float t, float b, float delta, float moreSamples) {
  return truncIndex(std::trunc(t - b) / delta + moreSamples);
}

// The sample at distance d from the start of a linear ramp from 1 to 0 over m samples; 0 where
// m < 1.
float ramped(float sample, std::int64_t d, std::int32_t m) {
  return m > 0 && d <= m ? sample * (static_cast<float>(m - d) / static_cast<float>(m)) : 0.0f;
}

// Multiplies each sample by weight(t), t being the time since one interval before the first sample.
template <typename Weight>
void scaleByTime(SacObject& s, Weight weight) {
  const auto x = samplesOf(s);
  const float dt = s.delta();
  for (std::size_t i = 0; i < x.size(); ++i) {
    const float t = dt * static_cast<float>(i + 1);
    x[i] = static_cast<float>(x[i] * weight(t));
  }
  samplesChanged(s);
}

}  // namespace

std::pair<double, double> SacObject::ComputeMinMaxInRange(float t1, float t2) const {
  const float* const x = samplesOf(*this).data();
  const std::int64_t n = std::ssize(samplesOf(*this));
  const Window window(t1, t2, b(), delta());
  if (window.first == 0 && window.end == n) return {smin(), smax()};
  // A window that starts one past the last sample is empty and counts as outside the trace.
  if (window.isOutside(n) || window.start() >= n) return {0.0, 0.0};
  float least = x[window.start()], greatest = least;
  for (std::int64_t i = window.start() + 1; i < std::min<std::int64_t>(window.end, n); ++i) {
    if (x[i] < least) least = x[i];
    if (x[i] > greatest) greatest = x[i];
  }
  return {least, greatest};
}

float SacObject::ComputePowerFrom_To(float t1, float t2) const {
  const float* const x = samplesOf(*this).data();
  const std::int64_t n = std::ssize(samplesOf(*this));
  const Window window(t1, t2, b(), delta());
  if (window.isOutside(n)) return 0.0f;
  const std::int64_t end = std::min<std::int64_t>(window.end, n);
  float sum = 0.0f;
  for (std::int64_t i = window.start(); i < end; ++i) sum += x[i] * x[i];
  return delta() / static_cast<float>(end - window.start()) * sum;
}

void SacObject::RemoveMean() {
  if (!h_) return;
  ComputeExtrema();
  const float mean = smean();
  for (float& sample : samplesOf(*this)) sample -= mean;
  h_->DEPMAX -= mean;
  h_->DEPMIN -= mean;
  h_->DEPMEN = 0.0f;
  mSeisHasChanged_ = true;
}

void SacObject::SubtractLinearTrend() {
  subtractLinearTrend<float>(samplesOf(*this), delta());
  samplesChanged(*this);
}

void SacObject::FlipPolarity() {
  for (float& sample : samplesOf(*this)) sample = -sample;
  samplesChanged(*this);
}

void SacObject::ScaleAmplitudes(float factor) {
  for (float& sample : samplesOf(*this)) sample *= factor;
  samplesChanged(*this);
}

void SacObject::ScaleByLinearTime() {
  scaleByTime(*this, [](float t) { return t; });
}

void SacObject::ScaleBySquareTime() {
  scaleByTime(*this, [](float t) { return t * t; });
}

void SacObject::ScaleBySquareRootTime() {
  scaleByTime(*this, [](float t) { return std::sqrt(static_cast<double>(t)); });
}

void SacObject::ScaleByDistance() {
  ScaleAmplitudes(distance());
}

void SacObject::sqrAmplitudes() {
  for (float& sample : samplesOf(*this)) sample *= sample;
  samplesChanged(*this);
}

void SacObject::absAmplitudes() {
  for (float& sample : samplesOf(*this)) sample = std::fabs(sample);
  samplesChanged(*this);
}

void SacObject::ZeroAmplitudes() {
  std::ranges::fill(samplesOf(*this), 0.0f);
  samplesChanged(*this);
}

void SacObject::binary() {
  for (float& sample : samplesOf(*this)) {
    if (sample > 0.0f) sample = 1.0f;
    if (sample < 0.0f) sample = -1.0f;
  }
  samplesChanged(*this);
}

void SacObject::reverseTime() {
  const auto x = samplesOf(*this);
  std::reverse(x.begin(), x.end());
  mSeisHasChanged_ = true;
}

void SacObject::Integrate() {
  integrate(samplesOf(*this), delta());
  samplesChanged(*this);
}

void SacObject::Differentiate() {
  differentiate(samplesOf(*this), delta());
  samplesChanged(*this);
}

void SacObject::Taper(float p) {
  const auto x = samplesOf(*this);
  const float dt = delta(), length = static_cast<float>(x.size()) * dt;
  const float edge = p * length, fall = length - edge;
  for (std::size_t i = 0; i < x.size(); ++i) {
    const float t = static_cast<float>(i) * dt;
    double weight = t <= 0.0f || t >= length ? 0.0 : 1.0;
    if (0.0f < t && t <= edge) weight = 1.0 - std::cos(t * kHalfPi / edge);
    if (i > 0 && fall <= t && t < length) weight = std::cos((t - fall) * kHalfPi / edge);
    x[i] = static_cast<float>(x[i] * weight);
  }
  if (verbose_ >= 2) {
    log("Applied a taper with a fraction:%.2e & duration: %.2e seconds.", static_cast<double>(p),
        static_cast<double>(length));
  }
  samplesChanged(*this);
}

void SacObject::ZeroAmplitudesAfterTime(float t) {
  const auto x = samplesOf(*this);
  const std::int64_t k = wholeSecondIndex(t, b(), delta(), 0.0f);
  const auto start = static_cast<std::size_t>(std::max<std::int64_t>(k, 0));
  if (k == kNoIndex || start > x.size()) return;
  std::fill(x.begin() + static_cast<std::ptrdiff_t>(start), x.end(), 0.0f);
  samplesChanged(*this);
}

void SacObject::ZeroAmplitudesAfterTime_TaperLength(float t, std::int32_t length) {
  const auto x = samplesOf(*this);
  const std::int64_t k = wholeSecondIndex(t, b(), delta(), -static_cast<float>(length));
  const auto start = static_cast<std::size_t>(std::max<std::int64_t>(k, 0));
  if (k == kNoIndex || start > x.size()) return;
  for (std::size_t j = start; j < x.size(); ++j) {
    x[j] = ramped(x[j], static_cast<std::int64_t>(j - start), length);
  }
  samplesChanged(*this);
}

void SacObject::ZeroAmplitudesBeforeTime_TaperLength(float t, std::int32_t length) {
  float* const x = samplesOf(*this).data();
  const std::int64_t n = std::ssize(samplesOf(*this));
  const std::int64_t k = std::min(wholeSecondIndex(t, b(), delta(), static_cast<float>(length)), n);
  if (k < 0) return;
  for (std::int64_t j = std::min(k, n - 1); j >= 0; --j) x[j] = ramped(x[j], k - j, length);
  samplesChanged(*this);
}

}  // namespace krosac
