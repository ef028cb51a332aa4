// Calls the plain function of the sources from C.
#include "krosac/source/BodyWaveResponse.h"

int main(void) {
  float block[13] = {0, 45, 90, 10, 0, 0, 5, 0, 60, 0, 3, 0, 0};
  GetBWResponse(block);
  // Straight down through 10 km at 5 km/s, and up again.
  return !(block[8] > 3.9999f && block[8] < 4.0001f && block[1] == -block[11]);
}
