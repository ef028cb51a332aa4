// Computes the table files of data/ from velocity models: make_tables FOLDER
#include <cstdio>
#include <fstream>
#include <iostream>
#include <string>
#include <utility>
#include <vector>

#include "models/Models.h"
#include "raytracing/Phases.h"
#include "raytracing/PsDelays.h"

namespace {

using namespace krosac::raytracing;

std::vector<double> steps(double from, double to, double step) {
  std::vector<double> values;
  const int count = static_cast<int>((to - from) / step + 0.5);
  for (int i = 0; i <= count; ++i) values.push_back(from + i * step);
  return values;
}

std::vector<double> joined(std::vector<double> values, const std::vector<double>& more) {
  values.insert(values.end(), more.begin(), more.end());
  return values;
}

std::string fixed(double value, int width, int decimals) {
  char text[64];
  std::snprintf(text, sizeof text, "%*.*f", width, decimals, value);
  return text;
}

// Times of a phase, one row per distance, one column per depth.
using Rows = std::vector<std::vector<double>>;

Rows timesOf(const EarthModel& model, const std::string& phase, const std::vector<double>& degrees,
             const std::vector<double>& depths, Beyond beyond, double absent) {
  Rows rows(degrees.size());
  for (const double depth : depths) {
    const auto arrivals = Column(model, depth).arrivals(phase, degrees, beyond);
    for (std::size_t i = 0; i < rows.size(); ++i) {
      rows[i].push_back(arrivals[i].time < 0.0 ? absent : arrivals[i].time);
    }
  }
  return rows;
}

std::string lines(const Rows& rows, const std::vector<double>* degrees) {
  std::string text;
  for (std::size_t i = 0; i < rows.size(); ++i) {
    if (degrees) text += fixed((*degrees)[i], 5, 1);
    for (const double time : rows[i]) text += fixed(time, 11, 3);
    text += '\n';
  }
  return text;
}

class Folder {
 public:
  explicit Folder(std::string path) : path_(std::move(path)) {}
  void write(const std::string& name, const std::string& text) {
    std::ofstream file(path_ + "/" + name, std::ios::binary);
    file << text;
    file.close();
    if (!file) {
      std::cerr << "make_tables: can't write " << path_ << "/" << name << "\n";
      failed_ = true;
    }
  }
  bool failed() const { return failed_; }

 private:
  std::string path_;
  bool failed_ = false;
};

void writeJeffreysBullen(Folder& folder) {
  const EarthModel model = jeffreysBullen();
  const std::vector<double> depths{0,   33,  63,  127, 190, 254, 317,
                                   380, 444, 507, 570, 634, 697, 761};
  const auto near = steps(0.0, 10.0, 0.5);
  const auto direct = [&](const char* phase, double last) {
    return lines(timesOf(model, phase, joined(near, steps(11.0, last, 1.0)), depths,
                         Beyond::Diffracts, -1.0),
                 nullptr);
  };
  folder.write("jbtables.txt",
               "Jeffreys-Bullen travel times in s, computed by make_tables\n"
               "P (118 rows), a separator line, S (120 rows)\n"
               "rows: 0 to 10 degrees by 0.5, then 11, 12, ... by 1\n"
               "columns: 0 33 63 127 190 254 317 380 444 507 570 634 697 761 km\n" +
                   direct("p", 107.0) + "S\n" + direct("s", 109.0));

  const std::vector<double> phaseDepths{0,   25,  65,  130, 191, 256, 322,
                                        387, 453, 518, 584, 650, 715};
  const auto writePhase = [&](const std::string& phase, double last, Beyond beyond) {
    const auto degrees = steps(0.0, last, 1.0);
    folder.write(phase + ".txt",
                 lines(timesOf(model, phase, degrees, phaseDepths, beyond, -12345.0), &degrees));
  };
  writePhase("pcp", 100.0, Beyond::Diffracts);
  writePhase("scs", 100.0, Beyond::Diffracts);
  writePhase("pp", 180.0, Beyond::Ends);
  writePhase("ss", 180.0, Beyond::Ends);
}

void writeIasp91(Folder& folder, const EarthModel& model) {
  const std::vector<double> depths = joined({0.0, 25.0}, steps(50.0, 800.0, 50.0));
  const std::pair<const char*, double> lastRows[] = {
      {"p", 144},     {"s", 143},     {"pcp", 98},    {"scs", 99},    {"pcs", 62},
      {"scp", 62},    {"pp", 180},    {"ss", 180},    {"sp", 180},    {"ps", 180},
      {"sksac", 144}, {"sksdf", 180}, {"pkpab", 180}, {"pkpdf", 180}, {"pkikp", 180},
      {"lpp", 106},   {"lss", 106},   {"lps", 106},   {"lsp", 106}};
  for (const auto& [phase, last] : lastRows) {
    const auto degrees = steps(0.0, last, 1.0);
    const Beyond beyond = phase[1] == '\0' ? Beyond::Diffracts : Beyond::Ends;
    folder.write(std::string("iasp91_") + phase + ".txt",
                 lines(timesOf(model, phase, degrees, depths, beyond, -1.0), &degrees));
  }
}

void writePsMoveout(Folder& folder, const EarthModel& model) {
  const auto conversions = steps(0.0, 760.0, 10.0), degrees = steps(30.0, 95.0, 5.0);
  std::string text;
  for (const double depth : steps(0.0, 700.0, 50.0)) {
    const auto arrivals = Column(model, depth).arrivals("p", degrees, Beyond::Ends);
    for (std::size_t k = 0; k < degrees.size(); ++k) {
      const std::string slowness = fixed(arrivals[k].p / kEarthRadius, 11, 7);
      text += '>';
      text += fixed(depth, 8, 1) + fixed(degrees[k], 8, 1) + fixed(arrivals[k].time, 11, 3) +
              slowness + '\n';
      const auto delays = psDelays(model, arrivals[k].p, conversions);
      for (std::size_t i = 0; i < delays.size(); ++i) {
        text += fixed(conversions[i], 9, 1) + fixed(delays[i], 9, 3) + slowness + '\n';
      }
    }
  }
  folder.write("PsNMO.txt", text);
}

void writeLocsat(Folder& folder, const EarthModel& model) {
  const auto depths = joined(
      joined(joined(steps(0.0, 40.0, 5.0), steps(50.0, 100.0, 10.0)), steps(120.0, 200.0, 20.0)),
      steps(225.0, 700.0, 25.0));
  const auto degrees = joined(steps(0.0, 26.0, 0.5), steps(27.0, 180.0, 1.0));
  const auto nodes = [](const std::vector<double>& values) {
    std::string text;
    for (std::size_t i = 0; i < values.size(); ++i) {
      text += fixed(values[i], 8, 2) + (i % 10 == 9 || i + 1 == values.size() ? "\n" : "");
    }
    return text;
  };
  for (const auto& [phase, name] : {std::pair("p", "P"), std::pair("s", "S")}) {
    std::string text = std::string("IASP91 travel times of ") + name + ", s\n" +
                       std::to_string(depths.size()) + " depths, km\n" + nodes(depths) +
                       std::to_string(degrees.size()) + " distances, degrees\n" + nodes(degrees);
    for (const double depth : depths) {
      text += "depth " + fixed(depth, 0, 2) + " km\n";
      for (const Arrival& arrival :
           Column(model, depth).arrivals(phase, degrees, Beyond::Diffracts)) {
        text += fixed(arrival.time, 11, 3) + " " + name + "\n";
      }
    }
    folder.write(std::string("locsat_") + name + ".txt", text);
  }
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::cerr << "usage: make_tables FOLDER\n";
    return 2;
  }
  Folder folder(argv[1]);
  writeJeffreysBullen(folder);
  const EarthModel model = iasp91();
  writeIasp91(folder, model);
  writePsMoveout(folder, model);
  writeLocsat(folder, model);
  return folder.failed() ? 1 : 0;
}
