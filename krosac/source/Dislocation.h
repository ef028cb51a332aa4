// A shear-dislocation (double-couple) earthquake source, and what it radiates.
//
//   auto source = krosac::make<krosac::Dislocation>();
//   source->initWithSDR(35.0f, 60.0f, -110.0f);
//   const float p = source->pAmplitudeAz_RayP_Vel_Upgoing(120.0f, 0.06f, 6.2f, false);
//
// Angles are degrees, azimuths clockwise from north. Vectors have the components north, east and
// down. Radians are degrees times 0.017453293 throughout; this short constant is intended.
#ifndef KROSAC_SOURCE_DISLOCATION_H
#define KROSAC_SOURCE_DISLOCATION_H

#include <array>

#include "krosac/platform/Export.h"
#include "krosac/platform/Object.h"
#include "krosac/platform/Point.h"

namespace krosac {

class KROSAC_API Dislocation : public Object {
 public:
  // North, east and down.
  using Vector = std::array<double, 3>;

  // ---- Geometry (Dislocation.cc) ----

  // The source with the strike, dip and rake of its fault plane; all that follows from them is
  // computed.
  Ref<Dislocation> initWithSDR(float strike, float dip, float rake);

  // Each stores one angle and computes anew all that follows from the three.
  void SetStrike(float degrees);
  void SetDip(float degrees);
  void SetRake(float degrees);

  // Strike, dip and rake of the fault plane and of the auxiliary plane, in degrees.
  float GetStrike() const { return static_cast<float>(strike_); }
  float GetDip() const { return static_cast<float>(dip_); }
  float GetRake() const { return static_cast<float>(rake_); }
  float GetAuxStrike() const { return static_cast<float>(astrike_); }
  float GetAuxDip() const { return static_cast<float>(adip_); }
  float GetAuxRake() const { return static_cast<float>(arake_); }

  // The object's own vectors, of unit length but for the B axis, whose third component is always 0
  // (intended).
  const Vector& GetSlipVector() const { return u_; }
  const Vector& GetNormalVector() const { return nu_; }
  const Vector& GetPaxis() const { return p_; }
  const Vector& GetTaxis() const { return t_; }
  const Vector& GetBaxis() const { return b_; }

  // Plunges from 0 to 90. An axis with the components n (north) and e (east) has the azimuth
  // atan2(n, e) + 90, which is 180 minus the true one, and 180 more where it points up; it is not
  // wrapped into 0 to 360. All of this is intended. The plunge of the B axis is always 0.
  float GetPAzimuth() const { return static_cast<float>(p_az_); }
  float GetPPlunge() const { return static_cast<float>(p_plunge_); }
  float GetTAzimuth() const { return static_cast<float>(t_az_); }
  float GetTPlunge() const { return static_cast<float>(t_plunge_); }
  float GetBAzimuth() const { return static_cast<float>(b_az_); }
  float GetBPlunge() const { return static_cast<float>(b_plunge_); }

  // The three steps that initWithSDR and the setters take, in their order: the sines and cosines;
  // the slip, normal and axes; the auxiliary plane, its strike within -180 to 180.
  //
  // For a rake between 0 and 180 the auxiliary plane and rake radiate as the fault does; for a
  // negative rake the auxiliary rake has the opposite sign, and for a rake of 0 the auxiliary
  // strike is mirrored (intended). A horizontal fault gives the auxiliary dip 90 and rake 0, a
  // vertical slip the dip 0 and rake 0; the strike then is the fault's + 180, or the fault's own
  // for a rake less than 1 from -90.
  void computeCSs();
  void ComputeVectorsFromAngles();
  void ComputeAuxillaryPlaneAngles();

  // ---- Far-field radiation of body waves (DislocationRadiation.cc) ----
  //
  // For a ray that leaves the source at an azimuth with a ray parameter p (s/km), V being the
  // velocity at the source (km/s): that of P waves for the first, of S waves for the others. In
  // single precision and s^2/km^2: V^2 P, V^2 SV and p V^3 SH are the radiation patterns of Aki and
  // Richards (1980), SH with the vertical direction reversed (intended). NaN for p above 1 / V.

  // The P and SV coefficients of an up-going or a down-going ray.
  float pAmplitudeAz_RayP_Vel_Upgoing(float azimuth, float rayParameter, float velocity,
                                      bool upgoing) const;
  float svAmplitudeAz_RayP_Vel_Upgoing(float azimuth, float rayParameter, float velocity,
                                       bool upgoing) const;
  // The SH coefficient. Finite for p = 0, where 0.0001 stands in the place of p.
  float shAmplitudeAz_RayP_Vel_Upgoing(float azimuth, float rayParameter, float velocity,
                                       bool upgoing) const;

  // The coefficients of the down-going ray, but that of SH is the one of the up-going ray
  // (intended).
  float ComputePWaveAmplitudeAz_RayP_Vel(float azimuth, float rayParameter, float velocity) const;
  float ComputeSVWaveAmplitudeAz_RayP_Vel(float azimuth, float rayParameter, float velocity) const;
  float ComputeSHWaveAmplitudeAz_RayP_Vel(float azimuth, float rayParameter, float velocity) const;

  // ---- Excitation of surface waves (DislocationSurfaceWaves.cc) ----

  // The amplitude factors of Rayleigh (x) and Love (y) waves at an azimuth, in the units of the
  // excitation constants, of which there are two sets: one for a period of exactly 360 s, one for
  // every other.
  Point ComputeSurfWaveAmplitudeAz_Period(float azimuth, float period) const;

 private:
  struct Ray;
  Ray rayTo(float azimuth, float rayParameter, float velocity) const;
  void angleChanged();

  double strike_ = 0.0, dip_ = 0.0, rake_ = 0.0;
  double astrike_ = 0.0, adip_ = 0.0, arake_ = 0.0;
  Vector u_{}, nu_{};
  Vector p_{}, t_{}, b_{};
  double p_az_ = 0.0, p_plunge_ = 0.0, t_az_ = 0.0, t_plunge_ = 0.0, b_az_ = 0.0, b_plunge_ = 0.0;
  double cs_ = 0.0, cd_ = 0.0, cr_ = 0.0;
  double ss_ = 0.0, sd_ = 0.0, sr_ = 0.0;
  double c2d_ = 0.0;
};

}  // namespace krosac

#endif
