// Matching file names with the masks of TFilenamesList.
#pragma once

#include <string>
#include <string_view>

namespace SatCommonUtils {

/// A mask made ready for matching many names, letter case ignored.
class Wildcard {
 public:
  explicit Wildcard(const std::string& mask);

  /// Whether the whole name matches. Linear in the name; allocates nothing.
  bool Matches(std::string_view name) const;

 private:
  enum class Form { kNothing, kSuffix, kPieces };

  bool MatchesPieces(std::string_view name) const;

  Form form_ = Form::kNothing;
  /// Lower case. A suffix without its '#'; pieces with nothing between a '*' and the next dot.
  std::string pattern_;
};

}  // namespace SatCommonUtils
