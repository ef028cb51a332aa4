// Prints the record section of a folder of seismograms: record_section FOLDER
//
// Every seismogram below the folder with known origin time and distance is band-passed, decimated
// and normalised. The first data set has the columns time after the origin (s), distance (degrees)
// and amplitude (-1 to 1), with a blank line between stations. The data sets "P", "PP", "S" and
// "SS" hold the predicted times. Two blank lines separate data sets.
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <utility>

#include "Depth.h"
#include "Progress.h"
#include "krosac/krosac.h"

namespace {

using krosac::SacObject;
using krosac::SeismogramArray;

constexpr float kLowCorner = 0.02f, kHighCorner = 0.2f;  // Hz
constexpr int kPoles = 4, kTwoPasses = 2;

bool isPlaced(const SacObject& s) {
  return krosac::isDefined(s.o()) && krosac::isDefined(s.gcarc()) && s.npts() > 1 && s.delta() > 0;
}

void prepare(SacObject& s) {
  s.ZeroOriginTime();
  s.SubtractLinearTrend();
  s.RemoveMean();
  s.defaultTaper();
  s.HPBUfilter_NPasses_NPoles(kLowCorner, kTwoPasses, kPoles);
  if (kHighCorner < 0.5f / s.delta()) s.LPBUfilter_NPasses_NPoles(kHighCorner, kTwoPasses, kPoles);
  while (0.5f / s.delta() > 8 * kHighCorner) s.Decimate(2);
  if (s.absMax() > 0) s.ScaleAmplitudes(1 / s.absMax());
}

void print(const SacObject& s) {
  for (int i = 0; i < s.npts(); ++i) {
    const double time = s.b() + static_cast<double>(s.delta()) * i;
    std::printf("%.2f %.3f %.4f\n", time, static_cast<double>(s.gcarc()),
                static_cast<double>(s.GetSacSeis()[i]));
  }
  std::printf("\n");
}

void printPredictions(std::pair<double, double> degrees, float depth) {
  auto tables = krosac::make<krosac::TTTableObject>();
  tables->init();
  for (const auto& [phase, name] :
       {std::pair("p", "P"), std::pair("pp", "PP"), std::pair("s", "S"), std::pair("ss", "SS")}) {
    std::printf("\n\n# %s\n", name);
    for (double arc = std::floor(degrees.first); arc <= std::ceil(degrees.second); arc += 0.5) {
      const float time = tables->GetTTPhase_GCARC_Depth(phase, static_cast<float>(arc), depth).time;
      if (time >= 0) std::printf("%.2f %.1f\n", static_cast<double>(time), arc);
    }
  }
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) return std::fprintf(stderr, "record_section FOLDER\n"), 2;
  auto section = krosac::make<SeismogramArray>();
  section->init();
  section->loadSeismogramsFromPath(argv[1]);  // also makes it the working directory
  auto& traces = section->theSeismograms();
  const auto unplaced = std::erase_if(traces, [](const auto& s) { return !isPlaced(*s); });
  if (unplaced > 0)
    std::fprintf(stderr, "%zu seismograms without origin time or distance are left out\n",
                 static_cast<std::size_t>(unplaced));
  if (traces.empty()) return std::fprintf(stderr, "%s: no seismograms\n", argv[1]), 1;
  std::ranges::stable_sort(traces,
                           [](const auto& a, const auto& b) { return a->compareGCarcs(*b) < 0; });
  Progress progress("Filtering", std::ssize(traces));
  for (const auto& s : traces) {
    prepare(*s);
    print(*s);
    progress.step();
  }
  const float depth = depthInKilometres(*traces.front());
  if (depth >= 0) printPredictions(section->gcarcRange(), depth);
}
