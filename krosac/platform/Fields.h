// One-line declarations of plain fields for record classes.
#ifndef KROSAC_PLATFORM_FIELDS_H
#define KROSAC_PLATFORM_FIELDS_H

#include <type_traits>
#include <utility>

namespace krosac {

// The result type of a getter: numbers by value, everything else by reference.
template <typename T>
using FieldRead = std::conditional_t<std::is_scalar_v<T>, T, const T&>;

}  // namespace krosac

// Declares a private field `name`_, initially zero or empty, its getter name() and its setter
// set<Setter>(value), which stores the value and nothing else: KROSAC_FIELD(float, mb, Mb). Use it
// among public members; those that follow are public too.
#define KROSAC_FIELD(type, name, Setter)   \
 public:                                   \
  ::krosac::FieldRead<type> name() const { \
    return name##_;                        \
  }                                        \
  void set##Setter(type value) {           \
    name##_ = std::move(value);            \
  }                                        \
                                           \
 private:                                  \
  type name##_{};                          \
                                           \
 public:                                   \
  static_assert(true) /* allows a semicolon to follow */

#endif
