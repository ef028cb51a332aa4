// The 210 Ps moveout curves in one object.
#ifndef KROSAC_TRAVELTIMES_PSNMOTABLEOBJECT_H
#define KROSAC_TRAVELTIMES_PSNMOTABLEOBJECT_H

#include "krosac/platform/Object.h"
#include "krosac/traveltimes/PsNMOTables.h"

namespace krosac {

class KROSAC_API PsNMOTableObject : public Object {
 public:
  // Reads the curves from the library's data file "PsNMO"; they stay zero, with a message on
  // standard error, when it cannot be opened.
  Ref<Object> init() override;

  // A copy of the curve nearest to a source depth (km) and distance (degrees). Outside 0 to 700 km
  // and 30 to 95 degrees there is none: its four single values are -12345.0 and its points zero.
  PsNMO FetchNMOForSrcDepth_Gcarc(float srcdepth, float gcarc) const;

  // The delay (s) of a conversion depth (km) by bilinear interpolation between the four curves
  // around a source depth (km) and distance (degrees). 0 for a depth of 0; -12345.0 for a negative
  // one, for a NaN and outside the grid of the curves. At 700 km and 95 degrees the last bracket of
  // the grid counts.
  float bilinearTimeFromDepth_SrcDepth_Gcarc(float depth, float srcdepth, float gcarc) const;

  // The same with delay and conversion depth exchanged, except that the weights of the source depth
  // are divided by the difference in source depth of two curves of the same depth, which is 0: the
  // result is not finite.
  float bilinearDepthFromTime_SrcDepth_Gcarc(float time, float srcdepth, float gcarc) const;

  // The 210 records: that of source depth i and distance k, by the grid, is 14 i + k.
  const PsNMO* nmos() const { return nmos_; }

 private:
  PsNMO nmos_[210]{};
};

}  // namespace krosac

#endif
