#include <gtest/gtest.h>

#include <limits>

#include "dsp/KernelSets.h"
#include "dsp/PlainLoops.h"
#include "krosac/dsp/Butterworth.h"

namespace krosac {
namespace {

void plainApply(const BUFilterDesign& design, std::vector<float>& data, int nPasses) {
  const long n = static_cast<long>(data.size());
  for (int pass = 0; pass < nPasses; ++pass)
    for (int k = 0; k < design.nSections && n > 0; ++k)
      plain::section(design.num[k], design.den[k], pass == 0 ? &data[0] : &data[n - 1], n,
                     pass == 0 ? 1 : -1);
}

// Whatever the coefficients: infinite and NaN ones must not spread from samples that are not there.
TEST(CascadeKernel, GivesTheBitsOfSectionAfterSection) {
  const float infinity = std::numeric_limits<float>::infinity();
  for (int sections = 1; sections <= 10; ++sections) {
    for (int design = 0; design < 4; ++design) {
      BUFilterDesign filter;
      BUroots(&filter, 2 * sections);
      design == 1 ? LPtoHP(&filter) : LP(&filter);
      CutOffs(&filter, warp(0.5f * (design == 2 ? 0.6f : 0.11f), 2.0f));
      BiLin(&filter);
      if (design == 3) filter.num[sections - 1][1] = filter.den[sections / 2][2] = -infinity;
      for (int n = 0; n <= 310; ++n) {
        const int length = n <= 300 ? n : 97 * n;
        const auto kind = static_cast<Samples>(n % static_cast<int>(Samples::kCount));
        const std::vector<float> samples = makeSamples(kind, static_cast<std::size_t>(length));
        for (const int nPasses : {1, 2}) {
          std::vector<float> expected = samples, data = samples;
          plainApply(filter, expected, nPasses);
          Apply(&filter, data.data(), length, nPasses);
          expectSameBits(expected, data, "Apply");
          for (const KernelSet& set : kernelSets()) {
            if (length == 0 || nPasses == 2) continue;
            data = samples;
            set.cascade(filter.num, filter.den, sections, data.data(), length, 1);
            expectSameBits(expected, data, set.name);
          }
          if (HasFatalFailure()) FAIL() << sections << " sections, " << design << ", " << length;
        }
      }
    }
  }
}

}  // namespace
}  // namespace krosac
