// Threads that work on separate objects get the results of a single thread. The state that the
// library shares between threads is used here too.
#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <barrier>
#include <thread>

#include "robustness/ReferenceBits.h"
#include "seismogram/Traces.h"

namespace krosac {
namespace {

constexpr int kThreads = 4;

// Runs an action in several threads that start together; the argument is the thread's number.
template <typename Action>
void inThreads(Action action) {
  std::barrier start(kThreads);
  std::vector<std::jthread> threads;
  for (int k = 0; k < kThreads; ++k) {
    threads.emplace_back([&, k] {
      start.arrive_and_wait();
      action(k);
    });
  }
}

TEST(Threads, SeparateObjectsHaveTheResultsOfOneThread) {
  std::atomic<int> texts = 0;
  setLogSink([&](const std::string&) { ++texts; });
  std::string results[kThreads];
  inThreads([&](int k) { results[k] = reference::bits(); });
  const std::string alone = reference::bits();
  setLogSink(nullptr);
  for (const std::string& result : results) EXPECT_EQ(result, alone);
  EXPECT_GE(texts, kThreads + 1);
  EXPECT_NE(alone.find("files"), std::string::npos);
}

TEST(Threads, ManyThreadsMayHoldReferencesToOneObject) {
  const auto shared = traceOf(Samples(10));
  inThreads([&](int) {
    AutoreleasePool pool;
    for (int k = 0; k < 100000; ++k) {
      const Ref<S> mine = shared;
      mine->retain();
      mine->autorelease();
    }
  });
  EXPECT_EQ(shared->retainCount(), 1);
}

TEST(Threads, TheCounterOfPointsWithoutARegionReturnsEachNumberOnce) {
  constexpr int kCalls = 200000;
  std::vector<std::int32_t> numbers(kThreads * kCalls);
  inThreads([&](int thread) {
    for (int k = 0; k < kCalls; ++k)
      fe_lookup(95.0f, 0.0f, &numbers[static_cast<std::size_t>(thread * kCalls + k)], nullptr);
  });
  std::ranges::sort(numbers);
  EXPECT_EQ(std::ranges::adjacent_find(numbers), numbers.end());
}

}  // namespace
}  // namespace krosac
