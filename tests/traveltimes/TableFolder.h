// A folder of table files that the library searches before its own.
#ifndef KROSAC_TESTS_TRAVELTIMES_TABLEFOLDER_H
#define KROSAC_TESTS_TRAVELTIMES_TABLEFOLDER_H

#include <cstdlib>
#include <limits>

#include "CapturedLog.h"
#include "TemporaryFolder.h"

namespace krosac {

inline constexpr float kNone = -12345.0f;
inline constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();
inline constexpr float kInfinity = std::numeric_limits<float>::infinity();

struct TableFolder : TemporaryFolder {
  TableFolder() { setenv("KROSAC_DATA", path().c_str(), 1); }
  ~TableFolder() { unsetenv("KROSAC_DATA"); }
};

}  // namespace krosac

#endif
