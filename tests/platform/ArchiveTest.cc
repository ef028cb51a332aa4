#include "krosac/platform/Archive.h"

#include <gtest/gtest.h>

#include <cstring>
#include <type_traits>

#include "CapturedLog.h"
#include "krosac/platform/LastReason.h"

namespace krosac {
namespace {

// Only archive() gives it a buffer to write to.
static_assert(!std::is_default_constructible_v<KeyedArchiver>);

// One value of each type, named as its encode and decode methods.
// clang-format off
#define VALUES(DO)                                                                   \
  DO(Int32, -2147483647) DO(Bool, true) DO(Char, -3) DO(Float, -0.1f) DO(Double, 1.0 / 3) \
  DO(Text, std::string("a\0\xff", 3)) DO(Date, Date{0.125})                          \
  DO(Texts, (std::vector<std::string>{"", std::string(200, 'x')}))
#define ENCODE(TYPE, VALUE) coder.encode##TYPE(#TYPE, VALUE);
#define DECODE(TYPE, VALUE)                                                          \
  const auto none##TYPE = decltype(coder.decode##TYPE("")){};                        \
  isRight = isRight && coder.decode##TYPE(#TYPE) == VALUE &&                         \
            coder.decode##TYPE("absent") == none##TYPE && coder.decode##TYPE("children") == none##TYPE;
// clang-format on

// Holds these values and references to other nodes.
struct Node : Archivable {
  const char* archiveClassName() const override { return name; }
  void encodeWithCoder(KeyedArchiver& coder) const override {
    VALUES(ENCODE)
    coder.encodeBytes("bytes", ByteBuffer::copyOf("12345", 6).get());
    coder.encodeText("absent", {});
    coder.encodeObject("next", next);
    coder.encodeObjects("children", children);
  }
  // Decodes in another order than encoded, also after another object, so the search must wrap
  // around.
  Ref<Node> initWithCoder(KeyedUnarchiver& coder) {
    children = coder.decodeObjects<Node>("children");
    next = coder.decodeObject<Node>("next").get();
    const auto bytes = coder.decodeBytes("bytes");
    isRight = bytes && !std::memcmp(bytes->bytes(), "12345", bytes->length());
    VALUES(DECODE)
    return Ref<Node>(this);
  }

  const char* name = "Node";
  const Node* next = nullptr;  // not owned; compared only after decoding
  std::vector<Ref<Node>> children;
  bool isRight = false;
};

TEST(ArchiveTest, RestoresValuesSharedObjectsAndCycles) {
  const auto root = make<Node>(), shared = make<Node>(), stranger = make<Node>();
  root->next = root.get();
  root->children = {shared, make<Node>(), shared, nullptr, stranger};
  stranger->name = "Stranger";
  const auto copy = archivedCopy(*root);
  ASSERT_TRUE(copy && copy->children.size() == 3) << "without the null and the other class";
  for (const Node* node : {copy.get(), copy->children[0].get(), copy->children[1].get()})
    EXPECT_TRUE(node->isRight);
  EXPECT_TRUE(copy->next == copy.get() && !copy->children[0]->next);
  EXPECT_TRUE(copy->children[0] == copy->children[2] && copy->children[0] != copy->children[1]);
  EXPECT_FALSE(archivedCopy(*stranger));
}

TEST(ArchiveTest, RefusesDamageAndDeepNestingWithAMessage) {
  CapturedLog log;
  std::vector<Ref<Node>> chain(kDeepestNesting + 1);
  for (auto& node : chain) node = make<Node>();
  for (std::size_t i = 0; i + 1 < chain.size(); ++i) chain[i]->next = chain[i + 1].get();
  EXPECT_TRUE(archivedCopy(*chain[1]) && !archivedCopy(*chain[0]));
  EXPECT_EQ(log.texts.size(), 1u);
  const auto bytes = archive(*chain.back());
  for (std::size_t i = 0; i < bytes->length(); ++i) {
    const auto damaged = ByteBuffer::copyOf(bytes->bytes(), bytes->length());
    damaged->mutableBytes()[i] ^= 0x21;
    EXPECT_FALSE(unarchive<Node>(*damaged) ||
                 unarchive<Node>(*ByteBuffer::copyOf(bytes->bytes(), i)));
    EXPECT_EQ(log.texts.size(), 2 * i + 3);
  }
}

struct OtherNode : Node {
  const char* archiveClassName() const override { return "OtherNode"; }
};

TEST(ArchiveTest, RefusalsHaveReasonsAndSuccessHasNone) {
  CapturedLog log;
  std::vector<Ref<Node>> chain(kDeepestNesting + 1);
  for (auto& node : chain) node = make<Node>();
  for (std::size_t i = 0; i + 1 < chain.size(); ++i) chain[i]->next = chain[i + 1].get();
  const auto deep = archive(*chain[0]), good = archive(*chain.back());
  const auto reasonFor = [](std::string bytes, std::size_t at = 0, char difference = 0) {
    bytes[at] = static_cast<char>(bytes[at] ^ difference);
    unarchive<Node>(*ByteBuffer::copyOf(bytes.data(), bytes.size()));
    return std::string(lastReason());
  };
  const std::string bytes(good->bytes(), good->bytes() + good->length());
  EXPECT_EQ(reasonFor("krosac"), "not a keyed archive: 6 bytes");
  EXPECT_EQ(reasonFor(bytes, 8, 2), "keyed archive of version 3, not 1");
  EXPECT_EQ(reasonFor(bytes, bytes.size() - 4, 1),
            "damaged keyed archive: checksum 20fb1597, computed 20fb1596");
  EXPECT_EQ(reasonFor({deep->bytes(), deep->bytes() + deep->length()}),
            "keyed archive nests more than 64 objects");
  EXPECT_EQ(reasonFor(bytes), "");
  EXPECT_FALSE(unarchive<OtherNode>(*good));
  EXPECT_STREQ(lastReason(), "keyed archive holds a Node, not a OtherNode");
}

// The expected checksum of the whole archive was computed by another program.
TEST(ArchiveTest, TheFormatDoesNotChange) {
  const auto bytes = archive(*make<Node>());
  const unsigned char* end = bytes->bytes() + bytes->length();
  EXPECT_EQ(std::string(end - 4, end), "\x96\x15\xfb\x20");
}

}  // namespace
}  // namespace krosac
