// Collects the log's texts while it lives.
#ifndef KROSAC_TESTS_CAPTUREDLOG_H
#define KROSAC_TESTS_CAPTUREDLOG_H

#include <string>
#include <vector>

#include "krosac/platform/Log.h"

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

#endif
