#include "xml/StreamBytes.h"

#include <algorithm>
#include <new>
#include <typeinfo>

#include "Kv/Stream.h"

namespace kv {

StreamBytes::StreamBytes(TKvStream& stream) {
  if (typeid(stream) == typeid(TKvMemoryStream)) {
    view_ = static_cast<const TKvMemoryStream&>(stream).Bytes();
    stream.SetPos(view_.size());
  } else {
    ReadAll(stream);
  }
}

void StreamBytes::ReadAll(TKvStream& stream) {
  constexpr std::size_t kLeast = std::size_t{64} << 10U;
  constexpr std::size_t kMost = std::size_t{1} << 20U;
  stream.SetPos(0);
  // One byte more than the size, so that a stream that states it rightly is read in one piece.
  std::size_t capacity = std::clamp<std::size_t>(stream.getSize(), kLeast, kMost - 1) + 1;
  std::size_t size = 0;
  Grow(capacity);
  for (;;) {
    const std::size_t wanted = capacity - size;
    const std::size_t got = std::min<std::size_t>(stream.Read(bytes_.get() + size, wanted), wanted);
    if (got == 0) break;
    size += got;
    if (size == capacity) Grow(capacity *= 2);
  }
  view_ = {bytes_.get(), size};
}

void StreamBytes::Grow(std::size_t capacity) {
  char* grown = static_cast<char*>(std::realloc(bytes_.get(), capacity));
  if (grown == nullptr) throw std::bad_alloc();
  static_cast<void>(bytes_.release());  // freed already
  bytes_.reset(grown);
}

}  // namespace kv
