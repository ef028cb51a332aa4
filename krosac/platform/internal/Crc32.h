// The checksum at the end of an archive.
#ifndef KROSAC_PLATFORM_INTERNAL_CRC32_H
#define KROSAC_PLATFORM_INTERNAL_CRC32_H

#include <array>
#include <cstdint>
#include <string_view>

namespace krosac {

// CRC-32/ISO-HDLC (IEEE 802.3): polynomial 0x04C11DB7, reflected, initial value and final XOR all
// ones.
inline std::uint32_t crc32(std::string_view bytes) {
  static constexpr auto kTable = [] {
    std::array<std::uint32_t, 256> table{};
    for (std::uint32_t i = 0; i < 256; ++i) {
      std::uint32_t remainder = i;
      for (int bit = 0; bit < 8; ++bit)
        remainder = remainder >> 1 ^ (remainder & 1 ? 0xEDB88320u : 0u);
      table[i] = remainder;
    }
    return table;
  }();
  std::uint32_t crc = 0xFFFFFFFFu;
  for (const char c : bytes) crc = crc >> 8 ^ kTable[(crc ^ static_cast<unsigned char>(c)) & 0xFF];
  return ~crc;
}

}  // namespace krosac

#endif
