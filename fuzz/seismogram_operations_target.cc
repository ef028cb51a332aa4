// Two seismograms and a chain of operations on them with any arguments.
#include "Harness.h"

using namespace fuzz;

void runInput(std::string_view input) {
  Arguments a(input);
  const auto s = a.newSeismogram(), other = a.newSeismogram();
  // The largest result of any operation is a pulse of 2^24 weights.
  AllocationLimit limit((std::size_t{1} << 26) + 65536);
  applySome(8, *s, *other, a);
  readEverything(*s);
  requireStableArchive(*s);
}
