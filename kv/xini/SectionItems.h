// The items of one section of a parsed XML-ini document.
#pragma once

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstring>
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

/// Whether two texts that end with a NUL are the same. Most names are short and differ in their
/// first byte: a loop is quicker than a call.
inline bool AreSame(const char* a, const char* b) {
  if (*a != *b) return false;
  while (*a != '\0') {
    if (*++a != *++b) return false;
  }
  return true;
}

/// The items of one element, by position and by name. Refers to the document, which must outlive
/// it. Lists them as far as it is asked, each once; finding by name sorts the names when it first
/// has to go far.
class SectionItems {
 public:
  /// An element or an attribute.
  class Item {
   public:
    enum NameKind : unsigned char {
      kPlain,    ///< it ends with its first NUL
      kWithNul,  ///< it holds NULs of its own
      kUnread,   ///< it is not the tag and has not been looked up
    };

    /// `name` is the tag.
    Item(pugi::xml_node element, const char* name, NameKind kind)
        : name_(name), node_(std::bit_cast<void*>(element)), nameKind_(kind), isElement_(true) {}
    explicit Item(pugi::xml_attribute attribute)
        : name_(attribute.name()), node_(std::bit_cast<void*>(attribute)), isElement_(false) {}

    bool IsElement() const { return isElement_; }
    pugi::xml_node Element() const { return std::bit_cast<pugi::xml_node>(node_); }
    pugi::xml_attribute Attribute() const { return std::bit_cast<pugi::xml_attribute>(node_); }

   private:
    friend class SectionItems;

    const char* name_;
    std::size_t length_ = 0;  ///< of a name that holds NULs
    // pugixml's handles are a pointer each. It makes an empty one with a call, and would with each
    // item.
    void* node_;
    NameKind nameKind_ = kPlain;
    bool isElement_;
  };

  /// No position.
  static constexpr unsigned long kNone = ~0UL;

  SectionItems() = default;

  /// Turns to another section. Memory is kept, so that entering sections costs none.
  void Reset(pugi::xml_node section);

  /// Whether there is an item of that position.
  bool Has(unsigned long i) const { return i < items_.size() || ListTo(i); }
  /// The number of items; lists them all.
  unsigned long Size() const;
  /// An item that there is.
  const Item& operator[](unsigned long i) const {
    static_cast<void>(Has(i));
    return items_[i];
  }
  /// The name of an item that there is.
  std::string_view NameAt(unsigned long i) const;
  /// The first item of that name, which ends with a NUL, at `start` or behind it; kNone when there
  /// is none.
  unsigned long Find(const char* name, unsigned long start) const {
    if (!Has(start)) return kNone;
    const Item* const items = items_.data();
    const unsigned long end = std::min<unsigned long>(items_.size(), start + kNear);
    for (unsigned long i = start; i < end && items[i].nameKind_ != Item::kUnread; ++i) {
      if (IsNamed(items[i], name)) return i;
    }
    return FindOn(name, start);
  }
  /// The same for items that are elements.
  unsigned long FindElement(const std::string& name) const;

 private:
  static constexpr unsigned long kNear = 16;

  static bool IsNamed(const Item& item, const char* name) {
    return AreSame(item.name_, name) && item.nameKind_ == Item::kPlain;
  }

  void Begin() const;
  bool ListTo(unsigned long i) const;
  bool ListMore() const;
  void LookUpName(Item* item) const;
  unsigned long FindOn(const char* name, unsigned long start) const;
  unsigned long FindSorted(std::string_view name, unsigned long start) const;

  struct Place {
    std::string_view name;
    unsigned long item;
  };

  pugi::xml_node section_;
  mutable bool hasBegun_ = false;  ///< the attributes are listed
  mutable pugi::xml_node next_;    ///< what follows the elements that are listed
  mutable std::vector<Item> items_;
  mutable unsigned long firstElement_ = 0;
  mutable std::forward_list<std::string> decodedNames_;
  mutable std::vector<Place> sorted_;
};

}  // namespace kv
