// Files stay complete when a process is killed, a system call fails, a disk is full, a folder may
// not be written or a file changes while it is read.
#include <gtest/gtest.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/prctl.h>
#include <sys/ptrace.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/user.h>
#include <sys/wait.h>

#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <filesystem>
#include <thread>

#include "CapturedLog.h"
#include "TemporaryFolder.h"
#include "krosac/sacio/SacFile.h"
#include "krosac/sacio/SacRoutines.h"
#include "seismogram/Traces.h"

namespace krosac {
namespace {

namespace fs = std::filesystem;

enum Outcome { kWhole, kRefused, kWrong, kNotAllowed, kKilled };

int outcomeOf(int status) {
  return WIFEXITED(status) ? WEXITSTATUS(status) : kKilled;
}

// Runs an action in a child process and returns its outcome.
template <typename Action>
int inChild(Action action) {
  const pid_t child = ::fork();
  if (child == 0) ::_exit(action());
  int status = 0;
  ::waitpid(child, &status, 0);
  return outcomeOf(status);
}

// A child process that stops before and after each of its system calls.
class Traced {
 public:
  template <typename Action>
  explicit Traced(Action action) : child_(::fork()) {
    if (child_ == 0) {
      if (::ptrace(PTRACE_TRACEME, 0, nullptr, nullptr) != 0) ::_exit(kNotAllowed);
      ::raise(SIGSTOP);
      ::_exit(action());
    }
    ::waitpid(child_, &status_, 0);
    ::ptrace(PTRACE_SETOPTIONS, child_, nullptr, PTRACE_O_TRACESYSGOOD | PTRACE_O_EXITKILL);
  }
  ~Traced() { kill(); }

  // False if the system does not let a process trace its child.
  static bool isPossible() {
    return Traced([] { return 0; }).runs();
  }
  bool runs() const { return WIFSTOPPED(status_); }
  int outcome() const { return outcomeOf(status_); }
  // Continues to the next entry or end of a system call; false at the end of the process.
  bool step() {
    if (runs()) {
      ::ptrace(PTRACE_SYSCALL, child_, nullptr, nullptr);
      ::waitpid(child_, &status_, 0);
    }
    return runs();
  }
  void kill() {
    if (runs()) ::kill(child_, SIGKILL);
    while (runs()) ::waitpid(child_, &status_, 0);
  }

#ifdef __x86_64__
  // At the entry of a system call: its number, or -1 if it only manages memory or signals or ends
  // the process.
  long call() {
    constexpr long kInternal[] = {SYS_brk,         SYS_mmap,           SYS_munmap,
                                  SYS_mremap,      SYS_mprotect,       SYS_madvise,
                                  SYS_futex,       SYS_rt_sigprocmask, SYS_rt_sigaction,
                                  SYS_sigaltstack, SYS_exit_group};
    ::ptrace(PTRACE_GETREGS, child_, nullptr, &registers_);
    const auto number = static_cast<long>(registers_.orig_rax);
    return std::ranges::count(kInternal, number) ? -1 : number;
  }
  // Then: make the call return this error, or transfer only a third of its bytes.
  void fail(int error) {
    set(registers_.orig_rax, -1);  // no such call
    step();
    ::ptrace(PTRACE_GETREGS, child_, nullptr, &registers_);
    set(registers_.rax, -error);
  }
  void shorten() {
    set(registers_.rdx, static_cast<long>(registers_.rdx / 3));
  }

 private:
  void set(unsigned long long& place, long value) {
    place = static_cast<unsigned long long>(value);
    ::ptrace(PTRACE_SETREGS, child_, nullptr, &registers_);
  }
  user_regs_struct registers_{};
#endif

 private:
  pid_t child_;
  int status_ = 0;
};

const Samples kBefore(50, 1.0f), kAfter(5000, 2.0f);

// A way to save a trace to "a.sac" in the working directory, where the trace also has its path.
struct Saver {
  bool (*save)(S& s, const std::string& path);
  bool swapped;

  // The bytes that this saver writes.
  std::string bytes(const Samples& samples) const {
    const std::string image = imageOf(*traceOf(samples));
    return swapped ? foreign(image) : image;
  }
  // Returns an action that saves.
  auto saving(const Samples& samples, const std::string& path) const {
    const auto s = traceOf(samples);
    s->setPath(path);
    s->setSwappedBytes(swapped);
    return [save = save, s, path] { return save(*s, path) ? kWhole : kRefused; };
  }
};

bool saveAs(S& s, const std::string&) {
  return s.saveAs("a.sac");
}
// Savers write byte-swapped traces to their old path, all in the same way.
const Saver kSavers[] = {{[](S& s, const std::string&) { return s.save(); }, false},
                         {[](S& s, const std::string& path) { return s.saveToPath(path); }, false},
                         {saveAs, false},
                         {saveAs, true}};

constexpr auto kLoaders = {&S::initWithPath, &S::loadFromPath, &S::replaceSacObjectDataWithPath};

class FaultTest : public testing::Test {
 protected:
  FaultTest() { fs::current_path(folder.path()); }
  ~FaultTest() override { fs::current_path(former); }

  std::string bytes() const { return folder.read("a.sac"); }
  // True if there is one file and it agrees with the outcome of saving kAfter over kBefore.
  bool isAs(int outcome, const Saver& saver) const {
    return bytes() == saver.bytes(outcome == kWhole ? kAfter : kBefore) &&
           std::distance(fs::directory_iterator(folder.path()), {}) == 1;
  }
  void setModes(mode_t ofFolder, mode_t ofFile) {
    ::chmod(folder.path().c_str(), ofFolder);
    ::chmod(path.c_str(), ofFile);
  }
  // Saves in a child that was first limited. It starts from modes that also let an ordinary user
  // write the old file.
  template <typename Limit>
  void expectSaversReport(Limit limit, int outcome) {
    for (const Saver& saver : kSavers) {
      setModes(0755, 0644);
      folder.write("a.sac", saver.bytes(kBefore));
      const auto save = saver.saving(kAfter, path);
      EXPECT_EQ(inChild([&] { return limit(), save(); }), outcome);
      EXPECT_TRUE(isAs(outcome, saver));
    }
  }

  const fs::path former = fs::current_path();
  const TemporaryFolder folder;
  const std::string path = folder.path("a.sac");
  const CapturedLog captured;
};

TEST_F(FaultTest, ASaverKilledAtAnySystemCallLeavesTheOldOrTheNewFile) {
  if (!Traced::isPossible()) GTEST_SKIP() << "tracing a child is not permitted";
  for (const Saver& saver : kSavers) {
    std::string outcomes;
    for (int stops = 1; !outcomes.ends_with('e'); ++stops) {
      folder.write("a.sac", saver.bytes(kBefore));
      Traced child(saver.saving(kAfter, path));
      for (int stop = 0; stop < stops && child.step(); ++stop) {
      }
      const bool ended = !child.runs();
      child.kill();
      const bool isNew = bytes() == saver.bytes(kAfter);
      ASSERT_TRUE(isNew || bytes() == saver.bytes(kBefore)) << stops;
      outcomes += ended && isNew ? 'e' : isNew ? 'n' : 'o';
    }
    // The temporary files of killed savers do not stop the last one. One rename separates old from
    // new.
    EXPECT_NE(outcomes.find("on"), std::string::npos) << outcomes;
#ifndef __SANITIZE_ADDRESS__  // it makes a varying number of system calls itself
    EXPECT_EQ(outcomes.find("no"), std::string::npos) << outcomes;
#endif
  }
}

TEST_F(FaultTest, AReaderSeesCompleteFilesWhileSaversRunAndAreKilled) {
  for (const Saver& saver : kSavers) {
    const auto saveOne = saver.saving(kBefore, path), saveOther = saver.saving(kAfter, path);
    const std::string versions[] = {saver.bytes(kBefore), saver.bytes(kAfter)};
    folder.write("a.sac", versions[0]);
    const pid_t child = ::fork();
    if (child == 0) ::prctl(PR_SET_PDEATHSIG, SIGKILL);  // if a check below ends this test
    while (child == 0) {
      if (saveOther() != kWhole || saveOne() != kWhole) ::_exit(1);
    }
    std::string last = bytes();
    for (int changes = 0; changes < 10;) {
      const std::string now = bytes();
      ASSERT_TRUE(std::ranges::count(versions, now)) << now.size();
      changes += now != last;
      last = now;
      ASSERT_EQ(::waitpid(child, nullptr, WNOHANG), 0) << "a save failed";
    }
    ::kill(child, SIGKILL);
    ::waitpid(child, nullptr, 0);
    EXPECT_TRUE(std::ranges::count(versions, bytes()));
  }
}

#if defined(__x86_64__) && !defined(__SANITIZE_ADDRESS__)
// Runs an action once for each of its system calls and makes that call fail with an error or, if
// the error is 0, transfer only some of its bytes. The last run is undisturbed.
template <typename Prepare, typename Check>
void disturbEachCall(Prepare prepare, int error, Check check) {
  bool reached = true;
  for (int disturbed = 0; reached; ++disturbed) {
    Traced child(prepare());
    reached = false;
    for (int calls = 0; child.step(); child.step()) {
      const long call = child.call();
      const bool counts = error ? call >= 0 : call == SYS_read || call == SYS_write;
      if (!counts || calls++ != disturbed) continue;
      reached = true;
      error ? child.fail(error) : child.shorten();
    }
    EXPECT_TRUE(reached || disturbed > 0);
    check(child.outcome(), reached && error);
  }
}

TEST_F(FaultTest, WhicheverCallOfASaverFailsTheResultAgreesWithTheFile) {
  if (!Traced::isPossible()) GTEST_SKIP() << "tracing a child is not permitted";
  for (const Saver& saver : kSavers) {
    int refusals[2] = {};
    for (const int error : {ENOSPC, EINTR, 0}) {
      const auto prepare = [&] {
        folder.write("a.sac", saver.bytes(kBefore));
        return saver.saving(kAfter, path);
      };
      disturbEachCall(prepare, error, [&](int outcome, bool fails) {
        ASSERT_TRUE(outcome == kWhole || (fails && outcome == kRefused)) << outcome;
        EXPECT_TRUE(isAs(outcome, saver));
        refusals[error == EINTR] += outcome == kRefused;
      });
    }
    // Checking access, opening, writing, setting permissions, flushing, closing and renaming can
    // fail. An interrupted write continues.
    EXPECT_GE(refusals[0], 7);
    EXPECT_LT(refusals[1], refusals[0]);
  }
}

TEST_F(FaultTest, WhicheverCallOfALoaderFailsItRefusesOrLoadsEverything) {
  if (!Traced::isPossible()) GTEST_SKIP() << "tracing a child is not permitted";
  for (const bool swapped : {false, true}) {
    folder.write("a.sac", Saver{saveAs, swapped}.bytes(kAfter));
    for (const auto load : kLoaders) {
      for (const int error : {EIO, EINTR, 0}) {
        const auto s = traceOf(Samples(5000));
        const auto loading = [&] {
          if (!((*s).*load)(path)) return kRefused;
          return samplesIn(*s) == kAfter && s->swappedBytes() == swapped ? kWhole : kWrong;
        };
        const auto check = [](int outcome, bool fails) {
          EXPECT_TRUE(outcome == kWhole || (fails && outcome == kRefused)) << outcome;
        };
        disturbEachCall([&] { return loading; }, error, check);
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

TEST_F(FaultTest, SaversOnAFullDiskLeaveTheOldFile) {
  constexpr rlim_t kNeeded = 632 + 4 * 5000;
  for (const rlim_t most : {rlim_t{0}, rlim_t{632}, kNeeded - 1, kNeeded})
    expectSaversReport([=] { limitFileSize(most); }, most < kNeeded ? kRefused : kWhole);
}

TEST_F(FaultTest, SaversWithoutRightsOrDescriptorsLeaveTheOldFile) {
  // First a read-only file in a writable folder, then a writable file in a read-only folder.
  for (const auto& [ofFolder, ofFile] : {std::pair<mode_t, mode_t>{0777, 0444}, {0555, 0666}}) {
    const auto dropRights = [&, folderMode = ofFolder, fileMode = ofFile] {
      setModes(folderMode, fileMode);
      if (::geteuid() == 0 && ::setresuid(65534, 65534, 65534) != 0) ::_exit(kNotAllowed);
    };
    expectSaversReport(dropRights, kRefused);
  }
  setModes(0755, 0644);
  const auto dropDescriptors = [] {
    const rlimit none{0, 0};
    ::setrlimit(RLIMIT_NOFILE, &none);
  };
  expectSaversReport(dropDescriptors, kRefused);
  EXPECT_FALSE(traceOf(kBefore)->saveToPath("/dev/full"));
}

// A file system of 20 KiB cannot hold the new file. It is mounted in a child's name space, so
// nothing stays mounted.
TEST_F(FaultTest, SaversOnASmallFileSystemLeaveTheOldFile) {
  for (const Saver& saver : kSavers) {
    const auto outcome = inChild([&]() -> int {
      if (::unshare(CLONE_NEWNS) != 0 ||
          ::mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0 ||
          ::mount("tmpfs", folder.path().c_str(), "tmpfs", 0, "size=20k") != 0)
        return kNotAllowed;
      fs::current_path(folder.path());
      folder.write("a.sac", saver.bytes(kBefore));
      const int result = saver.saving(kAfter, path)();
      return isAs(kRefused, saver) ? result : kWrong;
    });
    if (outcome == kNotAllowed) GTEST_SKIP() << "mounting is not permitted";
    EXPECT_EQ(outcome, kRefused);
  }
}

// Each writes its header and 5000 samples; an x-y file has y first.
using PlainWriter = void (*)(const char* path, const float* x, std::int32_t* status);
const PlainWriter kPlainWriters[] = {[](const char* path, const float* x, std::int32_t* status) {
                                       SacHeader header;
                                       NewSacHeader(&header);
                                       header.NPTS = 5000;
                                       WriteSACfile(path, x, status, header);
                                     },
                                     [](const char* path, const float* x, std::int32_t* status) {
                                       WriteSAC1(path, x, 5000, status, 1, 0);
                                     },
                                     [](const char* path, const float* x, std::int32_t* status) {
                                       WriteSAC2(path, 5000, x, x, status);
                                     },
                                     [](const char* path, const float* x, std::int32_t* status) {
                                       newhdr_();
                                       ghdr.NPTS = 5000;
                                       wsac0_(path, x, x, status,
                                              static_cast<int>(std::strlen(path)));
                                     }};

TEST_F(FaultTest, PlainWritersWriteInPlaceAndReportFailures) {
  for (const PlainWriter& writer : kPlainWriters) {
    const auto writes = [&](const std::string& to) {
      std::int32_t status = 7;
      writer(to.c_str(), kAfter.data(), &status);
      return status == 0 ? kWhole : status == -1 ? kRefused : kWrong;
    };
    EXPECT_EQ(writes("/dev/full"), kRefused);
    ASSERT_EQ(writes(path), kWhole);
    const std::string whole = bytes();
    for (const std::size_t most :
         {std::size_t{0}, std::size_t{600}, whole.size() - 1, whole.size()}) {
      struct stat before, after;
      ::stat(folder.write("a.sac", std::string(2 * whole.size(), 'x')).c_str(), &before);
      EXPECT_EQ(inChild([&] { return limitFileSize(most), writes(path); }),
                most < whole.size() ? kRefused : kWhole);
      ::stat(path.c_str(), &after);
      EXPECT_EQ(after.st_ino, before.st_ino);
      EXPECT_LE(bytes().size(), most);
      EXPECT_TRUE(whole.starts_with(bytes()));
    }
  }
}

TEST_F(FaultTest, AFileThatShrinksWhileItIsReadIsRefusedOrComplete) {
  const Samples samples(30000, 2.0f);
  for (const bool swapped : {false, true}) {
    const std::string image = Saver{saveAs, swapped}.bytes(samples);
    folder.write("a.sac", image);
    // Shrinks the file in steps and replaces it by a complete one, repeatedly.
    std::atomic<bool> stops = false;
    std::thread shrinking([&] {
      while (!stops) {
        folder.write("next", image);
        for (const std::size_t less : {std::size_t{1}, image.size() / 2, image.size() - 632})
          fs::resize_file(path, image.size() - less);
        folder.write("next", image);  // meanwhile readers find the short file
        fs::rename(folder.path("next"), path);
      }
    });
    for (const auto load : kLoaders) {
      for (int whole = 0, refused = 0; whole < 20 || refused < 20;) {
        const auto s = traceOf(Samples(30000));
        const bool good = ((*s).*load)(path);
        ++(good ? whole : refused);
        EXPECT_TRUE(!good || (samplesIn(*s) == samples && s->swappedBytes() == swapped));
      }
    }
    SacHeader header;
    Samples read(30000);
    for (std::int32_t whole = 0, status = 7; whole < 20; whole += status == 0) {
      ReadSACfile(path.c_str(), read.data(), &header, 30000, &status);
      EXPECT_TRUE(status == -1 || (status == 0 && (swapped || read == samples))) << status;
    }
    stops = true;
    shrinking.join();
  }
}

}  // namespace
}  // namespace krosac
