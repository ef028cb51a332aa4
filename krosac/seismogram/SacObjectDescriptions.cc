#include <cstring>

#include "krosac/platform/Log.h"
#include "krosac/platform/Numbers.h"
#include "krosac/platform/internal/Text.h"
#include "krosac/seismogram/SacObject.h"

namespace krosac {
namespace {

constexpr const char* kStars = "\n***************************************************";
constexpr const char* kDashes = "\n---------------------------------------------------";

// One line with a value, if it is defined.
void addLine(std::string& out, const char* format, float value) {
  if (isDefined(value)) out += formatText(format, static_cast<double>(value));
}

// One line with the first eight characters of a text field, if it is defined.
void addLine(std::string& out, const char* format, const char* field) {
  constexpr std::size_t kMarkLength = 6;
  if (std::strncmp(field, kSacUndefinedText, kMarkLength) == 0) return;
  out += formatText(format, std::string(field, strnlen(field, 8)).c_str());
}

}  // namespace

// The reference time plus an offset in seconds, in one of its two text forms; none without a
// reference time.
OptionalText SacObject::timeText(float offset, const char* (SeisTimeObject::*form)()) const {
  if (!mySeisReferenceTime_) return std::nullopt;
  const auto time = mySeisReferenceTime_->copyWithZone();
  time->addSeconds(offset);
  return (time.get()->*form)();
}

void SacObject::describeStation(std::string& out) const {
  if (!h_) return;
  addLine(out, "\nStation ID: %8s", h_->KSTNM);
  addLine(out, "\nNetwork: %8s", h_->KNETWK);
  addLine(out, "\nStation  Latitude: % .4f", h_->STLA);
  addLine(out, "\nStation Longitude: % .4f", h_->STLO);
  addLine(out, "\nStation Elevation: % .2f", h_->STEL);
}

void SacObject::describeEvent(std::string& out) const {
  if (!h_) return;
  addLine(out, "\nEvent ID: %8s", h_->KEVNM);
  if (hasEventLocation()) out += formatText("\n%s", printable(myFERegionString_));
  if (isDefined(h_->O)) {
    out += formatText("\nEvent Origin Time:%s",
                      printable(timeText(h_->O, &SeisTimeObject::DOYcString)));
  }
  addLine(out, "\nEvent Laititude: % .4f", h_->EVLA);  // the spelling is part of the text
  addLine(out, "\nEvent Longitude: % .4f", h_->EVLO);
  addLine(out, "\nEvent Depth: % .3f", h_->EVDP);
  addLine(out, "\nEvent Magnitude: % .2f", h_->MAG);
}

void SacObject::describeGeometry(std::string& out) const {
  addLine(out, "\nGreat-Circle-Arclength: % .2f", gcarc());
  addLine(out, "\nDistance: % .2f km", distance());
  addLine(out, "\nAzimuth: % .2f", azimuth());
  addLine(out, "\nBackazimuth: % .2f", backazimuth());
}

std::string SacObject::description() const {
  const auto number = [](const char* format, float value) {
    return formatText(format, static_cast<double>(value));
  };
  const auto doyText = [this](float offset) {
    return timeText(offset, &SeisTimeObject::DOYcString);
  };
  std::string out;
  out += kStars;
  out += formatText("\nFile Path:\n%s", printable(myPath_));
  out += kDashes;
  out += formatText("\nNpts: %d", npts());
  out += number("\ndelta: %f", delta());
  out += formatText("\nReference Time:\n%s", printable(doyText(0.0f)));
  out += number("\nSeismogram Begin Time: % .3f", b());
  out += formatText("\n  [%s]", printable(doyText(b())));
  out += number("\nSeismogram End Time: % .3f", e());
  out += formatText("\n  [%s]", printable(doyText(e())));
  out += kDashes;
  out += number("\nMinimum Value: % e", smin());
  out += number("\nMean    Value: % e", smean());
  out += number("\nMaximum Value: % e", smax());
  if (iqual() != kSacUndefinedInt) out += formatText("\nQuality: % d", iqual());
  out += kDashes;
  describeStation(out);
  if (h_) {
    addLine(out, "\nComponent ID: %8s", h_->KCMPNM);
    addLine(out, "\nComponent Azimuth: % .1f", h_->CMPAZ);
  }
  out += kDashes;
  describeEvent(out);
  out += kDashes;
  describeGeometry(out);
  out += kStars;
  return out + "\n";
}

std::string SacObject::stationDescription() {
  std::string out;
  describeStation(out);
  if (isDefined(stla()) && isDefined(stlo())) {
    // The region at the event's position, not the station's; this is intended.
    out += "\nStation Geographic Region:" + flinnEngdahlGeographicRegion();
  }
  describeGeometry(out);
  return out;
}

std::string SacObject::eventDescription() const {
  const std::string separator = "\n" + std::string(102, '-');
  std::string out = separator + formatText("\nFile Path:\n%s", printable(myPath_)) + separator;
  describeEvent(out);
  return out;
}

OptionalText SacObject::oTimeString() const {
  return isDefined(o()) ? timeText(o(), &SeisTimeObject::YMDcString) : std::nullopt;
}

std::string SacObject::hypoPickString() const {
  if (!isDefined(a())) return "NoPick";
  std::string text = "(null)";
  if (mySeisReferenceTime_) {
    const auto pick = mySeisReferenceTime_->copyWithZone();
    pick->addSeconds(a());
    text = formatText("%4d/%02d/%02d %02d:%02d:%06.3f", pick->mYr(), pick->mMonth(), pick->mDate(),
                      pick->mHr(), pick->mMn(), pick->mSec() + pick->mMsec() / 1000.0);
  }
  text += formatText(" %8.3f %8.3f", static_cast<double>(evla()), static_cast<double>(evlo()));
  if (verbose_ > 0) log("%s", text.c_str());
  return text;
}

}  // namespace krosac
