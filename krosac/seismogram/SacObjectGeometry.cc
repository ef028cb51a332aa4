#include "krosac/platform/Numbers.h"
#include "krosac/seismogram/SacObject.h"
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

// Stores the region numbers of the event's location and returns their names.
RegionNames lookUpRegions(const SacObject& s, std::int32_t& geographic, std::int32_t& seismic) {
  RegionNames names{};
  fe_lookup(s.evla(), s.evlo(), &geographic, &seismic);
  fe_region(&geographic, &names.geographic, &seismic, &names.seismic);
  return names;
}

}  // namespace

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
  if (!hasEventLocation(*this)) {
    myFERegionString_ = "FE Region: N/A\n";
    return;
  }
  const RegionNames names = lookUpRegions(*this, myGreg_, mySreg_);
  myFERegionString_ = std::string(names.seismic) + " / " + names.geographic;
}

std::string SacObject::flinnEngdahlGeographicRegion() {
  return hasEventLocation(*this) ? lookUpRegions(*this, myGreg_, mySreg_).geographic
                                 : std::string();
}

}  // namespace krosac
