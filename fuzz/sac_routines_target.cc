// The routines that Fortran calls, with texts that need not end and lengths that need not fit.
#include "Harness.h"
#include "krosac/sacio/SacRoutines.h"

namespace {

using namespace fuzz;
using krosac::ghdr;

// A text as Fortran passes it: characters without an end, and their number. Where the number is
// larger than the text, a NUL ends it before.
class Text {
 public:
  Text(Arguments& a, std::string_view known) {
    const std::string drawn = a.ConsumeBool() ? std::string(known) : a.text(600);
    characters_.assign(drawn.begin(), drawn.end());
    switch (a.ConsumeIntegralInRange(0, 4)) {
      case 0:
        characters_.push_back('\0');
        length_ = a.ConsumeBool() ? INT32_MAX : a.integer();
        break;
      case 1:
        isNull_ = true;
        length_ = a.integer();
        break;
      case 2:
        length_ = static_cast<int>(a.index(characters_.size() + 1));
        break;
      case 3:
        characters_.resize(characters_.size() + 8, ' ');
        [[fallthrough]];
      default:
        length_ = static_cast<int>(characters_.size());
    }
    characters_.shrink_to_fit();
  }
  const char* characters() const { return isNull_ ? nullptr : characters_.data(); }
  int length() const { return length_; }

 private:
  std::vector<char> characters_;
  int length_ = 0;
  bool isNull_ = false;
};

constexpr std::string_view kNames[] = {
    "B",     "e",      "DELTA",  "DEPMIN", "stla", "T0",    "USER9", "NPTS",  "NVHDR", "nzyear",
    "KSTNM", "kcmpnm", "IFTYPE", "LEVEN",  "",     "NPTS ", "A",     "GCARC", "DIST",  "ITIME"};

template <typename T>
T* orNull(T* value, Arguments& a) {
  return a.ConsumeIntegralInRange(0, 7) ? value : nullptr;
}

void useFields(Arguments& a) {
  const Text name(a, a.PickValueInArray(kNames));
  float real = a.real();
  std::int32_t integer = a.integer(), error = 0;
  switch (a.ConsumeIntegralInRange(0, 9)) {
    case 0:
      return krosac::getfhv_(name.characters(), orNull(&real, a), &error, name.length());
    case 1:
      return krosac::setfhv_(name.characters(), orNull(&real, a), &error, name.length());
    case 2:
      return krosac::getnhv_(name.characters(), orNull(&integer, a), &error, name.length());
    case 3:
      return krosac::setnhv_(name.characters(), orNull(&integer, a), &error, name.length());
    case 4: {
      std::vector<char> text(a.index(20));
      krosac::getkhv_(name.characters(), a.ConsumeBool() ? text.data() : nullptr, nullptr,
                      name.length(), a.ConsumeBool() ? static_cast<int>(text.size()) : -1);
      return;
    }
    case 5:
      return krosac::setkhv_(name.characters(), nullptr, &error, name.length(), integer);
    case 6: {
      const Text value(a, "ITIME");
      return krosac::setihv_(name.characters(), value.characters(), &error, name.length(),
                             value.length());
    }
    case 7:
      return krosac::setlhv_(name.characters(), orNull(&integer, a), &error, name.length());
    case 8:
      return krosac::newhdr_();
    default:
      return krosac::inihdr_();
  }
}

void useTexts(Arguments& a) {
  const Text text(a, "name   ");
  require(krosac::fslen(text.characters(), text.length()) <= std::max(text.length(), 0));
  const int length = krosac::fslen_(text.characters(), text.length());
  std::vector<char> copy(static_cast<std::size_t>(length) + 1);
  krosac::fscpy(copy.data(), text.characters(), text.length());
  require(copy.back() == '\0');
  const int blanks = a.ConsumeIntegralInRange(-3, 30);
  std::vector<char> cleared(static_cast<std::size_t>(std::max(blanks, 0)) + 1);
  krosac::fclearstring_(a.ConsumeBool() ? cleared.data() : nullptr, blanks);
}

void useFiles(const std::string& input, Arguments& a) {
  const bool writes = a.ConsumeBool();
  static const std::string scratch = scratchPath();
  // A name from the input would be written to, so only the reading ones get such.
  const std::string known = writes ? scratch : input;
  const Text drawn(a, known);
  const char* path = writes ? known.c_str() : drawn.characters();
  const int length = writes ? static_cast<int>(known.size()) : drawn.length();
  const std::int32_t max = a.ConsumeIntegralInRange<std::int32_t>(-2, 600);
  const auto count = static_cast<std::size_t>(std::max(max, 0));
  std::vector<float> first(count), second(count);
  float b = a.real(), delta = a.real();
  std::int32_t n = 0, error = 0;
  switch (a.ConsumeIntegralInRange(0, 2)) {
    case 0:
      if (writes) return krosac::wsac1_(path, first.data(), &max, &b, &delta, &error, length);
      return krosac::rsac1_(path, orNull(first.data(), a), orNull(&n, a), &b, &delta,
                            orNull(&max, a), orNull(&error, a), length);
    case 1:
      if (writes) return krosac::wsac2_(path, first.data(), &max, second.data(), &error, length);
      return krosac::rsac2_(path, first.data(), orNull(&n, a), orNull(second.data(), a), &max,
                            &error, length);
    default:
      // The caller's array holds NPTS values.
      first.resize(static_cast<std::size_t>(std::clamp(ghdr.NPTS, 0, 100000)));
      return krosac::wsac0_(scratch.c_str(), nullptr, ghdr.NPTS <= 100000 ? first.data() : nullptr,
                            &error, static_cast<int>(scratch.size()));
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  // The file is what lies behind the arguments.
  constexpr std::size_t kArguments = 128;
  const std::size_t head = std::min(size, kArguments);
  const std::string input = asFile({data + head, size - head});
  Arguments a(data, head);
  ghdr = {};
  AllocationLimit limit(std::size_t{1} << 20);
  for (int i = 0; i < 12 && a.remaining_bytes() > 0; ++i) {
    switch (a.ConsumeIntegralInRange(0, 2)) {
      case 0:
        useFields(a);
        break;
      case 1:
        useTexts(a);
        break;
      default:
        useFiles(input, a);
    }
  }
  return 0;
}
