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

// Single precision of the conjugate: one rounding, and the decimal tails of the constants.
void expectResponse(Complex expected, float re, float im) {
  const double tolerance = 2e-7 * static_cast<double>(std::abs(expected)) + 1e-30;
  EXPECT_NEAR(re, static_cast<double>(expected.real()), tolerance);
  EXPECT_NEAR(im, static_cast<double>(-expected.imag()), tolerance);
}

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

TEST(InstrumentResponse, BuiltInInstrumentsAreTheirClosedFormsConjugated) {
  for (const float omega : {0.0f, 0.01f, 0.3f, 1.0f, 6.2831855f, 60.0f, 600.0f, -2.0f}) {
    for (const int code : {-1, 0, 1, 2, 3, 4}) {
      SCOPED_TRACE(testing::Message() << code << " " << omega);
      float re = 9, im = 9;
      GetInstrumentResponse(code, &re, &im, omega);
      expectResponse(closedForm(code, Complex(0.0L, omega)), re, im);
      if (code == 1) GetWWLPResponse(&re, &im, omega);
      if (code == 2) GetWWSPResponse(&re, &im, omega);
      if (code == 3) GetWAResponse(&re, &im, omega);
      expectResponse(closedForm(code, Complex(0.0L, omega)), re, im);
    }
  }
}

TEST(InstrumentResponse, AnyPolesAndZeros) {
  const float zeros[] = {0, 0, 1, -2}, poles[] = {-3, 4, 0, 5};
  float re = 9, im = 9;
  // 2i(2i - 1 + 2i) / ((2i + 3 - 4i)(2i - 5i)) = (-8 - 2i) / (-6 - 9i), times 10.
  ComputeInstRespnse(2, zeros, 2, poles, &re, &im, 2.0f, 10.0f);
  expectResponse(10.0L * Complex(-8, -2) / Complex(-6, -9), re, im);
}

struct Parsed {
  int nPoles = 99, nZeros = 99;
  float constant = 99.0f;
  std::vector<float> poles = std::vector<float>(64, 99.0f), zeros = poles;
  int result = -1;

  explicit Parsed(const char* path)
      : result(ParsePoleZeroFile(path, &poles[0], &zeros[0], &constant, &nPoles, &nZeros)) {}
};

TEST(PoleZeroFile, ReadsWhatFitsInAnyOrderCaseAndLocale) {
  const TemporaryFolder folder;
  const auto parsed = [&](const std::string& text) {
    return Parsed(folder.write("poles", text).c_str());
  };
  std::setlocale(LC_ALL, "de_DE.UTF-8");  // a decimal comma, where the machine has one
  Parsed p = parsed(
      "7 8\n* a remark\n  zeros 3\r\n 1.5 -2e1\n\n* 3 4\nConstant\t7.5e+07\n0x1p-1 .25\n"
      "POLES 1\n1 1\npoles 3\n-0.25 0.5\nno pair\n5\n-314.5 -202");
  std::setlocale(LC_ALL, "C");
  p.zeros.resize(7);
  p.poles.resize(7);
  EXPECT_EQ(p.zeros, (std::vector<float>{1.5, -20, 0.5, 0.25, 0, 0, 99}));
  EXPECT_EQ(p.poles, (std::vector<float>{-0.25, 0.5, -314.5, -202, 0, 0, 99}));
  EXPECT_TRUE(p.result == 0 && p.nZeros == 3 && p.nPoles == 3 && p.constant == 7.5e+07f);

  const std::pair<const char*, int> counts[] = {{"POLES 1\n1 1\n2 2\n", 1},
                                                {"POLES 1\npoles x", 1},
                                                {"Poles\t1 2", 1},
                                                {"POLES -1", 0},
                                                {"POLES4", 0},
                                                {"POLES x", 0},
                                                {"POLES", 0}};
  for (const auto& [text, count] : counts) EXPECT_EQ(parsed(text).nPoles, count) << text;
  EXPECT_EQ(parsed("").constant, 1.0f);
  EXPECT_EQ(parsed("POLES 1\n1 1\n2 2\n").poles[2], 2.0f) << "listed beyond the count";
  std::string wild = "POLES 99999999999999999999\n1 " + std::string(100000, '2') + "\n" +
                     std::string(300, ' ') + "5 5\n" + std::string("3\0 4\n", 5) +
                     "6 7\nZEROS 33\n";
  for (int k = 0; k < 100; ++k) wild += std::to_string(k) + " 7\n";
  for (int c = 0; c < 256; ++c) wild += static_cast<char>(c);
  const Parsed w = parsed(wild);
  EXPECT_TRUE(w.nPoles == 32 && w.nZeros == 32 && w.poles[2] == 6.0f && w.zeros[62] == 31.0f);
}

TEST(PoleZeroFile, SaysWhatItCannotReadAndWritesNothing) {
  for (const char* path : {"/no/such/file", "/", static_cast<const char*>(nullptr)}) {
    const auto parse = [&] {
      const Parsed p(path);
      EXPECT_TRUE(p.result == -1 && p.nPoles == 99 && p.nZeros == 99 && p.poles[0] == 99);
    };
    EXPECT_EQ(printedBy(parse), std::string("|Problem opening the pole-zero file ") +
                                    (path ? path : "(null)") + "\n");
  }
}

}  // namespace
}  // namespace krosac
