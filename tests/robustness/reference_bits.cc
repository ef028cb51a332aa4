// Prints the reference bits.
#include <cstdio>

#include "robustness/ReferenceBits.h"

int main() {
  krosac::setLogSink([](const std::string&) {});
  std::fputs(krosac::reference::bits().c_str(), stdout);
}
