// A pair of coordinates.
#ifndef KROSAC_PLATFORM_POINT_H
#define KROSAC_PLATFORM_POINT_H

namespace krosac {

// A pair of coordinates. The function that returns it defines their meaning and units.
struct Point {
  // The two coordinates.
  double x = 0.0, y = 0.0;
};

}  // namespace krosac

#endif
