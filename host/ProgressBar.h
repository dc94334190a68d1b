// How far the work is, drawn on a terminal.
#pragma once

#include <ostream>

#include "Kv/Progress.h"

namespace ravelin {

/// A bar with a percentage on one line of a terminal, taken away when the work stops.
class ProgressBar : public TKvProgressHandler {
 public:
  /// Draws on `out` (null: nothing is drawn); the work is done after `total` steps.
  ProgressBar(std::ostream* out, unsigned long total);
  ProgressBar(const ProgressBar&) = delete;
  ProgressBar& operator=(const ProgressBar&) = delete;
  /// Stops.
  ~ProgressBar() override;

  bool NeedsService() override;
  void Service() override;
  /// Draws when the percentage has changed.
  void Step(unsigned long done) override;
  /// Clears the line.
  void Stop() override;

 private:
  std::ostream* out_;
  unsigned long total_;
  int percent_ = -1;
};

/// Standard error when it is a terminal, else null.
std::ostream* ProgressTerminal();

}  // namespace ravelin
