#include "Harness.h"

#include <sanitizer/allocator_interface.h>
#include <sys/mman.h>
#include <unistd.h>

#include <atomic>
#include <bit>
#include <cfloat>
#include <cmath>
#include <cstdlib>
#include <filesystem>

namespace fuzz {
namespace {

std::atomic<std::size_t> mostAllocated{0};  // 0 for no limit

void checkAllocation(const volatile void*, std::size_t size) {
  if (mostAllocated && size > mostAllocated) {
    mostAllocated = 0;  // the report itself allocates
    std::abort();
  }
}

// A file in memory. Opening its path reads it from the start.
const int inputFile = ::memfd_create("input", MFD_CLOEXEC);
const std::string inputPath = "/proc/self/fd/" + std::to_string(inputFile);

// A folder that is removed when the process ends.
struct Folder {
  Folder() { require(::mkdtemp(path.data()) != nullptr); }
  ~Folder() {
    std::error_code ignored;
    std::filesystem::remove_all(path, ignored);
  }
  std::string path = std::filesystem::temp_directory_path() / "krosac-fuzz-XXXXXX";
} const folder;

}  // namespace

float Arguments::real() {
  static constexpr float kSpecial[] = {
      0.0f,   -0.0f,         1.0f,           -1.0f,       -12345.0f,    1e-30f, 1e30f,
      -1e30f, 2147483648.0f, -2147483648.0f, 16777216.0f, 1e-6f,        90.0f,  -90.0f,
      360.0f, INFINITY,      -INFINITY,      NAN,         FLT_TRUE_MIN, FLT_MAX};
  const std::size_t kind = index(4);
  if (kind == 0) return PickValueInArray(kSpecial);
  if (kind == 1) return std::bit_cast<float>(ConsumeIntegral<std::uint32_t>());
  if (kind == 2) return static_cast<float>(ConsumeIntegralInRange(-100, 1000));
  return static_cast<float>(ConsumeIntegral<std::int16_t>()) / 64.0f;
}

std::int32_t Arguments::integer() {
  static constexpr std::int32_t kSpecial[] = {INT32_MIN, INT32_MIN + 1, -12345,   -1, 0,
                                              1,         INT32_MAX - 1, INT32_MAX};
  const std::size_t kind = index(3);
  if (kind == 0) return PickValueInArray(kSpecial);
  return kind == 1 ? ConsumeIntegral<std::int32_t>() : ConsumeIntegralInRange(-3, 40);
}

std::string Arguments::text(std::size_t longest) {
  if (!words.empty() && ConsumeBool()) return words[index(words.size())];
  return ConsumeRandomLengthString(longest);
}

Date Arguments::date() {
  return {ConsumeBool() ? static_cast<double>(real()) : ConsumeIntegral<std::int32_t>() * 0.25};
}

Ref<SeisTimeObject> Arguments::time() {
  auto time = make<SeisTimeObject>();
  std::int32_t fields[] = {3000, 12, 31, 23, 59, 59};
  const bool plain = ConsumeBool();
  for (std::int32_t& field : fields) field = plain ? ConsumeIntegralInRange(1, field) : integer();
  const auto [year, month, date, hour, minute, second] = fields;
  time->initWithValues_month_date_hour_minute_second_millisecond(year, month, date, hour, minute,
                                                                 second, real());
  return time;
}

std::vector<float> Arguments::reals(std::size_t count) {
  std::vector<float> values(count);
  const auto period = ConsumeIntegralInRange<std::size_t>(1, 17);
  for (std::size_t i = 0; i < count; ++i) {
    values[i] = i >= period ? values[i - period] : remaining_bytes() ? real() : 0.0f;
  }
  return values;
}

Ref<ByteBuffer> Arguments::realBytes(std::size_t most) {
  const auto values = reals(index(most));
  return ByteBuffer::copyOf(values.data(), values.size() * sizeof(float));
}

Ref<SacObject> Arguments::newSeismogram() {
  auto s = make<SacObject>();
  require(s->initWithCapacity(ConsumeIntegralInRange<std::int32_t>(0, 300)) && true);
  s->setBeginTime(ConsumeBool() ? 0.0f : real());
  s->setDelta(ConsumeBool() ? 0.125f : real());
  s->fixEndTime();
  std::ranges::copy(reals(static_cast<std::size_t>(s->npts())), s->GetSacSeis());
  if (ConsumeBool()) {
    s->setEventLocationLat_Lon_Depth(real(), real(), real());
    s->setStationLocationLat_Lon_Elevation(real(), real(), real());
  }
  s->ComputeExtrema();
  return s;
}

std::vector<Ref<SacObject>> Arguments::group() {
  std::vector<Ref<SacObject>> list(seismograms.begin(), seismograms.end());
  for (int more = ConsumeIntegralInRange(0, 4); more > 0; --more) {
    list.push_back(ConsumeBool() ? seismogram().copyWithZone() : newSeismogram());
    if (ConsumeBool() && list.back()) list.back()->setBeginTime(real());
    if (ConsumeBool() && list.back()) list.back()->setMySeisReferenceTime(time());
  }
  if (ConsumeBool()) list.insert(list.begin() + 1, nullptr);
  return list;
}

std::string asFile(std::string_view bytes) {
  require(::ftruncate(inputFile, 0) == 0 &&
          ::pwrite(inputFile, bytes.data(), bytes.size(), 0) == std::ssize(bytes));
  return inputPath;
}

std::string folderOfLinks(const std::vector<std::string>& names) {
  for (const auto& name : names) {
    std::error_code exists;
    std::filesystem::create_symlink(inputPath, folder.path + "/" + name, exists);
  }
  return folder.path;
}

std::string scratchPath() {
  return folder.path + "/scratch";
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

void touch(std::string_view bytes) {
  char all = 0;
  for (const char byte : bytes) all = static_cast<char>(all ^ byte);
  __asm__ volatile("" : : "r"(all));  // so that it counts as used
}

std::string_view bytesIn(const Ref<ByteBuffer>& buffer) {
  if (!buffer) return {};
  return {reinterpret_cast<const char*>(buffer->bytes()), buffer->length()};
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

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  runInput({reinterpret_cast<const char*>(data), size});
  return 0;
}
