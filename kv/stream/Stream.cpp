#include "Kv/Stream.h"

#include <algorithm>
#include <cstring>

namespace {

// Lines are read in portions that double, so that a short line costs little and a long one few
// reads.
constexpr unsigned long kFirstPortion = 64;
constexpr unsigned long kLastPortion = 4096;

}  // namespace

TKvStream::~TKvStream() = default;

unsigned long TKvStream::ReadLine(char* buffer, unsigned long size) {
  if (size == 0) return 0;
  const unsigned long room = size - 1;
  const unsigned long begin = GetPos();
  // A stream that cannot move is read byte by byte: what is read too far could not be given back.
  const bool movable = SetPos(begin);
  const unsigned long beyond = movable ? 1 : 0;  // may be the LF of a line that just fits
  unsigned long portion = movable ? kFirstPortion : 1;
  unsigned long text = 0;
  bool ended = false;
  char read[kLastPortion];
  buffer[0] = '\0';
  while (!ended && text < room + beyond) {
    const unsigned long asked = std::min(portion, room + beyond - text);
    const unsigned long got = std::min(Read(read, asked), asked);
    const auto* const lf = static_cast<const char*>(std::memchr(read, '\n', got));
    const unsigned long part =
        lf ? static_cast<unsigned long>(lf - read) : std::min(got, room - text);
    std::memcpy(buffer + text, read, part);
    text += part;
    buffer[text] = '\0';
    const unsigned long used = lf ? part + 1 : part;
    if (used < got && !SetPos(begin + text + (lf ? 1 : 0))) {
      buffer[0] = '\0';
      return 0;
    }
    if (lf) return text + 1;
    ended = got < asked || used < got;
    if (movable) portion = std::min(2 * portion, kLastPortion);
  }
  return text;
}

void TKvStream::Purge() {}
