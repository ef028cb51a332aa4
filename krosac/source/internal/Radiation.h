// The radiation terms of a double couple, and the short angle constants of Dislocation.
#ifndef KROSAC_SOURCE_INTERNAL_RADIATION_H
#define KROSAC_SOURCE_INTERNAL_RADIATION_H

namespace krosac {

// pi / 180 and 180 / pi, cut short: intended, Dislocation uses these throughout.
inline constexpr double kShortRadiansPerDegree = 0.017453293;
inline constexpr double kShortDegreesPerRadian = 57.295779513;

struct FaultTrigonometry {
  double sinDip, cosDip, cos2Dip, sinRake, cosRake;
};

// phi is the azimuth of the ray minus the strike.
struct AzimuthTrigonometry {
  double sinPhi, cosPhi, sin2Phi, cos2Phi;
};

struct RadiationTerms {
  double sR, qR, pR, pL, qL;
};

inline RadiationTerms radiationTerms(const FaultTrigonometry& f, const AzimuthTrigonometry& a) {
  return {
      .sR = f.sinDip * f.cosDip * f.sinRake,
      .qR = f.cosRake * f.cosDip * a.cosPhi - f.sinRake * f.cos2Dip * a.sinPhi,
      .pR = f.sinRake * f.sinDip * f.cosDip * a.cos2Phi + f.cosRake * f.sinDip * a.sin2Phi,
      .pL = f.cosRake * f.sinDip * a.cos2Phi - f.sinRake * f.sinDip * f.cosDip * a.sin2Phi,
      .qL = -f.cosRake * f.cosDip * a.sinPhi - f.sinRake * f.cos2Dip * a.cosPhi,
  };
}

}  // namespace krosac

#endif
