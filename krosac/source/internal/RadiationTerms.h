// The azimuthal terms that the far field of a double couple is made of.
#ifndef KROSAC_SOURCE_INTERNAL_RADIATIONTERMS_H
#define KROSAC_SOURCE_INTERNAL_RADIATIONTERMS_H

namespace krosac {

struct FaultTrigonometry {
  double sinDip, cosDip, cos2Dip, sinRake, cosRake;
};

// Of the angle phi from the strike to the ray's azimuth, and of 2 phi.
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
