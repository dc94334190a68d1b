// Texts that the converters of metadata are measured on.
#pragma once

#include <string>
#include <vector>

namespace RavelinBench {

struct TText {
  std::string name;
  std::string bytes;
};

/// 25,000 statements of NASA PVL in groups of a hundred, 1 MB.
const std::string& ManyStatements();
constexpr int kManyStatements = 25000;

/// 1 MB of WKT: siblings at depth 3.
const std::string& ManySections();

/// The .txt files of a folder of real texts, in the order of their names; none when it is not
/// there.
std::vector<TText> RealTexts(const std::string& folder);

}  // namespace RavelinBench
