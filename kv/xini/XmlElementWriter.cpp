#include "xini/XmlElementWriter.h"

#include <algorithm>
#include <array>

#include "xini/Base64.h"
#include "xini/XIniElement.h"
#include "xml/XmlCharacters.h"

namespace {

using Escapes = std::array<std::string_view, 256>;

constexpr Escapes MakeEscapes(bool inAttribute, bool onOneLine) {
  Escapes escapes{};
  escapes['&'] = "&amp;";
  escapes['<'] = "&lt;";
  escapes['>'] = "&gt;";
  escapes['\r'] = "&#13;";
  if (inAttribute) {
    escapes['"'] = "&quot;";
    escapes['\t'] = "&#9;";
  }
  if (inAttribute || onOneLine) escapes['\n'] = "&#10;";
  return escapes;
}

constexpr Escapes kInText = MakeEscapes(false, false);
constexpr Escapes kInCompactText = MakeEscapes(false, true);
constexpr Escapes kInAttribute = MakeEscapes(true, true);

/// ASCII that stands in text as it is, wherever.
constexpr std::array<bool, 256> MakePlain() {
  std::array<bool, 256> plain{};
  for (std::size_t c = ' '; c < 0x80; ++c) plain[c] = kInCompactText[c].empty();
  plain['\t'] = true;
  return plain;
}

constexpr std::array<bool, 256> kPlain = MakePlain();

bool IsPlain(std::string_view text) {
  return std::all_of(text.begin(), text.end(),
                     [](char c) { return kPlain[static_cast<unsigned char>(c)]; });
}

void AppendEscaped(kv::OutputBuffer* output, std::string_view text, const Escapes& escapes) {
  std::size_t begin = 0;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const std::string_view escape = escapes[static_cast<unsigned char>(text[i])];
    if (escape.empty()) continue;
    output->Append(text.substr(begin, i - begin));
    output->Append(escape);
    begin = i + 1;
  }
  output->Append(text.substr(begin));
}

// Piece by piece, so that a long value takes no memory.
void AppendBase64(kv::OutputBuffer* output, std::string_view bytes) {
  constexpr std::size_t kPiece = 3072;
  static_assert(kPiece % 3 == 0, "only the last piece may end in padding");
  for (std::size_t i = 0; i < bytes.size(); i += kPiece) {
    output->Append(kv::EncodeBase64(bytes.substr(i, kPiece)));
  }
}

// A name that begins with '_' would be taken for one of the format's own.
bool IsTagName(std::string_view name) {
  return kv::IsXmlName(name) && name[0] != '_';
}

// As an attribute this name would declare a namespace.
bool IsAttributeName(std::string_view name) {
  return IsTagName(name) && name != "xmlns";
}

}  // namespace

namespace kv {

XmlElementWriter::XmlElementWriter(OutputBuffer* output, int indent)
    : output_(output), indent_(indent) {}

void XmlElementWriter::Begin(const std::string& name, bool isCompact) {
  CloseStartTag();
  const bool isOnLine = isCompact || IsCompact();
  Indent();
  open_.push_back({std::string(StartTag(name, false)), isOnLine});
  isStartTagOpen_ = true;
}

void XmlElementWriter::End() {
  const OpenElement element = std::move(open_.back());
  open_.pop_back();
  if (isStartTagOpen_) {
    output_->Append("/>");
    isStartTagOpen_ = false;
    attributes_.clear();
  } else {
    if (!element.isCompact) Indent();
    output_->Append("</");
    output_->Append(element.tag);
    output_->Append('>');
  }
  EndLine();
}

void XmlElementWriter::Leaf(const std::string& name, std::string_view text) {
  CloseStartTag();
  Indent();
  const bool isPlain = IsPlain(text);
  const bool isBinary = !isPlain && !IsXmlText(text);
  const std::string_view tag = StartTag(name, isBinary);
  if (text.empty()) {
    output_->Append("/>");
  } else {
    output_->Append('>');
    if (isPlain) {
      output_->Append(text);
    } else if (isBinary) {
      AppendBase64(output_, text);
    } else {
      AppendEscaped(output_, text, IsCompact() ? kInCompactText : kInText);
    }
    output_->Append("</");
    output_->Append(tag);
    output_->Append('>');
  }
  EndLine();
}

bool XmlElementWriter::AddAttribute(const std::string& name, std::string_view text) {
  if (!isStartTagOpen_ || !IsAttributeName(name) || !IsXmlText(text)) return false;
  if (!attributes_.insert(name).second) return false;
  Attribute(name, text);
  return true;
}

void XmlElementWriter::Indent() {
  if (IsCompact()) return;
  constexpr std::string_view kTabs =
      "\t\t\t\t\t\t\t\t\t\t\t\t\t\t\t\t\t\t\t\t\t\t\t\t\t\t\t\t\t\t\t\t";
  static_assert(kTabs.size() == 32);
  const long long depth = indent_ + static_cast<long long>(open_.size());
  const long long most = kTabs.size();
  output_->Append(kTabs.substr(0, static_cast<std::size_t>(std::clamp(depth, 0LL, most))));
}

void XmlElementWriter::EndLine() {
  if (!IsCompact()) output_->Append('\n');
}

void XmlElementWriter::CloseStartTag() {
  if (!isStartTagOpen_) return;
  output_->Append('>');
  EndLine();
  isStartTagOpen_ = false;
  attributes_.clear();
}

std::string_view XmlElementWriter::StartTag(const std::string& name, bool isBinaryText) {
  const bool isTag = IsTagName(name);
  const bool isBinaryName = !isTag && !IsXmlText(name);
  const std::string_view tag = isTag ? std::string_view(name) : kOddTag;
  output_->Append('<');
  output_->Append(tag);
  if (!isTag && !name.empty()) Attribute(kNameMark, isBinaryName ? EncodeBase64(name) : name);
  if (isBinaryName || isBinaryText)
    Attribute(kEncodedMark, EncodedPartsText({isBinaryName, isBinaryText}));
  return tag;
}

void XmlElementWriter::Attribute(std::string_view name, std::string_view text) {
  output_->Append(' ');
  output_->Append(name);
  output_->Append("=\"");
  AppendEscaped(output_, text, kInAttribute);
  output_->Append('"');
}

}  // namespace kv
