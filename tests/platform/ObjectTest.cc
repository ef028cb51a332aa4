#include "krosac/platform/Object.h"

#include "CapturedLog.h"

namespace krosac {
namespace {

int living = 0;

class Counted : public Object {
 public:
  Counted() { ++living; }
  // An initialiser that autoreleases its receiver.
  Counted* Init() {
    autoreleaseReceiver();
    return this;
  }
  Ref<Counted> autoreleasedAtTheEnd;

 protected:
  ~Counted() override {
    --living;
    if (!autoreleasedAtTheEnd) return;
    autoreleasedAtTheEnd->retain();
    autoreleasedAtTheEnd->autorelease();
  }
};

TEST(ObjectTest, ReferencesAreCountedThroughCopiesMovesAndAssignments) {
  {
    Ref<Counted> a = make<Counted>(), b;
    EXPECT_EQ(a->retainCount(), 1);
    b = a;
    Ref<Object> base = a;
    Ref<Counted> moved = std::move(b);
    const Ref<Counted>& same = moved;
    moved = same;
    EXPECT_TRUE(!b && a->retainCount() == 3);
    moved = nullptr;
    base = nullptr;
    const std::vector<Ref<Counted>> many(100, a);
    EXPECT_EQ(a->retainCount(), 101);
  }
  EXPECT_EQ(living, 0);
}

TEST(ObjectTest, APoolDropsWhatIsAutoreleasedInItsScope) {
  Ref<Counted> kept, adopted = make<Counted>();
  {
    AutoreleasePool pool;
    kept = alloc<Counted>()->Init();
    alloc<Counted>()->Init()->autoreleasedAtTheEnd = make<Counted>();
    {
      AutoreleasePool inner;
      alloc<Counted>()->Init();
      EXPECT_EQ(living, 5);
    }
    EXPECT_EQ(living, 4) << "the inner pool keeps nothing for the outer one";
    adopted->Init();
    EXPECT_EQ(kept->retainCount() + adopted->retainCount(), 4);
  }
  EXPECT_EQ(living, 2) << "the end of a pool also drops what the releases autorelease";
  EXPECT_EQ(kept->retainCount() + adopted->retainCount(), 2);
  kept = adopted = nullptr;
  EXPECT_EQ(living, 0);
}

TEST(ObjectTest, WithoutAPoolTheReferenceIsKeptAndTheLogSaysSoOnce) {
  CapturedLog log;
  Counted* raw = alloc<Counted>()->Init();
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
