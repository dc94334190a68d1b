#include "xini/SectionItems.h"

#include <algorithm>
#include <tuple>

#include "xini/XIniElement.h"

namespace {

/// Whether the name of an element may be another than its tag.
bool IsOddTag(const char* tag) {
  static_assert(kv::kOddTag.size() == 1);
  return tag[0] == kv::kOddTag[0] && tag[1] == '\0';
}

}  // namespace

namespace kv {

void SectionItems::Reset(pugi::xml_node section) {
  section_ = section;
  hasBegun_ = false;
  items_.clear();
  decodedNames_.clear();
  sorted_.clear();
}

unsigned long SectionItems::Size() const {
  ListTo(kNone);
  return items_.size();
}

void SectionItems::Begin() const {
  items_.clear();
  for (pugi::xml_attribute at = section_.first_attribute(); !IsNull(at); at = at.next_attribute()) {
    const Item item(at);
    if (item.name_[0] != '_') items_.push_back(item);
  }
  firstElement_ = items_.size();
  next_ = section_.first_child();
  hasBegun_ = true;
}

bool SectionItems::ListTo(unsigned long i) const {
  if (!hasBegun_) Begin();
  while (i >= items_.size()) {
    if (!ListMore()) return false;
  }
  return true;
}

// pugixml's nodes stand in lists, and each step is a call to memory that is not at hand: no step is
// taken twice, and each shortly before its node is wanted. They mostly lie in the order of the
// text, so that memory a little further on is soon wanted too. What has a name is an element:
// declarations, processing instructions and document types are not kept.
bool SectionItems::ListMore() const {
  constexpr int kAtOnce = 8;
  constexpr int kAhead = 2048;
  const std::size_t before = items_.size();
  // Room for all at first: none of them is listed when there is no memory for it.
  if (items_.capacity() < before + kAtOnce) items_.reserve(2 * before + kAtOnce);
  pugi::xml_node next = next_;
  for (int i = 0; i < kAtOnce && !IsNull(next); next = next.next_sibling()) {
    __builtin_prefetch(std::bit_cast<const char*>(next) + kAhead);
    const char* const name = next.name();
    if (name[0] == '\0') continue;
    items_.emplace_back(next, name, IsOddTag(name) ? Item::kUnread : Item::kPlain);
    ++i;
  }
  next_ = next;
  return items_.size() > before;
}

void SectionItems::LookUpName(Item* item) const {
  const char* name = item->Element().attribute(kNameMark).value();
  Item::NameKind kind = Item::kPlain;
  if (EncodedPartsOf(item->Element()).name) {
    const std::string& decoded = decodedNames_.emplace_front(DecodedName(name));
    name = decoded.c_str();
    item->length_ = decoded.size();
    if (decoded.find('\0') != std::string::npos) kind = Item::kWithNul;
  }
  item->name_ = name;
  item->nameKind_ = kind;
}

std::string_view SectionItems::NameAt(unsigned long i) const {
  static_cast<void>(Has(i));
  Item& item = items_[i];
  if (item.nameKind_ == Item::kUnread) LookUpName(&item);
  return {item.name_, item.nameKind_ == Item::kWithNul ? item.length_ : std::strlen(item.name_)};
}

unsigned long SectionItems::FindOn(const char* name, unsigned long start) const {
  for (unsigned long i = start; i < start + kNear; ++i) {
    if (!Has(i)) return kNone;
    Item& item = items_[i];
    if (item.nameKind_ == Item::kUnread) LookUpName(&item);
    if (IsNamed(item, name)) return i;
  }
  return Has(start + kNear) ? FindSorted(name, start + kNear) : kNone;
}

unsigned long SectionItems::FindElement(const std::string& name) const {
  if (!hasBegun_) Begin();
  const bool hasNul = std::strlen(name.c_str()) != name.size();
  return hasNul ? FindSorted(name, firstElement_) : Find(name.c_str(), firstElement_);
}

unsigned long SectionItems::FindSorted(std::string_view name, unsigned long start) const {
  const auto key = [](const Place& place) { return std::tuple(place.name, place.item); };
  if (sorted_.empty()) {
    std::vector<Place> sorted;
    sorted.reserve(Size());
    while (sorted.size() < items_.size()) sorted.push_back({NameAt(sorted.size()), sorted.size()});
    std::sort(sorted.begin(), sorted.end(),
              [&](const Place& a, const Place& b) { return key(a) < key(b); });
    sorted_ = std::move(sorted);
  }
  const auto found =
      std::lower_bound(sorted_.begin(), sorted_.end(), std::tuple(name, start),
                       [&](const Place& place, const auto& wanted) { return key(place) < wanted; });
  return found != sorted_.end() && found->name == name ? found->item : kNone;
}

}  // namespace kv
