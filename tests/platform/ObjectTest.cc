#include "krosac/platform/Object.h"

#include "CapturedLog.h"

namespace krosac {
namespace {

int living = 0;

class Counted : public Object {
 public:
  Counted() { ++living; }
  // An initialiser that autoreleases its object.
  Counted* Init() {
    autoreleaseReceiver();
    return this;
  }
  Ref<Counted> initialisedAtTheEnd;

 protected:
  ~Counted() override {
    --living;
    if (initialisedAtTheEnd) initialisedAtTheEnd->Init();
  }
};

TEST(ObjectTest, CountsReferencesInCopiesMovesAndAssignments) {
  Ref<Counted> a = make<Counted>(), b = a;
  Ref<Object> base;
  base = b;
  const Ref<Counted> moved = std::move(b);
  a = *&a;
  ASSERT_TRUE(a && !b && a == base);
  EXPECT_EQ(a->retainCount(), 3);
  a = nullptr;
  base = nullptr;
  EXPECT_EQ(moved->retainCount() + living, 2);
}

TEST(ObjectTest, APoolReleasesAtTheEndOfItsScope) {
  Ref<Counted> kept, adopted = make<Counted>();
  {
    AutoreleasePool pool;
    kept = alloc<Counted>()->Init();
    {
      AutoreleasePool inner;
      alloc<Counted>()->Init()->initialisedAtTheEnd = make<Counted>();
    }
    EXPECT_EQ(living, 2) << "a pool also releases what its own releases autorelease";
    adopted->Init();
    EXPECT_TRUE(kept->retainCount() == 2 && adopted->retainCount() == 2);
  }
  EXPECT_TRUE(kept->retainCount() == 1 && adopted->retainCount() == 1);
}

TEST(ObjectTest, WithoutAPoolTheReferenceIsKeptAndLoggedOnce) {
  CapturedLog log;
  const auto object = make<Counted>();
  object->Init()->Init();
  EXPECT_TRUE(object->retainCount() == 3 && log.texts.size() == 1);
  object->release();
  object->release();
}

}  // namespace
}  // namespace krosac
