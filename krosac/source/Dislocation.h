// A shear-dislocation (double-couple) earthquake source and its radiation.
//
//   auto source = krosac::make<krosac::Dislocation>();
//   source->initWithSDR(35.0f, 60.0f, -110.0f);
//   const float p = source->pAmplitudeAz_RayP_Vel_Upgoing(120.0f, 0.06f, 6.2f, false);
//
// Angles are in degrees, azimuths clockwise from north. Vectors have the components north, east and
// down. Degrees are converted to radians by the short constant 0.017453293 (intended).
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

  // Sets strike, dip and rake of the fault plane (degrees) and computes vectors, axes and the
  // auxiliary plane. Returns the object.
  Ref<Dislocation> initWithSDR(float strike, float dip, float rake);

  // Set one angle (degrees) and recompute vectors, axes and the auxiliary plane.
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

  // The object's own vectors. They have unit length, except the B axis, whose third component is
  // always 0 (intended).
  const Vector& GetSlipVector() const { return u_; }
  const Vector& GetNormalVector() const { return nu_; }
  const Vector& GetPaxis() const { return p_; }
  const Vector& GetTaxis() const { return t_; }
  const Vector& GetBaxis() const { return b_; }

  // Azimuths and plunges of the axes. Plunges are in 0 to 90; that of the B axis is always 0. The
  // azimuth of an axis with components n (north) and e (east) is atan2(n, e) + 90, that is, 180
  // minus the true azimuth, plus 180 if the axis points up. It is not wrapped to 0 to 360. All of
  // this is intended.
  float GetPAzimuth() const { return static_cast<float>(p_az_); }
  float GetPPlunge() const { return static_cast<float>(p_plunge_); }
  float GetTAzimuth() const { return static_cast<float>(t_az_); }
  float GetTPlunge() const { return static_cast<float>(t_plunge_); }
  float GetBAzimuth() const { return static_cast<float>(b_az_); }
  float GetBPlunge() const { return static_cast<float>(b_plunge_); }

  // The three steps of initWithSDR and of the setters, in this order: sines and cosines; slip,
  // normal and axes; the auxiliary plane, with its strike in -180 to 180.
  //
  // For a rake between 0 and 180 the auxiliary plane radiates as the fault plane does. For a
  // negative rake the auxiliary rake has the opposite sign, and for a rake of 0 the auxiliary
  // strike is mirrored (intended). A horizontal fault has the auxiliary dip 90 and rake 0; vertical
  // slip has the auxiliary dip 0 and rake 0. In both cases the auxiliary strike is strike + 180, or
  // the strike itself if the rake is within 1 degree of -90.
  void computeCSs();
  void ComputeVectorsFromAngles();
  void ComputeAuxillaryPlaneAngles();

  // ---- Far-field radiation of body waves (DislocationRadiation.cc) ----
  //
  // For a ray that leaves the source at an azimuth (degrees) with a ray parameter p (s/km). V is
  // the velocity at the source (km/s), of P waves for P and of S waves for SV and SH. Computed in
  // single precision, in s^2/km^2: V^2 P, V^2 SV and p V^3 SH are the radiation patterns of Aki and
  // Richards (1980), SH with the vertical direction reversed (intended). NaN for p above 1 / V.

  // Return the P and SV coefficients of an up-going or a down-going ray.
  float pAmplitudeAz_RayP_Vel_Upgoing(float azimuth, float rayParameter, float velocity,
                                      bool upgoing) const;
  float svAmplitudeAz_RayP_Vel_Upgoing(float azimuth, float rayParameter, float velocity,
                                       bool upgoing) const;
  // Returns the SH coefficient. For p = 0, divides by 0.0001 instead of p.
  float shAmplitudeAz_RayP_Vel_Upgoing(float azimuth, float rayParameter, float velocity,
                                       bool upgoing) const;

  // Return the coefficients of the down-going ray for P and SV, but of the up-going ray for SH
  // (intended).
  float ComputePWaveAmplitudeAz_RayP_Vel(float azimuth, float rayParameter, float velocity) const;
  float ComputeSVWaveAmplitudeAz_RayP_Vel(float azimuth, float rayParameter, float velocity) const;
  float ComputeSHWaveAmplitudeAz_RayP_Vel(float azimuth, float rayParameter, float velocity) const;

  // ---- Excitation of surface waves (DislocationSurfaceWaves.cc) ----

  // Returns the amplitude factors of Rayleigh (x) and Love (y) waves at an azimuth (degrees), in
  // the units of the excitation constants. There is one set of constants for a period of exactly
  // 360 s and one for every other period.
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
