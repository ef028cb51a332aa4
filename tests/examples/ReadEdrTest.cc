#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "RunExample.h"

namespace {

using ::testing::HasSubstr;

TEST(ReadEdr, PrintsAndSortsTheEventsOfAReport) {
  const TemporaryFolder folder;
  // In no order, with line ends of both kinds; the depth of the last event is not a number.
  folder.write("report",
               "P LOST\n"
               "HY20040102 041503.75 17.520S  69.800W 110.0\r\n"
               "E                           4.9  17\r\n"
               "M      Z 20.0    3.4                             MSZ 5.6\n"
               "XX\n\nC\nXX\n"
               "HY20031231 235950.00 38.297N 142.373E  29.0\n"
               "P TLY  eP      000541.80   0.3   29.84 301.5 1.1   63.0 5.7\n"
               "S      iS      000920.50                   Lg      001144.00\n"
               "M      Z 20.0    3.4                             MSZ 5.6\n"
               "E                           5.8  41\n"
               "HY20040101 100000.00  0.500N  25.300W nan\n");
  const ExampleRun run = runExample(folder, "read_edr", "missing report");
  EXPECT_EQ(run.exitCode, 1);
  EXPECT_EQ(run.err, "missing: cannot be read\n");
  EXPECT_EQ(run.out.find("E2003-12-31-23-59-50, 4 phases\nHypocenter Summary:"), 0u);
  EXPECT_THAT(run.out,
              HasSubstr("  TLY        P 1072915541.80  29.84   301.5     0.30     5.7\n\n"
                        "Rayleigh Measurements:\nStation PhaseCode Gcarc Azimuth Period(s) "
                        "Amplitude(microns) Component Ms\n"
                        "  TLY   R1  29.84   301.5  20.0        3.4 Z  5.6\n"));
  EXPECT_THAT(run.out, HasSubstr("By depth, km:\n"
                                 "E2003-12-31-23-59-50   29.0\n"
                                 "E2004-01-02-04-15-03  110.0\n"
                                 "E2004-01-01-10-00-00    nan\n"
                                 "By mb:\n"
                                 "E2004-01-01-10-00-00    0.0\n"
                                 "E2004-01-02-04-15-03    4.9\n"
                                 "E2003-12-31-23-59-50    5.8\n"
                                 "Skipped lines of the kind \"C \": 1\n"
                                 "Skipped lines of the kind \"M \": 1\n"
                                 "Skipped lines of the kind \"P \": 1\n"
                                 "Skipped lines of the kind \"XX\": 2\n"));
  EXPECT_THAT(runExample(folder, "read_edr").out, HasSubstr("Latitude:  -17.520N"))
      << "without a file, of the made report";
}

}  // namespace
