#include "krosac/dsp/Butterworth.h"
#include "krosac/seismogram/SacObject.h"

namespace krosac {

void SacObject::LPBUfilter_NPasses_NPoles(float corner, std::int32_t passes, std::int32_t poles) {
  if (!(corner > 0.0f)) return;
  const auto x = samples();
  GRLPBUfilter(x.data(), static_cast<int>(x.size()), passes, poles, delta(), corner);
  samplesChanged();
}

void SacObject::HPBUfilter_NPasses_NPoles(float corner, std::int32_t passes, std::int32_t poles) {
  if (!(corner > 0.0f)) return;
  const auto x = samples();
  GRHPBUfilter(x.data(), static_cast<int>(x.size()), passes, poles, delta(), corner);
  samplesChanged();
}

}  // namespace krosac
