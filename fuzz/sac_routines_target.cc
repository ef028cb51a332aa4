// The routines that Fortran calls, with unterminated texts and wrong lengths.
#include "Harness.h"

namespace {

using namespace fuzz;

// A text as Fortran passes it: characters without a terminator, and their number. If the number is
// larger than the text, a NUL terminates the text.
struct Text {
  Text(Arguments& a, const std::string& drawn) : characters(drawn.begin(), drawn.end()) {
    const int kind = a.ConsumeIntegralInRange(0, 4);
    if (kind == 0) characters.push_back('\0');
    if (kind == 1) characters.resize(characters.size() + 8, ' ');
    characters.shrink_to_fit();
    isNull = kind == 2;
    length = static_cast<int>(kind == 3 ? a.index(characters.size() + 1) : characters.size());
    if (kind == 0 || isNull) length = a.ConsumeBool() ? INT32_MAX : a.integer();
  }
  operator const char*() const { return isNull ? nullptr : characters.data(); }

  std::vector<char> characters;
  int length;
  bool isNull;
};

template <typename T>
T* orNull(T* value, Arguments& a) {
  return a.index(8) ? value : nullptr;
}

// The arguments of the routines for fields.
struct Field {
  explicit Field(Arguments& a) : name(a, a.text(600)), value(a, a.text(600)) {}
  Text name, value;
  float real = 0.5f, *reals = &real;
  std::int32_t integer = 7, *integers = &integer, error = 0;
};

constexpr Operation<Field> kOfFields[] = {
    [](Field& f, Arguments&) { getfhv_(f.name, f.reals, &f.error, f.name.length); },
    [](Field& f, Arguments&) { setfhv_(f.name, f.reals, &f.error, f.name.length); },
    [](Field& f, Arguments&) { getnhv_(f.name, f.integers, &f.error, f.name.length); },
    [](Field& f, Arguments&) { setnhv_(f.name, f.integers, &f.error, f.name.length); },
    [](Field& f, Arguments&) { setlhv_(f.name, f.integers, &f.error, f.name.length); },
    [](Field& f, Arguments&) { setkhv_(f.name, nullptr, &f.error, f.name.length, 3); },
    [](Field& f, Arguments&) { setihv_(f.name, f.value, &f.error, f.name.length, f.value.length); },
    [](Field& f, Arguments& a) {
      std::vector<char> text(a.index(20));
      getkhv_(f.name, a.ConsumeBool() ? text.data() : nullptr, nullptr, f.name.length,
              a.ConsumeBool() ? static_cast<int>(text.size()) : -1);
    },
    [](Field& f, Arguments&) {
      require(fslen(f.name, f.name.length) <= std::max(f.name.length, 0));
      std::vector<char> copy(static_cast<std::size_t>(fslen_(f.name, f.name.length)) + 1);
      fscpy(copy.data(), f.name, f.name.length);
      require(copy.back() == '\0');
    },
    [](Field&, Arguments& a) {
      const int blanks = a.ConsumeIntegralInRange(-3, 30);
      std::vector<char> cleared(static_cast<std::size_t>(std::max(blanks, 0)) + 1);
      fclearstring_(a.ConsumeBool() ? cleared.data() : nullptr, blanks);
    },
    call<newhdr_>,
    call<inihdr_>};

void useField(Arguments& a) {
  Field field(a);
  field.real = a.real();
  field.integer = a.integer();
  field.reals = orNull(&field.real, a);
  field.integers = orNull(&field.integer, a);
  applySome(1, kOfFields, field, a);
}

// All files are written to one folder, whatever names the input has.
void useFile(const std::string& input, Arguments& a) {
  static const std::string scratch = scratchPath();
  const char* const to = scratch.c_str();
  const auto length = static_cast<int>(scratch.size());
  const Text path(a, a.ConsumeBool() ? input : a.text(600));
  const std::int32_t max = a.ConsumeIntegralInRange(-2, 600);
  std::vector<float> first(static_cast<std::size_t>(std::max(max, 0))), second(first);
  float *x = first.data(), *y = second.data(), b = a.real(), delta = a.real();
  std::int32_t n = 0, error = 0;
  const int kind = a.ConsumeIntegralInRange(0, 4);
  if (kind == 0) wsac1_(to, x, &max, &b, &delta, &error, length);
  if (kind == 1) wsac2_(to, x, &max, y, &error, length);
  if (kind == 2)
    rsac1_(path, orNull(x, a), orNull(&n, a), &b, &delta, orNull(&max, a), orNull(&error, a),
           path.length);
  if (kind == 3) rsac2_(path, x, orNull(&n, a), orNull(y, a), &max, &error, path.length);
  if (kind == 4) {
    // The caller's array holds NPTS values.
    first.resize(static_cast<std::size_t>(std::clamp(ghdr.NPTS, 0, 100000)));
    wsac0_(to, nullptr, ghdr.NPTS <= 100000 ? first.data() : nullptr, &error, length);
  }
}

}  // namespace

void runInput(std::string_view input) {
  // The file consists of the bytes after the arguments.
  const std::size_t head = std::min<std::size_t>(input.size(), 128);
  const std::string path = asFile(input.substr(head));
  Arguments a(input.substr(0, head));
  a.words = {"B",    "e",     "DELTA",  "DEPMIN", "stla",   "T0",     "USER9",
             "NPTS", "NVHDR", "nzyear", "KSTNM",  "kcmpnm", "IFTYPE", "LEVEN",
             "",     "NPTS ", "A",      "GCARC",  "DIST",   "ITIME"};
  ghdr = {};
  AllocationLimit limit(std::size_t{1} << 20);
  for (int i = 0; i < 12 && a.remaining_bytes() > 0; ++i)
    a.index(3) ? useField(a) : useFile(path, a);
}
