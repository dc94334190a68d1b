#include "Kv/XmlItem.h"

#include <utility>

#include "xml/XmlDocument.h"
#include "xmlitem/XmlTreeBuilder.h"

TKvXmlItem::TKvXmlItem(TKvXmlElement element) : element_(std::move(element)) {}

TKvXmlItem::~TKvXmlItem() = default;

const TKvXmlElement& TKvXmlItem::Element() const {
  return element_;
}

var_a_legacy::var_a<TKvXmlItem*> TKvXmlItem::Parse(TKvStream* stream) {
  kv::XmlDocument document;
  document.Load(stream, kv::WhiteSpace::kAll);
  return TKvXmlTreeBuilder::Build(document.Root());
}

var_a_legacy::var_a<TKvXmlItem*> TKvXmlItem::Parse(const std::string& text) {
  kv::XmlDocument document;
  document.Load(text, kv::WhiteSpace::kAll);
  return TKvXmlTreeBuilder::Build(document.Root());
}
