#include "krosac/platform/Numbers.h"
#include "krosac/seismogram/SacObject.h"
#include "krosac/timegeo/FlinnEngdahl.h"
#include "krosac/timegeo/GreatCircle.h"

namespace krosac {
namespace {}  // namespace

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

bool SacObject::hasEventLocation() const {
  return isDefined(evla()) && isDefined(evlo());
}

// Takes the region numbers of the event's location and gives their names.
SacObject::RegionNames SacObject::lookUpRegions() {
  RegionNames names{};
  fe_lookup(evla(), evlo(), &myGreg_, &mySreg_);
  fe_region(&myGreg_, &names.geographic, &mySreg_, &names.seismic);
  return names;
}

void SacObject::setFlinnEngdahlRegion() {
  if (!hasEventLocation()) {
    myFERegionString_ = "FE Region: N/A\n";
    return;
  }
  const RegionNames names = lookUpRegions();
  myFERegionString_ = std::string(names.seismic) + " / " + names.geographic;
}

std::string SacObject::flinnEngdahlGeographicRegion() {
  return hasEventLocation() ? lookUpRegions().geographic : std::string();
}

}  // namespace krosac
