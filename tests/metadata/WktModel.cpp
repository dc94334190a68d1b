#include "metadata/WktModel.h"

#include <cctype>

#include "Kv/Text.h"

namespace wkt_model {
namespace {

std::string Value(const std::string& indent, const std::string& token) {
  return indent + "<VALUE>" + token + "</VALUE>\r\n";
}

bool IsSpace(char c) {
  return std::isspace(static_cast<unsigned char>(c)) != 0;
}

}  // namespace

// One loop with a branch for every kind of character is what makes it plain.
bool Section(const std::string& text, unsigned long* pos, unsigned long depth,
             const std::string& encoding, const std::string& name, std::string* out) {
  if (*pos >= text.size()) return false;
  const std::string lineIndent(depth, '\t');
  const std::string valueIndent(depth + 1, '\t');
  std::string sectionName = name;
  std::string xml;
  unsigned long at = *pos;
  if (name.empty()) {
    xml = lineIndent + "<?xml version=\"1.0\" encoding=\"" + encoding + "\"?>\r\n";
  } else {
    xml = lineIndent + "<" + name + ">\r\n";
    at = *pos + 1;
  }
  std::string token;
  bool isQuoted = false;
  bool isClosed = false;
  while (at < text.size() && !isClosed) {
    const char c = text[at];
    if (isQuoted) {
      token += c;
      if (c == '"') isQuoted = false;
      ++at;
    } else if (c == '"') {
      token += c;
      isQuoted = true;
      ++at;
    } else if (c == ',') {
      if (!token.empty()) xml += Value(valueIndent, token);
      token.clear();
      ++at;
    } else if (c == '[' && sectionName.empty()) {
      sectionName = token;
      token.clear();
      xml += lineIndent + "<" + sectionName + ">\r\n";
      ++at;
    } else if (c == '[') {
      std::string child;
      if (!Section(text, &at, depth + 1, "", token, &child)) return false;
      xml += child;
      token.clear();
    } else if (c == ']') {
      if (!token.empty()) xml += Value(valueIndent, token);
      xml += lineIndent + "</" + sectionName + ">\r\n";
      ++at;
      isClosed = true;
    } else {
      if (!IsSpace(c)) token += c;
      ++at;
    }
  }
  *out += xml;
  *pos = at;
  return true;
}

bool Document(const std::string& wkt, std::string* xml) {
  unsigned long pos = 0;
  std::string out;
  if (!Section(wkt, &pos, 0, "utf-8", "", &out)) return false;
  *xml = KvAnsiToChar(out, kvEncodingUtf8);
  return true;
}

}  // namespace wkt_model
