// Look-ups with arguments of all kinds, in the installed tables, in unloaded ones and in odd ones.
#include <cmath>
#include <random>

#include "krosac/platform/Resources.h"
#include "krosac/platform/internal/Text.h"
#include "krosac/timegeo/Ellipticity.h"
#include "krosac/timegeo/GreatCircle.h"
#include "krosac/traveltimes/JBTableObject.h"
#include "krosac/traveltimes/LocsatTTTable.h"
#include "krosac/traveltimes/PsNMOTableObject.h"
#include "krosac/traveltimes/TTTableObject.h"
#include "traveltimes/TableFolder.h"

namespace krosac {
namespace {

class Arguments {
 public:
  // A node, a limit, an extreme or a number in between.
  float next() {
    constexpr float kSpecial[] = {0,   -0.0f, 1e-40f, -1e-40f, 1e-4f, 1,     25,   30,     33,
                                  95,  108,   180,    700,     715,   761,   800,  -12345, -1,
                                  1e9, -1e9f, 3e38f,  -3e38f,  150,   1e-9f, 0.5f, 10,     11};
    return random_() % 3 == 0 ? kSpecial[random_() % std::size(kSpecial)]
                              : std::uniform_real_distribution<float>(-20, 900)(random_);
  }
  template <std::size_t n>
  const char* oneOf(const char* const (&names)[n]) {
    return names[random_() % n];
  }

 private:
  std::mt19937 random_{19060418};
};

void expectFinite(std::initializer_list<float> values, const char* what, float a, float b) {
  for (const float value : values)
    ASSERT_TRUE(std::isfinite(value)) << what << " at " << a << ", " << b;
}

constexpr const char* kPhases[] = {"p",   "s",   "pp",  "ss",    "sp",    "ps",    "pcp",
                                   "scs", "pcs", "scp", "sksac", "sksdf", "pkpab", "pkpdf",
                                   "lpp", "lsp", "lss", "lps",   "pklikp"};

TEST(LookUps, AreFinite) {
  const TableFolder folder;
  // Curves of two points, and a table with a single depth.
  std::string curves, oneDepth = "title\n1\n0\n207\n";
  for (int i = 0; i < 210; ++i)
    curves += formatText("> %d %d 500 0.06\n0 0 0\n10 1 0\n", i / 14 * 50, 30 + i % 14 * 5);
  for (int k = 0; k < 207; ++k) oneDepth += std::to_string(k) + "\n";
  oneDepth += "depth\n";
  for (int k = 0; k < 207; ++k) oneDepth += std::to_string(10 * k) + " P\n";
  folder.write("PsNMO.txt", curves);

  const auto jb = make<JBTableObject>(), noJb = make<JBTableObject>();
  const auto tt = make<TTTableObject>(), noTt = make<TTTableObject>();
  const auto ps = make<PsNMOTableObject>(), noPs = make<PsNMOTableObject>();
  const auto locsat = make<LocsatTTTable>(), noLocsat = make<LocsatTTTable>();
  ps->init();
  unsetenv("KROSAC_DATA");
  jb->init();
  tt->init();
  locsat->loadTimesFromPath(folder.write("locsat.txt", oneDepth));
  ASSERT_TRUE(locsat->hasTimes() && tt->np() > 0 && ps->nmos()[209].gcarc == 95);

  EXPECT_EQ(locsat->GetTTimeSlownessesForGCARC_Depth(40, 0).time, -1);
  EXPECT_EQ(noLocsat->GetTTimeSlownessesForGCARC_Depth(0, 0).time, -1);
  EXPECT_EQ(noTt->GetTTPhase_GCARC_Depth("p", 0, 0).time, 0);
  EXPECT_EQ(ps->bilinearTimeFromDepth_SrcDepth_Gcarc(5, 20, 47), 0.5f);
  EXPECT_EQ(ps->bilinearTimeFromDepth_SrcDepth_Gcarc(50, 20, 47), kNone);
  EXPECT_EQ(noPs->bilinearTimeFromDepth_SrcDepth_Gcarc(50, 20, 47), kNone);
  EXPECT_EQ(depthFromTime(7, noPs->nmos()[0]), kNone);
  EXPECT_FALSE(std::isfinite(noPs->bilinearDepthFromTime_SrcDepth_Gcarc(5, 20, 47)));

  Arguments arguments;
  for (int i = 0; i < 40000; ++i) {
    const float a = arguments.next(), b = arguments.next(), c = arguments.next();
    const char* const phase = arguments.oneOf(kPhases);
    for (const auto& tables : {jb, noJb}) {
      const auto found = tables->GetJBPhase_GCARC_Depth(phase, a, b);
      expectFinite({found.time, found.slowness}, phase, a, b);
      ASSERT_TRUE(a >= 0 || (found.time == kNone && found.slowness == kNone)) << a;
    }
    for (const auto& tables : {tt, noTt}) {
      const auto found = tables->GetTTPhase_GCARC_Depth(phase, a, b);
      const auto all = tables->GetTTimeSlownessesForPhase_GCARC_Depth(phase, a, b);
      expectFinite({found.time, found.slowness, all.time, all.slowness, all.depthDerivative}, phase,
                   a, b);
    }
    for (const auto& table : {locsat, noLocsat}) {
      const auto all = table->GetTTimeSlownessesForGCARC_Depth(a, b);
      expectFinite({all.time, all.slowness, all.depthDerivative}, "LocSAT", a, b);
    }
    for (const auto& tables : {ps, noPs}) {
      const PsNMO& curve = tables->nmos()[i % 210];
      expectFinite({tables->bilinearTimeFromDepth_SrcDepth_Gcarc(a, b, c), timeFromDepth(a, curve),
                    depthFromTime(a, curve)},
                   "Ps", a, b);
    }
    expectFinite({ellipCorrection(a, b, c, b, a), static_cast<float>(geospread(a))}, "place", a, b);
  }
}

}  // namespace
}  // namespace krosac
