#include "host/raster/SubStream.h"

#include <limits>
#include <utility>

namespace ravelin {

SubStream::SubStream(var_a_legacy::var_a<TKvStream*> whole, unsigned long start)
    : StreamView(std::move(whole)), start_(start) {}

unsigned long SubStream::Read(void* buffer, unsigned long count) {
  const bool isThere = Stream().SetPos(start_ + GetPos());
  return Advance(isThere ? Stream().Read(buffer, count) : 0, count);
}

bool SubStream::SetPos(unsigned long offset) {
  if (offset > std::numeric_limits<unsigned long>::max() - start_) return false;
  return StreamView::SetPos(offset);
}

unsigned long SubStream::getSize() const {
  const unsigned long size = Stream().getSize();
  return size > start_ ? size - start_ : 0;
}

}  // namespace ravelin
