// The system log: standard error, unless a sink is set.
#ifndef KROSAC_PLATFORM_LOG_H
#define KROSAC_PLATFORM_LOG_H

#include <functional>
#include <string>

#include "krosac/platform/Export.h"

namespace krosac {

// A function that receives the texts of the log.
using LogSink = std::function<void(const std::string& text)>;

// Redirects the log to the sink; an empty sink restores standard error. The sink receives the exact
// texts. On standard error a newline follows each text that does not end in one. Call this before
// other threads use the library.
KROSAC_API void setLogSink(LogSink sink);

// True if a sink is set.
KROSAC_API bool hasLogSink();

// Writes one text to the log, formatted as by printf in the C locale.
KROSAC_API void log(const char* format, ...) __attribute__((format(printf, 1, 2)));

}  // namespace krosac

#endif
