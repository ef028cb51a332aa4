// Runs an example program in a folder and collects what it prints.
#ifndef KROSAC_TESTS_EXAMPLES_RUNEXAMPLE_H
#define KROSAC_TESTS_EXAMPLES_RUNEXAMPLE_H

#include <sys/wait.h>

#include <cstdlib>
#include <filesystem>
#include <map>
#include <string>

#include "TemporaryFolder.h"

struct ExampleRun {
  int exitCode;
  std::string out, err;
};

// A line of the shell, run in the folder.
inline ExampleRun runInShell(const TemporaryFolder& folder, const std::string& line) {
  const std::string command =
      "cd '" + folder.path() + "' && " + line + " > example.out 2> example.err";
  const int status = std::system(command.c_str());
  return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, folder.read("example.out"),
          folder.read("example.err")};
}

// The path of an example for such a line.
inline std::string exampleProgram(const std::string& name) {
  return "'" KROSAC_EXAMPLES_DIR "/" + name + "' ";
}

// The arguments go through the shell and may name files in the folder.
inline ExampleRun runExample(const TemporaryFolder& folder, const std::string& name,
                             const std::string& arguments = "") {
  return runInShell(folder, exampleProgram(name) + arguments);
}

// The bytes of every file below a folder, by their paths from there; the collected output aside.
inline std::map<std::string, std::string> filesBelow(const TemporaryFolder& folder,
                                                     const std::string& name = ".") {
  std::map<std::string, std::string> files;
  const std::filesystem::path top = folder.path(name);
  for (const auto& entry : std::filesystem::recursive_directory_iterator(top)) {
    const auto path = entry.path().lexically_relative(top);
    if (entry.is_regular_file() && path.stem() != "example")
      files[path.string()] = folder.read(entry.path().string());
  }
  return files;
}

#endif
