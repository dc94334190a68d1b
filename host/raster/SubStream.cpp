#include "host/raster/SubStream.h"

#include <limits>
#include <utility>

namespace ravelin {

SubStream::SubStream(var_a_legacy::var_a<TKvStream*> whole, unsigned long start)
    : whole_(std::move(whole)), start_(start) {}

bool SubStream::IsOpen() const {
  return whole_->IsOpen();
}

unsigned long SubStream::Read(void* buffer, unsigned long count) {
  if (!whole_->SetPos(start_ + pos_)) {
    failed_ = true;
    return 0;
  }
  const unsigned long done = whole_->Read(buffer, count);
  failed_ = done < count;
  pos_ += done;
  return done;
}

unsigned long SubStream::Write(const void*, unsigned long) {
  return 0;
}

bool SubStream::SetPos(unsigned long offset) {
  if (offset > std::numeric_limits<unsigned long>::max() - start_) return false;
  pos_ = offset;
  failed_ = false;
  return true;
}

unsigned long SubStream::GetPos() const {
  return pos_;
}

unsigned long SubStream::getSize() const {
  const unsigned long size = whole_->getSize();
  return size > start_ ? size - start_ : 0;
}

bool SubStream::Eof() const {
  return failed_ || pos_ >= getSize();
}

void SubStream::Purge() {
  whole_->Purge();
}

}  // namespace ravelin
