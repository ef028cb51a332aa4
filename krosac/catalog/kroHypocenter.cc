#include "krosac/catalog/kroHypocenter.h"

#include <new>

#include "krosac/catalog/internal/CodedFields.h"
#include "krosac/platform/internal/Reason.h"

namespace krosac {
namespace {

using H = kroHypocenter;

constexpr std::tuple kFields{
    codedField("location", &H::location, &H::setLocation),
    codedField("msec", &H::msec, &H::setMsec),
    codedField("stdev", &H::stdev, &H::setStdev),
    codedField("yr", &H::yr, &H::setYr),
    codedField("month", &H::month, &H::setMonth),
    codedField("date", &H::date, &H::setDate),
    codedField("doy", &H::doy, &H::setDoy),
    codedField("hr", &H::hr, &H::setHr),
    codedField("min", &H::min, &H::setMin),
    codedField("sec", &H::sec, &H::setSec),
    codedField("epochOTime", &H::epochOTime, &H::setEpochOTime),
    codedField("locQualityFlag", &H::locQualityFlag, &H::setLocQualityFlag),
    codedField("depthQualityFlag", &H::depthQualityFlag, &H::setDepthQualityFlag),
    codedField("prelimLocFlag", &H::prelimLocFlag, &H::setPrelimLocFlag),
    codedField("nstations", &H::nstations, &H::setNstations),
    codedField("flinn_engdahl", &H::flinn_engdahl, &H::setFlinn_engdahl),
    codedField("feGreg", &H::feGreg, &H::setFeGreg),
    codedField("feSreg", &H::feSreg, &H::setFeSreg),
    codedField("authority", &H::authority, &H::setAuthority),
    codedField("oTimeErr", &H::oTimeErr, &H::setOTimeErr),
    codedField("latErr", &H::latErr, &H::setLatErr),
    codedField("lonErr", &H::lonErr, &H::setLonErr),
    codedField("depthErr", &H::depthErr, &H::setDepthErr),
    codedField("mb", &H::mb, &H::setMb),
    codedField("Ms", &H::Ms, &H::setMs),
    codedField("nmb", &H::nmb, &H::setNmb),
    codedField("nMs", &H::nMs, &H::setNMs),
    codedField("Mw", &H::Mw, &H::setMw),
    codedField("mwSrc", &H::mwSrc, &H::setMwSrc),
    codedField("myFERegionString", &H::myFERegionString, &H::setMyFERegionString),
    codedField("oDate", &H::oDate, &H::setODate),
    codedField("phases", &H::phases, &H::setPhases),
};

template <typename T>
int threeWay(const T& mine, const T& others) {
  return (mine > others) - (mine < others);
}

}  // namespace

Ref<Object> kroHypocenter::init() {
  auto location = newLocation();
  if (!location) return nullptr;
  phases_.clear();
  location_ = std::move(location);
  return Archivable::init();
}

// ---- Fields ----

void kroHypocenter::setLocation(Ref<kroGeoLocation> location) {
  clearReason();
  if (location == location_) return;
  auto copy = location ? location->copyWithZone() : nullptr;
  if (copy || !location) location_ = std::move(copy);
}

void kroHypocenter::setPhases(std::vector<Ref<kroSeismicPhase>> phases) {
  std::erase(phases, nullptr);
  phases_ = std::move(phases);
}

void kroHypocenter::setLat(float latitude) {
  if (location_) location_->setLatitude(latitude);
}

void kroHypocenter::setLon(float longitude) {
  if (location_) location_->setLongitude(longitude);
}

void kroHypocenter::setDepth(float depth) {
  if (location_) location_->setDepth(depth);
}

// ---- Changing ----

void kroHypocenter::addPhase(Ref<kroSeismicPhase> phase) try {
  clearReason();
  if (phase) phases_.push_back(std::move(phase));
} catch (const std::bad_alloc&) {
  setMemoryReason();
}

void kroHypocenter::updateLat_Lon_Depth(float latitude, float longitude, float depth) {
  if (location_) location_->updateLat_Lon_Depth(latitude, longitude, depth);
}

// ---- Comparing ----

int kroHypocenter::compare_mb(const kroHypocenter& other) const {
  return threeWay(mb(), other.mb());
}

int kroHypocenter::compare_ms(const kroHypocenter& other) const {
  return threeWay(Ms(), other.Ms());
}

int kroHypocenter::compareDepths(const kroHypocenter& other) const {
  return threeWay(depth(), other.depth());
}

int kroHypocenter::compareLatitudes(const kroHypocenter& other) const {
  return threeWay(lat(), other.lat());
}

int kroHypocenter::compareLongitudes(const kroHypocenter& other) const {
  return threeWay(lon(), other.lon());
}

int kroHypocenter::compareOriginTimes(const kroHypocenter& other) const {
  if (!oDate_ || !other.oDate_) return threeWay(!oDate_, !other.oDate_);
  return threeWay(oDate_->secondsSince1970, other.oDate_->secondsSince1970);
}

// ---- Archiving ----

void kroHypocenter::encodeWithCoder(KeyedArchiver& coder) const {
  encodeFields(kFields, *this, coder);
}

Ref<kroHypocenter> kroHypocenter::initWithCoder(KeyedUnarchiver& coder) {
  if (!Archivable::init()) return nullptr;
  decodeFields(kFields, *this, coder);
  // The setter stores a copy, for which there may be no memory.
  if (!location_ && coder.decodeObject<kroGeoLocation>("location")) throw std::bad_alloc();
  return Ref<kroHypocenter>(this);
}

}  // namespace krosac
