// A point of the plane.
#ifndef KROSAC_CATALOG_POINT_H
#define KROSAC_CATALOG_POINT_H

namespace krosac {

struct Point {
  double x = 0.0, y = 0.0;
};

}  // namespace krosac

#endif
