// Programs run as child processes.
#ifndef KROSAC_PLATFORM_INTERNAL_PROCESS_H
#define KROSAC_PLATFORM_INTERNAL_PROCESS_H

#include <optional>
#include <string>
#include <vector>

#include "krosac/platform/Export.h"
#include "krosac/platform/Text.h"

namespace krosac {

// What to run and how. No shell reads any of it, so no text can become a command. Relative paths
// are taken from the caller's working directory. The standard error stream is the caller's.
struct ProcessCommand {
  std::string program = {};                 // a path; $PATH is not searched
  std::vector<std::string> arguments = {};  // without the program's name; empty ones are passed on
  std::string directory = {};               // to work in; empty for the caller's own
  OptionalText inputFile = {};              // none: the input is at its end at once
  // Made where it is missing and cut to nothing before anything else is tried, so that what an
  // earlier program wrote is never taken for this one's output. None: the caller's own output.
  OptionalText outputFile = {};
  bool capturesOutput = false;  // into ProcessResult::output, in place of the file
};

// What became of a program.
struct ProcessResult {
  // Why the program did not run, or why its output is not whole, in a sentence; else empty.
  std::string error = {};
  // None where the program did not run, was ended by a signal, or the caller ignores SIGCHLD and so
  // keeps every status from us.
  std::optional<int> exitCode = {};
  // The captured output, complete or up to the error.
  std::string output = {};
};

// Runs a program and waits for its end. Captured output is read to the end of the pipe, so also
// what the program's own children write. The child gets no signal blocked, SIGCHLD and SIGPIPE at
// their defaults, and of the caller's open files those that are not close-on-exec. The caller's
// working directory, streams and signals stay as they are. May be called from several threads.
KROSAC_API ProcessResult runProcess(const ProcessCommand& command);

}  // namespace krosac

#endif
