#include <algorithm>

#include "krosac/catalog/internal/FixedColumns.h"
#include "krosac/catalog/kroSeismicPhase.h"
#include "krosac/platform/internal/Text.h"

namespace krosac {
namespace {

constexpr double kSecondsPerDay = 86400.0;

struct PhaseCode {
  std::string_view code;
  const char* phaseName;
  float polarity, onset;
};

constexpr PhaseCode kPhaseCodes[] = {
    {"iPc", "P", 1.0f, 1.0f},     {"ePc", "P", 1.0f, -1.0f},    {"iPd", "P", -1.0f, 1.0f},
    {"ePd", "P", -1.0f, -1.0f},   {"iP+", "P", 0.5f, 1.0f},     {"eP+", "P", 0.5f, -1.0f},
    {"iP-", "P", -0.5f, 1.0f},    {"eP-", "P", -0.5f, -1.0f},   {"iP", "P", 0.0f, 1.0f},
    {"eP", "P", 0.0f, -1.0f},     {"P", "P", 0.0f, 0.0f},       {"(P)", "P", 0.0f, 0.0f},
    {"iPnc", "Pn", 1.0f, 1.0f},   {"ePnc", "Pn", 1.0f, -1.0f},  {"iPnd", "Pn", -1.0f, 1.0f},
    {"ePnd", "Pn", -1.0f, -1.0f}, {"iPn+", "Pn", 0.5f, 1.0f},   {"ePn+", "Pn", 0.5f, -1.0f},
    {"iPn-", "Pn", -0.5f, 1.0f},  {"ePn-", "Pn", -0.5f, -1.0f}, {"iPn", "Pn", 0.0f, 1.0f},
    {"ePn", "Pn", 0.0f, -1.0f},   {"Pn", "Pn", 0.0f, 0.0f},
};

// The columns of the reading of one component on a surface-wave line.
struct ComponentColumns {
  char letter, smallLetter;
  std::size_t letterColumn, period, amplitude;
};

constexpr ComponentColumns kComponents[] = {
    {'Z', 'z', 8, 10, 14}, {'N', 'n', 22, 24, 28}, {'E', 'e', 36, 38, 42}};
constexpr std::size_t kPeriodWidth = 4, kAmplitudeWidth = 7;

// The text up to its first NUL, without leading and trailing white space.
std::string_view trimmed(std::string_view text) {
  text = text.substr(0, text.find('\0'));
  while (!text.empty() && isWhiteSpace(text.front())) text.remove_prefix(1);
  while (!text.empty() && isWhiteSpace(text.back())) text.remove_suffix(1);
  return text;
}

}  // namespace

void kroSeismicPhase::parsePhaseCode(std::string_view code) {
  const auto* known = std::ranges::find(kPhaseCodes, trimmed(code), &PhaseCode::code);
  if (known == std::end(kPhaseCodes)) return;
  phaseName_ = known->phaseName;
  polarity_ = known->polarity;
  onset_ = known->onset;
}

void kroSeismicPhase::scanPhaseName(FixedColumns& columns, std::size_t first) {
  if (columns.scanField(first, 8, phaseName_)) parsePhaseCode(*phaseName_);
}

// The nine characters are copied as one piece, so a number with a leading blank reads on into the
// next field; this is intended.
void kroSeismicPhase::scanArrivalTime(FixedColumns& columns, std::size_t first) {
  columns.copy(first, 9);
  columns.scanCopied(1, 2, hr_);
  columns.scanCopied(3, 2, min_);
  float seconds;
  if (columns.scanCopied(5, 5, seconds)) splitSeconds(seconds, sec_, msec_);
  arrivalDate_ = Date::fromComponents({yr_, month_, date_, hr_, min_, sec_});
  epochArrivalTime_ = epochTime(*arrivalDate_, msec_);
}

bool kroSeismicPhase::parseEDRPrimaryPhase(std::string_view line) {
  FixedColumns columns(line);
  columns.scanField(3, 5, stationCode_);
  scanPhaseName(columns, 8);
  scanArrivalTime(columns, 16);
  if (epochArrivalTime_ - epochOriginTime_ < 0.0) {
    epochArrivalTime_ += kSecondsPerDay;
    arrivalDate_ = Date{epochArrivalTime_};
  }
  columns.scanField(26, 5, residual_);
  pResFlag_ = static_cast<signed char>(columns.at(31));
  columns.scanField(33, 6, gcarc_);
  columns.scanField(40, 5, azimuth_);
  columns.scanField(45, 4, mbPeriod_);
  columns.scanField(49, 7, mbAmp_);
  columns.scanField(57, 3, mb_);
  mbUsageFlag_ = static_cast<signed char>(columns.at(60));
  takeoffAngle_ = 0.0f;
  isFirstArrival_ = true;
  return true;
}

bool kroSeismicPhase::parseEDRSecondaryArrivalRecord(std::string_view group) {
  FixedColumns columns(group);
  scanPhaseName(columns, 1);
  scanArrivalTime(columns, 9);
  isFirstArrival_ = false;
  return true;
}

bool kroSeismicPhase::parseEDRSurfaceWaveRecord(std::string_view line) {
  FixedColumns columns(line);
  // The scratch buffer is not blanked between the fields; this is intended.
  const auto scanOver = [&](std::size_t first, std::size_t width, float& target) {
    columns.copyOver(first, width);
    columns.scanCopied(1, kScratchLength, target);
  };
  for (const ComponentColumns& component : kComponents) {
    const char letter = columns.at(component.letterColumn);
    if (letter != component.letter && letter != component.smallLetter) continue;
    Ms_Component_ = static_cast<signed char>(component.letter);
    scanOver(component.period, kPeriodWidth, Ms_Period_);
    scanOver(component.amplitude, kAmplitudeWidth, Ms_Amplitude_);
  }
  // Copied again for any component, and left in the buffer under the magnitude; this is intended.
  columns.copyOver(38, kPeriodWidth);
  columns.scanInPlace(50, 3, Ms_Type_);
  scanOver(54, 3, Ms_Estimate_);
  msUsage_ = static_cast<signed char>(columns.at(57));
  takeoffAngle_ = 90.0f;
  isFirstArrival_ = false;
  return true;
}

}  // namespace krosac
