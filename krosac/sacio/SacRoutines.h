// Routines that Fortran can call: SAC files, and header fields by name. All work on one header
// record, ghdr, which the whole process shares; use them from one thread at a time.
//
// Every argument is an address. The lengths of the texts follow the other arguments as `int`
// values, in the order of the texts. Fortran compilers add these lengths; other callers must pass
// them. A negative length counts as 0. A NUL ends a text before its length does.
//
// A file name ends at its first white space, so it may be padded with blanks. A name of more than
// 511 characters fails like a file that cannot be opened. The file routines set `error` to 0 on
// success and -1 on any failure. A null input is a failure and changes nothing; a null output or
// error is skipped. After a failure or warning lastReason() says why.
//
// Field names may be in upper or lower case. All their characters count: "DELTA   " with length 8
// does not match "DELTA", as intended. A warning prints a name without a match in upper case and in
// full. The routines for fields never set `error`.
#ifndef KROSAC_SACIO_SACROUTINES_H
#define KROSAC_SACIO_SACROUTINES_H

#include <stdint.h>

#include "krosac/platform/Export.h"
#include "krosac/sacio/SacHeader.h"

KROSAC_C_BEGIN

// The header that all these routines share; zeros until one of them fills it.
extern KROSAC_API SacHeader ghdr;

// Copies kSacHeaderTemplate into ghdr. NVHDR is undefined until wsac0_ writes the header.
KROSAC_API void newhdr_(void);

// A second name of newhdr_.
KROSAC_API void inihdr_(void);

// Reads an evenly sampled file: its header into ghdr, at most `max` samples, their number `n`, and
// B and DELTA in seconds. If `max` is smaller than NPTS, ghdr keeps the file's NPTS, as intended.
// Reading the samples is attempted even if the header failed; each failure prints a message on
// standard output. ghdr is unchanged if the header cannot be read; n, B and DELTA are unchanged if
// the samples cannot be read, which includes NPTS = 0.
KROSAC_API void rsac1_(const char* path, float* samples, int32_t* n, float* b, float* delta,
                       const int32_t* max, int32_t* error, int pathLength);

// Reads an x-y file: its header into ghdr as rsac1_ does, then n values of y (the first block) and
// n values of x as ReadSAC2 does. Failures print messages on standard output.
KROSAC_API void rsac2_(const char* path, float* y, int32_t* n, float* x, const int32_t* max,
                       int32_t* error, int pathLength);

// Writes ghdr and NPTS values of y. E = (NPTS - 1) * DELTA + B is computed in single precision and
// set in the file only. An undefined NVHDR becomes 6 in ghdr too. x is never written, even if ghdr
// describes an x-y file; this is intended. NPTS < 1 writes the header and is a failure. Prints
// nothing.
KROSAC_API void wsac0_(const char* path, const float* x, const float* y, int32_t* error,
                       int pathLength);

// Calls WriteSAC1: n samples with interval `delta` and begin time `b` in seconds. ghdr is neither
// used nor changed. Prints nothing.
KROSAC_API void wsac1_(const char* path, const float* samples, const int32_t* n, const float* b,
                       const float* delta, int32_t* error, int pathLength);

// Calls WriteSAC2: n values of y as the first block, n values of x as the second. ghdr is neither
// used nor changed. Prints the messages of WriteSAC2.
KROSAC_API void wsac2_(const char* path, const float* y, const int32_t* n, const float* x,
                       int32_t* error, int pathLength);

// Read and write a float field of ghdr: B, E, DELTA, DEPMIN, DEPMEN, DEPMAX, EVLA, EVLO, EVDP,
// STLA, STLO, STEL, CMPAZ, CMPINC, DIST, GCARC, AZ, BAZ, O, A, T0 to T9 and USER0 to USER9. Another
// name prints a warning on standard output; it reads as -12345.0 and writes nothing.
KROSAC_API void getfhv_(const char* name, float* value, int32_t* error, int nameLength);
KROSAC_API void setfhv_(const char* name, const float* value, int32_t* error, int nameLength);

// Read and write an integer field of ghdr: NZYEAR, NZJDAY, NZHOUR, NZMIN, NZSEC, NZMSEC, NVHDR or
// NPTS. Setting NPTS prints its new value on standard output. Another name prints a warning there;
// it reads as -12345 and writes nothing.
KROSAC_API void getnhv_(const char* name, int32_t* value, int32_t* error, int nameLength);
KROSAC_API void setnhv_(const char* name, const int32_t* value, int32_t* error, int nameLength);

// Reads KCMPNM or KSTNM of ghdr into the first 8 characters of the text, with blanks and without a
// NUL. Another name prints the warning of getfhv_ on standard error, as intended, and sets the
// first 6 characters to "-12345". The rest of the text is unchanged. Nothing is written beyond
// `textLength`.
KROSAC_API void getkhv_(const char* name, char* text, int32_t* error, int nameLength,
                        int textLength);

// Prints a warning on standard error and does nothing, as intended: text fields cannot be set by
// name.
KROSAC_API void setkhv_(const char* name, const char* text, int32_t* error, int nameLength,
                        int textLength);

// Sets an enumerated field of ghdr: IFTYPE to 1 for the value name ITIME, which is compared as
// field names are. Another value name does nothing, as intended. Another field name prints a
// warning on standard output.
KROSAC_API void setihv_(const char* name, const char* value, int32_t* error, int nameLength,
                        int valueLength);

// Sets LEVEN of ghdr to the caller's integer, unchanged. Another name prints a warning on standard
// output.
KROSAC_API void setlhv_(const char* name, const int32_t* value, int32_t* error, int nameLength);

// Number of characters before the first white space (blank, tab, line feed, vertical tab, form
// feed, carriage return) or NUL, at most `max`; 0 if `max` < 1 or the text is null. Fortran calls
// it as fslen(text).
KROSAC_API int fslen(const char* text, int max);

// fslen with the length of the text that a Fortran compiler adds.
KROSAC_API int fslen_(const char* text, int textLength);

// Copies the characters that fslen counts and appends a NUL. The destination needs room for max + 1
// characters. Returns the destination.
KROSAC_API char* fscpy(char* destination, const char* source, int max);

// Writes n blanks and a NUL, so the text needs room for n + 1 characters: from Fortran, pass all
// but the last character of a variable: fclearstring(text(1:n)). Returns n; 0 if n is negative. A
// null text is not written.
KROSAC_API int fclearstring_(char* text, int n);

// Prints "Brevlo library version: myVersionNumber". The fixed word for the version is intended.
KROSAC_API void printSacIOVersion(void);

KROSAC_C_END

#endif
