// Prints the travel-time curves of the nineteen phases of the IASP91 tables: travel_time_curves
// [DEPTH]
//
// The source depth is in km (default 300). Each phase is a data set that begins with its name as a
// comment and has the columns distance (degrees), time (s) and slowness (s/degree). Two blank lines
// separate data sets.
#include <cmath>
#include <cstdio>
#include <cstdlib>

#include "krosac/krosac.h"

namespace {

constexpr struct {
  const char* key;   // in the tables
  const char* name;  // as usually written
} kPhases[] = {{"p", "P"},         {"pp", "PP"},       {"pcp", "PcP"},     {"lpp", "pP"},
               {"lsp", "sP"},      {"s", "S"},         {"ss", "SS"},       {"scs", "ScS"},
               {"lss", "sS"},      {"lps", "pS"},      {"sp", "SP"},       {"ps", "PS"},
               {"pcs", "PcS"},     {"scp", "ScP"},     {"sksac", "SKSac"}, {"sksdf", "SKSdf"},
               {"pkpab", "PKPab"}, {"pkpdf", "PKPdf"}, {"pklikp", "PKiKP"}};
}  // namespace

int main(int argc, char** argv) {
  char* end = nullptr;
  const float depth = argc > 1 ? std::strtof(argv[1], &end) : 300.0f;
  if (argc > 2 || (end && *end) || !(depth >= 0 && depth <= 800))
    return std::fprintf(stderr, "travel_time_curves [DEPTH], from 0 to 800 km\n"), 2;
  auto tables = krosac::make<krosac::TTTableObject>();
  tables->init();
  for (const auto& phase : kPhases) {
    std::printf("# %s, source depth %g km\n", phase.name, static_cast<double>(depth));
    for (int i = 0; i < 360; ++i) {
      const float degrees = 0.5f * static_cast<float>(i);
      const auto [time, slowness] = tables->GetTTPhase_GCARC_Depth(phase.key, degrees, depth);
      if (time < 0) continue;
      std::printf("%5.1f %9.3f %8.4f\n", static_cast<double>(degrees), static_cast<double>(time),
                  slowness * krosac::kKilometresPerDegree);
    }
    std::printf("\n\n");
  }
}
