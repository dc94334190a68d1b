#include <cstddef>
#include <string>
#include <vector>

#include "SatCommonUtils/Tree.h"
#include "tree/TextSink.h"

namespace SatCommonUtils {
namespace {

using TTree = TDataTree<std::string>;

/// Walks through a tree with a stack of its own and puts a line for each part.
class TTreeTextWriter {
 public:
  explicit TTreeTextWriter(TTextSink* sink) : sink_(sink) {}

  void Write(const TTree& tree) {
    Begin(tree);
    while (!levels_.empty()) {
      TLevel& level = levels_.back();
      if (level.next == level.tree->subtrees.size()) {
        End();
      } else {
        Begin(*level.tree->subtrees[level.next++]);
      }
    }
  }

 private:
  struct TLevel {
    const TTree* tree;
    std::size_t next;
  };

  void Begin(const TTree& tree) {
    const std::size_t depth = levels_.size();
    sink_->PutTabs(depth);
    sink_->Put('(');
    sink_->PutNumber(tree.tag);
    sink_->Put(',');
    sink_->PutNumber(tree.idx);
    sink_->Put(')');
    sink_->Put(tree.header);
    sink_->Put('\n');
    for (const TDataField<std::string>* field : tree.fields) {
      sink_->Skip(field->WriteToString(sink_->Buffer(), sink_->Position(), depth));
    }
    levels_.push_back({&tree, 0});
  }

  void End() {
    levels_.pop_back();
    sink_->PutTabs(levels_.size());
    sink_->Put('\n');
  }

  TTextSink* sink_;
  std::vector<TLevel> levels_;
};

std::size_t Write(const TTree& tree, char* buffer) {
  TTextSink sink(buffer, 0);
  TTreeTextWriter(&sink).Write(tree);
  return sink.Position();
}

}  // namespace

std::string WriteTreeToString(const TStringTree& tree) {
  std::string text(Write(tree, nullptr), '\0');
  Write(tree, text.data());
  return text;
}

}  // namespace SatCommonUtils
