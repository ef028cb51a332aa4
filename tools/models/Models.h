// The velocity models that the tables are made from.
#ifndef KROSAC_TOOLS_MODELS_MODELS_H
#define KROSAC_TOOLS_MODELS_MODELS_H

#include "raytracing/EarthModel.h"

namespace krosac::raytracing {

EarthModel iasp91();
EarthModel jeffreysBullen();

}  // namespace krosac::raytracing

#endif
