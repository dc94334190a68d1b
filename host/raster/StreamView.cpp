#include "host/raster/StreamView.h"

#include <utility>

namespace ravelin {

StreamView::StreamView(var_a_legacy::var_a<TKvStream*> stream) : stream_(std::move(stream)) {}

bool StreamView::IsOpen() const {
  return Stream().IsOpen();
}

unsigned long StreamView::Write(const void*, unsigned long) {
  return 0;
}

bool StreamView::SetPos(unsigned long offset) {
  pos_ = offset;
  failed_ = false;
  return true;
}

unsigned long StreamView::GetPos() const {
  return pos_;
}

bool StreamView::Eof() const {
  return failed_ || pos_ >= getSize();
}

void StreamView::Purge() {
  Stream().Purge();
}

unsigned long StreamView::Advance(unsigned long done, unsigned long count) {
  failed_ = done < count;
  pos_ += done;
  return done;
}

}  // namespace ravelin
