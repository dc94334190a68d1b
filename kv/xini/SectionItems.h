// The items of one section of a parsed XML-ini document.
#pragma once

#include <forward_list>
#include <pugixml.hpp>
#include <string>
#include <string_view>
#include <vector>

namespace kv {

/// The items of one element, by position and by name. Refers to the document, which must outlive
/// it. Lists them when first asked, in linear time; finding by name sorts the names when it first
/// has to go far.
class SectionItems {
 public:
  struct Item {
    std::string_view name;
    pugi::xml_node element;  ///< null for an attribute
    pugi::xml_attribute attribute;
  };

  explicit SectionItems(pugi::xml_node section) : section_(section) {}

  unsigned long Size() const { return List().size(); }
  const Item& operator[](unsigned long i) const { return List()[i]; }
  /// The first item of that name at `start` or behind it; all ones when there is none.
  unsigned long Find(std::string_view name, unsigned long start) const;
  /// The same for items that are elements.
  unsigned long FindElement(std::string_view name) const;

 private:
  const std::vector<Item>& List() const;
  void AddAttributes() const;
  void AddElements() const;
  std::string_view NameOf(pugi::xml_node element) const;
  unsigned long FindSorted(std::string_view name, unsigned long start) const;

  pugi::xml_node section_;
  mutable bool isListed_ = false;
  mutable std::vector<Item> items_;
  mutable unsigned long firstElement_ = 0;
  mutable std::forward_list<std::string> decodedNames_;
  mutable std::vector<unsigned long> sorted_;
};

}  // namespace kv
