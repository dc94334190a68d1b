/// @file
/// Progress reporting: the host's handler and the scopes that drive it.
#pragma once

#include "Kv/Export.h"

/// The host's side of progress. Called on the thread that does the work.
class KV_EXPORT TKvProgressHandler {
 public:
  virtual ~TKvProgressHandler();
  /// Does the handler want attention now?
  virtual bool NeedsService() = 0;
  /// Gives it.
  virtual void Service() = 0;
  /// Work begins; `indefinite`: how much there is is not known. Nothing here.
  virtual void Start(bool indefinite);
  /// `done` steps of it are done. Nothing here.
  virtual void Step(unsigned long done);
  /// It has ended. Nothing here.
  virtual void Stop();
};

/// A scope of work; stops at destruction if it still runs. Does not own the handler, which must
/// outlive it. A null handler: nothing happens. An exception from the handler's Stop at destruction
/// is lost.
class KV_EXPORT TKvProgress {
 public:
  /// `tag` is the host's own and kept.
  TKvProgress(TKvProgressHandler* handler, bool tag);
  TKvProgress(const TKvProgress&) = delete;
  TKvProgress& operator=(const TKvProgress&) = delete;
  ~TKvProgress();

  /// The tag that it was made with.
  bool Tag() const { return tag_; }
  /// Calls the handler's Start(true). When that throws, the scope does not run on its account.
  void StartIndefinite();
  /// Calls the handler's Stop() once; nothing when the scope does not run.
  void Stop();

 private:
  TKvProgressHandler* handler_;
  bool tag_;
  bool running_ = false;
};

/// Counts steps of an unknown total: Start(true) when made, Step(1), Step(2), ... at each Next(),
/// Stop() when destroyed. Ownership and null handler as for TKvProgress.
class KV_EXPORT TKvStepProgress {
 public:
  /// Calls the handler's Start(true).
  explicit TKvStepProgress(TKvProgressHandler* handler);
  TKvStepProgress(const TKvStepProgress&) = delete;
  TKvStepProgress& operator=(const TKvStepProgress&) = delete;
  ~TKvStepProgress();

  /// One more step is done.
  void Next();

 private:
  TKvProgressHandler* handler_;
  unsigned long done_ = 0;
};
