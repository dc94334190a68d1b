// Random commands to a list and to a model of it.
#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <random>
#include <string>
#include <vector>

#include "SatCommonUtils/Files.h"
#include "files/WildcardModel.h"

namespace {

using SatCommonUtils::TFilenamesList;
using Names = std::vector<std::string>;

/// The operations written down by position, with a cursor that is a position or nothing.
class ListModel {
 public:
  void Insert(const std::string& name) { names_.push_back(name); }
  void Remove() {
    if (!cursor_) return;
    names_.erase(names_.begin() + static_cast<long>(*cursor_));
    MoveTo(*cursor_);
  }
  bool Remove(const std::string& mask) {
    const bool found = FindFirst(mask);
    if (found) Remove();
    return found;
  }
  void Clear() {
    names_.clear();
    cursor_.reset();
  }
  bool GetFirst(std::string* out) {
    MoveTo(0);
    return GetCurrent(out);
  }
  bool GetNext(std::string* out) {
    if (cursor_) MoveTo(*cursor_ + 1);
    return GetCurrent(out);
  }
  bool GetCurrent(std::string* out) {
    if (cursor_) *out = names_[*cursor_];
    return cursor_.has_value();
  }
  bool FindFirst(const std::string& mask) {
    MoveTo(0);
    return MoveToMatch(mask);
  }
  bool FindNext(const std::string& mask) {
    if (cursor_) MoveTo(*cursor_ + 1);
    return MoveToMatch(mask);
  }
  bool Find(const std::string& mask, std::string* out) {
    Names found;
    if (FindAll(mask, &found) == 0) return false;
    *out = found[0];
    return true;
  }
  unsigned long FindAll(const std::string& mask, Names* out) {
    unsigned long count = 0;
    for (const std::string& name : names_) {
      if (!files_test::Matches(name, mask)) continue;
      out->push_back(name);
      ++count;
    }
    return count;
  }
  void Copy() { MoveTo(0); }
  void Assign() { cursor_.reset(); }

 private:
  void MoveTo(std::size_t position) {
    cursor_ = position < names_.size() ? std::optional(position) : std::nullopt;
  }
  bool MoveToMatch(const std::string& mask) {
    while (cursor_ && !files_test::Matches(names_[*cursor_], mask)) MoveTo(*cursor_ + 1);
    return cursor_.has_value();
  }

  Names names_;
  std::optional<std::size_t> cursor_;
};

/// A list and its model that get the same commands.
class ListPair {
 public:
  explicit ListPair(unsigned long seed) : random_(seed) {}

  /// Whether both answer the same and have the same current name.
  bool Command() {
    text_ = Text();
    out_ = modelOut_ = "none";
    all_ = modelAll_ = {"held"};
    const bool same = Change() && out_ == modelOut_ && all_ == modelAll_;
    return same && list_->GetCurrent(&out_) == model_.GetCurrent(&modelOut_) && out_ == modelOut_;
  }

 private:
  bool Change() {
    switch (random_() % 16) {
      case 0:
        return RemoveAtCursor();
      case 1:
        return list_->Remove(text_) == model_.Remove(text_);
      case 2:
        return list_->GetFirst(&out_) == model_.GetFirst(&modelOut_);
      case 3:
      case 4:
        return list_->GetNext(&out_) == model_.GetNext(&modelOut_);
      case 5:
      case 6:
        return list_->FindFirst(text_) == model_.FindFirst(text_);
      case 7:
      case 8:
        return list_->FindNext(text_) == model_.FindNext(text_);
      case 9:
        return list_->Find(text_, &out_) == model_.Find(text_, &modelOut_);
      case 10:
        return list_->FindAll(text_, &all_) == model_.FindAll(text_, &modelAll_);
      case 11:
        return ChangeWhole();
      default:
        return Insert();
    }
  }

  bool Insert() {
    list_->Insert(text_);
    model_.Insert(text_);
    return true;
  }

  bool RemoveAtCursor() {
    list_->Remove();
    model_.Remove();
    return true;
  }

  bool ChangeWhole() {
    switch (random_() % 6) {
      case 0:
        list_->Clear();
        model_.Clear();
        break;
      case 1:
      case 2:
        *list_ = TFilenamesList(*list_);
        model_.Assign();
        break;
      default:
        list_ = std::make_unique<TFilenamesList>(*list_);
        model_.Copy();
    }
    return true;
  }

  std::string Text() {
    std::string text;
    for (unsigned long n = random_() % 4; n > 0; --n) text += "aB.*?#"[random_() % 6];
    return text;
  }

  std::mt19937 random_;
  std::unique_ptr<TFilenamesList> list_ = std::make_unique<TFilenamesList>();
  ListModel model_;
  std::string text_, out_, modelOut_;
  Names all_, modelAll_;
};

TEST(FilenamesListRandomTest, RandomCommandsGiveWhatTheModelGives) {
  for (unsigned long seed = 0; seed < 2000; ++seed) {
    ListPair pair(seed);
    for (int i = 0; i < 100; ++i)
      ASSERT_TRUE(pair.Command()) << "seed " << seed << ", command " << i;
  }
}

}  // namespace
