// A folder of table files that the library finds before its own.
#ifndef KROSAC_TESTS_TRAVELTIMES_TABLEFOLDER_H
#define KROSAC_TESTS_TRAVELTIMES_TABLEFOLDER_H

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <limits>
#include <string>

namespace krosac {

inline constexpr float kNone = -12345.0f;
inline constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();
inline constexpr float kInfinity = std::numeric_limits<float>::infinity();

class TableFolder {
 public:
  TableFolder() {
    std::string pattern = testing::TempDir() + "krosac_tables_XXXXXX";
    path_ = mkdtemp(pattern.data());
    setenv("KROSAC_DATA", path_.c_str(), 1);
  }
  ~TableFolder() {
    unsetenv("KROSAC_DATA");
    std::filesystem::remove_all(path_);
  }
  std::string write(const std::string& name, const std::string& text) {
    std::ofstream(path_ / name, std::ios::binary) << text;
    return (path_ / name).string();
  }
  // A folder in the place of a file, which no program can read as one.
  void block(const std::string& name) { std::filesystem::create_directory(path_ / name); }

 private:
  std::filesystem::path path_;
};

// What the call prints on standard error.
template <typename Call>
std::string messageOf(Call call) {
  testing::internal::CaptureStderr();
  call();
  return testing::internal::GetCapturedStderr();
}

}  // namespace krosac

#endif
