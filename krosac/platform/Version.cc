#include "krosac/platform/Version.h"

namespace krosac {

const char* krosacVersion() {
  return KROSAC_VERSION;
}

}  // namespace krosac
