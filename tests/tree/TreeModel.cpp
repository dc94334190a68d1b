#include "tree/TreeModel.h"

#include <algorithm>
#include <cstdio>
#include <stdexcept>

#include "text/EscapesModel.h"

namespace tree_model {
namespace {

std::string DescribeModelField(const ModelField& field) {
  std::string text = "S(" + std::to_string(field.tag) + "," + std::to_string(field.idx) + ")" +
                     tree_test::Piece(field.header) + "[";
  for (const std::string& value : field.values) text += tree_test::Piece(value) + ";";
  return text + "]";
}

template <class Node>
auto Find(std::vector<Node>& list, int tag, int idx) {
  return std::find_if(list.begin(), list.end(),
                      [&](const Node& node) { return node.tag == tag && node.idx == idx; });
}

template <class Node>
void ReadKeys(TKvXIniReader* reader, Node* node) {
  node->tag = reader->ReadE<int>(reader->FindFE("tag", 0));
  node->idx = reader->ReadE<int>(reader->FindFE("idx", 0));
  node->header = reader->ReadE<std::string>(reader->FindFE("hdr", 0));
}

ModelField ReadXmlField(TKvXIniReader* reader) {
  ModelField field;
  try {
    ReadKeys(reader, &field);
    const unsigned long section = reader->EnterSectionSE("data");
    field.values.resize(reader->GetItemCount());
    for (std::size_t i = 0; i < field.values.size(); ++i) {
      field.values[i] = reader->ReadE<std::string>(i);
    }
    reader->LeaveSection(section);
  } catch (const TKvError&) {
    return field;
  }
  return field;
}

}  // namespace

std::string Describe(const ModelTree& tree) {
  std::string text = "S(" + std::to_string(tree.tag) + "," + std::to_string(tree.idx) + ")" +
                     tree_test::Piece(tree.header) + "{";
  for (const ModelField& field : tree.fields) text += DescribeModelField(field);
  for (const ModelTree& subtree : tree.subtrees) text += Describe(subtree);
  return text + "}";
}

void Build(const ModelTree& model, tree_test::TStringTree* tree) {
  for (const ModelField& field : model.fields) {
    std::vector<std::string> values = field.values;
    tree->fields.push_back(
        tree->CreateField(field.tag, field.idx, values.data(), values.size(), field.header));
  }
  for (const ModelTree& subtree : model.subtrees) {
    auto* const built = new tree_test::TStringTree(subtree.tag, subtree.idx, tree, subtree.header);
    tree->subtrees.push_back(built);
    Build(subtree, built);
  }
}

std::size_t ModelTextReader::CountTabs() const {
  std::size_t tabs = 0;
  while (At(position_ + tabs) == '\t') ++tabs;
  return tabs;
}

std::string ModelTextReader::Take(char end) {
  std::string taken;
  while (At(position_) != '\0' && At(position_) != end) taken += At(position_++);
  if (At(position_) == end && end != '\0') ++position_;
  return taken;
}

ModelTree ModelTextReader::Read() {
  ModelTree tree;
  const std::size_t depth = CountTabs();
  position_ += depth;
  std::sscanf(text_.c_str() + position_, "(%d,%d)", &tree.tag, &tree.idx);
  Take(')');
  tree.header = Take('\n');
  for (;;) {
    const std::size_t tabs = CountTabs();
    const char next = At(position_ + tabs);
    if (tabs > depth && next != '\0') {
      tree.subtrees.push_back(Read());
      continue;
    }
    position_ += tabs;
    if (next == '\0') return tree;
    if (next == '\n') {
      ++position_;
      return tree;
    }
    tree.fields.push_back(ReadField());
  }
}

ModelField ModelTextReader::ReadField() {
  const std::size_t begin = position_;
  ModelField field;
  unsigned long long count = 0;
  std::sscanf(text_.c_str() + position_, "(%d,%d)[%llu]", &field.tag, &field.idx, &count);
  Take(']');
  field.header = escapes_model::Decode(Take('\t'));
  const std::size_t left = text_.size() - position_;
  if (count > left + 1) throw std::length_error("count");
  field.values.resize(count);
  for (std::size_t i = 0;; ++i) {
    std::string run;
    while (At(position_) != '\0' && At(position_) != '\t' && At(position_) != '\n') {
      run += At(position_++);
    }
    if (i < count) field.values[i] = escapes_model::Decode(run);
    if (At(position_) == '\0') break;
    if (At(position_++) == '\n') break;
  }
  if (count > position_ - begin) surplus_ += count - (position_ - begin);
  if (surplus_ > text_.size()) throw std::length_error("counts");
  return field;
}

ModelTree ReadXml(TKvXIniReader* reader, bool* isRead) {
  ModelTree tree;
  *isRead = false;
  try {
    ReadKeys(reader, &tree);
    const unsigned long fields = reader->FindF("field", 0);
    if (fields != ~0UL) {
      const unsigned long list = reader->EnterItem(fields);
      for (unsigned long i = 0; reader->HasItem(i); ++i) {
        const unsigned long section = reader->EnterItem(i);
        tree.fields.push_back(ReadXmlField(reader));
        reader->LeaveSection(section);
      }
      reader->LeaveSection(list);
    }
    const unsigned long subtrees = reader->FindF("subtree", 0);
    if (subtrees != ~0UL) {
      const unsigned long list = reader->EnterItem(subtrees);
      for (unsigned long i = 0; reader->HasItem(i); ++i) {
        const unsigned long section = reader->EnterItem(i);
        bool ignored = false;
        tree.subtrees.push_back(ReadXml(reader, &ignored));
        reader->LeaveSection(section);
      }
      reader->LeaveSection(list);
    }
    *isRead = true;
  } catch (const TKvError&) {
    return tree;
  }
  return tree;
}

bool Copy(const ModelTree& source, ModelTree* destination) {
  for (const ModelField& field : source.fields) {
    if (Find(destination->fields, field.tag, field.idx) != destination->fields.end()) return false;
    destination->fields.push_back(field);
  }
  for (const ModelTree& subtree : source.subtrees) {
    auto& list = destination->subtrees;
    if (Find(list, subtree.tag, subtree.idx) != list.end()) return false;
    list.push_back({subtree.tag, subtree.idx, subtree.header, {}, {}});
    if (!Copy(subtree, &*Find(list, subtree.tag, subtree.idx))) return false;
  }
  return true;
}

}  // namespace tree_model
