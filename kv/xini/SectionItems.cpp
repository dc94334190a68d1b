#include "xini/SectionItems.h"

#include <algorithm>
#include <cstring>
#include <numeric>
#include <tuple>

#include "xini/XIniElement.h"

namespace {

constexpr unsigned long kNone = ~0UL;

/// Whether the name of an element may be another than its tag.
bool IsOddTag(const char* tag) {
  static_assert(kv::kOddTag.size() == 1);
  return tag[0] == kv::kOddTag[0] && tag[1] == '\0';
}

/// Whether a text that ends with a NUL is `name`. Names are short: a loop is quicker than a call.
bool IsText(const char* text, std::string_view name) {
  for (const char c : name) {
    if (*text != c || c == '\0') return false;
    ++text;
  }
  return *text == '\0';
}

}  // namespace

namespace kv {

void SectionItems::Reset(pugi::xml_node section) {
  section_ = section;
  isListed_ = false;
  items_.clear();
  decodedNames_.clear();
  sorted_.clear();
}

// pugixml's nodes stand in lists, and each step is a call: no step is taken twice. What has a name
// is an element: declarations, processing instructions and document types are not kept.
void SectionItems::MakeList() const {
  items_.clear();
  for (pugi::xml_attribute at = section_.first_attribute(); !IsNull(at); at = at.next_attribute()) {
    const Item item(at);
    if (item.name[0] != '_') items_.push_back(item);
  }
  firstElement_ = items_.size();
  for (pugi::xml_node at = section_.first_child(); !IsNull(at); at = at.next_sibling()) {
    const Item item(at);
    if (item.name[0] != '\0') items_.push_back(item);
  }
  isListed_ = true;
}

void SectionItems::FindOutName(Item* item) const {
  if (item->IsElement() && IsOddTag(item->name)) {
    const char* const written = item->Element().attribute(kNameMark).value();
    if (EncodedPartsOf(item->Element()).name) {
      const std::string& decoded = decodedNames_.emplace_front(DecodedName(written));
      item->name = decoded.data();
      item->length = decoded.size();
      return;
    }
    item->name = written;
  }
  item->length = std::strlen(item->name);
}

std::string_view SectionItems::Name(Item* item) const {
  if (item->length == kUnknown) FindOutName(item);
  return {item->name, item->length};
}

// The length of a plain name is not needed to see that it is another.
bool SectionItems::HasName(Item* item, std::string_view name) const {
  if (item->length == kUnknown && !IsOddTag(item->name)) return IsText(item->name, name);
  return Name(item) == name;
}

unsigned long SectionItems::Find(std::string_view name, unsigned long start) const {
  constexpr unsigned long kNear = 16;
  const unsigned long size = Size();
  const unsigned long near = start < size ? start + std::min(kNear, size - start) : start;
  for (unsigned long i = start; i < near; ++i) {
    Item& item = items_[i];
    // Most names differ in their first byte. That of an odd tag says nothing of its name.
    const bool differs = !name.empty() && item.name[0] != name[0] && item.name[0] != kOddTag[0];
    if (!differs && HasName(&item, name)) return i;
  }
  return near < size ? FindSorted(name, near) : kNone;
}

unsigned long SectionItems::FindElement(std::string_view name) const {
  return List().empty() ? kNone : Find(name, firstElement_);
}

unsigned long SectionItems::FindSorted(std::string_view name, unsigned long start) const {
  const auto key = [this](unsigned long i) { return std::tuple(NameAt(i), i); };
  if (sorted_.empty()) {
    std::vector<unsigned long> sorted(Size());
    std::iota(sorted.begin(), sorted.end(), 0UL);
    std::sort(sorted.begin(), sorted.end(),
              [&](unsigned long a, unsigned long b) { return key(a) < key(b); });
    sorted_ = std::move(sorted);
  }
  const auto found =
      std::lower_bound(sorted_.begin(), sorted_.end(), std::tuple(name, start),
                       [&](unsigned long i, const auto& wanted) { return key(i) < wanted; });
  return found != sorted_.end() && NameAt(*found) == name ? *found : kNone;
}

}  // namespace kv
