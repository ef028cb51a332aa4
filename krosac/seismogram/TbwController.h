// Synthetic seismograms from an installation of external wavenumber-integration programs.
//
//   auto controller = krosac::make<krosac::tbwController>();
//   controller->init();
//   controller->setExPath("/opt/synthetics/bin");
//   controller->setWorkPath("/data/models");
//   auto synthetic = controller->computeResponse();
//   if (!synthetic->GetSacHeader()) return 1;
#ifndef KROSAC_SEISMOGRAM_TBWCONTROLLER_H
#define KROSAC_SEISMOGRAM_TBWCONTROLLER_H

#include <cstdint>
#include <string>

#include "krosac/platform/Export.h"
#include "krosac/platform/Fields.h"
#include "krosac/platform/Object.h"
#include "krosac/seismogram/SacObject.h"

namespace krosac {

// The parameters of the programs. The number or text at the end of each comment is the default.
class KROSAC_API tbwController : public Object {
 public:
  // Sets every field to its default and returns the object. Empty, with a reason and no change, if
  // memory runs out.
  Ref<Object> init() override;

  KROSAC_FIELD(float, depth, Depth);       // depth of the source, km; 15
  KROSAC_FIELD(float, gcarc, Gcarc);       // epicentral distance, degrees; 60
  KROSAC_FIELD(float, azimuth, Azimuth);   // azimuth of the station, degrees; 45
  KROSAC_FIELD(float, strike, Strike);     // strike of the fault, degrees; 0
  KROSAC_FIELD(float, dip, Dip);           // dip of the fault, degrees; 90
  KROSAC_FIELD(float, rake, Rake);         // rake of the slip, degrees; 0
  KROSAC_FIELD(std::int32_t, npts, Npts);  // number of samples; 1024
  KROSAC_FIELD(float, delta, Delta);       // sample interval, s; 0.1
  KROSAC_FIELD(float, delay, Delay);       // time of the arrival in the result, s; 5
  KROSAC_FIELD(float, moment, Moment);     // seismic moment, in the unit of the programs; 1e22
  KROSAC_FIELD(std::int32_t, verbose, Verbose);        // above 0 the steps are logged; 0
  KROSAC_FIELD(std::int32_t, signalType, SignalType);  // 1: P vertical, 2: P radial, 6: SH; 1
  KROSAC_FIELD(float, tshift, Tshift);                 // no effect on a result that is read, s; 0.8
  KROSAC_FIELD(std::string, srcModelName, SrcModelName);  // crust at the source; "nearSrc.mod"
  KROSAC_FIELD(std::string, recModelName, RecModelName);  // crust at the receiver; "nearRec.mod"
  KROSAC_FIELD(std::string, earthModelName, EarthModelName);  // Earth model; "AK135sph.mod"
  KROSAC_FIELD(std::string, exPath, ExPath);  // folder of the programs; "/norvik/bin"
  // Folder of models, intermediate and result files; "/norvik/EarthModels/Hudson".
  KROSAC_FIELD(std::string, workPath, WorkPath);

  // Runs cleanup.sh of the work path, then hudson96, hpulse96, fmech96 and f96tosac of the program
  // path, one after the other in the work path and without a shell, and reads the SAC file that
  // they write. Standard input is empty where the pipeline names no file; gfs.txt and resp.txt are
  // created where missing and truncated otherwise. Texts are split into arguments at every single
  // blank, so a model name with blanks becomes several arguments, and two blanks an empty one
  // (intended).
  //
  // Exit statuses are ignored: a failing program shows only in a missing or stale result. Where
  // cleanup.sh cannot run, the result file of an earlier run is read as if it were new. A program
  // that cannot be started is skipped; the first one is named by lastReason(), also where a result
  // is read. For signal types 1, 2 and 6 tshift is set to 0 before it is added to B, so it has no
  // effect (intended). Without a readable file, and for any other signal type, the result is an
  // empty seismogram without a header. An empty path is the working directory of the caller. If
  // memory runs out between the programs, the rest is not run and the result is empty, with a
  // reason.
  Ref<SacObject> computeResponse();
};

}  // namespace krosac

#endif
