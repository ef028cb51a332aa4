#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include "RunExample.h"

namespace {

#ifdef KROSAC_HAS_FORTRAN
using ::testing::ElementsAre;
using ::testing::HasSubstr;

class EditHeader : public ::testing::Test {
 protected:
  void SetUp() override {
    ASSERT_EQ(runExample(folder, "make_stations", "in 1 500").exitCode, 0);
    ASSERT_EQ(runExample(folder, "process_sac").exitCode, 0);  // a file in the other byte order
  }
  TemporaryFolder folder;
  const std::string input = "in/XX.S001.BHZ.SAC";
};

TEST_F(EditHeader, ChangesTheFieldsAskedForAndNothingElse) {
  const ExampleRun run =
      runExample(folder, "edit_header", input + " out.SAC EVDP 33.5 NZYEAR 2012 USER0 -1e-3");
  EXPECT_EQ(run.exitCode, 0) << run.err;
  const std::string before = folder.read(input), after = folder.read("out.SAC");
  ASSERT_EQ(after.size(), before.size());
  std::vector<std::size_t> changed;
  for (std::size_t word = 0; word < after.size() / 4; ++word)
    if (after.compare(4 * word, 4, before, 4 * word, 4) != 0) changed.push_back(word);
  EXPECT_THAT(changed, ElementsAre(38, 40, 70));  // EVDP, USER0, NZYEAR
  const ExampleRun shown = runExample(folder, "edit_header", "out.SAC");
  EXPECT_THAT(shown.out, HasSubstr("S001 BHZ\nNZYEAR          2012\n"));
  EXPECT_THAT(shown.out, HasSubstr("USER0  -0.100000E-02\n"));
}

TEST_F(EditHeader, RefusesWhatItCannotDo) {
  const struct {
    std::string arguments, message;
  } cases[] = {{"", "edit_header FILE [OUTPUT FIELD VALUE ...]\n"},
               {input + " out.SAC EVDP", "edit_header FILE [OUTPUT FIELD VALUE ...]\n"},
               {"missing", "missing: cannot be read\n"},
               {"sample.SAC", "sample.SAC: cannot be read\n"},
               {input + " out.SAC NPTS 3", "NPTS: no field that can be changed\n"},
               {input + " out.SAC DEPTH 3", "DEPTH: no field that can be changed\n"},
               {input + " out.SAC EVDP deep", "deep: no value for EVDP\n"},
               {input + " no/out.SAC EVDP 3", "no/out.SAC: cannot be written\n"}};
  for (const auto& [arguments, message] : cases) {
    const ExampleRun run = runExample(folder, "edit_header", arguments);
    EXPECT_EQ(run.exitCode, 1) << arguments;
    EXPECT_EQ(run.err, message);
  }
  EXPECT_EQ(filesBelow(folder).count("out.SAC"), 0u);
}
#else
TEST(EditHeader, NeedsFortran) {
  GTEST_SKIP() << "there was no Fortran compiler";
}
#endif

}  // namespace
