// Nothing is lost and nothing half done is left when a process is killed, a disk is full, a folder
// may not be written or a file changes while it is read.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include <atomic>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <thread>

#include "CapturedLog.h"
#include "TemporaryFolder.h"
#include "krosac/sacio/SacFile.h"
#include "krosac/sacio/SacRoutines.h"
#include "robustness/Disturbed.h"
#include "seismogram/Traces.h"

namespace krosac {
namespace {

namespace fs = std::filesystem;

enum Outcome { kWhole, kRefused, kWrong };

// A saver of a trace to "a.sac" in a folder that is the trace's place and the working directory.
struct Saver {
  bool (*save)(S& s, const std::string& path);
  bool swapped;

  // The trace of which this saver makes the file `bytes(samples)`.
  Ref<S> trace(const Samples& samples, const std::string& path) const {
    auto s = traceOf(samples);
    s->setPath(path);
    s->setSwappedBytes(swapped);
    return s;
  }
  std::string bytes(const Samples& samples) const {
    const std::string image = imageOf(*traceOf(samples));
    return swapped ? foreign(image) : image;
  }
};

bool save(S& s, const std::string&) {
  return s.save();
}
bool saveAs(S& s, const std::string&) {
  return s.saveAs("a.sac");
}
bool saveToPath(S& s, const std::string& path) {
  return s.saveToPath(path);
}
// Foreign traces are all written to their old path, in one way.
const Saver kSavers[] = {{save, false}, {saveAs, false}, {saveToPath, false}, {saveAs, true}};

class FaultTest : public testing::Test {
 protected:
  FaultTest() { fs::current_path(folder_.path()); }
  ~FaultTest() override { fs::current_path(before_); }

  std::string path() const { return folder_.path("a.sac"); }
  std::string bytes() const { return folder_.read("a.sac"); }
  std::ptrdiff_t entries() const {
    return std::distance(fs::directory_iterator(folder_.path()), {});
  }
  // An action that saves and tells the outcome by its exit code.
  auto saving(const Saver& saver, const Samples& samples) const {
    return [&saver, s = saver.trace(samples, path()), path = path()] {
      return saver.save(*s, path) ? kWhole : kRefused;
    };
  }
  // Saves in a child that was first limited by `limit`; the file must be as the outcome says, with
  // nothing beside it.
  template <typename Limit>
  void expectSaverTellsTheTruth(Limit limit, int outcome) {
    const Samples before(50, 1.0f), after(5000, 2.0f);
    for (const Saver& saver : kSavers) {
      folder_.write("a.sac", saver.bytes(before));
      const auto action = saving(saver, after);
      EXPECT_EQ(inChild([&] {
                  limit();
                  return action();
                }),
                outcome);
      EXPECT_TRUE(bytes() == saver.bytes(outcome == kWhole ? after : before));
      EXPECT_EQ(entries(), 1);
    }
  }

 private:
  TemporaryFolder folder_;
  fs::path before_ = fs::current_path();

 protected:
  TemporaryFolder& folder() { return folder_; }
};

TEST_F(FaultTest, ASaverKilledAtAnySystemCallLeavesTheOldFileOrTheNew) {
  if (!Traced::isPossible()) GTEST_SKIP() << "no process may trace its child here";
  for (const Saver& saver : kSavers) {
    const Samples before(50, 1.0f), after(5000, 2.0f);
    std::string outcomes;
    for (int stops = 1; outcomes.empty() || outcomes.back() != 'e'; ++stops) {
      folder().write("a.sac", saver.bytes(before));
      Traced child(saving(saver, after));
      for (int stop = 0; stop < stops && child.step(); ++stop) {
      }
      const bool ended = !child.runs();
      child.kill();
      const std::string now = bytes();
      const bool isNew = now == saver.bytes(after);
      ASSERT_TRUE(isNew || now == saver.bytes(before)) << stops;
      outcomes += ended && isNew ? 'e' : isNew ? 'n' : 'o';
    }
    // Temporary files of the killed did not hinder the last; one rename divided old from new.
    EXPECT_NE(outcomes.find("on"), std::string::npos) << outcomes;
    EXPECT_EQ(outcomes.find("no"), std::string::npos) << outcomes;
  }
}

TEST_F(FaultTest, AReaderSeesOneWholeFileOrAnotherWhileSaversRunAndAreKilled) {
  const Samples few(50, 1.0f), many(20000, 2.0f);
  for (const Saver& saver : kSavers) {
    const auto saveFew = saving(saver, few), saveMany = saving(saver, many);
    const std::string versions[] = {saver.bytes(few), saver.bytes(many)};
    folder().write("a.sac", versions[0]);
    for (int changes = 1; changes <= 4; ++changes) {
      const pid_t child = ::fork();
      if (child == 0) {
        while (saveMany() == kWhole && saveFew() == kWhole) {
        }
        ::_exit(1);
      }
      std::string last = bytes();
      for (int seen = 0; seen < changes;) {
        const std::string now = bytes();
        ASSERT_TRUE(now == versions[0] || now == versions[1]) << now.size();
        if (now != last) ++seen;
        last = now;
        ASSERT_EQ(::waitpid(child, nullptr, WNOHANG), 0) << "a save failed";
      }
      ::kill(child, SIGKILL);
      ::waitpid(child, nullptr, 0);
      EXPECT_TRUE(bytes() == versions[0] || bytes() == versions[1]);
    }
  }
}

#if defined(__x86_64__) && !defined(__SANITIZE_ADDRESS__)  // which makes calls of its own
// Runs an action once for each of its system calls, which fails with an error or, for 0, moves only
// some of its bytes.
template <typename Action, typename Check>
void disturbEachCall(Action action, int error, Check check) {
  int disturbed = 0;
  for (bool reached = true; reached;) {
    Traced child(action());
    reached = false;
    for (int calls = 0; !reached && child.step();) {
      const long call = child.call();
      const bool moves = call == SYS_read || call == SYS_write;
      if ((error ? call >= 0 : moves) && calls++ == disturbed) {
        reached = true;
        error ? child.fail(error) : child.shorten();
      } else {
        child.step();
      }
    }
    while (child.step()) {
    }
    check(child.result(), reached);
    ++disturbed;
  }
  EXPECT_GT(disturbed, 1);
}

TEST_F(FaultTest, WhicheverCallOfASaverFailsTheBooleanIsTrueToTheFile) {
  if (!Traced::isPossible()) GTEST_SKIP() << "no process may trace its child here";
  const Samples before(50, 1.0f), after(5000, 2.0f);
  for (const Saver& saver : kSavers) {
    for (const int error : {ENOSPC, EINTR, 0}) {
      int refusals = 0;
      const auto action = [&] {
        folder().write("a.sac", saver.bytes(before));
        return saving(saver, after);
      };
      disturbEachCall(action, error, [&](int result, bool reached) {
        ASSERT_TRUE(result == kWhole || (reached && error && result == kRefused)) << result;
        EXPECT_TRUE(bytes() == saver.bytes(result == kWhole ? after : before));
        EXPECT_EQ(entries(), 1);
        refusals += result == kRefused;
      });
      EXPECT_GE(refusals, error ? 4 : 0);  // to open, flush, close and rename
    }
  }
}

TEST_F(FaultTest, WhicheverCallOfALoaderFailsItRefusesOrHasAll) {
  if (!Traced::isPossible()) GTEST_SKIP() << "no process may trace its child here";
  CapturedLog captured;
  const Samples samples(5000, 2.0f);
  for (const bool swapped : {false, true}) {
    folder().write("a.sac", Saver{save, swapped}.bytes(samples));
    for (const auto load : {&S::initWithPath, &S::loadFromPath, &S::replaceSacObjectDataWithPath}) {
      for (const int error : {EIO, EINTR, 0}) {
        const auto s = traceOf(Samples(5000));
        const auto action = [&] {
          return [&] {
            if (!((*s).*load)(path())) return kRefused;
            return samplesIn(*s) == samples && s->swappedBytes() == swapped ? kWhole : kWrong;
          };
        };
        disturbEachCall(action, error, [&](int result, bool reached) {
          EXPECT_TRUE(result == kWhole || (reached && error && result == kRefused)) << result;
        });
      }
    }
  }
}
#endif

void limitFileSize(rlim_t most) {
  std::signal(SIGXFSZ, SIG_IGN);
  const rlimit limit{most, most};
  ::setrlimit(RLIMIT_FSIZE, &limit);
}

void dropRights() {
  if (::geteuid() == 0 && ::setresuid(65534, 65534, 65534) != 0) ::_exit(99);
}

TEST_F(FaultTest, SaversOnAFullDiskLeaveTheOldFile) {
  constexpr rlim_t kNeeded = 632 + 4 * 5000;
  for (const rlim_t most : {rlim_t{0}, rlim_t{632}, kNeeded - 1, kNeeded})
    expectSaverTellsTheTruth([=] { limitFileSize(most); }, most < kNeeded ? kRefused : kWhole);
}

TEST_F(FaultTest, SaversWithoutRightsOrDescriptorsLeaveTheOldFile) {
  ASSERT_EQ(::chmod(folder().path().c_str(), 0777), 0);
  folder().write("a.sac", "");
  ASSERT_EQ(::chmod(path().c_str(), 0444), 0);  // the file, in a folder that takes new ones
  expectSaverTellsTheTruth(dropRights, kRefused);
  ASSERT_EQ(::chmod(path().c_str(), 0666), 0);  // the folder, so that there is no temporary
  ASSERT_EQ(::chmod(folder().path().c_str(), 0555), 0);
  expectSaverTellsTheTruth(dropRights, kRefused);
  ASSERT_EQ(::chmod(folder().path().c_str(), 0755), 0);
  const auto noDescriptors = [] {
    const rlimit none{0, 0};
    ::setrlimit(RLIMIT_NOFILE, &none);
  };
  expectSaverTellsTheTruth(noDescriptors, kRefused);
  EXPECT_FALSE(traceOf(Samples(5))->saveToPath("/dev/full"));
}

// A file system of 64 KiB in a name space of a child, so that nothing stays mounted.
TEST_F(FaultTest, SaversOnASmallFileSystemLeaveTheOldFile) {
  constexpr int kNotAllowed = 99;
  for (const Saver& saver : kSavers) {
    const Samples before(2000, 1.0f), after(14000, 2.0f);  // 8 and 56 KiB: not both
    const auto outcome = inChild([&]() -> int {
      if (::unshare(CLONE_NEWNS) != 0 ||
          ::mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0 ||
          ::mount("tmpfs", folder().path().c_str(), "tmpfs", 0, "size=64k") != 0)
        return kNotAllowed;
      fs::current_path(folder().path());
      folder().write("a.sac", saver.bytes(before));
      if (saving(saver, after)() != kRefused) return kWhole;
      return bytes() == saver.bytes(before) && entries() == 1 ? kRefused : kWrong;
    });
    if (outcome == kNotAllowed) GTEST_SKIP() << "no file system may be mounted here";
    EXPECT_EQ(outcome, kRefused);
  }
}

// Each writes its header and then 5000 samples, y first where there are two blocks.
using PlainWriter = std::int32_t (*)(const char* path, const float* x);
const PlainWriter kPlainWriters[] = {[](const char* path, const float* x) {
                                       std::int32_t status = 7;
                                       SacHeader header;
                                       NewSacHeader(&header);
                                       header.NPTS = 5000;
                                       WriteSACfile(path, x, &status, header);
                                       return status;
                                     },
                                     [](const char* path, const float* x) {
                                       std::int32_t status = 7;
                                       WriteSAC1(path, x, 5000, &status, 1, 0);
                                       return status;
                                     },
                                     [](const char* path, const float* x) {
                                       std::int32_t status = 7;
                                       WriteSAC2(path, 5000, x, x, &status);
                                       return status;
                                     },
                                     [](const char* path, const float* x) {
                                       std::int32_t status = 7;
                                       newhdr_();
                                       ghdr.NPTS = 5000;
                                       wsac0_(path, x, x, &status,
                                              static_cast<int>(std::strlen(path)));
                                       return status;
                                     }};

TEST_F(FaultTest, PlainWritersWriteInPlaceAndSayWhatTheyCouldNot) {
  const Samples x(5000, 2.0f);
  for (const PlainWriter& write : kPlainWriters) {
    EXPECT_EQ(write("/dev/full", x.data()), -1);
    ASSERT_EQ(write(path().c_str(), x.data()), 0);
    const std::string whole = bytes();
    const std::size_t length = whole.size();
    for (const std::size_t most : {std::size_t{0}, std::size_t{600}, length - 1, length}) {
      struct stat before, after;
      ::stat(folder().write("a.sac", std::string(2 * length, 'x')).c_str(), &before);
      const int refused = inChild([&] {
        limitFileSize(most);
        return write(path().c_str(), x.data()) == -1;
      });
      ::stat(path().c_str(), &after);
      EXPECT_EQ(refused, most < length);
      EXPECT_EQ(after.st_ino, before.st_ino);
      const std::string part = bytes();
      EXPECT_LE(part.size(), most);
      EXPECT_TRUE(part == whole.substr(0, part.size()));
    }
  }
}

// Shrinks a file step by step and puts a whole one in its place, again and again while it lives.
class ShrinkingFile {
 public:
  ShrinkingFile(const TemporaryFolder& folder, const std::string& bytes)
      : thread_([&folder, bytes, this] {
          const std::string path = folder.path("a.sac");
          while (!stop_) {
            folder.write("next", bytes);
            for (const std::size_t less : {std::size_t{1}, bytes.size() / 2, bytes.size() - 632})
              fs::resize_file(path, bytes.size() - less);
            folder.write("next", bytes);  // takes a while, in which readers meet the short file
            fs::rename(folder.path("next"), path);
          }
        }) {}
  ~ShrinkingFile() {
    stop_ = true;
    thread_.join();
  }

 private:
  std::atomic<bool> stop_{false};
  std::thread thread_;
};

TEST_F(FaultTest, AFileThatShrinksWhileItIsReadIsRefusedOrWhole) {
  const Samples samples(30000, 2.0f);
  CapturedLog captured;
  for (const bool swapped : {false, true}) {
    const std::string image = Saver{save, swapped}.bytes(samples);
    folder().write("a.sac", image);
    const ShrinkingFile shrinking(folder(), image);
    for (const auto load : {&S::initWithPath, &S::loadFromPath, &S::replaceSacObjectDataWithPath}) {
      for (int whole = 0, refused = 0; whole < 20 || refused < 20;) {
        const auto s = traceOf(Samples(30000));
        const bool good = ((*s).*load)(path());
        ++(good ? whole : refused);
        EXPECT_TRUE(!good || (samplesIn(*s) == samples && s->swappedBytes() == swapped));
      }
    }
    SacHeader header;
    Samples read(30000);
    for (std::int32_t whole = 0, status = 7; whole < 20; whole += status == 0) {
      ReadSACfile(path().c_str(), read.data(), &header, 30000, &status);
      EXPECT_TRUE(status == -1 || (status == 0 && (swapped || read == samples))) << status;
    }
  }
}

}  // namespace
}  // namespace krosac
