// Writing trees as XML-ini.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "SatCommonUtils/Tree.h"
#include "tree/ForeignCall.h"
#include "tree/OwnTypes.h"

namespace SatCommonUtils {

/// TDataTree::WriteToXML, with a stack of its own. Exceptions pass. Subtrees of classes of this
/// module are written in place; of any other class WriteToXML is called.
template <class T>
class TTreeXmlWriter {
 public:
  using TTree = TDataTree<T>;

  explicit TTreeXmlWriter(TKvXIniWriter* writer) : writer_(writer) {}

  bool Write(const TTree& tree) {
    if (!Begin(tree, 0)) return false;
    while (!levels_.empty()) {
      TLevel& level = levels_.back();
      if (level.next == level.tree->subtrees.size()) {
        End();
      } else if (!WriteSubtree(*level.tree->subtrees[level.next++])) {
        return false;
      }
    }
    return true;
  }

 private:
  struct TLevel {
    const TTree* tree;
    std::size_t section;  ///< that the tree stands in; the caller's for the first
    std::size_t list;     ///< the section of its subtrees, when it has any
    std::size_t next;
  };

  bool Begin(const TTree& tree, std::size_t section) {
    WriteItems(tree);
    if (!WriteFields(tree)) return false;
    const std::size_t list = tree.subtrees.empty() ? 0 : writer_->BeginSectionSE("subtree");
    levels_.push_back({&tree, section, list, 0});
    return true;
  }

  void End() {
    const TLevel level = levels_.back();
    levels_.pop_back();
    if (!level.tree->subtrees.empty()) writer_->EndSection(level.list);
    if (!levels_.empty()) writer_->EndSection(level.section);
  }

  void WriteItems(const TTree& tree) {
    writer_->SetAttributeMode(true);
    if (!writer_->WriteS<int>("tag", tree.tag)) writer_->ReportWriteError();
    if (!writer_->WriteS<int>("idx", tree.idx)) writer_->ReportWriteError();
    if (!writer_->WriteS<std::string>("hdr", tree.header)) writer_->ReportWriteError();
    writer_->SetAttributeMode(false);
  }

  bool WriteFields(const TTree& tree) {
    if (tree.fields.empty()) return true;
    const std::size_t list = writer_->BeginSectionSE("field");
    for (const TDataField<T>* field : tree.fields) {
      if (field->tag < 0 || field->idx < 0) continue;
      const std::size_t section = writer_->BeginSectionCompactSE("");
      if (!field->WriteToXML(writer_)) return false;
      writer_->EndSection(section);
    }
    writer_->EndSection(list);
    return true;
  }

  bool WriteSubtree(const TTree& subtree) {
    const std::size_t section = writer_->BeginSectionSE("");
    if (IsOwnType(subtree)) return Begin(subtree, section);
    const TForeignCall call;
    if (!subtree.WriteToXML(writer_)) return false;
    writer_->EndSection(section);
    return true;
  }

  TKvXIniWriter* writer_;
  std::vector<TLevel> levels_;
};

}  // namespace SatCommonUtils
