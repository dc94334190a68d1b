// The text that a PVL conversion works on, read from its input line by line.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "Kv/Stream.h"

namespace SatCommonUtils {

/// The lines of an input, each followed by what ends a line in the dialect.
struct TPvlInput {
  std::string text;
  /// Which lines of `text`, counted from 0, are pieces of an input line that goes on in the next.
  std::vector<unsigned long> unfinished;
};

/// All lines of `in` from its beginning, every one followed by `lineEnd`. A line ends at a NUL
/// byte; one longer than the buffer comes as several.
TPvlInput ReadPvlInput(TKvStream& in, std::string_view lineEnd);

/// The line of the input, counted from 1, that the place `pos` of `text` comes from.
unsigned long InputLine(std::string_view text, const std::vector<unsigned long>& unfinished,
                        std::size_t pos);

}  // namespace SatCommonUtils
