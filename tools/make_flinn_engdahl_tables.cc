// Generates krosac/timegeo/FlinnEngdahlTables.cc from the boundaries and names of the
// Flinn-Engdahl regions.
//
//   make_flinn_engdahl_tables tools/constants krosac/timegeo/FlinnEngdahlTables.cc
//
// The data are those of the 1995 revision (Young and others, 1996), as distributed by the USGS:
// flinn_engdahl_boundaries.csv, flinn_engdahl_regions.csv and flinn_engdahl_seismic_regions.csv.
#include <array>
#include <charconv>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <string>
#include <string_view>
#include <vector>

namespace {

constexpr int kRecords = 6051;
constexpr int kGeographicRegions = 757;
constexpr int kSeismicRegions = 50;
constexpr int kLastLatitude = 90;
constexpr std::array<int, 5> kFirstRecord = {0, 0, 1919, 3535, 4747};
constexpr std::array<int, 5> kRecordCount = {0, 1914, 1579, 1161, 1304};

struct Record {
  int latitude = 0, longitude = 0, region = 0;
};

[[noreturn]] void fail(const std::string& what) {
  std::fprintf(stderr, "make_flinn_engdahl_tables: %s\n", what.c_str());
  std::exit(1);
}

void require(bool condition, const std::string& what) {
  if (!condition) fail(what);
}

// The fields of each line of a file after its heading.
std::vector<std::vector<std::string>> readTable(const std::string& path, char separator,
                                                std::size_t fieldsPerLine) {
  std::ifstream in(path);
  require(in.is_open(), "cannot open " + path);
  std::vector<std::vector<std::string>> rows;
  std::string line;
  std::getline(in, line);
  while (std::getline(in, line)) {
    std::vector<std::string> fields(1);
    for (const char c : line) {
      if (c == separator) {
        fields.emplace_back();
      } else {
        fields.back() += c;
      }
    }
    require(fields.size() == fieldsPerLine, path + ": wrong number of fields: " + line);
    rows.push_back(fields);
  }
  return rows;
}

int number(const std::string& text, int least, int greatest) {
  int value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  require(error == std::errc() && end == text.data() + text.size() && value >= least &&
              value <= greatest,
          "number missing or out of range: " + text);
  return value;
}

std::vector<Record> readBoundaries(const std::string& path) {
  std::vector<Record> records(kRecords);
  std::array<int, 5> read{};
  for (const auto& row : readTable(path, ',', 4)) {
    const auto q = static_cast<std::size_t>(number(row[0], 1, 4));
    const Record record{number(row[1], 0, kLastLatitude), number(row[2], 0, 180),
                        number(row[3], 1, kGeographicRegions)};
    require(read[q] < kRecordCount[q], "a quadrant has too many records");
    const auto at = static_cast<std::size_t>(kFirstRecord[q] + read[q]++);
    records[at] = record;
    const bool first = read[q] == 1;
    const Record before = first ? Record{-1, 0, 0} : records[at - 1];
    require(before.latitude < record.latitude ||
                (before.latitude == record.latitude && before.longitude < record.longitude),
            "the records are not in order");
    require(!first || (record.latitude == 0 && record.longitude == 0),
            "a quadrant does not begin at 0, 0");
  }
  require(read == kRecordCount, "a quadrant has too few records");
  return records;
}

class TableWriter {
 public:
  explicit TableWriter(const std::string& path) : out_(path) {
    require(out_.is_open(), "cannot write " + path);
  }

  void line(std::string_view text) { out_ << text << '\n'; }

  // Writes one declaration and its items, as many per line as fit.
  void table(std::string_view declaration, const std::vector<std::string>& items) {
    out_ << "extern const " << declaration << " = {";
    std::size_t column = 100;
    for (const auto& item : items) {
      if (column + item.size() + 2 > 100) {
        out_ << "\n   ";
        column = 3;
      }
      out_ << ' ' << item << ',';
      column += item.size() + 2;
    }
    out_ << "\n};\n\n";
  }

  void finish() {
    out_.close();
    require(!out_.fail(), "cannot write the tables");
  }

 private:
  std::ofstream out_;
};

std::string braced(const std::vector<int>& values) {
  std::string text = "{";
  for (const int value : values) text += (text.size() > 1 ? ", " : "") + std::to_string(value);
  return text + "}";
}

// For each latitude from 0 to 91, the first record of quadrant q with at least this latitude.
std::string firstOfLatitude(const std::vector<Record>& records, std::size_t q) {
  std::string text = "{";
  int at = kFirstRecord[q];
  for (int latitude = 0; latitude <= kLastLatitude + 1; ++latitude) {
    while (at < kFirstRecord[q] + kRecordCount[q] &&
           records[static_cast<std::size_t>(at)].latitude < latitude)
      ++at;
    if (latitude % 16 == 0) text += "\n    ";
    text += ' ' + std::to_string(at) + ',';
  }
  return text + "}";
}

std::vector<std::string> strings(const std::vector<int>& values) {
  std::vector<std::string> texts;
  for (const int value : values) texts.push_back(std::to_string(value));
  return texts;
}

// The names of a table in the order of their numbers, after the blank name 0.
std::vector<std::string> names(const std::vector<std::vector<std::string>>& rows, int count) {
  std::vector<std::string> quoted = {"kBlank"};
  for (const auto& row : rows) {
    const auto next = static_cast<int>(quoted.size());
    require(number(row.front(), 1, count) == next, "the regions are not in order");
    require(row.back().find_first_of("\"\\") == std::string::npos,
            "a name contains a quote or backslash");
    quoted.push_back('"' + row.back() + '"');
  }
  require(static_cast<int>(quoted.size()) == count + 1, "regions are missing");
  return quoted;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 3) fail("usage: make_flinn_engdahl_tables <folder of constants> <output file>");
  const std::string prefix = std::string(argv[1]) + "/flinn_engdahl_";
  const auto records = readBoundaries(prefix + "boundaries.csv");
  const auto regions = readTable(prefix + "regions.csv", ';', 3);
  const auto seismicRegions = readTable(prefix + "seismic_regions.csv", ';', 2);

  std::vector<int> seismicOf = {0};
  for (const auto& row : regions) seismicOf.push_back(number(row[1], 1, kSeismicRegions));
  seismicOf.resize(kGeographicRegions + 3);
  std::vector<std::string> boundaryItems, latitudeItems = {"{}"};
  for (const Record& r : records)
    boundaryItems.push_back(braced({r.latitude, r.longitude, r.region}));
  for (std::size_t q = 1; q <= 4; ++q) latitudeItems.push_back(firstOfLatitude(records, q));

  TableWriter out(argv[2]);
  out.line("// Made by tools/make_flinn_engdahl_tables from tools/constants; not to be edited.");
  out.line("#include \"krosac/timegeo/internal/FlinnEngdahlTables.h\"");
  out.line("");
  out.line("// clang-format off");
  out.line("namespace krosac::flinn_engdahl {");
  out.line("namespace {");
  out.line("");
  out.line("constexpr char kBlank[] = \"" + std::string(52, ' ') + "\";");
  out.line("");
  out.line("}  // namespace");
  out.line("");
  out.table("std::int32_t ind[5]", strings({kFirstRecord.begin(), kFirstRecord.end()}));
  out.table("std::int32_t num[5]", strings({kRecordCount.begin(), kRecordCount.end()}));
  out.table("BoundaryRecord lln[6051]", boundaryItems);
  out.table("std::int16_t firstOfLatitude[5][kLastLatitude + 2]", latitudeItems);
  out.table("std::int16_t nsreg[760]", strings(seismicOf));
  out.table("char* const greg[kGeographicRegions + 1]", names(regions, kGeographicRegions));
  out.table("char* const sreg[kSeismicRegions + 1]", names(seismicRegions, kSeismicRegions));
  out.line("}  // namespace krosac::flinn_engdahl");
  out.finish();
  return 0;
}
