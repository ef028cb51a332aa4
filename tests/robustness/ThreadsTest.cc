// Threads that each work on objects of their own get the same results as one alone. What the
// library shares between them by design is touched here too.
#include <gtest/gtest.h>

#include <barrier>
#include <set>
#include <thread>

#include "TemporaryFolder.h"
#include "krosac/krosac.h"
#include "robustness/ReferenceBits.h"
#include "seismogram/Traces.h"

namespace krosac {
namespace {

constexpr int kThreads = 4;

// Runs an action in several threads that begin together, each with its number.
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

// What is not among the reference results: files, pools, the log, resources, processes.
std::string workWithFiles(const std::string& path) {
  AutoreleasePool pool;
  auto* s = alloc<S>();
  if (!s->InitWithPath(path)) return "not loaded";
  s->setPath(path + ".out");
  if (!s->save() || !s->loadFromPath(path + ".out")) return "not saved";
  log("%s %f", s->hypoPickString().c_str(), 0.5);
  pathForResource("absent", "txt");  // the first to miss one says so, once
  ProcessCommand command;
  command.program = "/bin/echo";
  command.arguments = {s->flinnEngdahlString().value_or("none")};
  command.capturesOutput = true;
  return imageOf(*s) + runProcess(command).output;
}

TEST(Threads, OwnObjectsGiveTheResultsOfOneThread) {
  const TemporaryFolder folder;
  std::atomic<int> texts = 0;
  setLogSink([&](const std::string&) { ++texts; });
  const auto work = [&](int k) {
    // The native and the foreign file give the same trace.
    const std::string image = sacImage(reference::noise(5000)), name = std::to_string(k);
    const std::string path = folder.write(name, k % 2 ? foreign(image) : image);
    std::string result = reference::bits();
    for (int round = 0; round < 3; ++round) result += workWithFiles(path);
    return result;
  };
  std::string results[kThreads];
  inThreads([&](int k) { results[k] = work(k); });
  const std::string alone = work(kThreads);
  setLogSink(nullptr);
  for (const std::string& result : results) EXPECT_TRUE(result == alone);
  EXPECT_GE(texts, 3 * (kThreads + 1));
  EXPECT_EQ(alone.find("not "), std::string::npos);
}

TEST(Threads, AnObjectMayBeHeldByManyThreads) {
  const auto shared = traceOf(Samples(10));
  inThreads([&](int) {
    AutoreleasePool pool;
    for (int k = 0; k < 20000; ++k) {
      const Ref<S> mine = shared;
      mine->retain();
      mine->autorelease();
    }
  });
  EXPECT_EQ(shared->retainCount(), 1);
}

TEST(Threads, TheCounterOfPointsInNoRegionGivesEachNumberOnce) {
  constexpr int kCalls = 1000;
  std::vector<std::int32_t> numbers(kThreads * kCalls);
  inThreads([&](int thread) {
    for (int k = 0; k < kCalls; ++k)
      fe_lookup(95.0f, 0.0f, &numbers[static_cast<std::size_t>(thread * kCalls + k)], nullptr);
  });
  EXPECT_EQ(std::set(numbers.begin(), numbers.end()).size(), numbers.size());
}

#ifndef __SANITIZE_THREAD__  // ghdr is for one thread at a time: this is what breaking that costs
TEST(Threads, AHeaderThatThreadsFightOverHoldsOnlyWhatTheyWrote) {
  const TemporaryFolder folder;
  const Samples y(100, 1.0f);
  newhdr_();
  ghdr.NPTS = 100;
  inThreads([&](int thread) {
    const std::string path = folder.path(std::to_string(thread));
    const auto mine = static_cast<float>(1 + thread);
    for (int k = 0; k < 300; ++k) {
      float latitude = 0.0f;
      setfhv_("EVLA", &mine, nullptr, 4);
      getfhv_("EVLA", &latitude, nullptr, 4);
      EXPECT_TRUE(latitude >= 1.0f && latitude <= kThreads) << latitude;
      std::int32_t error = 7;
      wsac0_(path.c_str(), nullptr, y.data(), &error, static_cast<int>(path.size()));
      EXPECT_EQ(error, 0);
    }
    EXPECT_EQ(std::filesystem::file_size(path), 632u + 4 * 100);
  });
}
#endif

}  // namespace
}  // namespace krosac
