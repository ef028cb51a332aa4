// Runs an example program in a folder and collects its output.
#ifndef KROSAC_TESTS_EXAMPLES_RUNEXAMPLE_H
#define KROSAC_TESTS_EXAMPLES_RUNEXAMPLE_H

#include <gmock/gmock.h>
#include <sys/wait.h>

#include <map>
#include <sstream>

#include "TemporaryFolder.h"

struct ExampleRun {
  int exitCode;
  std::string out, err;
};

// Runs a shell command in the folder.
inline ExampleRun runInShell(const TemporaryFolder& folder, const std::string& line) {
  const std::string command =
      "cd '" + folder.path() + "' && " + line + " > example.out 2> example.err";
  const int status = std::system(command.c_str());
  return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, folder.read("example.out"),
          folder.read("example.err")};
}

// Runs an example in the folder. The shell parses the arguments and the launcher, which precedes
// the program.
inline ExampleRun runExample(const TemporaryFolder& folder, const std::string& name,
                             const std::string& arguments = "", const std::string& launcher = "") {
  return runInShell(folder, launcher + " \"" KROSAC_EXAMPLES_DIR "/" + name + "\" " + arguments);
}

// Returns the rows of numbers in a text, by the name in the comment "# NAME" or "# NAME, ..." above
// them.
inline std::map<std::string, std::vector<std::vector<double>>> dataSetsOf(const std::string& text) {
  std::map<std::string, std::vector<std::vector<double>>> sets;
  std::istringstream lines(text);
  std::string name;
  for (std::string line; std::getline(lines, line);) {
    if (line.starts_with("# ")) name = line.substr(2, line.find(',') - 2);
    std::istringstream in(line);
    const std::vector<double> row(std::istream_iterator<double>(in), {});
    if (!row.empty()) sets[name].push_back(row);
  }
  return sets;
}

// Returns the bytes of every file below a folder, by its relative path, except the collected
// output.
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
