// Tables of travel times as any bytes, then look-ups with any arguments. The first byte chooses the
// reader.
#include <cstdlib>

#include "Harness.h"
#include "krosac/timegeo/Ellipticity.h"
#include "krosac/timegeo/FlinnEngdahl.h"
#include "krosac/traveltimes/JBTableObject.h"
#include "krosac/traveltimes/JBTables.h"
#include "krosac/traveltimes/LocsatTTController.h"
#include "krosac/traveltimes/LocsatTTTable.h"
#include "krosac/traveltimes/PsNMOTableObject.h"
#include "krosac/traveltimes/PsNMOTables.h"
#include "krosac/traveltimes/TTTableObject.h"
#include "krosac/traveltimes/TTTables.h"

namespace {

using namespace fuzz;
using krosac::make;

constexpr const char* kPhases[] = {"p",     "s",     "pp",    "ss",    "sp",  "ps",  "pcp",
                                   "scs",   "pcs",   "scp",   "sksac", "lpp", "lss", "lps",
                                   "sksdf", "pkpab", "pkpdf", "pkikp", "lsp"};

// The folder of data files, each of which is the input.
void useDataFolder() {
  std::vector<std::string> names{"jbtables.txt", "PsNMO.txt"};
  for (const std::string phase : kPhases) {
    names.push_back(phase + ".txt");
    names.push_back("iasp91_" + phase + ".txt");
  }
  ::setenv("KROSAC_DATA", folderOfLinks(names).c_str(), 1);
}

void readJeffreysBullen(Arguments& a) {
  std::vector<float> tp(118 * 14), ts(120 * 14);
  krosac::ReadJBTables(tp.data(), ts.data());
  auto all = make<krosac::JBTableObject>();
  all->init();
  for (int i = 0; i < 4; ++i) {
    const float gcarc = a.real(), depth = a.real();
    float pTime, sTime, pSlowness, sSlowness;
    krosac::GetJBTimes(tp.data(), ts.data(), &pTime, &sTime, &pSlowness, &sSlowness, gcarc, depth);
    all->GetJBPhase_GCARC_Depth(a.PickValueInArray(kPhases), gcarc, depth);
  }
}

void readJeffreysBullenPhase(Arguments& a) {
  std::vector<float> table(360 * 13);
  std::int32_t rows = 0;
  krosac::ReadJBTablePhase(a.PickValueInArray(kPhases), table.data(), &rows);
  require(rows >= 0 && rows <= 360);
  // As long as the rows that were read, so that a look-up beyond them is seen.
  table.resize(static_cast<std::size_t>(std::max(rows, 2)) * 13);
  table.shrink_to_fit();
  for (int i = 0; i < 4; ++i) {
    float time, slowness;
    krosac::GetJBTimeSlowness("pp", table.data(), rows, &time, &slowness, a.real(), a.real());
  }
}

void readIasp91(Arguments& a) {
  auto all = make<krosac::TTTableObject>();
  all->init();
  for (int i = 0; i < 4; ++i) {
    const float gcarc = a.real(), depth = a.real();
    const std::string phase = a.ConsumeBool() ? a.PickValueInArray(kPhases) : a.text();
    all->GetTTPhase_GCARC_Depth(phase, gcarc, depth);
    all->GetTTimeSlownessesForPhase_GCARC_Depth(phase, gcarc, depth);
  }
}

void readIasp91Phase(Arguments& a) {
  std::vector<float> table(360 * 18);
  std::int32_t rows = 0;
  krosac::ReadTTTablePhase("IASP91_", a.PickValueInArray(kPhases), table.data(), &rows);
  require(rows >= 0 && rows <= 360);
  table.resize(static_cast<std::size_t>(std::max(rows, 2)) * 18);
  table.shrink_to_fit();
  for (int i = 0; i < 4; ++i) {
    float time, slowness, derivative;
    const float gcarc = a.real(), depth = a.real();
    krosac::GetTTTimeSlowness("p", table.data(), rows, &time, &slowness, gcarc, depth);
    krosac::GetTTTimeSlownesses("p", table.data(), rows, &time, &slowness, &derivative, gcarc,
                                depth);
  }
}

void readMoveout(Arguments& a) {
  auto all = make<krosac::PsNMOTableObject>();
  all->init();
  std::vector<krosac::PsNMO> curves(210);
  std::int32_t count = 0;
  krosac::ReadPsDelayTable("PsNMO", curves.data(), &count);
  require(count < 210);
  for (int i = 0; i < 4; ++i) {
    const float value = a.real(), depth = a.real(), gcarc = a.real();
    krosac::depthFromTime(value, all->FetchNMOForSrcDepth_Gcarc(depth, gcarc));
    krosac::timeFromDepth(value, curves[a.index(curves.size())]);
    all->bilinearTimeFromDepth_SrcDepth_Gcarc(value, depth, gcarc);
    all->bilinearDepthFromTime_SrcDepth_Gcarc(value, depth, gcarc);
    require(krosac::psNMOCurveIndexClosestTo(depth, gcarc) < 210);
    krosac::psNMOCurveIndexClosestButShallowerThan(depth);
    krosac::psNMOCurveIndexClosestButLessThan(gcarc);
  }
}

void readLocsat(const std::string& path, Arguments& a) {
  auto table = make<krosac::LocsatTTTable>();
  table->init();
  table->loadTimesFromPath(path);
  table->setPhases(a.text());
  auto controller = make<krosac::LocsatTTController>();
  controller->init();
  controller->addTableToList(table);
  controller->tableForPhase(a.text());
  for (int i = 0; i < 4; ++i) {
    const float gcarc = a.real(), depth = a.real();
    table->GetTTimeSlownessesForGCARC_Depth(gcarc, depth);
  }
  table->listValuesForDistanceFrom_To_Step_SrcDepth(a.real(), a.real(), a.real(), a.real());
}

void lookUpPlaces(Arguments& a) {
  const float latitude = a.real(), longitude = a.real();
  std::int32_t geographic = a.integer(), seismic = a.integer();
  const char *geographicName, *seismicName;
  krosac::fe_region(&geographic, &geographicName, &seismic, &seismicName);
  touch(geographicName, std::char_traits<char>::length(geographicName));
  krosac::fe_lookup(latitude, longitude, &geographic, &seismic);
  krosac::fe_region(&geographic, &geographicName, &seismic, &seismicName);
  touch(seismicName, std::char_traits<char>::length(seismicName));
  krosac::ellipCorrection(latitude, longitude, a.real(), a.real(), a.real());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  // Arguments come from the first bytes, the table is what follows.
  constexpr std::size_t kArguments = 48;
  static const bool isSet = (useDataFolder(), true);
  if (!isSet || size < kArguments) return 0;
  const std::string path = asFile({data + kArguments, size - kArguments});
  Arguments a(data + 1, kArguments - 1);
  // A list of LocSAT values has a million rows at most.
  AllocationLimit limit(std::size_t{1} << 25);
  switch (data[0] % 7) {
    case 0:
      readJeffreysBullen(a);
      break;
    case 1:
      readJeffreysBullenPhase(a);
      break;
    case 2:
      readIasp91(a);
      break;
    case 3:
      readIasp91Phase(a);
      break;
    case 4:
      readMoveout(a);
      break;
    case 5:
      readLocsat(path, a);
      break;
    default:
      lookUpPlaces(a);
  }
  return 0;
}
