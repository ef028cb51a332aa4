// Text that does not depend on the process's locale.
#ifndef KROSAC_PLATFORM_INTERNAL_TEXT_H
#define KROSAC_PLATFORM_INTERNAL_TEXT_H

#include <cstdarg>
#include <cstddef>
#include <string>

#include "krosac/platform/Export.h"
#include "krosac/platform/Text.h"

namespace krosac {

// The characters that isspace, isdigit and tolower treat alike in the C locale.
constexpr bool isWhiteSpace(char c) {
  return c == ' ' || (c >= '\t' && c <= '\r');
}
constexpr bool isDigit(char c) {
  return c >= '0' && c <= '9';
}
constexpr char lowerCase(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

// The text formatted as by printf in the C locale, whatever locale the program has set.
KROSAC_API std::string formatText(const char* format, ...) __attribute__((format(printf, 1, 2)));
KROSAC_API std::string formatTextV(const char* format, va_list arguments)
    __attribute__((format(printf, 1, 0)));

// What a missing text prints as: "(null)".
inline const char* printable(const OptionalText& text) {
  return text ? text->c_str() : "(null)";
}

// The characters of a fixed-width field up to its first NUL or its full width, without white space
// at both ends.
KROSAC_API std::string trimmedField(const char* field, std::size_t width);

// The part of a path behind its last slash; trailing slashes do not count. "/" gives "/", an empty
// path an empty text.
KROSAC_API std::string lastPathComponent(const std::string& path);

// A name below a folder, with one slash between them.
KROSAC_API std::string joinedPath(const std::string& folder, const std::string& name);

// Makes the C locale this thread's own while it lives.
class KROSAC_API CLocaleScope {
 public:
  // Changes this thread's locale, and brings the former one back.
  CLocaleScope() noexcept;
  ~CLocaleScope();
  CLocaleScope(const CLocaleScope&) = delete;
  CLocaleScope& operator=(const CLocaleScope&) = delete;

 private:
  void* previous_;
};

}  // namespace krosac

#endif
