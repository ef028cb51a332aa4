#include "krosac/dsp/InstrumentResponse.h"

#include <clocale>
#include <complex>
#include <numbers>

#include "CapturedLog.h"
#include "TemporaryFolder.h"
#include "krosac/dsp/PoleZeroFile.h"

namespace krosac {
namespace {

using Complex = std::complex<long double>;
using Floats = std::vector<float>;

// The instruments as quotients of polynomials in s = i*omega, where their poles pair off.
Complex closedForm(int code, Complex s) {
  constexpr long double pi = std::numbers::pi_v<long double>;
  const Complex slow = s + 0.06283L, repeated = s + Complex(8.6940765L, 7.196866L);
  if (code == 1) return 0.5985275L * s * s * s / ((s * s + 0.514L * s + 0.18002276L) * slow * slow);
  if (code == 2)
    return 397.54767L * s * s * s / (s * s + 10.0273218L * s + 66.2904216737173L) /
           ((s + 8.298151L) * repeated * repeated);
  return code == 3 ? 2800.0L * s * s / (s * s + 4.0L * pi * s + pi * pi * 6.25L) : 1.0L;
}

TEST(InstrumentResponse, OfTheBuiltInInstrumentsIsTheirClosedFormConjugated) {
  float re, im;
  for (const float omega : {0.0f, 0.01f, 1.0f, 6.2831855f, 600.0f, -2.0f}) {
    for (const int code : {-1, 0, 1, 2, 3, 4}) {
      const Complex expected = std::conj(closedForm(code, Complex(0.0L, omega)));
      for (const bool byName : {false, true}) {
        if (!byName) GetInstrumentResponse(code, &re, &im, omega);
        if (byName && code == 1) GetWWLPResponse(&re, &im, omega);
        if (byName && code == 2) GetWWSPResponse(&re, &im, omega);
        if (byName && code == 3) GetWAResponse(&re, &im, omega);
        // Single precision: one rounding, and the decimal tails of the constants.
        EXPECT_LE(std::abs(Complex(re, im) - expected), 3e-7L * std::abs(expected)) << code;
      }
    }
  }
  const float roots[] = {1, -2, -3, 4};
  ComputeInstRespnse(2, roots, 2, roots, &re, &im, 2.0f, 10.0f);
  EXPECT_LE(std::abs(Complex(re, im) - 10.0L), 2e-6L) << "zeros are taken as poles are";
}

TEST(PoleZeroFile, ReadsWhatFitsInAnyOrderCaseAndLocale) {
  const TemporaryFolder folder;
  struct Parsed {
    int nPoles = 99, nZeros = 99;
    float constant = 99;
    Floats poles = Floats(64, 99), zeros = Floats(64, 99);
  };
  const auto parsed = [&](const std::string& text) {
    Parsed p;
    EXPECT_EQ(ParsePoleZeroFile(folder.write("poles", text).c_str(), &p.poles[0], &p.zeros[0],
                                &p.constant, &p.nPoles, &p.nZeros),
              0);
    return p;
  };
  std::setlocale(LC_ALL, "de_DE.UTF-8");  // a decimal comma, where the machine has one
  const Parsed p = parsed(
      "7 8\n* a remark\n  zeros 3\r\n 1.5 -2e1\n\n* 3 4\nConstant\t7.5e+07\n0x1p-1 .25\n"
      "POLES 1\n1 1\npoles 1\n-0.25 0.5\nno pair\n5\n-314.5 -202");
  std::setlocale(LC_ALL, "C");
  EXPECT_EQ(Floats(&p.zeros[0], &p.zeros[7]), (Floats{1.5, -20, 0.5, 0.25, 0, 0, 99}));
  EXPECT_EQ(Floats(&p.poles[0], &p.poles[5]), (Floats{-0.25, 0.5, -314.5, -202, 99}))
      << "more are listed than counted";
  EXPECT_TRUE(p.nZeros == 3 && p.nPoles == 1 && p.constant == 7.5e+07f);
  for (const auto& [text, count] : {std::pair{"POLES 1\npoles x", 1},
                                    {"Poles\t1 2", 1},
                                    {"POLES -1", 0},
                                    {"POLES4", 0},
                                    {"POLES", 0}})
    EXPECT_EQ(parsed(text).nPoles, count) << text;
  std::string wild = "POLES 99999999999999999999\n1 " + std::string(100000, '2') + "\n" +
                     std::string("3\0 4\n", 5) + "6 7\nZEROS 33\n";
  for (int k = 0; k < 100; ++k) wild += std::to_string(k) + " 7\n";
  for (int c = 0; c < 256; ++c) wild += static_cast<char>(c);
  const Parsed w = parsed(wild);
  EXPECT_TRUE(w.nPoles == 32 && w.nZeros == 32 && w.poles[2] == 6 && w.zeros[62] == 31 &&
              w.constant == 1);
}

TEST(PoleZeroFile, SaysWhatItCannotRead) {
  for (const char* path : {"/", static_cast<const char*>(nullptr)})
    EXPECT_EQ(
        printedBy([&] {
          EXPECT_EQ(ParsePoleZeroFile(path, nullptr, nullptr, nullptr, nullptr, nullptr), -1);
        }),
        std::string("|Problem opening the pole-zero file ") + (path ? path : "(null)") + "\n");
}

}  // namespace
}  // namespace krosac
