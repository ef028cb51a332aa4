#include "krosac/catalog/kroGeoLocation.h"

#include <gtest/gtest.h>

#include <vector>

#include "ArchivedKeys.h"

namespace krosac {
namespace {

std::vector<float> valuesOf(const kroGeoLocation& l) {
  return {l.latitude(), l.longitude(), l.elevation(), l.depth()};
}

TEST(GeoLocation, HoldsUpdatesAndCopiesFourValues) {
  const auto location = newRecord<kroGeoLocation>();
  EXPECT_EQ(valuesOf(*location), std::vector<float>(4, -2048.0f));
  location->setLatitude(10.0f);
  location->setLongitude(20.0f);
  location->setDepth(10.0f);
  location->updateLat_Lon_Depth(0.5f, -1.0f, 5.0f);
  EXPECT_EQ(valuesOf(*location), (std::vector<float>{10.5f, 19.0f, -5.0f, 15.0f}));
  expectKeys(*location, "latitude longitude elevation depth kroGeoLocation");
  EXPECT_EQ(valuesOf(*expectCopied(location)), valuesOf(*location));
  EXPECT_EQ(location->LatLonAsPoint().x, 19.0);
  EXPECT_EQ(location->LatLonAsPoint().y, 10.5);
}

TEST(GeoLocation, PointsAtOthersFromItself) {
  auto location = make<kroGeoLocation>();
  location->setLongitude(20.0f);
  // Along the equator and to the pole the flattening bends no path; single precision has 1e-5.
  EXPECT_NEAR(location->gcarcToLat_Lon(0.0f, 65.0f), 45.0f, 1e-5f);
  EXPECT_NEAR(location->azToLat_Lon(0.0f, 65.0f), 90.0f, 1e-5f);
  EXPECT_NEAR(location->azToLat_Lon(-89.0f, 20.0f), 180.0f, 2e-5f);
}

}  // namespace
}  // namespace krosac
