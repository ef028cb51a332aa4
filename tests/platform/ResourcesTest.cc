#include "krosac/platform/Resources.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>

#include "CapturedLog.h"
#include "TemporaryFolder.h"

namespace krosac {
namespace {

TEST(ResourcesTest, TheNamedFolderComesFirstAndThePlacesTriedAreNamedOnce) {
  TemporaryFolder folder;
  CapturedLog log;
  const std::string file = folder.write("krosac-test.txt", "1\n");
  ::unsetenv("KROSAC_DATA");
  EXPECT_FALSE(pathForResource("krosac-test", "txt"));
  EXPECT_FALSE(pathForResource("krosac-test", "txt"));
  ASSERT_EQ(log.texts.size(), 1u);
  EXPECT_NE(log.texts[0].find("/share/krosac/data/krosac-test.txt"), std::string::npos)
      << log.texts[0];
  ::setenv("KROSAC_DATA", folder.path().c_str(), 1);
  const auto found = pathForResource("krosac-test", "txt");
  ::unsetenv("KROSAC_DATA");
  ASSERT_TRUE(found);
  EXPECT_TRUE(std::filesystem::equivalent(*found, file));
}

}  // namespace
}  // namespace krosac
