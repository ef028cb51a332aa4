#include "krosac/platform/Archive.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <random>
#include <string>

#include "CapturedLog.h"

namespace krosac {
namespace {

// One value of each type, and references to others.
class Node : public Archivable {
 public:
  const char* archiveClassName() const override { return "Node"; }
  void encodeWithCoder(KeyedArchiver& coder) const override {
    coder.encodeInt32("number", number);
    coder.encodeBool("flag", flag);
    coder.encodeChar("letter", letter);
    coder.encodeFloat("single", single);
    coder.encodeDouble("real", real);
    coder.encodeText("text", text);
    coder.encodeTexts("texts", texts);
    coder.encodeBytes("bytes", bytes.get());
    coder.encodeDate("date", date);
    coder.encodeObject("next", next);
    coder.encodeObjects("children", children);
  }
  Ref<Node> initWithCoder(KeyedUnarchiver& coder) {
    number = coder.decodeInt32("number");
    // Not in the order of encoding: the search must come round.
    text = coder.decodeText("text");
    flag = coder.decodeBool("flag");
    letter = coder.decodeChar("letter");
    single = coder.decodeFloat("single");
    real = coder.decodeDouble("real");
    texts = coder.decodeTexts("texts");
    bytes = coder.decodeBytes("bytes");
    date = coder.decodeDate("date");
    next = coder.decodeObject<Node>("next").get();
    children = coder.decodeObjects<Node>("children");
    wrongTypes = coder.decodeInt32("text") + static_cast<int>(coder.decodeDouble("number")) +
                 coder.decodeInt32("absent") + coder.decodeText("number").has_value() +
                 static_cast<int>(coder.decodeTexts("text").size()) +
                 !!coder.decodeObject<Node>("children");
    return Ref<Node>(this);
  }

  std::int32_t number = 0;
  bool flag = false;
  signed char letter = 0;
  float single = 0;
  double real = 0;
  OptionalText text;
  std::vector<std::string> texts;
  Ref<ByteBuffer> bytes;
  std::optional<Date> date;
  const Node* next = nullptr;  // not owned, and after decoding only to be compared
  std::vector<Ref<Node>> children;
  int wrongTypes = -1;
};

class Stranger : public Archivable {
 public:
  const char* archiveClassName() const override { return "Stranger"; }
  void encodeWithCoder(KeyedArchiver&) const override {}
  Ref<Stranger> initWithCoder(KeyedUnarchiver&) { return Ref<Stranger>(this); }
};

Ref<Node> sample() {
  auto node = make<Node>();
  node->number = -2147483647;
  node->flag = true;
  node->letter = -3;
  node->single = -0.0f;
  node->real = 1.0 / 3.0;
  node->text = std::string("a\0b\xff", 4);
  node->texts = {"", "one", std::string(300, 'x')};
  node->bytes = ByteBuffer::copyOf("12345", 5);
  node->date = Date{0.125};
  return node;
}

TEST(ArchiveTest, EveryTypeComesBackAndWrongTypesGiveNothing) {
  const auto node = sample();
  const auto copy = archivedCopy(*node);
  ASSERT_TRUE(copy);
  EXPECT_EQ(copy->number, node->number);
  EXPECT_EQ(copy->flag, node->flag);
  EXPECT_EQ(copy->letter, node->letter);
  EXPECT_TRUE(copy->single == 0.0f && std::signbit(copy->single));
  EXPECT_EQ(copy->real, node->real);
  EXPECT_EQ(copy->text, node->text);
  EXPECT_EQ(copy->texts, node->texts);
  ASSERT_TRUE(copy->bytes);
  EXPECT_EQ(std::memcmp(copy->bytes->bytes(), "12345", 5), 0);
  EXPECT_EQ(copy->date, node->date);
  EXPECT_EQ(copy->wrongTypes, 0);

  const auto empty = archivedCopy(*make<Node>());
  ASSERT_TRUE(empty);
  EXPECT_FALSE(empty->text || empty->bytes || empty->date || empty->next);
}

TEST(ArchiveTest, SharedObjectsStaySharedAndCyclesEnd) {
  const auto root = make<Node>(), shared = make<Node>();
  root->next = root.get();
  shared->number = 7;
  root->children = {shared, make<Node>(), shared, nullptr};
  const auto copy = archivedCopy(*root);
  ASSERT_TRUE(copy);
  EXPECT_EQ(copy->next, copy.get());
  ASSERT_EQ(copy->children.size(), 3u);
  EXPECT_EQ(copy->children[0], copy->children[2]);
  EXPECT_NE(copy->children[0], copy->children[1]);
  EXPECT_EQ(copy->children[0]->number, 7);
}

TEST(ArchiveTest, AnotherClassGivesNone) {
  const auto bytes = archive(*make<Stranger>());
  EXPECT_FALSE(unarchive<Node>(*bytes));
  EXPECT_TRUE(unarchive<Stranger>(*bytes));
}

TEST(ArchiveTest, DeepNestingIsRefusedWithAMessage) {
  std::vector<Ref<Node>> chain(kDeepestNesting + 1);
  for (auto& node : chain) node = make<Node>();
  for (std::size_t i = 0; i + 1 < chain.size(); ++i) chain[i]->next = chain[i + 1].get();
  CapturedLog log;
  EXPECT_FALSE(archivedCopy(*chain[0]));
  EXPECT_EQ(log.texts.size(), 1u);
  chain[chain.size() - 2]->next = nullptr;
  EXPECT_TRUE(archivedCopy(*chain[0]));
}

TEST(ArchiveTest, EveryDamagedByteAndEveryTruncationIsRefused) {
  CapturedLog log;
  const auto bytes = archive(*sample());
  for (std::size_t i = 0; i < bytes->length(); ++i) {
    const auto damaged = ByteBuffer::copyOf(bytes->bytes(), bytes->length());
    damaged->mutableBytes()[i] ^= 0x21;
    ASSERT_FALSE(unarchive<Node>(*damaged)) << i;
    ASSERT_FALSE(unarchive<Node>(*ByteBuffer::copyOf(bytes->bytes(), i))) << i;
  }
  EXPECT_EQ(log.texts.size(), 2 * bytes->length());
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

// Archives whose checksum is right and whose content is not: the sanitizers watch this one.
TEST(ArchiveTest, HostileContentBehindARightChecksumDoesNoHarm) {
  setLogSink([](const std::string&) {});
  std::mt19937 random(11);
  const auto node = sample();
  node->next = node.get();
  node->children = {sample(), sample()};
  const auto bytes = archive(*node);
  const std::size_t body = bytes->length() - 4;
  int accepted = 0, refused = 0;
  for (int round = 0; round < 20000; ++round) {
    const auto hostile = ByteBuffer::copyOf(bytes->bytes(), bytes->length());
    unsigned char* at = hostile->mutableBytes();
    const auto changes = 1 + random() % 3;
    for (unsigned i = 0; i < changes; ++i)
      at[9 + random() % (body - 9)] = static_cast<unsigned char>(random() >> 5);
    const std::uint32_t crc = bitwiseCrc32(at, body);
    for (int i = 0; i < 4; ++i) at[body + i] = static_cast<unsigned char>(crc >> 8 * i);
    const auto decoded = unarchive<Node>(*hostile);
    ++(decoded ? accepted : refused);
    if (decoded) dismantle(*decoded);
  }
  setLogSink(nullptr);
  EXPECT_GT(accepted, 0);
  EXPECT_GT(refused, 0);
}

}  // namespace
}  // namespace krosac
