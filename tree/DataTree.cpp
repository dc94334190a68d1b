#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "SatCommonUtils/Tree.h"
#include "tree/Lookup.h"
#include "tree/TreeCopier.h"
#include "tree/TreeTextReader.h"
#include "tree/TreeXmlReader.h"
#include "tree/TreeXmlWriter.h"

namespace SatCommonUtils {
namespace {

template <class T>
using OwnedTree = std::unique_ptr<TDataTree<T>, TPtrDelete<TDataTree<T>>>;
template <class T>
using OwnedField = std::unique_ptr<TDataField<T>, TPtrDelete<TDataField<T>>>;

/// Moves the subtrees of `tree` to the front of a list that is linked by their parent pointers,
/// which nobody needs in trees that are about to be deleted. Allocates nothing.
template <class T>
void Unlink(TDataTree<T>* tree, TDataTree<T>** doomed) {
  for (TDataTree<T>* subtree : tree->subtrees.Release()) {
    if (subtree != nullptr) subtree->parent = std::exchange(*doomed, subtree);
  }
}

}  // namespace

template <class T>
TDataTree<T>::TDataTree(int tag, int idx, TDataTree* parent, std::string header)
    : parent(parent), tag(tag), idx(idx), header(std::move(header)) {}

template <class T>
TDataTree<T>::~TDataTree() {
  fields.Clear();
  TDataTree* doomed = nullptr;
  Unlink(this, &doomed);
  while (doomed != nullptr) {
    TDataTree* const tree = std::exchange(doomed, doomed->parent);
    Unlink(tree, &doomed);
    TPtrDelete<TDataTree>()(tree);
  }
}

template <class T>
bool TDataTree<T>::WriteToXML(TKvXIniWriter* writer) const {
  try {
    return TTreeXmlWriter<T>(writer).Write(*this);
  } catch (...) {
    return false;
  }
}

template <class T>
TDataTree<T>* TDataTree<T>::CreateSubtree(int tag, int idx, std::string header) {
  return new TDataTree(tag, idx, this, std::move(header));
}

template <class T>
TDataTree<T>* TDataTree<T>::CreateSubtree(const char* text, std::size_t* position) {
  OwnedTree<T> subtree(new TDataTree(0, 0, this, {}));
  subtree->ReadFromString(text, position, this);
  return subtree.release();
}

template <class T>
TDataTree<T>* TDataTree<T>::CreateSubtree(TKvXIniReader* reader, std::size_t item) {
  OwnedTree<T> subtree(new TDataTree(0, 0, this, {}));
  subtree->ReadFromXML(reader, item, this);
  return subtree.release();
}

template <class T>
TDataField<T>* TDataTree<T>::CreateField(int tag, int idx, T* values, std::size_t count,
                                         std::string header) {
  return new TDataField<T>(tag, idx, values, count, std::move(header));
}

template <class T>
TDataField<T>* TDataTree<T>::CreateField(int tag, int idx, const T& value, std::string header) {
  return new TDataField<T>(tag, idx, value, std::move(header));
}

template <class T>
TDataField<T>* TDataTree<T>::CreateField(const char* text, std::size_t* position) {
  OwnedField<T> field(new TDataField<T>(0, 0, nullptr, 0, {}));
  field->ReadFromString(text, position);
  return field.release();
}

template <class T>
TDataField<T>* TDataTree<T>::CreateField(TKvXIniReader* reader, std::size_t item) {
  OwnedField<T> field(new TDataField<T>(0, 0, nullptr, 0, {}));
  field->ReadFromXML(reader, item);
  return field.release();
}

template <class T>
bool TDataTree<T>::InsertField(std::string header, int tag, int idx, const T& value) {
  if (FindFirst(fields, tag, idx) != nullptr) return false;
  fields.push_back(CreateField(tag, idx, value, std::move(header)));
  return true;
}

template <class T>
bool TDataTree<T>::InsertField(std::string header, int tag, int idx, T* values, std::size_t count) {
  if (FindFirst(fields, tag, idx) != nullptr) return false;
  fields.push_back(CreateField(tag, idx, values, count, std::move(header)));
  return true;
}

template <class T>
bool TDataTree<T>::InsertSubtree(std::string header, int tag, int idx) {
  if (FindFirst(subtrees, tag, idx) != nullptr) return false;
  subtrees.push_back(CreateSubtree(tag, idx, std::move(header)));
  return true;
}

template <class T>
bool TDataTree<T>::CopyTo(TDataTree* destination) const {
  return TTreeCopier<T>().Copy(*this, destination);
}

template <class T>
void TDataTree<T>::ReadFromString(const char* text, std::size_t* position, TDataTree* parent) {
  this->parent = parent;
  TTreeTextReader<T> reader(text, position == nullptr ? 0 : *position);
  reader.Read(this);
  if (position != nullptr) *position = reader.Position();
}

template <class T>
bool TDataTree<T>::ReadFromXML(TKvXIniReader* reader, std::size_t /*item*/, TDataTree* parent) {
  this->parent = parent;
  try {
    return TTreeXmlReader<T>(reader).Read(this);
  } catch (...) {
    return false;
  }
}

template class TDataTree<std::string>;

}  // namespace SatCommonUtils
