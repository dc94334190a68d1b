// Copying what a tree holds into another.
#pragma once

#include <cstddef>
#include <vector>

#include "SatCommonUtils/Tree.h"
#include "tree/Lookup.h"

namespace SatCommonUtils {

/// TDataTree::CopyTo, with a stack of its own. Elements are made by the destination's factories.
template <class T>
class TTreeCopier {
 public:
  using TTree = TDataTree<T>;

  bool Copy(const TTree& source, TTree* destination) {
    destination_ = destination;
    if (!Begin(source, destination)) return false;
    while (!levels_.empty()) {
      TLevel& level = levels_.back();
      if (level.next == level.source->subtrees.size()) {
        levels_.pop_back();
      } else if (!CopySubtree(*level.source->subtrees[level.next++], &level)) {
        return false;
      }
    }
    return true;
  }

 private:
  struct TLevel {
    const TTree* source;
    TTree* destination;
    std::size_t next;
    TTakenKeys<TTree> taken;
  };

  bool Begin(const TTree& source, TTree* destination) {
    if (!CopyFields(source, destination)) return false;
    levels_.push_back({&source, destination, 0, TTakenKeys<TTree>(&destination->subtrees)});
    return true;
  }

  static bool CopyFields(const TTree& source, TTree* destination) {
    TTakenKeys<TDataField<T>> taken(&destination->fields);
    for (const TDataField<T>* field : source.fields) {
      if (taken.Has(field->tag, field->idx)) return false;
      destination->fields.push_back(destination->CreateField(field->tag, field->idx, field->values,
                                                             field->count, field->header));
    }
    return true;
  }

  bool CopySubtree(const TTree& source, TLevel* level) {
    // A tree would be copied into what grows while it is copied, without end.
    if (&source == destination_) return false;
    if (level->taken.Has(source.tag, source.idx)) return false;
    TTree* const parent = level->destination;
    parent->subtrees.push_back(parent->CreateSubtree(source.tag, source.idx, source.header));
    TTree* const copy = FindInserted(*parent, source.tag, source.idx);
    return copy != nullptr && Begin(source, copy);
  }

  /// The first with these keys: what was just inserted, unless its factory gave it other keys.
  static TTree* FindInserted(const TTree& tree, int tag, int idx) {
    TTree* const last = tree.subtrees.back();
    const bool isFound = last->tag == tag && last->idx == idx;
    return isFound ? last : FindFirst(tree.subtrees, tag, idx);
  }

  const TTree* destination_ = nullptr;
  std::vector<TLevel> levels_;
};

}  // namespace SatCommonUtils
