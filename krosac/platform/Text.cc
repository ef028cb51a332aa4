#include "krosac/platform/internal/Text.h"

#include <locale.h>
#ifdef __APPLE__
#include <xlocale.h>
#endif

#include <algorithm>
#include <cstdio>
#include <cstring>

namespace krosac {
namespace {

locale_t cLocale() {
  static const locale_t locale = newlocale(LC_ALL_MASK, "C", nullptr);
  return locale;
}

}  // namespace

CLocaleScope::CLocaleScope() noexcept : previous_(uselocale(cLocale())) {}

CLocaleScope::~CLocaleScope() {
  uselocale(static_cast<locale_t>(previous_));
}

std::string formatText(const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  std::string text = formatTextV(format, arguments);
  va_end(arguments);
  return text;
}

std::string formatTextV(const char* format, va_list arguments) {
  CLocaleScope cLocaleHere;
  va_list again;
  va_copy(again, arguments);
  char small[512];
  const int length = std::vsnprintf(small, sizeof small, format, arguments);
  std::string text;
  if (length > 0) {
    text.assign(small, std::min<std::size_t>(static_cast<std::size_t>(length), sizeof small - 1));
    if (static_cast<std::size_t>(length) >= sizeof small) {
      text.resize(static_cast<std::size_t>(length));
      std::vsnprintf(text.data(), text.size() + 1, format, again);
    }
  }
  va_end(again);
  return text;
}

std::string trimmedField(const char* field, std::size_t width) {
  std::size_t end = strnlen(field, width), begin = 0;
  while (end > begin && isWhiteSpace(field[end - 1])) --end;
  while (begin < end && isWhiteSpace(field[begin])) ++begin;
  return std::string(field + begin, end - begin);
}

std::string lastPathComponent(const std::string& path) {
  const std::size_t end = path.find_last_not_of('/');
  if (end == std::string::npos) return path.empty() ? "" : "/";
  const std::size_t slash = path.find_last_of('/', end);
  const std::size_t begin = slash == std::string::npos ? 0 : slash + 1;
  return path.substr(begin, end + 1 - begin);
}

std::string joinedPath(const std::string& folder, const std::string& name) {
  if (folder.empty()) return name;
  std::string path = folder;
  while (!path.empty() && path.back() == '/') path.pop_back();
  return path + "/" + name.substr(std::min(name.find_first_not_of('/'), name.size()));
}

}  // namespace krosac
