#include "krosac/catalog/kroSeismicOrigin.h"

#include <gtest/gtest.h>

#include "ArchivedKeys.h"

namespace krosac {
namespace {

TEST(SeismicOrigin, ItsDateFollowsItsEpochTimeAlsoOutOfAnArchive) {
  const auto origin = newRecord<kroSeismicOrigin>();
  EXPECT_FALSE(origin->originDateTime());
  EXPECT_EQ(origin->location()->latitude(), kUnsetLocation);
  origin->setEpochtime(0.0);
  EXPECT_EQ(origin->originDateTime()->description(), "1970-01-01 00:00:00 +0000");

  origin->setEpochtime(1299822383.25);
  origin->location()->setDepth(29.0f);
  expectKeys(*origin, "location originDateTime epochtime kroSeismicOrigin latitude");
  EXPECT_FALSE(expectCopied(origin)->location() == origin->location());
  origin->setOriginDateTime(Date{7.0});
  EXPECT_EQ(origin->epochtime(), 1299822383.25);
  EXPECT_EQ(origin->copyWithZone()->originDateTime(), Date{1299822383.25});
}

}  // namespace
}  // namespace krosac
