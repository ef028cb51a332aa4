// Responses at many frequencies at once, which compilers evaluate in vectors.
#ifndef KROSAC_DSP_INTERNAL_INSTRUMENTRESPONSE_H
#define KROSAC_DSP_INTERNAL_INSTRUMENTRESPONSE_H

#include <span>

namespace krosac {

// Roots as ComputeInstRespnse takes them.
struct PolesAndZeros {
  int nZeros;
  const float* zeros;
  int nPoles;
  const float* poles;
  float constant;
};

// What ComputeInstRespnse gives at each angular frequency in rad/s.
void respond(const PolesAndZeros& instrument, std::span<const float> omega, float re[], float im[]);

// What GetInstrumentResponse gives at each.
void respond(int code, std::span<const float> omega, float re[], float im[]);

}  // namespace krosac

#endif
