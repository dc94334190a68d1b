// XML elements written one after the other, with indentation.
#pragma once

#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "xini/OutputBuffer.h"

namespace kv {

/// Writes nested elements. A start tag stays open for attributes until the element gets a child or
/// ends. Memory grows with the open elements and the attribute names of an open start tag only.
/// Throws std::bad_alloc; after that nothing further may be written.
class XmlElementWriter {
 public:
  /// Each element is indented by `indent` and its depth, together between 0 and 32 tabs.
  XmlElementWriter(OutputBuffer* output, int indent);

  /// Begins a child of the innermost open element. `name` may be any bytes. All that a compact
  /// element holds is written on one line.
  void Begin(const std::string& name, bool isCompact);
  /// Ends the innermost open element.
  void End();
  /// A child of the innermost open element that holds text, any bytes.
  void Leaf(const std::string& name, std::string_view text);
  /// Adds an attribute to the innermost open element; false, and nothing done, where XML does not
  /// allow that.
  bool AddAttribute(const std::string& name, std::string_view text);

  bool HasOpen() const { return !open_.empty(); }

 private:
  struct OpenElement {
    std::string tag;
    bool isCompact;
  };

  bool IsCompact() const { return !open_.empty() && open_.back().isCompact; }
  /// How many tabs stand before an element.
  std::size_t Depth() const;
  void Indent();
  /// Writes a leaf whose tag and text stand as they are; false, and nothing written, when there is
  /// no text or one of them is long.
  bool PlainLeaf(std::string_view tag, std::string_view text);
  void EndLine();
  void CloseStartTag();
  /// "<name", its `_name` and `_enc`; returns the tag.
  std::string_view StartTag(const std::string& name, bool isBinaryText);
  void Attribute(std::string_view name, std::string_view text);

  OutputBuffer* output_;
  long long indent_;
  std::vector<OpenElement> open_;
  std::set<std::string, std::less<>> attributes_;
  bool isStartTagOpen_ = false;
};

}  // namespace kv
