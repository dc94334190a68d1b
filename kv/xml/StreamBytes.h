// The bytes of a whole stream.
#pragma once

#include <cstddef>
#include <cstdlib>
#include <memory>
#include <string_view>

class TKvStream;

namespace kv {

/// Reads a stream from its beginning, where it can be positioned, to its end. Memory follows the
/// bytes that come, not the size that the stream states. A TKvMemoryStream, of exactly that class,
/// is looked at where it lies and must not change as long. Throws std::bad_alloc.
class StreamBytes {
 public:
  explicit StreamBytes(TKvStream& stream);

  std::string_view View() const { return view_; }

 private:
  struct Free {
    void operator()(char* bytes) const { std::free(bytes); }
  };

  void ReadAll(TKvStream& stream);
  void Grow(std::size_t capacity);

  std::unique_ptr<char, Free> bytes_;
  std::string_view view_;
};

}  // namespace kv
