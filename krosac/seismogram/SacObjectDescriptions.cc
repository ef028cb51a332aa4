#include <cstring>
#include <new>

#include "krosac/platform/Log.h"
#include "krosac/platform/Numbers.h"
#include "krosac/platform/internal/Text.h"
#include "krosac/seismogram/internal/SacObjectAccess.h"

namespace krosac {
namespace {

constexpr const char* kStars = "\n***************************************************";
constexpr const char* kDashes = "\n---------------------------------------------------";

// Appends a line with a value where that is defined.
void addLine(std::string& out, const char* format, float value) {
  if (isDefined(value)) out += formatText(format, static_cast<double>(value));
}

// Appends a line with the first `width` characters of a text field where that is defined.
void addLine(std::string& out, const char* format, const char* field, std::size_t width = 8) {
  constexpr std::size_t kMarkLength = 6;
  if (std::strncmp(field, kSacUndefinedText, kMarkLength) == 0) return;
  out += formatText(format, std::string(field, strnlen(field, width)).c_str());
}

// The reference time plus an offset in seconds, null without a reference time. Its day is the day
// of the year, from which copyWithZone would not start.
Ref<SeisTimeObject> timeAt(const SacObject& s, float offset) {
  if (!s.mySeisReferenceTime()) return nullptr;
  auto time = make<SeisTimeObject>();
  if (!time) throw std::bad_alloc();
  time->initWithTimeObject(*s.mySeisReferenceTime());
  time->addSeconds(offset);
  return time;
}

OptionalText timeText(const SacObject& s, float offset, const char* (SeisTimeObject::*form)()) {
  const auto time = timeAt(s, offset);
  return time ? OptionalText((time.get()->*form)()) : std::nullopt;
}

void describeStation(const SacHeader& h, std::string& out) {
  addLine(out, "\nStation ID: %8s", h.KSTNM);
  addLine(out, "\nNetwork: %8s", h.KNETWK);
  addLine(out, "\nStation  Latitude: % .4f", h.STLA);
  addLine(out, "\nStation Longitude: % .4f", h.STLO);
  addLine(out, "\nStation Elevation: % .2f", h.STEL);
}

void describeEvent(const SacObject& s, std::size_t nameWidth, std::string& out) {
  const SacHeader& h = *s.GetSacHeader();
  addLine(out, "\nEvent ID: %8s", h.KEVNM, nameWidth);
  if (isDefined(h.EVLA) && isDefined(h.EVLO)) out += formatText("\n%s", printable(regionText(s)));
  if (isDefined(h.O)) {
    out += formatText("\nEvent Origin Time:%s",
                      printable(timeText(s, h.O, &SeisTimeObject::DOYcString)));
  }
  addLine(out, "\nEvent Laititude: % .4f", h.EVLA);  // the spelling is part of the text
  addLine(out, "\nEvent Longitude: % .4f", h.EVLO);
  addLine(out, "\nEvent Depth: % .3f", h.EVDP);
  addLine(out, "\nEvent Magnitude: % .2f", h.MAG);
}

void describeGeometry(const SacObject& s, std::string& out) {
  addLine(out, "\nGreat-Circle-Arclength: % .2f", s.gcarc());
  addLine(out, "\nDistance: % .2f km", s.distance());
  addLine(out, "\nAzimuth: % .2f", s.azimuth());
  addLine(out, "\nBackazimuth: % .2f", s.backazimuth());
}

}  // namespace

std::string SacObject::description() const try {
  const auto number = [](const char* format, float value) {
    return formatText(format, static_cast<double>(value));
  };
  const auto doyText = [this](float offset) {
    return timeText(*this, offset, &SeisTimeObject::DOYcString);
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
  if (h_) {
    describeStation(*h_, out);
    addLine(out, "\nComponent ID: %8s", h_->KCMPNM);
    addLine(out, "\nComponent Azimuth: % .1f", h_->CMPAZ);
  }
  out += kDashes;
  if (h_) describeEvent(*this, sizeof h_->KEVNM, out);
  out += kDashes;
  describeGeometry(*this, out);
  out += kStars;
  return out + "\n";
} catch (const std::bad_alloc&) {
  setMemoryReason();
  return {};
}

std::string SacObject::stationDescription() try {
  std::string out;
  if (h_) describeStation(*h_, out);
  if (isDefined(stla()) && isDefined(stlo())) {
    // The region at the event's position, not the station's; this is intended.
    const char* const region = geographicRegion(*this);
    out.append("\nStation Geographic Region:").append(region ? region : "");
  }
  describeGeometry(*this, out);
  return out;
} catch (const std::bad_alloc&) {
  setMemoryReason();
  return {};
}

std::string SacObject::eventDescription() const try {
  const std::string separator = "\n" + std::string(102, '-');
  std::string out = separator + formatText("\nFile Path:\n%s", printable(myPath_)) + separator;
  if (h_) describeEvent(*this, 8, out);
  return out;
} catch (const std::bad_alloc&) {
  setMemoryReason();
  return {};
}

OptionalText SacObject::oTimeString() const try {
  return isDefined(o()) ? timeText(*this, o(), &SeisTimeObject::YMDcString) : std::nullopt;
} catch (const std::bad_alloc&) {
  setMemoryReason();
  return std::nullopt;
}

std::string SacObject::hypoPickString() const try {
  if (!isDefined(a())) return "NoPick";
  std::string text = "(null)";
  if (const auto pick = timeAt(*this, a())) {
    text = formatText("%4d/%02d/%02d %02d:%02d:%06.3f", pick->mYr(), pick->mMonth(), pick->mDate(),
                      pick->mHr(), pick->mMn(), pick->mSec() + pick->mMsec() / 1000.0);
  }
  text += formatText(" %8.3f %8.3f", static_cast<double>(evla()), static_cast<double>(evlo()));
  if (verbose_ > 0) log("%s", text.c_str());
  return text;
} catch (const std::bad_alloc&) {
  setMemoryReason();
  return {};
}

}  // namespace krosac
