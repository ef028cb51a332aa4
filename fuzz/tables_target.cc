// Tables of travel times as any bytes, then look-ups with any arguments. The first byte chooses the
// reader.
#include <cstdlib>

#include "Harness.h"

namespace {

using namespace fuzz;
using Moveout = PsNMOTableObject;

template <typename T>
Ref<T> made() {
  auto object = make<T>();
  object->init();
  return object;
}

// Makes the table of one phase as long as the rows that were read, so that a look-up beyond them is
// found.
void fit(std::vector<float>& table, std::int32_t rows) {
  require(rows >= 0 && rows <= 360);
  table.resize(static_cast<std::size_t>(std::max(rows, 2)) * (table.size() / 360));
  table.shrink_to_fit();
}

float found[4];  // the results of look-ups

constexpr void (*kReaders[])(Arguments& a) = {
    [](Arguments& a) {
      std::vector<float> tp(118 * 14), ts(120 * 14);
      ReadJBTables(tp.data(), ts.data());
      const auto all = made<JBTableObject>();
      for (int i = 0; i < 4; ++i) {
        GetJBTimes(tp.data(), ts.data(), found, found + 1, found + 2, found + 3, a.real(),
                   a.real());
        call<&JBTableObject::GetJBPhase_GCARC_Depth>(*all, a);
      }
    },
    [](Arguments& a) {
      std::vector<float> table(360 * 13);
      std::int32_t rows = 0;
      ReadJBTablePhase(a.text().c_str(), table.data(), &rows);
      fit(table, rows);
      for (int i = 0; i < 4; ++i)
        GetJBTimeSlowness("pp", table.data(), rows, found, found + 1, a.real(), a.real());
    },
    [](Arguments& a) {
      const auto all = made<TTTableObject>();
      for (int i = 0; i < 4; ++i) {
        call<&TTTableObject::GetTTPhase_GCARC_Depth>(*all, a);
        call<&TTTableObject::GetTTimeSlownessesForPhase_GCARC_Depth>(*all, a);
      }
    },
    [](Arguments& a) {
      std::vector<float> table(360 * 18);
      std::int32_t rows = 0;
      ReadTTTablePhase("IASP91_", a.text().c_str(), table.data(), &rows);
      fit(table, rows);
      for (int i = 0; i < 4; ++i) {
        const float gcarc = a.real(), depth = a.real(), *values = table.data();
        GetTTTimeSlowness("p", values, rows, found, found + 1, gcarc, depth);
        GetTTTimeSlownesses("p", values, rows, found, found + 1, found + 2, gcarc, depth);
      }
    },
    [](Arguments& a) {
      const auto all = made<Moveout>();
      std::vector<PsNMO> curves(210);
      std::int32_t count = 0;
      ReadPsDelayTable("PsNMO", curves.data(), &count);
      require(count < 210);
      for (int i = 0; i < 4; ++i) {
        depthFromTime(a.real(), all->FetchNMOForSrcDepth_Gcarc(a.real(), a.real()));
        timeFromDepth(a.real(), curves[a.index(curves.size())]);
        call<&Moveout::bilinearTimeFromDepth_SrcDepth_Gcarc>(*all, a);
        call<&Moveout::bilinearDepthFromTime_SrcDepth_Gcarc>(*all, a);
        require(psNMOCurveIndexClosestTo(a.real(), a.real()) < 210);
        call<psNMOCurveIndexClosestButShallowerThan>(*all, a);
        call<psNMOCurveIndexClosestButLessThan>(*all, a);
      }
    },
    [](Arguments& a) {
      const auto table = made<LocsatTTTable>();
      table->loadTimesFromPath(folderOfLinks({}) + "/p.txt");
      const auto controller = made<LocsatTTController>();
      table->setPhases(a.text());
      controller->addTableToList(table);
      controller->tableForPhase(a.text());
      for (int i = 0; i < 4; ++i) call<&LocsatTTTable::GetTTimeSlownessesForGCARC_Depth>(*table, a);
      call<&LocsatTTTable::listValuesForDistanceFrom_To_Step_SrcDepth>(*table, a);
    },
    [](Arguments& a) {
      std::int32_t geographic = a.integer(), seismic = a.integer();
      const char *geographicName, *seismicName;
      const auto readNames = [&] {
        fe_region(&geographic, &geographicName, &seismic, &seismicName);
        touch(geographicName);
        touch(seismicName);
      };
      readNames();
      fe_lookup(a.real(), a.real(), &geographic, &seismic);
      readNames();
      call<ellipCorrection>(a, a);
    }};

}  // namespace

void runInput(std::string_view input) {
  // The first bytes are the arguments, the rest is the table.
  constexpr std::size_t kArguments = 48;
  static const std::vector<const char*> phases{
      "p",     "s",   "pp",  "ss",  "sp",    "ps",    "pcp",   "scs",   "pcs", "scp",
      "sksac", "lpp", "lss", "lps", "sksdf", "pkpab", "pkpdf", "pkikp", "lsp"};
  // The folder of data files, each of which is the input.
  static const int isSet = [] {
    std::vector<std::string> names{"jbtables.txt", "PsNMO.txt"};
    for (const std::string phase : phases) {
      names.push_back(phase + ".txt");
      names.push_back("iasp91_" + phase + ".txt");
    }
    return ::setenv("KROSAC_DATA", folderOfLinks(names).c_str(), 1);
  }();
  if (isSet != 0 || input.size() < kArguments) return;
  asFile(input.substr(kArguments));
  Arguments a(input.substr(1, kArguments - 1));
  a.words = phases;
  // A list of LocSAT values has at most a million rows.
  AllocationLimit limit(std::size_t{1} << 25);
  kReaders[static_cast<unsigned char>(input[0]) % std::size(kReaders)](a);
}
