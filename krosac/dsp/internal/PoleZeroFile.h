// Pole-zero files for the operations that must not take any other text for one.
#ifndef KROSAC_DSP_INTERNAL_POLEZEROFILE_H
#define KROSAC_DSP_INTERNAL_POLEZEROFILE_H

namespace krosac {

// What ParsePoleZeroFile does, and whether the file has any of the keywords at all: one without
// them gives the flat response too, but states none.
int parsePoleZeroFile(const char* path, float poles[], float zeros[], float* C, int* nPoles,
                      int* nZeros, bool* hasKeywords);

}  // namespace krosac

#endif
