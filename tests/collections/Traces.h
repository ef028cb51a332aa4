// Small seismograms for the tests of groups.
#ifndef KROSAC_TESTS_COLLECTIONS_TRACES_H
#define KROSAC_TESTS_COLLECTIONS_TRACES_H

#include <algorithm>
#include <vector>

#include "krosac/seismogram/SacObject.h"

namespace krosac {

// A trace with an interval of 1 s, without a reference time.
inline Ref<SacObject> trace(float b, const std::vector<float>& x) {
  auto s = make<SacObject>();
  s->initWithCapacity(static_cast<std::int32_t>(x.size()));
  std::ranges::copy(x, s->GetSacSeis());
  s->setBeginTime(b);
  s->fixEndTime();
  return s;
}

}  // namespace krosac

#endif
