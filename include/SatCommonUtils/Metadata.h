/// @file
/// Metadata as XML: PVL and WKT converters, readers and writers of XML items.
///
/// Texts are byte strings and are passed on as they are. The functions keep no state: they may run
/// on several threads at once on different streams, writers and items.
#pragma once

#include <string>

#include "Kv/Stream.h"
#include "Kv/Transform2D.h"
#include "Kv/VarA.h"
#include "Kv/XIni.h"
#include "Kv/XmlItem.h"
#include "SatCommonUtils/Export.h"

namespace SatCommonUtils {

/// Converts PVL text, read from the beginning of `in`, to XML-ini on `out`.
///
///     BEGIN_GROUP = IMAGE;
///       LINES = 100;            -> <IMAGE><LINES>100</LINES>
///       BANDS = (1, 2, 3);         <BANDS>1,2,3</BANDS></IMAGE>
///     END_GROUP = IMAGE;
///     END;
///
/// Statements end with ';' and may run over several lines; quotes are dropped; a list in round
/// brackets gives its items joined by ','. What is no statement is skipped, a line at a time. True
/// when the text was converted up to its end or to a well-formed END; groups may stay open.
/// False for an input that is not open or empty; for a group statement without '=', an END_GROUP
/// that does not name the innermost open group, an END without ';'; and when the output took less
/// than it was given. What was written before a failure stays in the output. Lines longer than 1023
/// bytes are broken there. Time and memory are linear in the input.
RAVELIN_EXPORT bool PVLtoXML(var_a_legacy::var_a<TKvStream*> in,
                             var_a_legacy::var_a<TKvStream*> out);

/// As PVLtoXML for the NASA dialect: a statement ends with its line, groups are opened by GROUP,
/// and an empty or unreadable input gives true.
RAVELIN_EXPORT bool NASA_PVLtoXML(var_a_legacy::var_a<TKvStream*> in,
                                  var_a_legacy::var_a<TKvStream*> out);

/// Where and why a conversion of PVL text stopped.
struct TPvlFailure {
  /// Of the input, counted from 1: the line on which the statement begins that could not be
  /// converted. 0 when no statement is to blame: there was no input, or the output failed at its
  /// end.
  unsigned long line;
  std::string reason;  ///< for people, without a full stop: "BEGIN_GROUP without '='"
};

/// @{
/// The same conversions. False says in `*failure` why; otherwise it is left alone. It may be null.
RAVELIN_EXPORT bool PVLtoXML(var_a_legacy::var_a<TKvStream*> in,
                             var_a_legacy::var_a<TKvStream*> out, TPvlFailure* failure);
RAVELIN_EXPORT bool NASA_PVLtoXML(var_a_legacy::var_a<TKvStream*> in,
                                  var_a_legacy::var_a<TKvStream*> out, TPvlFailure* failure);
/// @}

/// Converts WKT text, NAME[item, CHILD[...], ...], to an XML document in UTF-8: an element a
/// section, a VALUE element an item (quotes kept, white space outside them dropped), a line each,
/// ended by CR LF and indented with tabs. Names and values are not escaped. Text behind the
/// outermost section is ignored; text that ends inside a section gives XML without the closing
/// lines. False, and `*xml` stays as it is, for an empty text only. Time is linear in the input and
/// the output; the indentation of deeply nested text can make the output much longer than the
/// input.
RAVELIN_EXPORT bool WktSectionToXml(const std::string& wkt, std::string* xml);

/// @{
/// Writers that write only what carries information. True without writing when there is nothing
/// worth it, else the writer's result.
RAVELIN_EXPORT bool WriteNotEmptyString(TKvXIniWriter* writer, std::string name, std::string value);
RAVELIN_EXPORT bool WriteNonZeroInt(TKvXIniWriter* writer, std::string name, int value);
RAVELIN_EXPORT bool WritePositiveInt(TKvXIniWriter* writer, std::string name, int value);
RAVELIN_EXPORT bool WriteNonNegativeInt(TKvXIniWriter* writer, std::string name, int value);
/// @}
/// Writes what compares unequal to 0: NaN is written, -0.0 is not.
RAVELIN_EXPORT bool WriteNonZeroDouble(TKvXIniWriter* writer, std::string name, double value);

/// Loads a transform from a section of the section that the reader stands in. The framework's
/// exceptions pass; a failed load leaves the section entered.
RAVELIN_EXPORT var_a_legacy::var_a<TKv2DTransform*> CreateFromXMLE(TKvXIniReader* reader,
                                                                   std::string section);
/// Meant for a host in which another module supplies this exported symbol: it calls the symbol, and
/// catches what that throws, an empty reference then. Where this module's own definition is the one
/// that the symbol names, it calls itself until the stack is used up. Callers rely on both.
RAVELIN_EXPORT var_a_legacy::var_a<TKv2DTransform*> CreateFromXML(TKvXIniReader* reader,
                                                                  std::string section);
/// Saves a transform in a section of its own; the result of ending it. Exceptions pass.
RAVELIN_EXPORT bool SaveToXMLE(const TKv2DTransform& transform, TKvXIniWriter* writer,
                               std::string section);
/// As SaveToXMLE, but true unless something threw: the result of ending the section is not looked
/// at.
RAVELIN_EXPORT bool SaveToXML(const TKv2DTransform& transform, TKvXIniWriter* writer,
                              std::string section);

/// An element of parsed XML, shared.
using TXmlItem = var_a_legacy::var_a<TKvXmlItem*>;

// Readers of the first child element of `item` that is named `tag`. An empty `item` has no
// children. Numbers are read as the C library's scan does: the decimal sign is that of the host's
// locale, leading blanks are skipped, what follows the number is ignored ("12abc" is 12). A missing
// child and an empty text give the default, or false with the value left alone. Text of blanks
// alone gives the default, but true with the value left alone: callers rely on it.

/// @{
/// The child's text, a text also when it is empty, or the number that it begins with; `def` when
/// there is no such child.
RAVELIN_EXPORT std::string ReadStringFromXMLItemText(TXmlItem item, const std::string& tag,
                                                     const std::string& def);
RAVELIN_EXPORT double ReadDoubleFromXMLItemText(TXmlItem item, const std::string& tag,
                                                const double& def);
RAVELIN_EXPORT bool ReadDoubleFromXMLItemText(TXmlItem item, const std::string& tag, double* value);
RAVELIN_EXPORT int ReadIntFromXMLItemText(TXmlItem item, const std::string& tag, int def);
RAVELIN_EXPORT bool ReadIntFromXMLItemText(TXmlItem item, const std::string& tag, int* value);
/// @}

/// @{
/// The value of the child's `attribute`; `def` when there is no such child or attribute.
RAVELIN_EXPORT std::string ReadStringFromXMLItemAttribute(TXmlItem item, const std::string& tag,
                                                          const std::string& attribute,
                                                          const std::string& def);
RAVELIN_EXPORT double ReadDoubleFromXMLItemAttribute(TXmlItem item, const std::string& tag,
                                                     const std::string& attribute,
                                                     const double& def);
RAVELIN_EXPORT bool ReadDoubleFromXMLItemAttribute(TXmlItem item, const std::string& tag,
                                                   const std::string& attribute, double* value);
RAVELIN_EXPORT int ReadIntFromXMLItemAttribute(TXmlItem item, const std::string& tag,
                                               const std::string& attribute, int def);
RAVELIN_EXPORT bool ReadIntFromXMLItemAttribute(TXmlItem item, const std::string& tag,
                                                const std::string& attribute, int* value);
/// @}

}  // namespace SatCommonUtils
