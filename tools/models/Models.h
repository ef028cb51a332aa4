// The velocity models from which the tables are computed.
#ifndef KROSAC_TOOLS_MODELS_MODELS_H
#define KROSAC_TOOLS_MODELS_MODELS_H

#include "raytracing/EarthModel.h"

namespace krosac::raytracing {

EarthModel iasp91();
EarthModel jeffreysBullen();

}  // namespace krosac::raytracing

#endif
