// What the fuzz targets share: arguments drawn from the input, operations called with them, files
// that hold the input, and a limit on what it may cause to be allocated.
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

// Draws arguments, among them those that break things: not a number, infinities, limits of
// integers, huge and tiny numbers.
class Arguments : public FuzzedDataProvider {
 public:
  explicit Arguments(std::string_view input)
      : FuzzedDataProvider(reinterpret_cast<const std::uint8_t*>(input.data()), input.size()) {}

  float real();
  std::int32_t integer();
  // From 0 to most - 1, for what stands in an array.
  std::size_t index(std::size_t most) { return ConsumeIntegralInRange<std::size_t>(0, most - 1); }
  std::string text(std::size_t longest = 24);
  Date date();
  Ref<SeisTimeObject> time();
  // An array of its own allocation and of exactly this length, so that a step beyond is seen.
  std::vector<float> reals(std::size_t count);
  Ref<ByteBuffer> realBytes(std::size_t most);
  // An evenly sampled seismogram of a few hundred samples at most.
  Ref<SacObject> newSeismogram();
  SacObject& seismogram() { return *seismograms[index(seismograms.size())]; }
  // The seismograms at hand and others, in places none.
  std::vector<Ref<SacObject>> group();

  // An argument for a parameter of this type.
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

  // What seismogram and text choose from, texts in half the cases.
  std::vector<SacObject*> seismograms;
  std::vector<const char*> words;
};

// An operation of an object, or a plain one beside it, as an entry of a table.
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
    return std::tuple{a.any(Arguments::Of<std::remove_cvref_t<Types>>())...};  // in their order
  };
  auto drawn = draw(decltype(typesOf(function)){});
  std::apply(callWith, drawn);
}

// Applies at most so many operations from a table.
template <typename T, std::size_t count>
void applySome(int most, const Operation<T> (&table)[count], T& object, Arguments& a) {
  for (; most > 0 && a.remaining_bytes() > 0; --most) a.PickValueInArray(table)(object, a);
}

// The same from all that a seismogram offers, and from those on two or more.
void applySome(int most, SacObject& s, SacObject& other, Arguments& a);
// Calls everything of a seismogram that only reads it.
void readEverything(SacObject& s);

// The input as a regular file, whose path is good until the next call.
std::string asFile(std::string_view bytes);
// A folder in which each of the names is that file.
std::string folderOfLinks(const std::vector<std::string>& names);
// The path of a file that can be written.
std::string scratchPath();

// While it lives no single allocation may be larger; one that is ends the process.
struct AllocationLimit {
  explicit AllocationLimit(std::size_t bytes);
  ~AllocationLimit();
};

// Ends the process where something that must hold does not.
void require(bool holds);

// Reads every byte, so that the sanitizer sees them.
void touch(std::string_view bytes);
std::string_view bytesIn(const Ref<ByteBuffer>& buffer);

// What was decoded gives the archive that it is decoded from, the same every time. The first
// decoding may settle fields that follow from others.
template <typename T>
void requireStableArchive(const T& object) {
  const auto settled = archivedCopy(object);
  require(settled && true);
  const auto first = archive(*settled), second = archive(*unarchive<T>(*first));
  require(bytesIn(first) == bytesIn(second));
}

}  // namespace fuzz

// What a target does with one input.
void runInput(std::string_view input);

#endif
