#include "krosac/platform/Log.h"

#include <cstdarg>
#include <cstdio>
#include <new>
#include <utility>

#include "krosac/platform/internal/Text.h"

namespace krosac {
namespace {

LogSink& currentSink() {
  static LogSink sink;
  return sink;
}

}  // namespace

void setLogSink(LogSink sink) {
  currentSink() = std::move(sink);
}

bool hasLogSink() {
  return static_cast<bool>(currentSink());
}

void log(const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  try {
    std::string text = formatTextV(format, arguments);
    if (hasLogSink()) {
      currentSink()(text);
    } else {
      if (text.empty() || text.back() != '\n') text += '\n';
      std::fwrite(text.data(), 1, text.size(), stderr);
    }
  } catch (const std::bad_alloc&) {  // without memory there is no text
  }
  va_end(arguments);
}

}  // namespace krosac
