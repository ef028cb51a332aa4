// Evenly spaced samples with a start time, such as a source time function.
//
//   auto pulse = krosac::make<krosac::momentRateFtn>();
//   if (!pulse->init() || !pulse->initWithZerosNpts_Delta(200, 0.05f)) return 1;
//   pulse->addSpikeAtTimeDelay_Amplitude(2.0f, 20.0f);
//   pulse->trapezoidFilter(1.0f, 2.0f, 1.0f);
#ifndef KROSAC_SERIES_UNIFORMSAMPLETIMESERIES_H
#define KROSAC_SERIES_UNIFORMSAMPLETIMESERIES_H

#include <cstdint>
#include <span>

#include "krosac/platform/ByteBuffer.h"
#include "krosac/platform/Date.h"
#include "krosac/platform/Export.h"
#include "krosac/platform/Fields.h"
#include "krosac/series/timeSeries.h"

namespace krosac {

// Operations work in place on min(npts, samples in the buffer) samples and end with computeExtrema
// unless stated otherwise. Times are seconds after the first sample.
class KROSAC_API uniformSampleTimeSeries : public timeSeries {
 public:
  // ---- Making ----

  // Sets no samples, the current time as the start and the type "Uniformly Sampled Time Series".
  Ref<Object> init() override;
  // Calls init, then sets n zero samples with an interval of delta s. Returns the object. For a
  // negative n or without memory nothing changes and the result is empty; see lastReason().
  Ref<uniformSampleTimeSeries> initWithZerosNpts_Delta(std::int32_t n, float delta);
  // Returns a copy of all fields and samples that shares the delegate; empty without memory.
  Ref<uniformSampleTimeSeries> copyWithZone() const;

  // ---- Fields ----

  // The samples as floats; dataPointer returns null without a buffer.
  KROSAC_FIELD(Ref<ByteBuffer>, data, Data);
  float* dataPointer() const;
  // Minimum, maximum and mean sample, as the last operation left them.
  KROSAC_FIELD(float, min, Min);
  KROSAC_FIELD(float, max, Max);
  KROSAC_FIELD(float, mean, Mean);
  // The time of the first sample as a UTC date and in seconds since 1970. setEpochStartTime sets
  // both; setBeginDateTime sets only the date.
  KROSAC_FIELD(Date, beginDateTime, BeginDateTime);
  double epochStartTime() const { return epochStartTime_; }
  void setEpochStartTime(double seconds);
  // Returns the time of the last sample: epochStartTime plus (npts - 1) delta, the product in
  // single precision.
  double epochEnd() const;
  // The sampling interval in s.
  KROSAC_FIELD(float, delta, Delta);

  // ---- Amplitudes ----

  // Fills min, max and mean (summed in double precision); all are 0 for no samples.
  void computeExtrema();
  // Subtracts the mean. min and max are shifted and mean becomes 0, without a second search.
  void removeMean();
  // Removes the slope of the least-squares line and leaves a constant offset of -slope npts delta,
  // which is intended. Does nothing for a single sample.
  void subtractLinearTrend();
  // Replace every sample x by c x, by its square, by its absolute value, or by 0.
  void scaleAmplitudes(float c);
  void squareAmplitudes();
  void absAmplitudes();
  void zeroAmplitudes();
  // Tapers the first and last fraction of npts delta with 1 - cos and cos of a quarter period. The
  // first sample becomes 0 for every fraction. From 1 on the falling edge covers all other samples.
  // The default fraction is 0.05.
  void taper() { taper(0.05f); }
  void taper(float fraction);

  // ---- Measures; extrema do not change ----

  // Return sqrt(sum x^2 / npts) and delta sum x^2; -12345.0 for no samples.
  float simpleRMS() const;
  float signalPower() const;
  // Returns delta sum x, in the unit of the samples times s.
  float area() const;
  // Returns the amplitude-weighted mean time; -12345.0 for no samples or a sum of 0.
  float centroid() const;
  // Return the sample at t truncated to whole seconds (intended) and the linear interpolation at t;
  // -12345.0 for a time outside the series or a delta of 0.
  float lookupValueAtRelativeTime(float t) const;
  float interpolateValueAtRelativeTime(float t) const;

  // ---- Calculus, filters and pulses ----

  // Integrates by the trapezoid rule with a sum in double precision. The result is advanced by one
  // sample, its last two values are equal, and the sum and the first step both start from sample 0
  // times delta / 2; all intended.
  void integrate();
  // Forward difference over delta; the last value is repeated. A single sample does not change.
  void differentiate();
  // Butterworth low-pass and high-pass: corner in Hz, passes (2 for zero phase), poles. They do
  // nothing unless the corner is above 0.
  void LPBUfilter_NPasses_NPoles(float corner, std::int32_t passes, std::int32_t poles);
  void HPBUfilter_NPasses_NPoles(float corner, std::int32_t passes, std::int32_t poles);
  // Adds a to the sample at tau / delta, truncated; does nothing outside the series. The extrema do
  // not change.
  void addSpikeAtTimeDelay_Amplitude(float tau, float a);
  // Convolve with a one-cycle cosine pulse or a trapezoid of unit area, durations in s; the result
  // is advanced by one sample (intended). They do nothing for a negative duration or a cosine pulse
  // shorter than 1.5 samples. A trapezoid without area yields zeros.
  void cosineTimeFunctionFilterDuration(float duration);
  void trapezoidFilter(float rise, float top, float fall);

 protected:
  ~uniformSampleTimeSeries() override = default;

  Ref<timeSeries> clone() const override;
  // Copies the fields and the samples into a new object. Without memory it returns false or throws
  // std::bad_alloc.
  bool copyFieldsTo(uniformSampleTimeSeries& copy) const;

 private:
  std::span<float> samples() const;
  // True if the time is within the series.
  bool covers(float t) const;

  double epochStartTime_ = 0.0;
};

}  // namespace krosac

#endif
