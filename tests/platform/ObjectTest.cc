#include "krosac/platform/Object.h"

#include <gtest/gtest.h>

#include <vector>

#include "CapturedLog.h"

namespace krosac {
namespace {

int living = 0;

class Counted : public Object {
 public:
  Counted() { ++living; }
  // An initialiser that autoreleases its receiver.
  bool Init() {
    autoreleaseReceiver();
    return true;
  }
  Ref<Counted> partner;
  bool autoreleasesPartner = false;

 protected:
  ~Counted() override {
    --living;
    if (autoreleasesPartner) {
      partner->retain();
      partner->autorelease();
    }
  }
};

TEST(ObjectTest, ReferencesAreCountedThroughCopiesMovesAndAssignments) {
  {
    Ref<Counted> a = make<Counted>(), b;
    EXPECT_EQ(a->retainCount(), 1);
    b = a;
    Ref<Object> base = a;
    EXPECT_EQ(a->retainCount(), 3);
    Ref<Counted> moved = std::move(b);
    EXPECT_FALSE(b);
    EXPECT_EQ(a->retainCount(), 3);
    moved = moved;
    EXPECT_EQ(a->retainCount(), 3);
    moved = nullptr;
    base = nullptr;
    EXPECT_EQ(a->retainCount(), 1);
    std::vector<Ref<Counted>> many(100, a);
    EXPECT_EQ(a->retainCount(), 101);
  }
  EXPECT_EQ(living, 0);
}

TEST(ObjectTest, APoolDropsWhatIsAutoreleasedInItsScope) {
  Ref<Counted> kept;
  {
    AutoreleasePool pool;
    Counted* raw = alloc<Counted>();
    raw->Init();
    kept = raw;
    alloc<Counted>()->Init();
    {
      AutoreleasePool inner;
      alloc<Counted>()->Init();
      EXPECT_EQ(living, 3);
    }
    EXPECT_EQ(living, 2) << "the inner pool keeps nothing for the outer one";
    EXPECT_EQ(kept->retainCount(), 2);
  }
  EXPECT_EQ(living, 1);
  EXPECT_EQ(kept->retainCount(), 1);
  kept = nullptr;
  EXPECT_EQ(living, 0);
}

TEST(ObjectTest, AnAdoptedObjectSurvivesAnAutoreleasingInitialiser) {
  Ref<Counted> adopted = make<Counted>();
  {
    AutoreleasePool pool;
    adopted->Init();
  }
  EXPECT_EQ(adopted->retainCount(), 1);
}

TEST(ObjectTest, APoolAlsoDropsWhatItsReleasesAutorelease) {
  {
    AutoreleasePool pool;
    Counted* first = alloc<Counted>();
    first->partner = make<Counted>();
    first->autoreleasesPartner = true;
    first->autorelease();
  }
  EXPECT_EQ(living, 0);
}

TEST(ObjectTest, WithoutAPoolTheReferenceIsKeptAndTheLogSaysSoOnce) {
  CapturedLog log;
  Counted* raw = alloc<Counted>();
  raw->Init();
  raw->retain();
  raw->autorelease();
  EXPECT_EQ(raw->retainCount(), 2);
  EXPECT_EQ(log.texts.size(), 1u);
  raw->release();
  raw->release();
  EXPECT_EQ(living, 0);
}

}  // namespace
}  // namespace krosac
