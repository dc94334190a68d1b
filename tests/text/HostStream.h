// A stream of a host's own over given bytes: tells what was asked of it, and fails on demand.
#pragma once

#include <algorithm>
#include <cstring>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "Kv/Stream.h"

namespace text_test {

class HostStream : public TKvStream {
 public:
  enum class Call { kNone, kSetPos, kGetPos, kGetSize, kRead };

  explicit HostStream(std::string bytes) : size(bytes.size()), bytes_(std::move(bytes)) {}

  unsigned long size;                     ///< that it claims to have
  unsigned long readable = ~0ul;          ///< bytes in front that can be read
  bool seeks = true;                      ///< whether SetPos works
  Call throwing = Call::kNone;            ///< throws std::runtime_error
  std::vector<unsigned long> readCounts;  ///< what each Read was asked for
  std::vector<unsigned long> setOffsets;  ///< where each SetPos was to go

  bool IsOpen() const override { return true; }
  unsigned long Read(void* buffer, unsigned long count) override {
    Enter(Call::kRead);
    readCounts.push_back(count);
    const unsigned long end = std::min<unsigned long>(bytes_.size(), readable);
    const unsigned long got = pos_ < end ? std::min(count, end - pos_) : 0;
    std::memcpy(buffer, bytes_.data() + (got == 0 ? 0 : pos_), got);
    pos_ += got;
    return got;
  }
  unsigned long Write(const void* /*buffer*/, unsigned long /*count*/) override { return 0; }
  bool SetPos(unsigned long offset) override {
    setOffsets.push_back(offset);
    Enter(Call::kSetPos);
    if (seeks) pos_ = offset;
    return seeks;
  }
  unsigned long GetPos() const override {
    Enter(Call::kGetPos);
    return pos_;
  }
  unsigned long getSize() const override {
    Enter(Call::kGetSize);
    return size;
  }
  bool Eof() const override { return pos_ >= bytes_.size(); }

  unsigned long Position() const { return pos_; }

 private:
  void Enter(Call call) const {
    if (call == throwing) throw std::runtime_error("the host's own");
  }

  std::string bytes_;
  unsigned long pos_ = 0;
};

}  // namespace text_test
