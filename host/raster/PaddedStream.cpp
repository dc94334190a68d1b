#include "host/raster/PaddedStream.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace ravelin {

PaddedStream::PaddedStream(var_a_legacy::var_a<TKvStream*> shorter, unsigned long size)
    : StreamView(std::move(shorter)), there_(Stream().getSize() & ~1ul), size_(size) {}

unsigned long PaddedStream::Read(void* buffer, unsigned long count) {
  const unsigned long pos = GetPos();
  const unsigned long left = pos < size_ ? size_ - pos : 0;
  const unsigned long wanted = std::min(count, left);
  const unsigned long real = pos < there_ ? std::min(wanted, there_ - pos) : 0;
  unsigned long done = 0;
  if (real > 0 && Stream().SetPos(pos)) done = Stream().Read(buffer, real);
  if (done == real) {
    std::memset(static_cast<char*>(buffer) + done, 0, wanted - done);
    done = wanted;
  }
  return Advance(done, count);
}

unsigned long PaddedStream::getSize() const {
  return size_;
}

}  // namespace ravelin
