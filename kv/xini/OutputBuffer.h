// Buffered output to a stream that knows when something was lost.
#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <string_view>

#include "Kv/Stream.h"
#include "Kv/VarA.h"

namespace kv {

/// Collects up to 64 KiB before it writes. Once a write fell short, nothing more is given to the
/// stream. Nothing throws.
class OutputBuffer {
 public:
  static constexpr std::size_t kCapacity = std::size_t{64} << 10U;

  explicit OutputBuffer(var_a_legacy::var_a<TKvStream*> stream);

  void Append(std::string_view text) {
    if (text.size() > kCapacity - used_) {
      AppendBeyond(text);
      return;
    }
    text.copy(buffer_.data() + used_, text.size());
    used_ += text.size();
  }
  void Append(char c) { Append(std::string_view(&c, 1)); }
  /// Room for `size` bytes, at most kCapacity, that are about to be written; Took then says where
  /// they end.
  char* Room(std::size_t size) {
    if (size > kCapacity - used_) Flush();
    return buffer_.data() + used_;
  }
  void Took(const char* end) { used_ = static_cast<std::size_t>(end - buffer_.data()); }
  void Flush();

  bool HasFailed() const { return hasFailed_; }
  /// What was lost, in words.
  std::string Failure() const;

 private:
  void AppendBeyond(std::string_view text);
  void Send(std::string_view text);

  var_a_legacy::var_a<TKvStream*> stream_;
  std::array<char, kCapacity> buffer_;
  std::size_t used_ = 0;
  std::size_t wanted_ = 0;
  std::size_t taken_ = 0;
  bool hasFailed_ = false;
};

}  // namespace kv
