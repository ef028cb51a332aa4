// What the fuzz targets share: arguments drawn from the input, files that hold it, and a limit on
// what it may cause to be allocated.
#ifndef KROSAC_FUZZ_HARNESS_H
#define KROSAC_FUZZ_HARNESS_H

#include <fuzzer/FuzzedDataProvider.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "krosac/platform/Date.h"
#include "krosac/seismogram/SacObject.h"

namespace fuzz {

// Draws arguments, among them those that break things: not a number, infinities, limits of
// integers, huge and tiny numbers.
class Arguments : public FuzzedDataProvider {
 public:
  using FuzzedDataProvider::FuzzedDataProvider;

  float real();
  std::int32_t integer();
  // From 0 to most - 1, for what stands in an array.
  std::size_t index(std::size_t most) { return ConsumeIntegralInRange<std::size_t>(0, most - 1); }
  std::string text(std::size_t longest = 24) { return ConsumeRandomLengthString(longest); }
  std::vector<char> bytes(std::size_t longest);
  krosac::Date date();
  // An array of its own allocation and of exactly this length, so that a step beyond is seen.
  std::vector<float> reals(std::size_t count);
  // An evenly sampled seismogram of a few hundred samples at most.
  krosac::Ref<krosac::SacObject> seismogram();
};

// The input as a regular file, whose path is good until the next call.
std::string asFile(std::span<const std::uint8_t> bytes);
// A folder in which each of the names is that file.
std::string folderOfLinks(const std::vector<std::string>& names);
// The path of a file that can be written.
std::string scratchPath();

// While it lives no single allocation may be larger; one that is ends the process.
class AllocationLimit {
 public:
  explicit AllocationLimit(std::size_t bytes);
  ~AllocationLimit();
  AllocationLimit(const AllocationLimit&) = delete;
  AllocationLimit& operator=(const AllocationLimit&) = delete;
};

// Ends the process where something that must hold does not.
void require(bool holds);

// Reads every byte, so that the sanitizer sees them.
void touch(const void* bytes, std::size_t count);
void touch(std::span<const float> values);

// What was decoded gives the archive that it is decoded from, the same every time. The first
// decoding may settle fields that follow from others.
template <typename T>
void requireStableArchive(const T& object) {
  const auto settled = krosac::archivedCopy(object);
  require(static_cast<bool>(settled));
  const auto first = krosac::archive(*settled),
             second = krosac::archive(*krosac::unarchive<T>(*first));
  require(first->length() == second->length() &&
          std::equal(first->bytes(), first->bytes() + first->length(), second->bytes()));
}

}  // namespace fuzz

#endif
