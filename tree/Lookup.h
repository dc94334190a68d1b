// Fields and subtrees by tag and index.
#pragma once

#include <cstddef>
#include <set>
#include <utility>

#include "SatCommonUtils/Tree.h"

namespace SatCommonUtils {

/// The first element with that tag and idx; null when there is none.
template <class Element>
Element* FindFirst(const TPtrVector<Element>& list, int tag, int idx) {
  for (Element* element : list) {
    if (element->tag == tag && element->idx == idx) return element;
  }
  return nullptr;
}

/// Whether a growing list has an element with some tag and idx: a search where the list is short, a
/// set of its keys where it is long. Elements keep their keys while it lives.
template <class Element>
class TTakenKeys {
 public:
  explicit TTakenKeys(const TPtrVector<Element>* list) : list_(list) {}

  bool Has(int tag, int idx) {
    if (list_->size() <= kShort) return FindFirst(*list_, tag, idx) != nullptr;
    for (; known_ < list_->size(); ++known_) {
      const Element& element = *(*list_)[known_];
      keys_.emplace(element.tag, element.idx);
    }
    return keys_.count({tag, idx}) != 0;
  }

 private:
  static constexpr std::size_t kShort = 64;

  const TPtrVector<Element>* list_;
  std::size_t known_ = 0;
  std::set<std::pair<int, int>> keys_;
};

}  // namespace SatCommonUtils
