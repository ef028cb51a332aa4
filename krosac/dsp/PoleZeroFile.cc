#include "krosac/dsp/PoleZeroFile.h"

#include <algorithm>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <string_view>

#include "krosac/dsp/internal/PolesAndZeros.h"
#include "krosac/platform/internal/Files.h"
#include "krosac/platform/internal/Reason.h"
#include "krosac/platform/internal/Text.h"

namespace krosac {
namespace {

constexpr std::size_t kLineBytes = 256;
constexpr std::string_view kBlanks = " \t\v\f\r";

using Roots = PolesAndZeros::Roots;

// Starts a section with the count on its keyword line, or with the former count if there is none.
void start(Roots& roots, const char* countText) {
  char* end;
  const long number = std::strtol(countText, &end, 10);
  const long count = end == countText ? roots.count : number;
  roots = {.count = static_cast<int>(std::clamp(count, 0L, long{PolesAndZeros::kMaxRoots}))};
}

void addPair(Roots& roots, const char* line) {
  if (roots.listed == PolesAndZeros::kMaxRoots) return;
  char* afterReal;
  char* afterImaginary;
  const float real = std::strtof(line, &afterReal);
  const float imaginary = std::strtof(afterReal, &afterImaginary);
  if (afterReal == line || afterImaginary == afterReal) return;
  roots.pairs[2 * roots.listed] = real;
  roots.pairs[2 * roots.listed + 1] = imaginary;
  ++roots.listed;
}

void copyTo(float* array, const Roots& roots) {
  if (array) std::copy_n(roots.pairs, 2 * std::max(roots.listed, roots.count), array);
}

// Reads the next line without its line feed. Returns false at the end of the file.
bool readLine(std::FILE* file, char (&line)[kLineBytes + 1]) {
  std::size_t length = 0;
  int c;
  while ((c = std::getc(file)) != EOF && c != '\n') {
    if (length < kLineBytes) line[length++] = static_cast<char>(c);
  }
  line[length] = '\0';
  return c != EOF || length > 0;
}

char upperCase(char c) {
  return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}

bool equalIgnoringCase(std::string_view word, std::string_view keyword) {
  return std::equal(word.begin(), word.end(), keyword.begin(), keyword.end(),
                    [](char a, char b) { return upperCase(a) == b; });
}

void parse(std::FILE* file, PolesAndZeros& response, bool& hasKeywords) {
  const CLocaleScope cLocale;
  Roots* open = nullptr;
  for (char line[kLineBytes + 1]; readLine(file, line);) {
    const std::string_view text = line;
    const std::size_t begin = std::min(text.find_first_not_of(kBlanks), text.size());
    const std::size_t end = std::min(text.find_first_of(kBlanks, begin), text.size());
    const std::string_view word = text.substr(begin, end - begin);
    const char* rest = line + end;
    if (equalIgnoringCase(word, "POLES") || equalIgnoringCase(word, "ZEROS")) {
      open = equalIgnoringCase(word, "POLES") ? &response.poles : &response.zeros;
      start(*open, rest);
      hasKeywords = true;
    } else if (equalIgnoringCase(word, "CONSTANT")) {
      char* afterConstant;
      const float constant = std::strtof(rest, &afterConstant);
      if (afterConstant != rest) response.constant = constant;
      hasKeywords = true;
    } else if (open) {
      addPair(*open, line);
    }
  }
}

bool read(const char* path, PolesAndZeros& response, bool& hasKeywords) {
  const Stream file = openRegularStream(path);
  if (!file) return false;
  parse(file.get(), response, hasKeywords);
  if (!std::ferror(file.get())) return true;
  setSystemReason(path);
  return false;
}

}  // namespace

bool readPoleZeroFile(const char* path, PolesAndZeros& response, bool& hasKeywords) {
  clearReason();
  response = {};
  hasKeywords = false;
  if (read(path, response, hasKeywords)) return true;
  std::fprintf(stderr, "Problem opening the pole-zero file %s\n", path ? path : "(null)");
  return false;
}

int ParsePoleZeroFile(const char* path, float poles[], float zeros[], float* C, int* nPoles,
                      int* nZeros) {
  PolesAndZeros response;
  bool hasKeywords;
  if (!readPoleZeroFile(path, response, hasKeywords)) return -1;
  copyTo(poles, response.poles);
  copyTo(zeros, response.zeros);
  if (C) *C = response.constant;
  if (nPoles) *nPoles = response.poles.count;
  if (nZeros) *nZeros = response.zeros.count;
  return 0;
}

}  // namespace krosac
