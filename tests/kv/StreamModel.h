// What a stream over given bytes has to answer, written as plainly as can be.
#pragma once

#include <algorithm>
#include <memory>
#include <random>
#include <string>

#include "Kv/Stream.h"
#include "gtest/gtest.h"

namespace kv_test {

class StreamModel {
 public:
  explicit StreamModel(std::string bytes) : bytes_(std::move(bytes)) {}

  std::string Read(unsigned long count) {
    std::string read;
    while (read.size() < count && pos_ < bytes_.size()) read += bytes_[pos_++];
    return read;
  }
  void SetPos(unsigned long pos) {
    pos_ = pos;
    stuck_ = false;
  }
  unsigned long GetPos() const { return pos_; }
  bool Eof() const { return stuck_ || pos_ >= bytes_.size(); }
  /// The text of the line; `consumed` is what ReadLine returns.
  std::string ReadLine(unsigned long size, unsigned long& consumed) {
    std::string text;
    const unsigned long begin = pos_;
    while (size > 0 && pos_ < bytes_.size()) {
      if (bytes_[pos_] == '\n') {
        ++pos_;
        break;
      }
      if (text.size() + 1 >= size) break;
      text += bytes_[pos_++];
    }
    consumed = pos_ - begin;
    if (consumed == 0) stuck_ = true;
    return text;
  }

 private:
  std::string bytes_;
  unsigned long pos_ = 0;
  bool stuck_ = false;
};

/// Bytes with many line ends and zeros in them, and runs of both.
inline std::string LineLikeBytes(std::mt19937& random, unsigned long size) {
  std::string bytes;
  while (bytes.size() < size) {
    const unsigned long run = random() % 8 == 0 ? random() % 3000 : random() % 30;
    const char* const kinds = "\n\0\rab\xff";
    const char byte = kinds[random() % 6];
    bytes.append(std::min<unsigned long>(run, size - bytes.size()), byte);
    if (random() % 2 == 0 && bytes.size() < size) bytes += '\n';
  }
  return bytes;
}

/// Reads `count` bytes into a buffer of exactly that size.
inline std::string ReadExact(TKvStream& stream, unsigned long count) {
  const auto buffer = std::make_unique<char[]>(count);
  const unsigned long got = stream.Read(buffer.get(), count);
  return {buffer.get(), std::min(got, count)};
}

struct Line {
  unsigned long consumed;
  std::string text;
};

/// Reads a line into a buffer of exactly `size` bytes.
inline Line ReadLineExact(TKvStream& stream, unsigned long size) {
  const auto buffer = std::make_unique<char[]>(size);
  std::fill_n(buffer.get(), size, '#');
  const unsigned long consumed = stream.ReadLine(buffer.get(), size);
  if (size == 0) return {consumed, ""};
  // The text ends with the NUL that is stored behind it; it may hold others.
  std::string stored(buffer.get(), size);
  const auto end = stored.find_last_not_of('#');
  EXPECT_NE(end, std::string::npos);
  EXPECT_EQ(stored[end], '\0');
  return {consumed, stored.substr(0, end)};
}

/// Does one random operation on both and compares.
inline void StepAndCompare(TKvStream& stream, StreamModel& model, std::mt19937& random,
                           unsigned long size) {
  switch (random() % 8) {
    case 0: {
      const unsigned long pos = random() % (size + size / 8 + 2);
      ASSERT_TRUE(stream.SetPos(pos));
      model.SetPos(pos);
      break;
    }
    case 1:
    case 2: {
      const unsigned long count = random() % (random() % 4 == 0 ? 20000 : 50);
      ASSERT_EQ(ReadExact(stream, count), model.Read(count));
      break;
    }
    case 3:
      stream.Purge();
      break;
    default: {
      const unsigned long room = random() % (random() % 4 == 0 ? 20000 : 40);
      unsigned long consumed = 0;
      const std::string text = model.ReadLine(room, consumed);
      const Line line = ReadLineExact(stream, room);
      ASSERT_EQ(line.text, text);
      ASSERT_EQ(line.consumed, consumed);
    }
  }
  ASSERT_EQ(stream.GetPos(), model.GetPos());
  ASSERT_EQ(stream.Eof(), model.Eof());
  ASSERT_EQ(stream.getSize(), size);
}

}  // namespace kv_test
