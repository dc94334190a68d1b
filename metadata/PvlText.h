// A PVL text while it is scanned from front to back.
#pragma once

#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>

#include "metadata/PvlBlocks.h"

namespace SatCommonUtils {

/// Answers the questions that scanning asks again and again about what lies ahead. Positions that
/// are asked for must not go back; all questions of one text together then take time linear in it,
/// also when an answer lies far ahead of many positions, or nowhere.
class TPvlText {
 public:
  /// What the text grows by.
  static constexpr std::size_t kPadding = kPvlBlock;

  explicit TPvlText(std::string text);

  /// Size() bytes.
  const char* Data() const { return text_.data(); }
  std::size_t Size() const { return size_; }
  std::string_view View() const { return {Data(), size_}; }
  char operator[](std::size_t pos) const { return text_[pos]; }

  /// Space, tab, CR or LF: no other character is white space here.
  static bool IsWhite(char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; }
  /// The characters that trim takes off the ends of a text.
  static bool IsTrimmed(char c) { return IsWhite(c) || c == '\v' || c == '\f'; }

  /// The first character at or after `pos` that is no white space; `pos` when there is none.
  std::size_t SkipWhite(std::size_t pos) {
    if (white_ < pos) white_ = pos;
    while (white_ < Size() && IsWhite(text_[white_])) ++white_;
    return white_ < Size() ? white_ : pos;
  }
  /// Where the line behind that of `pos` begins; the size when there is none.
  std::size_t NextLine(std::size_t pos) const {
    const std::size_t feed = FindInBlocks(Data(), pos, size_, LineFeed);
    return feed < size_ ? feed + 1 : size_;
  }
  /// A name, which may be empty, between characters that trim takes off.
  struct TName {
    std::size_t begin;
    std::size_t end;
    std::size_t behind;  ///< what follows the blanks behind it; the size, at which stands a NUL
  };
  /// The name that begins at `start` or behind the blanks there.
  const TName& NameAt(std::size_t start) {
    if (start < nameFrom_ || start > name_.begin) FindName(start);
    return name_;
  }
  /// Whether a ';' outside quotes may follow for a value that starts, outside quotes, at `pos`.
  /// Always true until LookForEnds has been called; exact from then on.
  bool MayEnd(std::size_t pos) { return !endsKnown_ || EndFollows(pos); }
  /// To be called when a value has run far or to the end of the text: looks once for where values
  /// can end.
  void LookForEnds();

 private:
  enum TSide { sdBefore = 0, sdBehind = 1 };

  void FindName(std::size_t start);
  std::size_t SkipTrimmed(std::size_t pos, TSide side);
  std::size_t EndOfTrimmed(std::size_t pos) const;
  bool EndFollows(std::size_t pos) {
    bool odd = odd_;
    for (std::size_t i = quotes_; i < pos; ++i) odd ^= TogglesQuotes(i);
    odd_ = odd;
    quotes_ = std::max(quotes_, pos);
    return pos < afterLast_[odd_ ? 1 : 0];
  }
  bool TogglesQuotes(std::size_t pos) const {
    return text_[pos] == '"' && (pos == 0 || text_[pos - 1] != '\\');
  }

  std::string text_;  ///< with a block of NUL bytes behind it
  std::size_t size_;
  std::size_t white_ = 0;  ///< where the search for other characters has come to
  /// The run of blanks looked at last.
  struct TRun {
    std::size_t begin = 0;
    std::size_t end = 0;
  };
  TRun trimmed_[2];           ///< one on each side of a name, because both are asked for by turns
  std::size_t nameFrom_ = 1;  ///< from here on name_ is the answer; behind its begin at first
  TName name_ = {0, 0, 0};
  bool endsKnown_ = false;  ///< whether the members below count
  std::size_t quotes_ = 0;  ///< how far quotes have been counted
  bool odd_ = false;        ///< whether their number is odd
  /// The last ';' with an even and with an odd number of quotes before it, plus one; 0 when none.
  std::size_t afterLast_[2] = {0, 0};
};

}  // namespace SatCommonUtils
