#include "krosac/series/kroSpectrum.h"

#include <algorithm>
#include <new>

#include "krosac/dsp/internal/PackedSpectrum.h"
#include "krosac/platform/internal/Reason.h"
#include "krosac/platform/internal/Text.h"

namespace krosac {

Ref<Object> kroSpectrum::init() {
  spectrum_ = nullptr;
  npts_ = 0;
  df_ = minAmp_ = maxAmp_ = meanAmp_ = 0.0f;
  return Object::init();
}

std::int32_t kroSpectrum::nextPowerOfTwoPts(std::int32_t n) const {
  const std::size_t points = paddedLength(static_cast<std::size_t>(std::max(n, 0)));
  return points <= INT32_MAX ? static_cast<std::int32_t>(points) : 0;
}

Ref<kroSpectrum> kroSpectrum::copy() const {
  clearReason();
  auto copy = clone();
  if (!copy) setMemoryReason();
  return copy;
}

Ref<kroSpectrum> kroSpectrum::clone() const {
  auto copy = make<kroSpectrum>();
  return copy && copyFieldsTo(*copy) ? copy : nullptr;
}

bool kroSpectrum::copyFieldsTo(kroSpectrum& copy) const {
  if (spectrum_) {
    copy.spectrum_ = ByteBuffer::copyOf(spectrum_->bytes(), spectrum_->length());
    if (!copy.spectrum_) return false;
  }
  copy.npts_ = npts_;
  copy.df_ = df_;
  copy.minAmp_ = minAmp_;
  copy.maxAmp_ = maxAmp_;
  copy.meanAmp_ = meanAmp_;
  return true;
}

std::string kroSpectrum::description() const try {
  clearReason();
  return formatText("Npts=%d df=%f spectrumSize=%lld bytes\nminAmp=%e maxAmp=%e", npts_,
                    static_cast<double>(df_),
                    static_cast<long long>(spectrum_ ? spectrum_->length() : 0),
                    static_cast<double>(minAmp_), static_cast<double>(maxAmp_));
} catch (const std::bad_alloc&) {
  setMemoryReason();
  return {};
}

}  // namespace krosac
