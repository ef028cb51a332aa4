#include <new>

#include "krosac/catalog/internal/FixedColumns.h"
#include "krosac/catalog/kroHypocenter.h"
#include "krosac/platform/internal/Reason.h"
#include "krosac/platform/internal/Text.h"

namespace krosac {
namespace {

constexpr const char* kPhaseColumns = "Station PhaseCode EpochTime Gcarc Azimuth Residual mb\n";

std::string rayleighLine(const kroSeismicPhase& phase) {
  return formatText("%5s %4s %6.2f %7.1f %5.1f %10.1f %c %4.1f\n", printable(phase.stationCode()),
                    printable(phase.phaseName()), double{phase.gcarc()}, double{phase.azimuth()},
                    double{phase.Ms_Period()}, double{phase.Ms_Amplitude()},
                    printableFlag(phase.Ms_Component()), double{phase.Ms_Estimate()});
}

std::string hypoStats(const kroHypocenter& h) {
  const std::string date = h.oDate() ? h.oDate()->description() : "(null)";
  if (date.empty()) throw std::bad_alloc();
  return "Hypocenter Summary:\n\n" +
         formatText("Origin Time:\n %s (%lf)\n\n", date.c_str(), h.epochOTime()) +
         formatText("Location:\n Latitude: %8.3fN / Longitude: %8.3fE / Depth %5.1f km\n",
                    double{h.lat()}, double{h.lon()}, double{h.depth()}) +
         formatText("  LatUnc: %7.3f km /  LonUnc: %8.3f km / DepthUnc:%5.1f km\n",
                    double{h.latErr()}, double{h.lonErr()}, double{h.depthErr()}) +
         formatText(" %s\n\n", printable(h.myFERegionString())) +
         formatText("Magnitude (nObs):\n mb: %3.1f (%03d)\n Ms: %3.1f (%03d)\n\n", double{h.mb()},
                    h.nmb(), double{h.Ms()}, h.nMs());
}

std::string allPhases(const kroHypocenter& h) {
  if (h.phases().empty()) return "";
  std::string text = std::string("All Phases:\n") + kPhaseColumns;
  for (const auto& phase : h.phases()) text += lineOf(*phase);
  return text;
}

std::string primaryPhases(const kroHypocenter& h) {
  if (h.phases().empty()) return "";
  std::string text = std::string("Primary Phases:\n") + kPhaseColumns;
  for (const auto& phase : h.phases()) {
    if (phase->isFirstArrival()) text += lineOf(*phase);
  }
  return text;
}

std::string rayleighMeasurements(const kroHypocenter& h) {
  if (h.phases().empty()) return "";
  std::string lines;
  for (const auto& phase : h.phases()) {
    if (phase->phaseName() == "R1") lines += rayleighLine(*phase);
  }
  // A record without phases returns an empty text instead; this is intended.
  if (lines.empty()) return "No Rayleigh Observations";
  return "Rayleigh Measurements:\nStation PhaseCode Gcarc Azimuth Period(s) Amplitude(microns) "
         "Component Ms\n" +
         lines;
}

std::string wholeDescription(const kroHypocenter& h) {
  return hypoStats(h) + "\n" + primaryPhases(h) + "\n" + rayleighMeasurements(h);
}

// Returns make(record); an empty text, with a reason, without memory.
std::string textOf(const kroHypocenter& record, std::string (*make)(const kroHypocenter&)) try {
  clearReason();
  return make(record);
} catch (const std::bad_alloc&) {
  setMemoryReason();
  return {};
}

}  // namespace

std::string kroHypocenter::description() const {
  return textOf(*this, wholeDescription);
}

std::string kroHypocenter::stringWithHypoStats() const {
  return textOf(*this, hypoStats);
}

std::string kroHypocenter::stringWithAllPhases() const {
  return textOf(*this, allPhases);
}

std::string kroHypocenter::stringWithPrimaryPhases() const {
  return textOf(*this, primaryPhases);
}

std::string kroHypocenter::stringWithRayleighMeasurements() const {
  return textOf(*this, rayleighMeasurements);
}

}  // namespace krosac
