#include <algorithm>
#include <cmath>

#include "krosac/dsp/internal/PolesAndZeros.h"
#include "krosac/platform/LastReason.h"
#include "krosac/platform/internal/Reason.h"
#include "krosac/seismogram/internal/SacObjectAccess.h"

namespace krosac {
namespace {

constexpr float kTwoPiSingle = 6.2831854820251465f;

// Reads a response. A file without any of the keywords, or with a value that is not finite, has
// none.
bool readResponse(const std::string& path, PolesAndZeros& response) {
  bool hasKeywords;
  if (!readPoleZeroFile(path.c_str(), response, hasKeywords)) return false;
  const auto isFinite = [](float value) { return std::isfinite(value); };
  return hasKeywords && isFinite(response.constant) &&
         std::ranges::all_of(response.poles.pairs, isFinite) &&
         std::ranges::all_of(response.zeros.pairs, isFinite);
}

// The responses of an instrument, which its code or its roots define, at a block of bins.
class Responses {
 public:
  template <typename Instrument>
  Responses(const Instrument& instrument, const PackedBins& bins, std::size_t first,
            std::size_t count) {
    float omega[PackedBins::kBlock];
    for (std::size_t i = 0; i < count; ++i) omega[i] = bins.omega(first + i);
    respond(instrument, {omega, count}, re, im);
  }
  // The real part at a single frequency.
  template <typename Instrument>
  static float realAt(const Instrument& instrument, float omega) {
    float re, im;
    respond(instrument, {&omega, 1}, &re, &im);
    return re;
  }

  float re[PackedBins::kBlock], im[PackedBins::kBlock];
};

// Tapers the packed pairs at f = j df. The first pair holds the zero-frequency and Nyquist bins;
// the latter is then weighted by its own frequency.
void taperBand(PackedSpectrum& s, float f1, float f2, float f3, float f4) {
  const double rise = kHalfPi / (f2 - f1), fall = kHalfPi / (f4 - f3);
  const float nyquist = s.nyquist(), nyquistFrequency = s.nyquistFrequency();
  const auto taper = [&](float f, float& first, float& second) {
    double weight = f <= f1 || f > f4 ? 0.0 : 1.0;
    if (f1 < f && f <= f2) weight *= 1.0 - std::cos((f - f1) * rise);
    if (f3 <= f && f < f4) weight *= std::cos((f - f3) * fall);
    // Zero is assigned because dividing by a response of 0 leaves values that are not finite.
    first = weight == 0.0 ? 0.0f : static_cast<float>(first * weight);
    second = weight == 0.0 ? 0.0f : static_cast<float>(second * weight);
  };
  taper(0.0f, s.dc(), s.nyquist());
  s.forEachBin([&](std::size_t k, float& re, float& im) { taper(s.frequency(k), re, im); });
  if (nyquistFrequency > f4) {
    s.nyquist() = 0.0f;
  } else if (nyquistFrequency > f3) {
    s.nyquist() = static_cast<float>(nyquist * std::cos((nyquistFrequency - f3) * fall));
  }
}

}  // namespace

void SacObject::ConvolveInstrument(int code) {
  shapeSpectrum(*this, [&](PackedSpectrum& s) {
    s.dc() *= Responses::realAt(code, 0.0f);
    s.nyquist() *= Responses::realAt(code, s.nyquistFrequency() * kTwoPiSingle);
    s.multiplyBlocks([&](std::size_t first, std::span<double> re, std::span<double> im) {
      const Responses h(code, s, first, re.size());
      for (std::size_t i = 0; i < re.size(); ++i) {
        re[i] = h.re[i];
        im[i] = h.im[i];
      }
    });
  });
}

void SacObject::DeconvolveInstrument_TaperCorners(const std::string& path, const float corners[4]) {
  PolesAndZeros response;
  if (!readResponse(path, response)) {
    if (!*lastReason()) setReason("%s: no finite instrument response", path.c_str());
    return;
  }
  shapeSpectrum(*this, [&](PackedSpectrum& s) {
    s.dc() /= Responses::realAt(response, 0.0f);
    s.nyquist() /= Responses::realAt(response, s.nyquistFrequency() * kTwoPiSingle);
    s.multiplyBlocks([&](std::size_t first, std::span<double> re, std::span<double> im) {
      const Responses h(response, s, first, re.size());
      for (std::size_t i = 0; i < re.size(); ++i) {
        const double squared =
            static_cast<double>(h.re[i]) * h.re[i] + static_cast<double>(h.im[i]) * h.im[i];
        re[i] = h.re[i] / squared;
        im[i] = -h.im[i] / squared;
        if (squared > 0.0) continue;
        // A bin without response has no signal.
        re[i] = im[i] = 0.0;
        std::fill_n(s.values() + 2 * (first + i), 2, 0.0f);
      }
    });
    const float f1 = corners[0], f2 = corners[1], f3 = corners[2], f4 = corners[3];
    if (f2 > f1 && f4 > f3) taperBand(s, f1, f2, f3, f4);
  });
}

}  // namespace krosac
