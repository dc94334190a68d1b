// Reading trees from text.
#pragma once

#include <cstddef>
#include <cstring>
#include <memory>
#include <optional>
#include <stdexcept>
#include <utility>
#include <vector>

#include "SatCommonUtils/Tree.h"
#include "tree/ForeignCall.h"
#include "tree/OwnTypes.h"
#include "tree/TextCursor.h"

namespace SatCommonUtils {

/// TDataTree::ReadFromString, with a stack of its own. Subtrees of classes of this module are read
/// in place, just as their factory would read them; of any other class the factory is called.
template <class T>
class TTreeTextReader {
 public:
  using TTree = TDataTree<T>;
  using TField = TDataField<T>;

  TTreeTextReader(const char* text, std::size_t position) : text_(text), position_(position) {}

  std::size_t Position() const { return position_; }

  /// Reads the tree that begins at the position.
  void Read(TTree* tree) {
    Begin(tree, nullptr);
    while (!levels_.empty()) ReadLine();
  }

 private:
  using OwnedTree = std::unique_ptr<TTree, TPtrDelete<TTree>>;
  using OwnedField = std::unique_ptr<TField, TPtrDelete<TField>>;

  struct TLevel {
    TTree* tree;
    OwnedTree owned;  ///< the same, until it is complete and its parent gets it; null for the first
    std::size_t depth;
  };

  TTextCursor Cursor() const { return TTextCursor(text_ + position_); }
  void MoveTo(const TTextCursor& cursor) {
    position_ = static_cast<std::size_t>(cursor.At() - text_);
  }

  void Begin(TTree* tree, OwnedTree owned) {
    TTextCursor cursor = Cursor();
    const std::size_t depth = cursor.CountTabs();
    cursor.Skip(depth);
    TTextCursor scan = cursor;
    scan.SkipIf('(') && scan.Scan(&tree->tag) && scan.SkipIf(',') && scan.Scan(&tree->idx);
    cursor.SkipPast(')');
    const std::size_t length = cursor.CountUntil('\n');
    tree->header.assign(cursor.At(), length);
    cursor.Skip(length);
    cursor.SkipIf('\n');
    MoveTo(cursor);
    levels_.push_back({tree, std::move(owned), depth});
  }

  void End() {
    OwnedTree owned = std::move(levels_.back().owned);
    levels_.pop_back();
    if (owned) levels_.back().tree->subtrees.push_back(owned.release());
  }

  void ReadLine() {
    const TLevel& level = levels_.back();
    TTextCursor cursor = Cursor();
    const std::size_t tabs = cursor.CountTabs();
    cursor.Skip(tabs);
    if (tabs > level.depth && cursor.Char() != '\0') {
      ReadSubtree(level.tree);
      return;
    }
    const bool isClosing = cursor.SkipIf('\n') || cursor.Char() == '\0';
    MoveTo(cursor);
    if (isClosing) {
      End();
    } else {
      ReadField(level.tree);
    }
  }

  void ReadSubtree(TTree* tree) {
    if (IsOwnType(*tree)) {
      OwnedTree subtree(tree->CreateSubtree(0, 0, {}));
      TTree* const read = subtree.get();
      Begin(read, std::move(subtree));
    } else {
      const TForeignCall call;
      tree->subtrees.push_back(tree->CreateSubtree(text_, &position_));
    }
  }

  void ReadField(TTree* tree) {
    const std::size_t begin = position_;
    OwnedField field(tree->CreateField(text_, &position_));
    if (IsOwnType(*field)) AddSurplus(field->count, position_ - begin);
    tree->fields.push_back(field.release());
  }

  /// Each count was held against the rest of the text, so that many short lines could claim it
  /// again and again: what they claim beyond their own length must fit into the text together.
  void AddSurplus(std::size_t count, std::size_t length) {
    if (count <= length) return;
    if (!textLength_) textLength_ = std::strlen(text_);
    surplus_ += count - length;
    if (surplus_ > *textLength_) {
      throw std::length_error("the text of a data tree is too short for its counts of values");
    }
  }

  const char* text_;
  std::size_t position_;
  std::size_t surplus_ = 0;
  std::optional<std::size_t> textLength_;
  std::vector<TLevel> levels_;
};

}  // namespace SatCommonUtils
