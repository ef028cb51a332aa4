#include <krosac/krosac.h>
#include <stdio.h>
#include <string.h>

int main(void) {
  static float table[360 * 18];
  int32_t rows = 0, geographic, seismic = 0;
  float time, slowness;
  const char *name, *seismicName;

  ReadTTTablePhase("iasp91_", "p", table, &rows);
  GetTTTimeSlowness("p", table, rows, &time, &slowness, 60.0f, 0.0f);
  fe_lookup(38.3f, 142.4f, &geographic, &seismic);
  fe_region(&geographic, &name, &seismic, &seismicName);
  printf("krosac %s: P after %.1f s; %s\n", krosacVersion(), time, name);
  return time < 605 || time > 610 || strcmp(name, "Near east coast of eastern Honshu") != 0;
}
