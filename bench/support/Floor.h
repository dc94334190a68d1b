// The least that passing over a text and putting one together can cost.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace RavelinBench {

/// Finds every `mark` of the text.
void ScanFor(char mark, std::string_view text);

/// Finds the lines of the text and copies each to `to`, which has the text's size.
void CopyLines(std::string_view text, std::string* to);

/// What an XML text is put together from: indentation, marks, names, values, line ends.
std::vector<std::string_view> Pieces(std::string_view xml);

/// The pieces appended to each other.
std::string Joined(const std::vector<std::string_view>& pieces);

}  // namespace RavelinBench
