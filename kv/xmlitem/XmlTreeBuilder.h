// Building elements from a parsed document.
#pragma once

#include <pugixml.hpp>
#include <vector>

#include "xmlitem/XmlTreeData.h"

/// Turns the elements of a parsed document into shared ones, children before their parents and
/// without recursion. Throws std::bad_alloc.
class TKvXmlTreeBuilder {
 public:
  static var_a_legacy::var_a<TKvXmlItem*> Build(pugi::xml_node root);

 private:
  /// An element whose children are being built; `next` is the node to look at.
  struct OpenElement {
    pugi::xml_node element;
    pugi::xml_node next;
    std::shared_ptr<TKvXmlTagItems::Data> items;
  };

  void Open(pugi::xml_node element);
  void TakeNext();
  var_a_legacy::var_a<TKvXmlItem*> Close();
  static TKvXmlTagAttributes Attributes(pugi::xml_node element);

  std::vector<OpenElement> open_;
};
