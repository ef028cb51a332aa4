// The spectrum of a real signal in the packed layout of realft.
//
// Value 0 is the real value at zero frequency, value 1 the real one at the Nyquist frequency
// halfpts df, and values 2k and 2k + 1 are the real and imaginary part of bin k = 1 .. halfpts - 1
// at k df. Operations work on min(npts, values in the buffer) values; with fewer than two they do
// nothing, and the measures give 0.0. They leave minAmp, maxAmp and meanAmp but for computeExtrema.
#ifndef KROSAC_SERIES_RFSPECTRUM_H
#define KROSAC_SERIES_RFSPECTRUM_H

#include <cstdint>

#include "krosac/platform/Export.h"
#include "krosac/series/kroSpectrum.h"

namespace krosac {

class KROSAC_API rfSpectrum : public kroSpectrum {
 public:
  // The flat spectrum, all ones, of a unit impulse at time 0 in a trace of n samples at dt s: npts
  // is nextPowerOfTwoPts(n), df is 1 / (npts dt). Empty from n = 2^30 on or without memory.
  Ref<rfSpectrum> initWithImpulseSpectrumDt_Npts(float dt, std::int32_t n);

  // The mean is the sum of the halfpts + 1 amplitudes over npts; the divisor is intended.
  void computeExtrema() override;

  // ---- Measures; 0.0 where df is 0 ----
  //
  // A band runs from f1 to f2 Hz, cut at the Nyquist frequency; its bins are those from f1 / df to
  // f2 / df, both truncated. The zero frequency belongs to it where f1 / df truncates to 0, the
  // Nyquist frequency where f2 / df reaches halfpts. With a negative f1 it begins at a negative
  // bin: bins below 0 have the amplitude 0 and bin 0 takes values 0 and 1 as its parts. -12345.0
  // when f1 is above f2 or the Nyquist frequency, or a limit has no bin number.

  // 2 pi df times the sum of the squared amplitudes of all frequencies, or of a band.
  float signalPower() const;
  float signalPowerFromFreq_To(float f1, float f2) const;
  // The mean amplitude, or mean log10 of the amplitudes, in a band; not a number for one without
  // bins, minus infinity for the logarithm of an amplitude of 0.
  float meanAmplitudeValueFrom_To(float f1, float f2) const;
  float meanLog10AmplitudeValueFrom_To(float f1, float f2) const;
  // A new buffer of halfpts + 1 floats: the amplitudes, but the values at zero and Nyquist
  // frequency with their signs (intended). Empty where there is nothing or no memory.
  Ref<ByteBuffer> amplitudeSpectrum() const;

  // ---- In place ----

  // Makes all amplitudes 1 and keeps the phases; the values at zero and Nyquist frequency become 1.
  // A bin of 0 becomes not a number.
  void prewhiten();
  // Delays the signal by tau s. The Nyquist value is multiplied by the cosine of its phase.
  void phaseShiftBy(float tau);
  // Multiplies every value by c.
  void multiplyByScalar(float c);
  // Multiply and divide every bin by i w; the values at zero and Nyquist frequency become 0. Since
  // realft's forward exponent is positive, these are minus the derivative and minus the integral in
  // time (intended). With df 0 the second divides by 0.
  void multiplyByIOmega();
  void divideByIOmega();
  // Adds the other's values one by one. Nothing when npts or df differ.
  void addSpectrum(const kroSpectrum& other);
  // Whatever npts is; nothing without a buffer.
  void setZeroFrequencyValue(float v);

  // ---- Copying ----

  // An independent copy, the values included; empty where there is no memory.
  Ref<rfSpectrum> copyWithZone() const { return copy(); }
  Ref<rfSpectrum> copy() const;

 protected:
  ~rfSpectrum() override = default;

  Ref<kroSpectrum> clone() const override;
};

}  // namespace krosac

#endif
