#include "krosac/sacio/ByteOrder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <random>

#include "sacio/SacImage.h"

namespace krosac {
namespace {

void reverseWords(std::string& image, std::size_t from, std::size_t words) {
  for (std::size_t at = from; at < from + 4 * words; at += 4)
    std::reverse(image.begin() + at, image.begin() + at + 4);
}

// Images of random bytes with signalling NaNs, and NPTS in the byte order that the function reads.
// With fewer than NPTS samples swapSACBytes fails and reverseSACBytes reverses those present.
TEST(ByteOrder, ReversesHeaderWordsAndSamples) {
  std::mt19937 random(20110311);
  std::string bytes(700, '\0');
  std::ranges::generate(bytes, [&] { return static_cast<char>(random()); });
  for (const std::size_t at : {0, 632}) bytes.replace(at, 8, "\x01\0\xa0\x7f\x7f\xa0\x81\xff", 8);
  for (const std::size_t length : {0, 316, 631, 632, 635, 636, 640, 643, 648, 698, 699, 700}) {
    const std::size_t present = length < 632 ? 0 : (length - 632) / 4;
    // 4 * 2^30 overflows 32 bits to 0.
    for (const int npts : {INT_MIN, -1, 0, 1, 2, 3, 4, 15, 16, 17, 18, 1 << 30, INT_MAX}) {
      for (const bool swap : {true, false}) {
        std::string image = bytes;
        image.replace(316, 4, bytesOf(npts));
        if (swap) reverseWords(image, 316, 1);
        const auto data = ByteBuffer::copyOf(image.data(), length);
        const std::size_t wanted = npts < 0 ? 0 : static_cast<std::size_t>(npts);
        const bool refused = npts < 0 || (swap && wanted > present);
        EXPECT_EQ(swap ? swapSACBytes(*data) : reverseSACBytes(*data), length >= 632 && !refused);
        if (length >= 632) reverseWords(image, 0, 110);
        reverseWords(image, 632, refused ? 0 : std::min(wanted, present));
        EXPECT_EQ(std::string(data->bytes(), data->bytes() + length), image.substr(0, length))
            << (swap ? "swap " : "reverse ") << length << " bytes, NPTS " << npts;
      }
    }
  }
}

}  // namespace
}  // namespace krosac
