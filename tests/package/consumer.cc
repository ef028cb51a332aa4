// A program that uses the installed classes, a table file and the region names, prints the
// results and saves trace.SAC.
#include <krosac/krosac.h>

#include <cmath>
#include <cstdio>
#include <cstring>

int main() {
  auto trace = krosac::make<krosac::SacObject>();
  auto tables = krosac::make<krosac::TTTableObject>();
  if (!trace->initWithCapacity(1000) || !tables->init()) return 1;
  trace->setEventLocationLat_Lon_Depth(38.3f, 142.4f, 32.0f);
  trace->setStationLocationLat_Lon_Elevation(52.3f, 104.3f, 579.0f);

  const auto p = tables->GetTTPhase_GCARC_Depth("p", trace->gcarc(), trace->evdp());
  const auto region = trace->flinnEngdahlGeographicRegion();
  const auto table = krosac::pathForResource("iasp91_p", "txt");
  std::printf("krosac %s: P after %.1f s at %.2f degrees from %s\n%s\n", krosac::krosacVersion(),
              p.time, trace->gcarc(), region.c_str(), table ? table->c_str() : "no table");
  const bool good = std::fabs(p.time - 364.0f) < 1.0f &&
                    region == "Near east coast of eastern Honshu" &&
                    std::strcmp(krosac::krosacVersion(), KROSAC_VERSION) == 0;
  trace->setEventLocationLat_Lon_Depth(38.3f, 142.4f, 32000.0f);  // m, as in many files
  trace->setPath("trace.SAC");
  return good && trace->save() ? 0 : 1;
}
