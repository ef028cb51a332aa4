// Threads that each work on objects of their own get the same results as one alone. What the
// library shares between them by design is touched here too.
#include <gtest/gtest.h>

#include <barrier>
#include <cstring>
#include <mutex>
#include <set>
#include <thread>

#include "TemporaryFolder.h"
#include "krosac/krosac.h"
#include "seismogram/Traces.h"

namespace krosac {
namespace {

constexpr int kThreads = 4;

// Runs an action in several threads that begin together, each with its number.
template <typename Action>
void inThreads(Action action) {
  std::barrier start(kThreads);
  std::vector<std::thread> threads;
  for (int k = 0; k < kThreads; ++k) {
    threads.emplace_back([&, k] {
      start.arrive_and_wait();
      action(k);
    });
  }
  for (std::thread& thread : threads) thread.join();
}

std::string seismogramWork(const std::string& path) {
  AutoreleasePool pool;
  auto* s = alloc<S>();
  if (!s->InitWithPath(path)) return "not loaded";
  s->RemoveMean();
  s->LPBUfilter_NPasses_NPoles(0.2f, 2, 4);
  s->Decimate(2);
  s->RGaussianFilter(2.0f);
  s->Envelope();
  s->ConvolveInstrument(1);
  s->markJBTimesAndSlowness();
  s->shiftTimesBy(12.5f);
  const auto copy = s->copyWithZone(), archived = archivedCopy(*s);
  copy->correlateWith(*archived);
  archived->setPath(path + ".out");
  if (!archived->save() || !copy->loadFromPath(path + ".out")) return "not saved";
  return imageOf(*copy) + s->hypoPickString() + s->flinnEngdahlString().value_or("none");
}

std::string numericWork() {
  Samples x(1 << 14);
  for (std::size_t i = 0; i < x.size(); ++i) x[i] = static_cast<float>(i * 7919 % 1009);
  realft(x.data() - 1, x.size(), 1);
  GRHPBUfilter(x.data(), 1000, 2, 4, 1.0f, 0.1f);
  std::string result = bytesOf(vmean(x.data(), 1 << 14));
  QuasiRandomContext context{};
  QuasiRandomInitialize(&context, 3);
  for (int k = 0; k < 100; ++k) QuasiRandomNumber(&context, x.data());
  QuasiRandomRelease(&context);
  const auto source = make<Dislocation>();
  source->initWithSDR(30, 60, 90);
  return result + bytesOf(x[0]) + bytesOf(source->GetAuxStrike());
}

std::string tableWork() {
  const auto jb = make<JBTableObject>();
  const auto iasp = make<TTTableObject>();
  const auto nmo = make<PsNMOTableObject>();
  jb->init();
  iasp->init();
  nmo->init();
  return bytesOf(jb->GetJBPhase_GCARC_Depth("PcP", 40.5f, 33.0f)) +
         bytesOf(iasp->GetTTPhase_GCARC_Depth("PKPdf", 150.0f, 33.0f)) +
         bytesOf(nmo->bilinearTimeFromDepth_SrcDepth_Gcarc(410.0f, 33.0f, 60.0f));
}

std::string textWork() {
  const auto time = make<SeisTimeObject>();
  time->initWithValues_month_date_hour_minute_second_millisecond(2011, 12, 31, 23, 59, 59, 999);
  time->addSeconds(1.5f);
  const std::string text = time->YMDcString();
  log("%s %f", text.c_str(), 0.5);
  pathForResource("absent", "txt");  // the first to miss one says so, once
  ProcessCommand command;
  command.program = "/bin/echo";
  command.arguments = {text};
  command.capturesOutput = true;
  return text + Date::fromComponents({2012, 2, 30, 0, 0, 0}).description() +
         runProcess(command).output;
}

TEST(Threads, OwnObjectsGiveTheResultsOfOneThread) {
  const TemporaryFolder folder;
  std::mutex logged;
  std::size_t texts = 0;
  setLogSink([&](const std::string&) {
    const std::lock_guard lock(logged);
    ++texts;
  });
  Samples noise(5000);
  for (std::size_t i = 0; i < noise.size(); ++i) noise[i] = static_cast<float>(i * 7919 % 1009);
  const auto work = [&](int k) {
    // The native and the foreign file give the same trace.
    const std::string image = sacImage(noise), name = "same" + std::to_string(k);
    std::filesystem::create_directory(folder.path(name));
    const std::string path = folder.write(name + "/a.sac", k % 2 ? foreign(image) : image);
    std::string result;
    for (int round = 0; round < 3; ++round)
      result += seismogramWork(path) + numericWork() + tableWork() + textWork();
    return result;
  };
  std::string results[kThreads];
  inThreads([&](int k) { results[k] = work(k); });
  const std::string alone = work(kThreads);
  setLogSink(nullptr);
  for (const std::string& result : results) EXPECT_TRUE(result == alone);
  EXPECT_GE(texts, 3u * (kThreads + 1));
  EXPECT_EQ(alone.find("not "), std::string::npos);
}

TEST(Threads, AnObjectMayBeHeldByManyThreads) {
  const auto shared = traceOf(Samples(10));
  inThreads([&](int) {
    AutoreleasePool pool;
    for (int k = 0; k < 1000; ++k) {
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
  const auto set = [](const char* name, float value) { setfhv_(name, &value, nullptr, 4); };
  newhdr_();
  const std::int32_t npts = 100;
  setnhv_("NPTS", &npts, nullptr, 4);
  inThreads([&](int thread) {
    const std::string path = folder.path(std::to_string(thread));
    for (int k = 0; k < 300; ++k) {
      set("EVLA", static_cast<float>(1 + thread));
      float latitude = 0.0f;
      getfhv_("EVLA", &latitude, nullptr, 4);
      EXPECT_TRUE(latitude >= 1.0f && latitude <= kThreads) << latitude;
      std::int32_t error = 7;
      wsac0_(path.c_str(), nullptr, y.data(), &error, static_cast<int>(path.size()));
      EXPECT_EQ(error, 0);
    }
  });
  for (int thread = 0; thread < kThreads; ++thread)
    EXPECT_EQ(folder.read(std::to_string(thread)).size(), 632u + 4 * 100);
}
#endif

}  // namespace
}  // namespace krosac
