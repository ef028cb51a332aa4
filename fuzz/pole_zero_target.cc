// Pole-zero files, then the response that they describe and its removal from a trace.
#include "Harness.h"
#include "krosac/dsp/InstrumentResponse.h"
#include "krosac/dsp/PoleZeroFile.h"

using namespace fuzz;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string path = asFile({data, size});
  std::vector<float> poles(64), zeros(64);
  float constant = 0.0f, re = 0.0f, im = 0.0f;
  int nPoles = -1, nZeros = -1;
  AllocationLimit limit(16384);
  require(krosac::ParsePoleZeroFile(path.c_str(), poles.data(), zeros.data(), &constant, &nPoles,
                                    &nZeros) == 0);
  require(nPoles >= 0 && nPoles <= 32 && nZeros >= 0 && nZeros <= 32);
  krosac::ComputeInstRespnse(nZeros, zeros.data(), nPoles, poles.data(), &re, &im, 6.28f, constant);

  Arguments arguments(data, size);
  const auto s = arguments.seismogram();
  const float corners[] = {0.01f, 0.02f, 2.0f, 3.0f};
  s->DeconvolveInstrument_TaperCorners(path, corners);
  return 0;
}
