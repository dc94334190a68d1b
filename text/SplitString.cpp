#include <cstring>

#include "Kv/Progress.h"
#include "SatCommonUtils/Text.h"
#include "text/FieldEnds.h"

namespace SatCommonUtils {
namespace {

/// Ends fields at separators, and a field of 4095 bytes at whatever follows it.
class TBoundedFields {
 public:
  explicit TBoundedFields(const char* separators) : ends_(separators) {}

  const char* FindEnd(const char* begin) const {
    constexpr std::ptrdiff_t kLongest = 4095;
    const char* end = begin;
    while (!ends_.Has(*end) && end - begin != kLongest) ++end;
    return end;
  }

 private:
  TFieldEnds ends_;
};

/// Ends fields at separators outside double quotes.
class TQuotedFields {
 public:
  explicit TQuotedFields(const char* separators) : ends_(separators), stops_(ends_) {
    stops_.Add('"');
  }

  const char* FindEnd(const char* begin) const {
    const char* end = stops_.Find(begin);
    while (!ends_.Has(*end)) end = stops_.Find(SkipQuoted(end));
    return end;
  }

 private:
  /// Behind the quote that closes the section opened at `quote`, or the end of the text. Of a
  /// doubled quote the first closes the section and the second, found next, opens it again.
  static const char* SkipQuoted(const char* quote) {
    const char* const closing = strchrnul(quote + 1, '"');
    return *closing == '"' ? closing + 1 : closing;
  }

  TFieldEnds ends_;
  TFieldEnds stops_;
};

/// Calls `emit` with the begin and the end of every field until it returns false. An empty field
/// is passed over unless `keepEmpty`. `mayGoOn` is asked behind every field, also an empty one.
template <class Fields, class Emit, class MayGoOn>
void EachField(const char* text, const Fields& fields, bool keepEmpty, Emit emit, MayGoOn mayGoOn) {
  for (const char* begin = text;; ++begin) {
    const char* const end = fields.FindEnd(begin);
    if (keepEmpty || end != begin) emit(begin, static_cast<std::size_t>(end - begin));
    if (*end == '\0' || !mayGoOn()) return;
    begin = end;
  }
}

template <class Fields>
unsigned int SplitIntoArray(const char* text, const Fields& fields, std::string* out,
                            unsigned int maxCount, TKvProgressHandler* handler, bool keepEmpty) {
  TKvStepProgress progress(handler);
  unsigned int count = 0;
  const auto emit = [&](const char* begin, std::size_t size) {
    if (out != nullptr && count < maxCount) out[count].assign(begin, size);
    ++count;
    progress.Next();
  };
  EachField(text, fields, keepEmpty, emit, [&] { return count != maxCount; });
  return count;
}

}  // namespace

unsigned int SplitString(const char* text, const char* separators, std::string* out,
                         unsigned int maxCount, TKvProgressHandler* handler, bool keepEmpty) {
  return SplitIntoArray(text, TBoundedFields(separators), out, maxCount, handler, keepEmpty);
}

unsigned int SplitStringQuot(const char* text, const char* separators, std::string* out,
                             unsigned int maxCount, TKvProgressHandler* handler, bool keepEmpty) {
  return SplitIntoArray(text, TQuotedFields(separators), out, maxCount, handler, keepEmpty);
}

unsigned int SplitStringQuot(const char* text, const char* separators,
                             std::vector<std::string>* out, bool keepEmpty) {
  unsigned int count = 0;
  const auto emit = [&](const char* begin, std::size_t size) {
    if (out != nullptr) out->emplace_back(begin, size);
    ++count;
  };
  EachField(text, TQuotedFields(separators), keepEmpty, emit, [] { return true; });
  return count;
}

}  // namespace SatCommonUtils
