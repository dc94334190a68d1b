// A part of another stream.
#pragma once

#include "Kv/Stream.h"
#include "Kv/VarA.h"

namespace ravelin {

/// The bytes of another stream from `start` to its end, as a read-only stream of its own that
/// counts from 0. For pixels that stand behind a header.
///
/// Shares the other stream and moves its position: one sub-stream at a time may use it. Keeps its
/// own position. Not copyable.
class SubStream : public TKvStream {
 public:
  SubStream(var_a_legacy::var_a<TKvStream*> whole, unsigned long start);

  bool IsOpen() const override;
  unsigned long Read(void* buffer, unsigned long count) override;
  /// Writes nothing: 0.
  unsigned long Write(const void* buffer, unsigned long count) override;
  /// False for an offset whose place in the other stream is no number any more.
  bool SetPos(unsigned long offset) override;
  unsigned long GetPos() const override;
  /// 0 when the other stream ends before `start`.
  unsigned long getSize() const override;
  bool Eof() const override;
  void Purge() override;

 private:
  var_a_legacy::var_a<TKvStream*> whole_;
  unsigned long start_;
  unsigned long pos_ = 0;
  bool failed_ = false;
};

}  // namespace ravelin
