// Generates krosac/dsp/SobolTables.cc: make_sobol_tables <folder of constants> <output file>
//
// Reads sobol_directions.csv. Rejects initial values that would not fill the dyadic intervals: the
// k-th value of a dimension must be odd and less than 2^k.
#include <cstddef>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <sstream>
#include <string>

namespace {

[[noreturn]] void fail(const std::string& message) {
  std::cerr << "make_sobol_tables: " << message << '\n';
  std::exit(1);
}

// Converts "dimension,mdeg,ip,initial values separated by blanks" to one row of the table.
std::string tableRow(const std::string& line, std::size_t expectedDimension) {
  std::istringstream row(line);
  std::size_t dimension = 0;
  unsigned degree = 0, coefficients = 0;
  char comma1 = 0, comma2 = 0, comma3 = 0;
  row >> dimension >> comma1 >> degree >> comma2 >> coefficients >> comma3;
  if (!row || comma1 != ',' || comma2 != ',' || comma3 != ',' || dimension != expectedDimension ||
      degree < 1 || degree > 8 || coefficients >> (degree - 1) != 0)
    fail("bad row " + line);

  std::ostringstream out;
  out << "    {" << degree << ", " << coefficients << ", {";
  for (unsigned k = 1; k <= degree; ++k) {
    unsigned value = 0;
    if (!(row >> value) || value % 2 == 0 || value >> k != 0) fail("bad initial value in " + line);
    out << (k > 1 ? ", " : "") << value;
  }
  if (!(row >> std::ws).eof()) fail("too many initial values in " + line);
  out << "}},\n";
  return out.str();
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 3) fail("usage: make_sobol_tables <folder of constants> <output file>");
  std::ifstream in(std::string(argv[1]) + "/sobol_directions.csv");
  if (!in) fail(std::string("cannot read sobol_directions.csv in ") + argv[1]);
  std::ofstream out(argv[2]);
  out << "// Made by tools/make_sobol_tables from tools/constants/sobol_directions.csv: S. Joe "
         "and\n"
         "// F. Y. Kuo, SIAM J. Sci. Comput. 30, 2635-2654, 2008.\n"
         "#include \"krosac/dsp/internal/SobolTables.h\"\n\n"
         "namespace krosac {\n\n// clang-format off\n"
         "const SobolPolynomial kSobolPolynomials[kSobolDimensions] = {\n";
  std::size_t dimensions = 0;
  for (std::string line; std::getline(in, line);) {
    if (line.empty() || line[0] == '#' || line.starts_with("dimension,")) continue;
    out << tableRow(line, ++dimensions);
  }
  if (dimensions != 52) fail("52 dimensions expected, found " + std::to_string(dimensions));
  out << "};\n// clang-format on\n\n}  // namespace krosac\n";
  if (!out.flush()) fail(std::string("cannot write ") + argv[2]);
}
