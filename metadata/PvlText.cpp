#include "metadata/PvlText.h"

#include <utility>

namespace SatCommonUtils {

TPvlText::TPvlText(std::string text) : text_(std::move(text)), size_(text_.size()) {
  text_.append(kPadding, '\0');
}

std::size_t TPvlText::EndOfTrimmed(std::size_t pos, TSide side) {
  TRun& run = trimmed_[side];
  run = {pos, pos};
  while (run.end < Size() && IsTrimmed(text_[run.end])) ++run.end;
  return run.end;
}

// Whether a quote toggles does not depend on where a value starts. So for all values that start
// behind an even number of quotes, the last ';' behind an even number is the last that can end one;
// the same for odd numbers.
void TPvlText::LookForEnds() {
  if (endsKnown_) return;
  endsKnown_ = true;
  bool odd = false;
  for (std::size_t pos = 0; pos < Size(); ++pos) {
    if (text_[pos] == ';') afterLast_[odd ? 1 : 0] = pos + 1;
    if (TogglesQuotes(pos)) odd = !odd;
  }
}

}  // namespace SatCommonUtils
