#include "xini/SectionItems.h"

#include <algorithm>
#include <iterator>
#include <numeric>
#include <tuple>

#include "xini/XIniElement.h"

namespace {

constexpr unsigned long kNone = ~0UL;

template <class Range>
std::size_t Length(const Range& range) {
  return static_cast<std::size_t>(std::distance(range.begin(), range.end()));
}

}  // namespace

namespace kv {

const std::vector<SectionItems::Item>& SectionItems::List() const {
  if (!isListed_) {
    items_.clear();
    items_.reserve(Length(section_.attributes()) + Length(section_.children()));
    AddAttributes();
    AddElements();
    isListed_ = true;
  }
  return items_;
}

void SectionItems::AddAttributes() const {
  for (const pugi::xml_attribute attribute : section_.attributes()) {
    const std::string_view name = attribute.name();
    if (name[0] != '_') items_.push_back({name, {}, attribute});
  }
}

void SectionItems::AddElements() const {
  firstElement_ = items_.size();
  for (const pugi::xml_node child : section_.children()) {
    if (child.type() == pugi::node_element) items_.push_back({NameOf(child), child, {}});
  }
}

std::string_view SectionItems::NameOf(pugi::xml_node element) const {
  const std::string_view tag = element.name();
  if (tag != kOddTag) return tag;
  const std::string_view written = element.attribute(kNameMark).value();
  if (!EncodedPartsOf(element).name) return written;
  return decodedNames_.emplace_front(DecodedName(written));
}

unsigned long SectionItems::Find(std::string_view name, unsigned long start) const {
  constexpr unsigned long kNear = 16;
  const unsigned long size = Size();
  const unsigned long near = start < size ? start + std::min(kNear, size - start) : start;
  for (unsigned long i = start; i < near; ++i) {
    if (items_[i].name == name) return i;
  }
  return near < size ? FindSorted(name, near) : kNone;
}

unsigned long SectionItems::FindElement(std::string_view name) const {
  return List().empty() ? kNone : Find(name, firstElement_);
}

unsigned long SectionItems::FindSorted(std::string_view name, unsigned long start) const {
  const auto key = [this](unsigned long i) { return std::tuple(items_[i].name, i); };
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
  return found != sorted_.end() && items_[*found].name == name ? *found : kNone;
}

}  // namespace kv
