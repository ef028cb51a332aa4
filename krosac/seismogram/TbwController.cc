#include "krosac/seismogram/TbwController.h"

#include <new>
#include <utility>
#include <vector>

#include "krosac/platform/Log.h"
#include "krosac/platform/internal/Process.h"
#include "krosac/platform/internal/Reason.h"
#include "krosac/platform/internal/Text.h"

namespace krosac {
namespace {

// Splits at every single blank: a leading blank and two blanks in a row yield an empty argument.
// This is intended.
std::vector<std::string> splitAtBlanks(const std::string& text) {
  std::vector<std::string> parts;
  std::size_t begin = 0;
  for (std::size_t blank; (blank = text.find(' ', begin)) != std::string::npos; begin = blank + 1)
    parts.push_back(text.substr(begin, blank - begin));
  parts.push_back(text.substr(begin));
  return parts;
}

std::string number(const char* option, float value) {
  return formatText(" %s %f", option, static_cast<double>(value));
}

std::string number(const char* option, std::int32_t value) {
  return formatText(" %s %d", option, value);
}

// Null for a signal type without a result file.
const char* resultName(std::int32_t signalType) {
  switch (signalType) {
    case 1:
      return "B00101Z00.sac";
    case 2:
      return "B00102R00.sac";
    case 6:
      return "B00103T00.sac";
    default:
      return nullptr;
  }
}

}  // namespace

Ref<Object> tbwController::init() try {
  clearReason();
  std::string models = "/norvik/EarthModels/Hudson";
  if (!Object::init()) return nullptr;
  depth_ = 15.0f;
  gcarc_ = 60.0f;
  azimuth_ = 45.0f;
  strike_ = 0.0f;
  dip_ = 90.0f;
  rake_ = 0.0f;
  npts_ = 1024;
  delta_ = 0.1f;
  delay_ = 5.0f;
  moment_ = 1e22f;
  verbose_ = 0;
  signalType_ = 1;
  tshift_ = 0.8f;
  srcModelName_ = "nearSrc.mod";
  recModelName_ = "nearRec.mod";
  earthModelName_ = "AK135sph.mod";
  exPath_ = "/norvik/bin";
  workPath_ = std::move(models);
  return Ref<Object>(this);
} catch (const std::bad_alloc&) {
  setMemoryReason();
  return nullptr;
}

Ref<SacObject> tbwController::computeResponse() try {
  const auto inWork = [this](const char* name) { return joinedPath(workPath_, name); };
  const auto program = [this](const char* name) { return joinedPath(exPath_, name); };
  const bool isVerbose = verbose_ > 0;
  std::string failure;  // of the first program that could not run
  // Runs a program and returns its captured output, empty where it is not captured.
  const auto run = [&failure](const ProcessCommand& command) {
    ProcessResult result = runProcess(command);
    if (failure.empty()) failure = result.error;
    return std::move(result.output);
  };

  run({.program = inWork("cleanup.sh"), .directory = workPath_});

  const bool wantsP = signalType_ == 1 || signalType_ == 2;
  const std::string greens = "-TEL " + earthModelName_ + " -SRC " + srcModelName_ + " -REC " +
                             recModelName_ + number("-HS", depth_) + number("-GCARC", gcarc_) +
                             number("-NPTS", npts_) + number("-DT", delta_) + number("-O", delay_) +
                             (wantsP ? " -P" : " -S");
  if (isVerbose) log("hudson96 %s", greens.c_str());
  const std::string output = run({.program = program("hudson96"),
                                  .arguments = splitAtBlanks(greens),
                                  .directory = workPath_,
                                  .capturesOutput = true});
  if (isVerbose) log("%s", output.c_str());

  if (isVerbose) log("Computing the impulse responses.");
  run({.program = program("hpulse96"),
       .arguments = splitAtBlanks("-i -D"),
       .directory = workPath_,
       .inputFile = inWork("hspec96.grn"),
       .outputFile = inWork("gfs.txt")});

  if (isVerbose) log("Computing the dislocation response.");
  const std::string mechanism = number("-S", strike_) + number("-D", dip_) + number("-R", rake_) +
                                formatText(" -M0 %e", static_cast<double>(moment_)) +
                                number("-A", azimuth_) + number("-NPTS", npts_) + " -ROT";
  if (isVerbose) log("fmech96 %s", mechanism.c_str());
  run({.program = program("fmech96"),
       .arguments = splitAtBlanks(mechanism),
       .directory = workPath_,
       .inputFile = inWork("gfs.txt"),
       .outputFile = inWork("resp.txt")});

  // The three words are passed literally, since no shell is involved; this is intended.
  run({.program = program("f96tosac"),
       .arguments = splitAtBlanks("f96tosac < resp.txt"),
       .directory = workPath_});

  auto result = make<SacObject>();
  if (const char* name = resultName(signalType_)) {
    if (result && !result->loadFromPath(inWork(name))) result = make<SacObject>();
    if (result) tshift_ = 0.0f;
  } else {
    setReason("signal type %d has no result file", signalType_);
  }
  if (!failure.empty()) setReason("%s", failure.c_str());
  if (!result) throw std::bad_alloc();
  result->setBeginTime(result->b() + tshift_);
  if (isVerbose) log("%s", result->description().c_str());
  return result;
} catch (const std::bad_alloc&) {
  setMemoryReason();
  return nullptr;
}

}  // namespace krosac
