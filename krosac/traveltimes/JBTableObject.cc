#include "krosac/traveltimes/JBTableObject.h"

#include "krosac/traveltimes/JBTables.h"
#include "krosac/traveltimes/internal/Tables.h"

namespace krosac {

Ref<Object> JBTableObject::init() {
  TableFiles files;
  readJBTables(files, tp_, ts_);
  readJBPhase(files, "pcp", 101, tpcp_, &npcp_);
  readJBPhase(files, "scs", 101, tscs_, &nscs_);
  readJBPhase(files, "pp", 211, tpp_, &npp_);
  readJBPhase(files, "ss", 215, tss_, &nss_);
  return Object::init();
}

SeismicPhase JBTableObject::GetJBPhase_GCARC_Depth(std::string_view phase, float gcarc,
                                                   float depth) const {
  const PhaseKey key(phase);
  SeismicPhase p{kSacUndefinedFloat, kSacUndefinedFloat}, s = p, found = p;
  const auto fromTable = [&](const float* table, std::int32_t rows) {
    GetJBTimeSlowness(nullptr, table, rows, &found.time, &found.slowness, gcarc, depth);
    return found;
  };
  if (key == "p" || key == "s") {
    GetJBTimes(tp_, ts_, &p.time, &s.time, &p.slowness, &s.slowness, gcarc, depth);
    return key == "p" ? p : s;
  }
  if (key == "pp") return fromTable(tpp_, npp_);
  if (key == "ss") return fromTable(tss_, nss_);
  if (key == "pcp") return fromTable(tpcp_, npcp_);
  if (key == "scs") return fromTable(tscs_, nscs_);
  return found;
}

}  // namespace krosac
