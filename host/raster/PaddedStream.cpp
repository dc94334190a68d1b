#include "host/raster/PaddedStream.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace ravelin {

PaddedStream::PaddedStream(var_a_legacy::var_a<TKvStream*> shorter, unsigned long size)
    : shorter_(std::move(shorter)), there_(shorter_->getSize() & ~1ul), size_(size) {}

bool PaddedStream::IsOpen() const {
  return shorter_->IsOpen();
}

unsigned long PaddedStream::Read(void* buffer, unsigned long count) {
  const unsigned long left = pos_ < size_ ? size_ - pos_ : 0;
  const unsigned long wanted = std::min(count, left);
  const unsigned long real = pos_ < there_ ? std::min(wanted, there_ - pos_) : 0;
  unsigned long done = 0;
  if (real > 0 && shorter_->SetPos(pos_)) done = shorter_->Read(buffer, real);
  if (done == real) {
    std::memset(static_cast<char*>(buffer) + done, 0, wanted - done);
    done = wanted;
  }
  failed_ = done < count;
  pos_ += done;
  return done;
}

unsigned long PaddedStream::Write(const void*, unsigned long) {
  return 0;
}

bool PaddedStream::SetPos(unsigned long offset) {
  pos_ = offset;
  failed_ = false;
  return true;
}

unsigned long PaddedStream::GetPos() const {
  return pos_;
}
unsigned long PaddedStream::getSize() const {
  return size_;
}
bool PaddedStream::Eof() const {
  return failed_ || pos_ >= size_;
}
void PaddedStream::Purge() {
  shorter_->Purge();
}

}  // namespace ravelin
