#include "robustness/FailingAllocator.h"

#include <cerrno>
#include <cstdlib>

namespace krosac {

thread_local std::ptrdiff_t allocationsUntilFailure = 0;

}  // namespace krosac

namespace {

bool failsNow() {
  if (krosac::allocationsUntilFailure == 0 || --krosac::allocationsUntilFailure > 0) return false;
  errno = ENOMEM;
  return true;
}

}  // namespace

#pragma GCC visibility push(default)  // so that the library calls these too
extern "C" {

void* __libc_malloc(std::size_t);
void* __libc_calloc(std::size_t, std::size_t);
void* __libc_realloc(void*, std::size_t);
void* __libc_memalign(std::size_t, std::size_t);

void* malloc(std::size_t bytes) {
  return failsNow() ? nullptr : __libc_malloc(bytes);
}
void* calloc(std::size_t count, std::size_t bytes) {
  return failsNow() ? nullptr : __libc_calloc(count, bytes);
}
void* realloc(void* old, std::size_t bytes) {
  return failsNow() ? nullptr : __libc_realloc(old, bytes);
}
int posix_memalign(void** memory, std::size_t alignment, std::size_t bytes) {
  if (failsNow()) return ENOMEM;
  *memory = __libc_memalign(alignment, bytes);
  return *memory ? 0 : ENOMEM;
}

}  // extern "C"
#pragma GCC visibility pop
