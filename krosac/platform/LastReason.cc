#include "krosac/platform/LastReason.h"

#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "krosac/platform/Log.h"
#include "krosac/platform/internal/Reason.h"
#include "krosac/platform/internal/Text.h"

namespace krosac {
namespace {

thread_local char reason[1024] = "";

}  // namespace

extern "C" const char* lastReason(void) {
  return reason;
}

void clearReason() noexcept {
  reason[0] = '\0';
}

void setReason(const char* format, ...) noexcept {
  const int systemError = errno;
  char text[sizeof reason];  // the arguments may include the old reason
  {
    const CLocaleScope cLocaleHere;
    va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(text, sizeof text, format, arguments);
    va_end(arguments);
  }
  std::memcpy(reason, text, sizeof reason);
  if (std::getenv("KROSAC_DEBUG")) log("%s", reason);
  errno = systemError;
}

void setMemoryReason() noexcept {
  setReason("out of memory");
}

void setSystemReason(const char* path) noexcept {
  const CLocaleScope cLocaleHere;
  setReason("%s: %s", *path ? path : "empty path", std::strerror(errno));
}

}  // namespace krosac
