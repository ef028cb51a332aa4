// Calls every plain function from C, on the file that the command line names.
#include <stdio.h>
#include <string.h>

#include "krosac/sacio/SacFile.h"
#include "krosac/sacio/SacHeader.h"
#include "krosac/sacio/SacRoutines.h"

#define REQUIRE(condition) \
  if (!(condition)) return fprintf(stderr, "not so in line %d: " #condition "\n", __LINE__)

// The routines as Fortran calls them, with the lengths of the texts given.
static int callRoutines(const char* path) {
  const float x[2] = {1.0f, 4.0f}, y[2] = {-2.0f, 8.0f}, half = 0.5f, seven = 7.0f;
  const int32_t two = 2, no = 0;
  const int size = (int)strlen(path);
  float first[2], second[2], delta, b, e;
  int32_t n, version, error;
  char text[9] = "........";

  inihdr_();
  newhdr_();
  setfhv_("B", &seven, &error, 1);
  setfhv_("DELTA", &half, &error, 5);
  setnhv_("NPTS", &two, &error, 4);
  setihv_("IFTYPE", "ITIME", &error, 6, 5);
  setlhv_("LEVEN", &no, &error, 5);
  setkhv_("KSTNM", "ANMO", &error, 5, 4);
  wsac0_(path, x, y, &error, size);
  memset(&ghdr, 0, sizeof ghdr);
  rsac1_(path, first, &n, &b, &delta, &two, &error, size);
  REQUIRE(error == 0 && n == 2 && b == 7.0f && delta == 0.5f && !memcmp(first, y, sizeof y));
  getfhv_("E", &e, &error, 1);
  getnhv_("NVHDR", &version, &error, 5);
  getkhv_("KSTNM", text, &error, 5, 8);
  REQUIRE(e == 7.5f && version == 6 && ghdr.LEVEN == 0 && !strcmp(text, "-12345  "));

  wsac1_(path, x, &two, &seven, &half, &error, size);
  REQUIRE(error == 0 && IsSacFile(path) == 1);
  wsac2_(path, y, &two, x, &error, size);
  rsac2_(path, first, &n, second, &two, &error, size);
  REQUIRE(error == 0 && n == 2 && !memcmp(first, y, sizeof y) && !memcmp(second, x, sizeof x));

  REQUIRE(fslen(fscpy(text, "ABC DEF", 7), 8) == 3 && fslen_(text, 2) == 2);
  REQUIRE(fclearstring_(text, 8) == 8 && !strcmp(text, "        "));
  printSacIOVersion();
  return 0;
}

int main(int argc, char** argv) {
  const char* path = argc == 2 ? argv[1] : "";
  const float x[2] = {1.0f, 4.0f}, y[2] = {-2.0f, 8.0f};
  float first[2], second[2], delta, b;
  int32_t n, status;
  SacHeader header;

  NewSacHeader(&header);
  REQUIRE(header.NVHDR == kSacHeaderVersion && kSacHeaderTemplate.NVHDR == kSacUndefinedInt);
  REQUIRE(!memcmp(header.KINST, kSacUndefinedText, sizeof header.KINST));
  header.NPTS = 2;
  header.DELTA = 0.5f;
  WriteSACfile(path, y, &status, header);
  REQUIRE(status == 0 && IsSacFile(path) == 1);
  ReadSACHeader(path, &header, &status);
  REQUIRE(status == 0 && header.DELTA == 0.5f && header.O == kSacUndefinedFloat);
  ReadSACfile(path, first, &header, 2, &status);
  REQUIRE(status == 0 && !memcmp(first, y, sizeof y));

  WriteSAC1(path, x, 2, &status, 0.25f, 7.0f);
  ReadSAC1(path, first, &n, &delta, &b, 2, &status);
  REQUIRE(status == 0 && n == 2 && delta == 0.25f && b == 7.0f && !memcmp(first, x, sizeof x));

  WriteSAC2(path, 2, x, y, &status);
  ReadSAC2(path, &n, second, first, 2, &status);
  REQUIRE(status == 0 && n == 2 && !memcmp(first, y, sizeof y) && !memcmp(second, x, sizeof x));
  REQUIRE(!callRoutines(path));
  return remove(path);
}
