#include "Kv/Progress.h"
#include "SatCommonUtils/Text.h"
#include "text/NumberScan.h"

namespace SatCommonUtils {
namespace {

/// Calls `take` with every number; `mayGoOn` is asked behind every separator.
template <class Take, class MayGoOn>
void EachNumber(const char* text, const char* separators, TKvProgressHandler* handler, Take take,
                MayGoOn mayGoOn) {
  TKvStepProgress progress(handler);
  TNumberScan scan(separators);
  for (const char* pos = text;; ++pos) {
    if (scan.Convert(&pos)) {
      take(scan.Value());
      progress.Next();
    }
    if (*pos == '\0' || !mayGoOn()) return;
  }
}

}  // namespace

unsigned int SplitStringIntoDoubles(const char* text, const char* separators, double* out,
                                    unsigned int maxCount, bool reverse,
                                    TKvProgressHandler* handler) {
  unsigned int count = 0;
  const auto take = [&](double number) {
    if (out != nullptr && count < maxCount) out[reverse ? maxCount - 1 - count : count] = number;
    ++count;
  };
  EachNumber(text, separators, handler, take, [&] { return count != maxCount; });
  return count;
}

unsigned int SplitStringIntoDoubles(const char* text, const char* separators,
                                    std::vector<double>* out, TKvProgressHandler* handler) {
  out->clear();
  const auto take = [out](double number) { out->push_back(number); };
  EachNumber(text, separators, handler, take, [] { return true; });
  return static_cast<unsigned int>(out->size());
}

}  // namespace SatCommonUtils
