#include <cstdio>

#include "SatCommonUtils/Metadata.h"

namespace SatCommonUtils {
namespace {

/// The first child element of that name; empty when there is none.
TXmlItem FindChild(const TXmlItem& item, const std::string& tag) {
  if (!item) return {};
  const TKvXmlTagItems& children = item->Element().items;
  const unsigned long index = children.find_tag_f(tag, 0);
  return index < children.size() ? children[index] : TXmlItem();
}

// What this scan makes of a text is what callers rely on. NOLINTBEGIN(cert-err34-c)
int Scan(const std::string& text, double* value) {
  return std::sscanf(text.c_str(), "%lf", value);
}
int Scan(const std::string& text, int* value) {
  return std::sscanf(text.c_str(), "%d", value);
}
// NOLINTEND(cert-err34-c)

/// True unless the text is empty or no number begins it. Blanks alone make the scan report the end
/// of the text, not "no number": true, and the value stays, which callers rely on.
template <class T>
bool ReadNumber(const std::string& text, T* value) {
  return !text.empty() && Scan(text, value) != 0;
}

template <class T>
T ReadNumberOr(const std::string& text, T def) {
  T result = def;
  return ReadNumber(text, &result) ? result : def;
}

}  // namespace

std::string ReadStringFromXMLItemText(TXmlItem item, const std::string& tag,
                                      const std::string& def) {
  const TXmlItem child = FindChild(item, tag);
  return child ? child->Element().items.get_text() : def;
}

double ReadDoubleFromXMLItemText(TXmlItem item, const std::string& tag, const double& def) {
  return ReadNumberOr(ReadStringFromXMLItemText(item, tag, std::string()), def);
}

bool ReadDoubleFromXMLItemText(TXmlItem item, const std::string& tag, double* value) {
  return ReadNumber(ReadStringFromXMLItemText(item, tag, std::string()), value);
}

int ReadIntFromXMLItemText(TXmlItem item, const std::string& tag, int def) {
  return ReadNumberOr(ReadStringFromXMLItemText(item, tag, std::string()), def);
}

bool ReadIntFromXMLItemText(TXmlItem item, const std::string& tag, int* value) {
  return ReadNumber(ReadStringFromXMLItemText(item, tag, std::string()), value);
}

std::string ReadStringFromXMLItemAttribute(TXmlItem item, const std::string& tag,
                                           const std::string& attribute, const std::string& def) {
  const TXmlItem child = FindChild(item, tag);
  return child ? child->Element().attributes.get_value(attribute, def) : def;
}

double ReadDoubleFromXMLItemAttribute(TXmlItem item, const std::string& tag,
                                      const std::string& attribute, const double& def) {
  return ReadNumberOr(ReadStringFromXMLItemAttribute(item, tag, attribute, std::string()), def);
}

bool ReadDoubleFromXMLItemAttribute(TXmlItem item, const std::string& tag,
                                    const std::string& attribute, double* value) {
  return ReadNumber(ReadStringFromXMLItemAttribute(item, tag, attribute, std::string()), value);
}

int ReadIntFromXMLItemAttribute(TXmlItem item, const std::string& tag, const std::string& attribute,
                                int def) {
  return ReadNumberOr(ReadStringFromXMLItemAttribute(item, tag, attribute, std::string()), def);
}

bool ReadIntFromXMLItemAttribute(TXmlItem item, const std::string& tag,
                                 const std::string& attribute, int* value) {
  return ReadNumber(ReadStringFromXMLItemAttribute(item, tag, attribute, std::string()), value);
}

}  // namespace SatCommonUtils
