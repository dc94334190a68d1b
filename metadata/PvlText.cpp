#include "metadata/PvlText.h"

#include <algorithm>
#include <bit>
#include <utility>

namespace SatCommonUtils {

TPvlText::TPvlText(std::string text) : text_(std::move(text)), size_(text_.size()) {
  text_.append(kPadding, '\0');
}

void TPvlText::FindName(std::size_t start) {
  nameFrom_ = start;
  name_.begin = SkipTrimmed(start, sdBefore);
  name_.end = FindInBlocks(Data(), name_.begin, size_, NotInName);
  name_.behind = SkipTrimmed(name_.end, sdBehind);
}

std::size_t TPvlText::EndOfTrimmed(std::size_t pos) const {
  while (pos < size_ && IsTrimmed(text_[pos])) ++pos;
  return pos;
}

// The first character at or after `pos` that trim keeps; the size when there is none.
std::size_t TPvlText::SkipTrimmed(std::size_t pos, TSide side) {
  if (pos >= size_ || !IsTrimmed(text_[pos])) return pos;
  TRun& run = trimmed_[side];
  if (pos < run.begin || pos >= run.end) run = {pos, EndOfTrimmed(pos)};
  return run.end;
}

// Whether a quote toggles does not depend on where a value starts. So for all values that start
// behind an even number of quotes, the last ';' behind an even number is the last that can end one;
// the same for odd numbers.
void TPvlText::LookForEnds() {
  if (endsKnown_) return;
  endsKnown_ = true;
  std::size_t after[2] = {0, 0};
  unsigned odd = 0;
  for (std::size_t block = 0; block < size_; block += kPvlBlock) {
    unsigned found = BitsOf(QuoteOrEnd(LoadPvlBlock(Data() + block)));
    for (; found != 0; found &= found - 1) {
      const std::size_t pos = block + static_cast<std::size_t>(std::countr_zero(found));
      if (text_[pos] == ';') after[odd] = pos + 1;
      odd ^= TogglesQuotes(pos) ? 1U : 0U;
    }
  }
  std::copy_n(after, 2, afterLast_);
}

}  // namespace SatCommonUtils
