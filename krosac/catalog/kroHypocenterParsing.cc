#include "krosac/catalog/internal/FixedColumns.h"
#include "krosac/catalog/kroHypocenter.h"
#include "krosac/platform/Log.h"
#include "krosac/platform/internal/Text.h"

namespace krosac {
namespace {

constexpr char kContributed = '&';

// The columns of the fields that moved between the two layouts of the report.
struct Layout {
  std::size_t stdev, authority, authorityWidth;
};

constexpr Layout kEarlierLayout{46, 57, 3};
constexpr Layout kLaterLayout{45, 56, 4};

// The report changed its layout on 1997-06-10.
bool hasLaterLayout(const Date& origin) {
  const Date change = Date::fromComponents({1997, 6, 10, 0, 0, 0});
  return origin.secondsSince1970 >= change.secondsSince1970;
}

}  // namespace

// Scanned in place: a number with a leading blank reads on into the next field.
void kroHypocenter::scanOriginTime(FixedColumns& columns) {
  columns.scanInPlace(3, 4, yr_);
  columns.scanInPlace(7, 2, month_);
  columns.scanInPlace(9, 2, date_);
  columns.scanInPlace(12, 2, hr_);
  columns.scanInPlace(14, 2, min_);
  float seconds;
  if (columns.scanInPlace(16, 5, seconds)) splitSeconds(seconds, sec_, msec_);
  oDate_ = Date::fromComponents({yr_, month_, date_, hr_, min_, sec_});
  epochOTime_ = epochTime(*oDate_, msec_);
  originTimeShift_ = 0.0f;
}

void kroHypocenter::scanLocation(FixedColumns& columns) {
  // Shared by all three, so a blank field repeats the number before it; this is intended.
  float number = 0.0f;
  bool isKnown = false;
  const auto scanNumber = [&](std::size_t first, std::size_t width) {
    return isKnown |= columns.scanField(first, width, number);
  };
  if (scanNumber(22, 6)) {
    originalLatitude_ = columns.at(28) == 'S' ? -number : number;
    setLat(originalLatitude_);
  }
  if (scanNumber(30, 7)) {
    originalLongitude_ = columns.at(37) == 'W' ? -number : number;
    setLon(originalLongitude_);
  }
  if (scanNumber(39, 5)) {
    originalDepth_ = number;
    setDepth(originalDepth_);
  }
}

void kroHypocenter::scanQuality(FixedColumns& columns) {
  const bool isLater = hasLaterLayout(*oDate_);
  const Layout& layout = isLater ? kLaterLayout : kEarlierLayout;
  locQualityFlag_ = static_cast<signed char>(columns.at(21));
  depthQualityFlag_ = static_cast<signed char>(columns.at(44));
  columns.scanField(layout.stdev, 4, stdev_);
  columns.scanField(49, 3, nstations_);
  columns.scanField(53, 3, flinn_engdahl_);
  if (locQualityFlag_ != kContributed) return;

  columns.scanField(layout.authority, layout.authorityWidth, authority_);
  prelimLocFlag_ = static_cast<signed char>(columns.at(60));
  if (!isLater) return;
  const std::string field(columns.from(layout.authority).substr(0, layout.authorityWidth));
  log("%s %4s", printable(authority_), field.c_str());
}

bool kroHypocenter::parseEDRHypocenter(std::string_view line) {
  FixedColumns columns(line);
  scanOriginTime(columns);
  scanLocation(columns);
  scanQuality(columns);
  setFlinnEngdahlRegion();
  buildName();
  return true;
}

bool kroHypocenter::parseEDRErrMagInfo(std::string_view line) {
  FixedColumns columns(line);
  columns.scanField(3, 5, oTimeErr_);
  columns.scanField(9, 6, latErr_);
  columns.scanField(16, 6, lonErr_);
  columns.scanField(23, 5, depthErr_);
  columns.scanField(29, 3, mb_);
  columns.scanField(33, 3, nmb_);
  columns.scanField(37, 3, Ms_);
  columns.scanField(40, 3, nMs_);
  return true;
}

}  // namespace krosac
