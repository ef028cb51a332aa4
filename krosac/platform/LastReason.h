// Why the last operation refused.
#ifndef KROSAC_PLATFORM_LASTREASON_H
#define KROSAC_PLATFORM_LASTREASON_H

#include "krosac/platform/Export.h"

KROSAC_C_BEGIN

// Why this thread's last operation that could fail did so, in one sentence of at most 1023 bytes:
// the system's own text for a file, the bytes needed and found, the line of a table. Empty when it
// succeeded. An operation on many files names the last one it refused. The text is valid until the
// thread's next operation; nothing is allocated. With $KROSAC_DEBUG set each reason is also logged.
KROSAC_API const char* lastReason(void);

KROSAC_C_END

#endif
