/// @file
/// Operations on texts as byte strings, independent of the locale.
#pragma once

#include <string>

#include "Kv/Export.h"

/// Without leading and trailing space, tab, CR, LF, VT, FF.
KV_EXPORT std::string trim(std::string text);

/// ASCII letters folded to lower case; every other byte, and the length, unchanged.
KV_EXPORT std::string tolower(const std::string& text);

/// ASCII letters folded to upper case; every other byte, and the length, unchanged.
KV_EXPORT std::string toupper(const std::string& text);

/// What KvAnsiToChar is to give.
enum TKvCharEncoding {
  kvEncodingAnsi = 0,  ///< the bytes as they are
  kvEncodingUtf8 = 1,  ///< UTF-8
};

/// To UTF-8: text that already is valid UTF-8 is returned as it is; otherwise every byte from 0x80
/// is read as Windows-1252, its five unassigned codes (81, 8D, 8F, 90, 9D) as U+FFFD. To ANSI:
/// unchanged. Linear; the result is at most three times as long.
KV_EXPORT std::string KvAnsiToChar(const std::string& text, TKvCharEncoding encoding);
