// Plain fields of records, one line each.
#ifndef KROSAC_PLATFORM_FIELDS_H
#define KROSAC_PLATFORM_FIELDS_H

#include <type_traits>
#include <utility>

namespace krosac {

// What a getter gives: numbers by value, all else by reference.
template <typename T>
using FieldRead = std::conditional_t<std::is_scalar_v<T>, T, const T&>;

}  // namespace krosac

// Declares, among a class's public members, a private field `name`_ that starts zero or empty, its
// getter name() and its setter set<Setter>(value), which only stores: KROSAC_FIELD(float, mb, Mb).
// What follows is public again.
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
  static_assert(true) /* so that a semicolon may follow */

#endif
