#include "metadata/PvlInput.h"

#include <algorithm>
#include <cstring>
#include <typeinfo>

#include "metadata/PvlText.h"

namespace SatCommonUtils {
namespace {

/// The size of the buffer that a line is read into.
constexpr unsigned long kLine = 1024;

/// Reads line by line, as any stream can be read.
TPvlInput ReadLines(TKvStream& in, std::string_view lineEnd) {
  TPvlInput input;
  char line[kLine];
  unsigned long lines = 0;
  in.SetPos(0);
  while (!in.Eof()) {
    line[kLine - 1] = '\n';
    const unsigned long consumed = in.ReadLine(line, kLine);
    if (consumed == 0) continue;
    input.text.append(line, strnlen(line, kLine)).append(lineEnd);
    // As many bytes with the line's LF among them leave the last byte of the buffer alone.
    if (consumed == kLine - 1 && line[kLine - 1] == '\0') input.unfinished.push_back(lines);
    ++lines;
  }
  return input;
}

/// The bytes at the begin of `bytes` that are lines which fit the buffer, all that lie in its size.
std::size_t WholeLines(std::string_view bytes) {
  return bytes.substr(0, kLine).rfind('\n') + 1;
}

/// The first line, or what of it fits the buffer.
std::string_view FirstLine(std::string_view bytes, bool* ended) {
  const std::size_t lf = bytes.substr(0, kLine).find('\n');
  *ended = lf != std::string_view::npos;
  return bytes.substr(0, *ended ? lf : kLine - 1);
}

/// What ReadLines gives for a stream of these bytes.
TPvlInput SplitLines(std::string_view bytes, std::string_view lineEnd) {
  TPvlInput input;
  // Enough for lines of 16 bytes; for shorter ones the text grows.
  input.text.reserve(bytes.size() + bytes.size() / 8 + TPvlText::kPadding);
  const bool hasNul = bytes.find('\0') != std::string_view::npos;
  const bool staysAsItIs = !hasNul && lineEnd == "\n";
  unsigned long lines = 0;  // of the text up to `counted`
  std::size_t counted = 0;
  while (!bytes.empty()) {
    if (const std::size_t whole = staysAsItIs ? WholeLines(bytes) : 0; whole > 0) {
      input.text.append(bytes.substr(0, whole));
      bytes.remove_prefix(whole);
      continue;
    }
    bool ended;
    const std::string_view line = FirstLine(bytes, &ended);
    if (!ended && line.size() == kLine - 1) {
      const auto begin = input.text.begin() + static_cast<std::ptrdiff_t>(counted);
      lines += static_cast<unsigned long>(std::count(begin, input.text.end(), '\n'));
      counted = input.text.size();
      input.unfinished.push_back(lines);
    }
    input.text.append(hasNul ? line.substr(0, line.find('\0')) : line).append(lineEnd);
    bytes.remove_prefix(line.size() + (ended ? 1 : 0));
  }
  return input;
}

}  // namespace

TPvlInput ReadPvlInput(TKvStream& in, std::string_view lineEnd) {
  // Of a derived stream every line is read, as callers rely on.
  if (typeid(in) != typeid(TKvMemoryStream)) return ReadLines(in, lineEnd);
  const std::string& bytes = static_cast<const TKvMemoryStream&>(in).Bytes();
  in.SetPos(bytes.size());
  return SplitLines(bytes, lineEnd);
}

unsigned long InputLine(std::string_view text, const std::vector<unsigned long>& unfinished,
                        std::size_t pos) {
  const auto place = text.begin() + static_cast<std::ptrdiff_t>(std::min(pos, text.size()));
  const auto line = static_cast<unsigned long>(std::count(text.begin(), place, '\n'));
  const auto pieces = std::lower_bound(unfinished.begin(), unfinished.end(), line);
  return line + 1 - static_cast<unsigned long>(pieces - unfinished.begin());
}

}  // namespace SatCommonUtils
