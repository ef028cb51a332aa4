// The short constants of angles that Dislocation keeps throughout.
#ifndef KROSAC_SOURCE_INTERNAL_DISLOCATIONANGLES_H
#define KROSAC_SOURCE_INTERNAL_DISLOCATIONANGLES_H

namespace krosac {

inline constexpr double kShortRadiansPerDegree = 0.017453293;
inline constexpr double kShortDegreesPerRadian = 57.295779513;

}  // namespace krosac

#endif
