// Changes the lines of a tree's text and stores the counts of values that they then have; one
// change in three is of any bytes.
#include <algorithm>
#include <vector>

#include "fuzz/Mutator.h"

namespace {

using Lines = std::vector<std::string>;

Lines LinesOf(const std::string& text) {
  Lines lines;
  std::size_t begin = 0;
  for (std::size_t end = text.find('\n'); end != std::string::npos; end = text.find('\n', begin)) {
    lines.push_back(text.substr(begin, end - begin));
    begin = end + 1;
  }
  lines.push_back(text.substr(begin));
  return lines;
}

std::string TextOf(const Lines& lines) {
  std::string text;
  for (const std::string& line : lines) text += line + '\n';
  text.pop_back();
  return text;
}

/// A field's line, "(tag,idx)[count]header" and a tab before each value, with the right count.
std::string WithCount(const std::string& line) {
  const std::size_t open = line.find(")[");
  const std::size_t close = line.find(']', open);
  if (open == std::string::npos || close == std::string::npos) return line;
  const auto values =
      std::count(line.begin() + static_cast<std::ptrdiff_t>(close), line.end(), '\t');
  return line.substr(0, open + 2) + std::to_string(values) + line.substr(close);
}

Lines::iterator Chosen(Lines& lines, Random& random) {
  return lines.begin() + static_cast<std::ptrdiff_t>(Below(lines.size(), random));
}

/// A copy of the text as a subtree of itself, before the line that ends it; behind that one stands
/// what follows the last line feed.
void Nest(Lines& lines) {
  if (lines.size() < 2) return;
  Lines inner(lines.begin(), lines.end() - 1);
  for (std::string& line : inner) line.insert(0, 1, '\t');
  lines.insert(lines.end() - 2, inner.begin(), inner.end());
}

void ChangeOne(Lines& lines, Random& random) {
  const auto line = Chosen(lines, random);
  switch (random() % 7) {
    case 0:
      lines.insert(line, std::string(*Chosen(lines, random)));
      break;
    case 1:
      if (lines.size() > 1) lines.erase(line);
      break;
    case 2:
      *line += "\tv";
      break;
    case 3:
      line->insert(0, 1, '\t');
      break;
    case 4:
      std::swap(*line, *Chosen(lines, random));
      break;
    case 5:
      Nest(lines);
      break;
    default:
      *line = WithCount(Mutated(*line));
  }
  *Chosen(lines, random) = WithCount(*Chosen(lines, random));
}

}  // namespace

std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size, std::size_t maxSize,
                                    unsigned int seed) {
  Random random(seed);
  if (size == 0 || random() % 3 == 0) return LLVMFuzzerMutate(data, size, maxSize);
  Lines lines = LinesOf(std::string(reinterpret_cast<const char*>(data), size));
  ChangeOne(lines, random);
  return Replace(TextOf(lines), data, maxSize);
}
