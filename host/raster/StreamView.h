// A read-only stream on another one.
#pragma once

#include "Kv/Stream.h"
#include "Kv/VarA.h"

namespace ravelin {

/// What streams that show another one's bytes in their own way have in common: a position of their
/// own, which begins at 0, and no writing. A class of it says what is read and how long it is.
///
/// Shares the other stream and moves its position: one view at a time may use it. Not copyable.
class StreamView : public TKvStream {
 public:
  bool IsOpen() const override;
  /// Writes nothing: 0.
  unsigned long Write(const void* buffer, unsigned long count) override;
  bool SetPos(unsigned long offset) override;
  unsigned long GetPos() const override;
  bool Eof() const override;
  void Purge() override;

 protected:
  explicit StreamView(var_a_legacy::var_a<TKvStream*> stream);

  TKvStream& Stream() const { return *stream_; }
  /// Of a read of `count` bytes that gave `done`, which it returns.
  unsigned long Advance(unsigned long done, unsigned long count);

 private:
  var_a_legacy::var_a<TKvStream*> stream_;
  unsigned long pos_ = 0;
  bool failed_ = false;
};

}  // namespace ravelin
