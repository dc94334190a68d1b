// Reading trees from XML-ini.
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "SatCommonUtils/Tree.h"
#include "tree/ForeignCall.h"
#include "tree/OwnTypes.h"

namespace SatCommonUtils {

/// TDataTree::ReadFromXML, with a stack of its own. Subtrees of classes of this module are read in
/// place, just as their factory would read them; of any other class the factory is called.
template <class T>
class TTreeXmlReader {
 public:
  using TTree = TDataTree<T>;

  explicit TTreeXmlReader(TKvXIniReader* reader) : reader_(reader) {}

  /// Whether the tree itself was read; a subtree that was not is kept all the same. Throws only
  /// where nothing has been read yet.
  bool Read(TTree* tree) {
    levels_.emplace_back(tree, nullptr);
    for (;;) {
      const TStep step = TryStep();
      if (step == kFurther) continue;
      if (levels_.size() == 1) return step == kDone;
      OwnedTree subtree = std::move(levels_.back().owned);
      levels_.pop_back();
      levels_.back().subtree = std::move(subtree);
    }
  }

 private:
  using OwnedTree = std::unique_ptr<TTree, TPtrDelete<TTree>>;
  enum TStep { kFurther, kDone, kFailed };

  struct TLevel {
    TLevel(TTree* read, OwnedTree owner) : tree(read), owned(std::move(owner)) {}

    TTree* tree;
    OwnedTree owned;          ///< the same, until its parent gets it; null for the first
    bool hasBegun = false;    ///< past its items and fields
    std::size_t list = 0;     ///< the section of its subtrees
    std::size_t next = 0;     ///< the position of the subtree that is read
    std::size_t section = 0;  ///< of that subtree
    OwnedTree subtree;        ///< that subtree, once it has been read
  };

  /// What throws in a tree's own steps is the end of that tree.
  TStep TryStep() {
    try {
      return Step(&levels_.back());
    } catch (...) {
      return kFailed;
    }
  }

  TStep Step(TLevel* level) {
    if (!level->hasBegun) {
      if (!Begin(level)) return kDone;
    } else {
      level->tree->subtrees.push_back(level->subtree.release());
      reader_->LeaveSection(level->section);
      ++level->next;
    }
    if (reader_->HasItem(level->next)) {
      level->section = reader_->EnterItem(level->next);
      ReadSubtree(level);
      return kFurther;
    }
    reader_->LeaveSection(level->list);
    return kDone;
  }

  /// Reads the items and fields and enters the list of subtrees; false when there is none.
  bool Begin(TLevel* level) {
    TTree& tree = *level->tree;
    tree.tag = reader_->ReadE<int>(reader_->FindFE("tag", 0));
    tree.idx = reader_->ReadE<int>(reader_->FindFE("idx", 0));
    tree.header = reader_->ReadE<std::string>(reader_->FindFE("hdr", 0));
    ReadFields(&tree);
    const std::size_t list = reader_->FindF("subtree", 0);
    if (list == kNone) return false;
    level->list = reader_->EnterItem(list);
    level->hasBegun = true;
    return true;
  }

  void ReadFields(TTree* tree) {
    const std::size_t item = reader_->FindF("field", 0);
    if (item == kNone) return;
    const std::size_t list = reader_->EnterItem(item);
    for (std::size_t i = 0; reader_->HasItem(i); ++i) {
      const std::size_t section = reader_->EnterItem(i);
      tree->fields.push_back(tree->CreateField(reader_, i));
      reader_->LeaveSection(section);
    }
    reader_->LeaveSection(list);
  }

  void ReadSubtree(TLevel* level) {
    if (IsOwnType(*level->tree)) {
      OwnedTree subtree(level->tree->CreateSubtree(0, 0, {}));
      TTree* const read = subtree.get();
      levels_.emplace_back(read, std::move(subtree));
    } else {
      const TForeignCall call;
      level->subtree.reset(level->tree->CreateSubtree(reader_, level->next));
    }
  }

  static constexpr std::size_t kNone = ~std::size_t{0};

  TKvXIniReader* reader_;
  std::vector<TLevel> levels_;
};

}  // namespace SatCommonUtils
