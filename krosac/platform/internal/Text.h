// Text that does not depend on the process's locale.
#ifndef KROSAC_PLATFORM_INTERNAL_TEXT_H
#define KROSAC_PLATFORM_INTERNAL_TEXT_H

#include <cstdarg>
#include <cstddef>
#include <string>

#include "krosac/platform/Export.h"
#include "krosac/platform/Text.h"

namespace krosac {

// isspace, isdigit and tolower of the C locale.
constexpr bool isWhiteSpace(char c) {
  return c == ' ' || (c >= '\t' && c <= '\r');
}
constexpr bool isDigit(char c) {
  return c >= '0' && c <= '9';
}
constexpr char lowerCase(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

// Formats as printf does in the C locale, whatever locale the program has set.
KROSAC_API std::string formatText(const char* format, ...) __attribute__((format(printf, 1, 2)));
KROSAC_API std::string formatTextV(const char* format, va_list arguments)
    __attribute__((format(printf, 1, 0)));

// The text, or "(null)" if there is none.
inline const char* printable(const OptionalText& text) {
  return text ? text->c_str() : "(null)";
}

// The characters of a fixed-width field up to its first NUL, without leading and trailing white
// space.
KROSAC_API std::string trimmedField(const char* field, std::size_t width);

// The part of a path after its last slash, ignoring trailing slashes; "/" for a path of slashes.
KROSAC_API std::string lastPathComponent(const std::string& path);

// The path of a name in a folder, with one slash between them; the name if the folder is empty.
KROSAC_API std::string joinedPath(const std::string& folder, const std::string& name);

// Sets the C locale for the calling thread during its life.
class KROSAC_API CLocaleScope {
 public:
  // Set the locale and restore the previous one.
  CLocaleScope() noexcept;
  ~CLocaleScope();
  CLocaleScope(const CLocaleScope&) = delete;
  CLocaleScope& operator=(const CLocaleScope&) = delete;

 private:
  void* previous_;
};

}  // namespace krosac

#endif
