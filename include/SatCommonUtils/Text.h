// Text helpers: escapes, byte-order marks, UTF-16 of Latin characters.
//
// Texts are byte strings. But where a function says so, they keep no state and may run on several
// threads at once on different strings and streams.
#pragma once

#include <string>

#include "Kv/Stream.h"
#include "SatCommonUtils/Export.h"

namespace SatCommonUtils {

// Escapes, which put a value on one line: a tab becomes "\t", LF "\n", CR "\r", two bytes each;
// every other byte stays. The backslash is not escaped, so Decode(Encode(x)) is x only where x has
// no backslash before t, n or r. Linear.

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
/// The same from string to string; what `*out` held is replaced.
RAVELIN_EXPORT void Encode(std::string in, std::string* out);
RAVELIN_EXPORT void Decode(std::string in, std::string* out);

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

}  // namespace SatCommonUtils
