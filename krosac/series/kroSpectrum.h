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
  // No spectrum, no values and no frequency step; the statistics are 0. Gives the object.
  Ref<Object> init() override;

  // The values as floats. The setter keeps its own reference to the buffer.
  KROSAC_FIELD(Ref<ByteBuffer>, spectrum, Spectrum);
  // The number of values, stated apart from the buffer.
  KROSAC_FIELD(std::int32_t, npts, Npts);
  // npts / 2.
  std::int32_t halfpts() const { return npts_ / 2; }
  // The frequency step in Hz.
  KROSAC_FIELD(float, df, Df);
  // Least, greatest and mean amplitude, as computeExtrema left them.
  KROSAC_FIELD(float, minAmp, MinAmp);
  KROSAC_FIELD(float, maxAmp, MaxAmp);
  KROSAC_FIELD(float, meanAmp, MeanAmp);

  // The smallest power of two greater than n, so that a power of two is doubled (intended): 8 for 4
  // and for 5, 1 for n below 1. 0 from 2^30 on, where it has no 32 bits.
  std::int32_t nextPowerOfTwoPts(std::int32_t n) const;

  // Fills minAmp, maxAmp and meanAmp; here it does nothing.
  virtual void computeExtrema() {}

  // An independent copy of the receiver's own class; empty where there is no memory.
  Ref<kroSpectrum> copyWithZone() const { return clone(); }
  Ref<kroSpectrum> copy() const { return clone(); }

  // "Npts=%d df=%f spectrumSize=%d bytes\nminAmp=%e maxAmp=%e".
  std::string description() const;

 protected:
  ~kroSpectrum() override = default;

  virtual Ref<kroSpectrum> clone() const;
  // Gives a new object this one's fields and a copy of the buffer; false where there is no memory.
  bool copyFieldsTo(kroSpectrum& copy) const;
};

}  // namespace krosac

#endif
