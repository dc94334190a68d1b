/// @file
/// Data trees: tagged, nested metadata in memory, as indented text and as XML-ini.
///
/// A tree has a tag, an index and a header, and owns fields and subtrees; a field has a tag, an
/// index, a header and values. A field is found by its pair of tag and index, a subtree likewise.
///
///     TStringTree product(1, 0, nullptr, "Product");
///     product.InsertInteger("Rows", 10, 0, 512);
///     std::string text = WriteTreeToString(product);   // "(1,0)Product\n(10,0)[1]Rows\t512\n\n"
///
/// No operation of this header recurses with the depth of a tree, but for what a deriving class's
/// own factories and writers make it do: those may run up to 2,000 inside each other on one thread;
/// one more throws std::length_error.
/// Threads: calls on trees that share no node may overlap.
#pragma once

#include <cstddef>
#include <new>
#include <string>
#include <utility>
#include <vector>

#include "Kv/XIni.h"
#include "SatCommonUtils/Export.h"

namespace SatCommonUtils {

/// Destroys and frees what `new` made, as a T: no virtual destructor is called for, and the size of
/// the object's own class does not matter.
template <class T>
struct TPtrDelete {
  /// Nothing for null.
  void operator()(T* object) const noexcept {
    if (object == nullptr) return;
    object->T::~T();
    ::operator delete(object);
  }
};

/// A vector of pointers to objects made by `new`, which it owns and deletes as T, not as what they
/// were derived from T. Used like a std::vector; not copied.
template <class T>
class TPtrVector {
 public:
  /// Walks over the pointers.
  using const_iterator = typename std::vector<T*>::const_iterator;

  /// No elements.
  TPtrVector() = default;
  TPtrVector(const TPtrVector&) = delete;
  TPtrVector& operator=(const TPtrVector&) = delete;
  ~TPtrVector() { Clear(); }

  /// The number of elements.
  std::size_t size() const noexcept { return elements_.size(); }
  /// Whether there are none.
  bool empty() const noexcept { return elements_.empty(); }
  /// The element at `i`, which must be there; the vector keeps owning it.
  T* operator[](std::size_t i) const { return elements_[i]; }
  /// The last element, which must be there.
  T* back() const { return elements_.back(); }
  /// The first position.
  const_iterator begin() const noexcept { return elements_.begin(); }
  /// The position behind the last element.
  const_iterator end() const noexcept { return elements_.end(); }

  /// Takes ownership, also when it throws std::bad_alloc: the element is deleted then.
  void push_back(T* owned) {
    try {
      elements_.push_back(owned);
    } catch (...) {
      TPtrDelete<T>()(owned);
      throw;
    }
  }
  /// Deletes all elements.
  void Clear() noexcept {
    for (T* element : Release()) TPtrDelete<T>()(element);
  }
  /// Gives all elements up; the caller owns them.
  std::vector<T*> Release() noexcept { return std::exchange(elements_, {}); }

 private:
  std::vector<T*> elements_;
};

/// Values under a tag and an index. With a negative tag or index it lives in memory only: neither
/// form of a tree holds it.
///
/// In this class the four conversions of values do nothing, so that texts and XML hold no values of
/// it; TStringTreeField gives them their meaning. The order of the virtual operations and of the
/// members is part of the binary interface. There is no virtual destructor: lists delete a field as
/// this class, so a deriving class must not add members that need destruction.
/// The module offers the template for std::string.
template <class T>
class TDataField {
 public:
  int tag = 0;            ///< what the values are
  int idx = 0;            ///< which of several under one tag
  std::size_t count = 0;  ///< of `values`
  T* values = nullptr;    ///< owned, made by new T[count]; null when there are none
  std::string header;     ///< for people

  /// Copies `count` values.
  TDataField(int tag, int idx, T* values, std::size_t count, std::string header);
  /// One value.
  TDataField(int tag, int idx, const T& value, std::string header);
  TDataField(const TDataField&) = delete;
  TDataField& operator=(const TDataField&) = delete;
  ~TDataField();

  /// Writes the field's line, "(tag,idx)[count]header", a tab before each value, behind `depth`
  /// tabs and with a line feed at its end, at `buffer + position`, and returns its length. A null
  /// `buffer` only measures. No NUL is written. 0 and nothing for a negative tag or index. A field
  /// without values can be written, but not read back: its header would go on to the next tab.
  virtual std::size_t WriteToString(char* buffer, std::size_t position, std::size_t depth) const;
  /// Writes the items "tag", "idx", "hdr" and the section "data" of the values into the open
  /// section; nothing, and true, for a negative tag or index. False when something threw.
  virtual bool WriteToXML(TKvXIniWriter* writer) const;
  /// Writes value `i` at `buffer + position` and returns its length; a null `buffer` only measures.
  virtual std::size_t ValueToString(std::size_t i, char* buffer, std::size_t position) const;
  /// Value `i` as the text of an item of XML; empty when it is not there.
  virtual std::string ValueToString(std::size_t i) const;
  /// Sets value `i` from a piece of a line of text; false when it does not.
  virtual bool StringToValue(const char* text, std::size_t length, std::size_t i);
  /// Sets value `i` from the text of an item of XML; false when it does not.
  virtual bool StringToValue(const std::string& text, std::size_t i);

  /// Reads the line that begins at `text + *position`, its tabs skipped, and sets `*position`
  /// behind its line feed, or to the NUL that ends the text. A number that is not there leaves its
  /// member as it was; header and values are replaced. Values beyond the count are dropped, missing
  /// ones stay as T() makes them. Throws std::length_error, before it allocates, for a count that
  /// the rest of the text is too short for; header, tag and idx are set then.
  void ReadFromString(const char* text, std::size_t* position);
  /// Reads what WriteToXML wrote from the section that the reader stands in; `item` is the
  /// section's position and not needed. False when something threw: what was read until then stays.
  bool ReadFromXML(TKvXIniReader* reader, std::size_t item);

 private:
  void Allocate(std::size_t size);
};

/// A tree that owns fields and subtrees.
///
/// The factories are how a deriving class makes all of a tree, inserted or read, consist of its own
/// nodes and fields. The order of the virtual operations and of the members is part of the binary
/// interface. There is no virtual destructor: lists delete a tree as this class, so a deriving
/// class must not add members that need destruction.
/// The module offers the template for std::string.
template <class T>
class TDataTree {
 public:
  TDataTree* parent;                 ///< the tree that owns this one; null for a root
  TPtrVector<TDataTree> subtrees;    ///< in the order of insertion
  TPtrVector<TDataField<T>> fields;  ///< in the order of insertion
  int tag;                           ///< what the tree describes
  int idx;                           ///< which of several under one tag
  std::string header;  ///< for people; the text form wants it without line feed and NUL

  /// Without fields and subtrees. `parent` is only kept: whoever makes a subtree appends it there.
  TDataTree(int tag, int idx, TDataTree* parent, std::string header);
  TDataTree(const TDataTree&) = delete;
  TDataTree& operator=(const TDataTree&) = delete;
  ~TDataTree();

  /// Writes the items "tag", "idx" and "hdr", as attributes where XML allows, and the sections
  /// "field" and "subtree" where there are any into the open section. False when a part of it gave
  /// false or something threw: writing ends there, and sections stay open.
  virtual bool WriteToXML(TKvXIniWriter* writer) const;

  // The factories make an object whose parent this tree is; the caller appends it. They never give
  // null. Those with a text read what begins at `text + *position` and move the position behind it;
  // those with a reader read the section that it stands in, which is at position `item`.

  /// A subtree without fields and subtrees.
  virtual TDataTree* CreateSubtree(int tag, int idx, std::string header);
  /// A subtree read from text, as ReadFromString does.
  virtual TDataTree* CreateSubtree(const char* text, std::size_t* position);
  /// A subtree read from XML, as ReadFromXML does.
  virtual TDataTree* CreateSubtree(TKvXIniReader* reader, std::size_t item);
  /// A field with copies of `count` values.
  virtual TDataField<T>* CreateField(int tag, int idx, T* values, std::size_t count,
                                     std::string header);
  /// A field of one value.
  virtual TDataField<T>* CreateField(int tag, int idx, const T& value, std::string header);
  /// A field read from text, as TDataField::ReadFromString does.
  virtual TDataField<T>* CreateField(const char* text, std::size_t* position);
  /// A field read from XML, as TDataField::ReadFromXML does.
  virtual TDataField<T>* CreateField(TKvXIniReader* reader, std::size_t item);

  /// Appends a field made by the factory of the same kind. False, and nothing changes, when there
  /// is one with that tag and idx: a linear search.
  bool InsertField(std::string header, int tag, int idx, const T& value);
  /// The same with copies of `count` values.
  bool InsertField(std::string header, int tag, int idx, T* values, std::size_t count);
  /// The same for a subtree.
  bool InsertSubtree(std::string header, int tag, int idx);

  /// Inserts copies of all fields, then of all subtrees with what they hold, into `destination`,
  /// through its factories; not this tree's own tag, idx and header. Ends with false at the first
  /// that finds its tag and idx taken, and at a `destination` that lies inside this tree. Time is
  /// linear in what is copied but for a logarithm.
  bool CopyTo(TDataTree* destination) const;

  /// Reads a tree in the form of WriteTreeToString; the text ends with a NUL. Begins at
  /// `text + *position` and sets `*position` behind the line that closes the tree, or to the NUL; a
  /// null `position` is 0. A number that is not there leaves its member as it was, the header is
  /// replaced, fields and subtrees are appended; their keys are not compared. Throws
  /// std::length_error for counts of values that the text is too short for, alone or together; what
  /// was complete by then is kept.
  void ReadFromString(const char* text, std::size_t* position, TDataTree* parent);
  /// Reads what WriteToXML wrote from the section that the reader stands in; `item` is the
  /// section's position and not needed. False when something threw in reading this tree itself:
  /// what was read until then stays. A field or subtree that fails is kept as far as it was read,
  /// and the next one follows.
  bool ReadFromXML(TKvXIniReader* reader, std::size_t item, TDataTree* parent);
};

extern template class RAVELIN_EXPORT TDataField<std::string>;
extern template class RAVELIN_EXPORT TDataTree<std::string>;

/// A field of texts: escaped in the text form (tab, CR and LF as a backslash and a letter; see
/// Encode in Text.h for what that cannot tell apart), as they are in XML. A value that is not there
/// reads as empty and is not set.
class RAVELIN_EXPORT TStringTreeField : public TDataField<std::string> {
 public:
  using TDataField<std::string>::TDataField;

  std::size_t ValueToString(std::size_t i, char* buffer, std::size_t position) const override;
  std::string ValueToString(std::size_t i) const override;
  bool StringToValue(const char* text, std::size_t length, std::size_t i) override;
  bool StringToValue(const std::string& text, std::size_t i) override;
};

/// A tree of texts, with numbers as decimal text.
class RAVELIN_EXPORT TStringTree : public TDataTree<std::string> {
 public:
  /// As TDataTree's.
  TStringTree(int tag, int idx, TDataTree<std::string>* parent, std::string header);

  TDataTree<std::string>* CreateSubtree(int tag, int idx, std::string header) override;
  TDataTree<std::string>* CreateSubtree(const char* text, std::size_t* position) override;
  TDataTree<std::string>* CreateSubtree(TKvXIniReader* reader, std::size_t item) override;
  TDataField<std::string>* CreateField(int tag, int idx, std::string* values, std::size_t count,
                                       std::string header) override;
  TDataField<std::string>* CreateField(int tag, int idx, const std::string& value,
                                       std::string header) override;
  TDataField<std::string>* CreateField(const char* text, std::size_t* position) override;
  TDataField<std::string>* CreateField(TKvXIniReader* reader, std::size_t item) override;

  // The value of the first field with that tag and idx, which must have exactly one; numbers are
  // read as the C library's scan does in the C locale: leading blanks skipped, what follows the
  // number ignored ("12abc" is 12). A failure gives false, leaves `*value` alone and inserts a
  // field with this tag, idx -1 and the header "Get integer ERROR (tag=10)" (or double, string)
  // unless there is one: the first failure of each tag is kept. Its value is the text that is no
  // number, or for GetString what `*value` holds.

  /// A whole number.
  bool GetInteger(int tag, int idx, int* value);
  /// A number.
  bool GetDouble(int tag, int idx, double* value);
  /// The text as it is.
  bool GetString(int tag, int idx, std::string* value);

  // Insert a field of one value; false, and nothing changes, when tag and idx are taken.

  /// A whole number, in decimal.
  bool InsertInteger(std::string header, int tag, int idx, int value);
  /// Sixteen significant digits, "%.16lg" in the C locale.
  bool InsertDouble(std::string header, int tag, int idx, const double& value);
  /// The text as it is.
  bool InsertString(std::string header, int tag, int idx, const std::string& value);
};

/// Reads a tree from text and copies its fields and subtrees into `tree`; the tag, idx and header
/// of the text's first line are dropped. False when a key is taken, as CopyTo does it, and when
/// something threw.
RAVELIN_EXPORT bool InsertFromString(const std::string& text, TStringTree* tree);

/// A tree as text, a line a tree or field, indented with tabs:
///
///     (1,0)Product                   tree: (tag,idx)header
///     (10,0)[1]Rows    512           field: (tag,idx)[count]header, a tab before each value
///         (2,0)Sensor                subtree, one tab deeper
///         (11,0)[2]Bands   1   2     its field, as deep as the tree's own line
///                                    (an empty line, indented like the subtree, closes it)
///                                    (an empty line closes the tree)
///
/// Reading that gives the same tree but for what the form cannot carry: fields without values or
/// with a negative tag or idx; NUL anywhere, line feeds in the header of a tree; in headers of
/// fields and in values, a backslash before t, r, n, a tab, a CR or an LF, or at the end. Each line
/// costs its indentation, so the text of a tree of depth n takes n squared bytes. Throws
/// std::length_error when no string is that long.
RAVELIN_EXPORT std::string WriteTreeToString(const TStringTree& tree);

}  // namespace SatCommonUtils
