// Why the last operation failed.
#ifndef KROSAC_PLATFORM_LASTREASON_H
#define KROSAC_PLATFORM_LASTREASON_H

#include "krosac/platform/Export.h"

KROSAC_C_BEGIN

// Why the calling thread's last operation failed: the system's text for a file, the bytes needed
// and found, the line of a table. At most 1023 bytes; empty if the operation succeeded. Operations
// that cannot fail leave it as it is. An operation on many files names the last file it refused.
// The text is valid until the thread's next operation; nothing is allocated. If $KROSAC_DEBUG is
// set, each reason is logged too.
KROSAC_API const char* lastReason(void);

KROSAC_C_END

#endif
