// Actions run in child processes, which may be limited, killed or given failing system calls.
#ifndef KROSAC_TESTS_ROBUSTNESS_DISTURBED_H
#define KROSAC_TESTS_ROBUSTNESS_DISTURBED_H

#include <sys/ptrace.h>
#include <sys/syscall.h>
#include <sys/user.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>

constexpr int kKilled = -1;

inline int exitCode(int status) {
  return WIFEXITED(status) ? WEXITSTATUS(status) : kKilled;
}

// Runs an action that gives an exit code in a child process and gives that code.
template <typename Action>
int inChild(Action action) {
  const pid_t child = ::fork();
  if (child == 0) ::_exit(action());
  int status = 0;
  ::waitpid(child, &status, 0);
  return exitCode(status);
}

// A child process that stands still before and after each of its system calls.
class Traced {
 public:
  template <typename Action>
  explicit Traced(Action action) : child_(::fork()) {
    if (child_ == 0) {
      if (::ptrace(PTRACE_TRACEME, 0, nullptr, nullptr) != 0) ::_exit(kUntraced);
      ::raise(SIGSTOP);
      ::_exit(action());
    }
    ::waitpid(child_, &status_, 0);
    ::ptrace(PTRACE_SETOPTIONS, child_, nullptr, PTRACE_O_TRACESYSGOOD | PTRACE_O_EXITKILL);
  }
  ~Traced() { kill(); }
  Traced(const Traced&) = delete;
  Traced& operator=(const Traced&) = delete;

  // False where the system lets no process trace its child.
  static bool isPossible() {
    return Traced([] { return 0; }).runs();
  }

  bool runs() const { return WIFSTOPPED(status_); }
  int result() const { return exitCode(status_); }

  // Goes on to the next entry or end of a system call; false at the end of the process.
  bool step() {
    if (runs()) {
      ::ptrace(PTRACE_SYSCALL, child_, nullptr, nullptr);
      ::waitpid(child_, &status_, 0);
    }
    return runs();
  }
  void kill() {
    if (!runs()) return;
    ::kill(child_, SIGKILL);
    while (runs()) ::waitpid(child_, &status_, 0);
  }

#ifdef __x86_64__
  // At the entry of a system call: its number, with those that only manage memory, signals and the
  // process's end counting as none.
  long call() const {
    const auto number = static_cast<long>(registers().orig_rax);
    constexpr long kInternal[] = {SYS_brk,         SYS_mmap,           SYS_munmap,
                                  SYS_mremap,      SYS_mprotect,       SYS_madvise,
                                  SYS_futex,       SYS_rt_sigprocmask, SYS_rt_sigaction,
                                  SYS_sigaltstack, SYS_exit_group};
    return std::ranges::count(kInternal, number) ? -1 : number;
  }
  // Passes over the call, which so gives this error.
  void fail(int error) {
    user_regs_struct all = registers();
    all.orig_rax = static_cast<decltype(all.orig_rax)>(-1);
    ::ptrace(PTRACE_SETREGS, child_, nullptr, &all);
    if (!step()) return;
    all = registers();
    all.rax = static_cast<decltype(all.rax)>(-error);
    ::ptrace(PTRACE_SETREGS, child_, nullptr, &all);
  }
  // Makes a read or write move a third of its bytes.
  void shorten() {
    user_regs_struct all = registers();
    all.rdx /= 3;
    ::ptrace(PTRACE_SETREGS, child_, nullptr, &all);
    step();
  }
#endif

 private:
  static constexpr int kUntraced = 99;

#ifdef __x86_64__
  user_regs_struct registers() const {
    user_regs_struct all{};
    ::ptrace(PTRACE_GETREGS, child_, nullptr, &all);
    return all;
  }
#endif

  pid_t child_;
  int status_ = 0;
};

#endif
