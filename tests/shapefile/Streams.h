// Streams that count, fall short or throw.
#pragma once

#include <algorithm>
#include <stdexcept>
#include <string>
#include <utility>

#include "Kv/Stream.h"

namespace shape_test {

/// A memory stream that counts its calls and delivers or takes `most` bytes in all; from then on it
/// falls short, or throws.
class TLimitedStream : public TKvMemoryStream {
 public:
  explicit TLimitedStream(std::string bytes = std::string()) : TKvMemoryStream(std::move(bytes)) {}

  unsigned long most = ~0UL;
  bool throws = false;
  bool canSetPos = true;
  long reads = 0;
  long writes = 0;

  unsigned long Read(void* buffer, unsigned long count) override {
    ++reads;
    return TKvMemoryStream::Read(buffer, Allowed(count));
  }
  unsigned long Write(const void* buffer, unsigned long count) override {
    ++writes;
    return TKvMemoryStream::Write(buffer, Allowed(count));
  }
  bool SetPos(unsigned long offset) override {
    return canSetPos && TKvMemoryStream::SetPos(offset);
  }

 private:
  unsigned long Allowed(unsigned long count) {
    const unsigned long allowed = std::min(count, most);
    if (throws && allowed < count) throw std::runtime_error("the stream failed");
    most -= allowed;
    return allowed;
  }
};

}  // namespace shape_test
