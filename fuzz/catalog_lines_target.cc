// Lines of catalogues and station lists. The first character of a line chooses its parser.
#include "Harness.h"

using namespace fuzz;

void runInput(std::string_view input) {
  AllocationLimit limit(1024 * input.size() + 65536);
  // One record parses all lines, so that each meets the state after the previous ones.
  const auto hypocenter = make<kroHypocenter>();
  const auto station = make<kroSeismicStation>();
  hypocenter->init();
  station->init();
  auto phase = make<kroSeismicPhase>();
  const auto startPhase = [&] {
    phase = make<kroSeismicPhase>();
    phase->init();
    phase->setDateYr_Month_Date(hypocenter->yr(), hypocenter->month(), hypocenter->date());
    phase->setEpochOriginTime(hypocenter->epochOTime());
    phase->setStation(station);
  };
  startPhase();
  for (std::size_t at = 0; at < input.size();) {
    const char kind = input[at];
    const std::size_t end = std::min(input.find('\n', at), input.size());
    // A copy of exactly this length, so that an access beyond the line is found.
    const std::vector<char> copy(input.begin() + std::min(at + 1, end), input.begin() + end);
    const std::string_view line(copy.data(), copy.size());
    if (kind == 'H') hypocenter->parseEDRHypocenter(line);
    if (kind == 'E') hypocenter->parseEDRErrMagInfo(line);
    if (kind == 'P') phase->parseEDRPrimaryPhase(line);
    if (kind == 'S') phase->parseEDRSecondaryArrivalRecord(line);
    if (kind == 'M') phase->parseEDRSurfaceWaveRecord(line);
    if (kind == 'C') phase->parsePhaseCode(line);
    if (kind == 'T') station->parseUSGSStationInfo(line);
    if (std::string_view("HEPSMCT").find(kind) == std::string_view::npos) startPhase();
    if (kind == 'P' || kind == 'S' || kind == 'M') hypocenter->addPhase(phase);
    at = end + 1;
  }
  hypocenter->description();
  hypocenter->stringWithAllPhases();
  hypocenter->buildName();
  hypocenter->compare_mb(*hypocenter);
  hypocenter->compareOriginTimes(*hypocenter);
  hypocenter->updateLat_Lon_Depth(1.0f, 1.0f, 1.0f);
  station->description();
  requireStableArchive(*station);
  requireStableArchive(*hypocenter);
}
