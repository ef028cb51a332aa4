// SAC headers built byte by byte in the layout of a file.
#ifndef KROSAC_TESTS_SACIO_SACIMAGE_H
#define KROSAC_TESTS_SACIO_SACIMAGE_H

#include <bit>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

using Words = std::vector<std::pair<std::size_t, std::uint32_t>>;  // offset and value

inline constexpr auto wordOf = std::bit_cast<std::uint32_t, float>;

template <typename T>
std::string bytesOf(const T& value) {
  return std::string(reinterpret_cast<const char*>(&value), sizeof value);
}

// The header template with some words set.
inline std::string headerImage(const Words& words = {}, const Words& more = {}) {
  std::string image;
  for (int i = 0; i < 70; ++i) image += std::string("\x00\xe4\x40\xc6", 4);
  for (int i = 0; i < 40; ++i) image += "\xc7\xcf\xff\xff";
  image += "-12345  -12345          ";
  for (int i = 0; i < 21; ++i) image += "-12345  ";
  for (const std::size_t yes : {340, 420, 428, 432}) image.replace(yes, 4, {1, 0, 0, 0});
  image.replace(344, 4, {5, 0, 0, 0});
  for (const Words& some : {words, more})
    for (const auto& [offset, value] : some) image.replace(offset, 4, bytesOf(value));
  return image;
}

#endif
