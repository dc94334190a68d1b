// A progress handler that remembers what it was told.
#pragma once

#include <stdexcept>

#include "Kv/Progress.h"

namespace text_test {

class RecordingProgress : public TKvProgressHandler {
 public:
  /// Throws std::runtime_error at the step of that number; never at 0.
  explicit RecordingProgress(unsigned long failingStep = 0) : failingStep_(failingStep) {}

  bool NeedsService() override { return false; }
  void Service() override {}
  void Start(bool indefinite) override {
    ++starts;
    isIndefinite = indefinite;
  }
  void Step(unsigned long done) override {
    steps = done;
    if (done == failingStep_) throw std::runtime_error("the handler gives up");
  }
  void Stop() override { ++stops; }

  int starts = 0;
  int stops = 0;
  bool isIndefinite = false;
  unsigned long steps = 0;

 private:
  unsigned long failingStep_;
};

}  // namespace text_test
