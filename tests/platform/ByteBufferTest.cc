#include "krosac/platform/ByteBuffer.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include "TemporaryFolder.h"

namespace krosac {
namespace {

namespace fs = std::filesystem;

class ByteBufferTest : public ::testing::Test, public TemporaryFolder {
 protected:
  static bool save(const std::string& text, const std::string& path) {
    return ByteBuffer::copyOf(text.data(), text.size())->writeAtomically(path);
  }
  std::ptrdiff_t entries() const { return std::distance(fs::directory_iterator(path()), {}); }
};

TEST_F(ByteBufferTest, ReadsWhatItWrote) {
  for (const auto& [size, asked] :
       {std::pair(0u, 9u), {1u, 1u}, {6u, 4u}, {10'000'000u, 1u << 30}}) {
    const std::string text(size, 'x');
    ASSERT_TRUE(ByteBuffer::copyOf(text.data(), size)->writeAtomically(path("f"), asked));
    const auto read = ByteBuffer::fromFile(path("f"));
    ASSERT_TRUE(read);
    EXPECT_EQ(std::string(read->bytes(), read->bytes() + read->length()), text.substr(0, asked));
  }
  EXPECT_EQ(entries(), 1);
}

TEST_F(ByteBufferTest, RefusesEverythingButRegularFilesAndReadOnlyTargets) {
  ASSERT_EQ(::mkfifo(path("pipe").c_str(), 0600), 0);
  for (const std::string& name :
       {path("pipe"), path(), path("new/"), path("missing/f"), std::string()})
    EXPECT_FALSE(ByteBuffer::fromFile(name) || save("x", name)) << name;
  fs::permissions(write("f", "old"), fs::perms{0444});
  fs::permissions(path(), fs::perms{0777});
  const uid_t user = ::geteuid();
  EXPECT_TRUE(user != 0 || ::seteuid(65534) == 0);  // root may write to any file
  EXPECT_FALSE(save("x", path("f")));
  EXPECT_EQ(::seteuid(user), 0);
  EXPECT_EQ(read("f"), "old");
  EXPECT_EQ(entries(), 2);
}

TEST_F(ByteBufferTest, KeepsThePermissionsOfOldFilesAndUsesTheUmaskForNewOnes) {
  fs::permissions(write("old", "old"), fs::perms{0604});
  const mode_t mask = ::umask(027);
  EXPECT_TRUE(save("x", path("old")) && save("x", path("new")));
  ::umask(mask);
  EXPECT_EQ(fs::status(path("old")).permissions(), fs::perms{0604});
  EXPECT_EQ(fs::status(path("new")).permissions(), fs::perms{0640});
}

TEST_F(ByteBufferTest, WritesThroughSymbolicLinks) {
  fs::create_directory(path("there"));
  fs::create_symlink(path("there/link"), path("absolute"));
  fs::create_symlink("target", path("there/link"));
  fs::create_symlink("loop", path("loop"));
  for (const std::string text : {"new", "newer"}) {
    EXPECT_TRUE(save(text, path("absolute")) && !save("x", path("loop")));
    EXPECT_TRUE(fs::is_symlink(path("absolute")) && fs::is_symlink(path("there/link")));
    EXPECT_EQ(read("there/target"), text);
  }
}

}  // namespace
}  // namespace krosac
