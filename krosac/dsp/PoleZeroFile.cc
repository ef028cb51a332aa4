#include "krosac/dsp/PoleZeroFile.h"

#include <algorithm>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <string_view>

#include "krosac/dsp/internal/PoleZeroFile.h"
#include "krosac/platform/internal/Files.h"
#include "krosac/platform/internal/Text.h"

namespace krosac {
namespace {

constexpr int kMaxEntries = 32;
constexpr std::size_t kLineBytes = 256;
constexpr std::string_view kBlanks = " \t\v\f\r";

struct Section {
  float values[2 * kMaxEntries] = {};
  int listed = 0;
  int count = 0;

  void start(const char* countText) {
    std::fill(std::begin(values), std::end(values), 0.0f);
    listed = 0;
    char* end;
    const long number = std::strtol(countText, &end, 10);
    if (end != countText) count = static_cast<int>(std::clamp(number, 0L, long{kMaxEntries}));
  }

  void add(const char* line) {
    if (listed == kMaxEntries) return;
    char* afterReal;
    char* afterImaginary;
    const float real = std::strtof(line, &afterReal);
    const float imaginary = std::strtof(afterReal, &afterImaginary);
    if (afterReal == line || afterImaginary == afterReal) return;
    values[2 * listed] = real;
    values[2 * listed + 1] = imaginary;
    ++listed;
  }

  void copyTo(float* array) const { std::copy_n(values, 2 * std::max(listed, count), array); }
};

struct Response {
  Section poles;
  Section zeros;
  float constant = 1.0f;
  bool hasKeywords = false;
};

// The next line without its end. False behind the last one.
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

void parse(std::FILE* file, Response& response) {
  const CLocaleScope cLocale;
  Section* open = nullptr;
  for (char line[kLineBytes + 1]; readLine(file, line);) {
    const std::string_view text = line;
    const std::size_t begin = std::min(text.find_first_not_of(kBlanks), text.size());
    const std::size_t end = std::min(text.find_first_of(kBlanks, begin), text.size());
    const std::string_view word = text.substr(begin, end - begin);
    const char* rest = line + end;
    if (equalIgnoringCase(word, "POLES") || equalIgnoringCase(word, "ZEROS")) {
      open = equalIgnoringCase(word, "POLES") ? &response.poles : &response.zeros;
      open->start(rest);
      response.hasKeywords = true;
    } else if (equalIgnoringCase(word, "CONSTANT")) {
      char* afterConstant;
      const float constant = std::strtof(rest, &afterConstant);
      if (afterConstant != rest) response.constant = constant;
      response.hasKeywords = true;
    } else if (open) {
      open->add(line);
    }
  }
}

bool read(const char* path, Response& response) {
  const Stream file = openRegularStream(path);
  if (!file) return false;
  parse(file.get(), response);
  return !std::ferror(file.get());
}

}  // namespace

int parsePoleZeroFile(const char* path, float poles[], float zeros[], float* C, int* nPoles,
                      int* nZeros, bool* hasKeywords) {
  Response response;
  if (!read(path, response)) {
    std::fprintf(stderr, "Problem opening the pole-zero file %s\n", path ? path : "(null)");
    return -1;
  }
  response.poles.copyTo(poles);
  response.zeros.copyTo(zeros);
  *C = response.constant;
  *nPoles = response.poles.count;
  *nZeros = response.zeros.count;
  *hasKeywords = response.hasKeywords;
  return 0;
}

int ParsePoleZeroFile(const char* path, float poles[], float zeros[], float* C, int* nPoles,
                      int* nZeros) {
  bool hasKeywords;
  return parsePoleZeroFile(path, poles, zeros, C, nPoles, nZeros, &hasKeywords);
}

}  // namespace krosac
