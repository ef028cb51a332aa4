// The 632-byte header record of SAC files.
//
// A file consists of the header and NPTS float32 samples; an x-y file (LEVEN = 0) has a second
// block of NPTS values after them. Words have the byte order of the machine that wrote the file.
#ifndef KROSAC_SACIO_SACHEADER_H
#define KROSAC_SACIO_SACHEADER_H

#include <assert.h>
#include <stddef.h>
#include <stdint.h>

#include "krosac/platform/Export.h"
#include "krosac/platform/Numbers.h"

KROSAC_C_BEGIN

// The record as stored in a file: 70 floats, 40 integers and 23 texts. Integers named I... are
// enumerated values, those named L... are logicals (0 false, 1 true). Texts are padded with blanks
// to their full width, have no NUL, and are compared and copied as raw bytes. "Time" means seconds
// relative to the reference time, which is NZYEAR to NZMSEC.
typedef struct SacHeader {
  float DELTA;      // sampling interval, s
  float DEPMIN;     // minimum amplitude
  float DEPMAX;     // maximum amplitude
  float SCALE;      // amplitude scale factor
  float ODELTA;     // observed sampling interval, s
  float B;          // time of the first sample
  float E;          // time of the last sample
  float O;          // time of the event's origin
  float A;          // time of the first arrival (P)
  float INTERNAL1;  // reserved
  float T0;         // time pick 0
  float T1;         // time pick 1
  float T2;         // time pick 2
  float T3;         // time pick 3
  float T4;         // time pick 4
  float T5;         // time pick 5
  float T6;         // time pick 6
  float T7;         // time pick 7
  float T8;         // time pick 8
  float T9;         // time pick 9
  float F;          // time of the event's end (fini)
  float RESP0;      // instrument response parameter 0
  float RESP1;      // instrument response parameter 1
  float RESP2;      // instrument response parameter 2
  float RESP3;      // instrument response parameter 3
  float RESP4;      // instrument response parameter 4
  float RESP5;      // instrument response parameter 5
  float RESP6;      // instrument response parameter 6
  float RESP7;      // instrument response parameter 7
  float RESP8;      // instrument response parameter 8
  float RESP9;      // instrument response parameter 9
  float STLA;       // station latitude, degrees north
  float STLO;       // station longitude, degrees east
  float STEL;       // station elevation, m
  float STDP;       // station depth
  float EVLA;       // event latitude, degrees north
  float EVLO;       // event longitude, degrees east
  float EVEL;       // event elevation
  float EVDP;       // event depth, km
  float MAG;        // event magnitude
  float USER0;      // user value 0
  float USER1;      // user value 1
  float USER2;      // user value 2
  float USER3;      // user value 3
  float USER4;      // user value 4
  float USER5;      // user value 5
  float USER6;      // user value 6
  float USER7;      // user value 7
  float USER8;      // user value 8
  float USER9;      // user value 9
  float DIST;       // epicentral distance, km
  float AZ;         // azimuth from the event to the station, degrees
  float BAZ;        // back-azimuth from the station to the event, degrees
  float GCARC;      // epicentral distance as great-circle arc, degrees
  float INTERNAL2;  // reserved
  float INTERNAL3;  // reserved
  float DEPMEN;     // mean amplitude
  float CMPAZ;      // component azimuth, degrees clockwise from north
  float CMPINC;     // component incidence angle, degrees from vertical
  float XMINIMUM;   // minimum x of an x-y file
  float XMAXIMUM;   // maximum x of an x-y file
  float YMINIMUM;   // minimum y of an x-y file
  float YMAXIMUM;   // maximum y of an x-y file
  float UNUSED1;    // reserved
  float UNUSED2;    // reserved
  float UNUSED3;    // reserved
  float UNUSED4;    // reserved
  float UNUSED5;    // reserved
  float UNUSED6;    // reserved
  float UNUSED7;    // reserved

  int32_t NZYEAR;     // reference time: year
  int32_t NZJDAY;     // reference time: day of the year, 1 to 366
  int32_t NZHOUR;     // reference time: hour
  int32_t NZMIN;      // reference time: minute
  int32_t NZSEC;      // reference time: second
  int32_t NZMSEC;     // reference time: millisecond
  int32_t NVHDR;      // header version
  int32_t NORID;      // origin identifier
  int32_t NEVID;      // event identifier
  int32_t NPTS;       // number of samples
  int32_t INTERNAL4;  // reserved
  int32_t NWFID;      // waveform identifier
  int32_t NXSIZE;     // length of a spectral file
  int32_t NYSIZE;     // width of a spectral file
  int32_t UNUSED8;    // reserved
  int32_t IFTYPE;     // file type: kSacTimeSeries or kSacXY
  int32_t IDEP;       // kind of the dependent variable
  int32_t IZTYPE;     // what the reference time is
  int32_t UNUSED9;    // reserved
  int32_t IINST;      // instrument type
  int32_t ISTREG;     // station region
  int32_t IEVREG;     // event region
  int32_t IEVTYP;     // event (source) type
  int32_t IQUAL;      // data quality
  int32_t ISYNTH;     // synthetic flag
  int32_t IMAGTYP;    // magnitude type
  int32_t IMAGSRC;    // magnitude source
  int32_t UNUSED10;   // reserved
  int32_t UNUSED11;   // reserved
  int32_t UNUSED12;   // reserved
  int32_t UNUSED13;   // reserved
  int32_t UNUSED14;   // reserved
  int32_t UNUSED15;   // reserved
  int32_t UNUSED16;   // reserved
  int32_t UNUSED17;   // reserved
  int32_t LEVEN;      // samples are evenly spaced
  int32_t LPSPOL;     // station components have positive polarity
  int32_t LOVROK;     // file may be overwritten
  int32_t LCALDA;     // DIST, AZ, BAZ and GCARC are computed from the locations
  int32_t UNUSED18;   // reserved; word 109, which the writers set to 0

  char KSTNM[8];   // station name
  char KEVNM[16];  // event name
  char KHOLE[8];   // location (hole) identifier
  char KO[8];      // label of O
  char KA[8];      // label of A
  char KT0[8];     // label of T0
  char KT1[8];     // label of T1
  char KT2[8];     // label of T2
  char KT3[8];     // label of T3
  char KT4[8];     // label of T4
  char KT5[8];     // label of T5
  char KT6[8];     // label of T6
  char KT7[8];     // label of T7
  char KT8[8];     // label of T8
  char KT9[8];     // label of T9
  char KF[8];      // label of F
  char KUSER0[8];  // user text 0
  char KUSER1[8];  // user text 1
  char KUSER2[8];  // user text 2
  char KCMPNM[8];  // component name
  char KNETWK[8];  // network name
  char KDATRD[8];  // date on which the data were read
  char KINST[8];   // instrument name
} SacHeader;

static_assert(sizeof(SacHeader) == 632, "the header is 632 bytes");
static_assert(offsetof(SacHeader, NZYEAR) == 280, "70 floats");
static_assert(offsetof(SacHeader, KSTNM) == 440, "40 integers");

// Size of the header and offset of the first sample in a file, in bytes.
KROSAC_CONSTANT size_t kSacHeaderBytes = sizeof(SacHeader);

// Values that the library writes.
KROSAC_CONSTANT int32_t kSacHeaderVersion = 6;     // NVHDR
KROSAC_CONSTANT int32_t kSacTimeSeries = 1;        // IFTYPE: evenly sampled ("ITIME")
KROSAC_CONSTANT int32_t kSacXY = 4;                // IFTYPE: x-y data, unevenly sampled
KROSAC_CONSTANT int32_t kSacUnknownDependent = 5;  // IDEP: unknown kind
KROSAC_CONSTANT int32_t kSacReferenceIsBegin = 9;  // IZTYPE: the reference time is that of B

// New headers are copies of this template. All fields are undefined except IFTYPE (kSacTimeSeries),
// IDEP (kSacUnknownDependent), LEVEN, LOVROK and LCALDA (1). NVHDR is undefined, as intended: the
// function that builds a header sets it.
extern KROSAC_API const SacHeader kSacHeaderTemplate;

KROSAC_C_END

#endif
