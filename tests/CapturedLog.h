// Captures the texts that the library logs and prints.
#ifndef KROSAC_TESTS_CAPTUREDLOG_H
#define KROSAC_TESTS_CAPTUREDLOG_H

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "krosac/platform/Log.h"

// Collects the texts of the log during its life.
class CapturedLog {
 public:
  CapturedLog() {
    krosac::setLogSink([this](const std::string& text) { texts.push_back(text); });
  }
  ~CapturedLog() { krosac::setLogSink(nullptr); }
  CapturedLog(const CapturedLog&) = delete;
  CapturedLog& operator=(const CapturedLog&) = delete;

  std::vector<std::string> texts;
};

// The action's standard output, a bar, and its standard error.
template <typename Action>
std::string printedBy(Action action) {
  testing::internal::CaptureStdout();
  testing::internal::CaptureStderr();
  action();
  const std::string out = testing::internal::GetCapturedStdout();
  return out + "|" + testing::internal::GetCapturedStderr();
}

#endif
