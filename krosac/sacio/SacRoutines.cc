#include "krosac/sacio/SacRoutines.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <string_view>

#include "krosac/platform/internal/Text.h"
#include "krosac/sacio/SacFile.h"
#include "krosac/sacio/internal/SacParts.h"

namespace krosac {
namespace {

// The header fields that can be reached by name.

enum class FieldKind { kFloat, kInteger, kText, kEnumerated, kLogical };

struct NamedField {
  FieldKind kind;
  std::string_view name;
  std::size_t offset;  // in SacHeader, bytes
};

#define FIELD(KIND, NAME)                             \
  NamedField {                                        \
    FieldKind::KIND, #NAME, offsetof(SacHeader, NAME) \
  }

constexpr NamedField kNamedFields[] = {
    FIELD(kFloat, B),        FIELD(kFloat, E),        FIELD(kFloat, DELTA),
    FIELD(kFloat, DEPMIN),   FIELD(kFloat, DEPMEN),   FIELD(kFloat, DEPMAX),
    FIELD(kFloat, EVLA),     FIELD(kFloat, EVLO),     FIELD(kFloat, EVDP),
    FIELD(kFloat, STLA),     FIELD(kFloat, STLO),     FIELD(kFloat, STEL),
    FIELD(kFloat, CMPAZ),    FIELD(kFloat, CMPINC),   FIELD(kFloat, DIST),
    FIELD(kFloat, GCARC),    FIELD(kFloat, AZ),       FIELD(kFloat, BAZ),
    FIELD(kFloat, O),        FIELD(kFloat, A),        FIELD(kFloat, T0),
    FIELD(kFloat, T1),       FIELD(kFloat, T2),       FIELD(kFloat, T3),
    FIELD(kFloat, T4),       FIELD(kFloat, T5),       FIELD(kFloat, T6),
    FIELD(kFloat, T7),       FIELD(kFloat, T8),       FIELD(kFloat, T9),
    FIELD(kFloat, USER0),    FIELD(kFloat, USER1),    FIELD(kFloat, USER2),
    FIELD(kFloat, USER3),    FIELD(kFloat, USER4),    FIELD(kFloat, USER5),
    FIELD(kFloat, USER6),    FIELD(kFloat, USER7),    FIELD(kFloat, USER8),
    FIELD(kFloat, USER9),    FIELD(kInteger, NZYEAR), FIELD(kInteger, NZJDAY),
    FIELD(kInteger, NZHOUR), FIELD(kInteger, NZMIN),  FIELD(kInteger, NZSEC),
    FIELD(kInteger, NZMSEC), FIELD(kInteger, NVHDR),  FIELD(kInteger, NPTS),
    FIELD(kText, KCMPNM),    FIELD(kText, KSTNM),     FIELD(kEnumerated, IFTYPE),
    FIELD(kLogical, LEVEN),
};

#undef FIELD

template <typename T>
T valueOr(const T* value, T otherwise) {
  return value ? *value : otherwise;
}

char upper(char c) {
  return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}

// A file name argument. A name that is too long has a null path, which the plain functions refuse.
class FileName {
 public:
  FileName(const char* text, int length) : text_(text ? text : ""), length_(fslen(text_, length)) {
    if (fits()) fscpy(path_, text_, length_);
  }
  const char* path() const { return fits() ? path_ : nullptr; }
  int length() const { return length_; }
  const char* text() const { return text_; }

  // Stores the error argument, and the reason if the name is too long.
  void setError(std::int32_t* error, bool good) const {
    setOutput(error, good ? 0 : -1);
    if (!fits()) setReason("file name of %d characters, at most 511 are possible", length_);
  }

 private:
  bool fits() const { return length_ < static_cast<int>(sizeof path_); }

  char path_[512];
  const char* text_;
  int length_;
};

// The name of a field or a value, compared and printed in upper case.
class Name {
 public:
  Name(const char* text, int length)
      : text_(text, text && length > 0 ? strnlen(text, static_cast<std::size_t>(length)) : 0) {}

  bool is(std::string_view other) const { return std::ranges::equal(text_, other, {}, upper); }
  void warn(std::FILE* stream, const char* before, const char* after) const {
    std::fputs(before, stream);
    for (const char c : text_) std::fputc(upper(c), stream);
    std::fputs(after, stream);
  }
  void setUnknownReason(const char* what) const {
    setReason("no %s is named \"%.*s\"", what, static_cast<int>(text_.size()), text_.data());
  }

 private:
  std::string_view text_;
};

// The field of this kind and name in ghdr; null, with a reason, if there is none.
template <typename T>
T* find(FieldKind kind, const Name& name) {
  clearReason();
  for (const NamedField& field : kNamedFields) {
    if (field.kind == kind && name.is(field.name))
      return reinterpret_cast<T*>(reinterpret_cast<char*>(&ghdr) + field.offset);
  }
  name.setUnknownReason("header field of this type");
  return nullptr;
}

// Stores an input in a field; without an input sets the reason.
template <typename T>
void setField(T* field, const T* value) {
  if (value) {
    *field = *value;
  } else {
    setReason("no value given");
  }
}

void printUnread(const char* what, const FileName& file) {
  std::printf("Problem reading the %s (io_error = %d, name = %.*s)\n", what, -1, file.length(),
              file.text());
}

void readGlobalHeader(const FileName& file, const char* what) {
  SacHeader header;
  std::int32_t error = -1;
  ReadSACHeader(file.path(), &header, &error);
  if (error == 0) {
    ghdr = header;
  } else {
    printUnread(what, file);
  }
}

}  // namespace

SacHeader ghdr = {};

void newhdr_() {
  ghdr = kSacHeaderTemplate;
}

void inihdr_() {
  newhdr_();
}

void rsac1_(const char* path, float* samples, std::int32_t* n, float* b, float* delta,
            const std::int32_t* max, std::int32_t* error, int pathLength) {
  const FileName file(path, pathLength);
  std::int32_t outcome = -1;
  readGlobalHeader(file, "SAC Header");
  ReadSAC1(file.path(), samples, n, delta, b, valueOr(max, -1), &outcome);
  if (outcome == -1) printUnread("SAC File", file);
  file.setError(error, outcome == 0);
}

void rsac2_(const char* path, float* y, std::int32_t* n, float* x, const std::int32_t* max,
            std::int32_t* error, int pathLength) {
  const FileName file(path, pathLength);
  std::int32_t outcome = -1;
  readGlobalHeader(file, "SAC XY Header");
  ReadSAC2(file.path(), n, x, y, valueOr(max, -1), &outcome);
  if (outcome == -1) printUnread("SAC XY File", file);
  file.setError(error, outcome == 0);
}

void wsac0_(const char* path, const float*, const float* y, std::int32_t* error, int pathLength) {
  clearReason();
  const FileName file(path, pathLength);
  if (ghdr.NVHDR == kSacUndefinedInt) ghdr.NVHDR = kSacHeaderVersion;
  file.setError(error, writeEvenFile(file.path(), ghdr, y));
}

void wsac1_(const char* path, const float* samples, const std::int32_t* n, const float* b,
            const float* delta, std::int32_t* error, int pathLength) {
  const FileName file(path, pathLength);
  std::int32_t outcome = -1;
  if (n && b && delta) {
    WriteSAC1(file.path(), samples, *n, &outcome, *delta, *b);
  } else {
    setReason("no count, begin time or interval given");
  }
  file.setError(error, outcome == 0);
}

void wsac2_(const char* path, const float* y, const std::int32_t* n, const float* x,
            std::int32_t* error, int pathLength) {
  const FileName file(path, pathLength);
  std::int32_t outcome = -1;
  if (file.path()) {
    WriteSAC2(file.path(), valueOr(n, -1), x, y, &outcome);
  } else {
    std::printf("Problem creating file %.*s\n", file.length(), file.text());
  }
  file.setError(error, outcome == 0);
}

void getfhv_(const char* name, float* value, std::int32_t*, int nameLength) {
  const Name wanted(name, nameLength);
  const float* field = find<float>(FieldKind::kFloat, wanted);
  if (!field) wanted.warn(stdout, "Warning ", " not matched in getfhv\n");
  setOutput(value, valueOr(field, kSacUndefinedFloat));
}

void setfhv_(const char* name, const float* value, std::int32_t*, int nameLength) {
  const Name wanted(name, nameLength);
  float* field = find<float>(FieldKind::kFloat, wanted);
  if (!field) return wanted.warn(stdout, "Warning ", " not matched in setfhv\n");
  setField(field, value);
}

void getnhv_(const char* name, std::int32_t* value, std::int32_t*, int nameLength) {
  const Name wanted(name, nameLength);
  const std::int32_t* field = find<std::int32_t>(FieldKind::kInteger, wanted);
  if (!field) wanted.warn(stdout, "Warning ", " not matched in getnhv\n");
  setOutput(value, valueOr(field, kSacUndefinedInt));
}

void setnhv_(const char* name, const std::int32_t* value, std::int32_t*, int nameLength) {
  const Name wanted(name, nameLength);
  std::int32_t* field = find<std::int32_t>(FieldKind::kInteger, wanted);
  if (!field) return wanted.warn(stdout, "Warning: ", " not found in setnhv\n");
  if (value && field == &ghdr.NPTS) std::printf("NPTS = %d\n", *value);
  setField(field, value);
}

void getkhv_(const char* name, char* text, std::int32_t*, int nameLength, int textLength) {
  const Name wanted(name, nameLength);
  const char* field = find<const char>(FieldKind::kText, wanted);
  // The message of the float routine is intended.
  if (!field) wanted.warn(stderr, "Warning ", " not matched in getfhv\n");
  if (text)
    std::copy_n(field ? field : kSacUndefinedText, std::min(textLength, field ? 8 : 6), text);
}

void setkhv_(const char*, const char*, std::int32_t*, int, int) {
  setReason("setkhv is not implemented");
  std::fputs("Warning setkhv is not implemented yet.\n", stderr);
}

void setihv_(const char* name, const char* value, std::int32_t*, int nameLength, int valueLength) {
  const Name wanted(name, nameLength);
  std::int32_t* field = find<std::int32_t>(FieldKind::kEnumerated, wanted);
  if (!field) return wanted.warn(stdout, "Warning: ", " not found in setihv\n");
  const Name type(value, valueLength);
  if (type.is("ITIME")) {
    *field = kSacTimeSeries;
  } else {
    type.setUnknownReason("value of IFTYPE");
  }
}

void setlhv_(const char* name, const std::int32_t* value, std::int32_t*, int nameLength) {
  const Name wanted(name, nameLength);
  std::int32_t* field = find<std::int32_t>(FieldKind::kLogical, wanted);
  if (!field) return wanted.warn(stdout, "Warning: ", " not found in setlhv\n");
  setField(field, value);
}

int fslen(const char* text, int max) {
  int length = 0;
  while (text && length < max && text[length] && !isWhiteSpace(text[length])) ++length;
  return length;
}

int fslen_(const char* text, int textLength) {
  return fslen(text, textLength);
}

char* fscpy(char* destination, const char* source, int max) {
  if (!destination) return nullptr;
  const int length = fslen(source, max);
  std::copy_n(source, length, destination);
  destination[length] = '\0';
  return destination;
}

int fclearstring_(char* text, int n) {
  n = std::max(n, 0);
  if (text) *std::fill_n(text, n, ' ') = '\0';
  return n;
}

void printSacIOVersion() {
  std::printf("Brevlo library version: %s\n", "myVersionNumber");
}

}  // namespace krosac
