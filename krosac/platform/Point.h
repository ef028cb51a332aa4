// Two coordinates that belong together.
#ifndef KROSAC_PLATFORM_POINT_H
#define KROSAC_PLATFORM_POINT_H

namespace krosac {

// A pair of coordinates; what they mean says the operation that gives it.
struct Point {
  // The two coordinates.
  double x = 0.0, y = 0.0;
};

}  // namespace krosac

#endif
