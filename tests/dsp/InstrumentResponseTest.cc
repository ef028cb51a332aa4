#include "krosac/dsp/InstrumentResponse.h"

#include <clocale>
#include <complex>
#include <numbers>

#include "CapturedLog.h"
#include "TemporaryFolder.h"
#include "krosac/dsp/PoleZeroFile.h"
#include "krosac/platform/LastReason.h"

namespace krosac {
namespace {

using Complex = std::complex<long double>;
using Floats = std::vector<float>;

// The instruments as quotients of polynomials in s = i*omega, with conjugate poles multiplied out.
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
  const auto expectResponse = [&](int code, float omega) {
    const Complex expected = std::conj(closedForm(code, Complex(0.0L, omega)));
    // Errors: one rounding to single precision, and the constants rounded to single precision.
    EXPECT_LE(std::abs(Complex(re, im) - expected), 3e-7L * std::abs(expected)) << code;
  };
  for (const float omega : {0.0f, 0.01f, 1.0f, 6.2831855f, 600.0f, -2.0f})
    for (const int code : {-1, 0, 1, 2, 3, 4}) {
      GetInstrumentResponse(code, &re, &im, omega);
      expectResponse(code, omega);
    }
  for (const auto& [code, respond] :
       {std::pair{1, &GetWWLPResponse}, {2, &GetWWSPResponse}, {3, &GetWAResponse}}) {
    respond(&re, &im, 1.0f);
    expectResponse(code, 1.0f);
  }
  const float roots[] = {1, -2, -3, 4};
  ComputeInstRespnse(2, roots, 2, roots, &re, &im, 2.0f, 10.0f);
  EXPECT_LE(std::abs(Complex(re, im) - 10.0L), 2e-6L) << "zeros and poles have the same sign";
}

struct Parsed {
  int nPoles = 99, nZeros = 99;
  float constant = 99;
  Floats poles = Floats(64, 99), zeros = Floats(64, 99);
  int result;

  explicit Parsed(const char* path)
      : result(ParsePoleZeroFile(path, &poles[0], &zeros[0], &constant, &nPoles, &nZeros)) {}
};

TEST(PoleZeroFile, ReadsWhatFitsInAnyOrderCaseAndLocale) {
  const TemporaryFolder folder;
  std::setlocale(LC_ALL, "de_DE.UTF-8");  // a decimal comma, where the machine has one
  const char text[] =
      "7 8\n* a remark\n  zeros 1\r\n 1.5 -2e1\n\n* 3 4\nConstant\t7.5e+07\n0x1p-1 .25\n"
      "POLES 1\n1 1\n2 2\n3 3\npoles 3\n-0.25 0.5\nno pair\n5\n-314.5 -202";
  const Parsed p(folder.write("poles", text).c_str());
  std::setlocale(LC_ALL, "C");
  EXPECT_EQ(Floats(&p.zeros[0], &p.zeros[5]), (Floats{1.5, -20, 0.5, 0.25, 99}))
      << "listed pairs beyond the count are stored";
  EXPECT_EQ(Floats(&p.poles[0], &p.poles[7]), (Floats{-0.25, 0.5, -314.5, -202, 0, 0, 99}));
  EXPECT_TRUE(p.nZeros == 1 && p.nPoles == 3 && p.constant == 7.5e+07f);
  std::string wild = "ZEROS -1\nPOLES4\nPOLES x\nPOLES 99999999999999999999\n1 " +
                     std::string(100000, '2') + "\n" + std::string("3\0 4\n", 5) + "6 7\n";
  for (int k = 0; k < 100; ++k) wild += std::to_string(k) + " 7\n";
  for (int c = 0; c < 256; ++c) wild += static_cast<char>(c);
  const Parsed w(folder.write("poles", wild).c_str());
  EXPECT_TRUE(w.nPoles == 32 && w.nZeros == 0 && w.poles[2] == 6 && w.poles[62] == 29 &&
              w.constant == 1);
  const std::string absent = folder.path() + "/absent";
  const std::pair<const char*, std::string> refused[] = {
      {absent.c_str(), absent + ": No such file or directory"},
      {"/", "/: is a folder"},
      {nullptr, "no path given"}};
  for (const auto& [path, reason] : refused) {
    EXPECT_EQ(
        printedBy([&] { EXPECT_EQ(Parsed(path).result, -1); }),
        std::string("|Problem opening the pole-zero file ") + (path ? path : "(null)") + "\n");
    EXPECT_EQ(lastReason(), reason);
  }
  const std::string file = folder.write("poles", text);
  EXPECT_EQ(ParsePoleZeroFile(file.c_str(), nullptr, nullptr, nullptr, nullptr, nullptr), 0);
  EXPECT_STREQ(lastReason(), "");
}

}  // namespace
}  // namespace krosac
