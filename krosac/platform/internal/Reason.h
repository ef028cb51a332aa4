// Setting what lastReason() returns. A public operation that can fail clears the reason first and
// sets it where it fails. An operation that continues after a failed part clears it again.
#ifndef KROSAC_PLATFORM_INTERNAL_REASON_H
#define KROSAC_PLATFORM_INTERNAL_REASON_H

namespace krosac {

// Makes lastReason() empty.
void clearReason() noexcept;

// Sets what lastReason() returns, formatted as by printf in the C locale and cut to 1023 bytes.
// Leaves errno as it was.
void setReason(const char* format, ...) noexcept __attribute__((format(printf, 1, 2)));

// Sets "PATH: TEXT" with the system's English text for errno.
void setSystemReason(const char* path) noexcept;

// Sets "out of memory". For function-try-blocks: no failed allocation leaves the library as an
// exception.
void setMemoryReason() noexcept;

}  // namespace krosac

#endif
