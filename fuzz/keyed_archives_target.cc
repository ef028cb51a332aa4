// Archives of every class that can be archived. The input lacks the checksum, which is put behind
// it, so that mutations reach what lies behind the check.
#include "Operations.h"
#include "krosac/catalog/kroHypocenter.h"
#include "krosac/catalog/kroSeismicOrigin.h"
#include "krosac/platform/Archive.h"

namespace {

using namespace fuzz;
using namespace krosac;

std::uint32_t checksum(std::span<const std::uint8_t> bytes) {
  std::uint32_t crc = ~0u;
  for (const std::uint8_t byte : bytes) {
    crc ^= byte;
    for (int bit = 0; bit < 8; ++bit) crc = crc >> 1 ^ (crc & 1 ? 0xEDB88320u : 0u);
  }
  return ~crc;
}

void use(SacObject& s) {
  readEverything(s);
  s.RemoveMean();
  s.Envelope();
  s.Decimate(2);
  s.shiftTimesBy(1.0f);
}
void use(SeisTimeObject& t) {
  t.DOYcString();
  t.addSeconds(1e6f);
  t.YMDcString();
  t.differenceInSecondsFrom(*t.copyWithZone());
}
void use(kroGeoLocation& location) {
  location.gcarcToLat_Lon(10.0f, 20.0f);
  location.updateLat_Lon_Depth(1.0f, 2.0f, 3.0f);
}
void use(kroSeismicStation& station) {
  station.description();
  station.setElevation(2.0f);
}
void use(kroSeismicPhase& phase) {
  phase.description();
}
void use(kroHypocenter& hypocenter) {
  hypocenter.description();
  hypocenter.stringWithAllPhases();
  hypocenter.compareOriginTimes(*hypocenter.copyWithZone());
  hypocenter.setFlinnEngdahlRegion();
  hypocenter.buildName();
  hypocenter.updateLat_Lon_Depth(1.0f, 2.0f, 3.0f);
}
void use(kroSeismicOrigin& origin) {
  origin.setEpochtime(origin.epochtime() + 1.0);
}

template <typename T>
void decode(KeyedUnarchiver& unarchiver) {
  const Ref<T> object = unarchiver.decodeRoot<T>();
  if (!object) return;
  requireStableArchive(*object);
  use(*object);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  std::vector<std::uint8_t> bytes(data, data + size);
  const std::uint32_t sum = checksum(bytes);
  for (int i = 0; i < 4; ++i) bytes.push_back(static_cast<std::uint8_t>(sum >> 8 * i));
  const auto archive = ByteBuffer::copyOf(bytes.data(), bytes.size());
  // An entry of a list takes one byte in the archive and a text of 32 in memory, in an array that
  // doubles.
  AllocationLimit limit(64 * size + 4096);
  KeyedUnarchiver unarchiver(*archive);
  decode<SacObject>(unarchiver);
  decode<SeisTimeObject>(unarchiver);
  decode<kroGeoLocation>(unarchiver);
  decode<kroSeismicStation>(unarchiver);
  decode<kroSeismicPhase>(unarchiver);
  decode<kroHypocenter>(unarchiver);
  decode<kroSeismicOrigin>(unarchiver);
  return 0;
}
