// Any mask and names, a line each: the searches of a list agree with each other and with what masks
// mean.
#include <string>
#include <string_view>
#include <vector>

#include "SatCommonUtils/Files.h"
#include "fuzz/FuzzInput.h"

namespace {

using SatCommonUtils::TFilenamesList;

std::vector<std::string> Lines(std::string_view text) {
  std::vector<std::string> lines(1);
  for (const char c : text) {
    if (c == '\n') {
      lines.emplace_back();
    } else {
      lines.back() += c;
    }
  }
  return lines;
}

char Lower(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 'a' - 'A') : c;
}

/// Whether the end of a name is what a mask has behind its first byte.
bool EndMatches(std::string_view name, std::string_view mask) {
  mask.remove_prefix(1);
  if (mask.empty() || name.size() < mask.size()) return false;
  name.remove_prefix(name.size() - mask.size());
  for (std::size_t i = 0; i < mask.size(); ++i) {
    if (Lower(name[i]) != Lower(mask[i])) return false;
  }
  return true;
}

/// Takes the bytes up to the next dot off, the dot too.
std::string_view TakePiece(std::string_view& text) {
  const std::string_view piece = text.substr(0, text.find('.'));
  text.remove_prefix(piece.size() < text.size() ? piece.size() + 1 : piece.size());
  return piece;
}

bool PieceMatches(std::string_view name, std::string_view mask) {
  const std::size_t star = mask.find('*');
  mask = mask.substr(0, star);
  if (star != std::string_view::npos) name = name.substr(0, star);
  if (name.size() != mask.size()) return false;
  for (std::size_t i = 0; i < mask.size(); ++i) {
    if (mask[i] != '?' && Lower(mask[i]) != Lower(name[i])) return false;
  }
  return true;
}

long Dots(std::string_view text) {
  long dots = 0;
  for (const char c : text) dots += c == '.';
  return dots;
}

bool Matches(std::string_view name, std::string_view mask) {
  if (mask.empty()) return false;
  if (mask[0] == '#') return EndMatches(name, mask);
  if (Dots(name) != Dots(mask)) return false;
  for (long pieces = Dots(mask) + 1; pieces > 0; --pieces) {
    const std::string_view namePiece = TakePiece(name);
    if (!PieceMatches(namePiece, TakePiece(mask))) return false;
  }
  return true;
}

/// The names that a walk with FindFirst and FindNext visits.
std::vector<std::string> Walk(const TFilenamesList& list, const std::string& mask) {
  std::vector<std::string> names;
  std::string name;
  for (bool found = list.FindFirst(mask); found; found = list.FindNext(mask)) {
    Require(list.GetCurrent(&name), "a search that finds leaves the cursor on a name");
    names.push_back(name);
  }
  Require(!list.GetCurrent(&name), "a search that finds nothing leaves the cursor at the end");
  return names;
}

void RemoveAll(TFilenamesList list, const std::string& mask, std::size_t count) {
  while (list.Remove(mask)) --count;
  Require(count == 0 && list.FindAll(mask, nullptr) == 0, "each match is removed once");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::vector<std::string> lines =
      Lines(std::string_view(reinterpret_cast<const char*>(data), size));
  const std::string& mask = lines[0];
  TFilenamesList list;
  std::vector<std::string> expected;
  for (std::size_t i = 1; i < lines.size(); ++i) {
    list.Insert(lines[i]);
    if (Matches(lines[i], mask)) expected.push_back(lines[i]);
  }
  std::vector<std::string> all;
  Require(list.FindAll(mask, &all) == expected.size() && all == expected, "the matches are found");
  Require(Walk(list, mask) == expected, "a walk visits every match once");
  std::string first;
  Require(list.Find(mask, &first) == !expected.empty(), "a match is found when there is one");
  Require(expected.empty() || first == expected[0], "the first match is found");
  RemoveAll(list, mask, expected.size());
  return 0;
}
