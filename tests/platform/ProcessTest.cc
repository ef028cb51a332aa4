#include "krosac/platform/internal/Process.h"

#include <gmock/gmock.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>

#include "TemporaryFolder.h"

namespace krosac {
namespace {

namespace fs = std::filesystem;
using testing::MatchesRegex;

ProcessResult capture(const std::string& program, const std::vector<std::string>& arguments) {
  return runProcess({.program = program, .arguments = arguments, .capturesOutput = true});
}

// After each test no file may be left open and no child left to wait for.
struct ProcessTest : ::testing::Test {
  ~ProcessTest() override {
    EXPECT_TRUE(openFiles() == before && ::waitpid(-1, nullptr, WNOHANG) == -1);
  }
  std::ptrdiff_t openFiles() { return std::distance(fs::directory_iterator("/proc/self/fd"), {}); }
  const std::ptrdiff_t before = openFiles();
  TemporaryFolder folder;
};

TEST_F(ProcessTest, PassesArgumentsAndReturnsOutputAndExitCode) {
  EXPECT_EQ(capture("/usr/bin/printf", {"[%s]", "", "a b", "$(id)", "<", "x;y", "*"}).output,
            "[][a b][$(id)][<][x;y][*]");
  EXPECT_EQ(capture("/bin/sh", {"-c", "exit 7"}).exitCode, 7);
  const auto killed = capture("/bin/sh", {"-c", "head -c 10000000 /dev/zero; kill -9 $$"});
  EXPECT_EQ(killed.output, std::string(10000000, '\0'));
  EXPECT_TRUE(killed.error.empty() && !killed.exitCode);
}

TEST_F(ProcessTest, ReportsWhyNothingRanAndLeavesNoOldOutput) {
  const std::string plain = folder.write("plain", ""), out = folder.path("out");
  const std::pair<ProcessCommand, std::string> cases[] = {
      {{plain, {}, "", {}, out}, "run " + plain + ": Permission denied."},
      {{"/bin/true", {}, plain, {}, out}, "enter " + plain + ": Not a directory."},
      {{"/bin/true", {}, "", "/missing", out}, "read /missing: No such file or directory."},
      {{"/bin/true", {}, "", out, "/missing/out"},
       "write /missing/out: No such file or directory."}};
  for (const auto& [command, what] : cases) {
    folder.write("out", "old");
    EXPECT_EQ(runProcess(command).error, "Could not " + what);
    EXPECT_EQ(folder.read("out"), command.outputFile == out ? "" : "old") << what;
  }
}

TEST_F(ProcessTest, AProgramInheritsOnlyWhatIsStated) {
  fs::create_directory(folder.path("a folder"));
  folder.write("in", "text\n");
  folder.write("out", std::string(500, 'x'));
  const std::string script = "#!/bin/sh\ncat; head -c 3000000 /dev/zero | cksum; pwd -P";
  ::chmod(folder.write("run", script).c_str(), 0755);
  const pid_t child = ::fork();
  if (child == 0) {
    std::signal(SIGCHLD, SIG_IGN);
    std::signal(SIGPIPE, SIG_IGN);
    sigset_t all;
    sigfillset(&all);
    ::sigprocmask(SIG_BLOCK, &all, nullptr);
    fs::current_path(folder.path());
    for (int file = 3; file < 1024; ++file) ::close(file);
    std::ignore = std::freopen("in", "r", stdin);  // must not become the program's input
    folder.write("files", capture("/bin/sh", {"-c", "cat; exec ls /proc/self/fd"}).output);
    folder.write("signals",
                 capture("/bin/grep", {"-E", "^Sig(Blk|Ign)", "/proc/self/status"}).output);
    for (int file = 0; file < 3; ++file) ::close(file);
    const auto r = runProcess({"./run", {}, "a folder", "in", "out"});
    const bool noInput = capture("/bin/sh", {"-c", "cat; echo end"}).output == "end\n";
    ::_exit(r.error.empty() && !r.exitCode && noInput ? 0 : 1);
  }
  int status = -1;
  ::waitpid(child, &status, 0);
  EXPECT_EQ(status, 0);
  EXPECT_THAT(folder.read("out"), MatchesRegex("text\n[0-9]+ 3000000\n/.*/a folder\n"));
  EXPECT_EQ(folder.read("files"), "0\n1\n2\n3\n") << "the last is opened by ls itself";
  // SIGPIPE and SIGCHLD are bits 13 and 17.
  EXPECT_THAT(folder.read("signals"),
              MatchesRegex("SigBlk:\t0+\nSigIgn:\t.{11}[02468ace]{2}.{3}\n"));
}

}  // namespace
}  // namespace krosac
