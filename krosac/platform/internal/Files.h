// Open files that close themselves.
#ifndef KROSAC_PLATFORM_INTERNAL_FILES_H
#define KROSAC_PLATFORM_INTERNAL_FILES_H

#include <limits.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <utility>

#include "krosac/platform/Export.h"

namespace krosac {

// A file descriptor, or none. The destructor closes it and leaves errno as it was.
class File {
 public:
  File() = default;
  explicit File(int descriptor) noexcept : descriptor_(descriptor) {}
  File(File&& other) noexcept : descriptor_(other.release()) {}
  File& operator=(File&& other) noexcept {
    std::swap(descriptor_, other.descriptor_);
    return *this;
  }
  ~File() {
    const int error = errno;
    close();
    errno = error;
  }

  bool isOpen() const noexcept { return descriptor_ >= 0; }
  int descriptor() const noexcept { return descriptor_; }
  int release() noexcept { return std::exchange(descriptor_, -1); }
  // False if the system reports an error.
  bool close() noexcept { return !isOpen() || ::close(release()) == 0; }

  // The length of the file in bytes, -1 on error.
  std::int64_t size() const noexcept {
    struct stat status;
    return ::fstat(descriptor_, &status) == 0 ? status.st_size : -1;
  }

  // Reads at most `length` bytes. Returns their number, 0 at the end of the file, -1 on error.
  ssize_t read(void* to, std::size_t length) noexcept {
    ssize_t n;
    do {
      n = ::read(descriptor_, to, std::min<std::size_t>(length, SSIZE_MAX));
    } while (n < 0 && errno == EINTR);
    return n;
  }

  // Reads exactly `length` bytes; false if the file ends before or on error.
  bool readAll(void* to, std::size_t length) noexcept {
    std::size_t done = 0;
    while (done < length) {
      const ssize_t n = read(static_cast<char*>(to) + done, length - done);
      if (n <= 0) return false;
      done += static_cast<std::size_t>(n);
    }
    return true;
  }

  // Writes exactly `length` bytes; false on error.
  bool writeAll(const void* from, std::size_t length) noexcept {
    std::size_t done = 0;
    while (done < length) {
      const ssize_t n = ::write(descriptor_, static_cast<const char*>(from) + done,
                                std::min<std::size_t>(length - done, SSIZE_MAX));
      if (n < 0 && errno == EINTR) continue;
      if (n <= 0) return false;
      done += static_cast<std::size_t>(n);
    }
    return true;
  }

 private:
  int descriptor_ = -1;
};

struct StreamCloser {
  void operator()(std::FILE* file) const noexcept { std::fclose(file); }
};

// A buffered stream, or none. `std::fclose(stream.release())` reports errors of the last write.
using Stream = std::unique_ptr<std::FILE, StreamCloser>;

// Open a file for reading; none, with a reason, unless it is a regular file that can be read. Pipes
// would block and devices may have no end.
KROSAC_API File openRegularFile(const char* path) noexcept;
Stream openRegularStream(const char* path) noexcept;

// True for the mode of a regular file; else sets the reason that the path is a folder or another
// kind of file.
bool checkRegular(mode_t mode, const char* path) noexcept;

}  // namespace krosac

#endif
