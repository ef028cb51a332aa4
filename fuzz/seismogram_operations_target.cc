// Two seismograms and a chain of operations on them with any arguments.
#include "Operations.h"

using namespace fuzz;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  constexpr int kLongestChain = 8;
  Arguments arguments(data, size);
  const auto s = arguments.seismogram(), other = arguments.seismogram();
  // The greatest that any operation makes is a pulse of 2^24 weights.
  AllocationLimit limit((std::size_t{1} << 26) + 65536);
  for (int i = 0; i < kLongestChain && arguments.remaining_bytes() > 0; ++i)
    applyOperation(*s, *other, arguments);
  readEverything(*s);
  requireStableArchive(*s);
  return 0;
}
