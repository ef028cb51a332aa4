// Pole-zero files, then the response that they describe and its removal from a trace.
#include "Harness.h"

using namespace fuzz;

void runInput(std::string_view input) {
  const std::string path = asFile(input);
  std::vector<float> poles(64), zeros(64);
  float constant = 0.0f, re = 0.0f, im = 0.0f;
  int nPoles = -1, nZeros = -1;
  AllocationLimit limit(16384);
  require(ParsePoleZeroFile(path.c_str(), poles.data(), zeros.data(), &constant, &nPoles,
                            &nZeros) == 0);
  require(nPoles >= 0 && nPoles <= 32 && nZeros >= 0 && nZeros <= 32);
  ComputeInstRespnse(nZeros, zeros.data(), nPoles, poles.data(), &re, &im, 6.28f, constant);
  const float corners[] = {0.01f, 0.02f, 2.0f, 3.0f};
  Arguments(input).newSeismogram()->DeconvolveInstrument_TaperCorners(path, corners);
}
