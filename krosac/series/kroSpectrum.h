// A sampled spectrum with its number of values, frequency step and amplitude statistics.
#ifndef KROSAC_SERIES_KROSPECTRUM_H
#define KROSAC_SERIES_KROSPECTRUM_H

#include <cstdint>
#include <string>

#include "krosac/platform/ByteBuffer.h"
#include "krosac/platform/Export.h"
#include "krosac/platform/Fields.h"
#include "krosac/platform/Object.h"

namespace krosac {

class KROSAC_API kroSpectrum : public Object {
 public:
  // Sets no spectrum; all numbers become 0. Returns the object.
  Ref<Object> init() override;

  // The values as floats. The setter keeps its own reference to the buffer.
  KROSAC_FIELD(Ref<ByteBuffer>, spectrum, Spectrum);
  // The number of values. It is independent of the buffer's length.
  KROSAC_FIELD(std::int32_t, npts, Npts);
  // npts / 2.
  std::int32_t halfpts() const { return npts_ / 2; }
  // The frequency step in Hz.
  KROSAC_FIELD(float, df, Df);
  // Minimum, maximum and mean amplitude from the last computeExtrema.
  KROSAC_FIELD(float, minAmp, MinAmp);
  KROSAC_FIELD(float, maxAmp, MaxAmp);
  KROSAC_FIELD(float, meanAmp, MeanAmp);

  // Returns the smallest power of two greater than n, so a power of two is doubled (intended): 8
  // for 4 and for 5, 1 for n < 1. Returns 0 for n >= 2^30, where the result exceeds 32 bits.
  std::int32_t nextPowerOfTwoPts(std::int32_t n) const;

  // Fills minAmp, maxAmp and meanAmp in derived classes; does nothing here.
  virtual void computeExtrema() {}

  // Returns an independent copy of the receiver's own class; empty without memory.
  Ref<kroSpectrum> copyWithZone() const { return copy(); }
  Ref<kroSpectrum> copy() const;

  // Returns "Npts=%d df=%f spectrumSize=%d bytes\nminAmp=%e maxAmp=%e"; empty without memory.
  std::string description() const;

 protected:
  ~kroSpectrum() override = default;

  virtual Ref<kroSpectrum> clone() const;
  // Copies the fields and the buffer into a new object; false without memory.
  bool copyFieldsTo(kroSpectrum& copy) const;
};

}  // namespace krosac

#endif
