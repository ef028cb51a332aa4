// The response of an instrument as poles and zeros, read from a file or built in.
#ifndef KROSAC_DSP_INTERNAL_POLESANDZEROS_H
#define KROSAC_DSP_INTERNAL_POLESANDZEROS_H

#include <span>

namespace krosac {

// The response is constant * product of (i*omega - zero) / product of (i*omega - pole).
struct PolesAndZeros {
  static constexpr int kMaxRoots = 32;

  // Pairs (real, imaginary) in rad/s. A file may list more pairs than it counts.
  struct Roots {
    int count = 0;
    float pairs[2 * kMaxRoots] = {};
    int listed = 0;
  };

  Roots zeros, poles;
  float constant = 1.0f;
};

// Reads a file as ParsePoleZeroFile does, with its message. Returns false where that returns -1,
// and sets the reason. hasKeywords is false for a text that has none of the keywords and so states
// no response.
bool readPoleZeroFile(const char* path, PolesAndZeros& response, bool& hasKeywords);

// The response at each angular frequency in rad/s, conjugated as by ComputeInstRespnse. Many
// frequencies in one call let the compiler evaluate them in vectors.
void respond(const PolesAndZeros& instrument, std::span<const float> omega, float re[], float im[]);

// The same for a built-in instrument, given by its code as in GetInstrumentResponse.
void respond(int code, std::span<const float> omega, float re[], float im[]);

}  // namespace krosac

#endif
