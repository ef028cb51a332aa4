// Image, samples and spectrum of a seismogram for the library's own files.
#ifndef KROSAC_SEISMOGRAM_INTERNAL_SACOBJECTACCESS_H
#define KROSAC_SEISMOGRAM_INTERNAL_SACOBJECTACCESS_H

#include <algorithm>
#include <span>
#include <utility>

#include "krosac/dsp/internal/PackedSpectrum.h"
#include "krosac/platform/internal/Reason.h"
#include "krosac/seismogram/SacObject.h"

namespace krosac {

// The buffer that the header and sample pointers refer to. Between setMyData and setupPointers it
// is the previous one.
inline const Ref<ByteBuffer>& viewedImage(const SacObject& s) {
  return s.replacedData_ ? s.replacedData_ : s.myData_;
}

// The number of samples, at most `npts`, in an image that has a header.
inline std::size_t countIn(const ByteBuffer& image, std::int32_t npts) {
  const std::size_t present = (image.length() - kSacHeaderBytes) / sizeof(float);
  return std::min(static_cast<std::size_t>(std::max(npts, 0)), present);
}

// The samples that NPTS states and the buffer holds.
inline std::span<float> samplesOf(const SacObject& s) {
  if (!s.GetSacSeis()) return {};
  return {s.GetSacSeis(), countIn(*viewedImage(s), s.npts())};
}

// The header of the image that myData holds, also before setupPointers; null where it has none.
inline const SacHeader* headerInData(const SacObject& s) {
  if (!s.myData() || s.myData()->length() < kSacHeaderBytes) return nullptr;
  return reinterpret_cast<const SacHeader*>(s.myData()->bytes());
}

// Replaces the image; returns false and changes nothing where the new one is null.
inline bool installImage(SacObject& s, Ref<ByteBuffer> image) {
  if (!image) return false;
  s.setMyData(std::move(image));
  s.setupPointers();
  return true;
}

// Ends an operation that changed samples.
inline void samplesChanged(SacObject& s) {
  s.ComputeExtrema();
  s.setMSeisHasChanged(true);
}

// Replaces the samples by the inverse transform of a spectrum, times the scale.
inline void takeBack(SacObject& s, PackedSpectrum& spectrum, double scale = 1.0) {
  spectrum.inverse(samplesOf(s), scale);
  samplesChanged(s);
}

// Transforms the padded samples, calls shape(spectrum), and takes the result back, times the scale.
template <typename Shape>
void shapeSpectrum(SacObject& s, Shape shape, double scale = 1.0) {
  clearReason();
  const auto x = samplesOf(s);
  if (x.empty()) return;
  PackedSpectrum spectrum(x, paddedLength(x.size()), s.delta());
  if (!spectrum) return;
  spectrum.forward();
  shape(spectrum);
  takeBack(s, spectrum, scale);
}

// Two traces padded to one length and not yet transformed. The second is first cut to the number of
// samples of the first.
inline std::pair<PackedSpectrum, PackedSpectrum> spectraOf(const SacObject& first,
                                                           const SacObject& second) {
  const auto x = samplesOf(first), y = samplesOf(second);
  const std::size_t n = paddedLength(std::max(x.size(), y.size()));
  return PackedSpectrum::ofTwo(x, y.first(std::min(x.size(), y.size())), n, first.delta());
}

// What flinnEngdahlString returns, and the name of the geographic region of the event's location,
// null without one. The first throws where memory runs out.
OptionalText regionText(const SacObject& s);
const char* geographicRegion(const SacObject& s);

// What setReferenceTime does, which allocates only the scratch object.
void moveReferenceTime(SacObject& s, const SeisTimeObject& time, SeisTimeObject& scratch);

}  // namespace krosac

#endif
