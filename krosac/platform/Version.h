// The release of these headers as macros and of the loaded library as a function.
//
// The release is stated here and nowhere else; the build reads it from this file.
#ifndef KROSAC_PLATFORM_VERSION_H
#define KROSAC_PLATFORM_VERSION_H

#include "krosac/platform/Export.h"

#define KROSAC_VERSION_MAJOR 0
#define KROSAC_VERSION_MINOR 1
#define KROSAC_VERSION_PATCH 0

#define KROSAC_TEXT_OF(x) #x
#define KROSAC_VERSION_TEXT(major, minor, patch) \
  KROSAC_TEXT_OF(major) "." KROSAC_TEXT_OF(minor) "." KROSAC_TEXT_OF(patch)

// The release as a text: "0.1.0".
#define KROSAC_VERSION \
  KROSAC_VERSION_TEXT(KROSAC_VERSION_MAJOR, KROSAC_VERSION_MINOR, KROSAC_VERSION_PATCH)

// The release as a number that the preprocessor can compare: 100 for 0.1.0, 10203 for 1.2.3.
#define KROSAC_VERSION_NUMBER \
  (KROSAC_VERSION_MAJOR * 10000 + KROSAC_VERSION_MINOR * 100 + KROSAC_VERSION_PATCH)

KROSAC_C_BEGIN

// KROSAC_VERSION of the loaded library, which may differ from that of the caller's headers. The
// text is constant; do not free it.
KROSAC_API const char* krosacVersion(void);

KROSAC_C_END

#endif
