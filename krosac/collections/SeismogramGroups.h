// Operations on any ordered list of seismograms. The integers that three of them give mean nothing.
// Empty references in a list are passed over, and dropped where the list can change.
#ifndef KROSAC_COLLECTIONS_SEISMOGRAMGROUPS_H
#define KROSAC_COLLECTIONS_SEISMOGRAMGROUPS_H

#include <vector>

#include "krosac/platform/Export.h"
#include "krosac/platform/Object.h"
#include "krosac/seismogram/SacObject.h"

namespace krosac {

// Subtracts the mean of all samples of all seismograms, summed in double precision, from every
// sample. DEPMIN, DEPMAX, DEPMEN and mSeisHasChanged stay as they are. Nothing for no samples.
KROSAC_API void saRemoveCollectiveMean(const std::vector<Ref<SacObject>>& list);

// Gives all seismograms one reference time by setReferenceTime: the first one's, replaced in the
// order of the list by each later one that lessThanSeisTime holds to be less. That compares field
// by field, so the time need not be the earliest. Seismograms without a reference time do not take
// part in the choice. Nothing for fewer than two seismograms.
KROSAC_API int saSynchSacObjects(std::vector<Ref<SacObject>>& list);

// Runs saSynchSacObjects, then removes every seismogram that lies inside another, from its B to its
// E and ends included; of several with the same B and E the first stays. One whose B or E is not a
// number stays and removes none. Takes n log n time. Nothing for fewer than two seismograms.
KROSAC_API int saRemoveOverlaps(std::vector<Ref<SacObject>>& list);

// Sorts by ascending B (equal ones keep their order, those without a number go last), then removes
// duplicates: seismograms with the same B and E. One with a negative USER9 is never removed, also
// when it is undefined; this is intended. The others of its kind go, and where there is none such,
// all but the last. No samples are joined. Takes n log n time.
KROSAC_API int saMergeSacSeisInArray(std::vector<Ref<SacObject>>& list);

}  // namespace krosac

#endif
