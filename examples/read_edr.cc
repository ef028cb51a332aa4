// Reads Earthquake Data Reports and prints what they hold: read_edr [FILE...]
//
// The first two characters of a line are its kind: "HY" a hypocentre, with which an event begins,
// "E " its errors and magnitudes, "P " a primary phase, "S " secondary arrivals and "M " a
// surface-wave amplitude at the station of the primary phase before them. Other kinds are counted
// and skipped. The events are printed in the order of time, then listed by depth and by magnitude.
// Without a file a made report is read.
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <fstream>
#include <istream>
#include <map>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "krosac/catalog/kroHypocenter.h"
#include "krosac/platform/Log.h"

namespace {

using krosac::kroHypocenter;
using krosac::kroSeismicPhase;
using krosac::kroSeismicStation;
using krosac::Ref;

// The groups of a line of secondary arrivals, counted from its first character: the first one
// begins in column 8, and a blank stands between two.
constexpr std::size_t kFirstGroup = 7;
constexpr std::size_t kGroupWidth = 17;
constexpr std::size_t kGroupStride = 18;

constexpr const char* kMadeReport =
    R"(HY20031231 235950.0  38.297N 142.373E  29.0  1.1 58 228
E  0.12   3.10   4.20   2.5 5.8  41 5.6 12
P MAJO iPc     000041.20  -0.4    3.62 242.1 0.8   41.5 5.9
S      iS      000120.50 Lg      000144.00
P TLY  eP      000541.80   0.3   29.84 301.5 1.1   63.0 5.7
M      Z 20.0    3.4                             MSZ 5.6
HY20040102 041503.75&17.520S  69.800W 110.0G 0.9 23 118LIM
E  0.31   6.00   7.70   5.1 4.9  17
P LPAZ iPnd    041537.10   1.2*   2.17  68.0
C Felt along the coast.
HY20040101 100000.00  0.500N  25.300W  10.0  0.7 12 406
E                           5.1  9
)";

class Report {
 public:
  void read(std::istream& lines) {
    for (std::string line; std::getline(lines, line);) {
      if (line.ends_with('\r')) line.pop_back();
      if (!line.empty()) take(line);
    }
  }

  const std::vector<Ref<kroHypocenter>>& events() const { return events_; }

  void printSkipped() const {
    for (const auto& [kind, lines] : unknownKinds_)
      std::printf("Skipped lines of the unknown kind \"%s\": %d\n", kind.c_str(), lines);
    if (strayLines_ > 0)
      std::printf("Skipped lines before the hypocentre or phase that they belong to: %d\n",
                  strayLines_);
  }

 private:
  void take(const std::string& line) {
    std::string kind = line.substr(0, 2);
    kind.resize(2, ' ');
    if (kind == "HY") {
      beginEvent(line);
    } else if (kind == "E ") {
      setErrorsAndMagnitudes(line);
    } else if (kind == "P ") {
      addPrimaryPhase(line);
    } else if (kind == "S ") {
      addSecondaryArrivals(line);
    } else if (kind == "M ") {
      addSurfaceWave(line);
    } else {
      ++unknownKinds_[kind];
    }
  }

  void countStray() { ++strayLines_; }

  void beginEvent(const std::string& line) {
    event_ = krosac::make<kroHypocenter>();
    event_->init();
    event_->parseEDRHypocenter(line);
    events_.push_back(event_);
    primary_ = nullptr;
  }

  void setErrorsAndMagnitudes(const std::string& line) {
    if (!event_) return countStray();
    event_->parseEDRErrMagInfo(line);
  }

  // The parsers take the date and the origin time from the event.
  Ref<kroSeismicPhase> newPhase() const {
    auto phase = krosac::make<kroSeismicPhase>();
    phase->init();
    phase->setDateYr_Month_Date(event_->yr(), event_->month(), event_->date());
    phase->setEpochOriginTime(event_->epochOTime());
    return phase;
  }

  void addPrimaryPhase(const std::string& line) {
    if (!event_) return countStray();
    primary_ = newPhase();
    primary_->parseEDRPrimaryPhase(line);
    primary_->setStation(stationWithCode(primary_->stationCode().value_or("")));
    event_->addPhase(primary_);
  }

  void addSecondaryArrivals(std::string_view line) {
    if (!primary_) return countStray();
    for (std::size_t at = kFirstGroup; at < line.size(); at += kGroupStride) {
      const std::string_view group = line.substr(at, kGroupWidth);
      if (group.find_first_not_of(' ') == group.npos) continue;
      auto phase = newPhase();
      phase->parseEDRSecondaryArrivalRecord(group);
      addAtStationOfPrimary(phase);
    }
  }

  void addSurfaceWave(const std::string& line) {
    if (!primary_) return countStray();
    auto phase = newPhase();
    phase->parseEDRSurfaceWaveRecord(line);
    phase->setPhaseName("R1");
    addAtStationOfPrimary(phase);
  }

  void addAtStationOfPrimary(const Ref<kroSeismicPhase>& phase) {
    phase->setStationCode(primary_->stationCode());
    phase->setStation(primary_->station());
    phase->setGcarc(primary_->gcarc());
    phase->setAzimuth(primary_->azimuth());
    event_->addPhase(phase);
  }

  // One object a station, which its phases share.
  Ref<kroSeismicStation> stationWithCode(const std::string& code) {
    auto& station = stations_[code];
    if (!station) {
      station = krosac::make<kroSeismicStation>();
      station->init();
      station->setStationCode(code);
    }
    return station;
  }

  std::vector<Ref<kroHypocenter>> events_;
  std::map<std::string, Ref<kroSeismicStation>> stations_;
  Ref<kroHypocenter> event_;
  Ref<kroSeismicPhase> primary_;
  std::map<std::string, int> unknownKinds_;
  int strayLines_ = 0;
};

// In the order of a comparison, those whose value is a NaN last: it equals everything, which no
// sort can order.
std::vector<Ref<kroHypocenter>> sorted(std::vector<Ref<kroHypocenter>> events,
                                       int (kroHypocenter::*compare)(const kroHypocenter&) const,
                                       float (kroHypocenter::*value)() const) {
  const auto numbers =
      std::stable_partition(events.begin(), events.end(),
                            [value](const auto& event) { return !std::isnan((*event.*value)()); });
  std::stable_sort(events.begin(), numbers,
                   [compare](const auto& a, const auto& b) { return (*a.*compare)(*b) < 0; });
  return events;
}

void print(const Report& report) {
  auto events = report.events();
  std::stable_sort(events.begin(), events.end(),
                   [](const auto& a, const auto& b) { return a->compareOriginTimes(*b) < 0; });
  for (const auto& event : events) {
    std::printf("%s, %zu phases\n%s\n", event->name()->c_str(), event->phases().size(),
                event->description().c_str());
  }
  std::printf("By depth:\n");
  for (const auto& event : sorted(events, &kroHypocenter::compareDepths, &kroHypocenter::depth))
    std::printf("%s %6.1f km\n", event->name()->c_str(), static_cast<double>(event->depth()));
  std::printf("By magnitude:\n");
  for (const auto& event : sorted(events, &kroHypocenter::compare_mb, &kroHypocenter::mb))
    std::printf("%s mb %3.1f\n", event->name()->c_str(), static_cast<double>(event->mb()));
  report.printSkipped();
}

}  // namespace

int main(int argc, char** argv) {
  krosac::setLogSink([](const std::string&) {});  // the agencies of contributed hypocentres
  Report report;
  int failures = 0;
  for (int i = 1; i < argc; ++i) {
    std::ifstream file(argv[i], std::ios::binary);
    report.read(file);
    if (!file.eof()) {
      std::fprintf(stderr, "%s: cannot be read\n", argv[i]);
      ++failures;
    }
  }
  if (argc == 1) {
    std::istringstream made(kMadeReport);
    report.read(made);
  }
  print(report);
  return failures ? 1 : 0;
}
