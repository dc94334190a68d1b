#include <memory>
#include <string>
#include <utility>

#include "SatCommonUtils/Tree.h"
#include "tree/Lookup.h"
#include "tree/NumberText.h"

namespace SatCommonUtils {
namespace {

using OwnedTree = std::unique_ptr<TStringTree, TPtrDelete<TStringTree>>;
using OwnedField = std::unique_ptr<TStringTreeField, TPtrDelete<TStringTreeField>>;

constexpr int kErrorIdx = -1;

/// The value of the first field with these keys; null when there is none or it has not just one.
const std::string* FindValue(const TStringTree& tree, int tag, int idx) {
  const TDataField<std::string>* const field = FindFirst(tree.fields, tag, idx);
  return field != nullptr && field->count == 1 ? field->values : nullptr;
}

void RecordError(TStringTree* tree, const char* kind, int tag, const std::string& text) {
  const std::string header =
      "Get " + std::string(kind) + " ERROR (tag=" + std::to_string(tag) + ")";
  tree->InsertField(header, tag, kErrorIdx, text);
}

template <class Number>
bool GetNumber(TStringTree* tree, const char* kind, int tag, int idx, Number* number) {
  const std::string* const text = FindValue(*tree, tag, idx);
  if (text != nullptr && TextToNumber(*text, number)) return true;
  RecordError(tree, kind, tag, text != nullptr ? *text : std::string());
  return false;
}

}  // namespace

TStringTree::TStringTree(int tag, int idx, TDataTree<std::string>* parent, std::string header)
    : TDataTree<std::string>(tag, idx, parent, std::move(header)) {}

TDataTree<std::string>* TStringTree::CreateSubtree(int tag, int idx, std::string header) {
  return new TStringTree(tag, idx, this, std::move(header));
}

TDataTree<std::string>* TStringTree::CreateSubtree(const char* text, std::size_t* position) {
  OwnedTree subtree(new TStringTree(0, 0, this, {}));
  subtree->ReadFromString(text, position, this);
  return subtree.release();
}

TDataTree<std::string>* TStringTree::CreateSubtree(TKvXIniReader* reader, std::size_t item) {
  OwnedTree subtree(new TStringTree(0, 0, this, {}));
  subtree->ReadFromXML(reader, item, this);
  return subtree.release();
}

TDataField<std::string>* TStringTree::CreateField(int tag, int idx, std::string* values,
                                                  std::size_t count, std::string header) {
  return new TStringTreeField(tag, idx, values, count, std::move(header));
}

TDataField<std::string>* TStringTree::CreateField(int tag, int idx, const std::string& value,
                                                  std::string header) {
  return new TStringTreeField(tag, idx, value, std::move(header));
}

TDataField<std::string>* TStringTree::CreateField(const char* text, std::size_t* position) {
  OwnedField field(new TStringTreeField(0, 0, nullptr, 0, {}));
  field->ReadFromString(text, position);
  return field.release();
}

TDataField<std::string>* TStringTree::CreateField(TKvXIniReader* reader, std::size_t item) {
  OwnedField field(new TStringTreeField(0, 0, nullptr, 0, {}));
  field->ReadFromXML(reader, item);
  return field.release();
}

bool TStringTree::GetInteger(int tag, int idx, int* value) {
  return GetNumber(this, "integer", tag, idx, value);
}

bool TStringTree::GetDouble(int tag, int idx, double* value) {
  return GetNumber(this, "double", tag, idx, value);
}

bool TStringTree::GetString(int tag, int idx, std::string* value) {
  const std::string* const text = FindValue(*this, tag, idx);
  if (text != nullptr) {
    *value = *text;
    return true;
  }
  RecordError(this, "string", tag, *value);
  return false;
}

bool TStringTree::InsertInteger(std::string header, int tag, int idx, int value) {
  return InsertField(std::move(header), tag, idx, NumberToText(value));
}

bool TStringTree::InsertDouble(std::string header, int tag, int idx, const double& value) {
  return InsertField(std::move(header), tag, idx, NumberToText(value));
}

bool TStringTree::InsertString(std::string header, int tag, int idx, const std::string& value) {
  return InsertField(std::move(header), tag, idx, value);
}

bool InsertFromString(const std::string& text, TStringTree* tree) {
  try {
    TStringTree read(0, 0, nullptr, {});
    read.ReadFromString(text.c_str(), nullptr, nullptr);
    return read.CopyTo(tree);
  } catch (...) {
    return false;
  }
}

}  // namespace SatCommonUtils
