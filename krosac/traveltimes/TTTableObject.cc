#include "krosac/traveltimes/TTTableObject.h"

#include <iterator>

#include "krosac/traveltimes/TTTables.h"
#include "krosac/traveltimes/internal/Tables.h"

namespace krosac {

template <typename Self, typename Visit>
void TTTableObject::eachTable(Self& self, Visit visit) {
  visit("p", "p", self.tp_, self.np_);
  visit("s", "s", self.ts_, self.ns_);
  visit("pcp", "pcp", self.tpcp_, self.npcp_);
  visit("scs", "scs", self.tscs_, self.nscs_);
  visit("pcs", "pcs", self.tpcs_, self.npcs_);
  visit("scp", "scp", self.tscp_, self.nscp_);
  visit("pp", "pp", self.tpp_, self.npp_);
  visit("ss", "ss", self.tss_, self.nss_);
  visit("sp", "sp", self.tsp_, self.nsp_);
  visit("ps", "ps", self.tps_, self.nps_);
  visit("sksac", "sksac", self.tsksac_, self.nsksac_);
  visit("sksdf", "sksdf", self.tsksdf_, self.nsksdf_);
  visit("pkpab", "pkpab", self.tpkpab_, self.npkpab_);
  visit("pkpdf", "pkpdf", self.tpkpdf_, self.npkpdf_);
  // The key and the file name are spelled differently: intended.
  visit("pklikp", "pkikp", self.tpklikp_, self.npklikp_);
  visit("lpp", "lpp", self.tlpp_, self.nlpp_);
  visit("lss", "lss", self.tlss_, self.nlss_);
  visit("lps", "lps", self.tlps_, self.nlps_);
  visit("lsp", "lsp", self.tlsp_, self.nlsp_);
}

Ref<Object> TTTableObject::init() {
  TableFiles files;
  eachTable(*this, [&](PhaseKey, const char* phase, auto& table, std::int32_t& rows) {
    const auto capacity = static_cast<std::int32_t>(std::size(table) / kTTColumns);
    readTTPhase(files, "iasp91_", phase, capacity, table, &rows);
  });
  return Object::init();
}

// Returns no table for an unknown name.
TTTableObject::Table TTTableObject::tableOf(std::string_view phase) const {
  const PhaseKey wanted(phase);
  Table found{nullptr, 0};
  eachTable(*this, [&](PhaseKey key, const char*, const auto& table, std::int32_t rows) {
    if (wanted == key) found = {table, rows};
  });
  // P has the row count of S: intended.
  if (wanted == "p") found.rows = ns_;
  return found;
}

SeismicPhase TTTableObject::GetTTPhase_GCARC_Depth(std::string_view phase, float gcarc,
                                                   float depth) const {
  SeismicPhase found{kSacUndefinedFloat, kSacUndefinedFloat};
  if (const auto [values, rows] = tableOf(phase); values) {
    GetTTTimeSlowness(nullptr, values, rows, &found.time, &found.slowness, gcarc, depth);
  }
  return found;
}

SeismicPhaseTimeSlowness TTTableObject::GetTTimeSlownessesForPhase_GCARC_Depth(
    std::string_view phase, float gcarc, float depth) const {
  SeismicPhaseTimeSlowness found{kSacUndefinedFloat, kSacUndefinedFloat, kSacUndefinedFloat};
  if (const auto [values, rows] = tableOf(phase); values) {
    GetTTTimeSlownesses(nullptr, values, rows, &found.time, &found.slowness, &found.depthDerivative,
                        gcarc, depth);
  }
  return found;
}

}  // namespace krosac
