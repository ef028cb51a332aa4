// The release of the library: of these headers as macros, of the loaded library as a function.
//
// The three numbers here are the only place that states the release; the build reads them from this
// file.
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

// The release as one number for comparisons by the preprocessor: 100 for 0.1.0, 10203 for 1.2.3.
#define KROSAC_VERSION_NUMBER \
  (KROSAC_VERSION_MAJOR * 10000 + KROSAC_VERSION_MINOR * 100 + KROSAC_VERSION_PATCH)

KROSAC_C_BEGIN

// KROSAC_VERSION of the library that was loaded, which need not be that of the headers that the
// caller was compiled with. The text is constant and never freed.
KROSAC_API const char* krosacVersion(void);

KROSAC_C_END

#endif
