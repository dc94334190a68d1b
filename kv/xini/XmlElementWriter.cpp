#include "xini/XmlElementWriter.h"

#include <algorithm>
#include <array>
#include <cstring>

#include "text/Blocks.h"
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

/// How many tabs a line is indented by at most.
constexpr long long kDeepest = 32;
/// Names and texts of more bytes are not put together in the buffer.
constexpr std::size_t kShortLeaf = 4096;

constexpr Escapes kInText = MakeEscapes(false, false);
constexpr Escapes kInCompactText = MakeEscapes(false, true);
constexpr Escapes kInAttribute = MakeEscapes(true, true);

/// Whether the text is ASCII that stands in XML as it is, wherever.
bool IsPlain(std::string_view text) {
  return kv::AllFit(text, [](__m128i block) {
    // Bytes from 0x80 on are negative, so less than a blank too.
    const __m128i control =
        _mm_andnot_si128(kv::Equal(block, '\t'), _mm_cmplt_epi8(block, _mm_set1_epi8(' ')));
    const __m128i bracket = _mm_or_si128(kv::Equal(block, '<'), kv::Equal(block, '>'));
    return _mm_or_si128(_mm_or_si128(control, bracket), kv::Equal(block, '&'));
  });
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
  const bool isPlain = IsPlain(text);
  if (isPlain && IsTagName(name) && PlainLeaf(name, text)) return;
  Indent();
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

bool XmlElementWriter::PlainLeaf(std::string_view tag, std::string_view text) {
  if (text.empty() || std::max(tag.size(), text.size()) > kShortLeaf) return false;
  static_assert(kDeepest + 3 * kShortLeaf + 16 <= OutputBuffer::kCapacity, "a leaf has room");
  const std::size_t depth = Depth();
  char* to = output_->Room(depth + 2 * tag.size() + text.size() + std::strlen("<></>\n"));
  to = std::fill_n(to, depth, '\t');
  *to++ = '<';
  to = CopyTo(to, tag);
  *to++ = '>';
  to = CopyTo(to, text);
  *to++ = '<';
  *to++ = '/';
  to = CopyTo(to, tag);
  *to++ = '>';
  if (!IsCompact()) *to++ = '\n';
  output_->Took(to);
  return true;
}

std::size_t XmlElementWriter::Depth() const {
  if (IsCompact()) return 0;
  const long long depth = indent_ + static_cast<long long>(open_.size());
  return static_cast<std::size_t>(std::clamp<long long>(depth, 0, kDeepest));
}

void XmlElementWriter::Indent() {
  const std::size_t depth = Depth();
  output_->Took(std::fill_n(output_->Room(depth), depth, '\t'));
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
