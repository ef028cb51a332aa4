#include "krosac/platform/ByteBuffer.h"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>

#include "TemporaryFolder.h"

namespace krosac {
namespace {

namespace fs = std::filesystem;

class ByteBufferTest : public ::testing::Test, public TemporaryFolder {
 protected:
  static bool save(const std::string& text, const std::string& path) {
    return ByteBuffer::copyOf(text.data(), text.size())->writeAtomically(path);
  }
  mode_t permissions(const char* name) const {
    struct stat status {};
    EXPECT_EQ(::stat(path(name).c_str(), &status), 0);
    return status.st_mode & 07777;
  }
  // Whether saving fails in a child process that was prepared so.
  template <typename Prepare>
  bool isRefusedAfter(Prepare prepare, const std::string& text, const char* name) const {
    const pid_t child = ::fork();
    if (child == 0) ::_exit(prepare() && !save(text, path(name)) ? 0 : 1);
    int status = -1;
    ::waitpid(child, &status, 0);
    return status == 0;
  }
  std::ptrdiff_t entries() const { return std::distance(fs::directory_iterator(path()), {}); }
};

TEST_F(ByteBufferTest, ReadsBackWhatItWrote) {
  for (const std::string& text : {std::string(), std::string("a"), std::string(10'000'000, 'x')}) {
    ASSERT_TRUE(save(text, path("f")));
    const auto read = ByteBuffer::fromFile(path("f"));
    ASSERT_TRUE(read);
    EXPECT_TRUE(std::string(read->bytes(), read->bytes() + read->length()) == text);
  }
  for (const auto& [length, text] : {std::pair{4u, "abcd"}, {1000u, "abcdef"}}) {
    EXPECT_TRUE(ByteBuffer::copyOf("abcdef", 6)->writeAtomically(path("f"), length));
    EXPECT_EQ(read("f"), text);
  }
  EXPECT_EQ(entries(), 1);
}

TEST_F(ByteBufferTest, ReadsAndWritesNothingButRegularFiles) {
  ASSERT_EQ(::mkfifo(path("pipe").c_str(), 0600), 0);
  for (const std::string& name : {path("missing"), path("pipe"), path(), std::string("/dev/zero"),
                                  std::string("/dev/null"), std::string()})
    EXPECT_FALSE(ByteBuffer::fromFile(name)) << name;
  for (const std::string& name : {path("pipe"), path(), path("new/"), path("missing/f"),
                                  std::string("/dev/null"), std::string()})
    EXPECT_FALSE(save("x", name)) << name;
  EXPECT_EQ(entries(), 1);
}

TEST_F(ByteBufferTest, KeepsThePermissionsOfAnOldFileAndTakesThoseOfANewOneFromTheUmask) {
  ::chmod(write("old", "old").c_str(), 0640);
  const mode_t mask = ::umask(027);
  EXPECT_TRUE(save("x", path("old")) && save("x", path("new")));
  ::umask(mask);
  EXPECT_EQ(permissions("old"), 0640u);
  EXPECT_EQ(permissions("new"), 0640u & ~027u);
}

TEST_F(ByteBufferTest, WritesTheTargetOfLinksAndKeepsTheLinks) {
  fs::create_directory(path("there"));
  write("there/target", "old");
  for (const auto& [to, link] : {std::pair{"there/target", "link"},
                                 {"link", "linkToLink"},
                                 {"there/fresh", "dangling"},
                                 {"loop", "loop"}})
    fs::create_symlink(to, path(link));
  EXPECT_TRUE(save("new", path("linkToLink")) && save("fresh", path("dangling")));
  EXPECT_FALSE(save("x", path("loop")));
  EXPECT_TRUE(fs::is_symlink(path("link")) && fs::is_symlink(path("linkToLink")));
  EXPECT_EQ(read("there/target"), "new");
  EXPECT_EQ(read("there/fresh"), "fresh");
}

TEST_F(ByteBufferTest, AFailedWriteLeavesTheOldFileAndNoTemporary) {
  ::chmod(write("f", "old").c_str(), 0444);
  ::chmod(path().c_str(), 0777);
  const auto ordinaryUser = [] { return ::geteuid() != 0 || ::seteuid(65534) == 0; };
  const auto smallFilesOnly = [] {
    const rlimit limit{4096, 4096};
    std::signal(SIGXFSZ, SIG_IGN);
    return ::setrlimit(RLIMIT_FSIZE, &limit) == 0;
  };
  EXPECT_TRUE(isRefusedAfter(ordinaryUser, "x", "f")) << "a file that may not be written";
  ::chmod(path("f").c_str(), 0644);
  EXPECT_TRUE(isRefusedAfter(smallFilesOnly, std::string(1 << 20, 'x'), "f")) << "cut short";
  ::chmod(path().c_str(), 0555);
  EXPECT_TRUE(isRefusedAfter(ordinaryUser, "x", "g")) << "a folder that may not be written";
  ::chmod(path().c_str(), 0755);
  EXPECT_EQ(read("f"), "old");
  EXPECT_EQ(entries(), 1);
}

}  // namespace
}  // namespace krosac
