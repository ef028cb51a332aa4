#include "krosac/sacio/SacFile.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>

#include "krosac/platform/internal/Files.h"
#include "krosac/sacio/internal/SacWriting.h"

namespace krosac {
namespace {

// Reads items of a regular file in order, each whole or not at all. A null array and a count below
// 1 are failures.
class Reader {
 public:
  explicit Reader(const char* path) noexcept : file_(openRegularFile(path)) {}

  std::int64_t size() const noexcept { return file_.size(); }

  template <typename T>
  bool read(T* to, std::int32_t count = 1) noexcept {
    if (!to || count <= 0) return false;
    const std::size_t bytes = static_cast<std::size_t>(count) * sizeof *to;
    bytesRead_ += static_cast<std::int64_t>(bytes);
    // A read that overlaps a truncation may return zeros for the pages that are gone.
    return file_.readAll(to, bytes) && file_.size() >= bytesRead_;
  }

 private:
  File file_;
  std::int64_t bytesRead_ = 0;
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

bool canBeWritten(const float* samples, std::int32_t count) {
  return count == 0 || (count > 0 && samples);
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
  if (!path || (header.NPTS > 0 && !samples)) return false;
  header.E = static_cast<float>(std::int64_t{header.NPTS} - 1) * header.DELTA + header.B;
  Stream file(std::fopen(path, "w"));
  if (!file) return false;
  const bool good = writeItem(file, &header) && writeItem(file, samples, header.NPTS);
  return std::fclose(file.release()) == 0 && good;
}

std::int32_t IsSacFile(const char* path) {
  Reader file(path);
  const std::int64_t size = file.size();
  SacHeader header;
  if (!file.read(&header)) return -1;
  if (!(header.DELTA > 0.0f) || header.NPTS < 1 || header.NVHDR < 0) return -1;
  const auto longest = static_cast<std::int64_t>(kSacHeaderBytes) + std::int64_t{4} * header.NPTS;
  return size <= longest ? 1 : -1;
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
  setStatus(status, Reader(path).read(header));
}

void ReadSACfile(const char* path, float* samples, SacHeader* header, std::int32_t max,
                 std::int32_t* status) {
  Reader file(path);
  bool good = file.read(header);
  if (good) {
    header->NPTS = std::min(header->NPTS, max);
    good = file.read(samples, header->NPTS);
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
  setStatus(status, header.NPTS >= 0 && writeEvenFile(path, header, samples));
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

  Stream file(path && canBeWritten(x, n) && canBeWritten(y, n) ? std::fopen(path, "w") : nullptr);
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
  if (problem) std::printf("Problem %s file %s\n", problem, path ? path : "(null)");
  setStatus(status, file && std::fclose(file.release()) == 0 && !problem);
}

}  // namespace krosac
