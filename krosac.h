// Everything that the library offers. Compiled as C it includes the C headers only.
#ifndef KROSAC_KROSAC_H
#define KROSAC_KROSAC_H

#ifdef __cplusplus
#include "krosac/platform/Archive.h"
#include "krosac/platform/ByteBuffer.h"
#include "krosac/platform/Date.h"
#include "krosac/platform/Log.h"
#include "krosac/platform/Object.h"
#include "krosac/platform/Resources.h"
#include "krosac/platform/Text.h"
#endif

#endif
