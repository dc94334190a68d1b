#include "xmlitem/XmlTreeBuilder.h"

#include "xml/XmlDocument.h"

var_a_legacy::var_a<TKvXmlItem*> TKvXmlTreeBuilder::Build(pugi::xml_node root) {
  TKvXmlTreeBuilder builder;
  builder.Open(root);
  for (;;) {
    if (builder.open_.back().next) {
      builder.TakeNext();
      continue;
    }
    var_a_legacy::var_a<TKvXmlItem*> item = builder.Close();
    if (builder.open_.empty()) return item;
    builder.open_.back().items->children.push_back(item);
  }
}

void TKvXmlTreeBuilder::Open(pugi::xml_node element) {
  std::shared_ptr<TKvXmlTagItems::Data> items;
  if (element.first_child() || *element.value() != '\0') {
    items = TKvXmlTagItems::Data::Make();
    items->text = kv::XmlText(element);
  }
  open_.push_back({element, element.first_child(), items});
}

void TKvXmlTreeBuilder::TakeNext() {
  OpenElement& parent = open_.back();
  const pugi::xml_node node = parent.next;
  parent.next = node.next_sibling();
  if (node.type() == pugi::node_element) Open(node);
}

var_a_legacy::var_a<TKvXmlItem*> TKvXmlTreeBuilder::Close() {
  TKvXmlElement element;
  element.tag = open_.back().element.name();
  element.attributes = Attributes(open_.back().element);
  element.items.data_ = open_.back().items;
  open_.pop_back();
  return var_a_legacy::var_a<TKvXmlItem*>(new TKvXmlItem(element));
}

TKvXmlTagAttributes TKvXmlTreeBuilder::Attributes(pugi::xml_node element) {
  TKvXmlTagAttributes attributes;
  if (!element.first_attribute()) return attributes;
  const auto data = std::make_shared<TKvXmlTagAttributes::Data>();
  for (const pugi::xml_attribute attribute : element.attributes()) {
    data->attributes.push_back({attribute.name(), attribute.value()});
  }
  attributes.data_ = data;
  return attributes;
}
