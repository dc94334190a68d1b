// Texts that the converters of metadata are measured on.
#pragma once

#include <string>
#include <vector>

namespace RavelinBench {

struct TText {
  std::string name;
  std::string bytes;
};

enum class TDialect { kGeneral, kNasa };

/// Statements of PVL in groups of a hundred; 25,000 take 1 MB.
std::string Statements(TDialect dialect, int count);
constexpr int kStatementsOfMegabyte = 25000;

/// Texts that a careless parser would read over and over, about so many bytes, in the general
/// dialect.
std::vector<TText> HostileLabels(int bytes);

/// WKT of about so many bytes: siblings at depth 3.
std::string Sections(int bytes);

/// The .txt files of a folder of real texts, in the order of their names; none when it is not
/// there.
std::vector<TText> RealTexts(const std::string& folder);

}  // namespace RavelinBench
