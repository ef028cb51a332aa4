// The spectrum of a real signal in the packed layout of realft.
//
// Value 0 is the real value at zero frequency, value 1 the real value at the Nyquist frequency
// halfpts df, and values 2k and 2k + 1 are the real and imaginary part of bin k = 1 .. halfpts - 1
// at k df. Operations use min(npts, values in the buffer) values. With fewer than two values they
// do nothing, and the measures return 0.0. Only computeExtrema changes minAmp, maxAmp and meanAmp.
#ifndef KROSAC_SERIES_RFSPECTRUM_H
#define KROSAC_SERIES_RFSPECTRUM_H

#include <cstdint>

#include "krosac/platform/Export.h"
#include "krosac/series/kroSpectrum.h"

namespace krosac {

class KROSAC_API rfSpectrum : public kroSpectrum {
 public:
  // Makes the flat spectrum (all ones) of a unit impulse at time 0 in a trace of n samples with an
  // interval of dt s: npts is nextPowerOfTwoPts(n), df is 1 / (npts dt). Returns the object.
  // For n >= 2^30 or without memory nothing changes and the result is empty; see lastReason().
  Ref<rfSpectrum> initWithImpulseSpectrumDt_Npts(float dt, std::int32_t n);

  // The mean is the sum of the halfpts + 1 amplitudes divided by npts; the divisor is intended.
  void computeExtrema() override;

  // ---- Measures; 0.0 if df is 0 ----
  //
  // A band runs from f1 to f2 Hz; a negative f1 counts as 0. Its bins are those from f1 / df to
  // f2 / df, both truncated. It includes zero frequency if f1 / df truncates to 0, and the Nyquist
  // frequency if f2 reaches or exceeds it. Measures return -12345.0 if f1 exceeds f2 or the Nyquist
  // frequency, or if a limit is NaN.

  // Returns 2 pi df times the sum of the squared amplitudes of all frequencies, or of a band.
  float signalPower() const;
  float signalPowerFromFreq_To(float f1, float f2) const;
  // Returns the mean of the amplitudes, or of their log10, in a band: NaN if the band is empty,
  // minus infinity for the logarithm of an amplitude of 0.
  float meanAmplitudeValueFrom_To(float f1, float f2) const;
  float meanLog10AmplitudeValueFrom_To(float f1, float f2) const;
  // Returns a new buffer of the halfpts + 1 amplitudes; the values at zero and Nyquist frequency
  // keep their signs (intended). Amplitudes beyond the spectrum's buffer are 0. Empty without
  // values or without memory.
  Ref<ByteBuffer> amplitudeSpectrum() const;

  // ---- In place ----

  // Divides every bin by its amplitude, which keeps the phase; the values at zero and Nyquist
  // frequency become 1. A bin of 0 becomes NaN.
  void prewhiten();
  // Delays the signal by tau s. The Nyquist value is multiplied by the cosine of its phase.
  void phaseShiftBy(float tau);
  // Multiplies every value by c.
  void multiplyByScalar(float c);
  // Multiply and divide every bin by i omega; the values at zero and Nyquist frequency become 0.
  // The forward exponent of realft is positive, so these are minus the derivative and minus the
  // integral in time (intended). With df = 0 the second divides by 0.
  void multiplyByIOmega();
  void divideByIOmega();
  // Adds the values of another spectrum. Does nothing if npts or df differ.
  void addSpectrum(const kroSpectrum& other);
  // Sets value 0 for any npts. Does nothing without a buffer.
  void setZeroFrequencyValue(float v);

  // ---- Copying ----

  // Returns an independent copy, values included; empty without memory.
  Ref<rfSpectrum> copyWithZone() const { return copy(); }
  Ref<rfSpectrum> copy() const;

 protected:
  ~rfSpectrum() override = default;

  Ref<kroSpectrum> clone() const override;
};

}  // namespace krosac

#endif
