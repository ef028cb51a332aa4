#include "krosac/platform/Resources.h"

#include <cstdlib>

#include "CapturedLog.h"
#include "TemporaryFolder.h"

namespace krosac {
namespace {

TEST(ResourcesTest, TheNamedFolderComesFirstAndThePlacesTriedAreNamedOnce) {
  const TemporaryFolder folder;
  CapturedLog log;
  ::unsetenv("KROSAC_DATA");
  EXPECT_FALSE(pathForResource("iasp91_none", "txt") || pathForResource("iasp91_none", "txt"));
  ASSERT_EQ(log.texts.size(), 1u);
  EXPECT_NE(log.texts[0].find("/share/krosac/data/iasp91_none.txt"), std::string::npos);
  ::setenv("KROSAC_DATA", folder.path().c_str(), 1);
  EXPECT_TRUE(pathForResource("iasp91_p", "txt")) << "of the next place";
  const std::string file = folder.write("iasp91_p.txt", "1\n");
  EXPECT_EQ(pathForResource("iasp91_p", "txt"), file);
  ::unsetenv("KROSAC_DATA");
}

}  // namespace
}  // namespace krosac
