#include "host/ProgressBar.h"

#include <unistd.h>

#include <algorithm>
#include <iostream>
#include <string>

namespace ravelin {
namespace {

constexpr int kBarWidth = 40;

std::string Drawing(int percent) {
  const auto full = static_cast<std::size_t>(percent * kBarWidth / 100);
  const std::string bar = std::string(full, '#') + std::string(kBarWidth - full, '.');
  const std::string number = std::to_string(percent);
  return "\r[" + bar + "] " + std::string(3 - number.size(), ' ') + number + " %";
}

}  // namespace

ProgressBar::ProgressBar(std::ostream* out, unsigned long total) : out_(out), total_(total) {}

ProgressBar::~ProgressBar() {
  ProgressBar::Stop();
}

bool ProgressBar::NeedsService() {
  return false;
}

void ProgressBar::Service() {}

void ProgressBar::Step(unsigned long done) {
  if (out_ == nullptr || total_ == 0) return;
  const double part = static_cast<double>(std::min(done, total_)) / static_cast<double>(total_);
  const int percent = static_cast<int>(part * 100);
  if (percent == percent_) return;
  percent_ = percent;
  *out_ << Drawing(percent) << std::flush;
}

void ProgressBar::Stop() {
  if (percent_ < 0) return;
  percent_ = -1;
  *out_ << "\r\x1b[K" << std::flush;
}

std::ostream* ProgressTerminal() {
  return isatty(STDERR_FILENO) == 1 ? &std::cerr : nullptr;
}

}  // namespace ravelin
