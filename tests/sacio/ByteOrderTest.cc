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

// Applies an operation to random bytes with signalling NaNs among the words, and NPTS in the order
// in which the operation is to read it; expects its result and just these words reversed.
void check(bool swap, std::size_t length, std::int32_t npts, int result, std::size_t headerWords,
           std::size_t sampleWords) {
  std::mt19937 random(20110311);
  std::string image(700, '\0');
  std::ranges::generate(image, [&] { return static_cast<char>(random()); });
  for (const std::size_t at : {0, 632}) image.replace(at, 8, "\x01\0\xa0\x7f\x7f\xa0\x81\xff", 8);
  image.replace(316, 4, bytesOf(npts));
  if (swap) reverseWords(image, 316, 1);

  const auto data = ByteBuffer::copyOf(image.data(), length);
  EXPECT_EQ(swap ? swapSACBytes(*data) : reverseSACBytes(*data), result);
  reverseWords(image, 0, headerWords);
  reverseWords(image, 632, sampleWords);
  EXPECT_EQ(std::string(data->bytes(), data->bytes() + length), image.substr(0, length))
      << (swap ? "swap " : "reverse ") << length << " bytes, NPTS " << npts;
}

TEST(ByteOrder, ResultsAndWordsReversed) {
  constexpr std::int32_t kWraps = 1 << 30;  // 4 * kWraps is 0 in 32 bits
  const struct {
    std::size_t length;
    std::int32_t npts;
    int swapResult, reverseResult;
    std::size_t headerWords, wordsSwapped, wordsReversed;
  } cases[] = {
      {0, 0, 0, 0, 0, 0, 0},     {631, 0, 0, 0, 0, 0, 0},         {632, 0, 1, 1, 110, 0, 0},
      {640, 0, 1, 1, 110, 0, 0}, {640, -1, 0, 0, 110, 0, 0},      {640, INT_MIN, 0, 0, 110, 0, 0},
      {640, 2, 1, 1, 110, 2, 2}, {639, 2, 0, 1, 110, 0, 1},       {632, 1, 0, 1, 110, 0, 0},
      {648, 2, 1, 1, 110, 2, 2}, {643, INT_MAX, 0, 1, 110, 0, 2}, {635, kWraps, 0, 1, 110, 0, 0}};
  for (const auto& c : cases) {
    check(true, c.length, c.npts, c.swapResult, c.headerWords, c.wordsSwapped);
    check(false, c.length, c.npts, c.reverseResult, c.headerWords, c.wordsReversed);
  }
  for (std::int32_t npts = 0; npts <= 17; ++npts) {
    check(true, 700, npts, 1, 110, npts);
    check(false, 700, npts, 1, 110, npts);
  }
}

}  // namespace
}  // namespace krosac
