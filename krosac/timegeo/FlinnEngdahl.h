// Flinn-Engdahl regions: coordinates to region numbers, and numbers to names.
//
// The 757 geographic and 50 seismic regions of the 1995 revision: Young, Presgrave, Aichele, Wiens
// and Flinn (1996), The Flinn-Engdahl regionalisation scheme: the 1995 revision, Physics of the
// Earth and Planetary Interiors 96, 223-297. Both functions are thread-safe.
#ifndef KROSAC_TIMEGEO_FLINNENGDAHL_H
#define KROSAC_TIMEGEO_FLINNENGDAHL_H

#include <stdint.h>

#include "krosac/platform/Export.h"

KROSAC_C_BEGIN

// Finds the geographic region (1 to 757) and the seismic region (1 to 50) of a point (degrees).
// Coordinates are truncated to whole degrees; 0 counts as north and as east. The longitude is not
// wrapped: beyond +-180 the last region of the row applies. A latitude of +-91 or beyond, or NaN,
// is in no region: the geographic number is then the next value of a counter that starts at 758 and
// is shared by all callers (intended), and the seismic number is 0. Either output may be null.
KROSAC_API void fe_lookup(float latitude, float longitude, int32_t* geographic, int32_t* seismic);

// Finds the names of a geographic and a seismic region. If the seismic number is 0 or less and the
// geographic number is in 1..757, first sets the seismic number from the geographic one. A positive
// seismic number is kept, even if the two disagree. A number outside its range has a name of 52
// blanks. Names are constants and must not be freed. A null input counts as 0; a null output is
// skipped.
KROSAC_API void fe_region(const int32_t* geographic, const char** geographicName, int32_t* seismic,
                          const char** seismicName);

KROSAC_C_END

#endif
