// The system log: standard error, unless a sink is set.
#ifndef KROSAC_PLATFORM_LOG_H
#define KROSAC_PLATFORM_LOG_H

#include <functional>
#include <string>

#include "krosac/platform/Export.h"

namespace krosac {

// What takes the log's texts.
using LogSink = std::function<void(const std::string& text)>;

// Sends every later log text to the sink; an empty sink brings back standard error. The sink gets
// the exact text; standard error gets a newline after a text that does not end in one. Set it
// before other threads use the library.
KROSAC_API void setLogSink(LogSink sink);

// Whether a sink is set.
KROSAC_API bool hasLogSink();

// Writes one text to the log, formatted as by printf in the C locale.
KROSAC_API void log(const char* format, ...) __attribute__((format(printf, 1, 2)));

}  // namespace krosac

#endif
