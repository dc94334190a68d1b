#include "xml/XmlDocument.h"

#include <algorithm>
#include <new>

#include "Kv/Stream.h"
#include "xml/StreamBytes.h"
#include "xml/XmlCharacters.h"
#include "xml/XmlEncoding.h"
#include "xml/XmlReferences.h"
#include "xml/XmlSurvey.h"

namespace {

constexpr std::size_t kNone = std::string_view::npos;

constexpr unsigned kFlags = pugi::parse_cdata | pugi::parse_escapes | pugi::parse_eol |
                            pugi::parse_wconv_attribute | pugi::parse_doctype |
                            pugi::parse_fragment | pugi::parse_embed_pcdata;

bool IsBlank(std::string_view text) {
  return text.find_first_not_of(" \t\r\n") == std::string_view::npos;
}

std::string Place(std::string_view text, std::size_t offset) {
  const std::string_view before = text.substr(0, offset);
  const auto line = 1 + std::count(before.begin(), before.end(), '\n');
  const std::string_view inLine = before.substr(before.rfind('\n') + 1);
  const auto column = 1 + std::count_if(inLine.begin(), inLine.end(), [](char c) {
                        return (static_cast<unsigned char>(c) & 0xC0U) != 0x80U;
                      });
  return "XML, line " + std::to_string(line) + ", column " + std::to_string(column) + ": ";
}

// The element that follows in document order, without recursion; null at the end.
pugi::xml_node NextElement(pugi::xml_node node) {
  if (node.first_child()) return node.first_child();
  while (node && !node.next_sibling()) node = node.parent();
  return node.next_sibling();
}

}  // namespace

namespace kv {

void XmlDocument::Load(TKvStream* stream, WhiteSpace whiteSpace, std::string_view mark,
                       Check check) {
  if (stream == nullptr || !stream->IsOpen()) throw TKvError("XML: the stream is not open");
  const StreamBytes bytes(*stream);
  Load(bytes.View(), whiteSpace, mark, check);
}

void XmlDocument::Load(std::string_view bytes, WhiteSpace whiteSpace, std::string_view mark,
                       Check check) {
  std::string converted;
  text_ = XmlAsUtf8(bytes, &converted);
  const XmlSurvey survey = SurveyXml(text_, mark);
  const std::size_t bad = survey.odd ? FindNonXml(text_) : kNone;
  if (bad != kNone) FailAt(bad, "not a character of XML in UTF-8");
  Parse(whiteSpace, survey);
  FindRoot();
  hasMark_ = check != nullptr && survey.mark && text_.find(mark) != kNone;
  if (hasMark_) CheckAll(check);
  text_ = {};
}

// White space that is the only text of an element can be told at its end tag, unless a comment, a
// CDATA section or a processing instruction (other than the declaration at the front) may stand
// beside it.
void XmlDocument::Parse(WhiteSpace whiteSpace, const XmlSurvey& survey) {
  const std::size_t unknown = survey.reference ? FindUnknownReference(text_) : kNone;
  if (unknown != kNone) FailAt(unknown, "unknown entity or character reference");
  const bool keepAll = whiteSpace == WhiteSpace::kAll || survey.piece;
  const unsigned spaces = keepAll ? pugi::parse_ws_pcdata : pugi::parse_ws_pcdata_single;
  const pugi::xml_parse_result result =
      document_.load_buffer(text_.data(), text_.size(), kFlags | spaces, pugi::encoding_utf8);
  if (result.status == pugi::status_out_of_memory) throw std::bad_alloc();
  if (!result) FailAt(static_cast<std::size_t>(result.offset), result.description());
}

void XmlDocument::FindRoot() {
  for (const pugi::xml_node node : document_.children()) {
    const auto offset = static_cast<std::size_t>(std::max<std::ptrdiff_t>(node.offset_debug(), 0));
    if (node.type() == pugi::node_doctype) FailAt(offset, "document types are not read");
    if (node.type() == pugi::node_pcdata && IsBlank(node.value())) continue;
    if (node.type() != pugi::node_element) FailAt(offset, "text outside the root element");
    if (root_) FailAt(offset, "a second root element");
    root_ = node;
  }
  if (!root_) FailAt(text_.size(), "no root element");
}

void XmlDocument::CheckAll(Check check) const {
  for (pugi::xml_node node = root_; node; node = NextElement(node)) {
    if (node.type() == pugi::node_element) check(*this, node);
  }
}

void XmlDocument::Fail(pugi::xml_node element, const std::string& reason) const {
  FailAt(static_cast<std::size_t>(std::max<std::ptrdiff_t>(element.offset_debug(), 0)), reason);
}

void XmlDocument::FailAt(std::size_t offset, const std::string& reason) const {
  throw TKvError(Place(text_, offset) + reason);
}

std::string XmlText(pugi::xml_node element) {
  std::string text = element.value();
  for (const pugi::xml_node piece : element.children()) {
    if (piece.type() != pugi::node_element) text += piece.value();
  }
  return text;
}

}  // namespace kv
