// A new folder, removed with its contents at the end of its scope.
#ifndef KROSAC_TESTS_TEMPORARYFOLDER_H
#define KROSAC_TESTS_TEMPORARYFOLDER_H

#include <stdlib.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>
#include <string_view>

class TemporaryFolder {
 public:
  TemporaryFolder() {
    std::string name = (std::filesystem::temp_directory_path() / "krosac-test-XXXXXX").string();
    if (!mkdtemp(name.data())) throw std::runtime_error("no temporary folder " + name);
    folder_ = name;
  }
  ~TemporaryFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(folder_, ignored);
  }
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;

  std::string path() const { return folder_.string(); }
  // The path of a file in the folder. It need not exist.
  std::string path(std::string_view name) const { return (folder_ / name).string(); }

  // Writes a file in the folder and returns its path.
  std::string write(std::string_view name, std::string_view bytes) const {
    std::ofstream(path(name), std::ios::binary).write(bytes.data(), std::ssize(bytes));
    return path(name);
  }
  // The bytes of a file in the folder; empty if there is none.
  std::string read(std::string_view name) const {
    std::ifstream file(path(name), std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(file), {});
  }

 private:
  std::filesystem::path folder_;
};

#endif
