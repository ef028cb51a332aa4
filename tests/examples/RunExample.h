// Runs an example program in a folder and collects what it prints.
#ifndef KROSAC_TESTS_EXAMPLES_RUNEXAMPLE_H
#define KROSAC_TESTS_EXAMPLES_RUNEXAMPLE_H

#include <sys/wait.h>

#include <cstdlib>
#include <string>

#include "TemporaryFolder.h"

struct ExampleRun {
  int exitCode;
  std::string out, err;
};

// The arguments go through the shell and may name files in the folder.
inline ExampleRun runExample(const TemporaryFolder& folder, const std::string& name,
                             const std::string& arguments = "") {
  const std::string command = "cd '" + folder.path() + "' && '" KROSAC_EXAMPLES_DIR "/" + name +
                              "' " + arguments + " > example.out 2> example.err";
  const int status = std::system(command.c_str());
  return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, folder.read("example.out"),
          folder.read("example.err")};
}

#endif
