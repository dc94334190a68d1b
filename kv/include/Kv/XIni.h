/// @file
/// XML-ini documents: a tree of sections that hold named items, written and read as XML.
///
/// Names may be any bytes, and so may values; what is written is read back exactly, byte for byte.
///
///     <?xml version="1.0" encoding="UTF-8"?>
///     <xini>
///         <scene id="7">                       section "scene", its item "id" as an attribute
///             <sun>41.5</sun>                  item "sun"
///             <_ _name="row time">12</_>       item "row time": not a name in XML
///             <_>x</_>                         unnamed item
///             <key _enc="value">AAE=</key>     item "key" of the bytes 0 and 1, in base64
///         </scene>
///     </xini>
///
/// The XML is UTF-8, indented with tabs, with LF line ends. A name with a colon counts as one that
/// XML cannot carry, because namespaces would give the colon a meaning of its own. Where a name or
/// a value has bytes that XML cannot carry (control characters, what is not UTF-8), it is written
/// as base64, and `_enc` says which: "name", "value" or "name value".
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "Kv/Export.h"
#include "Kv/Stream.h"
#include "Kv/VarA.h"

/// What writes sections and items. This class alone writes nothing: every write fails.
///
/// The order of the virtual operations is part of the binary interface. The last two are the hooks
/// through which the operations that are not virtual reach the deriving writer; a writer of one's
/// own overrides these two and EndSection.
/// Nothing throws but ReportWriteError and the operations whose names end in SE.
/// Threads: calls on one writer must not overlap.
class KV_EXPORT TKvXIniWriter {
 public:
  TKvXIniWriter();
  TKvXIniWriter(const TKvXIniWriter&) = delete;
  TKvXIniWriter& operator=(const TKvXIniWriter&) = delete;
  virtual ~TKvXIniWriter();

  /// Writes one item into the innermost open section; false when it fails. T is std::string, int
  /// ("%d") or double ("%.17g" with a dot whatever the locale, infinities "inf" and "-inf", "nan").
  template <class T>
  bool WriteS(const std::string& name, const T& value) = delete;
  /// Opens a section in the innermost open one, or at the top. Returns its identifier, never 0; 0
  /// on failure. An empty name opens an unnamed section.
  unsigned long BeginSectionS(const std::string& name);
  /// The same; a failure calls ReportWriteError, and throws TKvError should that return.
  unsigned long BeginSectionSE(const std::string& name);
  /// The same for a compact section: all that it contains is written on one line.
  unsigned long BeginSectionCompactSE(const std::string& name);

  /// Closes a section, which must be the innermost open one; false when it is not, or on failure.
  virtual bool EndSection(unsigned long section);
  /// Off at first. While on, an item becomes an attribute of the innermost open element where XML
  /// allows: its name is a proper one that does not begin with '_' (nor is "xmlns") and is not
  /// there yet, its value is text that XML can carry, and the element has no child yet. Otherwise
  /// it becomes an element.
  virtual void SetAttributeMode(bool on);
  /// Throws TKvError with what failed last.
  virtual void ReportWriteError();

 protected:
  /// Writes one item, its value already text.
  virtual bool WriteItemText(const std::string& name, std::string_view value);
  /// Opens a section; 0 on failure.
  virtual unsigned long OpenSection(const std::string& name, bool compact);

 private:
  unsigned long OpenSectionE(const std::string& name, bool compact);
};

/// Writes a text.
template <>
KV_EXPORT bool TKvXIniWriter::WriteS<std::string>(const std::string& name,
                                                  const std::string& value);
/// Writes a whole number.
template <>
KV_EXPORT bool TKvXIniWriter::WriteS<int>(const std::string& name, const int& value);
/// Writes a number.
template <>
KV_EXPORT bool TKvXIniWriter::WriteS<double>(const std::string& name, const double& value);

/// Writes XML-ini to a stream, from the stream's position on.
///
///     TKvXIniStreamWriter writer(stream, 0, TKvXIniStreamWriter::htDocument);
///     const unsigned long scene = writer.BeginSectionSE("scene");
///     writer.WriteS<double>("sun", 41.5);
///     writer.EndSection(scene);
///     if (!writer.Close()) ...  // something was lost
///
/// Output is buffered; memory does not grow with the document, only with what is open: sections,
/// and the attribute names of an element that has no child yet. An item costs time in proportion to
/// its length. The stream is shared and stays open.
/// A stream that takes fewer bytes than given, or throws, makes that call and every later one fail,
/// and nothing more is given to it.
class KV_EXPORT TKvXIniStreamWriter : public TKvXIniWriter {
 public:
  /// What stands around the sections.
  enum THeaderType {
    htDocument = 0,  ///< a declaration and the root element "xini"
    htFragment = 1,  ///< neither
  };
  /// `indent` is added to the depth of every element; the sum is held between 0 and 32 tabs. With
  /// an empty `stream` every call fails.
  TKvXIniStreamWriter(var_a_legacy::var_a<TKvStream*> stream, int indent, THeaderType header);
  /// Close(), its result lost: who must know calls it.
  ~TKvXIniStreamWriter() override;

  /// Gives everything so far to the stream. False when any write fell short.
  bool Flush();
  /// Closes what is open, the root too, and flushes. False when any write fell short. Every later
  /// call fails, Close itself included.
  bool Close();

  bool EndSection(unsigned long section) override;
  void SetAttributeMode(bool on) override;
  void ReportWriteError() override;

 protected:
  bool WriteItemText(const std::string& name, std::string_view value) override;
  unsigned long OpenSection(const std::string& name, bool compact) override;

 private:
  class Impl;
  std::unique_ptr<Impl> impl_;
};

/// Reads a whole XML-ini document and walks through it.
///
///     TKvXIniReader reader(stream);
///     const unsigned long scene = reader.EnterSectionSE("scene");
///     const double sun = reader.ReadE<double>(reader.FindFE("sun", 0));
///     reader.LeaveSection(scene);
///
/// The reader stands in one section at a time, inside the root element at first, whatever the
/// root's name. The items of a section are its attributes in order (those beginning with '_' not
/// counted), then its child elements in order, sections and plain items alike. Entering a section
/// takes time linear in its items; finding by name is logarithmic after that. Where memory is
/// short, std::bad_alloc leaves, and the reader is as it was. The order of the virtual operations
/// is part of the binary interface. Threads: calls on one reader must not overlap.
class KV_EXPORT TKvXIniReader {
 public:
  /// Reads the whole stream, from its beginning where it can be positioned, and parses it. Throws
  /// TKvError with line and column (both from 1, the column in characters) for what is not XML and
  /// for names and values whose base64 is broken. Document types are refused, so entities beyond
  /// the five of XML are unknown. UTF-8, UTF-16, ISO-8859-1 and Windows-1252 are read. Nesting of
  /// any depth does not use up the call stack.
  explicit TKvXIniReader(var_a_legacy::var_a<TKvStream*> stream);
  TKvXIniReader(const TKvXIniReader&) = delete;
  TKvXIniReader& operator=(const TKvXIniReader&) = delete;
  virtual ~TKvXIniReader();

  /// The first item of that name at `start` or behind it; all ones when there is none.
  unsigned long FindF(const char* name, unsigned long start) const;
  /// The same; throws TKvError when there is none.
  unsigned long FindFE(const char* name, unsigned long start) const;
  /// The value of an item. T is std::string, int or double; of the latter two the whole text must
  /// be one, in the range of its type. Throws TKvError when it is not, when there is no such item,
  /// and for an element that has child elements.
  template <class T>
  T ReadE(unsigned long item) const = delete;
  /// Enters the first child element of that name and returns an identifier for LeaveSection, never
  /// 0. Throws TKvError when there is none.
  unsigned long EnterSectionSE(const std::string& name);

  /// Enters the element at a position. Its text is not an item, so an element of text alone has
  /// none. Throws TKvError for an attribute and for a position that is not there.
  virtual unsigned long EnterItem(unsigned long item);
  /// Whether the current section has an item at that position.
  virtual bool HasItem(unsigned long item) const;
  /// The number of items of the current section.
  virtual unsigned long GetItemCount() const;
  /// Returns to the section that was current before that one was entered, from any depth within
  /// it. Nothing when `section` is not entered at present.
  virtual void LeaveSection(unsigned long section);

 private:
  class Impl;
  std::unique_ptr<Impl> impl_;
};

/// The text of an item.
template <>
KV_EXPORT std::string TKvXIniReader::ReadE<std::string>(unsigned long item) const;
/// An item as a whole number.
template <>
KV_EXPORT int TKvXIniReader::ReadE<int>(unsigned long item) const;
/// An item as a number.
template <>
KV_EXPORT double TKvXIniReader::ReadE<double>(unsigned long item) const;
