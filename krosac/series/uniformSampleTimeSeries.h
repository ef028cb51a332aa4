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
// unless said otherwise. Times are seconds after the first sample.
class KROSAC_API uniformSampleTimeSeries : public timeSeries {
 public:
  // ---- Making ----

  // No samples, starting now; "Uniformly Sampled Time Series".
  Ref<Object> init() override;
  // init, then n zeros at an interval of delta s. Empty for a negative n or without memory.
  Ref<uniformSampleTimeSeries> initWithZerosNpts_Delta(std::int32_t n, float delta);
  // A copy of all fields and of the samples; the delegate is shared. Empty where there is no
  // memory.
  Ref<uniformSampleTimeSeries> copyWithZone() const;

  // ---- Fields ----

  // The samples as floats; dataPointer is null where there is no buffer.
  KROSAC_FIELD(Ref<ByteBuffer>, data, Data);
  float* dataPointer() const;
  // Least, greatest and mean sample, as the last operation left them.
  KROSAC_FIELD(float, min, Min);
  KROSAC_FIELD(float, max, Max);
  KROSAC_FIELD(float, mean, Mean);
  // The time of the first sample as a UTC date and in seconds since 1970. Setting the second sets
  // the first too, and not the other way round.
  KROSAC_FIELD(Date, beginDateTime, BeginDateTime);
  double epochStartTime() const { return epochStartTime_; }
  void setEpochStartTime(double seconds);
  // The time of the last sample: (npts - 1) delta, in single precision, after the start.
  double epochEnd() const;
  // The sampling interval in s.
  KROSAC_FIELD(float, delta, Delta);

  // ---- Amplitudes ----

  // Fills min, max and mean, the sum of the mean in double precision; three zeros for no samples.
  void computeExtrema();
  // min and max move with the samples and mean becomes 0; they are not searched again.
  void removeMean();
  // Removes the slope of the least-squares line. A constant offset of -slope npts delta is left;
  // this is intended. Nothing for a single sample.
  void subtractLinearTrend();
  // Replace every sample by c times it, its square, its absolute value, or 0.
  void scaleAmplitudes(float c);
  void squareAmplitudes();
  void absAmplitudes();
  void zeroAmplitudes();
  // Weighs the first and last fraction of npts delta by 1 - cos and cos of a quarter wave; the
  // first sample becomes 0, also for a fraction of 0. From 1 on the falling edge covers the whole
  // series, the first sample too. Without a fraction it is 0.05.
  void taper() { taper(0.05f); }
  void taper(float fraction);

  // ---- Measures; extrema stay ----

  // sqrt(sum x^2 / npts), and delta sum x^2; -12345.0 for no samples.
  float simpleRMS() const;
  float signalPower() const;
  // delta sum x, the integral in the unit of the samples times s.
  float area() const;
  // The amplitude-weighted mean time; -12345.0 for no samples or samples that add up to 0.
  float centroid() const;
  // The sample at t, which is first truncated to whole seconds (intended), and the linear
  // interpolation at t; -12345.0 for a time off the series or a delta of 0.
  float lookupValueAtRelativeTime(float t) const;
  float interpolateValueAtRelativeTime(float t) const;

  // ---- Calculus, filters and pulses ----

  // Trapezoid rule, accumulated in double. The output is advanced by one sample, the last two are
  // equal, and sample 0 times delta / 2 starts both the sum and the first step; all intended.
  void integrate();
  // Forward difference over delta; the last value is given twice. A single sample stays.
  void differentiate();
  // Butterworth low-pass and high-pass: corner in Hz, passes (2 gives zero phase), poles. Nothing
  // unless the corner is above 0.
  void LPBUfilter_NPasses_NPoles(float corner, std::int32_t passes, std::int32_t poles);
  void HPBUfilter_NPasses_NPoles(float corner, std::int32_t passes, std::int32_t poles);
  // Adds a to the sample at the truncated tau / delta; nothing off the series. Extrema stay.
  void addSpikeAtTimeDelay_Amplitude(float tau, float a);
  // Convolutions with a one-cycle cosine pulse or a trapezoid of unit area, durations in s; the
  // result is advanced by one sample (intended). Nothing for a duration that is negative, or a
  // cosine pulse shorter than 1.5 samples. Zeros for a trapezoid without area.
  void cosineTimeFunctionFilterDuration(float duration);
  void trapezoidFilter(float rise, float top, float fall);

 protected:
  ~uniformSampleTimeSeries() override = default;

  Ref<timeSeries> clone() const override;
  // Gives a new object this one's fields and a copy of the samples; false where there is no memory.
  bool copyFieldsTo(uniformSampleTimeSeries& copy) const;

 private:
  std::span<float> samples() const;
  // Whether a time lies on the series.
  bool covers(float t) const;

  double epochStartTime_ = 0.0;
};

}  // namespace krosac

#endif
