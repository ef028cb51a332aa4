// Operations on any ordered list of seismograms, as C++ functions. The integers that three of them
// return have no meaning. Empty references are ignored, and removed where the list may change. If
// memory runs out, list and seismograms stay as they were, and lastReason() says so.
#ifndef KROSAC_COLLECTIONS_SEISMOGRAMGROUPS_H
#define KROSAC_COLLECTIONS_SEISMOGRAMGROUPS_H

#include <vector>

#include "krosac/platform/Export.h"
#include "krosac/platform/Object.h"
#include "krosac/seismogram/SacObject.h"

namespace krosac {

// Subtracts the mean of all samples of all seismograms, summed in double precision, from every
// sample. DEPMIN, DEPMAX, DEPMEN and mSeisHasChanged do not change. Does nothing without samples.
KROSAC_API void saRemoveCollectiveMean(const std::vector<Ref<SacObject>>& list);

// Calls setReferenceTime with one time for all seismograms: that of the first, replaced in the
// order of the list by each later one for which lessThanSeisTime is true. lessThanSeisTime compares
// field by field, so the time need not be the earliest. Seismograms without a reference time are
// not considered. Does nothing for fewer than two seismograms.
KROSAC_API int saSynchSacObjects(std::vector<Ref<SacObject>>& list);

// Calls saSynchSacObjects, then removes every seismogram whose closed interval from B to E lies
// within that of another; of several with equal B and E the first stays. A seismogram with NaN in B
// or E is neither removed nor compared. Takes O(n log n) time. Does nothing for fewer than two.
KROSAC_API int saRemoveOverlaps(std::vector<Ref<SacObject>>& list);

// Sorts by ascending B (stable, NaN last), then removes duplicates, which are seismograms with
// equal B and E. One with a negative USER9, which includes the undefined value, is never removed;
// this is intended. Its duplicates are removed; without such a one all but the last are. No samples
// are joined. Takes O(n log n) time.
KROSAC_API int saMergeSacSeisInArray(std::vector<Ref<SacObject>>& list);

}  // namespace krosac

#endif
