#include "krosac/sacio/SacFile.h"

#include <sys/stat.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <utility>

#include "krosac/platform/internal/RegularFile.h"

namespace krosac {
namespace {

// A stream that is closed with its scope. Items move whole or not at all; a null path or array, or
// a count below 1, is none.
class Stream {
 public:
  static Stream reading(const char* path) noexcept { return Stream(openRegularStream(path)); }
  static Stream writing(const char* path) noexcept {
    return Stream(path ? std::fopen(path, "w") : nullptr);
  }
  ~Stream() { close(); }
  Stream(const Stream&) = delete;
  Stream& operator=(const Stream&) = delete;

  bool isOpen() const noexcept { return file_ != nullptr; }
  bool close() noexcept {
    std::FILE* file = std::exchange(file_, nullptr);
    return file && std::fclose(file) == 0;
  }

  // `count` values as one item.
  template <typename T>
  bool read(T* to, std::int32_t count = 1) noexcept {
    if (!file_ || !to || count <= 0 || std::fread(to, bytes<T>(count), 1, file_) != 1) return false;
    bytesRead_ += static_cast<std::int64_t>(bytes<T>(count));
    return stillHoldsWhatWasRead();
  }
  template <typename T>
  bool write(const T* from, std::int32_t count = 1) noexcept {
    return file_ && from && count > 0 && std::fwrite(from, bytes<T>(count), 1, file_) == 1;
  }

 private:
  explicit Stream(std::FILE* file) noexcept : file_(file) {}

  template <typename T>
  static std::size_t bytes(std::int32_t count) {
    return static_cast<std::size_t>(count) * sizeof(T);
  }

  // A page that a shrinking file loses is read as zeros when its length was looked up before.
  bool stillHoldsWhatWasRead() const noexcept {
    struct stat now;
    return ::fstat(::fileno(file_), &now) == 0 && now.st_size >= bytesRead_;
  }

  std::FILE* file_;
  std::int64_t bytesRead_ = 0;
};

void setStatus(std::int32_t* status, bool good) {
  if (status) *status = good ? 0 : -1;
}

template <typename T>
void give(T* output, T value) {
  if (output) *output = value;
}

bool canBeWritten(const float* samples, std::int32_t count) {
  return count == 0 || (count > 0 && samples);
}

// What the headers of WriteSAC1 and WriteSAC2 have in common.
SacHeader headerFor(std::int32_t n) {
  SacHeader header;
  NewSacHeader(&header);
  header.NORID = 0;
  header.NPTS = n;
  return header;
}

}  // namespace

std::int32_t IsSacFile(const char* path) {
  struct stat file;
  if (!path || ::stat(path, &file) != 0) return -1;
  if (file.st_size < static_cast<std::int64_t>(kSacHeaderBytes)) return -1;
  SacHeader header;
  if (!Stream::reading(path).read(&header)) return -1;
  if (!(header.DELTA > 0.0f) || header.NPTS < 1 || header.NVHDR < 0) return -1;
  const auto longest = static_cast<std::int64_t>(kSacHeaderBytes) + std::int64_t{4} * header.NPTS;
  return file.st_size <= longest ? 1 : -1;
}

void NewSacHeader(SacHeader* header) {
  if (!header) return;
  *header = kSacHeaderTemplate;
  header->NVHDR = kSacHeaderVersion;
  header->NEVID = 0;
  header->LPSPOL = 0;
  header->LCALDA = 1;
  header->UNUSED18 = 0;
}

void ReadSACHeader(const char* path, SacHeader* header, std::int32_t* status) {
  Stream file = Stream::reading(path);
  const bool good = file.read(header);
  setStatus(status, file.close() && good);
}

void ReadSACfile(const char* path, float* samples, SacHeader* header, std::int32_t max,
                 std::int32_t* status) {
  Stream file = Stream::reading(path);
  bool good = file.read(header);
  if (good) {
    header->NPTS = std::min(header->NPTS, max);
    good = file.read(samples, header->NPTS);
  }
  setStatus(status, file.close() && good);
}

void ReadSAC1(const char* path, float* samples, std::int32_t* npts, float* delta, float* b,
              std::int32_t max, std::int32_t* status) {
  SacHeader header;
  std::int32_t outcome = -1;
  ReadSACfile(path, samples, &header, max, &outcome);
  if (outcome == 0) {
    give(npts, header.NPTS);
    give(delta, header.DELTA);
    give(b, header.B);
  }
  give(status, outcome);
}

void ReadSAC2(const char* path, std::int32_t* n, float* second, float* first, std::int32_t max,
              std::int32_t* status) {
  SacHeader header;
  Stream file = Stream::reading(path);
  bool good = file.read(&header);
  if (good) {
    const std::int32_t count = std::min(header.NPTS, max);
    give(n, count);
    good = count == 0 || (file.read(first, count) && file.read(second, count));
  }
  setStatus(status, file.close() && good);
}

void WriteSACfile(const char* path, const float* samples, std::int32_t* status, SacHeader header) {
  setStatus(status, false);
  if (!canBeWritten(samples, header.NPTS)) return;
  header.E = static_cast<float>(header.NPTS - 1) * header.DELTA + header.B;
  Stream file = Stream::writing(path);
  const bool good = file.write(&header) && file.write(samples, header.NPTS);
  setStatus(status, file.close() && good);
}

void WriteSAC1(const char* path, const float* samples, std::int32_t n, std::int32_t* status,
               float delta, float b) {
  SacHeader header = headerFor(n);
  header.DELTA = delta;
  header.B = b;
  header.IZTYPE = kSacReferenceIsBegin;
  WriteSACfile(path, samples, status, header);
}

void WriteSAC2(const char* path, std::int32_t n, const float* x, const float* y,
               std::int32_t* status) {
  SacHeader header = headerFor(n);
  header.IFTYPE = kSacXY;
  header.LEVEN = 0;

  Stream file = Stream::writing(canBeWritten(x, n) && canBeWritten(y, n) ? path : nullptr);
  const char* problem = nullptr;
  if (!file.isOpen()) {
    problem = "creating";
  } else if (!file.write(&header)) {
    problem = "writing header for";
  } else if (n > 0 && !file.write(y, n)) {
    problem = "writing x values for";  // The block is y's: names exchanged, as intended.
  } else if (n > 0 && !file.write(x, n)) {
    problem = "writing y values for";
  }
  if (problem) std::printf("Problem %s file %s\n", problem, path ? path : "(null)");
  setStatus(status, file.close() && !problem);
}

}  // namespace krosac
