/// @file
/// Parsed XML as a tree of shared, immutable elements.
#pragma once

#include <memory>
#include <string>

#include "Kv/Export.h"
#include "Kv/Stream.h"
#include "Kv/VarA.h"

class TKvXmlItem;

/// The attributes of an element, in order. Copies share them.
class KV_EXPORT TKvXmlTagAttributes {
 public:
  /// One attribute.
  struct Attribute {
    std::string name;   ///< with the prefix if any
    std::string value;  ///< references replaced by what they stand for
  };

  /// None.
  TKvXmlTagAttributes();
  /// Shares the attributes.
  TKvXmlTagAttributes(const TKvXmlTagAttributes&);
  /// Shares the attributes.
  TKvXmlTagAttributes& operator=(const TKvXmlTagAttributes&);
  ~TKvXmlTagAttributes();

  /// The value of the first attribute of that name; `def` when there is none. Linear.
  std::string get_value(const std::string& name, const std::string& def) const;
  /// Their number.
  unsigned long size() const;
  /// One of them, from 0. Throws std::out_of_range when there is no such attribute.
  const Attribute& operator[](unsigned long i) const;

 private:
  friend class TKvXmlTreeBuilder;
  struct Data;
  std::shared_ptr<const Data> data_;
};

/// The children of an element, in order, and its own text. Copies share them.
class KV_EXPORT TKvXmlTagItems {
 public:
  /// None.
  TKvXmlTagItems();
  /// Shares the children.
  TKvXmlTagItems(const TKvXmlTagItems&);
  /// Shares the children.
  TKvXmlTagItems& operator=(const TKvXmlTagItems&);
  ~TKvXmlTagItems();

  /// The first child of that tag at `start` or behind it; all ones when there is none. Linear in
  /// the children passed over.
  unsigned long find_tag_f(const std::string& tag, unsigned long start) const;
  /// One of them, from 0. Throws std::out_of_range when there is no such child.
  var_a_legacy::var_a<TKvXmlItem*> operator[](unsigned long i) const;
  /// The number of children.
  unsigned long size() const;
  /// The element's own text, CDATA sections included, its pieces between children and comments
  /// joined; white space is kept as it is.
  std::string get_text() const;

 private:
  friend class TKvXmlTreeBuilder;
  struct Data;
  std::shared_ptr<const Data> data_;
};

/// What an element is made of. Copies share attributes and children.
struct TKvXmlElement {
  std::string tag;                 ///< its name, with the prefix if any
  TKvXmlTagAttributes attributes;  ///< in the order of the text
  TKvXmlTagItems items;            ///< its children and its own text
};

/// One element of a parsed XML text.
///
///     const auto scene = TKvXmlItem::Parse("<scene><sun unit='deg'>41.5</sun></scene>");
///     const TKvXmlTagItems& items = scene->Element().items;
///     const unsigned long i = items.find_tag_f("sun", 0);
///     items[i]->Element().attributes.get_value("unit", "");  // "deg"
///
/// Ownership: an element shares its children and lives on without its parent. A tree of any depth
/// is parsed and destroyed without using up the call stack.
/// Threads: elements do not change, so several threads may read one.
class KV_EXPORT TKvXmlItem {
 public:
  /// Takes the element over.
  explicit TKvXmlItem(TKvXmlElement element);
  TKvXmlItem(const TKvXmlItem&) = delete;
  TKvXmlItem& operator=(const TKvXmlItem&) = delete;
  virtual ~TKvXmlItem();

  /// The element; valid while this item lives.
  virtual const TKvXmlElement& Element() const;

  /// Parses a whole stream, from its beginning where it can be positioned, and returns the root.
  /// Throws TKvError with line and column (both from 1, the column in characters). Document types
  /// are refused; encodings are those of TKvXIniReader.
  static var_a_legacy::var_a<TKvXmlItem*> Parse(TKvStream* stream);
  /// The same of a text.
  static var_a_legacy::var_a<TKvXmlItem*> Parse(const std::string& text);

 private:
  TKvXmlElement element_;
};
