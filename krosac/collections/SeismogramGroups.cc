#include "krosac/collections/SeismogramGroups.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <new>
#include <tuple>

#include "krosac/seismogram/internal/SacObjectAccess.h"

namespace krosac {
namespace {

using Traces = std::vector<Ref<SacObject>>;

constexpr int kKeptKey = 9;

struct TimeSpan {
  float b, e;
  std::size_t index;
};

void dropEmpty(Traces& list) {
  std::erase_if(list, [](const auto& s) { return !s; });
}

// What the removal from a list needs. It allocates before the list changes.
struct Removal {
  explicit Removal(const Traces& list) : isMarked(list.size()) { spans.reserve(list.size()); }

  // Takes the time spans without NaN. A span with NaN equals no other and lies within none.
  void takeSpans(const Traces& list) {
    for (std::size_t i = 0; i < list.size(); ++i) {
      const float b = list[i]->b(), e = list[i]->e();
      if (!std::isnan(b) && !std::isnan(e)) spans.push_back({b, e, i});
    }
  }

  void removeMarked(Traces& list) const {
    std::size_t kept = 0;
    for (std::size_t i = 0; i < list.size(); ++i) {
      if (!isMarked[i]) std::swap(list[kept++], list[i]);
    }
    list.resize(kept);
  }

  std::vector<TimeSpan> spans;
  std::vector<bool> isMarked;
};

// The times that synchronising a list needs.
struct SyncTimes {
  SyncTimes() {
    if (!common || !scratch) throw std::bad_alloc();
  }
  Ref<SeisTimeObject> common = make<SeisTimeObject>(), scratch = make<SeisTimeObject>();
};

void synchronise(const Traces& list, const SyncTimes& times) {
  Ref<SeisTimeObject> earliest;
  for (const auto& s : list) {
    const auto& time = s->mySeisReferenceTime();
    // The comparison is field by field, so this need not find the minimum; this is intended.
    if (time && (!earliest || time->lessThanSeisTime(*earliest))) earliest = time;
  }
  if (!earliest) return;
  times.common->initWithTimeObject(*earliest);
  for (const auto& s : list) moveReferenceTime(*s, *times.common, *times.scratch);
}

void sortByBegin(Traces& list) {
  const auto precedes = [](float x, float y) { return std::isnan(y) ? !std::isnan(x) : x < y; };
  std::ranges::stable_sort(list, precedes, [](const auto& s) { return s->b(); });
}

}  // namespace

void saRemoveCollectiveMean(const Traces& list) {
  double sum = 0.0;
  std::size_t count = 0;
  for (const auto& s : list) {
    if (!s) continue;
    for (const float sample : samplesOf(*s)) sum += sample;
    count += samplesOf(*s).size();
  }
  if (count == 0) return;
  const double mean = sum / static_cast<double>(count);
  for (const auto& s : list) {
    if (!s) continue;
    for (float& sample : samplesOf(*s)) sample = static_cast<float>(sample - mean);
  }
}

int saSynchSacObjects(Traces& list) try {
  clearReason();
  const SyncTimes times;
  dropEmpty(list);
  if (list.size() >= 2) synchronise(list, times);
  return 0;
} catch (const std::bad_alloc&) {
  setMemoryReason();
  return 0;
}

// The rule walks from the last seismogram to the first and removes each that lies within one still
// in the list. Containment is transitive, so this removes every seismogram within another and keeps
// the first of equal ones.
int saRemoveOverlaps(Traces& list) try {
  clearReason();
  const SyncTimes times;
  Removal removal(list);
  dropEmpty(list);
  if (list.size() < 2) return 0;
  synchronise(list, times);
  removal.takeSpans(list);
  auto& [spans, isInside] = removal;
  // In this order no span lies within a later one.
  std::ranges::sort(spans, {}, [](const TimeSpan& s) { return std::tuple(s.b, -s.e, s.index); });
  const TimeSpan* longest = nullptr;
  for (const TimeSpan& span : spans) {
    if (longest && longest->e >= span.e) {
      isInside[span.index] = true;
    } else {
      longest = &span;
    }
  }
  removal.removeMarked(list);
  return 0;
} catch (const std::bad_alloc&) {
  setMemoryReason();
  return 0;
}

// The rule walks from the first seismogram to the last and removes each that has an equal one still
// in the list, except those with a negative USER9.
int saMergeSacSeisInArray(Traces& list) try {
  clearReason();
  Removal removal(list);
  dropEmpty(list);
  sortByBegin(list);
  removal.takeSpans(list);
  auto& [spans, isDuplicate] = removal;
  std::ranges::sort(spans, {}, [](const TimeSpan& s) { return std::tuple(s.b, s.e, s.index); });
  const auto isKept = [&](const TimeSpan& s) { return list[s.index]->userValue(kKeptKey) < 0.0f; };
  for (auto first = spans.begin(); first != spans.end();) {
    const auto end = std::find_if(
        first, spans.end(), [&](const TimeSpan& s) { return s.b != first->b || s.e != first->e; });
    auto removableEnd = std::any_of(first, end, isKept) ? end : end - 1;
    for (auto s = first; s != removableEnd; ++s) isDuplicate[s->index] = !isKept(*s);
    first = end;
  }
  removal.removeMarked(list);
  return 0;
} catch (const std::bad_alloc&) {
  setMemoryReason();
  return 0;
}

}  // namespace krosac
