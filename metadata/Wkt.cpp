#include "metadata/Wkt.h"

#include <array>
#include <cctype>
#include <cstring>
#include <utility>
#include <vector>

#include "Kv/Text.h"
#include "SatCommonUtils/Metadata.h"

namespace SatCommonUtils {
namespace {

/// Writes the XML of nested sections. A section inside another one always lies inside the text, so
/// none ever fails once the first has begun, and all write to one output: the depth of nesting
/// costs no stack, and no text is copied from level to level.
class TWktWriter {
 public:
  TWktWriter(std::string& out, unsigned long depth) : out_(out), depth_(depth) {}

  void Begin(const std::string& encoding, std::string name) {
    names_.push_back(std::move(name));
    if (names_.back().empty()) {
      Indent(0);
      out_.append(R"(<?xml version="1.0" encoding=")").append(encoding).append("\"?>\r\n");
    } else {
      Tag("<");
    }
  }
  /// Names the innermost section, which has no name yet.
  void Name(std::string name) {
    names_.back() = std::move(name);
    Tag("<");
  }
  bool HasName() const { return !names_.back().empty(); }
  void Value(const std::string& token) {
    Indent(1);
    out_.append("<VALUE>").append(token).append("</VALUE>\r\n");
  }
  void End() {
    Tag("</");
    names_.pop_back();
  }
  bool Done() const { return names_.empty(); }

 private:
  void Indent(unsigned long more) { out_.append(depth_ + names_.size() - 1 + more, '\t'); }
  void Tag(const char* opening) {
    Indent(0);
    out_.append(opening).append(names_.back()).append(">\r\n");
  }

  std::string& out_;
  unsigned long depth_;
  std::vector<std::string> names_;  ///< of the open sections
};

/// What each character is outside quotes. White space is that of the locale.
class TWktCharacters {
 public:
  TWktCharacters() {
    for (int c = 0; c < 256; ++c) {
      if (std::isspace(c) != 0) kinds_[static_cast<std::size_t>(c)] = kSpace;
    }
    for (const char c : {',', '[', ']', '"'}) kinds_[static_cast<unsigned char>(c)] = kSeparator;
  }

  bool IsPlain(char c) const { return Kind(c) == kPlain; }
  bool IsSpace(char c) const { return Kind(c) == kSpace; }
  bool IsSeparator(char c) const { return Kind(c) == kSeparator; }

 private:
  enum TKind : unsigned char { kPlain, kSpace, kSeparator };

  TKind Kind(char c) const { return kinds_[static_cast<unsigned char>(c)]; }

  std::array<TKind, 256> kinds_{};
};

/// Gathers the characters of an item from `pos` on, white space left out; returns where it stopped.
unsigned long GatherPlain(const TWktCharacters& characters, const char* text, unsigned long length,
                          unsigned long pos, std::string* token) {
  while (pos < length && !characters.IsSeparator(text[pos])) {
    const unsigned long start = pos;
    while (pos < length && characters.IsPlain(text[pos])) ++pos;
    token->append(text + start, pos - start);
    while (pos < length && characters.IsSpace(text[pos])) ++pos;
  }
  return pos;
}

/// Gathers a quoted text with its quotes; one that is not closed runs to the end.
unsigned long GatherQuoted(const char* text, unsigned long length, unsigned long pos,
                           std::string* token) {
  const void* const end = std::memchr(text + pos + 1, '"', length - pos - 1);
  const unsigned long stop =
      end == nullptr ? length
                     : static_cast<unsigned long>(static_cast<const char*>(end) - text) + 1;
  token->append(text + pos, stop - pos);
  return stop;
}

void TakeValue(TWktWriter& writer, std::string* token) {
  if (!token->empty()) writer.Value(*token);
  token->clear();
}

}  // namespace

bool WktSectionToXml(const char* text, unsigned long length, unsigned long* pos,
                     unsigned long depth, const std::string& encoding, const std::string& name,
                     std::string* out) {
  if (*pos >= length) return false;
  TWktWriter writer(*out, depth);
  writer.Begin(encoding, name);
  unsigned long at = *pos + (name.empty() ? 0 : 1);
  const TWktCharacters characters;
  std::string token;
  while (at < length && !writer.Done()) {
    at = GatherPlain(characters, text, length, at, &token);
    if (at == length) break;
    const char c = text[at];
    if (c == '"') {
      at = GatherQuoted(text, length, at, &token);
    } else if (c == ',') {
      TakeValue(writer, &token);
      ++at;
    } else if (c == ']') {
      TakeValue(writer, &token);
      writer.End();
      ++at;
    } else if (!writer.HasName()) {
      writer.Name(std::exchange(token, std::string()));
      ++at;
    } else {
      // A section without a name begins as a document does, at its '[' once more. Odd as that is,
      // callers rely on it.
      if (!token.empty()) ++at;
      writer.Begin(std::string(), std::exchange(token, std::string()));
    }
  }
  *pos = at;
  return true;
}

bool WktSectionToXml(const std::string& wkt, std::string* xml) {
  std::string out;
  unsigned long pos = 0;
  if (!WktSectionToXml(wkt.data(), wkt.size(), &pos, 0, "utf-8", std::string(), &out)) return false;
  *xml = KvAnsiToChar(out, kvEncodingUtf8);
  return true;
}

}  // namespace SatCommonUtils
