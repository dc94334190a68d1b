#include "Kv/Progress.h"

namespace {

// For destructors, where an exception must not leave.
void StopQuietly(TKvProgressHandler& handler) noexcept {
  try {
    handler.Stop();
  } catch (...) {  // NOLINT(bugprone-empty-catch): the header says that it is lost
  }
}

}  // namespace

TKvProgressHandler::~TKvProgressHandler() = default;
void TKvProgressHandler::Start(bool /*indefinite*/) {}
void TKvProgressHandler::Step(unsigned long /*done*/) {}
void TKvProgressHandler::Stop() {}

TKvProgress::TKvProgress(TKvProgressHandler* handler, bool tag) : handler_(handler), tag_(tag) {}

TKvProgress::~TKvProgress() {
  if (running_) StopQuietly(*handler_);
}

void TKvProgress::StartIndefinite() {
  if (handler_ == nullptr) return;
  handler_->Start(true);
  running_ = true;
}

void TKvProgress::Stop() {
  if (!running_) return;
  running_ = false;
  handler_->Stop();
}

TKvStepProgress::TKvStepProgress(TKvProgressHandler* handler) : handler_(handler) {
  if (handler_ != nullptr) handler_->Start(true);
}

TKvStepProgress::~TKvStepProgress() {
  if (handler_ != nullptr) StopQuietly(*handler_);
}

void TKvStepProgress::Next() {
  ++done_;
  if (handler_ != nullptr) handler_->Step(done_);
}
