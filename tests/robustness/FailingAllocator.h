// Runs an operation again and again, each time with another allocation failing.
//
// An operation whose memory runs out leaves its object as it was or finishes the work, throws
// nothing, and reports it by its result or by lastReason().
#ifndef KROSAC_TESTS_ROBUSTNESS_FAILINGALLOCATOR_H
#define KROSAC_TESTS_ROBUSTNESS_FAILINGALLOCATOR_H

#include <gtest/gtest.h>

#include <functional>
#include <string>

#include "krosac/krosac.h"

namespace krosac {

// Counts down to the allocation that fails; 0 while none is to fail. Only this thread's allocations
// count.
extern thread_local std::ptrdiff_t allocationsUntilFailure;

// One operation: how its object is made, what it does and returns as a text, and all that can be
// seen of the object.
template <typename T>
struct Trial {
  std::function<T()> make;
  std::function<std::string(T&)> run;
  std::function<std::string(const T&)> state;
};

// The result of an operation that succeeds or fails, short enough to need no memory.
inline std::string resultOf(bool good) {
  return good ? "good" : "refused";
}

// The state of an object that can be archived.
inline std::string archivedState(const Archivable& object) {
  const auto bytes = archive(object);
  return bytes ? std::string(bytes->bytes(), bytes->bytes() + bytes->length()) : "";
}

template <typename T>
void expectSafe(const std::string& name, const Trial<T>& trial) {
  SCOPED_TRACE(name);
  T whole = trial.make();
  const std::string before = trial.state(whole), result = trial.run(whole),
                    after = trial.state(whole);
  for (std::ptrdiff_t n = 1;; ++n) {
    T object = trial.make();
    std::string returned, reason;
    bool threw = false;
    allocationsUntilFailure = n;
    try {
      returned = trial.run(object);
    } catch (...) {
      threw = true;
    }
    const bool wasReached = allocationsUntilFailure == 0;
    allocationsUntilFailure = 0;
    if (!wasReached) return;
    reason = lastReason();
    const std::string state = trial.state(object);
    ASSERT_FALSE(threw) << "at allocation " << n;
    const bool isWhole = state == after && returned == result;
    ASSERT_TRUE(isWhole || state == before) << "half done at allocation " << n;
    ASSERT_TRUE(isWhole || returned != result || !reason.empty()) << "silent at allocation " << n;
  }
}

}  // namespace krosac

#endif
