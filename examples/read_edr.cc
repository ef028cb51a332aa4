// Reads Earthquake Data Reports and prints their events: read_edr [FILE...]
//
// The first two characters of a line are its kind: "HY" a hypocentre, which begins an event, "E "
// its errors and magnitudes, "P " a primary phase, "S " secondary arrivals and "M " a surface-wave
// amplitude at the station of the preceding primary phase. Other lines are skipped and counted. The
// events are printed in order of time, then listed by depth and by magnitude. Without a file a made
// report is read.
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <fstream>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include "MadeData.h"
#include "krosac/krosac.h"

namespace {

using krosac::kroHypocenter;
using krosac::kroSeismicPhase;
using krosac::Ref;

constexpr std::size_t kFirstGroup = 7, kGroupWidth = 17;  // of secondary arrivals

struct Report {
  std::vector<Ref<kroHypocenter>> events;
  std::map<std::string, Ref<krosac::kroSeismicStation>> stations;  // shared by phases
  Ref<kroSeismicPhase> primary;
  std::map<std::string, int> skipped;

  // Adds a phase to the last event, at the station of the primary phase.
  kroSeismicPhase& addPhase() {
    auto phase = krosac::make<kroSeismicPhase>();
    phase->init();
    const auto& event = events.back();
    phase->setDateYr_Month_Date(event->yr(), event->month(), event->date());
    phase->setEpochOriginTime(event->epochOTime());
    event->addPhase(phase);
    if (!primary) primary = phase;
    phase->setStationCode(primary->stationCode());
    phase->setStation(primary->station());
    phase->setGcarc(primary->gcarc());
    phase->setAzimuth(primary->azimuth());
    return *phase;
  }

  void read(std::istream& lines) {
    for (std::string line; std::getline(lines, line);) {
      if (line.ends_with('\r')) line.pop_back();
      const std::string kind = std::string(line).append(2, ' ').substr(0, 2);
      if (kind == "HY") {
        events.push_back(krosac::make<kroHypocenter>());
        events.back()->init();
        events.back()->parseEDRHypocenter(line);
        primary = nullptr;
      } else if (kind == "E " && !events.empty()) {
        events.back()->parseEDRErrMagInfo(line);
      } else if (kind == "P " && !events.empty()) {
        primary = nullptr;
        addPhase().parseEDRPrimaryPhase(line);
        auto& station = stations[primary->stationCode().value_or("")];
        if (!station) station = krosac::make<krosac::kroSeismicStation>();
        station->setStationCode(primary->stationCode());
        primary->setStation(station);
      } else if (kind == "S " && primary) {
        for (std::size_t at = kFirstGroup; at < line.size(); at += kGroupWidth + 1) {
          const std::string group = line.substr(at, kGroupWidth);
          if (group.find_first_not_of(' ') == group.npos) continue;
          addPhase().parseEDRSecondaryArrivalRecord(group);
        }
      } else if (kind == "M " && primary) {
        auto& surfaceWave = addPhase();
        surfaceWave.parseEDRSurfaceWaveRecord(line);
        surfaceWave.setPhaseName("R1");
      } else if (!line.empty()) {
        ++skipped[kind];
      }
    }
  }
};

void printBy(const char* what, std::vector<Ref<kroHypocenter>> events,
             float (kroHypocenter::*value)() const) {
  std::ranges::stable_sort(events, {}, [value](const auto& event) {
    const float number = (*event.*value)();
    return std::isnan(number) ? INFINITY : number;  // NaN has no order
  });
  std::printf("By %s:\n", what);
  for (const auto& event : events)
    std::printf("%s %6.1f\n", event->name()->c_str(), static_cast<double>((*event.*value)()));
}

}  // namespace

int main(int argc, char** argv) {
  krosac::setLogSink([](const std::string&) {});  // hides the agencies of contributed hypocentres
  Report report;
  std::istringstream sample(made::kReport);
  if (argc == 1) report.read(sample);
  int failures = 0;
  for (int i = 1; i < argc; ++i) {
    std::ifstream file(argv[i], std::ios::binary);
    report.read(file);
    if (!file.eof()) failures += std::fprintf(stderr, "%s: cannot be read\n", argv[i]) > 0;
  }
  std::ranges::stable_sort(
      report.events, [](const auto& a, const auto& b) { return a->compareOriginTimes(*b) < 0; });
  for (const auto& event : report.events)
    std::printf("%s, %zu phases\n%s\n", event->name()->c_str(), event->phases().size(),
                event->description().c_str());
  printBy("depth, km", report.events, &kroHypocenter::depth);
  printBy("mb", report.events, &kroHypocenter::mb);
  for (const auto& [kind, count] : report.skipped)
    std::printf("Skipped lines of the kind \"%s\": %d\n", kind.c_str(), count);
  return failures ? 1 : 0;
}
