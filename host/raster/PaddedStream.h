// A stream that is longer than what it is read from.
#pragma once

#include "host/raster/StreamView.h"

namespace ravelin {

/// Another stream's bytes followed by zero bytes up to `size`: a band file that was cut short reads
/// as one whose missing pixels are black. A byte that is left of a two-byte sample is missing too.
/// A read that fails before the other stream's end stays a failed read.
class PaddedStream : public StreamView {
 public:
  PaddedStream(var_a_legacy::var_a<TKvStream*> shorter, unsigned long size);

  unsigned long Read(void* buffer, unsigned long count) override;
  unsigned long getSize() const override;

 private:
  unsigned long there_;  // bytes taken from the other stream
  unsigned long size_;
};

}  // namespace ravelin
