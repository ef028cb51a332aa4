// Numbers that several folders use.
#ifndef KROSAC_PLATFORM_NUMBERS_H
#define KROSAC_PLATFORM_NUMBERS_H

#include <stdint.h>

#include "krosac/platform/Export.h"

KROSAC_C_BEGIN

// The undefined values: of header fields that are not set, of measures of no samples and of times
// that a table does not hold. The text fills a field of 8 characters; KEVNM has 8 more blanks.
KROSAC_CONSTANT float kSacUndefinedFloat = -12345.0f;
KROSAC_CONSTANT int32_t kSacUndefinedInt = -12345;
KROSAC_CONSTANT char kSacUndefinedText[] = "-12345  ";

// Length of one degree of great-circle arc in km, used in every conversion between them.
KROSAC_CONSTANT double kKilometresPerDegree = 111.19;

// pi / 180
KROSAC_CONSTANT double kRadiansPerDegree = 0.017453292519943295;

KROSAC_C_END

#ifdef __cplusplus
namespace krosac {

// True unless the value is kSacUndefinedFloat.
constexpr bool isDefined(float value) {
  return value != kSacUndefinedFloat;
}

}  // namespace krosac
#endif

#endif
