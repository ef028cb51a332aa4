#include "krosac/platform/ByteBuffer.h"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>
#include <iterator>
#include <string>

#include "TemporaryFolder.h"

namespace krosac {
namespace {

namespace fs = std::filesystem;

class ByteBufferTest : public ::testing::Test {
 protected:
  std::string path(const std::string& name) const { return folder_.path(name); }
  static Ref<ByteBuffer> bufferOf(const std::string& text) {
    return ByteBuffer::copyOf(text.data(), text.size());
  }
  static mode_t permissions(const std::string& path) {
    struct stat status {};
    EXPECT_EQ(::stat(path.c_str(), &status), 0);
    return status.st_mode & 07777;
  }
  std::size_t entries() const {
    return static_cast<std::size_t>(std::distance(fs::directory_iterator(folder_.path()), {}));
  }
  // Runs a check in a child process without the rights of the superuser; gives its exit code.
  template <typename Check>
  static int asOrdinaryUser(Check check) {
    const pid_t child = ::fork();
    if (child == 0) {
      if (::geteuid() == 0 && ::seteuid(65534) != 0) ::_exit(99);
      ::_exit(check() ? 1 : 0);
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  }

  TemporaryFolder folder_;
};

TEST_F(ByteBufferTest, ReadsBackWhatItWrote) {
  for (const std::string& text : {std::string(), std::string("a"), std::string(100000, 'x')}) {
    ASSERT_TRUE(bufferOf(text)->writeAtomically(path("f")));
    const auto read = ByteBuffer::fromFile(path("f"));
    ASSERT_TRUE(read);
    EXPECT_EQ(std::string(read->bytes(), read->bytes() + read->length()), text);
  }
  EXPECT_EQ(entries(), 1u);
}

TEST_F(ByteBufferTest, WritesOnlyTheFirstBytesWhenAsked) {
  ASSERT_TRUE(bufferOf("abcdef")->writeAtomically(path("f"), 4));
  EXPECT_EQ(folder_.read("f"), "abcd");
  ASSERT_TRUE(bufferOf("abc")->writeAtomically(path("f"), 1000));
  EXPECT_EQ(folder_.read("f"), "abc");
}

TEST_F(ByteBufferTest, ReadsNothingButRegularFiles) {
  ASSERT_EQ(::mkfifo(path("pipe").c_str(), 0600), 0);
  for (const char* name : {"missing", "pipe", "."})
    EXPECT_FALSE(ByteBuffer::fromFile(path(name))) << name;
  EXPECT_FALSE(ByteBuffer::fromFile("/dev/zero"));
  EXPECT_FALSE(ByteBuffer::fromFile(""));
}

TEST_F(ByteBufferTest, KeepsThePermissionsOfAnOldFileAndTakesThoseOfANewOneFromTheUmask) {
  folder_.write("old", "old");
  ASSERT_EQ(::chmod(path("old").c_str(), 0640), 0);
  const mode_t mask = ::umask(027);
  EXPECT_TRUE(bufferOf("x")->writeAtomically(path("old")));
  EXPECT_TRUE(bufferOf("x")->writeAtomically(path("new")));
  ::umask(mask);
  EXPECT_EQ(permissions(path("old")), 0640u);
  EXPECT_EQ(permissions(path("new")), 0640u & ~027u);
}

TEST_F(ByteBufferTest, WritesTheTargetOfLinksAndKeepsTheLinks) {
  fs::create_directory(path("there"));
  folder_.write("there/target", "old");
  fs::create_symlink("there/target", path("link"));
  fs::create_symlink("link", path("linkToLink"));
  fs::create_symlink("there/fresh", path("dangling"));
  fs::create_symlink("loop", path("loop"));
  EXPECT_TRUE(bufferOf("new")->writeAtomically(path("linkToLink")));
  EXPECT_TRUE(fs::is_symlink(path("link")) && fs::is_symlink(path("linkToLink")));
  EXPECT_EQ(folder_.read("there/target"), "new");
  EXPECT_TRUE(bufferOf("fresh")->writeAtomically(path("dangling")));
  EXPECT_EQ(folder_.read("there/fresh"), "fresh");
  EXPECT_FALSE(bufferOf("x")->writeAtomically(path("loop")));
}

TEST_F(ByteBufferTest, RefusesWhatIsNoFileToWrite) {
  fs::create_directory(path("folder"));
  for (const std::string& name : {path("folder"), path("folder/"), path("missing/f"), std::string(),
                                  std::string("/dev/null")}) {
    EXPECT_FALSE(bufferOf("x")->writeAtomically(name)) << name;
  }
  EXPECT_TRUE(fs::is_character_file("/dev/null"));
  EXPECT_EQ(entries(), 1u);
}

TEST_F(ByteBufferTest, LeavesAFileOrFolderAloneThatMayNotBeWritten) {
  folder_.write("f", "old");
  ASSERT_EQ(::chmod(folder_.path().c_str(), 0777), 0);
  ASSERT_EQ(::chmod(path("f").c_str(), 0444), 0);
  EXPECT_EQ(asOrdinaryUser([&] { return bufferOf("x")->writeAtomically(path("f")); }), 0);
  ASSERT_EQ(::chmod(folder_.path().c_str(), 0555), 0);
  EXPECT_EQ(asOrdinaryUser([&] { return bufferOf("x")->writeAtomically(path("g")); }), 0);
  ASSERT_EQ(::chmod(folder_.path().c_str(), 0755), 0);
  EXPECT_EQ(folder_.read("f"), "old");
  EXPECT_EQ(entries(), 1u);
}

TEST_F(ByteBufferTest, AWriteThatIsCutShortLeavesTheOldFileAndNoTemporary) {
  folder_.write("f", "old");
  const std::string big(1 << 20, 'x');
  const pid_t child = ::fork();
  if (child == 0) {
    std::signal(SIGXFSZ, SIG_IGN);
    const rlimit limit{4096, 4096};
    ::setrlimit(RLIMIT_FSIZE, &limit);
    ::_exit(bufferOf(big)->writeAtomically(path("f")) ? 1 : 0);
  }
  int status = 0;
  ::waitpid(child, &status, 0);
  EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0);
  EXPECT_EQ(folder_.read("f"), "old");
  EXPECT_EQ(entries(), 1u);
}

}  // namespace
}  // namespace krosac
