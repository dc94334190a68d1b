// A part of another stream.
#pragma once

#include "host/raster/StreamView.h"

namespace ravelin {

/// The bytes of another stream from `start` to its end, counted from 0. For pixels that stand
/// behind a header.
class SubStream : public StreamView {
 public:
  SubStream(var_a_legacy::var_a<TKvStream*> whole, unsigned long start);

  unsigned long Read(void* buffer, unsigned long count) override;
  /// False for an offset whose place in the other stream is no number any more.
  bool SetPos(unsigned long offset) override;
  /// 0 when the other stream ends before `start`.
  unsigned long getSize() const override;

 private:
  unsigned long start_;
};

}  // namespace ravelin
