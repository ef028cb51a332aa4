#include "krosac/platform/internal/Process.h"

#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <exception>
#include <filesystem>
#include <new>
#include <system_error>
#include <utility>

#include "krosac/platform/internal/Files.h"
#include "krosac/platform/internal/Reason.h"
#include "krosac/platform/internal/Text.h"

extern char** environ;

namespace krosac {
namespace {

constexpr char kEmptyFile[] = "/dev/null";

// The same file under a number above those of the standard streams, which a caller may have closed:
// setting up one stream of the child must not overwrite another.
File aboveStandardStreams(int descriptor) noexcept {
  File file(descriptor);
  if (!file.isOpen() || descriptor > STDERR_FILENO) return file;
  return File(::fcntl(descriptor, F_DUPFD_CLOEXEC, STDERR_FILENO + 1));
}

std::string failure(const char* what, const std::string& name, int error) {
  CLocaleScope cLocaleHere;
  return formatText("Could not %s %s: %s.", what, name.c_str(),
                    std::generic_category().message(error).c_str());
}

// File actions and attributes for posix_spawn. The first error is kept and returned by spawn().
class SpawnRules {
 public:
  SpawnRules() noexcept {
    note(posix_spawn_file_actions_init(&actions_));
    note(posix_spawnattr_init(&attributes_));
    sigset_t signals;
    sigemptyset(&signals);
    note(posix_spawnattr_setsigmask(&attributes_, &signals));
    sigaddset(&signals, SIGCHLD);
    sigaddset(&signals, SIGPIPE);
    note(posix_spawnattr_setsigdefault(&attributes_, &signals));
    note(posix_spawnattr_setflags(&attributes_, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF));
  }
  ~SpawnRules() {
    posix_spawn_file_actions_destroy(&actions_);
    posix_spawnattr_destroy(&attributes_);
  }
  SpawnRules(const SpawnRules&) = delete;
  SpawnRules& operator=(const SpawnRules&) = delete;

  void connect(const File& file, int stream) noexcept {
    if (file.isOpen()) note(posix_spawn_file_actions_adddup2(&actions_, file.descriptor(), stream));
  }
  void enter(const std::string& directory) noexcept {
    if (!directory.empty())
      note(posix_spawn_file_actions_addchdir_np(&actions_, directory.c_str()));
  }
  // Returns 0 or the error number.
  int spawn(const std::string& program, char* const arguments[], pid_t& child) const noexcept {
    if (error_ != 0) return error_;
    return posix_spawn(&child, program.c_str(), &actions_, &attributes_, arguments, environ);
  }

 private:
  void note(int error) noexcept {
    if (error_ == 0) error_ = error;
  }

  posix_spawn_file_actions_t actions_;
  posix_spawnattr_t attributes_;
  int error_ = 0;
};

bool openPipe(File& readEnd, File& writeEnd) noexcept {
  int ends[2];
  if (::pipe2(ends, O_CLOEXEC) != 0) return false;
  readEnd = aboveStandardStreams(ends[0]);
  writeEnd = aboveStandardStreams(ends[1]);
  return readEnd.isOpen() && writeEnd.isOpen();
}

// Returns 0 or the error number. If memory runs out it reads on without storing, so that the writer
// does not block.
int readToEnd(File& pipe, std::string& text) noexcept {
  char block[65536];
  int error = 0;
  while (true) {
    const ssize_t n = pipe.read(block, sizeof block);
    if (n < 0) return errno;
    if (n == 0) return error;
    if (error != 0) continue;
    try {
      text.append(block, static_cast<std::size_t>(n));
    } catch (const std::exception&) {
      error = ENOMEM;
    }
  }
}

std::optional<int> waitForEnd(pid_t child) noexcept {
  int status = 0;
  pid_t ended;
  do {
    ended = ::waitpid(child, &status, 0);
  } while (ended < 0 && errno == EINTR);
  // If the caller ignores SIGCHLD, waitpid returns after the child's end, without a status.
  if (ended != child || !WIFEXITED(status)) return std::nullopt;
  return WEXITSTATUS(status);
}

}  // namespace

namespace {

void run(const ProcessCommand& command, ProcessResult& result) {
  const auto failed = [&](const char* what, const std::string& name, int error) {
    result.error = failure(what, name, error);
    setReason("%s", result.error.c_str());
  };

  File output, captured;
  if (command.capturesOutput) {
    if (!openPipe(captured, output)) return failed("make a pipe for", command.program, errno);
  } else if (command.outputFile) {
    output = aboveStandardStreams(
        ::open(command.outputFile->c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666));
    if (!output.isOpen()) return failed("write", *command.outputFile, errno);
  }
  const std::string inputFile = command.inputFile.value_or(kEmptyFile);
  const File input = aboveStandardStreams(::open(inputFile.c_str(), O_RDONLY | O_CLOEXEC));
  if (!input.isOpen()) return failed("read", inputFile, errno);
  if (!command.directory.empty() && ::access((command.directory + "/.").c_str(), X_OK) != 0)
    return failed("enter", command.directory, errno);

  // The child changes its directory before it runs the program, so a relative path would fail.
  std::error_code unknownDirectory;
  const std::string program = std::filesystem::absolute(command.program, unknownDirectory).string();
  if (unknownDirectory) return failed("run", command.program, unknownDirectory.value());
  std::vector<char*> arguments{const_cast<char*>(command.program.c_str())};
  for (const std::string& argument : command.arguments)
    arguments.push_back(const_cast<char*>(argument.c_str()));
  arguments.push_back(nullptr);

  SpawnRules rules;
  rules.connect(input, STDIN_FILENO);
  rules.connect(output, STDOUT_FILENO);
  rules.enter(command.directory);
  pid_t child;
  const int error = rules.spawn(program, arguments.data(), child);
  if (error != 0) return failed("run", command.program, error);

  output.close();
  const int readError = captured.isOpen() ? readToEnd(captured, result.output) : 0;
  captured.close();
  result.exitCode = waitForEnd(child);
  if (readError != 0) return failed("read the output of", command.program, readError);
}

}  // namespace

ProcessResult runProcess(const ProcessCommand& command) {
  clearReason();
  ProcessResult result;
  try {
    run(command, result);
  } catch (const std::bad_alloc&) {
    setMemoryReason();
    result.error = "out of memory";  // short enough to need none
  }
  return result;
}

}  // namespace krosac
