// The 210 Ps moveout curves in one object.
#ifndef KROSAC_TRAVELTIMES_PSNMOTABLEOBJECT_H
#define KROSAC_TRAVELTIMES_PSNMOTABLEOBJECT_H

#include "krosac/platform/Object.h"
#include "krosac/traveltimes/PsNMOTables.h"

namespace krosac {

// Look-ups change nothing: threads may share one object after init.
class KROSAC_API PsNMOTableObject : public Object {
 public:
  // Reads the curves from the library's data file PsNMO.txt. If it cannot be opened, prints a
  // message on standard error and leaves the curves zero. lastReason() reports a missing or damaged
  // file.
  Ref<Object> init() override;

  // Returns a copy of the curve nearest to a source depth (km) and distance (degrees). Outside 0 to
  // 700 km and 30 to 95 degrees its four scalar fields are -12345.0 and its points are zero.
  PsNMO FetchNMOForSrcDepth_Gcarc(float srcdepth, float gcarc) const;

  // Returns the delay (s) of a conversion at a depth (km) by bilinear interpolation between the
  // four curves around a source depth (km) and distance (degrees). Returns 0 for a depth of 0, and
  // -12345.0 for a negative depth, for NaN, where a curve has no value, and outside the grid of the
  // curves, whose edges at 700 km and 95 degrees belong to it.
  float bilinearTimeFromDepth_SrcDepth_Gcarc(float depth, float srcdepth, float gcarc) const;

  // Returns the conversion depth (km) of a delay (s) in the same way, except that the weights of
  // the source depth are divided by the difference in source depth of two curves at the same depth.
  // That difference is 0, so the result is not finite (intended).
  float bilinearDepthFromTime_SrcDepth_Gcarc(float time, float srcdepth, float gcarc) const;

  // The 210 curves; that of source depth i and distance k is curve 14 i + k.
  const PsNMO* nmos() const { return nmos_; }

 private:
  PsNMO nmos_[210]{};
};

}  // namespace krosac

#endif
