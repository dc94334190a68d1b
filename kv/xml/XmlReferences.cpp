#include "xml/XmlReferences.h"

#include <algorithm>
#include <array>
#include <charconv>

#include "xml/XmlCharacters.h"

namespace {

constexpr std::size_t kNone = std::string_view::npos;

bool StartsWith(std::string_view text, std::string_view start) {
  return text.substr(0, start.size()) == start;
}

// "#60;" or "#x3C;" at the front of `text`.
bool IsCharacterReference(std::string_view text) {
  const bool isHexadecimal = StartsWith(text, "#x");
  text.remove_prefix(isHexadecimal ? 2 : 1);
  unsigned code = 0;
  const char* end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, code, isHexadecimal ? 16 : 10);
  return error == std::errc() && stop != end && *stop == ';' && kv::IsXmlCharacter(code);
}

// What stands behind a '&'.
bool IsKnownReference(std::string_view text) {
  constexpr std::array<std::string_view, 5> kEntities = {"amp;", "lt;", "gt;", "quot;", "apos;"};
  if (StartsWith(text, "#")) return IsCharacterReference(text);
  return std::any_of(kEntities.begin(), kEntities.end(),
                     [text](std::string_view entity) { return StartsWith(text, entity); });
}

/// Steps through the markup of a text and knows which of it holds no references.
class MarkupScanner {
 public:
  explicit MarkupScanner(std::string_view text) : text_(text) {}

  /// Whether `offset` lies in a comment, a CDATA section or a processing instruction. Offsets must
  /// not go down from call to call.
  bool IsOpaque(std::size_t offset) {
    while (end_ <= offset) Step();
    return isOpaque_ && begin_ <= offset;
  }

 private:
  // Moves to the next piece of markup, or behind the end.
  void Step() {
    begin_ = std::min(text_.find('<', end_), text_.size());
    const std::string_view markup = text_.substr(begin_);
    isOpaque_ = true;
    if (markup.empty()) {
      end_ = kNone;
    } else if (StartsWith(markup, "<!--")) {
      end_ = EndOf("-->", begin_ + 4);
    } else if (StartsWith(markup, "<![CDATA[")) {
      end_ = EndOf("]]>", begin_ + 9);
    } else if (StartsWith(markup, "<?")) {
      end_ = EndOf("?>", begin_ + 2);
    } else {
      isOpaque_ = false;
      end_ = EndOfTag();
    }
  }

  std::size_t EndOf(std::string_view terminator, std::size_t from) const {
    const std::size_t found = text_.find(terminator, from);
    return found == kNone ? kNone : found + terminator.size();
  }

  // A '>' in a quoted attribute value does not end the tag.
  std::size_t EndOfTag() const {
    std::size_t i = begin_ + 1;
    for (;;) {
      i = text_.find_first_of("\"'>", i);
      if (i == kNone) return kNone;
      if (text_[i] == '>') return i + 1;
      i = text_.find(text_[i], i + 1);
      if (i == kNone) return kNone;
      ++i;
    }
  }

  std::string_view text_;
  std::size_t begin_ = 0;
  std::size_t end_ = 0;
  bool isOpaque_ = false;
};

}  // namespace

namespace kv {

std::size_t FindUnknownReference(std::string_view text) {
  MarkupScanner markup(text);
  for (std::size_t i = text.find('&'); i != kNone; i = text.find('&', i + 1)) {
    if (!IsKnownReference(text.substr(i + 1)) && !markup.IsOpaque(i)) return i;
  }
  return kNone;
}

}  // namespace kv
