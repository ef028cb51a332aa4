// Shared by the fuzz targets: arguments drawn from the input, operations called with them, files
// with the input, and a limit on the size of an allocation.
#ifndef KROSAC_FUZZ_HARNESS_H
#define KROSAC_FUZZ_HARNESS_H

#include <fuzzer/FuzzedDataProvider.h>

#include <algorithm>
#include <functional>
#include <tuple>
#include <type_traits>

#include "krosac/krosac.h"

namespace fuzz {

using namespace krosac;

// A text that may be null, and a value that is passed by its address.
struct TextOrNull {
  OptionalText text;
  operator const char*() const { return text ? text->c_str() : nullptr; }
};
template <typename T>
struct Slot {
  T value;
  operator T*() { return &value; }
};

// Draws arguments, including NaN, infinities, limits of integers, and huge and tiny numbers.
class Arguments : public FuzzedDataProvider {
 public:
  explicit Arguments(std::string_view input)
      : FuzzedDataProvider(reinterpret_cast<const std::uint8_t*>(input.data()), input.size()) {}

  float real();
  std::int32_t integer();
  // Returns an index from 0 to most - 1.
  std::size_t index(std::size_t most) { return ConsumeIntegralInRange<std::size_t>(0, most - 1); }
  std::string text(std::size_t longest = 24);
  Date date();
  Ref<SeisTimeObject> time();
  // Returns a newly allocated array of exactly this length, so that an access beyond it is found.
  std::vector<float> reals(std::size_t count);
  Ref<ByteBuffer> realBytes(std::size_t most);
  // Returns an evenly sampled seismogram of at most a few hundred samples.
  Ref<SacObject> newSeismogram();
  SacObject& seismogram() { return *seismograms[index(seismograms.size())]; }
  // Returns an array of the given seismograms, new ones and null references.
  std::vector<Ref<SacObject>> group();

  // Returns an argument for a parameter of this type.
  template <typename T>
  struct Of {};
  bool any(Of<bool>) { return ConsumeBool(); }
  float any(Of<float>) { return real(); }
  double any(Of<double>) { return static_cast<double>(real()); }
  std::int32_t any(Of<std::int32_t>) { return integer(); }
  std::string any(Of<std::string_view>) { return text(); }
  std::string any(Of<OptionalText>) { return text(); }
  TextOrNull any(Of<const char*>) { return {ConsumeBool() ? OptionalText(text()) : std::nullopt}; }
  Date any(Of<Date>) { return date(); }
  Date any(Of<std::optional<Date>>) { return date(); }
  Ref<SeisTimeObject> any(Of<Ref<SeisTimeObject>>) { return ConsumeBool() ? time() : nullptr; }
  std::reference_wrapper<SacObject> any(Of<SacObject>) { return seismogram(); }
  std::vector<Ref<SacObject>> any(Of<std::vector<Ref<SacObject>>>) { return group(); }
  template <typename T>
  Slot<std::remove_const_t<T>> any(Of<T*>) {
    return {any(Of<std::remove_const_t<T>>())};
  }

  // The choices of seismogram() and text(), which uses its choices in half the cases.
  std::vector<SacObject*> seismograms;
  std::vector<const char*> words;
};

// A method of an object or a plain function as an entry of a table.
template <typename T>
using Operation = void (*)(T& object, Arguments& a);

// Calls a method of the object or a plain function with any arguments.
template <typename R, typename C, typename... Types>
std::tuple<Types...>* typesOf(R (C::*)(Types...));
template <typename R, typename C, typename... Types>
std::tuple<Types...>* typesOf(R (C::*)(Types...) const);
template <typename R, typename... Types>
std::tuple<Types...>* typesOf(R (*)(Types...));
template <auto function, typename T>
void call(T& object, Arguments& a) {
  const auto callWith = [&](auto&... drawn) {
    if constexpr (std::is_member_pointer_v<decltype(function)>) {
      (object.*function)(drawn...);
    } else {
      function(drawn...);
    }
  };
  const auto draw = [&]<typename... Types>(std::tuple<Types...>*) {
    return std::tuple{
        a.any(Arguments::Of<std::remove_cvref_t<Types>>())...};  // evaluated in this order
  };
  auto drawn = draw(decltype(typesOf(function)){});
  std::apply(callWith, drawn);
}

// Applies at most a number of operations from a table.
template <typename T, std::size_t count>
void applySome(int most, const Operation<T> (&table)[count], T& object, Arguments& a) {
  for (; most > 0 && a.remaining_bytes() > 0; --most) a.PickValueInArray(table)(object, a);
}

// Applies operations on one seismogram, or on two and more.
void applySome(int most, SacObject& s, SacObject& other, Arguments& a);
// Calls every method that only reads a seismogram.
void readEverything(SacObject& s);

// Returns the path of a regular file with the input, valid until the next call.
std::string asFile(std::string_view bytes);
// Returns a folder in which each of the names is that file.
std::string folderOfLinks(const std::vector<std::string>& names);
// Returns the path of a writable file.
std::string scratchPath();

// During its lifetime a larger single allocation ends the process.
struct AllocationLimit {
  explicit AllocationLimit(std::size_t bytes);
  ~AllocationLimit();
};

// Ends the process if a condition does not hold.
void require(bool holds);

// Reads every byte, so that the sanitizer sees them.
void touch(std::string_view bytes);
std::string_view bytesIn(const Ref<ByteBuffer>& buffer);

// Checks that a decoded object and its archive reproduce each other. The first decoding may set
// fields that depend on others.
template <typename T>
void requireStableArchive(const T& object) {
  const auto settled = archivedCopy(object);
  require(settled && true);
  const auto first = archive(*settled), second = archive(*unarchive<T>(*first));
  require(bytesIn(first) == bytesIn(second));
}

}  // namespace fuzz

// Each target defines how it uses one input.
void runInput(std::string_view input);

#endif
