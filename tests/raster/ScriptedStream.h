// A stream that records what is asked of it and fails on demand.
#pragma once

#include <algorithm>
#include <cstring>
#include <stdexcept>
#include <string>
#include <vector>

#include "Kv/Stream.h"

namespace raster_test {

/// Serves `bytes`. Reads and positionings are counted from 0; -1 means that none fails.
class ScriptedStream : public TKvStream {
 public:
  struct Transfer {
    unsigned long position;
    unsigned long count;
    bool operator==(const Transfer&) const = default;
  };

  std::string bytes;
  bool endless = false;           ///< serves the low byte of every position, whatever `bytes` holds
  unsigned long claimedSize = 0;  ///< what getSize() says
  int throwingSetPos = -1;
  int refusedSetPos = -1;
  bool throwsInPurge = false;
  int throwingRead = -1;     ///< scribbles over the buffer, then throws
  bool throwsAnInt = false;  ///< what is thrown is no std::exception
  int shortRead = -1;        ///< gives `shortBy` bytes less
  unsigned long shortBy = 1;
  unsigned long boast = 0;  ///< added to the count that Read returns

  std::vector<Transfer> reads;
  std::string calls;  ///< 'S' for SetPos, 'R' for Read, 'P' for Purge
  int purges = 0;

  bool IsOpen() const override { return true; }

  unsigned long Read(void* buffer, unsigned long count) override {
    calls += 'R';
    reads.push_back({position_, count});
    const int number = static_cast<int>(reads.size()) - 1;
    if (number == throwingRead) {
      std::memset(buffer, 0xEE, count);
      Throw("read");
    }
    const unsigned long wanted = number == shortRead ? count - std::min(shortBy, count) : count;
    const unsigned long got = Copy(static_cast<char*>(buffer), wanted);
    position_ += got;
    return got + boast;
  }

  bool SetPos(unsigned long offset) override {
    calls += 'S';
    const int number = setPosCount_++;
    if (number == throwingSetPos) Throw("position");
    if (number == refusedSetPos) return false;
    position_ = offset;
    return true;
  }

  void Purge() override {
    calls += 'P';
    ++purges;
    if (throwsInPurge) Throw("purge");
  }

  unsigned long Write(const void*, unsigned long) override { return 0; }
  unsigned long GetPos() const override { return position_; }
  unsigned long getSize() const override { return claimedSize; }
  bool Eof() const override { return position_ >= bytes.size(); }

  void Forget() {
    reads.clear();
    calls.clear();
    setPosCount_ = 0;
  }

 private:
  unsigned long Copy(char* buffer, unsigned long count) const {
    if (endless) {
      for (unsigned long i = 0; i < count; ++i) buffer[i] = static_cast<char>(position_ + i);
      return count;
    }
    if (position_ >= bytes.size()) return 0;
    const unsigned long got = std::min<unsigned long>(count, bytes.size() - position_);
    std::memcpy(buffer, bytes.data() + position_, got);
    return got;
  }

  [[noreturn]] void Throw(const char* what) const {
    if (throwsAnInt) throw 7;
    throw std::runtime_error(what);
  }

  unsigned long position_ = 0;
  int setPosCount_ = 0;
};

}  // namespace raster_test
