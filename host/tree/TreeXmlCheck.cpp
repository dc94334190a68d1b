#include "host/tree/TreeXmlCheck.h"

#include <cstddef>
#include <vector>

#include "host/HostError.h"

namespace ravelin {
namespace {

using TTree = SatCommonUtils::TDataTree<std::string>;
using TField = SatCommonUtils::TDataField<std::string>;

constexpr unsigned long kNone = ~0UL;

void AddItems(int tag, int idx, const std::string& header, TreeExtent* extent) {
  extent->keys += static_cast<unsigned long>(tag) + static_cast<unsigned long>(idx);
  extent->bytes += header.size();
}

void AddField(const TField& field, TreeExtent* extent) {
  ++extent->fields;
  AddItems(field.tag, field.idx, field.header, extent);
  extent->values += field.count;
  for (std::size_t i = 0; i < field.count; ++i) extent->bytes += field.values[i].size();
}

/// Goes through a tree without recursion: files may be nested deeply.
class TreeXmlCheck {
 public:
  explicit TreeXmlCheck(TKvXIniReader* reader) : reader_(*reader) {}

  TreeExtent Check() {
    Begin();
    while (!levels_.empty()) {
      Level& level = levels_.back();
      if (level.section != 0) {
        reader_.LeaveSection(level.section);
        ++level.next;
      }
      if (reader_.HasItem(level.next)) {
        level.section = reader_.EnterItem(level.next);
        Begin();
      } else {
        reader_.LeaveSection(level.list);
        levels_.pop_back();
      }
    }
    return extent_;
  }

  /// Where it is, counted from 1: " in subtree 2/1, field 3".
  std::string Place() const {
    constexpr std::size_t kMost = 12;
    std::string place;
    for (std::size_t i = 0; i < levels_.size() && i < kMost; ++i) {
      if (levels_[i].section == 0) break;
      place += (i == 0 ? " in subtree " : "/") + std::to_string(levels_[i].next + 1);
    }
    if (levels_.size() > kMost) place += "/...";
    if (!isInField_) return place;
    return place + (place.empty() ? " in field " : ", field ") + std::to_string(field_ + 1);
  }

 private:
  struct Level {
    unsigned long list;         ///< the section of the subtrees
    unsigned long next = 0;     ///< the subtree that is looked at
    unsigned long section = 0;  ///< of that subtree; 0 before the first
  };

  void Begin() {
    ++extent_.trees;
    CheckItems();
    CheckFields();
    const unsigned long item = reader_.FindF("subtree", 0);
    if (item != kNone) levels_.push_back({reader_.EnterItem(item)});
  }

  void CheckItems() {
    const int tag = reader_.ReadE<int>(reader_.FindFE("tag", 0));
    const int idx = reader_.ReadE<int>(reader_.FindFE("idx", 0));
    AddItems(tag, idx, reader_.ReadE<std::string>(reader_.FindFE("hdr", 0)), &extent_);
  }

  void CheckFields() {
    const unsigned long item = reader_.FindF("field", 0);
    if (item == kNone) return;
    const unsigned long list = reader_.EnterItem(item);
    isInField_ = true;
    for (field_ = 0; reader_.HasItem(field_); ++field_) {
      const unsigned long section = reader_.EnterItem(field_);
      ++extent_.fields;
      CheckItems();
      CheckValues();
      reader_.LeaveSection(section);
    }
    isInField_ = false;
    reader_.LeaveSection(list);
  }

  void CheckValues() {
    const unsigned long section = reader_.EnterSectionSE("data");
    const unsigned long count = reader_.GetItemCount();
    extent_.values += count;
    for (unsigned long i = 0; i < count; ++i) {
      extent_.bytes += reader_.ReadE<std::string>(i).size();
    }
    reader_.LeaveSection(section);
  }

  TKvXIniReader& reader_;
  TreeExtent extent_;
  std::vector<Level> levels_;
  bool isInField_ = false;
  unsigned long field_ = 0;
};

}  // namespace

TreeExtent ExtentOf(const SatCommonUtils::TStringTree& tree) {
  TreeExtent extent;
  std::vector<const TTree*> open = {&tree};
  while (!open.empty()) {
    const TTree& last = *open.back();
    open.pop_back();
    ++extent.trees;
    AddItems(last.tag, last.idx, last.header, &extent);
    for (const TField* field : last.fields) AddField(*field, &extent);
    open.insert(open.end(), last.subtrees.begin(), last.subtrees.end());
  }
  return extent;
}

TreeExtent CheckTreeXml(TKvXIniReader* reader, const std::string& file) {
  TreeXmlCheck check(reader);
  try {
    return check.Check();
  } catch (const TKvError& error) {
    throw HostError(file, error.what() + check.Place(), "correct the tree there");
  }
}

}  // namespace ravelin
