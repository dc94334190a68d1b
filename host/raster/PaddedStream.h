// A stream that is longer than what it is read from.
#pragma once

#include "Kv/Stream.h"
#include "Kv/VarA.h"

namespace ravelin {

/// Another stream's bytes followed by zero bytes up to `size`: a band file that was cut short reads
/// as one whose missing pixels are black. A byte that is left of a two-byte sample is missing too.
///
/// Read-only. Shares the other stream and moves its position. A read that fails before the other
/// stream's end stays a failed read.
class PaddedStream : public TKvStream {
 public:
  PaddedStream(var_a_legacy::var_a<TKvStream*> shorter, unsigned long size);

  bool IsOpen() const override;
  unsigned long Read(void* buffer, unsigned long count) override;
  /// Writes nothing: 0.
  unsigned long Write(const void* buffer, unsigned long count) override;
  bool SetPos(unsigned long offset) override;
  unsigned long GetPos() const override;
  unsigned long getSize() const override;
  bool Eof() const override;
  void Purge() override;

 private:
  var_a_legacy::var_a<TKvStream*> shorter_;
  unsigned long there_;  // bytes taken from the other stream
  unsigned long size_;
  unsigned long pos_ = 0;
  bool failed_ = false;
};

}  // namespace ravelin
