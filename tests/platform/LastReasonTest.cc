#include "krosac/platform/LastReason.h"

#include <filesystem>
#include <thread>

#include "CapturedLog.h"
#include "TemporaryFolder.h"
#include "krosac/platform/ByteBuffer.h"
#include "krosac/platform/internal/Process.h"

namespace krosac {
namespace {

std::string readReason(const std::string& path) {
  ByteBuffer::fromFile(path);
  return lastReason();
}

std::string writeReason(const std::string& path) {
  ByteBuffer::zeroed(1)->writeAtomically(path);
  return lastReason();
}

std::string runReason(const std::string& program) {
  runProcess({.program = program});
  return lastReason();
}

TEST(LastReasonTest, FailuresHaveReasonsAndSuccessHasNone) {
  const TemporaryFolder folder;
  const std::string file = folder.write("file", "x"), none = folder.path("none");
  std::filesystem::create_symlink("loop", folder.path("loop"));
  const std::pair<std::string, std::string> reasons[] = {
      {readReason(none), none + ": No such file or directory"},
      {readReason(folder.path()), folder.path() + ": is a folder"},
      {readReason("/dev/null"), "/dev/null: is not a regular file"},
      {readReason(file), ""},
      {writeReason(""), ": No such file or directory"},
      {writeReason(none + "/f"), none + "/f: No such file or directory"},
      {writeReason(folder.path()), folder.path() + ": is a folder"},
      {writeReason(none + "/"), none + "/: is a folder"},
      {writeReason("/dev/null"), "/dev/null: is not a regular file"},
      {writeReason(folder.path("loop")),
       folder.path("loop") + ": Too many levels of symbolic links"},
      {writeReason(file), ""},
      {runReason(none), "Could not run " + none + ": No such file or directory."},
      {runReason("/bin/true"), ""}};
  for (const auto& [reason, expected] : reasons) EXPECT_EQ(reason, expected);
}

TEST(LastReasonTest, IsKeptPerThreadAndCutToItsLength) {
  const std::string name(2000, 'x');
  EXPECT_EQ(readReason(name), name.substr(0, 1023));
  std::string other = "?";
  std::thread([&] { other = lastReason(); }).join();
  EXPECT_EQ(other, "");
}

TEST(LastReasonTest, IsLoggedForDebuggingOnly) {
  CapturedLog log;
  readReason("none");
  EXPECT_TRUE(log.texts.empty());
  ::setenv("KROSAC_DEBUG", "1", 1);
  readReason("none");
  ::unsetenv("KROSAC_DEBUG");
  EXPECT_EQ(log.texts, std::vector<std::string>{"none: No such file or directory"});
}

}  // namespace
}  // namespace krosac
