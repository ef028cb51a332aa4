#include "krosac/platform/Process.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>

#include "TemporaryFolder.h"

namespace krosac {
namespace {

namespace fs = std::filesystem;
using ::testing::HasSubstr;

ProcessResult capture(const std::string& program, const std::vector<std::string>& arguments) {
  return runProcess({.program = program, .arguments = arguments, .capturesOutput = true});
}

// Nothing may stay open and no ended child unwaited, whatever a test has done.
struct ProcessTest : ::testing::Test {
  ~ProcessTest() override {
    EXPECT_TRUE(openFiles() == before && ::waitpid(-1, nullptr, WNOHANG) == -1);
  }
  std::ptrdiff_t openFiles() { return std::distance(fs::directory_iterator("/proc/self/fd"), {}); }
  const std::ptrdiff_t before = openFiles();
  TemporaryFolder folder;
};

TEST_F(ProcessTest, PassesArgumentsAndGivesOutputAndExitCode) {
  EXPECT_EQ(capture("/usr/bin/printf", {"[%s]", "", "a b", "$(id)", "<", "x;y", "*"}).output,
            "[][a b][$(id)][<][x;y][*]");
  const auto noInput = capture("/bin/sh", {"-c", "cat; echo end; exit 7"});
  EXPECT_TRUE(noInput.output == "end\n" && noInput.exitCode == 7);
  const auto killed = capture("/bin/sh", {"-c", "kill -9 $$"});
  EXPECT_TRUE(killed.error.empty() && !killed.exitCode);
  const auto large = capture("/usr/bin/head", {"-c", "10000000", "/dev/zero"});
  EXPECT_EQ(large.output, std::string(10000000, '\0'));
}

TEST_F(ProcessTest, WorksInAFolderWithRelativePathsTakenFromTheCallers) {
  const fs::path here = fs::current_path(), there = folder.path("a folder");
  fs::create_directory(there);
  folder.write("in", "what goes in");
  folder.write("out", "old and much longer than what goes in");
  ::chmod(folder.write("run", "#!/bin/sh\npwd -P > pwd; cat").c_str(), 0755);
  fs::current_path(folder.path());
  for (const char* out : {"out", "fresh"}) {
    EXPECT_EQ(runProcess({"./run", {}, "a folder", "in", out}).exitCode, 0);
    EXPECT_EQ(folder.read(out), "what goes in");
    EXPECT_EQ(folder.read("a folder/pwd"), fs::canonical(there).string() + "\n");
  }
  fs::current_path(here);
}

TEST_F(ProcessTest, SaysWhyNothingRanAndLeavesNoOldOutput) {
  const std::string plain = folder.write("plain", "no program"), out = folder.path("out");
  ::chmod(plain.c_str(), 0755);
  const std::pair<ProcessCommand, std::string> cases[] = {
      {{"/missing/program", {}, "", {}, out}, "run /missing/program: No such file or directory."},
      {{plain, {}, "", {}, out}, "run " + plain + ": Exec format error."},
      {{"/bin/true", {}, plain, {}, out}, "enter " + plain + ": Not a directory."},
      {{"/bin/true", {}, "", "/missing", out}, "read /missing: No such file"},
      {{"/bin/true", {}, "", out, "/missing/out"}, "write /missing/out: No such file"}};
  for (const auto& [command, what] : cases) {
    folder.write("out", "old");
    EXPECT_THAT(runProcess(command).error, HasSubstr("Could not " + what));
    EXPECT_EQ(folder.read("out"), command.outputFile == out ? "" : "old") << what;
  }
  EXPECT_THAT(capture("/missing/program", {}).error, HasSubstr("No such file"));
}

TEST_F(ProcessTest, WaitsAndStartsCleanWhereTheCallerIgnoresOrBlocksSignals) {
  const auto oldChild = std::signal(SIGCHLD, SIG_IGN), oldPipe = std::signal(SIGPIPE, SIG_IGN);
  sigset_t all, oldBlocked;
  sigfillset(&all);
  ::sigprocmask(SIG_BLOCK, &all, &oldBlocked);
  const auto masks = capture("/bin/grep", {"-E", "^Sig(Blk|Ign)", "/proc/self/status"});
  const std::string slowly = "head -c 3000000 /dev/zero | cksum > done";
  const auto r = runProcess({"/bin/sh", {"-c", slowly}, folder.path()});
  EXPECT_THAT(folder.read("done"), HasSubstr(" 3000000"));
  EXPECT_TRUE(r.error.empty() && !r.exitCode) << r.error;
  ::sigprocmask(SIG_SETMASK, &oldBlocked, nullptr);
  std::signal(SIGCHLD, oldChild);
  std::signal(SIGPIPE, oldPipe);
  unsigned long long blk = 1, ign = ~0ull;
  std::sscanf(masks.output.c_str(), "SigBlk: %llx SigIgn: %llx", &blk, &ign);
  EXPECT_TRUE(blk == 0 && !(ign & (1u << (SIGCHLD - 1) | 1u << (SIGPIPE - 1)))) << masks.output;
}

TEST_F(ProcessTest, SetsUpStreamsWhereTheCallersAreClosedAndPassesNoOthers) {
  const std::string in = folder.write("in", "text"), out = folder.path("out");
  const pid_t child = ::fork();
  if (child == 0) {
    for (int file = 3; file < 1024; ++file) ::close(file);
    // The fourth is the folder that ls itself reads.
    const bool alone = capture("/bin/ls", {"/proc/self/fd"}).output == "0\n1\n2\n3\n";
    for (int file = 0; file < 3; ++file) ::close(file);
    const bool copied = runProcess({"/bin/cat", {}, "", in, out}).exitCode == 0;
    ::_exit(alone && copied && capture("/bin/cat", {in}).output == "text" ? 0 : 1);
  }
  int status = -1;
  ::waitpid(child, &status, 0);
  EXPECT_TRUE(status == 0 && folder.read("out") == "text");
}

}  // namespace
}  // namespace krosac
