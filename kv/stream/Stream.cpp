#include "Kv/Stream.h"

#include <algorithm>
#include <cstring>

namespace {

constexpr unsigned long kFirstPortion = 64;

// Fills `buffer` from the stream until it holds an LF, `size` bytes, or the stream gives no more.
// The portions double, so that a short line costs little and a long one few reads; `portion` 1 and
// `growth` 1 never read behind the LF. Returns the bytes read.
unsigned long ReadThroughLf(TKvStream& stream, char* buffer, unsigned long size,
                            unsigned long portion, unsigned long growth) {
  unsigned long total = 0;
  while (total < size) {
    const unsigned long asked = std::min(portion, size - total);
    const unsigned long got = std::min(stream.Read(buffer + total, asked), asked);
    const bool found = std::memchr(buffer + total, '\n', got) != nullptr;
    total += got;
    if (found || got < asked) break;
    portion *= growth;
  }
  return total;
}

}  // namespace

TKvStream::~TKvStream() = default;

unsigned long TKvStream::ReadLine(char* buffer, unsigned long size) {
  if (size == 0) return 0;
  const unsigned long begin = GetPos();
  // A stream that cannot move is read byte by byte: what is read too far could not be given back.
  const bool movable = SetPos(begin);
  const unsigned long room = movable ? size : size - 1;
  const unsigned long total =
      ReadThroughLf(*this, buffer, room, movable ? kFirstPortion : 1, movable ? 2 : 1);
  const auto* const lf = static_cast<const char*>(std::memchr(buffer, '\n', total));
  const unsigned long text =
      std::min(lf ? static_cast<unsigned long>(lf - buffer) : total, size - 1);
  const unsigned long consumed = lf ? text + 1 : text;
  if (consumed < total) SetPos(begin + consumed);
  buffer[text] = '\0';
  return consumed;
}

void TKvStream::Purge() {}
