#include "krosac/series/uniformSampleTimeSeries.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <new>
#include <utility>

#include "krosac/dsp/Butterworth.h"
#include "krosac/dsp/internal/Series.h"
#include "krosac/platform/Numbers.h"
#include "krosac/platform/internal/Reason.h"
#include "krosac/platform/internal/TruncIndex.h"

namespace krosac {

// ---- Making and fields ----

Ref<Object> uniformSampleTimeSeries::init() try {
  std::string type = "Uniformly Sampled Time Series";
  if (!timeSeries::init()) return nullptr;
  setTypeString(std::move(type));
  data_ = nullptr;
  min_ = max_ = mean_ = delta_ = 0.0f;
  const std::chrono::duration<double> now = std::chrono::system_clock::now().time_since_epoch();
  setEpochStartTime(now.count());
  return Ref<Object>(this);
} catch (const std::bad_alloc&) {
  setMemoryReason();
  return nullptr;
}

Ref<uniformSampleTimeSeries> uniformSampleTimeSeries::initWithZerosNpts_Delta(std::int32_t n,
                                                                              float delta) {
  clearReason();
  auto zeros = n < 0 ? nullptr : ByteBuffer::zeroed(static_cast<std::size_t>(n) * sizeof(float));
  if (!zeros) {
    setReason("%d samples: no such number or no memory for it", n);
    return nullptr;
  }
  if (!init()) return nullptr;
  data_ = std::move(zeros);
  setNpts(n);
  setDelta(delta);
  return Ref<uniformSampleTimeSeries>(this);
}

Ref<uniformSampleTimeSeries> uniformSampleTimeSeries::copyWithZone() const {
  const auto copy = timeSeries::copyWithZone();
  return Ref<uniformSampleTimeSeries>(dynamic_cast<uniformSampleTimeSeries*>(copy.get()));
}

Ref<timeSeries> uniformSampleTimeSeries::clone() const {
  auto copy = make<uniformSampleTimeSeries>();
  return copy && copyFieldsTo(*copy) ? Ref<timeSeries>(copy) : nullptr;
}

bool uniformSampleTimeSeries::copyFieldsTo(uniformSampleTimeSeries& copy) const {
  if (data_) {
    copy.data_ = ByteBuffer::copyOf(data_->bytes(), data_->length());
    if (!copy.data_) return false;
  }
  copySeriesFieldsTo(copy);
  copy.min_ = min_;
  copy.max_ = max_;
  copy.mean_ = mean_;
  copy.beginDateTime_ = beginDateTime_;
  copy.epochStartTime_ = epochStartTime_;
  copy.delta_ = delta_;
  return true;
}

float* uniformSampleTimeSeries::dataPointer() const {
  return data_ ? reinterpret_cast<float*>(data_->mutableBytes()) : nullptr;
}

std::span<float> uniformSampleTimeSeries::samples() const {
  const auto stated = static_cast<std::size_t>(std::max(npts(), 0));
  return {dataPointer(), std::min(stated, data_ ? data_->length() / sizeof(float) : 0)};
}

void uniformSampleTimeSeries::setEpochStartTime(double seconds) {
  epochStartTime_ = seconds;
  beginDateTime_ = Date{seconds};
}

double uniformSampleTimeSeries::epochEnd() const {
  const float length = static_cast<float>(std::int64_t{npts()} - 1) * delta_;
  return epochStartTime_ + length;
}

// ---- Amplitudes ----

void uniformSampleTimeSeries::computeExtrema() {
  const Extrema extrema = extremaOf<double>(samples());
  min_ = extrema.min;
  max_ = extrema.max;
  mean_ = extrema.mean;
}

void uniformSampleTimeSeries::removeMean() {
  computeExtrema();
  for (float& sample : samples()) sample -= mean_;
  min_ -= mean_;
  max_ -= mean_;
  mean_ = 0.0f;
}

void uniformSampleTimeSeries::subtractLinearTrend() {
  krosac::subtractLinearTrend<double>(samples(), delta_);
  computeExtrema();
}

void uniformSampleTimeSeries::scaleAmplitudes(float c) {
  for (float& sample : samples()) sample *= c;
  computeExtrema();
}

void uniformSampleTimeSeries::squareAmplitudes() {
  for (float& sample : samples()) sample *= sample;
  computeExtrema();
}

void uniformSampleTimeSeries::absAmplitudes() {
  for (float& sample : samples()) sample = std::fabs(sample);
  computeExtrema();
}

void uniformSampleTimeSeries::zeroAmplitudes() {
  std::ranges::fill(samples(), 0.0f);
  computeExtrema();
}

void uniformSampleTimeSeries::taper(float fraction) {
  const auto x = samples();
  const float length = static_cast<float>(x.size()) * delta_;
  const float rise = fraction * length, fall = length - rise;
  for (std::size_t i = 0; i < x.size(); ++i) {
    const float t = static_cast<float>(i) * delta_;
    // Sample 0 has weight 0 for every fraction, even if the falling edge covers it.
    const double weight = i == 0 ? 0.0 : cosineEdges(t, 0.0f, rise, fall, length);
    x[i] = static_cast<float>(x[i] * weight);
  }
  computeExtrema();
}

// ---- Measures ----

float uniformSampleTimeSeries::simpleRMS() const {
  const auto x = samples();
  return x.empty() ? kSacUndefinedFloat : std::sqrt(sumOfSquares(x) / static_cast<float>(x.size()));
}

float uniformSampleTimeSeries::signalPower() const {
  const auto x = samples();
  return x.empty() ? kSacUndefinedFloat : delta_ * sumOfSquares(x);
}

float uniformSampleTimeSeries::area() const {
  double sum = 0.0;
  for (const float sample : samples()) sum += sample;
  return static_cast<float>(delta_ * sum);
}

float uniformSampleTimeSeries::centroid() const {
  const auto x = samples();
  double sum = 0.0, moment = 0.0;
  for (std::size_t i = 0; i < x.size(); ++i) {
    sum += x[i];
    moment += static_cast<float>(i) * delta_ * x[i];
  }
  return sum == 0.0 ? kSacUndefinedFloat : static_cast<float>(moment / sum);
}

bool uniformSampleTimeSeries::covers(float t) const {
  const auto x = samples();
  return !x.empty() && delta_ != 0.0f && t >= 0.0f &&
         t <= delta_ * static_cast<float>(x.size() - 1);
}

float uniformSampleTimeSeries::lookupValueAtRelativeTime(float t) const {
  const auto x = samples();
  // The time is first truncated to whole seconds; this is intended.
  const std::int64_t k = truncInt32(std::trunc(t) / delta_);
  if (!covers(t) || k == kNoInt32) return kSacUndefinedFloat;
  return x[static_cast<std::size_t>(std::min(k, std::ssize(x) - 1))];
}

float uniformSampleTimeSeries::interpolateValueAtRelativeTime(float t) const {
  const auto x = samples();
  if (!covers(t)) return kSacUndefinedFloat;
  if (t == 0.0f) return x[0];
  // The time of the last sample may be infinite, so test it before dividing.
  if (t == delta_ * static_cast<float>(x.size() - 1)) return x.back();
  const float place = std::floor(t / delta_);
  const std::int64_t next = std::int64_t{truncInt32(place)} + 1;
  if (next < 1 || next >= std::ssize(x)) return x.back();  // the quotient rounded up to it
  const float before = x[static_cast<std::size_t>(next - 1)];
  return before + (t - place * delta_) * (x[static_cast<std::size_t>(next)] - before) / delta_;
}

// ---- Calculus, filters and pulses ----

void uniformSampleTimeSeries::integrate() {
  krosac::integrate(samples(), delta_);
  computeExtrema();
}

void uniformSampleTimeSeries::differentiate() {
  krosac::differentiate(samples(), delta_);
  computeExtrema();
}

void uniformSampleTimeSeries::LPBUfilter_NPasses_NPoles(float corner, std::int32_t passes,
                                                        std::int32_t poles) {
  if (!(corner > 0.0f)) return;
  const auto x = samples();
  GRLPBUfilter(x.data(), static_cast<int>(x.size()), passes, poles, delta_, corner);
  computeExtrema();
}

void uniformSampleTimeSeries::HPBUfilter_NPasses_NPoles(float corner, std::int32_t passes,
                                                        std::int32_t poles) {
  if (!(corner > 0.0f)) return;
  const auto x = samples();
  GRHPBUfilter(x.data(), static_cast<int>(x.size()), passes, poles, delta_, corner);
  computeExtrema();
}

void uniformSampleTimeSeries::addSpikeAtTimeDelay_Amplitude(float tau, float a) {
  const auto x = samples();
  const std::int64_t k = truncInt32(tau / delta_);
  if (0 <= k && k < std::ssize(x)) x[static_cast<std::size_t>(k)] += a;
}

void uniformSampleTimeSeries::cosineTimeFunctionFilterDuration(float duration) {
  clearReason();
  if (!(duration > 0.0f)) return;
  const std::int32_t m = truncInt32(static_cast<double>(duration) / delta_ + 0.5);
  if (m < 2) return;
  if (samples().empty() || convolveWithCosinePulse(samples(), delta_, duration, m))
    computeExtrema();
}

void uniformSampleTimeSeries::trapezoidFilter(float rise, float top, float fall) {
  clearReason();
  if (samples().empty() || convolveWithTrapezoid(samples(), delta_, rise, top, fall))
    computeExtrema();
}

}  // namespace krosac
