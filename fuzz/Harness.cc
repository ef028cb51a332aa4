#include "Harness.h"

#include <fcntl.h>
#include <sanitizer/allocator_interface.h>
#include <sys/mman.h>
#include <unistd.h>

#include <atomic>
#include <bit>
#include <cstdlib>
#include <filesystem>
#include <limits>

#include "krosac/platform/Log.h"

namespace fuzz {
namespace {

std::atomic<std::size_t> mostAllocated{0};  // 0 for no limit

void checkAllocation(const volatile void*, std::size_t size) {
  if (mostAllocated && size > mostAllocated) {
    mostAllocated = 0;  // the report itself allocates
    std::abort();
  }
}

// A file in memory. Whoever opens its path reads it from the start.
class MemoryFile {
 public:
  MemoryFile() : descriptor_(::memfd_create("input", MFD_CLOEXEC)) { require(descriptor_ >= 0); }

  std::string path() const { return "/proc/self/fd/" + std::to_string(descriptor_); }
  void write(std::span<const std::uint8_t> bytes) const {
    require(::ftruncate(descriptor_, 0) == 0 &&
            ::pwrite(descriptor_, bytes.data(), bytes.size(), 0) == std::ssize(bytes));
  }

 private:
  int descriptor_;
};

const MemoryFile& inputFile() {
  static const MemoryFile file;
  return file;
}

// A folder that goes when the process ends.
struct Folder {
  Folder() {
    std::string name = (std::filesystem::temp_directory_path() / "krosac-fuzz-XXXXXX").string();
    require(::mkdtemp(name.data()) != nullptr);
    path = name;
  }
  ~Folder() {
    std::error_code ignored;
    std::filesystem::remove_all(path, ignored);
  }
  std::filesystem::path path;
};

const std::filesystem::path& folder() {
  static const Folder folder;
  return folder.path;
}

}  // namespace

float Arguments::real() {
  static constexpr float kSpecial[] = {0.0f,
                                       -0.0f,
                                       1.0f,
                                       -1.0f,
                                       -12345.0f,
                                       1e-30f,
                                       1e30f,
                                       -1e30f,
                                       2147483648.0f,
                                       -2147483648.0f,
                                       16777216.0f,
                                       1e-6f,
                                       90.0f,
                                       -90.0f,
                                       360.0f,
                                       std::numeric_limits<float>::infinity(),
                                       -std::numeric_limits<float>::infinity(),
                                       std::numeric_limits<float>::quiet_NaN(),
                                       std::numeric_limits<float>::denorm_min(),
                                       std::numeric_limits<float>::max()};
  switch (ConsumeIntegralInRange(0, 3)) {
    case 0:
      return PickValueInArray(kSpecial);
    case 1:
      return std::bit_cast<float>(ConsumeIntegral<std::uint32_t>());
    case 2:
      return static_cast<float>(ConsumeIntegralInRange<std::int32_t>(-100, 1000));
    default:
      return static_cast<float>(ConsumeIntegral<std::int16_t>()) / 64.0f;
  }
}

std::int32_t Arguments::integer() {
  static constexpr std::int32_t kSpecial[] = {INT32_MIN, INT32_MIN + 1, -12345,   -1, 0,
                                              1,         INT32_MAX - 1, INT32_MAX};
  switch (ConsumeIntegralInRange(0, 2)) {
    case 0:
      return PickValueInArray(kSpecial);
    case 1:
      return ConsumeIntegral<std::int32_t>();
    default:
      return ConsumeIntegralInRange<std::int32_t>(-3, 40);
  }
}

std::vector<char> Arguments::bytes(std::size_t longest) {
  const std::string drawn = text(longest);
  return {drawn.begin(), drawn.end()};
}

krosac::Date Arguments::date() {
  return {ConsumeBool() ? static_cast<double>(real()) : ConsumeIntegral<std::int32_t>() * 0.25};
}

std::vector<float> Arguments::reals(std::size_t count) {
  std::vector<float> values(count);
  const auto period = ConsumeIntegralInRange<std::size_t>(1, 17);
  for (std::size_t i = 0; i < count; ++i) {
    values[i] = i < period && remaining_bytes() ? real() : i < period ? 0.0f : values[i - period];
  }
  return values;
}

krosac::Ref<krosac::SacObject> Arguments::seismogram() {
  auto s = krosac::make<krosac::SacObject>();
  require(s->initWithCapacity(ConsumeIntegralInRange<std::int32_t>(0, 300)) && true);
  s->setBeginTime(ConsumeBool() ? 0.0f : real());
  s->setDelta(ConsumeBool() ? 0.125f : real());
  s->fixEndTime();
  const auto values = reals(static_cast<std::size_t>(s->npts()));
  std::copy(values.begin(), values.end(), s->GetSacSeis());
  if (ConsumeBool()) {
    s->setEventLocationLat_Lon_Depth(real(), real(), real());
    s->setStationLocationLat_Lon_Elevation(real(), real(), real());
  }
  s->ComputeExtrema();
  return s;
}

std::string asFile(std::span<const std::uint8_t> bytes) {
  inputFile().write(bytes);
  return inputFile().path();
}

std::string folderOfLinks(const std::vector<std::string>& names) {
  for (const auto& name : names) {
    std::error_code exists;
    std::filesystem::create_symlink(inputFile().path(), folder() / name, exists);
  }
  return folder().string();
}

std::string scratchPath() {
  return (folder() / "scratch").string();
}

AllocationLimit::AllocationLimit(std::size_t bytes) {
  mostAllocated = bytes;
}

AllocationLimit::~AllocationLimit() {
  mostAllocated = 0;
}

void require(bool holds) {
  if (!holds) std::abort();
}

void touch(const void* bytes, std::size_t count) {
  unsigned char all = 0;
  const auto* at = static_cast<const unsigned char*>(bytes);
  for (std::size_t i = 0; i < count; ++i) all = static_cast<unsigned char>(all ^ at[i]);
  __asm__ volatile("" : : "r"(all));  // so that it counts as used
}

void touch(std::span<const float> values) {
  touch(values.data(), values.size_bytes());
}

}  // namespace fuzz

extern "C" __attribute__((visibility("default"))) const char* __asan_default_options() {
  return "allocator_may_return_null=1:handle_abort=1";
}

extern "C" __attribute__((visibility("default"))) int LLVMFuzzerInitialize(int*, char***) {
  __sanitizer_install_malloc_and_free_hooks(fuzz::checkAllocation, [](const volatile void*) {});
  krosac::setLogSink([](const std::string&) {});
  return 0;
}
