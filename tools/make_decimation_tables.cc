// Generates krosac/dsp/DecimationTables.cc: make_decimation_tables <folder of constants> <output
// file>
//
// Reads decimation_by2.csv to decimation_by5.csv. Rejects filters that are not symmetric or do not
// have unit sum.
#include <cmath>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <string>
#include <vector>

namespace {

[[noreturn]] void fail(const std::string& message) {
  std::cerr << "make_decimation_tables: " << message << '\n';
  std::exit(1);
}

// Returns the coefficients as text, so that they are rounded only once, by the compiler.
std::vector<std::string> readTaps(const std::string& path) {
  std::ifstream file(path);
  if (!file) fail("cannot read " + path);
  std::vector<std::string> taps;
  for (std::string line; std::getline(file, line);) {
    if (line.empty() || line[0] == '#' || line == "tap,coefficient") continue;
    const std::size_t comma = line.find(',');
    if (comma == std::string::npos || line.substr(0, comma) != std::to_string(taps.size()))
      fail(path + ": tap " + std::to_string(taps.size()) + " expected, found " + line);
    taps.push_back(line.substr(comma + 1));
  }
  return taps;
}

void checkTaps(const std::vector<std::string>& taps, const std::string& path) {
  double sum = 0.0;
  for (std::size_t t = 0; t < taps.size(); ++t) {
    if (taps[t] != taps[taps.size() - 1 - t]) fail(path + ": not symmetric");
    sum += std::stod(taps[t]);
  }
  if (!(std::abs(sum - 1.0) < 1e-9)) fail(path + ": the sum is not 1");
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 3) fail("usage: make_decimation_tables <folder of constants> <output file>");
  std::ofstream out(argv[2]);
  out << "// Made by tools/make_decimation_tables from tools/constants/decimation_by*.csv.\n"
         "#include \"krosac/dsp/Decimation.h\"\n\n"
         "namespace krosac {\n\n// clang-format off\n";
  for (const char factor : {'2', '3', '4', '5'}) {
    const std::string path = std::string(argv[1]) + "/decimation_by" + factor + ".csv";
    const std::vector<std::string> taps = readTaps(path);
    checkTaps(taps, path);
    out << "const float DECIMATEby" << factor << '[' << taps.size() << "] = {";
    for (std::size_t t = 0; t < taps.size(); ++t) {
      out << (t % 7 == 0 ? "\n   " : "") << ' ' << taps[t] << "f,";
    }
    out << "\n};\n\n";
  }
  out << "// clang-format on\n\n}  // namespace krosac\n";
  if (!out.flush()) fail(std::string("cannot write ") + argv[2]);
}
