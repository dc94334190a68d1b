#include <algorithm>
#include <cstring>
#include <functional>
#include <new>
#include <utility>

#include "Kv/Stream.h"

namespace {

bool IsInside(const std::string& bytes, const char* at) {
  const std::less<> before;
  return !before(at, bytes.data()) && before(at, bytes.data() + bytes.size());
}

// To a size that a string may have. False, and nothing changed, when memory cannot hold that many.
bool Grow(std::string& bytes, std::string::size_type size) {
  try {
    bytes.resize(size);
    return true;
  } catch (const std::bad_alloc&) {
    return false;
  }
}

}  // namespace

TKvMemoryStream::TKvMemoryStream() = default;
TKvMemoryStream::TKvMemoryStream(std::string bytes) : bytes_(std::move(bytes)) {}
TKvMemoryStream::~TKvMemoryStream() = default;

const std::string& TKvMemoryStream::Bytes() const {
  return bytes_;
}

bool TKvMemoryStream::IsOpen() const {
  return true;
}

unsigned long TKvMemoryStream::Read(void* buffer, unsigned long count) {
  const unsigned long got = std::min(count, Left());
  if (got > 0) std::memcpy(buffer, bytes_.data() + pos_, got);
  pos_ += got;
  return got;
}

unsigned long TKvMemoryStream::Write(const void* buffer, unsigned long count) {
  if (count == 0 || count > bytes_.max_size() || pos_ > bytes_.max_size() - count) return 0;
  const char* from = static_cast<const char*>(buffer);
  // The stream's own bytes may move when it grows.
  const bool own = IsInside(bytes_, from);
  const auto offset = own ? from - bytes_.data() : 0;
  if (pos_ + count > bytes_.size() && !Grow(bytes_, pos_ + count)) return 0;
  if (own) from = bytes_.data() + offset;
  std::memmove(bytes_.data() + pos_, from, count);
  pos_ += count;
  return count;
}

bool TKvMemoryStream::SetPos(unsigned long offset) {
  pos_ = offset;
  stopped_ = false;
  return true;
}

unsigned long TKvMemoryStream::GetPos() const {
  return pos_;
}

unsigned long TKvMemoryStream::getSize() const {
  return bytes_.size();
}

bool TKvMemoryStream::Eof() const {
  return stopped_ || Left() == 0;
}

unsigned long TKvMemoryStream::ReadLine(char* buffer, unsigned long size) {
  if (size == 0) {
    stopped_ = true;
    return 0;
  }
  const char* const next = bytes_.data() + (bytes_.size() - Left());
  const auto* const lf = static_cast<const char*>(std::memchr(next, '\n', std::min(Left(), size)));
  const unsigned long text =
      lf ? static_cast<unsigned long>(lf - next) : std::min(Left(), size - 1);
  std::memcpy(buffer, next, text);
  buffer[text] = '\0';
  const unsigned long consumed = lf ? text + 1 : text;
  // Without room for a byte no call will ever come further.
  if (consumed == 0) stopped_ = true;
  pos_ += consumed;
  return consumed;
}

unsigned long TKvMemoryStream::Left() const {
  return bytes_.size() - std::min<unsigned long>(pos_, bytes_.size());
}
