#include <new>

#include "krosac/platform/Numbers.h"
#include "krosac/seismogram/internal/SacObjectAccess.h"
#include "krosac/timegeo/FlinnEngdahl.h"
#include "krosac/timegeo/GreatCircle.h"

namespace krosac {
namespace {

struct RegionNames {
  const char *geographic, *seismic;
};

bool hasEventLocation(const SacObject& s) {
  return isDefined(s.evla()) && isDefined(s.evlo());
}

RegionNames lookUpRegions(const SacObject& s) {
  RegionNames names{};
  std::int32_t geographic, seismic;
  fe_lookup(s.evla(), s.evlo(), &geographic, &seismic);
  fe_region(&geographic, &names.geographic, &seismic, &names.seismic);
  return names;
}

}  // namespace

OptionalText regionText(const SacObject& s) {
  if (!s.mySeismicRegion_) return std::nullopt;
  std::string text = s.mySeismicRegion_;
  if (s.myGeographicRegion_) text.append(" / ").append(s.myGeographicRegion_);
  return text;
}

const char* geographicRegion(const SacObject& s) {
  return hasEventLocation(s) ? lookUpRegions(s).geographic : nullptr;
}

bool SacObject::computeDistAzBAz() {
  if (!h_ || !isDefined(h_->EVLA) || !isDefined(h_->EVLO) || !isDefined(h_->STLA) ||
      !isDefined(h_->STLO)) {
    return false;
  }
  float arc;
  delta_az(&h_->STLA, &h_->STLO, &h_->EVLA, &h_->EVLO, &arc, &h_->BAZ);
  delta_az(&h_->EVLA, &h_->EVLO, &h_->STLA, &h_->STLO, &h_->GCARC, &h_->AZ);
  h_->DIST = static_cast<float>(h_->GCARC * kKilometresPerDegree);
  return true;
}

void SacObject::setEventLocationLat_Lon_Depth(float latitude, float longitude, float depth) {
  setField(&SacHeader::EVLA, latitude);
  setField(&SacHeader::EVLO, longitude);
  setField(&SacHeader::EVDP, depth);
  computeDistAzBAz();
  setFlinnEngdahlRegion();
}

void SacObject::setStationLocationLat_Lon_Elevation(float latitude, float longitude,
                                                    float elevation) {
  setField(&SacHeader::STLA, latitude);
  setField(&SacHeader::STLO, longitude);
  setField(&SacHeader::STEL, elevation);
  computeDistAzBAz();
}

void SacObject::setFlinnEngdahlRegion() {
  const RegionNames names =
      hasEventLocation(*this) ? lookUpRegions(*this) : RegionNames{nullptr, "FE Region: N/A\n"};
  mySeismicRegion_ = names.seismic;
  myGeographicRegion_ = names.geographic;
}

OptionalText SacObject::flinnEngdahlString() const try {
  return regionText(*this);
} catch (const std::bad_alloc&) {
  setMemoryReason();
  return std::nullopt;
}

std::string SacObject::flinnEngdahlGeographicRegion() try {
  const char* const name = geographicRegion(*this);
  return name ? name : "";
} catch (const std::bad_alloc&) {
  setMemoryReason();
  return {};
}

}  // namespace krosac
