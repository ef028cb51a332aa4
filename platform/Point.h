// Two coordinates that belong together.
#ifndef KROSAC_PLATFORM_POINT_H
#define KROSAC_PLATFORM_POINT_H

namespace krosac {

struct Point {
  double x = 0.0, y = 0.0;
};

}  // namespace krosac

#endif
