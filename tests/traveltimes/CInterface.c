/* The plain functions from C. */
#include "krosac/traveltimes/JBTables.h"
#include "krosac/traveltimes/PsNMOTables.h"
#include "krosac/traveltimes/SeismicPhase.h"
#include "krosac/traveltimes/TTTables.h"

static float jbP[118 * 14], jbS[120 * 14], table[360 * 18];
static PsNMO curves[210];

/* Times of P, S and PcP, of IASP91 P twice, and a Ps delay. */
void readAllFromC(float times[6]) {
  SeismicPhase p, s;
  SeismicPhaseTimeSlowness all;
  int32_t rows = 0;
  ReadJBTables(jbP, jbS);
  GetJBTimes(jbP, jbS, times, times + 1, &p.slowness, &s.slowness, 60.0f, 317.0f);
  ReadJBTablePhase("PcP", table, &rows);
  GetJBTimeSlowness("PcP", table, rows, times + 2, &p.slowness, 60.0f, 322.0f);
  ReadTTTablePhase("IASP91_", "P", table, &rows);
  GetTTTimeSlowness("P", table, rows, times + 3, &p.slowness, 60.0f, 300.0f);
  GetTTTimeSlownesses("P", table, rows, times + 4, &all.slowness, &all.depthDerivative, 60.0f,
                      300.0f);
  ReadPsDelayTable("PsNMO", curves, &rows);
  times[5] = timeFromDepth(410.0f, curves[psNMOCurveIndexClosestTo(0.0f, 67.0f)]);
  times[5] += depthFromTime(0.0f, curves[psNMOCurveIndexClosestButShallowerThan(0.0f)]);
  times[5] += (float)psNMOCurveIndexClosestButLessThan(30.0f);
}
