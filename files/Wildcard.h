// Matching file names with the masks of TFilenamesList.
#pragma once

#include <string>
#include <string_view>

namespace SatCommonUtils {

/// A mask made ready for matching many names, letter case ignored.
class TWildcard {
 public:
  explicit TWildcard(const std::string& mask);

  /// Whether the whole name matches. Linear in the name; allocates nothing.
  bool check(std::string_view name) const;

 private:
  enum class TForm { kNothing, kSuffix, kPieces };

  bool MatchesPieces(std::string_view name) const;

  TForm form_ = TForm::kNothing;
  /// Lower case. A suffix without its '#'; pieces with nothing between a '*' and the next dot.
  std::string pattern_;
};

}  // namespace SatCommonUtils
