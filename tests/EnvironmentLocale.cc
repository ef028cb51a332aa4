// Linked into every test program: the locale of the environment becomes the program's, so that all
// tests also run where numbers are written with a decimal comma and grouped thousands.
#include <locale>
#include <stdexcept>

namespace {

const bool kTaken = [] {
  try {
    std::locale::global(std::locale(""));
  } catch (const std::runtime_error&) {
    return false;  // the environment names a locale that the machine has not
  }
  return true;
}();

}  // namespace

// The C library loses its copy of $LOCPATH when a locale is set from the environment.
extern "C" __attribute__((visibility("default"))) const char* __lsan_default_suppressions() {
  return "leak:__argz_add_sep";
}
