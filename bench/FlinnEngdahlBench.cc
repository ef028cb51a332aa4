// Look-ups of the Flinn-Engdahl regions per second, at points spread evenly over the globe.
#include <benchmark/benchmark.h>

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <numbers>
#include <random>
#include <vector>

#include "krosac/timegeo/FlinnEngdahl.h"

namespace {

struct Place {
  float latitude, longitude;
};

std::vector<Place> placesOnTheGlobe(std::size_t count) {
  std::mt19937 random(20110311);
  std::uniform_real_distribution<double> sine(-1.0, 1.0), longitude(-180.0, 180.0);
  std::vector<Place> places(count);
  for (Place& place : places) {
    place = {static_cast<float>(std::asin(sine(random)) * 180.0 / std::numbers::pi),
             static_cast<float>(longitude(random))};
  }
  return places;
}

void lookUpRegions(benchmark::State& state) {
  const auto places = placesOnTheGlobe(1 << 16);
  for (auto _ : state) {
    for (const Place& place : places) {
      std::int32_t geographic, seismic;
      krosac::fe_lookup(place.latitude, place.longitude, &geographic, &seismic);
      benchmark::DoNotOptimize(geographic);
      benchmark::DoNotOptimize(seismic);
    }
  }
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(places.size()));
}
BENCHMARK(lookUpRegions);

}  // namespace
