#include "krosac/platform/ByteBuffer.h"

#include <fcntl.h>
#include <limits.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <new>

#include "krosac/platform/internal/Files.h"
#include "krosac/platform/internal/Reason.h"
#include "krosac/platform/internal/Text.h"

namespace krosac {
namespace {

constexpr int kMostLinks = 40;
constexpr char kNoMemory[] = "no memory for %zu bytes";

// Allocates memory for std::free. Page faults take much of the time of reading a large file, so
// large buffers ask for large pages.
unsigned char* newBytes(std::size_t length) {
  constexpr std::size_t kLargePage = std::size_t{1} << 21;
  if (length < 4 * kLargePage)
    return static_cast<unsigned char*>(std::malloc(std::max<std::size_t>(length, 1)));
  void* bytes = nullptr;
  if (::posix_memalign(&bytes, kLargePage, length) != 0) return nullptr;
#ifdef MADV_HUGEPAGE
  ::madvise(bytes, length - length % kLargePage, MADV_HUGEPAGE);
#endif
  return static_cast<unsigned char*>(bytes);
}

// Follows symbolic links. The target need not exist. Returns an empty path, with errno set, for a
// loop of links and for an empty path.
std::string followLinks(std::string path) {
  for (int link = 0; link < kMostLinks; ++link) {
    char target[PATH_MAX];
    const ssize_t length = ::readlink(path.c_str(), target, sizeof target);
    if (length < 0) return path;
    if (length == static_cast<ssize_t>(sizeof target)) {
      errno = ENAMETOOLONG;
      return {};
    }
    const std::string to(target, static_cast<std::size_t>(length));
    const std::size_t slash = path.find_last_of('/');
    path = to.front() == '/' || slash == std::string::npos ? to : path.substr(0, slash + 1) + to;
  }
  errno = ELOOP;
  return {};
}

// Creates a file beside the target under an unused name. The length of that name does not depend on
// the target's, so a target whose name has the greatest length can still be saved.
int openTemporary(const std::string& target, std::string& temporary) {
  static std::atomic<unsigned> counter{0};
  const std::size_t slash = target.find_last_of('/');
  const std::string folder = slash == std::string::npos ? "" : target.substr(0, slash + 1);
  for (int attempt = 0; attempt < 1000; ++attempt) {
    temporary = folder + formatText(".krosac-%ld-%u.tmp", static_cast<long>(::getpid()), counter++);
    const int descriptor = ::open(temporary.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
    if (descriptor >= 0 || errno != EEXIST) return descriptor;
  }
  return -1;
}

}  // namespace

ByteBuffer::~ByteBuffer() {
  std::free(bytes_);
}

Ref<ByteBuffer> ByteBuffer::adoptBytes(unsigned char* bytes, std::size_t length) {
  auto buffer = bytes ? make<ByteBuffer>() : nullptr;
  if (!buffer) {
    setReason(kNoMemory, length);
    std::free(bytes);
    return nullptr;
  }
  buffer->bytes_ = bytes;
  buffer->length_ = length;
  return buffer;
}

Ref<ByteBuffer> ByteBuffer::unfilled(std::size_t length) {
  return adoptBytes(newBytes(length), length);
}

Ref<ByteBuffer> ByteBuffer::zeroed(std::size_t length) {
  return adoptBytes(static_cast<unsigned char*>(std::calloc(std::max<std::size_t>(length, 1), 1)),
                    length);
}

Ref<ByteBuffer> ByteBuffer::copyOf(const void* bytes, std::size_t length) {
  auto copy = unfilled(length);
  if (copy && length) std::memcpy(copy->bytes_, bytes, length);
  return copy;
}

Ref<ByteBuffer> ByteBuffer::fromFile(const std::string& path) {
  clearReason();
  File file = openRegularFile(path.c_str());
  const std::int64_t size = file.size();
  if (size < 0) return nullptr;
  auto buffer = unfilled(static_cast<std::size_t>(size));
  if (!buffer) return nullptr;
  const bool isRead = file.readAll(buffer->bytes_, buffer->length_);
  // A read that overlaps a truncation may return zeros for the pages that are gone.
  if (file.size() != size) {
    setReason("%s: changed its length while it was read", path.c_str());
  } else if (!isRead) {
    setSystemReason(path.c_str());
  } else {
    return buffer;
  }
  return nullptr;
}

bool ByteBuffer::resize(std::size_t length) noexcept {
  void* const bytes = std::realloc(bytes_, std::max<std::size_t>(length, 1));
  if (!bytes) {
    setReason(kNoMemory, length);
    return false;
  }
  bytes_ = static_cast<unsigned char*>(bytes);
  length_ = length;
  return true;
}

bool ByteBuffer::writeAtomically(const std::string& path) const {
  return writeAtomically(path, length_);
}

bool ByteBuffer::writeAtomically(const std::string& path, std::size_t length) const try {
  clearReason();
  const auto failed = [&] {
    setSystemReason(path.c_str());
    return false;
  };
  const std::string target = followLinks(path);
  if (target.empty()) return failed();
  struct stat old;
  const bool exists = ::stat(target.c_str(), &old) == 0;
  if (target.back() == '/') return checkRegular(S_IFDIR, path.c_str());
  if (exists && !checkRegular(old.st_mode, path.c_str())) return false;
  if (exists && ::faccessat(AT_FDCWD, target.c_str(), W_OK, AT_EACCESS) != 0) return failed();

  std::string temporary;
  File file(openTemporary(target, temporary));
  if (!file.isOpen()) return failed();
  const auto keepOwnerAndMode = [&] {
    // Keeping the owner may fail, keeping the permissions must not. Changing the owner can clear
    // permissions, so it comes first.
    [[maybe_unused]] const int owner = ::fchown(file.descriptor(), old.st_uid, old.st_gid);
    return ::fchmod(file.descriptor(), old.st_mode & 07777) == 0;
  };
  if (file.writeAll(bytes_, std::min(length, length_)) && (!exists || keepOwnerAndMode()) &&
      ::fsync(file.descriptor()) == 0 && file.close() &&
      std::rename(temporary.c_str(), target.c_str()) == 0)
    return true;
  failed();
  ::unlink(temporary.c_str());
  return false;
} catch (const std::bad_alloc&) {  // nothing has been opened yet
  setMemoryReason();
  return false;
}

}  // namespace krosac
