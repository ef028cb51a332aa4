#include "krosac/platform/Archive.h"

#include <gtest/gtest.h>

#include <random>

#include "CapturedLog.h"

namespace krosac {
namespace {

struct Fields {
  std::int32_t number = 0;
  bool flag = false;
  signed char letter = 0;
  float single = 0;
  double real = 0;
  OptionalText text;
  std::vector<std::string> texts;
  std::optional<Date> date;
  bool operator==(const Fields&) const = default;
};

// One value of each type, and references to others.
class Node : public Archivable {
 public:
  const char* archiveClassName() const override { return "Node"; }
  void encodeWithCoder(KeyedArchiver& coder) const override {
    coder.encodeInt32("number", fields.number);
    coder.encodeBool("flag", fields.flag);
    coder.encodeChar("letter", fields.letter);
    coder.encodeFloat("single", fields.single);
    coder.encodeDouble("real", fields.real);
    coder.encodeText("text", fields.text);
    coder.encodeTexts("texts", fields.texts);
    coder.encodeBytes("bytes", bytes.get());
    coder.encodeDate("date", fields.date);
    coder.encodeObject("next", next);
    coder.encodeObjects("children", children);
  }
  Ref<Node> initWithCoder(KeyedUnarchiver& coder) {
    // Not in the order of encoding: the search must come round.
    fields = {.number = coder.decodeInt32("number"),
              .flag = coder.decodeBool("flag"),
              .letter = coder.decodeChar("letter"),
              .single = coder.decodeFloat("single"),
              .real = coder.decodeDouble("real"),
              .text = coder.decodeText("text"),
              .texts = coder.decodeTexts("texts"),
              .date = coder.decodeDate("date")};
    bytes = coder.decodeBytes("bytes");
    next = coder.decodeObject<Node>("next").get();
    children = coder.decodeObjects<Node>("children");
    mistaken = coder.decodeInt32("text") || coder.decodeDouble("number") ||
               coder.decodeInt32("absent") || coder.decodeText("number") ||
               !coder.decodeTexts("text").empty() || coder.decodeObject<Node>("children");
    return Ref<Node>(this);
  }

  Fields fields;
  Ref<ByteBuffer> bytes;
  const Node* next = nullptr;  // not owned, and after decoding only to be compared
  std::vector<Ref<Node>> children;
  bool mistaken = true;  // a wrong type or an absent key gave something
};

struct Stranger : Node {
  const char* archiveClassName() const override { return "Stranger"; }
};

Ref<Node> sample() {
  auto node = make<Node>();
  node->fields = {-2147483647,
                  true,
                  -3,
                  -0.1f,
                  1.0 / 3.0,
                  std::string("a\0b\xff", 4),
                  {"", "one", std::string(200, 'x')},
                  Date{0.125}};
  node->bytes = ByteBuffer::copyOf("12345", 5);
  return node;
}

TEST(ArchiveTest, EveryTypeComesBackAndWrongTypesAndClassesGiveNothing) {
  const auto node = sample(), copy = archivedCopy(*node), empty = archivedCopy(*make<Node>());
  ASSERT_TRUE(copy && copy->bytes && empty);
  EXPECT_TRUE(copy->fields == node->fields);
  EXPECT_EQ(std::string(copy->bytes->bytes(), copy->bytes->bytes() + 5), "12345");
  EXPECT_FALSE(copy->mistaken);
  EXPECT_TRUE(empty->fields == Fields() && !empty->bytes && !empty->next);
  const auto bytes = archive(*make<Stranger>());
  EXPECT_TRUE(unarchive<Stranger>(*bytes) && !unarchive<Node>(*bytes));
}

TEST(ArchiveTest, SharedObjectsStaySharedAndCyclesEnd) {
  const auto root = make<Node>(), shared = sample();
  root->next = root.get();
  root->children = {shared, make<Node>(), shared, nullptr};
  const auto copy = archivedCopy(*root);
  ASSERT_TRUE(copy);
  EXPECT_EQ(copy->next, copy.get());
  ASSERT_EQ(copy->children.size(), 3u);
  EXPECT_EQ(copy->children[0], copy->children[2]);
  EXPECT_NE(copy->children[0], copy->children[1]);
  EXPECT_TRUE(copy->children[0]->fields == shared->fields);
}

TEST(ArchiveTest, DeepNestingIsRefusedWithAMessage) {
  std::vector<Ref<Node>> chain(kDeepestNesting + 1);
  for (auto& node : chain) node = make<Node>();
  for (std::size_t i = 0; i + 1 < chain.size(); ++i) chain[i]->next = chain[i + 1].get();
  CapturedLog log;
  EXPECT_FALSE(archivedCopy(*chain[0]));
  EXPECT_EQ(log.texts.size(), 1u);
  EXPECT_TRUE(archivedCopy(*chain[1]));
}

std::uint32_t bitwiseCrc32(const unsigned char* bytes, std::size_t length) {
  std::uint32_t crc = ~0u;
  for (std::size_t i = 0; i < length; ++i) {
    crc ^= bytes[i];
    for (int bit = 0; bit < 8; ++bit) crc = crc & 1 ? crc >> 1 ^ 0xEDB88320u : crc >> 1;
  }
  return ~crc;
}

// Breaks the cycles of owning references that a hostile archive can make.
void dismantle(Node& node) {
  for (const auto& child : std::exchange(node.children, {})) dismantle(*child);
}

// Archives whose checksum is right and whose content is not are for the sanitizers to watch.
TEST(ArchiveTest, DamageIsRefusedAndDoesNoHarmBehindARightChecksum) {
  CapturedLog log;
  const auto node = sample();
  node->next = node.get();
  node->children = {sample(), sample()};
  const auto bytes = archive(*node);
  const std::size_t length = bytes->length(), body = length - 4;
  for (std::size_t i = 0; i < length; ++i) {
    const auto damaged = ByteBuffer::copyOf(bytes->bytes(), length);
    damaged->mutableBytes()[i] ^= 0x21;
    ASSERT_FALSE(unarchive<Node>(*damaged)) << i;
    ASSERT_FALSE(unarchive<Node>(*ByteBuffer::copyOf(bytes->bytes(), i))) << i;
  }
  EXPECT_EQ(log.texts.size(), 2 * length);

  std::mt19937 random(11);
  int accepted = 0;
  for (int round = 0; round < 20000; ++round) {
    const auto hostile = ByteBuffer::copyOf(bytes->bytes(), length);
    unsigned char* at = hostile->mutableBytes();
    for (auto changes = 1 + random() % 3; changes > 0; --changes)
      at[9 + random() % (body - 9)] = static_cast<unsigned char>(random() >> 5);
    const std::uint32_t crc = bitwiseCrc32(at, body);
    for (int i = 0; i < 4; ++i) at[body + i] = static_cast<unsigned char>(crc >> 8 * i);
    const auto decoded = unarchive<Node>(*hostile);
    if (decoded) dismantle(*decoded);
    accepted += bool(decoded);
  }
  EXPECT_TRUE(accepted > 0 && accepted < 20000);
}

}  // namespace
}  // namespace krosac
