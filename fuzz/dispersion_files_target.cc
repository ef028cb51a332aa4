// Files of dispersion curves. The first byte chooses the kind of name, and so of wave.
#include "Harness.h"
#include "krosac/collections/DispersionCurve.h"

using namespace fuzz;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const std::string names[] = {"curve.r.ga", "curve.l.ga", "curve"};
  static const std::string folder = folderOfLinks({names, names + 3});
  if (size == 0) return 0;
  asFile({data + 1, size - 1});
  AllocationLimit limit(4 * size + 8192);
  auto curve = krosac::make<krosac::DispersionCurve>();
  require(curve->initWithKESTRAVFile(folder + "/" + names[data[0] % 3]) && true);
  const auto count = static_cast<std::size_t>(curve->nPeriods());
  for (const auto values : {curve->fltrPeriod(), curve->instPeriod(), curve->smthVelocity(),
                            curve->velocity(), curve->uncertainty()}) {
    require(values.size() == count);
    touch(values);
  }
  require(curve->predictedValue().empty() && curve->misfit().empty());
  return 0;
}
