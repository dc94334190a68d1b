// Parses any bytes as XML and looks at every element, attribute and text.
#include <string>
#include <vector>

#include "Kv/XmlItem.h"
#include "fuzz/FuzzInput.h"

namespace {

using Item = var_a_legacy::var_a<TKvXmlItem*>;

void LookAtAttributes(const TKvXmlTagAttributes& attributes) {
  for (unsigned long i = 0; i < attributes.size(); ++i) {
    Require(!attributes[i].name.empty(), "an attribute has a name");
    attributes.get_value(attributes[i].name, "");
  }
}

// Returns the bytes of text in the tree.
std::size_t LookAtAll(const Item& root) {
  std::size_t bytes = 0;
  std::vector<Item> waiting = {root};
  while (!waiting.empty()) {
    const Item item = waiting.back();
    waiting.pop_back();
    const TKvXmlElement& element = item->Element();
    Require(!element.tag.empty(), "an element has a tag");
    LookAtAttributes(element.attributes);
    bytes += element.items.get_text().size();
    for (unsigned long i = 0; i < element.items.size(); ++i) waiting.push_back(element.items[i]);
  }
  return bytes;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string text(reinterpret_cast<const char*>(data), size);
  try {
    // Windows-1252 grows most, to three bytes a character.
    Require(LookAtAll(TKvXmlItem::Parse(text)) <= 3 * size, "text does not multiply");
    TKvMemoryStream stream(text);
    TKvXmlItem::Parse(&stream);
  } catch (const TKvError&) {
    return 0;
  }
  return 0;
}
