#include "krosac/seismogram/TbwController.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>

#include "CapturedLog.h"
#include "TemporaryFolder.h"
#include "krosac/platform/LastReason.h"
#include "krosac/sacio/SacFile.h"

namespace krosac {
namespace {

using testing::Each, testing::HasSubstr;

// An installation of stand-in programs in folders with blanks in their names. Each appends its
// name, arguments and input to the file "record" of its working folder and then runs a shell
// command.
struct TbwControllerTest : ::testing::Test {
  TbwControllerTest() {
    std::filesystem::create_directory(work);
    std::filesystem::create_directory(programs);
    standIn("work dir/cleanup.sh", "");
    standIn("ex dir/hudson96", "printf greens > hspec96.grn; echo done");
    standIn("ex dir/hpulse96", "echo pulses");
    standIn("ex dir/fmech96", "echo mechanism");
    standIn("ex dir/f96tosac", "exit 3");
    controller->init();
    controller->setWorkPath(work);
    controller->setExPath(programs);
  }
  void standIn(const std::string& name, const std::string& command) {
    const std::string script =
        "#!/bin/sh\n{ printf '%s' \"${0##*/}\"; for a; do printf '[%s]' \"$a\"; done; printf ' of "
        "'; cat; echo; } >> record\n";
    ::chmod(folder.write(name, script + command).c_str(), 0755);
  }

  TemporaryFolder folder;
  const std::string work = folder.path("work dir"), programs = folder.path("ex dir");
  const Ref<tbwController> controller = make<tbwController>();
  CapturedLog log;
};

TEST_F(TbwControllerTest, RunsTheProgramsAndReadsTheFileOfTheSignalType) {
  const std::pair<std::int32_t, const char*> files[] = {
      {1, "B00101Z00.sac"}, {2, "B00102R00.sac"}, {6, "B00103T00.sac"}, {3, nullptr}};
  folder.write("work dir/gfs.txt", "old Green's functions, longer than the new\n");
  controller->setEarthModelName("two  blanks");
  controller->setSrcModelName("`touch injected`");
  for (const auto& [type, file] : files) {
    const float samples[] = {1, -2, 3}, begin = 7.0f + static_cast<float>(type);
    std::int32_t status;
    if (file) WriteSAC1((work + "/" + file).c_str(), samples, 3, &status, 0.5f, begin);
    controller->setSignalType(type);
    controller->setTshift(0.75f);
    controller->setVerbose(type == 3);
    std::filesystem::remove(work + "/record");
    const auto result = controller->computeResponse();
    EXPECT_EQ(folder.read("work dir/record"),
              "cleanup.sh of \n"
              "hudson96[-TEL][two][][blanks][-SRC][`touch][injected`][-REC][nearRec.mod]"
              "[-HS][15.000000][-GCARC][60.000000][-NPTS][1024][-DT][0.100000][-O][5.000000][" +
                  std::string(type < 3 ? "-P" : "-S") +
                  "] of \nhpulse96[-i][-D] of greens\n"
                  "fmech96[][-S][0.000000][-D][90.000000][-R][0.000000][-M0][1.000000e+22]"
                  "[-A][45.000000][-NPTS][1024][-ROT] of pulses\n\n"
                  "f96tosac[f96tosac][<][resp.txt] of \n");
    EXPECT_EQ(folder.read("work dir/resp.txt"), "mechanism\n");
    EXPECT_EQ(result->b(), file ? begin : -12345.0f) << type;
    EXPECT_EQ(controller->tshift(), file ? 0 : 0.75f);
    EXPECT_STREQ(lastReason(), file ? "" : "signal type 3 has no result file");
  }
  EXPECT_THAT(
      log.texts,  // only the last run is verbose
      testing::ElementsAre("hudson96 -TEL two  blanks -SRC `touch injected` -REC nearRec.mod -HS "
                           "15.000000 -GCARC 60.000000 -NPTS 1024 -DT 0.100000 -O 5.000000 -S",
                           "done\n", "Computing the impulse responses.",
                           "Computing the dislocation response.",
                           "fmech96  -S 0.000000 -D 90.000000 -R 0.000000 -M0 1.000000e+22 -A "
                           "45.000000 -NPTS 1024 -ROT",
                           make<SacObject>()->description()));
}

TEST_F(TbwControllerTest, ContinuesAfterFailingProgramsAndNamesTheFirst) {
  folder.write("work dir/resp.txt", "old");
  folder.write("work dir/B00101Z00.sac", "no seismogram");
  standIn("ex dir/hudson96", "kill -9 $$");
  std::filesystem::remove(programs + "/fmech96");
  EXPECT_FALSE(controller->computeResponse()->GetSacHeader());
  EXPECT_EQ(folder.read("work dir/resp.txt"), "");
  EXPECT_EQ(lastReason(), "Could not read " + work + "/hspec96.grn: No such file or directory.");
  EXPECT_THAT(log.texts, Each(HasSubstr("B00101Z00.sac")));  // of the loader only
  standIn("ex dir/hudson96", ": > hspec96.grn");
  controller->setSignalType(3);
  controller->computeResponse();
  EXPECT_EQ(lastReason(), "Could not run " + programs + "/fmech96: No such file or directory.");
  controller->setWorkPath(folder.path("nowhere"));
  EXPECT_FALSE(controller->computeResponse()->GetSacHeader());
}

}  // namespace
}  // namespace krosac
