// Prints a seismogram as columns for plotting programs: sac_to_text FILE
//
// The first data set has a comment with the station and the columns time (s) and amplitude. The
// second, after two blank lines, has the picks of the header as time and label. Times are relative
// to the origin if it is known.
#include <cstdio>
#include <iterator>
#include <string>

#include "krosac/krosac.h"

namespace {

constexpr const char* kNames[] = {"T0", "T1", "T2", "T3", "T4", "T5",
                                  "T6", "T7", "T8", "T9", "A",  "F"};

std::string title(const krosac::SacObject& s) {
  std::string text = s.kstnm() + " " + s.kcmpnm();
  if (s.knetwk() != "-12345") text = s.knetwk() + "." + text;
  char distance[32];
  std::snprintf(distance, sizeof distance, ", %.1f degrees", static_cast<double>(s.gcarc()));
  return krosac::isDefined(s.gcarc()) ? text + distance : text;
}

void printPick(const krosac::SacObject& s, int key) {
  const float time = s.timePickKey(key);
  if (!krosac::isDefined(time)) return;
  const std::string label = s.pickLabelWithKey(key);
  const bool hasLabel = !label.empty() && label != "-12345";
  std::printf("%.4f \"%s\"\n", static_cast<double>(time), hasLabel ? label.c_str() : kNames[key]);
}

}  // namespace

int main(int argc, char** argv) {
  auto s = krosac::make<krosac::SacObject>();
  if (argc != 2) return std::fprintf(stderr, "sac_to_text FILE\n"), 2;
  if (!s->initWithPath(argv[1])) return 1;
  s->ZeroOriginTime();
  std::printf("# %s\n", title(*s).c_str());
  for (int i = 0; i < s->npts(); ++i) {
    const double time = s->b() + static_cast<double>(s->delta()) * i;
    std::printf("%.4f %.6g\n", time, static_cast<double>(s->GetSacSeis()[i]));
  }
  std::printf("\n\n");
  for (int key = 0; key < static_cast<int>(std::size(kNames)); ++key) printPick(*s, key);
}
