// The IASP91 tables of nineteen phases in one object.
#ifndef KROSAC_TRAVELTIMES_TTTABLEOBJECT_H
#define KROSAC_TRAVELTIMES_TTTABLEOBJECT_H

#include <cstdint>
#include <string_view>

#include "krosac/platform/Object.h"
#include "krosac/traveltimes/SeismicPhase.h"

namespace krosac {

// One table: the array t<phase> with 18 depths per row, and the number n<phase> of rows read.
#define KROSAC_TT_TABLE(phase, capacity) \
 public:                                 \
  const float* t##phase() const {        \
    return t##phase##_;                  \
  }                                      \
  std::int32_t n##phase() const {        \
    return n##phase##_;                  \
  }                                      \
                                         \
 private:                                \
  float t##phase##_[capacity * 18]{};    \
  std::int32_t n##phase##_ = 0;

// Look-ups change nothing: threads may share one object after init.
class KROSAC_API TTTableObject : public Object {
 public:
  // Reads the nineteen tables from the library's data files "iasp91_...". Rows beyond an array's
  // end are ignored. If a file cannot be opened, which includes a lack of memory, prints a message
  // on standard error, leaves that table zero and goes on to the next. lastReason() reports the
  // last file that is missing or damaged, or files from different folders.
  Ref<Object> init() override;

  // Returns the time (s) and slowness (s/km) of a phase at a distance (degrees) and source depth
  // (km), computed by GetTTTimeSlowness. The phase is one of "p", "s", "pp", "ss", "sp", "ps",
  // "pcp", "scs", "pcs", "scp", "sksac", "sksdf", "pkpab", "pkpdf", "pklikp" (the inner-core
  // arrival, reflected at short distances), or a depth phase: "lpp", "lsp", "lss", "lps" (pP, sP,
  // sS, pS). Case is ignored, so "pP" is PP. Each field is -12345.0 where there is no time, at
  // distances outside the table and for any other name; depths are clamped to the table. "p" uses
  // the row count of the S table (intended).
  SeismicPhase GetTTPhase_GCARC_Depth(std::string_view phase, float gcarc, float depth) const;

  // Returns the time (s), slowness and depth derivative (s/km), computed by GetTTTimeSlownesses, in
  // the same way.
  SeismicPhaseTimeSlowness GetTTimeSlownessesForPhase_GCARC_Depth(std::string_view phase,
                                                                  float gcarc, float depth) const;

  // Each table: times (s) in row-major order, one row of 18 depths per degree, and the number of
  // rows read.
  KROSAC_TT_TABLE(p, 145)
  KROSAC_TT_TABLE(s, 144)
  KROSAC_TT_TABLE(pcp, 99)
  KROSAC_TT_TABLE(scs, 100)
  KROSAC_TT_TABLE(pcs, 63)
  KROSAC_TT_TABLE(scp, 63)
  KROSAC_TT_TABLE(pp, 339)
  KROSAC_TT_TABLE(ss, 337)
  KROSAC_TT_TABLE(sp, 277)
  KROSAC_TT_TABLE(ps, 277)
  KROSAC_TT_TABLE(sksac, 145)
  KROSAC_TT_TABLE(sksdf, 257)
  KROSAC_TT_TABLE(pkpab, 217)
  KROSAC_TT_TABLE(pkpdf, 248)
  KROSAC_TT_TABLE(pklikp, 360)
  KROSAC_TT_TABLE(lpp, 107)
  KROSAC_TT_TABLE(lss, 107)
  KROSAC_TT_TABLE(lps, 107)
  KROSAC_TT_TABLE(lsp, 107)

 private:
  // Calls visit(key, phase in the file name, table, rows) for each table in reading order.
  template <typename Self, typename Visit>
  static void eachTable(Self& self, Visit visit);

  struct Table {
    const float* values;
    std::int32_t rows;
  };
  Table tableOf(std::string_view phase) const;
};

#undef KROSAC_TT_TABLE

}  // namespace krosac

#endif
