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

#include "krosac/platform/internal/RegularFile.h"
#include "krosac/platform/internal/Text.h"

namespace krosac {
namespace {

constexpr int kMostLinks = 40;

class File {
 public:
  explicit File(int descriptor) noexcept : descriptor_(descriptor) {}
  ~File() { close(); }
  File(const File&) = delete;
  File& operator=(const File&) = delete;

  bool isOpen() const noexcept { return descriptor_ >= 0; }
  int descriptor() const noexcept { return descriptor_; }
  bool close() noexcept {
    const int descriptor = std::exchange(descriptor_, -1);
    return descriptor < 0 || ::close(descriptor) == 0;
  }

  bool readAll(unsigned char* to, std::size_t length) noexcept {
    return transfer(
        length, [&](std::size_t done, std::size_t n) { return ::read(descriptor_, to + done, n); });
  }
  bool writeAll(const unsigned char* from, std::size_t length) noexcept {
    return transfer(length, [&](std::size_t done, std::size_t n) {
      return ::write(descriptor_, from + done, n);
    });
  }

 private:
  template <typename Step>
  static bool transfer(std::size_t length, Step step) noexcept {
    std::size_t done = 0;
    while (done < length) {
      const ssize_t n = step(done, std::min<std::size_t>(length - done, SSIZE_MAX));
      if (n < 0 && errno == EINTR) continue;
      if (n <= 0) return false;
      done += static_cast<std::size_t>(n);
    }
    return true;
  }

  int descriptor_;
};

// Memory for std::free. Much of the time that reading a large file takes goes into making pages, so
// these are large ones where the system has them.
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

// The path behind any chain of symbolic links, also where its end does not exist yet; empty when
// the chain does not end.
std::string behindLinks(std::string path) {
  for (int link = 0; link < kMostLinks; ++link) {
    char target[PATH_MAX];
    const ssize_t length = ::readlink(path.c_str(), target, sizeof target);
    if (length < 0) return path;
    if (length == static_cast<ssize_t>(sizeof target)) break;
    const std::string to(target, static_cast<std::size_t>(length));
    const std::size_t slash = path.find_last_of('/');
    path = to.front() == '/' || slash == std::string::npos ? to : path.substr(0, slash + 1) + to;
  }
  return {};
}

// Opens a new file beside the target under a name that nobody has. The name does not grow with the
// target's, so that a target name of the greatest length still can be saved.
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
  std::int64_t size = 0;
  File file(openRegularFile(path.c_str(), &size));
  if (!file.isOpen()) return nullptr;
  auto buffer = unfilled(static_cast<std::size_t>(size));
  if (!buffer || !file.readAll(buffer->bytes_, buffer->length_)) return nullptr;
  // A page that a shrinking file loses is read as zeros when its length was looked up before.
  struct stat now;
  return ::fstat(file.descriptor(), &now) == 0 && now.st_size == size ? buffer : nullptr;
}

bool ByteBuffer::resize(std::size_t length) noexcept {
  void* const bytes = std::realloc(bytes_, std::max<std::size_t>(length, 1));
  if (!bytes) return false;
  bytes_ = static_cast<unsigned char*>(bytes);
  length_ = length;
  return true;
}

bool ByteBuffer::writeAtomically(const std::string& path) const {
  return writeAtomically(path, length_);
}

bool ByteBuffer::writeAtomically(const std::string& path, std::size_t length) const {
  const std::string target = behindLinks(path);
  if (target.empty() || target.back() == '/') return false;
  struct stat old;
  const bool exists = ::stat(target.c_str(), &old) == 0;
  if (exists &&
      (!S_ISREG(old.st_mode) || ::faccessat(AT_FDCWD, target.c_str(), W_OK, AT_EACCESS) != 0))
    return false;

  std::string temporary;
  File file(openTemporary(target, temporary));
  if (!file.isOpen()) return false;
  bool good = file.writeAll(bytes_, std::min(length, length_));
  if (good && exists) {
    // The owner is kept where the system lets us; the permissions must be, after it, since a new
    // owner clears some.
    [[maybe_unused]] const int owner = ::fchown(file.descriptor(), old.st_uid, old.st_gid);
    good = ::fchmod(file.descriptor(), old.st_mode & 07777) == 0;
  }
  good = good && ::fsync(file.descriptor()) == 0;
  good = file.close() && good;
  good = good && std::rename(temporary.c_str(), target.c_str()) == 0;
  if (!good) ::unlink(temporary.c_str());
  return good;
}

}  // namespace krosac
