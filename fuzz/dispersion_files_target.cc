// Files of dispersion curves. The first byte chooses the file name and thereby the kind of wave.
#include "Harness.h"

using namespace fuzz;

void runInput(std::string_view input) {
  static const std::vector<std::string> names{"curve.r.ga", "curve.l.ga", "curve"};
  static const std::string folder = folderOfLinks(names);
  if (input.empty()) return;
  asFile(input.substr(1));
  AllocationLimit limit(4 * input.size() + 8192);
  auto curve = make<DispersionCurve>();
  const auto kind = static_cast<unsigned char>(input[0]) % names.size();
  require(curve->initWithKESTRAVFile(folder + "/" + names[kind]) && true);
  for (const auto values : {curve->fltrPeriod(), curve->instPeriod(), curve->smthVelocity(),
                            curve->velocity(), curve->uncertainty()}) {
    require(std::ssize(values) == curve->nPeriods());
    touch({reinterpret_cast<const char*>(values.data()), values.size_bytes()});
  }
  require(curve->predictedValue().empty() && curve->misfit().empty());
}
