// Null inputs are refused with the stated failure value, and null outputs are skipped.
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>

#include "krosac/dsp/Butterworth.h"
#include "krosac/dsp/Convolution.h"
#include "krosac/dsp/Decimation.h"
#include "krosac/dsp/Fft.h"
#include "krosac/dsp/InstrumentResponse.h"
#include "krosac/dsp/QuasiRandom.h"
#include "krosac/dsp/Statistics.h"

namespace krosac {
namespace {

float x[128], y[128];
std::int32_t length;

TEST(NullPointers, NullInputsChangeNothing) {
  BUFilterDesign design;
  BUroots(&design, 4);
  LP(&design);
  const std::function<void()> calls[] = {
      [] { four1(nullptr, 4, 1); },
      [] { four1(nullptr, 64, 1); },
      [] { realft(nullptr, 128, -1); },
      [] { TDconvolve(nullptr, x, y, 9, 3, 1); },
      [] { TDconvolve(x, nullptr, y, 9, 3, 1); },
      [] { GRLPBUfilter(nullptr, 9, 2, 4, 1, 0.1f); },
      [] { GRHPBUfilter(nullptr, 9, 2, 4, 1, 0.1f); },
      [] { BUroots(nullptr, 4); },
      [] { LP(nullptr); },
      [] { LPtoHP(nullptr); },
      [] { CutOffs(nullptr, 1); },
      [] { BiLin(nullptr); },
      [] { Apply(nullptr, y, 9, 1); },
      [&] { Apply(&design, nullptr, 9, 2); },
      [] { ComputeInstRespnse(1, nullptr, 1, x, &y[0], &y[1], 1, 1); },
      [] { ComputeInstRespnse(1, x, 1, nullptr, &y[0], &y[1], 1, 1); },
      [] { sort(5, nullptr); },
      [] { QuasiRandomNumber(nullptr, y); },
      [] { QuasiRandomRelease(nullptr); },
      [] { EXPECT_EQ(decimateSignal(2, 9, nullptr, y, &length), 1); }};
  std::ranges::fill(x, 2.0f);
  std::ranges::fill(y, 7.0f);
  length = 7;
  for (const auto& call : calls) call();
  EXPECT_EQ(std::ranges::count(x, 2.0f), 128);
  EXPECT_EQ(std::ranges::count(y, 7.0f), 128);
  EXPECT_EQ(length, 7);
}

TEST(NullPointers, NullInputsReturnTheFailureValue) {
  for (const auto function : {vmax, vmin, vmean}) EXPECT_EQ(function(nullptr, 5), -12345.0f);
  EXPECT_EQ(kahanSum(nullptr, 5), 0.0f);
  EXPECT_EQ(QuasiRandomInitialize(nullptr, 3), -9);
  float median[2] = {};
  mdian1(nullptr, 5, &median[0]);
  mdian2(nullptr, 5, &median[1]);
  EXPECT_TRUE(median[0] == -12345.0f && median[1] == -12345.0f);
  const std::function<void()> calls[] = {[] { decim(2, 5, x, nullptr, 8, nullptr, y, &length); },
                                         [] { decim(2, 5, nullptr, nullptr, 8, x, y, &length); },
                                         [] { decimorig(2, 5, nullptr, x, 8, x, y, &length); },
                                         [] { decimorig(2, 5, x, nullptr, 8, x, y, &length); },
                                         [] { decimorig(2, 5, x, x, 8, nullptr, y, &length); }};
  for (const auto& call : calls) {
    length = 7;
    call();
    EXPECT_EQ(length, 0);
  }
}

TEST(NullPointers, NullOutputsAreSkipped) {
  std::ranges::fill(x, 1.0f);
  TDconvolve(x, x, nullptr, 9, 3, 1);
  length = 7;
  EXPECT_EQ(decimateSignal(2, 9, x, nullptr, &length), 0);
  EXPECT_EQ(length, 4);
  EXPECT_EQ(decimateSignal(2, 9, x, y, nullptr), 0);
  decim(2, 5, x, nullptr, 9, x, nullptr, &length);
  EXPECT_EQ(length, 5);
  decim(2, 5, x, nullptr, 9, x, y, nullptr);
  EXPECT_EQ(y[1], 5.0f);
  float delay[3] = {};
  decimorig(2, 3, x, delay, 2, x, nullptr, nullptr);
  EXPECT_TRUE(delay[1] == 1.0f && delay[2] == 0.0f) << "the delay line advances";
  float re = 7, im = 7;
  ComputeInstRespnse(0, nullptr, 0, nullptr, &re, nullptr, 1, 4);
  GetInstrumentResponse(4, nullptr, &im, 1);
  EXPECT_TRUE(re == 4.0f && im == 0.0f);
  for (const auto respond : {GetWWLPResponse, GetWWSPResponse, GetWAResponse})
    respond(nullptr, nullptr, 1);
  float values[] = {0, 3, 2, 1};
  mdian2(values, 3, nullptr);
  EXPECT_EQ(values[1], 3.0f);
  mdian1(values, 3, nullptr);
  EXPECT_EQ(values[1], 1.0f) << "sorted nevertheless";
  QuasiRandomContext context;
  QuasiRandomInitialize(&context, 1);
  QuasiRandomNumber(&context, nullptr);
  QuasiRandomNumber(&context, values);
  EXPECT_EQ(values[0], 0.25f) << "the second point; the first is 0.5";
  QuasiRandomRelease(&context);
}

}  // namespace
}  // namespace krosac
