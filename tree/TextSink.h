// Text written into memory that the caller has, or only measured.
#pragma once

#include <charconv>
#include <cstddef>
#include <cstring>
#include <limits>
#include <stdexcept>
#include <string>

namespace SatCommonUtils {

/// Puts pieces one behind the other from `buffer + position` on. Without a buffer it only counts.
/// Throws std::length_error when the position would not fit its type.
class TTextSink {
 public:
  TTextSink(char* buffer, std::size_t position) : buffer_(buffer), position_(position) {}

  char* Buffer() const { return buffer_; }
  std::size_t Position() const { return position_; }
  /// Over `length` bytes that someone else wrote.
  void Skip(std::size_t length) {
    if (length > std::numeric_limits<std::size_t>::max() - position_) {
      throw std::length_error("the text of a data tree is too long");
    }
    position_ += length;
  }

  void Put(char c) {
    if (buffer_ != nullptr) buffer_[position_] = c;
    Skip(1);
  }
  void Put(const std::string& text) {
    if (buffer_ != nullptr) std::memcpy(buffer_ + position_, text.data(), text.size());
    Skip(text.size());
  }
  void PutTabs(std::size_t count) {
    if (buffer_ != nullptr) std::memset(buffer_ + position_, '\t', count);
    Skip(count);
  }
  template <class Number>
  void PutNumber(Number number) {
    char digits[std::numeric_limits<Number>::digits10 + 2];
    const std::to_chars_result result = std::to_chars(digits, digits + sizeof digits, number);
    const auto length = static_cast<std::size_t>(result.ptr - digits);
    if (buffer_ != nullptr) std::memcpy(buffer_ + position_, digits, length);
    Skip(length);
  }

 private:
  char* buffer_;
  std::size_t position_;
};

}  // namespace SatCommonUtils
