// Groups and pairs of seismograms, and the synthetics of external programs, when memory runs out.
#include <filesystem>
#include <set>

#include "TemporaryFolder.h"
#include "robustness/FailingAllocator.h"
#include "seismogram/Traces.h"

namespace krosac {
namespace {

namespace fs = std::filesystem;
using Traces = std::vector<Ref<S>>;

std::string allOf(const Traces& list) {
  std::string all;
  for (const auto& s : list) all += s ? archivedState(*s) : "none";
  return all;
}

// Two equal traces and one within them, in reverse order of B, at different reference times.
Traces traces() {
  Traces list = {traceOf(Samples(10, 3.0f), 1.0f, 2.0f), traceOf(Samples(20, 2.0f)),
                 traceOf(Samples(20, 1.0f)), nullptr};
  for (std::size_t i = 0; i < 3; ++i) {
    list[i]->setUserValueKey_Value(9, 1.0f);
    list[i]->setReferenceTimeWithNSDate(Date{1e9 + static_cast<double>(i)});
  }
  return list;
}

// The group's folder is entered, and the log is taken.
struct FailingAllocatorGroups : testing::Test {
  FailingAllocatorGroups() { testing::internal::CaptureStderr(); }
  ~FailingAllocatorGroups() override {
    testing::internal::GetCapturedStderr();
    fs::current_path(before);
  }

  const fs::path before = fs::current_path();
  const TemporaryFolder folder;
};

TEST_F(FailingAllocatorGroups, ChangeWhollyOrNotAtAll) {
  const std::pair<const char*, std::function<double(Traces&)>> operations[] = {
      {"saSynchSacObjects", saSynchSacObjects},
      {"saRemoveOverlaps", saRemoveOverlaps},
      {"saMergeSacSeisInArray", saMergeSacSeisInArray},
      {"GetOptimalShift", [](Traces& list) { return list[0]->GetOptimalShift(*list[1]).second; }},
  };
  for (const auto& [name, operation] : operations) {
    const auto run = [&](Traces& list) { return std::to_string(operation(list)); };
    expectSafe<Traces>(name, {traces, run, allOf});
  }
}

TEST_F(FailingAllocatorGroups, NeedNoMemoryForRotationsMisfitsAndMeans) {
  const Traces list = traces();
  std::int32_t shift = 3;
  float misfit;
  allocationsUntilFailure = 1;
  RotateSeismograms(*list[1], *list[2]);
  RotateSeismogramsByAngle(*list[1], *list[2], 30.0f);
  L2SacFracMisfit(*list[1], *list[2]);
  L2SacFracMisfitWithShift(*list[1], *list[2], &shift, &misfit);
  saRemoveCollectiveMean(list);
  EXPECT_EQ(std::exchange(allocationsUntilFailure, 0), 1);
}

// Each seismogram is whole, and the result is their number.
TEST_F(FailingAllocatorGroups, LoadAndCutWholeSeismograms) {
  const auto newGroup = [] {
    auto group = make<SeismogramArray>();
    group->init();
    return group;
  };
  const std::string root = folder.path("the folder of a group");
  fs::create_directories(root + "/a folder of some length");
  for (const char* name : {"/a first file of some length.sac", "/a folder of some length/x.sac"})
    ASSERT_TRUE(traces()[0]->saveToPath(root + name));
  const auto load = [&](Ref<SeismogramArray>& group) {
    group->loadSeismogramsFromPath(root);
    return std::to_string(group->theSeismograms().size());
  };
  const auto traced = [&] {
    auto group = newGroup();
    group->theSeismograms() = traces();
    return group;
  };
  const auto cut = [](Ref<SeismogramArray>& group) {
    group->equalizeTimeRange();
    return std::to_string(std::ranges::count(group->theSeismograms(), 10,
                                             [](const auto& s) { return s ? s->npts() : 0; }));
  };
  std::set<std::string> whole;
  const auto keepWhole = [&](const Ref<SeismogramArray>& group) {
    for (const auto& s : group->theSeismograms()) whole.insert(s ? archivedState(*s) : "none");
  };
  auto loaded = newGroup(), equalized = traced();
  keepWhole(equalized);
  load(loaded);
  cut(equalized);
  keepWhole(loaded);
  keepWhole(equalized);
  const auto state = [&](const Ref<SeismogramArray>& group) {
    return resultOf(std::ranges::all_of(group->theSeismograms(), [&](const auto& s) {
      return whole.contains(s ? archivedState(*s) : "none");
    }));
  };
  expectSafe<Ref<SeismogramArray>>("loadSeismogramsFromPath", {newGroup, load, state});
  expectSafe<Ref<SeismogramArray>>("equalizeTimeRange", {traced, cut, state});
}

TEST_F(FailingAllocatorGroups, RunTheProgramsOfSyntheticsOrRefuse) {
  const std::string work = folder.path("a working folder"), programs = folder.path("some programs");
  fs::create_directory(work);
  fs::create_directory(programs);
  fs::create_symlink("/bin/true", work + "/cleanup.sh");
  for (const char* name : {"/hudson96", "/hpulse96", "/fmech96", "/f96tosac"})
    fs::create_symlink("/bin/true", programs + name);
  folder.write("a working folder/hspec96.grn", "");
  ASSERT_TRUE(traces()[0]->saveToPath(work + "/B00101Z00.sac"));
  const auto controller = [&] {
    auto made = make<tbwController>();
    made->init();
    made->setWorkPath(work);
    made->setExPath(programs);
    made->setTshift(0.0f);  // as it is after a run
    return made;
  };
  using Controller = Ref<tbwController>;
  const auto state = [](const Controller& c) { return c->workPath() + c->earthModelName(); };
  const auto init = [](Controller& c) { return resultOf(static_cast<bool>(c->init())); };
  const auto compute = [](Controller& c) {
    const auto s = c->computeResponse();
    return resultOf(s && s->npts() == 10);
  };
  expectSafe<Controller>("init", {make<tbwController>, init, state});
  expectSafe<Controller>("computeResponse", {controller, compute, state});
}

}  // namespace
}  // namespace krosac
