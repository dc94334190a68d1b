// What the tests of data trees share.
#pragma once

#include <string>
#include <typeinfo>
#include <utility>

#include "Kv/XIni.h"
#include "SatCommonUtils/Tree.h"

namespace tree_test {

using Tree = SatCommonUtils::TDataTree<std::string>;
using Field = SatCommonUtils::TDataField<std::string>;
using SatCommonUtils::TStringTree;
using SatCommonUtils::TStringTreeField;

/// A piece of a description that no other piece can be mistaken for.
inline std::string Piece(const std::string& text) {
  return std::to_string(text.size()) + ":" + text;
}

/// "S" for the classes of string trees, "G" for the general ones, "D" for a deriving one.
template <class Node>
std::string KindOf(const Node& node) {
  const std::type_info& type = typeid(node);
  if (type == typeid(TStringTree) || type == typeid(TStringTreeField)) return "S";
  return type == typeid(Tree) || type == typeid(Field) ? "G" : "D";
}

inline std::string DescribeField(const Field& field) {
  std::string text = KindOf(field) + "(" + std::to_string(field.tag) + "," +
                     std::to_string(field.idx) + ")" + Piece(field.header) + "[";
  for (std::size_t i = 0; i < field.count; ++i) text += Piece(field.values[i]) + ";";
  return text + "]";
}

/// All of a tree: classes, tags, headers, values, order. Its own parent is not part of it; a
/// subtree whose parent is not the tree above is marked.
inline std::string Describe(const Tree& tree) {
  std::string text = KindOf(tree) + "(" + std::to_string(tree.tag) + "," +
                     std::to_string(tree.idx) + ")" + Piece(tree.header) + "{";
  for (const Field* field : tree.fields) text += DescribeField(*field);
  for (const Tree* subtree : tree.subtrees) {
    text += (subtree->parent == &tree ? "" : "wrong parent: ") + Describe(*subtree);
  }
  return text + "}";
}

/// The description of a tree that was read from text, with class string tree.
inline std::string DescribeText(const std::string& text) {
  TStringTree tree(0, 0, nullptr, "");
  tree.ReadFromString(text.c_str(), nullptr, nullptr);
  return Describe(tree);
}

using StreamPointer = var_a_legacy::var_a<TKvStream*>;

/// A tree as a document whose root is the tree's element; "failed" when WriteToXML gives false.
inline std::string ToXml(const Tree& tree) {
  auto* const bytes = new TKvMemoryStream;
  TKvXIniStreamWriter writer(StreamPointer(bytes), 0, TKvXIniStreamWriter::htDocument);
  const bool isWritten = tree.WriteToXML(&writer);
  return isWritten && writer.Close() ? bytes->Bytes() : "failed";
}

/// Reads a document whose root is the tree's element.
inline bool FromXml(const std::string& xml, Tree* tree) {
  TKvXIniReader reader(StreamPointer(new TKvMemoryStream(xml)));
  return tree->ReadFromXML(&reader, 0, nullptr);
}

/// A document around the content of its root.
inline std::string Document(const std::string& content) {
  return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<xini>" + content + "</xini>\n";
}

}  // namespace tree_test
