// The items of one section of a parsed XML-ini document.
#pragma once

#include <bit>
#include <cstddef>
#include <forward_list>
#include <pugixml.hpp>
#include <string>
#include <string_view>
#include <vector>

namespace kv {

/// Whether a handle of pugixml's refers to nothing. It is one pointer; its own test is a call.
template <class Handle>
bool IsNull(const Handle& handle) {
  return std::bit_cast<const void*>(handle) == nullptr;
}

/// The items of one element, by position and by name. Refers to the document, which must outlive
/// it. Lists them when first asked, in linear time; finding by name sorts the names when it first
/// has to go far.
class SectionItems {
 public:
  static constexpr std::size_t kUnknown = ~std::size_t{0};

  /// An element or an attribute.
  class Item {
   public:
    explicit Item(pugi::xml_node element)
        : name(element.name()), node_(std::bit_cast<void*>(element)), isElement_(true) {}
    explicit Item(pugi::xml_attribute attribute)
        : name(attribute.name()), node_(std::bit_cast<void*>(attribute)), isElement_(false) {}

    bool IsElement() const { return isElement_; }
    pugi::xml_node Element() const { return std::bit_cast<pugi::xml_node>(node_); }
    pugi::xml_attribute Attribute() const { return std::bit_cast<pugi::xml_attribute>(node_); }

    const char* name;               ///< as it stands in the document until it is known
    std::size_t length = kUnknown;  ///< of the name; kUnknown until somebody asks

   private:
    // pugixml's handles are a pointer each. It makes an empty one with a call, and would with each
    // item.
    void* node_;
    bool isElement_;
  };

  SectionItems() = default;

  /// Turns to another section. Memory is kept, so that entering sections costs none.
  void Reset(pugi::xml_node section);

  unsigned long Size() const { return List().size(); }
  const Item& operator[](unsigned long i) const { return List()[i]; }
  std::string_view NameAt(unsigned long i) const { return Name(&items_[i]); }
  /// The first item of that name at `start` or behind it; all ones when there is none.
  unsigned long Find(std::string_view name, unsigned long start) const;
  /// The same for items that are elements.
  unsigned long FindElement(std::string_view name) const;

 private:
  const std::vector<Item>& List() const {
    if (!isListed_) MakeList();
    return items_;
  }
  void MakeList() const;
  bool HasName(Item* item, std::string_view name) const;
  std::string_view Name(Item* item) const;
  void FindOutName(Item* item) const;
  unsigned long FindSorted(std::string_view name, unsigned long start) const;

  pugi::xml_node section_;
  mutable bool isListed_ = false;
  mutable std::vector<Item> items_;
  mutable unsigned long firstElement_ = 0;
  mutable std::forward_list<std::string> decodedNames_;
  mutable std::vector<unsigned long> sorted_;
};

}  // namespace kv
