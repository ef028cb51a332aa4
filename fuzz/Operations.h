// Operations of seismograms with arguments from the input.
#ifndef KROSAC_FUZZ_OPERATIONS_H
#define KROSAC_FUZZ_OPERATIONS_H

#include "Harness.h"

namespace fuzz {

// Applies one operation, drawn from all that a seismogram offers and from those on two or more.
void applyOperation(krosac::SacObject& s, krosac::SacObject& other, Arguments& arguments);

// Calls everything of a seismogram that only reads it.
void readEverything(krosac::SacObject& s);

}  // namespace fuzz

#endif
