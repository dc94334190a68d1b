// A stream that fails at a call or at a byte.
#pragma once

#include <algorithm>
#include <cstring>
#include <stdexcept>
#include <string>
#include <utility>

#include "Kv/Stream.h"

namespace ravelin_test {

/// What a FaultyStream throws.
class StreamFault : public std::runtime_error {
 public:
  StreamFault() : std::runtime_error("the stream failed") {}
};

/// How a call fails.
enum class FaultKind {
  kNone,      ///< it does not
  kShort,     ///< it moves one byte less than it is asked to, or does not go to the position
  kNothing,   ///< it moves no byte, or does not go to the position
  kThrowing,  ///< it throws StreamFault
};

/// Holds bytes in memory. Reads, writes and positionings are counted together from 0: the one with
/// the number `call` fails, and with `byte` the transfer that would reach behind that many bytes.
class FaultyStream : public TKvStream {
 public:
  explicit FaultyStream(std::string bytes = {}) : bytes_(std::move(bytes)) {}

  FaultKind kind = FaultKind::kNone;
  unsigned long call = ~0ul;
  unsigned long byte = ~0ul;
  bool failed = false;       ///< whether a call has
  bool calledLater = false;  ///< whether something was read or written after that

  const std::string& Bytes() const { return bytes_; }

  bool IsOpen() const override { return true; }
  unsigned long Read(void* buffer, unsigned long count) override {
    const unsigned long left = bytes_.size() - std::min<unsigned long>(pos_, bytes_.size());
    const unsigned long got = Allowed(std::min(count, left));
    std::memcpy(buffer, bytes_.data() + std::min<unsigned long>(pos_, bytes_.size()), got);
    pos_ += got;
    return got;
  }
  unsigned long Write(const void* buffer, unsigned long count) override {
    const unsigned long taken = Allowed(count);
    if (bytes_.size() < pos_ + taken) bytes_.resize(pos_ + taken);
    std::memcpy(bytes_.data() + pos_, buffer, taken);
    pos_ += taken;
    return taken;
  }
  bool SetPos(unsigned long offset) override {
    if (Fails(0)) return false;
    pos_ = offset;
    return true;
  }
  unsigned long GetPos() const override { return pos_; }
  unsigned long getSize() const override { return bytes_.size(); }
  bool Eof() const override { return pos_ >= bytes_.size() || failed; }

 private:
  bool Fails(unsigned long count) {
    if (failed) calledLater = true;
    moved_ += count;
    const bool fails = calls_++ == call || (!failed && moved_ > byte);
    if (!fails || kind == FaultKind::kNone) return false;
    failed = true;
    if (kind == FaultKind::kThrowing) throw StreamFault();
    return true;
  }
  unsigned long Allowed(unsigned long count) {
    const unsigned long before = moved_;
    if (!Fails(count)) return count;
    if (kind == FaultKind::kNothing || count == 0) return 0;
    return byte == ~0ul ? count - 1 : std::min(count - 1, byte - std::min(byte, before));
  }

  std::string bytes_;
  unsigned long pos_ = 0;
  unsigned long calls_ = 0;
  unsigned long moved_ = 0;
};

}  // namespace ravelin_test
