// The Jeffreys-Bullen tables of P, S, PP, SS, PcP and ScS in one object.
#ifndef KROSAC_TRAVELTIMES_JBTABLEOBJECT_H
#define KROSAC_TRAVELTIMES_JBTABLEOBJECT_H

#include <cstdint>
#include <string_view>

#include "krosac/platform/Object.h"
#include "krosac/traveltimes/SeismicPhase.h"

namespace krosac {

// Look-ups change nothing: threads may share one object after init.
class KROSAC_API JBTableObject : public Object {
 public:
  // Reads the six tables from the library's data files. Rows beyond an array's end are ignored. If
  // a file cannot be opened, which includes a lack of memory, prints a message on standard error,
  // leaves that table zero and goes on to the next.
  // lastReason() reports the last file that is missing or damaged, or files from different folders.
  Ref<Object> init() override;

  // Returns the time (s) and slowness (s/km) of the phase "p", "s", "pp", "ss", "pcp" or "scs" at a
  // distance (degrees) and source depth (km), computed by GetJBTimes or GetJBTimeSlowness. Case is
  // ignored: "pP" is PP. Both are -12345.0 where there is no time, at distances outside the table
  // and for any other name; depths are clamped to the table.
  SeismicPhase GetJBPhase_GCARC_Depth(std::string_view phase, float gcarc, float depth) const;

  // The tables in row-major order, 14 depths per row for P and S and 13 for the others, and the
  // numbers of rows read. The row counts of P and S are never set.
  const float* tp() const { return tp_; }
  const float* ts() const { return ts_; }
  const float* tpcp() const { return tpcp_; }
  const float* tscs() const { return tscs_; }
  const float* tpp() const { return tpp_; }
  const float* tss() const { return tss_; }
  std::int32_t npcp() const { return npcp_; }
  std::int32_t nscs() const { return nscs_; }
  std::int32_t npp() const { return npp_; }
  std::int32_t nss() const { return nss_; }
  std::int32_t np() const { return np_; }
  std::int32_t ns() const { return ns_; }

 private:
  float tp_[118 * 14]{};
  float ts_[120 * 14]{};
  float tpcp_[101 * 13]{};
  float tscs_[101 * 13]{};
  float tpp_[211 * 13]{};
  float tss_[215 * 13]{};
  std::int32_t npcp_ = 0, nscs_ = 0, npp_ = 0, nss_ = 0;
  std::int32_t np_ = 0, ns_ = 0;
};

}  // namespace krosac

#endif
