// SAC images through every loader of a seismogram and through the plain readers. The last bytes of
// the input choose what is done with what was loaded.
#include "Operations.h"
#include "krosac/sacio/ByteOrder.h"
#include "krosac/sacio/SacFile.h"

namespace {

using namespace fuzz;
using krosac::ByteBuffer;
using krosac::make;
using krosac::SacObject;

void readPlainly(const std::string& path, std::int32_t max) {
  krosac::SacHeader header;
  std::int32_t status = 0, n = 0;
  float b = 0.0f, delta = 0.0f;
  std::vector<float> first(static_cast<std::size_t>(std::max(max, 0))), second(first);
  krosac::IsSacFile(path.c_str());
  krosac::ReadSACHeader(path.c_str(), &header, &status);
  krosac::ReadSACfile(path.c_str(), first.data(), &header, max, &status);
  require(status != 0 || (header.NPTS >= 1 && header.NPTS <= max));
  krosac::ReadSAC1(path.c_str(), first.data(), &n, &delta, &b, max, &status);
  krosac::ReadSAC2(path.c_str(), &n, second.data(), first.data(), max, &status);
}

// Whatever swaps says so, and twice swapped is as before.
void swapBytes(std::span<const std::uint8_t> image) {
  const auto swapped = ByteBuffer::copyOf(image.data(), image.size());
  if (krosac::swapSACBytes(*swapped) == 1) {
    require(krosac::reverseSACBytes(*swapped) == 1 &&
            std::equal(image.begin(), image.end(), swapped->bytes()));
  }
  krosac::reverseSACBytes(*swapped);
}

void use(SacObject& s, Arguments& arguments) {
  readEverything(s);
  const auto other = s.copyWithZone();
  require(other && true);
  for (int i = arguments.ConsumeIntegralInRange(0, 3); i > 0; --i)
    applyOperation(s, *other, arguments);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  constexpr std::size_t kArguments = 16;
  const std::size_t tail = std::min(size, kArguments);
  const std::span image(data, size - tail);
  Arguments arguments(data + image.size(), tail);
  const std::string path = asFile(image);

  // What a loader allocates is the image, a few texts and the objects themselves.
  AllocationLimit loading(size + 4096);
  readPlainly(path, arguments.ConsumeIntegralInRange<std::int32_t>(-1, 1000));
  swapBytes(image);
  auto loaded = make<SacObject>(), replaced = make<SacObject>(), viewed = make<SacObject>();
  require(replaced->initWithCapacity(arguments.ConsumeIntegralInRange<std::int32_t>(0, 200)) &&
          true);
  const bool isLoaded = loaded->initWithPath(path);
  const bool isReplaced = replaced->replaceSacObjectDataWithPath(path);
  const bool isViewed =
      viewed->initWithNSData_withPath(ByteBuffer::copyOf(image.data(), image.size()), path);
  {
    const krosac::AutoreleasePool pool;
    auto* capital = krosac::alloc<SacObject>();
    if (!capital->InitWithPath(path)) capital->release();
    krosac::alloc<SacObject>()->InitWithNSData_withPath(
        ByteBuffer::copyOf(image.data(), image.size()), path);
    if (isLoaded) krosac::alloc<SacObject>()->InitWithSeisObject(*loaded);
  }
  // Operations ask for the memory that their arguments ask for, so only loading is limited.
  AllocationLimit operating(std::size_t{1} << 28);
  if (isLoaded) use(*loaded, arguments);
  if (isReplaced) use(*replaced, arguments);
  if (isViewed) use(*viewed, arguments);
  return 0;
}
