#include "metadata/PvlInput.h"

#include <algorithm>
#include <string_view>

namespace SatCommonUtils {

TPvlInput ReadPvlInput(TKvStream& in, const char* lineEnd) {
  TPvlInput input;
  const std::string_view ending = lineEnd;
  char line[1024];
  unsigned long lines = 0;
  in.SetPos(0);
  while (!in.Eof()) {
    line[sizeof line - 1] = '\n';
    const unsigned long consumed = in.ReadLine(line, sizeof line);
    if (consumed == 0) continue;
    input.text.append(line).append(ending);
    // As many bytes with the line's LF among them leave the last byte of the buffer alone.
    if (consumed == sizeof line - 1 && line[sizeof line - 1] == '\0') {
      input.unfinished.push_back(lines);
    }
    ++lines;
  }
  return input;
}

unsigned long InputLine(const std::string& text, const std::vector<unsigned long>& unfinished,
                        std::size_t pos) {
  const auto place = text.begin() + static_cast<std::ptrdiff_t>(std::min(pos, text.size()));
  const auto line = static_cast<unsigned long>(std::count(text.begin(), place, '\n'));
  const auto pieces = std::lower_bound(unfinished.begin(), unfinished.end(), line);
  return line + 1 - static_cast<unsigned long>(pieces - unfinished.begin());
}

}  // namespace SatCommonUtils
