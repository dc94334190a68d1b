// Data trees as plainly as can be: values, recursion, the C library's scan on copies of the text.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "Kv/XIni.h"
#include "tree/TreeTest.h"

namespace tree_model {

struct ModelField {
  int tag = 0;
  int idx = 0;
  std::string header;
  std::vector<std::string> values;
};

struct ModelTree {
  int tag = 0;
  int idx = 0;
  std::string header;
  std::vector<ModelField> fields;
  std::vector<ModelTree> subtrees;
};

/// As tree_test::Describe says it of a string tree.
std::string Describe(const ModelTree& tree);

/// The same tree as a string tree; keys are not compared.
void Build(const ModelTree& model, tree_test::TStringTree* tree);

/// Reads text; throws std::length_error as the tree does.
class ModelTextReader {
 public:
  explicit ModelTextReader(std::string text) : text_(std::move(text)) {}

  ModelTree Read();
  std::size_t Position() const { return position_; }

 private:
  char At(std::size_t position) const { return position < text_.size() ? text_[position] : '\0'; }
  std::size_t CountTabs() const;
  /// All up to `end`, which is skipped, or to the end of the text.
  std::string Take(char end);
  ModelField ReadField();

  std::string text_;
  std::size_t position_ = 0;
  std::size_t surplus_ = 0;
};

/// Reads XML; `*isRead` is what reading gives.
ModelTree ReadXml(TKvXIniReader* reader, bool* isRead);

/// CopyTo onto a tree of models.
bool Copy(const ModelTree& source, ModelTree* destination);

}  // namespace tree_model
