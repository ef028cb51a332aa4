// Routines for Fortran, and for whatever calls like it: SAC files and header fields by name, over
// one header record, ghdr, that the whole process shares. For one thread at a time.
//
// Every argument is an address; the length of each text follows as an `int` by value behind all
// other arguments, in the order of the texts. A Fortran compiler adds these lengths itself, other
// callers pass them. A negative length counts as 0, and a NUL ends a text before its length does.
//
// File names end at their first white space, so that blank padding does no harm; a name above 511
// characters fails as a file that cannot be opened does. `error` becomes 0 for success and -1 for
// any failure. A null array, count or value that is to be read is a failure; a null output or error
// is passed over.
//
// Field names count in upper or lower case and in all their characters: "DELTA   " with length 8
// is not "DELTA", as intended. A name without a match is told as stated, in upper case and in full,
// however long. The routines for fields never touch `error`.
#ifndef KROSAC_SACIO_SACROUTINES_H
#define KROSAC_SACIO_SACROUTINES_H

#include <stdint.h>

#include "krosac/platform/Export.h"
#include "krosac/sacio/SacHeader.h"

KROSAC_C_BEGIN

// The header that all routines here share; all zeros until one of them fills it.
extern KROSAC_API SacHeader ghdr;

// Copies kSacHeaderTemplate into ghdr. NVHDR so stays undefined until wsac0_ writes the header.
KROSAC_API void newhdr_(void);

// The same as newhdr_ under its second name.
KROSAC_API void inihdr_(void);

// Reads an evenly sampled file: its header into ghdr, at most `max` samples, their number `n`, and
// B and DELTA in seconds. ghdr keeps the file's full NPTS where `max` is smaller, as intended. The
// samples are tried also after the header failed; each failure is told on standard output. A header
// that cannot be read leaves ghdr as it was, samples that cannot (as by ReadSACfile, so also none)
// leave n, B and DELTA as they were.
KROSAC_API void rsac1_(const char* path, float* samples, int32_t* n, float* b, float* delta,
                       const int32_t* max, int32_t* error, int pathLength);

// Reads an x-y file: its header into ghdr as rsac1_ does, then n values of y, the first block, and
// n of x, as ReadSAC2 reads them. Failures are told on standard output.
KROSAC_API void rsac2_(const char* path, float* y, int32_t* n, float* x, const int32_t* max,
                       int32_t* error, int pathLength);

// Writes ghdr, with E = (NPTS - 1) * DELTA + B computed in single precision for the file alone, and
// NPTS values of y. An undefined NVHDR becomes 6, also in ghdr. x is never written, even where ghdr
// is that of an x-y file; this is intended. NPTS below 1 writes the header and is a failure. Tells
// nothing.
KROSAC_API void wsac0_(const char* path, const float* x, const float* y, int32_t* error,
                       int pathLength);

// Writes an evenly sampled file by WriteSAC1: n samples, `delta` seconds apart, the first at `b`
// seconds. ghdr is neither used nor changed. Tells nothing.
KROSAC_API void wsac1_(const char* path, const float* samples, const int32_t* n, const float* b,
                       const float* delta, int32_t* error, int pathLength);

// Writes an x-y file of n points by WriteSAC2: the block of y, then that of x. ghdr is neither used
// nor changed. Failures are told on standard output as WriteSAC2 tells them.
KROSAC_API void wsac2_(const char* path, const float* y, const int32_t* n, const float* x,
                       int32_t* error, int pathLength);

// Read and write a float field of ghdr: B, E, DELTA, DEPMIN, DEPMEN, DEPMAX, EVLA, EVLO, EVDP,
// STLA, STLO, STEL, CMPAZ, CMPINC, DIST, GCARC, AZ, BAZ, O, A, T0 to T9 and USER0 to USER9. With
// another name, told on standard output, the value read is -12345.0 and nothing is written.
KROSAC_API void getfhv_(const char* name, float* value, int32_t* error, int nameLength);
KROSAC_API void setfhv_(const char* name, const float* value, int32_t* error, int nameLength);

// Read and write an integer field of ghdr: NZYEAR, NZJDAY, NZHOUR, NZMIN, NZSEC, NZMSEC, NVHDR and
// NPTS, whose new value is also told on standard output. With another name, told there too, the
// value read is -12345 and nothing is written.
KROSAC_API void getnhv_(const char* name, int32_t* value, int32_t* error, int nameLength);
KROSAC_API void setnhv_(const char* name, const int32_t* value, int32_t* error, int nameLength);

// Reads KCMPNM or KSTNM of ghdr: the first 8 characters of the text become those of the field,
// blanks included and without a NUL. With another name, told on standard error in the words of
// getfhv_ as intended, the first 6 become "-12345". The rest of the text stays as it was, and
// nothing is written beyond `textLength`.
KROSAC_API void getkhv_(const char* name, char* text, int32_t* error, int nameLength,
                        int textLength);

// Text fields cannot be set by name; says so on standard error and does nothing, as intended.
KROSAC_API void setkhv_(const char* name, const char* text, int32_t* error, int nameLength,
                        int textLength);

// Sets an enumerated field of ghdr: IFTYPE to 1 by the value name ITIME, which is compared as field
// names are. Another value changes nothing and tells nothing, as intended; another field is told on
// standard output.
KROSAC_API void setihv_(const char* name, const char* value, int32_t* error, int nameLength,
                        int valueLength);

// Sets a logical field of ghdr: LEVEN, to the caller's integer unchanged. Another name is told on
// standard output.
KROSAC_API void setlhv_(const char* name, const int32_t* value, int32_t* error, int nameLength);

// The number of characters before the first white space (blank, tab, line feed, vertical tab, form
// feed, carriage return) or NUL, at most `max`; 0 for a `max` below 1 or no text.
KROSAC_API int fslen(const char* text, int max);

// fslen for Fortran.
KROSAC_API int fslen_(const char* text, int textLength);

// Copies what fslen counts and adds a NUL, so that the destination needs room for max + 1
// characters (fslen + 1 are written). Returns the destination.
KROSAC_API char* fscpy(char* destination, const char* source, int max);

// Writes n blanks and a NUL behind them, so that the text needs room for n + 1 characters: from
// Fortran give all but the last character of a variable. Returns n; without a text writes nothing.
KROSAC_API int fclearstring_(char* text, int n);

// Prints "Brevlo library version: myVersionNumber"; the version is that fixed word, as intended.
KROSAC_API void printSacIOVersion(void);

KROSAC_C_END

#endif
