// Archives of every class that can be archived, and some operations on the decoded objects. The
// target appends the checksum to the input, so that mutations pass the check.
#include "Harness.h"

#include "krosac/platform/internal/Crc32.h"

namespace {

using namespace fuzz;
using S = SacObject;
using Time = SeisTimeObject;
using Location = kroGeoLocation;
using Station = kroSeismicStation;
using Hypocenter = kroHypocenter;

template <typename T>
void decode(KeyedUnarchiver& unarchiver, Arguments& a,
            std::initializer_list<Operation<T>> operations) {
  const Ref<T> object = unarchiver.decodeRoot<T>();
  if (!object) return;
  requireStableArchive(*object);
  for (const auto operate : operations) operate(*object, a);
}

}  // namespace

void runInput(std::string_view input) {
  const std::uint32_t crc = crc32(input);
  std::string bytes(input);
  bytes.push_back('\x1a');
  for (int shift = 24; shift >= 0; shift -= 8) bytes.push_back(static_cast<char>(crc >> shift));
  const auto archive = ByteBuffer::copyOf(bytes.data(), bytes.size());
  Arguments a(input);
  // An entry of a list takes one byte in the archive and a text of 32 in memory, in an array that
  // doubles.
  AllocationLimit limit(64 * input.size() + 4096);
  KeyedUnarchiver unarchiver(*archive);
  decode<S>(unarchiver, a,
            {[](S& s, Arguments&) { readEverything(s); }, call<&S::RemoveMean>, call<&S::Envelope>,
             [](S& s, Arguments&) { s.Decimate(2); }, call<&S::shiftTimesBy>});
  decode<Time>(unarchiver, a,
               {call<&Time::DOYcString>, call<&Time::addSeconds>, call<&Time::YMDcString>,
                [](Time& t, Arguments&) { t.differenceInSecondsFrom(*t.copyWithZone()); }});
  decode<Location>(unarchiver, a,
                   {call<&Location::gcarcToLat_Lon>, call<&Location::updateLat_Lon_Depth>});
  decode<Station>(unarchiver, a, {call<&Station::description>, call<&Station::setElevation>});
  decode<kroSeismicPhase>(unarchiver, a, {call<&kroSeismicPhase::description>});
  decode<Hypocenter>(unarchiver, a,
                     {call<&Hypocenter::description>, call<&Hypocenter::stringWithAllPhases>,
                      [](Hypocenter& h, Arguments&) { h.compareOriginTimes(*h.copyWithZone()); },
                      call<&Hypocenter::setFlinnEngdahlRegion>, call<&Hypocenter::buildName>,
                      call<&Hypocenter::updateLat_Lon_Depth>});
  decode<kroSeismicOrigin>(unarchiver, a, {call<&kroSeismicOrigin::setEpochtime>});
}
