// Programs run as child processes.
#ifndef KROSAC_PLATFORM_INTERNAL_PROCESS_H
#define KROSAC_PLATFORM_INTERNAL_PROCESS_H

#include <optional>
#include <string>
#include <vector>

#include "krosac/platform/Export.h"
#include "krosac/platform/Text.h"

namespace krosac {

// A program and its environment. No shell is involved, so no text is interpreted as a command.
// Relative paths start from the caller's working directory. Standard error is the caller's.
struct ProcessCommand {
  std::string program = {};                 // a path; $PATH is not searched
  std::vector<std::string> arguments = {};  // without the program's name; may be empty texts
  std::string directory = {};               // working directory; empty for the caller's
  OptionalText inputFile = {};              // none: standard input is empty
  // Created or truncated before anything else, so that the output of an earlier program is never
  // mistaken for this one's. None: the caller's standard output.
  OptionalText outputFile = {};
  bool capturesOutput = false;  // into ProcessResult::output instead of the file
};

// The result of running a program.
struct ProcessResult {
  // Why the program did not run or its output is incomplete, as lastReason(); empty on success.
  std::string error = {};
  // None if the program did not run or was ended by a signal, or if the caller ignores SIGCHLD, so
  // that the system keeps no status.
  std::optional<int> exitCode = {};
  // The captured output, complete or up to the error.
  std::string output = {};
};

// Runs a program and waits for its end. Captured output is read to the end of the pipe, which
// includes what the program's own children write. The program starts with no signal blocked,
// SIGCHLD and SIGPIPE at their defaults, and the caller's open files that are not close-on-exec.
// The caller's working directory, streams and signals do not change. Several threads may call this.
KROSAC_API ProcessResult runProcess(const ProcessCommand& command);

}  // namespace krosac

#endif
