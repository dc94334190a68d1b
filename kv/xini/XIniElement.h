// How an element of an XML-ini document spells names and values.
#pragma once

#include <pugixml.hpp>
#include <string>
#include <string_view>

namespace kv {

class XmlDocument;

/// The tag of an element whose name XML does not take as a tag, or that has none.
inline constexpr std::string_view kOddTag = "_";
/// The attribute that holds such a name.
inline constexpr const char* kNameMark = "_name";
/// The attribute that says which parts are base64.
inline constexpr const char* kEncodedMark = "_enc";

struct EncodedParts {
  bool name = false;
  bool value = false;
};

/// What `_enc` says of parts of which at least one is encoded.
std::string_view EncodedPartsText(EncodedParts parts);
/// The parts of an element of a document that has been checked.
EncodedParts EncodedPartsOf(pugi::xml_node element);

/// A check of a document: throws TKvError when `_enc` or what it speaks of is broken.
void CheckXIniElement(const XmlDocument& document, pugi::xml_node element);

/// The bytes of an encoded name that has been checked.
std::string DecodedName(std::string_view written);
/// The value of an element of a document that has been checked.
std::string XIniValue(pugi::xml_node element);

}  // namespace kv
