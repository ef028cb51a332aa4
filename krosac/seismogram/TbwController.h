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

// What the programs are told. init gives each field the default behind it.
class KROSAC_API tbwController : public Object {
 public:
  // Sets every field to its default. Gives the object.
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
  KROSAC_FIELD(std::int32_t, verbose, Verbose);           // above 0 the steps are logged; 0
  KROSAC_FIELD(std::int32_t, signalType, SignalType);     // 1: P vertical, 2: P radial, 6: SH; 1
  KROSAC_FIELD(float, tshift, Tshift);                    // added to the result's B, s; 0.8
  KROSAC_FIELD(std::string, srcModelName, SrcModelName);  // crust at the source; "nearSrc.mod"
  KROSAC_FIELD(std::string, recModelName, RecModelName);  // crust at the receiver; "nearRec.mod"
  KROSAC_FIELD(std::string, earthModelName, EarthModelName);  // Earth model; "AK135sph.mod"
  KROSAC_FIELD(std::string, exPath, ExPath);  // folder of the programs; "/norvik/bin"
  // Folder of models, intermediate and result files; "/norvik/EarthModels/Hudson".
  KROSAC_FIELD(std::string, workPath, WorkPath);

  // Runs cleanup.sh of the work path, then hudson96, hpulse96, fmech96 and f96tosac of the program
  // path, one after the other in the work path and without a shell, and reads the SAC file that
  // they leave there. Their input is empty where none is named; gfs.txt and resp.txt are made where
  // missing and cut before they are written. Texts are split into arguments at every single blank,
  // so a model name with blanks becomes several and two blanks an empty one (intended).
  //
  // No exit status is looked at: a program that fails shows in a result that is missing or old. One
  // that cannot be started is named in the log, and the next is tried. For signal types 1, 2 and 6
  // tshift becomes 0, so that the begin time of what was read stays (intended). Without a readable
  // file, and for any other signal type, the result is an empty seismogram, one without a header.
  // An empty path is the caller's working directory.
  Ref<SacObject> computeResponse();
};

}  // namespace krosac

#endif
