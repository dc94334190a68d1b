// A progress handler that records what it is asked and told.
#pragma once

#include <functional>
#include <string>
#include <utility>

#include "Kv/Progress.h"

namespace files_test {

class ProgressLog : public TKvProgressHandler {
 public:
  /// Wants service at every `period`-th question; never when it is 0.
  explicit ProgressLog(unsigned long period) : period_(period) {}

  bool NeedsService() override {
    calls += 'q';
    ++questions;
    return period_ != 0 && questions % period_ == 0;
  }
  void Service() override {
    calls += 's';
    if (onService) onService();
  }
  void Start(bool indefinite) override { calls += indefinite ? 'I' : 'D'; }
  void Step(unsigned long) override { calls += '+'; }
  void Stop() override {
    calls += '.';
    if (onStop) onStop();
  }

  std::string calls;  ///< a letter a call
  unsigned long questions = 0;
  std::function<void()> onService;
  std::function<void()> onStop;

 private:
  unsigned long period_;
};

}  // namespace files_test
