// Everything that the library offers. Compiled as C it includes the C headers only.
#ifndef KROSAC_KROSAC_H
#define KROSAC_KROSAC_H

#include "krosac/dsp/Butterworth.h"
#include "krosac/dsp/Convolution.h"
#include "krosac/dsp/Decimation.h"
#include "krosac/dsp/Fft.h"
#include "krosac/dsp/InstrumentResponse.h"
#include "krosac/dsp/PoleZeroFile.h"
#include "krosac/dsp/QuasiRandom.h"
#include "krosac/dsp/Statistics.h"
#include "krosac/sacio/SacFile.h"
#include "krosac/sacio/SacHeader.h"
#include "krosac/sacio/SacRoutines.h"
#include "krosac/timegeo/Calendar.h"
#include "krosac/timegeo/Ellipticity.h"
#include "krosac/timegeo/FlinnEngdahl.h"
#include "krosac/timegeo/GreatCircle.h"

#include "krosac/traveltimes/JBTables.h"
#include "krosac/traveltimes/PsNMOTables.h"
#include "krosac/traveltimes/SeismicPhase.h"
#include "krosac/traveltimes/TTTables.h"

#ifdef __cplusplus
#include "krosac/dsp/Misfits.h"
#include "krosac/dsp/Rotation.h"
#include "krosac/platform/Archive.h"
#include "krosac/platform/ByteBuffer.h"
#include "krosac/platform/Date.h"
#include "krosac/platform/Fields.h"
#include "krosac/platform/Log.h"
#include "krosac/platform/Object.h"
#include "krosac/platform/Resources.h"
#include "krosac/platform/Text.h"
#include "krosac/sacio/ByteOrder.h"
#include "krosac/seismogram/SacObject.h"
#include "krosac/timegeo/SeisTimeObject.h"
#include "krosac/traveltimes/JBTableObject.h"
#include "krosac/traveltimes/LocsatTTController.h"
#include "krosac/traveltimes/LocsatTTTable.h"
#include "krosac/traveltimes/PsNMOTableObject.h"
#include "krosac/traveltimes/TTTableObject.h"
#endif

#endif
