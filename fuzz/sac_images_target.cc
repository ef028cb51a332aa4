// SAC images through every loader of a seismogram and through the plain readers. The last bytes of
// the input choose the operations on the loaded seismogram.
#include "Harness.h"

using namespace fuzz;

void runInput(std::string_view input) {
  const std::size_t imageSize = input.size() - std::min<std::size_t>(input.size(), 16);
  const std::string_view image = input.substr(0, imageSize);
  Arguments a(input.substr(imageSize));
  const std::string path = asFile(image);
  const auto copy = [&] { return ByteBuffer::copyOf(image.data(), image.size()); };
  // A loader allocates the image, a few texts and the objects themselves.
  AllocationLimit loading(input.size() + 4096);

  const std::int32_t max = a.ConsumeIntegralInRange(-1, 1000);
  SacHeader header;
  std::int32_t status = 0, n = 0;
  float b = 0.0f, delta = 0.0f;
  std::vector<float> first(static_cast<std::size_t>(std::max(max, 0))), second(first);
  IsSacFile(path.c_str());
  ReadSACHeader(path.c_str(), &header, &status);
  ReadSACfile(path.c_str(), first.data(), &header, max, &status);
  require(status != 0 || (header.NPTS >= 1 && header.NPTS <= max));
  ReadSAC1(path.c_str(), first.data(), &n, &delta, &b, max, &status);
  ReadSAC2(path.c_str(), &n, second.data(), first.data(), max, &status);

  // Every swap is reported, and two swaps restore the image.
  const auto swapped = copy();
  if (swapSACBytes(*swapped) == 1)
    require(reverseSACBytes(*swapped) == 1 && std::ranges::equal(image, bytesIn(swapped)));
  reverseSACBytes(*swapped);

  auto loaded = make<SacObject>(), replaced = make<SacObject>(), viewed = make<SacObject>();
  require(replaced->initWithCapacity(a.ConsumeIntegralInRange(0, 200)) && true);
  const std::pair<SacObject&, bool> outcomes[] = {
      {*loaded, loaded->initWithPath(path)},
      {*replaced, replaced->replaceSacObjectDataWithPath(path)},
      {*viewed, viewed->initWithNSData_withPath(copy(), path)}};
  {
    const AutoreleasePool pool;
    auto* capital = alloc<SacObject>();
    if (!capital->InitWithPath(path)) capital->release();
    alloc<SacObject>()->InitWithNSData_withPath(copy(), path);
    if (outcomes[0].second) alloc<SacObject>()->InitWithSeisObject(*loaded);
  }
  // Only loading is limited, since the arguments of operations determine their memory.
  AllocationLimit operating(std::size_t{1} << 28);
  for (const auto& [s, isLoaded] : outcomes) {
    if (!isLoaded) continue;
    readEverything(s);
    const auto other = s.copyWithZone();
    require(other && true);
    applySome(a.ConsumeIntegralInRange(0, 3), s, *other, a);
  }
}
