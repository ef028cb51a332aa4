#include "krosac/platform/Archive.h"

#include <gtest/gtest.h>

#include <cstring>
#include <type_traits>

#include "CapturedLog.h"
#include "krosac/platform/LastReason.h"
#include "krosac/platform/internal/Crc32.h"

namespace krosac {
namespace {

using namespace std::string_view_literals;
using Texts = std::vector<std::string>;

const std::string kFront("\xd9\xd9\xf7\x84\x66krosac\x01\xd9\x01\x00", 15);

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

// The bytes of an archive with its checksum behind them.
Ref<ByteBuffer> withChecksum(std::string bytes) {
  const std::uint32_t crc = crc32(bytes);
  bytes += '\x1a';
  for (int shift = 24; shift >= 0; shift -= 8) bytes += static_cast<char>(crc >> shift);
  return ByteBuffer::copyOf(bytes.data(), bytes.size());
}

// An archive of so many nodes, each inside the one before.
Ref<ByteBuffer> chainOf(int nodes) {
  std::string bytes = kFront;
  for (int i = 0; i < nodes; ++i)
    bytes += (i ? "\x64next" : "") + std::string("\xd8\x1c\xbf\x66@class\x64Node");
  return withChecksum(bytes + std::string(static_cast<std::size_t>(nodes), '\xff'));
}

TEST(ArchiveTest, RefusesDamageAndDeepNestingWithAMessage) {
  CapturedLog log;
  std::vector<Ref<Node>> chain(kDeepestNesting + 1);
  for (auto& node : chain) node = make<Node>();
  for (std::size_t i = 0; i + 1 < chain.size(); ++i) chain[i]->next = chain[i + 1].get();
  EXPECT_TRUE(archivedCopy(*chain[1]));
  EXPECT_FALSE(archive(*chain[0]));
  EXPECT_TRUE(unarchive<Node>(*chainOf(kDeepestNesting)));
  EXPECT_FALSE(unarchive<Node>(*chainOf(kDeepestNesting + 1)));
  EXPECT_EQ(log.texts,
            Texts(2, "A keyed archive nests more than 64 objects; nothing is taken from it."));
  log.texts.clear();
  const auto bytes = archive(*chain.back());
  for (std::size_t i = 0; i < bytes->length(); ++i) {
    const auto damaged = ByteBuffer::copyOf(bytes->bytes(), bytes->length());
    damaged->mutableBytes()[i] ^= 0x21;
    EXPECT_FALSE(unarchive<Node>(*damaged) ||
                 unarchive<Node>(*ByteBuffer::copyOf(bytes->bytes(), i)));
    EXPECT_EQ(
        log.texts,
        Texts(2, "A keyed archive is damaged or of an unknown version; nothing is taken from it."));
    log.texts.clear();
  }
}

struct OtherNode : Node {
  const char* archiveClassName() const override { return "OtherNode"; }
};

TEST(ArchiveTest, RefusalsHaveReasonsAndSuccessHasNone) {
  CapturedLog log;
  const auto deep = chainOf(kDeepestNesting + 1), good = archive(*make<Node>());
  const auto reasonFor = [](std::string bytes, std::size_t at = 0, char difference = 0) {
    bytes[at] = static_cast<char>(bytes[at] ^ difference);
    unarchive<Node>(*ByteBuffer::copyOf(bytes.data(), bytes.size()));
    return std::string(lastReason());
  };
  const std::string bytes(good->bytes(), good->bytes() + good->length());
  EXPECT_EQ(reasonFor("krosac"), "not a keyed archive: 6 bytes");
  EXPECT_EQ(reasonFor(bytes, 11, 2), "keyed archive of version 3, not 1");
  EXPECT_EQ(reasonFor(bytes, bytes.size() - 1, 1),
            "damaged keyed archive: checksum 7a5d2fac, computed 7a5d2fad");
  EXPECT_EQ(reasonFor({deep->bytes(), deep->bytes() + deep->length()}),
            "keyed archive nests more than 64 objects");
  EXPECT_EQ(reasonFor(bytes), "");
  EXPECT_FALSE(unarchive<OtherNode>(*good));
  EXPECT_STREQ(lastReason(), "keyed archive holds a Node, not a OtherNode");
}

// Whatever a reader of CBOR finds well-formed but this library never writes is refused.
TEST(ArchiveTest, OtherItemsAreRefused) {
  setLogSink([](const std::string&) {});
  const std::string object = kFront + "\xd8\x1c\xbf\x66@class\x64Node";
  EXPECT_TRUE(unarchive<Node>(*withChecksum(object + "\xff")));
  const std::string_view values[] = {
      "\x1a\x80\x00\x00\x00"sv,         // an integer beyond 32 bits
      "\x81\x80"sv,                     // a list in a list
      "\x81\x01"sv,                     // a list of numbers
      "\x5f\x41x\xff"sv,                // a string in pieces
      "\xa0"sv,                         // a map that is no object
      "\xd8\x1d\x01"sv,                 // an object that does not exist
      "\xd8\x19\x18\x63"sv,             // a string that does not exist
      "\xc1\x00"sv,                     // a date in whole seconds
      "\xf9\x00\x00"sv,                 // a half-precision number
      "\xd8\x1c\xbf\x63mag\x01\xff"sv,  // an object without a class
      "\xf7"sv,                         // undefined
  };
  for (const std::string_view value : values) {
    EXPECT_FALSE(unarchive<Node>(*withChecksum(object + "\x61x" + std::string(value) + "\xff")))
        << testing::PrintToString(value);
    EXPECT_FALSE(unarchive<Node>(*withChecksum(object + "\x61x" + std::string(value))));
  }
}

// Python's cbor2 reads these bytes, whose checksum zlib computed.
TEST(ArchiveTest, TheFormatDoesNotChange) {
  const auto bytes = archive(*make<Node>());
  const unsigned char* end = bytes->bytes() + bytes->length();
  EXPECT_EQ(std::string(end - 4, end), "z]/\xad");
}

}  // namespace
}  // namespace krosac
