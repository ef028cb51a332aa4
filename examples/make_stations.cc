// Makes recordings of one earthquake at many stations: make_stations FOLDER [STATIONS [SAMPLES]]
//
// The stations (30) surround the earthquake at distances of 12 to 95 degrees. Each writes one file
// to the folder, XX.S001.BHZ.SAC and so on, with its samples (30000 at 10 Hz) from the origin on.
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>

#include "MadeData.h"
#include "Progress.h"
#include "krosac/krosac.h"

namespace {

constexpr float kDelta = 0.1f;  // s

// The golden angle spreads the azimuths evenly for any number of stations.
made::Station station(int i, int count) {
  const float degrees = 12.0f + 83.0f * (static_cast<float>(i) + 0.5f) / static_cast<float>(count);
  const float azimuth = static_cast<float>(std::fmod(137.508 * i, 360.0));
  char name[16];
  std::snprintf(name, sizeof name, "S%03d", i + 1);
  made::Station result{name, 0.0f, 0.0f};
  krosac::latLonFromDistAz(&result.latitude, &result.longitude, 57.29578f, made::kEventLatitude,
                           made::kEventLongitude, degrees, azimuth);
  result.longitude = std::remainder(result.longitude, 360.0f);
  return result;
}

}  // namespace

int main(int argc, char** argv) {
  const int stations = argc > 2 ? std::atoi(argv[2]) : 30;
  const int samples = argc > 3 ? std::atoi(argv[3]) : 30000;
  if (argc < 2 || stations < 1 || samples < 1)
    return std::fprintf(stderr, "make_stations FOLDER [STATIONS [SAMPLES]]\n"), 2;
  const std::filesystem::path folder = argv[1];
  std::error_code failed;
  std::filesystem::create_directories(folder, failed);
  auto tables = krosac::make<krosac::TTTableObject>();
  tables->init();
  Progress progress("Making seismograms", stations);
  for (int i = 0; i < stations; ++i, progress.step()) {
    const made::Station place = station(i, stations);
    const auto s = made::seismogram(*tables, place, 0.0f, kDelta, samples);
    s->setPath((folder / ("XX." + place.name + ".BHZ.SAC")).string());
    if (!s->save()) return std::fprintf(stderr, "%s: cannot be written\n", s->path()->c_str()), 1;
  }
  std::printf("%d seismograms in %s\n", stations, argv[1]);
}
