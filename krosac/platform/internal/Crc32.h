// The checksum at the end of an archive.
#ifndef KROSAC_PLATFORM_INTERNAL_CRC32_H
#define KROSAC_PLATFORM_INTERNAL_CRC32_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace krosac {

// The CRC-32 of ISO-HDLC (IEEE 802.3): polynomial 0x04C11DB7, reflected, all ones first and last.
// Eight bytes at a time, each with its own table (Kounavis and Berry, 2005): table k holds the
// remainder of a byte that k zero bytes follow.
inline std::uint32_t crc32(std::string_view bytes) {
  static constexpr auto kTables = [] {
    std::array<std::array<std::uint32_t, 256>, 8> tables{};
    for (std::uint32_t i = 0; i < 256; ++i) {
      std::uint32_t remainder = i;
      for (std::size_t k = 0; k < tables.size(); ++k) {
        for (int bit = 0; bit < 8; ++bit)
          remainder = remainder >> 1 ^ (remainder & 1 ? 0xEDB88320u : 0u);
        tables[k][i] = remainder;
      }
    }
    return tables;
  }();
  const auto* at = reinterpret_cast<const unsigned char*>(bytes.data());
  std::size_t left = bytes.size();
  std::uint32_t crc = 0xFFFFFFFFu;
  for (; left >= 8; left -= 8, at += 8) {
    std::uint32_t next = 0;
    for (unsigned i = 0; i < 8; ++i)
      next ^= kTables[7 - i][(i < 4 ? at[i] ^ (crc >> 8 * i) : at[i]) & 0xFF];
    crc = next;
  }
  for (; left > 0; --left) crc = crc >> 8 ^ kTables[0][(crc ^ *at++) & 0xFF];
  return ~crc;
}

}  // namespace krosac

#endif
