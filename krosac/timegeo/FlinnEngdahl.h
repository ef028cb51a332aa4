// Flinn-Engdahl regions: from coordinates to region numbers, and from numbers to names.
//
// The 757 geographic and 50 seismic regions of the 1995 revision: Young, Presgrave, Aichele, Wiens
// and Flinn (1996), The Flinn-Engdahl regionalisation scheme: the 1995 revision, Physics of the
// Earth and Planetary Interiors 96, 223-297. Both functions may be called from several threads.
#ifndef KROSAC_TIMEGEO_FLINNENGDAHL_H
#define KROSAC_TIMEGEO_FLINNENGDAHL_H

#include <stdint.h>

#include "krosac/platform/Export.h"

KROSAC_C_BEGIN

// The geographic region (1 to 757) and the seismic region (1 to 50) of a point (degrees), whose
// coordinates are cut to whole degrees toward zero; 0 counts as north and as east. The longitude is
// not wrapped: beyond 180 either way the last region of the row holds. A latitude of 91 or more
// either way, or a NaN, is in no region: the geographic number is then the next of a counter that
// starts at 758 and is common to all callers, and the seismic number 0. Either output may be null.
KROSAC_API void fe_lookup(float latitude, float longitude, int32_t* geographic, int32_t* seismic);

// The names of a geographic and a seismic region. Where the seismic number is 0 or less and the
// geographic one lies in 1..757, the seismic number is first set from it; a positive one is kept,
// even when the two disagree. A number outside its range has a name of 52 blanks. The names are
// constant and never freed. An input that is null counts as 0, an output that is null is left out.
KROSAC_API void fe_region(const int32_t* geographic, const char** geographicName, int32_t* seismic,
                          const char** seismicName);

KROSAC_C_END

#endif
