// A null input is refused as bad input is; a null output is skipped.
#include <gtest/gtest.h>

#include <string>

#include "krosac/timegeo/Calendar.h"
#include "krosac/timegeo/FlinnEngdahl.h"
#include "krosac/timegeo/GreatCircle.h"

namespace krosac {
namespace {

TEST(NullPointers, InTimeAndPlace) {
  std::int32_t number = -7;
  EXPECT_EQ(monthdate(2000, 60, nullptr, &number), 1);
  EXPECT_EQ(number, 29);
  EXPECT_EQ(monthdate(2000, 60, &number, nullptr), 1);
  EXPECT_EQ(number, 2);

  const float zero = 0, ninety = 90;
  float x = -7, y = -7;
  for (int missing = 0; missing < 4; ++missing) {
    const float* in[] = {&zero, &zero, &zero, &ninety};
    in[missing] = nullptr;
    delta_az(in[0], in[1], in[2], in[3], &x, &y);
    EXPECT_TRUE(x == -7 && y == -7) << missing;
  }
  delta_az(&zero, &zero, &zero, &ninety, &x, nullptr);
  delta_az(&zero, &zero, &zero, &ninety, nullptr, &y);
  EXPECT_TRUE(x == 90 && y == 90);
  double out[4], reduced;
  dbpt(out, nullptr, 90, 450, 0.0);
  dbpt(nullptr, &reduced, 90, 450, 0.0);
  EXPECT_TRUE(out[0] == 1 && reduced == 90);
  latLonFromDistAz(&x, nullptr, 1, 5, 6, 0, 0);
  latLonFromDistAz(nullptr, &y, 1, 5, 6, 0, 0);
  EXPECT_TRUE(x == 5 && y == 6);

  fe_lookup(64, -150, &number, nullptr);
  EXPECT_EQ(number, 1);
  fe_lookup(64, -150, nullptr, &number);
  EXPECT_EQ(number, 1);
  const char *geographic, *seismic;
  fe_region(&number, nullptr, nullptr, &seismic);
  EXPECT_STREQ(seismic, "ALASKA - ALEUTIAN ISLANDS ARC") << "follows from the geographic number";
  fe_region(nullptr, &geographic, &number, nullptr);
  EXPECT_EQ(geographic, std::string(52, ' '));
}

}  // namespace
}  // namespace krosac
