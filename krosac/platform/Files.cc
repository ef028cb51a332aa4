#include "krosac/platform/internal/Files.h"

#include <fcntl.h>

namespace krosac {

File openRegularFile(const char* path) noexcept {
  // O_NONBLOCK makes opening a pipe return at once when no process writes to it.
  File file(path ? ::open(path, O_RDONLY | O_CLOEXEC | O_NONBLOCK) : -1);
  struct stat status;
  if (file.isOpen() && (::fstat(file.descriptor(), &status) != 0 || !S_ISREG(status.st_mode)))
    file.close();
  return file;
}

Stream openRegularStream(const char* path) noexcept {
  File file = openRegularFile(path);
  Stream stream(file.isOpen() ? ::fdopen(file.descriptor(), "rb") : nullptr);
  if (stream) file.release();
  return stream;
}

}  // namespace krosac
