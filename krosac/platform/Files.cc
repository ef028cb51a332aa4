#include "krosac/platform/internal/Files.h"

#include <fcntl.h>

#include "krosac/platform/internal/Reason.h"

namespace krosac {

bool checkRegular(mode_t mode, const char* path) noexcept {
  if (S_ISREG(mode)) return true;
  setReason("%s: is %s", path, S_ISDIR(mode) ? "a folder" : "not a regular file");
  return false;
}

File openRegularFile(const char* path) noexcept {
  // O_NONBLOCK makes opening a pipe return at once when no process writes to it.
  File file(path ? ::open(path, O_RDONLY | O_CLOEXEC | O_NONBLOCK) : -1);
  struct stat status;
  if (!path) {
    setReason("no path given");
  } else if (!file.isOpen() || ::fstat(file.descriptor(), &status) != 0) {
    setSystemReason(path);
  } else if (checkRegular(status.st_mode, path)) {
    return file;
  }
  return File();
}

Stream openRegularStream(const char* path) noexcept {
  File file = openRegularFile(path);
  Stream stream(file.isOpen() ? ::fdopen(file.descriptor(), "rb") : nullptr);
  if (stream) {
    file.release();
  } else if (file.isOpen()) {
    setSystemReason(path);
  }
  return stream;
}

}  // namespace krosac
