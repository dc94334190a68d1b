#include "files/Wildcard.h"

#include <algorithm>
#include <array>
#include <vector>

#include "Kv/Text.h"
#include "files/FilenamePieces.h"

namespace SatCommonUtils {
namespace {

/// The lower case of every byte, by the rules of the framework.
using FoldTable = std::array<char, 256>;

FoldTable MakeFoldTable() {
  std::string bytes(256, '\0');
  for (std::size_t i = 0; i < bytes.size(); ++i) bytes[i] = static_cast<char>(i);
  FoldTable table;
  ::tolower(bytes).copy(table.data(), table.size());
  return table;
}

const FoldTable& TheFoldTable() {
  static const FoldTable table = MakeFoldTable();
  return table;
}

bool EqualFolded(std::string_view name, std::string_view lower) {
  const FoldTable& fold = TheFoldTable();
  return std::equal(name.begin(), name.end(), lower.begin(), lower.end(),
                    [&](char n, char l) { return fold[static_cast<unsigned char>(n)] == l; });
}

/// Cuts what stands between a '*' and the end of its piece.
std::string WithoutTextBehindStars(const std::string& mask) {
  std::vector<std::string> pieces;
  break_filename(mask, &pieces);
  std::string kept;
  for (const std::string& piece : pieces) {
    const std::size_t star = piece.find('*');
    kept.append(piece, 0, star == std::string::npos ? star : star + 1).append(".");
  }
  kept.pop_back();
  return kept;
}

}  // namespace

TWildcard::TWildcard(const std::string& mask) {
  if (mask.empty() || mask == "#") return;
  const std::string lower = ::tolower(mask);
  form_ = lower.front() == '#' ? TForm::kSuffix : TForm::kPieces;
  pattern_ = form_ == TForm::kSuffix ? lower.substr(1) : WithoutTextBehindStars(lower);
}

bool TWildcard::check(std::string_view name) const {
  switch (form_) {
    case TForm::kNothing:
      return false;
    case TForm::kSuffix:
      return name.size() >= pattern_.size() &&
             EqualFolded(name.substr(name.size() - pattern_.size()), pattern_);
    case TForm::kPieces:
      break;
  }
  return MatchesPieces(name);
}

// A star is the last of its piece, so name and pattern are walked side by side, once.
bool TWildcard::MatchesPieces(std::string_view name) const {
  const FoldTable& fold = TheFoldTable();
  std::size_t at = 0;
  for (const char wanted : pattern_) {
    if (wanted == '*') {
      at = std::min(name.find('.', at), name.size());
      continue;
    }
    if (at == name.size()) return false;
    const char c = fold[static_cast<unsigned char>(name[at])];
    if (wanted == '?' ? c == '.' : c != wanted) return false;
    ++at;
  }
  return at == name.size();
}

}  // namespace SatCommonUtils
