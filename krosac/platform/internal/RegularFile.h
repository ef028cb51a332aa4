// Opening files for reading.
#ifndef KROSAC_PLATFORM_INTERNAL_REGULARFILE_H
#define KROSAC_PLATFORM_INTERNAL_REGULARFILE_H

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdint>
#include <cstdio>

namespace krosac {

// Opens a regular file for reading and stores its size: a pipe would block, a device could have no
// end. Gives its descriptor, -1 where there is no such file that can be read.
inline int openRegularFile(const char* path, std::int64_t* size = nullptr) noexcept {
  // Not blocking, so that opening a pipe that nobody writes to comes back.
  const int descriptor = path ? ::open(path, O_RDONLY | O_CLOEXEC | O_NONBLOCK) : -1;
  if (descriptor < 0) return -1;
  struct stat status;
  if (::fstat(descriptor, &status) != 0 || !S_ISREG(status.st_mode)) {
    ::close(descriptor);
    return -1;
  }
  if (size) *size = status.st_size;
  return descriptor;
}

// The same as a stream, or null.
inline std::FILE* openRegularStream(const char* path) noexcept {
  const int descriptor = openRegularFile(path);
  if (descriptor < 0) return nullptr;
  std::FILE* file = ::fdopen(descriptor, "rb");
  if (!file) ::close(descriptor);
  return file;
}

}  // namespace krosac

#endif
