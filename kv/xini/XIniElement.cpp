#include "xini/XIniElement.h"

#include <optional>

#include "xini/Base64.h"
#include "xml/XmlDocument.h"

namespace {

constexpr std::string_view kNameAndValue = "name value";
constexpr std::string_view kName = "name";
constexpr std::string_view kValue = "value";

std::optional<kv::EncodedParts> ParseParts(std::string_view text) {
  if (text.empty()) return kv::EncodedParts{};
  if (text == kNameAndValue) return kv::EncodedParts{true, true};
  if (text == kName) return kv::EncodedParts{true, false};
  if (text == kValue) return kv::EncodedParts{false, true};
  return std::nullopt;
}

std::string Decoded(std::string_view text) {
  std::string bytes;
  kv::DecodeBase64(text, &bytes);
  return bytes;
}

}  // namespace

namespace kv {

std::string_view EncodedPartsText(EncodedParts parts) {
  if (parts.name) return parts.value ? kNameAndValue : kName;
  return kValue;
}

EncodedParts EncodedPartsOf(pugi::xml_node element) {
  return ParseParts(element.attribute(kEncodedMark).value()).value_or(EncodedParts{});
}

void CheckXIniElement(const XmlDocument& document, pugi::xml_node element) {
  const auto parts = ParseParts(element.attribute(kEncodedMark).value());
  if (!parts) document.Fail(element, R"("_enc" is none of "name", "value", "name value")");
  std::string bytes;
  if (parts->name && !DecodeBase64(element.attribute(kNameMark).value(), &bytes)) {
    document.Fail(element, "the name is not base64");
  }
  if (parts->value && !DecodeBase64(XmlText(element), &bytes)) {
    document.Fail(element, "the value is not base64");
  }
}

std::string DecodedName(std::string_view written) {
  return Decoded(written);
}

std::string XIniValue(pugi::xml_node element) {
  const bool isEncoded = element.first_attribute() && EncodedPartsOf(element).value;
  return isEncoded ? Decoded(XmlText(element)) : XmlText(element);
}

}  // namespace kv
