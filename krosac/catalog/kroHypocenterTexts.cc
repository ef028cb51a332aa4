#include "krosac/catalog/internal/FixedColumns.h"
#include "krosac/catalog/kroHypocenter.h"
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

}  // namespace

std::string kroHypocenter::description() const {
  return stringWithHypoStats() + "\n" + stringWithPrimaryPhases() + "\n" +
         stringWithRayleighMeasurements();
}

std::string kroHypocenter::stringWithHypoStats() const {
  const std::string date = oDate_ ? oDate_->description() : "(null)";
  return "Hypocenter Summary:\n\n" +
         formatText("Origin Time:\n %s (%lf)\n\n", date.c_str(), epochOTime_) +
         formatText("Location:\n Latitude: %8.3fN / Longitude: %8.3fE / Depth %5.1f km\n",
                    double{lat()}, double{lon()}, double{depth()}) +
         formatText("  LatUnc: %7.3f km /  LonUnc: %8.3f km / DepthUnc:%5.1f km\n", double{latErr_},
                    double{lonErr_}, double{depthErr_}) +
         formatText(" %s\n\n", printable(myFERegionString_)) +
         formatText("Magnitude (nObs):\n mb: %3.1f (%03d)\n Ms: %3.1f (%03d)\n\n", double{mb_},
                    nmb_, double{Ms_}, nMs_);
}

std::string kroHypocenter::stringWithAllPhases() const {
  if (phases_.empty()) return "";
  std::string text = std::string("All Phases:\n") + kPhaseColumns;
  for (const auto& phase : phases_) text += phase->description();
  return text;
}

std::string kroHypocenter::stringWithPrimaryPhases() const {
  if (phases_.empty()) return "";
  std::string text = std::string("Primary Phases:\n") + kPhaseColumns;
  for (const auto& phase : phases_) {
    if (phase->isFirstArrival()) text += phase->description();
  }
  return text;
}

std::string kroHypocenter::stringWithRayleighMeasurements() const {
  if (phases_.empty()) return "";
  std::string lines;
  for (const auto& phase : phases_) {
    if (phase->phaseName() == "R1") lines += rayleighLine(*phase);
  }
  // A record without phases returns an empty text instead; this is intended.
  if (lines.empty()) return "No Rayleigh Observations";
  return "Rayleigh Measurements:\nStation PhaseCode Gcarc Azimuth Period(s) Amplitude(microns) "
         "Component Ms\n" +
         lines;
}

}  // namespace krosac
