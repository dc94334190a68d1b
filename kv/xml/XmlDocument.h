// A parsed XML document.
#pragma once

#include <cstddef>
#include <pugixml.hpp>
#include <string>
#include <string_view>

class TKvStream;

namespace kv {

struct XmlSurvey;

enum class WhiteSpace {
  kInLeaves,  ///< kept where an element has no child elements; may be dropped elsewhere
  kAll,       ///< kept wherever an element holds it
};

/// An XML document with one root element. The first piece of an element's text is the value of the
/// element itself, further pieces are its children.
///
/// Refused with TKvError, line and column: what the parser refuses, characters that XML does not
/// allow, document types, references beyond the predefined ones, and anything but one element and
/// white space at the top. Where memory is short, std::bad_alloc leaves. Namespaces, attributes
/// given twice and "--" in comments are not looked at. Neither parsing nor destruction recurses.
class XmlDocument {
 public:
  /// Looks at each element once the document is parsed; may throw TKvError by way of Fail.
  using Check = void (*)(const XmlDocument& document, pugi::xml_node element);

  XmlDocument() = default;

  /// Parses a whole stream. `check`, which may be null, is called for all elements when the text
  /// contains `mark`. Throws TKvError when the stream is null or not open.
  void Load(TKvStream* stream, WhiteSpace whiteSpace, std::string_view mark = {},
            Check check = nullptr);
  void Load(std::string_view bytes, WhiteSpace whiteSpace, std::string_view mark = {},
            Check check = nullptr);

  pugi::xml_node Root() const { return root_; }
  /// Whether the text contains the mark; false where no check was asked for.
  bool HasMark() const { return hasMark_; }
  /// Throws TKvError with the element's place in the text. For use in a Check only.
  [[noreturn]] void Fail(pugi::xml_node element, const std::string& reason) const;

 private:
  void Parse(WhiteSpace whiteSpace, const XmlSurvey& survey);
  void FindRoot();
  void CheckAll(Check check) const;
  [[noreturn]] void FailAt(std::size_t offset, const std::string& reason) const;

  pugi::xml_document document_;
  pugi::xml_node root_;
  bool hasMark_ = false;
  std::string_view text_;
};

/// The element's own text, its pieces joined.
std::string XmlText(pugi::xml_node element);

}  // namespace kv
