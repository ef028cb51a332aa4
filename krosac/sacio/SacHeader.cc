#include "krosac/sacio/SacHeader.h"

#include <algorithm>
#include <bit>
#include <cstdint>

namespace krosac {
namespace {

// The header as its three blocks of fields of one type.
struct Blocks {
  float floats[70];
  std::int32_t integers[40];
  char texts[24][8];
};

constexpr SacHeader templateHeader() {
  Blocks blocks{};
  std::ranges::fill(blocks.floats, kSacUndefinedFloat);
  std::ranges::fill(blocks.integers, kSacUndefinedInt);
  for (auto& text : blocks.texts) std::copy_n(kSacUndefinedText, sizeof text, text);

  auto header = std::bit_cast<SacHeader>(blocks);
  std::fill(header.KEVNM + 8, header.KEVNM + 16, ' ');
  header.IFTYPE = kSacTimeSeries;
  header.IDEP = kSacUnknownDependent;
  header.LEVEN = header.LOVROK = header.LCALDA = 1;
  return header;
}

}  // namespace

constexpr SacHeader kSacHeaderTemplate = templateHeader();

}  // namespace krosac
