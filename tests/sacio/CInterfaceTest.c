// Calls every plain function from C, on the file that the command line names.
#include <stdio.h>
#include <string.h>

#include "krosac/sacio/SacFile.h"
#include "krosac/sacio/SacHeader.h"

#define REQUIRE(condition) \
  if (!(condition)) return fprintf(stderr, "not so in line %d: " #condition "\n", __LINE__)

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
  return remove(path);
}
