/* Compiles krosac.h as C11 and calls a function of each of its headers. */
#include <math.h>
#include <stdio.h>
#include <string.h>

#include "krosac/krosac.h"

static int failures = 0;

static void expect(int good, const char* what) {
  if (!good) {
    fprintf(stderr, "failed: %s\n", what);
    failures = 1;
  }
}

static void callFolders(void) {
  expect(strcmp(krosacVersion(), KROSAC_VERSION) == 0, "platform/Version.h");
  SacHeader header;
  NewSacHeader(&header);
  expect(header.NVHDR == 6 && kSacHeaderTemplate.NVHDR == -12345, "sacio/SacHeader.h");
  expect(IsSacFile("missing") == -1, "sacio/SacFile.h");
  expect(strcmp(lastReason(), "missing: No such file or directory") == 0, "platform/LastReason.h");
  newhdr_();
  expect(ghdr.NPTS == -12345, "sacio/SacRoutines.h");
  expect(doy(2000, 3, 1) == 61, "timegeo/Calendar.h");
  float zero = 0, ninety = 90, distance, azimuth;
  delta_az(&zero, &zero, &zero, &ninety, &distance, &azimuth);
  expect(fabsf(distance - 90) < 1e-4f && fabsf(azimuth - 90) < 1e-4f, "timegeo/GreatCircle.h");
  expect(depths[7] == 700 && pEllipCoeff[3] == -0.18f, "timegeo/Ellipticity.h");
  int32_t geographic, seismic = 0;
  const char *geographicName, *seismicName;
  fe_lookup(64, -150, &geographic, &seismic);
  fe_region(&geographic, &geographicName, &seismic, &seismicName);
  expect(strcmp(geographicName, "Central Alaska, United States") == 0, "timegeo/FlinnEngdahl.h");
}

static void callSignals(void) {
  float x[5] = {0, 3, 1, 2, 4}, out[4], median, re, im;
  realft(x, 4, 1);
  expect(x[1] == 10, "dsp/Fft.h");
  float a[4] = {1, 2, 3, 4}, one = 1;
  TDconvolve(a, &one, out, 4, 1, 1);
  expect(out[0] == 2 && out[3] == 0, "dsp/Convolution.h");
  GRLPBUfilter(a, 4, 1, 0, 1, 0.1f);
  expect(a[3] == 4, "dsp/Butterworth.h");
  int32_t count = 0;
  expect(decimateSignal(6, 4, a, out, &count) == 1 && fabsf(DECIMATEby2[47] - 0.477322f) < 1e-6f,
         "dsp/Decimation.h");
  GetInstrumentResponse(0, &re, &im, 1);
  expect(re == 1 && im == 0, "dsp/InstrumentResponse.h");
  float y[4] = {0, 3, 1, 2};
  mdian1(y, 3, &median);
  expect(median == 2, "dsp/Statistics.h");
  QuasiRandomContext context;
  expect(QuasiRandomInitialize(&context, 53) == -1, "dsp/QuasiRandom.h");
  QuasiRandomRelease(&context);
  expect(context.status == -9, "dsp/QuasiRandom.h");
}

static void callModels(void) {
  static float tp[118 * 14], ts[120 * 14];
  static PsNMO curves[210];
  float pTime, sTime, pSlowness, sSlowness;
  ReadJBTables(tp, ts);
  GetJBTimes(tp, ts, &pTime, &sTime, &pSlowness, &sSlowness, 50, 33);
  expect(fabsf(pTime - 530) < 10 && sTime > pTime, "traveltimes/JBTables.h");
  static float table[360 * 18];
  int32_t rows = 0;
  ReadTTTablePhase("iasp91_", "p", table, &rows);
  GetTTTimeSlowness("p", table, rows, &sTime, &sSlowness, 50, 33);
  expect(fabsf(pTime - sTime) < 4, "traveltimes/TTTables.h");
  ReadPsDelayTable("PsNMO", curves, &rows);
  expect(fabsf(timeFromDepth(410, curves[psNMOCurveIndexClosestTo(0, 67)]) - 44.1f) < 0.2f,
         "traveltimes/PsNMOTables.h");

  float block[13] = {0, 90, 0, 10, 0, 0.06f, 0, 0, 50};
  GetBWResponse(block);
  expect(fabsf(block[0]) < 1e-9f && block[8] > 0, "source/BodyWaveResponse.h");
}

int main(void) {
  callFolders();
  callSignals();
  callModels();
  return failures;
}
