#include "krosac/collections/SeismogramGroups.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

#include "seismogram/Traces.h"

namespace krosac {
namespace {

using Traces = std::vector<Ref<SacObject>>;

Ref<SeisTimeObject> time(int day, int hour, int second) {
  return make<SeisTimeObject>()->initWithValues_month_date_hour_minute_second_millisecond(
      2011, 1, day, hour, 0, second, 0.0);
}

Ref<SacObject> headerOnly(float b, float e) {
  auto s = traceOf({}, 1, b);
  s->setEndTime(e);
  return s;
}

TEST(SeismogramGroups, RemovesTheMeanOfAllSamples) {
  const Traces list = {traceOf({1}), nullptr, traceOf({3, 3, 3}), traceOf({})};
  saRemoveCollectiveMean(list);
  EXPECT_EQ(list[0]->GetSacSeis()[0], -1.5f);
  EXPECT_EQ(list[2]->GetSacSeis()[2], 0.5f);
  EXPECT_EQ(list[2]->smean(), -12345.0f);
  EXPECT_FALSE(list[2]->mSeisHasChanged());
  // A float sum would lose every 1 beside 2^25.
  const Traces uneven = {traceOf({33554432}), traceOf(Samples(1023, 1.0f))};
  saRemoveCollectiveMean(uneven);
  EXPECT_EQ(uneven[1]->GetSacSeis()[0], static_cast<float>(1.0 - (33554432.0 + 1023.0) / 1024.0));
  saRemoveCollectiveMean({traceOf({})});
}

TEST(SeismogramGroups, SharesTheReferenceTimeThatComesOutOfTheWalk) {
  const std::vector<std::pair<std::vector<Ref<SeisTimeObject>>, Ref<SeisTimeObject>>> cases = {
      {{time(5, 3, 20), time(5, 3, 10), time(5, 3, 40)}, time(5, 3, 10)},
      // Earlier, yet not less: its second is greater.
      {{time(5, 3, 20), time(5, 2, 40)}, time(5, 3, 20)},
      {{nullptr, time(5, 3, 20), time(5, 3, 0)}, time(5, 3, 0)},
  };
  for (const auto& [times, common] : cases) {
    Traces list;
    for (const auto& t : times) {
      list.push_back(traceOf({1, 2}, 1, 100));
      if (t) list.back()->replaceReferenceTimeWith(t->copyWithZone());
    }
    saSynchSacObjects(list);
    for (std::size_t i = 0; i < list.size(); ++i) {
      const float shift = times[i] ? times[i]->differenceInSecondsFrom(*common) : 0.0f;
      EXPECT_EQ(list[i]->b(), 100.0f + shift) << i;
      EXPECT_TRUE(!times[i] || list[i]->mySeisReferenceTime()->equalToSeisTime(*common)) << i;
    }
  }
  Traces alone = {traceOf({1}), nullptr};
  saSynchSacObjects(alone);
  EXPECT_FALSE(alone.at(0)->mSeisHasChanged()) << "one seismogram is left alone";
}

// The rules as they are told: a walk, a look at every other still there, removal at once.
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

TEST(SeismogramGroups, RemoveWhatThePlainWalkRemoves) {
  std::mt19937 random(7);
  const std::vector<float> times = {-INFINITY, -0.0f, 0, 1, 2, 3, 4, 5, 6, 7, NAN, INFINITY};
  const auto pick = [&](const std::vector<float>& from) { return from[random() % from.size()]; };
  for (int round = 0; round < 300; ++round) {
    Traces list;
    for (int i = 0; i < round % 40; ++i) {
      list.push_back(headerOnly(pick(times), pick(times)));
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

  // The ends are compared after all reference times are one.
  Traces moved = {headerOnly(0.0f, 2.0f), headerOnly(0.0f, 1.0f)};
  moved[0]->replaceReferenceTimeWith(time(5, 3, 10));
  moved[1]->replaceReferenceTimeWith(time(5, 3, 13));
  saRemoveOverlaps(moved);
  EXPECT_EQ(moved.size(), 2u);
}

}  // namespace
}  // namespace krosac
