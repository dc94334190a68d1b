/// @file
/// Splitting, joining and numbering of texts, escapes, byte-order marks, UTF-16 of
/// Latin characters, numbers as text, beginnings and ends of strings, strings as files.
///
/// Texts are byte strings. But where a function says so, they keep no state and may run on several
/// threads at once on different strings and streams.
#pragma once

#include <string>
#include <vector>

#include "Kv/Progress.h"
#include "Kv/Stream.h"
#include "SatCommonUtils/Export.h"

namespace SatCommonUtils {

// Splitting. `text` and `separators` are NUL-terminated and not null; each byte of `separators` is
// a separator. The array forms store in `out`, the caller's array of `maxCount` elements, or with a
// null `out` only count; they stop behind the separator, also one behind an empty field, at which
// the count equals `maxCount`, and do not read on. So with a `maxCount` of 0 they stop at the first
// separator when nothing before it counts, or else count to the end of the text without storing.
// Progress takes one step a stored or counted element; the handler may be null. Exceptions of the
// handler pass, with what was stored before left in place. Time is linear in what is read, whatever
// the number of separators.

/// Cuts a text at separators and returns the number of fields. Empty fields, before a leading and
/// behind a trailing separator too, are passed over unless `keepEmpty`. A field of 4095 bytes ends
/// there, and the byte behind it is lost as if it were a separator: callers rely on it.
///
///     std::string out[10];
///     SplitString("a,,b", ",", out, 10, nullptr, false);  // 2: "a", "b"
RAVELIN_EXPORT unsigned int SplitString(const char* text, const char* separators, std::string* out,
                                        unsigned int maxCount, TKvProgressHandler* handler,
                                        bool keepEmpty);
/// The same, but separators between double quotes do not count, and fields may be of any length.
/// Quotes stay in the fields; a doubled one does not end the quoted section, the end of the text
/// does. A double quote that is a separator is only that.
RAVELIN_EXPORT unsigned int SplitStringQuot(const char* text, const char* separators,
                                            std::string* out, unsigned int maxCount,
                                            TKvProgressHandler* handler, bool keepEmpty);
/// The same, all fields; they are put behind what `*out` holds, or with a null `out` only counted.
/// Returns how many this call found.
RAVELIN_EXPORT unsigned int SplitStringQuot(const char* text, const char* separators,
                                            std::vector<std::string>* out, bool keepEmpty);

/// Converts what lies between separators to numbers as the C library's scan for "%lg" does, in the
/// current locale, and returns how many it took. What follows a number is ignored ("12abc" is 12);
/// what begins with no number, or is empty, is passed over. Blanks alone are taken and give the
/// number before them again, 0 when there was none: callers rely on it. With `reverse` the first
/// number goes to the last element of `out`, the next to the one before it. The locale and the
/// rounding mode must stay while it runs.
RAVELIN_EXPORT unsigned int SplitStringIntoDoubles(const char* text, const char* separators,
                                                   double* out, unsigned int maxCount, bool reverse,
                                                   TKvProgressHandler* handler);
/// The same, all numbers; they replace what `*out`, which must not be null, held.
RAVELIN_EXPORT unsigned int SplitStringIntoDoubles(const char* text, const char* separators,
                                                   std::vector<double>* out,
                                                   TKvProgressHandler* handler);

/// `a`, trimmed, and each of the others that is not empty, as it is, behind a blank. So an empty
/// `a` gives a text that begins with a blank.
RAVELIN_EXPORT std::string CombineStrings(std::string a, std::string b, std::string c,
                                          std::string d, std::string e);
/// Sets the target to `value`, trimmed first if so asked, unless that is empty: then false, and the
/// target stays.
RAVELIN_EXPORT bool SetIfNotEmpty(std::string* target, const std::string& value, bool trimFirst);
/// `value`, trimmed first if so asked, or `def` as it is when that is empty.
RAVELIN_EXPORT std::string GetNotEmptyDef(const std::string& value, const std::string& def,
                                          bool trimFirst);

/// @{
/// A text of at least `width` bytes stays. A shorter one gets a filler in front, or behind, but not
/// the one that the names promise: as many bytes as the code of `pad` says (32 for a blank), each
/// with the low byte of `text.size() - width` as its value (FD for 2 bytes and a width of 5).
/// Callers rely on it. A pad character from 80 to FF throws std::length_error.
RAVELIN_EXPORT std::string LeftPadding(const std::string& text, unsigned long width, char pad);
RAVELIN_EXPORT std::string RightPadding(const std::string& text, unsigned long width, char pad);
/// @}

/// Trims the text and takes a double quote off both of its ends. False when it does not have both:
/// `*out`, which may be `text`, is the trimmed text then.
RAVELIN_EXPORT bool RemoveQuotes(const std::string& text, std::string* out);
/// What is between the quotes of the trimmed text; without both, the text as it is, not trimmed.
RAVELIN_EXPORT std::string RemoveQuotes(const std::string& text);
/// Without leading and trailing double quotes, blanks, tabs, CR and LF, in any mix.
RAVELIN_EXPORT std::string RemoveQuotesAndWhitespaces(const std::string& text);
/// Without one `symbol` at its end, or without all of them there.
RAVELIN_EXPORT std::string RemoveTrailingSymbol(const std::string& text, char symbol, bool all);

// Numbering. A number is what the C library's scan for "%d" reads between the last opening and the
// last closing bracket, whatever follows it there: "[ 4]" and "[4x]" are 4. A number beyond `int`
// is as the scan of the GNU library gives it: the low 32 bits of a `long`, the nearest `long` for
// one beyond that. The smallest `int` follows the largest.

/// The text with its number in square brackets one higher, and without what followed them; with
/// "[1]" behind it when it has no such number.
///
///     "Band" -> "Band[1]" -> "Band[2]"    "a[3]b" -> "a[4]"    "a[x]" -> "a[x][1]"
RAVELIN_EXPORT std::string GenerateNextString(std::string text);
/// The same with round brackets.
RAVELIN_EXPORT std::string GenerateNumeratedString(std::string text);
/// Cuts the number in round brackets, and what follows it, off the text and returns it; without one
/// the text stays and the result is 0. Blanks between the brackets are cut as well, as a 0: callers
/// rely on it.
RAVELIN_EXPORT int DeNumerateString(std::string* text);
/// `base`, or the first of GenerateNextString(base), the next of that, and so on that is not among
/// `existing`. Without `caseSensitive` ASCII letters are compared as if in lower case. Memory and
/// time are those of sorting the existing names that begin like `base`.
RAVELIN_EXPORT std::string GenerateUniqueString(const std::string& base,
                                                const std::vector<std::string>& existing,
                                                bool caseSensitive);

// Escapes, which put a value on one line: a tab becomes "\t", LF "\n", CR "\r", two bytes each;
// every other byte stays. The backslash is not escaped, so Decode(Encode(x)) is sure to be x only
// where x has no backslash: one before t, n, r or any of those three bytes, or at the end, is read
// as another text. Linear.

/// Writes the escaped form of `srcLength` bytes at `dst` + `dstOffset`, where there must be room
/// for it: twice `srcLength` always is enough. Returns the bytes written; no NUL is put behind
/// them. With a null `dst` nothing is written and the result is how many bytes it would be.
///
///     std::string line(Encode(value.data(), value.size(), nullptr, 0), '\0');
///     Encode(value.data(), value.size(), line.data(), 0);
RAVELIN_EXPORT unsigned long Encode(const char* src, unsigned long srcLength, char* dst,
                                    unsigned long dstOffset);
/// The reverse: a backslash before t, n or r and that letter become one byte; before any other byte
/// both stay; at the end of the source it is dropped. `srcLength` bytes always are room enough, and
/// `dst` + `dstOffset` may be `src`. With a null `dst` a backslash at the end is counted although
/// writing drops it: callers rely on it.
RAVELIN_EXPORT unsigned long Decode(const char* src, unsigned long srcLength, char* dst,
                                    unsigned long dstOffset);
/// @{
/// The same from string to string; what `*out` held is replaced.
RAVELIN_EXPORT void Encode(std::string in, std::string* out);
RAVELIN_EXPORT void Decode(std::string in, std::string* out);
/// @}

/// The byte-order mark at the start of a text.
enum TSatBOM : int {
  bomNone = 0,
  bomUTF8 = 1,     ///< EF BB BF
  bomUTF16BE = 2,  ///< FE FF
  bomUTF16LE = 3,  ///< FF FE, without 00 00 behind it
  bomUTF32BE = 4,  ///< 00 00 FE FF
  bomUTF32LE = 5,  ///< FF FE 00 00
};

/// Bytes of the mark; 0 for a value that is none.
RAVELIN_EXPORT unsigned long GetBOMLength(TSatBOM mark);
/// The mark at `bytes`, of which four must be readable.
RAVELIN_EXPORT TSatBOM RecognizeBOM(const char* bytes);
/// The mark at the start of `stream`, whose position stays as it was. A stream that cannot be read
/// there has none. Exceptions of the stream pass.
RAVELIN_EXPORT TSatBOM ReadBOM(TKvStream* stream);

/// The low byte of each 16-bit unit: text whose characters are below U+0100 as Latin-1, not UTF-8.
/// Of other characters only that byte is left. The last byte of an odd length is a low byte when
/// `littleEndian` is true and dropped otherwise.
RAVELIN_EXPORT std::string PseudoUTF16toUTF8(const std::string& bytes, bool littleEndian);
/// The same of the rest of `stream` from `offset` on, an odd last byte left out. Empty when
/// anything of it cannot be read. Exceptions of the stream pass. Memory grows with what was read,
/// whatever size the stream claims.
RAVELIN_EXPORT std::string PseudoUTF16toUTF8(TKvStream* stream, bool littleEndian,
                                             unsigned long offset);
/// The same of what follows the UTF-16 mark of `stream`, in the byte order that it names. Empty
/// when there is no such mark.
RAVELIN_EXPORT std::string PseudoUTF16toUTF8BOM(TKvStream* stream);

// Numbers in texts. They are read as the C library's scan does, up to a NUL and in the locale of
// the process: leading white space is skipped, what follows the number is ignored ("12abc" is 12).
// A double or float may be hexadecimal, an infinity or NaN. An int or unsigned int beyond its range
// is as the scan of the GNU library gives it, the low 32 bits of a long. Time is linear in the
// number and the white space.

/// @{
/// The number at the beginning of `text`; `def` when the text is empty or no number begins it. A
/// text that is not empty, but has white space at most before its first NUL or its end, gives 0:
/// callers rely on its being no failure.
RAVELIN_EXPORT double StringToDoubleDef(const std::string& text, const double& def);
RAVELIN_EXPORT int StringToIntDef(const std::string& text, int def);
/// @}

/// @{
/// The same, but instead of the default std::runtime_error whose what() is the function's name.
RAVELIN_EXPORT double StringToDoubleE(const std::string& text);
RAVELIN_EXPORT int StringToIntE(const std::string& text);
/// @}

/// @{
/// Whether a number begins `text`, which then is in `*value`. Otherwise `*value` stays; white space
/// alone is no number here. An unsigned number wraps when it has a minus: "-1" is 4294967295.
RAVELIN_EXPORT bool ValueFromString(const std::string& text, double* value);
RAVELIN_EXPORT bool ValueFromString(const std::string& text, float* value);
RAVELIN_EXPORT bool ValueFromString(const std::string& text, unsigned int* value);
/// @}

/// @{
/// As printf's %g and %u give it, with six significant digits at most: 0.1, 1e+20, 1.23457e+08. The
/// decimal sign is that of the locale.
RAVELIN_EXPORT std::string ValueToString(const double& value);
RAVELIN_EXPORT std::string ValueToString(const float& value);
RAVELIN_EXPORT std::string ValueToString(const unsigned int& value);
/// @}

/// @{
/// By a format of printf with one conversion: of a double for the first two, of an unsigned int for
/// the third. The text ends at the first NUL. Empty when printf refuses the format.
///
///     ValueToString(1.5, "%.3f")    // "1.500"
RAVELIN_EXPORT std::string ValueToString(const double& value, const char* format);
RAVELIN_EXPORT std::string ValueToString(const float& value, const char* format);
RAVELIN_EXPORT std::string ValueToString(const unsigned int& value, const char* format);
/// @}

// Strings in strings. With `caseSensitive` false, ASCII letters are compared in upper case; other
// bytes always are compared as they are. Linear.

/// An empty `head` begins every text.
RAVELIN_EXPORT bool StringBegins(const std::string& text, const std::string& head,
                                 bool caseSensitive);
/// An empty `part` is in every text.
RAVELIN_EXPORT bool StringContains(const std::string& text, const std::string& part,
                                   bool caseSensitive);
/// With `caseSensitive` false the first occurrence of `tail` decides: "ABAB" does not end with
/// "ab", and only an empty text ends with an empty tail. Callers rely on it.
RAVELIN_EXPORT bool StringEnds(const std::string& text, const std::string& tail,
                               bool caseSensitive);
/// `text` without the head that it begins with by StringBegins; once, in its own case.
RAVELIN_EXPORT std::string CutStringHead(const std::string& text, const std::string& head,
                                         bool caseSensitive);
/// `text` without the tail that it ends with by StringEnds; once, in its own case.
RAVELIN_EXPORT std::string CutStringTail(const std::string& text, const std::string& tail,
                                         bool caseSensitive);

/// Makes the file, or empties it, and writes `content`. False when any of it failed; what was
/// written then stays. Throws nothing.
RAVELIN_EXPORT bool WriteStringToFile(const std::string& fileName, const std::string& content);
/// All bytes of the file. Empty when it cannot be read, as when it is empty. Throws nothing.
RAVELIN_EXPORT std::string ReadStringFromFile(const std::string& fileName);

}  // namespace SatCommonUtils
