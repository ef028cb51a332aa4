#include "krosac/sacio/SacFile.h"

#include <unistd.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>

#include "krosac/platform/internal/Files.h"
#include "krosac/sacio/internal/SacParts.h"

namespace krosac {
namespace {

constexpr auto kHeaderBytes = static_cast<std::int64_t>(kSacHeaderBytes);

// Reads items of a regular file in order, each whole or not at all, and sets the reason of
// failures.
class Reader {
 public:
  explicit Reader(const char* path) noexcept : path_(path), file_(openRegularFile(path)) {}

  std::int64_t size() const noexcept { return file_.size(); }

  // Reads `count` values, or skips them if `to` is null. A count below 1 is a failure.
  template <typename T>
  bool read(T* to, std::int32_t count = 1) noexcept {
    if (!file_.isOpen()) return false;
    if (count <= 0) {
      setReason("%s: no samples to read, NPTS or the maximum is %d", path_, count);
      return false;
    }
    const std::size_t bytes = static_cast<std::size_t>(count) * sizeof *to;
    place_ += static_cast<std::int64_t>(bytes);
    const bool isRead =
        to ? file_.readAll(to, bytes) : ::lseek(file_.descriptor(), place_, SEEK_SET) == place_;
    // A read that overlaps a truncation may return zeros for the pages that are gone.
    const std::int64_t found = file_.size();
    if (isRead && found >= place_) return true;
    if (found >= place_) {
      setSystemReason(path_);
    } else {
      setTooShortReason(path_, (place_ - kHeaderBytes) / 4, found);
    }
    return false;
  }

 private:
  const char* path_;
  File file_;
  std::int64_t place_ = 0;  // the end of the last item
};

// Writes `count` values as one item; no values are a failure.
template <typename T>
bool writeItem(const Stream& file, const T* from, std::int32_t count = 1) noexcept {
  return count > 0 &&
         std::fwrite(from, static_cast<std::size_t>(count) * sizeof *from, 1, file.get()) == 1;
}

void setStatus(std::int32_t* status, bool good) {
  setOutput(status, good ? 0 : -1);
}

// False, with a reason, unless the arguments of a writer can be used.
bool checkArguments(const char* path, const float* samples, std::int32_t count) noexcept {
  if (!path) {
    setReason("no path given");
  } else if (count < 0) {
    setReason("%s: NPTS is %d", path, count);
  } else if (count > 0 && !samples) {
    setReason("%s: no samples given", path);
  } else {
    return true;
  }
  return false;
}

// The header of n samples that WriteSAC1 and WriteSAC2 start from.
SacHeader headerFor(std::int32_t n) {
  SacHeader header;
  NewSacHeader(&header);
  header.NORID = 0;
  header.NPTS = n;
  return header;
}

}  // namespace

bool writeEvenFile(const char* path, SacHeader header, const float* samples) noexcept {
  if (!checkArguments(path, samples, std::max(header.NPTS, 0))) return false;
  header.E = static_cast<float>(std::int64_t{header.NPTS} - 1) * header.DELTA + header.B;
  Stream file(std::fopen(path, "w"));
  if (file && writeItem(file, &header)) {
    if (header.NPTS <= 0) {
      setReason("%s: NPTS is %d, so the header alone was written", path, header.NPTS);
      return false;
    }
    if (writeItem(file, samples, header.NPTS) && std::fclose(file.release()) == 0) return true;
  }
  setSystemReason(path);
  return false;
}

std::int32_t IsSacFile(const char* path) {
  clearReason();
  Reader file(path);
  const std::int64_t size = file.size();
  SacHeader header;
  if (!file.read(&header)) return -1;
  const std::int64_t longest = kHeaderBytes + std::int64_t{4} * header.NPTS;
  if (!(header.DELTA > 0.0f)) {
    setReason("%s: DELTA is %g, not above 0", path, static_cast<double>(header.DELTA));
  } else if (header.NPTS < 1) {
    setReason("%s: NPTS is %d, below 1", path, header.NPTS);
  } else if (header.NVHDR < 0) {
    setReason("%s: NVHDR is %d, below 0", path, header.NVHDR);
  } else if (size > longest) {
    setReason("%s: may have %lld + 4 x %d = %lld bytes, found %lld", path,
              static_cast<long long>(kHeaderBytes), header.NPTS, static_cast<long long>(longest),
              static_cast<long long>(size));
  } else {
    return 1;
  }
  return -1;
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
  clearReason();
  setStatus(status, Reader(path).read(header));
}

void ReadSACfile(const char* path, float* samples, SacHeader* header, std::int32_t max,
                 std::int32_t* status) {
  clearReason();
  Reader file(path);
  SacHeader own;
  bool good = file.read(&own);
  if (good) {
    own.NPTS = std::min(own.NPTS, max);
    setOutput(header, own);
    good = file.read(samples, own.NPTS);
  }
  setStatus(status, good);
}

void ReadSAC1(const char* path, float* samples, std::int32_t* npts, float* delta, float* b,
              std::int32_t max, std::int32_t* status) {
  SacHeader header;
  std::int32_t outcome = -1;
  ReadSACfile(path, samples, &header, max, &outcome);
  if (outcome == 0) {
    setOutput(npts, header.NPTS);
    setOutput(delta, header.DELTA);
    setOutput(b, header.B);
  }
  setOutput(status, outcome);
}

void ReadSAC2(const char* path, std::int32_t* n, float* second, float* first, std::int32_t max,
              std::int32_t* status) {
  clearReason();
  SacHeader header;
  Reader file(path);
  bool good = file.read(&header);
  if (good) {
    const std::int32_t count = std::min(header.NPTS, max);
    setOutput(n, count);
    good = count == 0 || (file.read(first, count) && file.read(second, count));
  }
  setStatus(status, good);
}

void WriteSACfile(const char* path, const float* samples, std::int32_t* status, SacHeader header) {
  clearReason();
  setStatus(status,
            checkArguments(path, samples, header.NPTS) && writeEvenFile(path, header, samples));
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
  clearReason();
  SacHeader header = headerFor(n);
  header.IFTYPE = kSacXY;
  header.LEVEN = 0;

  const bool isUsable = checkArguments(path, x, n) && checkArguments(path, y, n);
  Stream file(isUsable ? std::fopen(path, "w") : nullptr);
  const char* problem = nullptr;
  if (!file) {
    problem = "creating";
  } else if (!writeItem(file, &header)) {
    problem = "writing header for";
  } else if (n > 0 && !writeItem(file, y, n)) {
    problem = "writing x values for";  // The block holds y; the exchanged names are intended.
  } else if (n > 0 && !writeItem(file, x, n)) {
    problem = "writing y values for";
  }
  const bool good = !problem && std::fclose(file.release()) == 0;
  if (isUsable && !good) setSystemReason(path);
  if (problem) std::printf("Problem %s file %s\n", problem, path ? path : "(null)");
  setStatus(status, good);
}

}  // namespace krosac
