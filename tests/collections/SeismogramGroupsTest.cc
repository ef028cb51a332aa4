#include "krosac/collections/SeismogramGroups.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

#include "seismogram/Traces.h"

namespace krosac {
namespace {

using Traces = std::vector<Ref<SacObject>>;

// A trace from b to e (s) after a reference time at this hour and second; none for hour 0.
Ref<SacObject> traceAt(float b, float e, int hour = 0, int second = 0) {
  auto s = traceOf({}, 1, b);
  s->setEndTime(e);
  const auto time = make<SeisTimeObject>();
  time->initWithValues_month_date_hour_minute_second_millisecond(2011, 1, 5, hour, 0, second, 0.0);
  if (hour) s->replaceReferenceTimeWith(time);
  return s;
}

TEST(SeismogramGroups, RemoveTheMeanOfAllSamples) {
  // A sum in single precision would lose every 1 added to 2^25.
  const Traces list = {traceOf({33554432}), nullptr, traceOf(Samples(1023, 1.0f)), traceOf({})};
  saRemoveCollectiveMean(list);
  EXPECT_EQ(list[2]->GetSacSeis()[9], static_cast<float>(1.0 - (33554432.0 + 1023.0) / 1024.0));
  EXPECT_TRUE(list[2]->smean() == -12345.0f && !list[2]->mSeisHasChanged()) << "nothing else";
}

TEST(SeismogramGroups, ShareTheReferenceTimeOfTheWalk) {
  const std::pair<Traces, Samples> cases[] = {
      {{traceAt(100, 0, 3, 20), traceAt(100, 0, 3, 10), traceAt(100, 0, 3, 40)}, {110, 100, 130}},
      // Earlier but not less, because its second is greater.
      {{traceAt(100, 0, 3, 20), traceAt(100, 0, 2, 40)}, {100, 100 - 3580}},
      {{traceAt(100, 0), nullptr, traceAt(100, 0, 3, 20), traceAt(100, 0, 3, 0)}, {100, 120, 100}}};
  for (auto [list, begins] : cases) {
    saSynchSacObjects(list);
    Samples found;
    for (const auto& s : list) found.push_back(s->b());
    EXPECT_EQ(found, begins);
    EXPECT_TRUE(
        list[1]->mySeisReferenceTime()->equalToSeisTime(*list.back()->mySeisReferenceTime()));
  }
  // The ends are compared after all traces share one reference time.
  Traces moved = {traceAt(0, 2, 3, 10), traceAt(0, 1, 3, 13)};
  saRemoveOverlaps(moved);
  EXPECT_EQ(moved.size(), 2u);
}

// The rules as stated: walk the list, compare with all that remain, remove at once.
Traces overlapsRemovedSlowly(Traces list) {
  for (auto c = list.end(); c != list.begin();) {
    --c;
    if (std::ranges::any_of(list, [&](const auto& o) {
          return o != *c && o->e() >= (*c)->e() && (*c)->b() >= o->b();
        }))
      c = list.erase(c);
  }
  return list;
}

Traces mergedSlowly(Traces list) {
  for (auto c = list.begin(); c != list.end();) {
    const bool isTwin = std::ranges::any_of(
        list, [&](const auto& o) { return o != *c && o->b() == (*c)->b() && o->e() == (*c)->e(); });
    c = isTwin && !((*c)->userValue(9) < 0.0f) ? list.erase(c) : c + 1;
  }
  return list;
}

TEST(SeismogramGroups, RemoveTheSameAsThePlainWalk) {
  std::mt19937 random(7);
  const Samples times = {-INFINITY, -0.0f, 0, 1, 2, 3, 4, 5, 6, 7, NAN, INFINITY};
  const auto pick = [&](const Samples& from) { return from[random() % from.size()]; };
  for (int round = 0; round < 300; ++round) {
    Traces list;
    for (int i = 0; i < round % 40; ++i) {
      list.push_back(traceAt(pick(times), pick(times)));
      list.back()->setUserValueKey_Value(9, pick({-12345.0f, -0.0f, 0.0f, 1.0f, 2.0f, NAN}));
    }
    Traces sparse = list, merged = list;
    sparse.push_back(nullptr);
    merged.push_back(nullptr);
    saRemoveOverlaps(sparse);
    ASSERT_EQ(sparse, overlapsRemovedSlowly(list)) << round;
    std::ranges::stable_sort(list, [](const auto& x, const auto& y) {
      return std::isnan(y->b()) ? !std::isnan(x->b()) : x->b() < y->b();
    });
    saMergeSacSeisInArray(merged);
    ASSERT_EQ(merged, mergedSlowly(list)) << round;
  }
}

}  // namespace
}  // namespace krosac
