// Lines of catalogues and station lists. The first character of a line chooses its parser.
#include <memory>
#include <string_view>

#include "Harness.h"
#include "krosac/catalog/kroHypocenter.h"
#include "krosac/catalog/kroSeismicOrigin.h"

namespace {

using namespace fuzz;
using namespace krosac;

// A record whose lines come one after the other, so that each meets what the former ones left.
struct Records {
  Records() {
    for (Object* object : std::initializer_list<Object*>{hypocenter.get(), station.get()})
      object->init();
    startPhase();
  }

  void startPhase() {
    phase = make<kroSeismicPhase>();
    phase->init();
    phase->setDateYr_Month_Date(hypocenter->yr(), hypocenter->month(), hypocenter->date());
    phase->setEpochOriginTime(hypocenter->epochOTime());
    phase->setStation(station);
  }

  void parse(char kind, std::string_view line) {
    switch (kind) {
      case 'H':
        hypocenter->parseEDRHypocenter(line);
        break;
      case 'E':
        hypocenter->parseEDRErrMagInfo(line);
        break;
      case 'P':
        phase->parseEDRPrimaryPhase(line);
        hypocenter->addPhase(phase);
        break;
      case 'S':
        phase->parseEDRSecondaryArrivalRecord(line);
        hypocenter->addPhase(phase);
        break;
      case 'M':
        phase->parseEDRSurfaceWaveRecord(line);
        hypocenter->addPhase(phase);
        break;
      case 'C':
        phase->parsePhaseCode(line);
        break;
      case 'T':
        station->parseUSGSStationInfo(line);
        break;
      default:
        startPhase();
    }
  }

  Ref<kroHypocenter> hypocenter = make<kroHypocenter>();
  Ref<kroSeismicStation> station = make<kroSeismicStation>();
  Ref<kroSeismicPhase> phase;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  AllocationLimit limit(1024 * size + 65536);
  Records records;
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  for (std::size_t at = 0; at < size;) {
    const std::size_t end = std::min(text.find('\n', at), size);
    // A copy of its own length, so that a step beyond the line is seen.
    const std::vector<char> line(text.begin() + std::min(at + 1, end), text.begin() + end);
    records.parse(text[at], {line.data(), line.size()});
    at = end + 1;
  }
  auto& hypocenter = *records.hypocenter;
  hypocenter.description();
  hypocenter.stringWithAllPhases();
  hypocenter.buildName();
  hypocenter.compare_mb(hypocenter);
  hypocenter.compareOriginTimes(hypocenter);
  hypocenter.updateLat_Lon_Depth(1.0f, 1.0f, 1.0f);
  records.station->description();
  requireStableArchive(*records.station);
  requireStableArchive(hypocenter);
  return 0;
}
