// The bytes of a whole stream.
#pragma once

#include <cstddef>
#include <cstdlib>
#include <memory>
#include <string_view>

class TKvStream;

namespace kv {

/// Reads a stream from its beginning, where it can be positioned, to its end. Memory follows the
/// bytes that come, not the size that the stream states. Throws std::bad_alloc.
class StreamBytes {
 public:
  explicit StreamBytes(TKvStream& stream);

  std::string_view View() const { return {bytes_.get(), size_}; }

 private:
  struct Free {
    void operator()(char* bytes) const { std::free(bytes); }
  };

  void Grow(std::size_t capacity);

  std::unique_ptr<char, Free> bytes_;
  std::size_t size_ = 0;
};

}  // namespace kv
