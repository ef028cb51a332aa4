// A progress line on a terminal; prints nothing into a pipe or a file.
#ifndef KROSAC_EXAMPLES_PROGRESS_H
#define KROSAC_EXAMPLES_PROGRESS_H

#include <unistd.h>

#include <cstdio>
#include <string>
#include <utility>

class Progress {
 public:
  Progress(std::string what, long total)
      : what_(std::move(what)), total_(total), shown_(isatty(STDERR_FILENO) == 1) {}
  ~Progress() {
    if (shown_ && percent_ >= 0) std::fputc('\n', stderr);
  }
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;

  // Counts one more step as done.
  void step() {
    const long percent = ++done_ * 100 / (total_ > 0 ? total_ : 1);
    if (!shown_ || percent == percent_) return;
    percent_ = percent;
    std::fprintf(stderr, "\r%s: %ld of %ld (%ld %%)", what_.c_str(), done_, total_, percent);
    std::fflush(stderr);
  }

 private:
  std::string what_;
  long total_, done_ = 0, percent_ = -1;
  bool shown_;
};

#endif
