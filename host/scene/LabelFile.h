// The label of a product: the text that tells what its files hold.
#pragma once

#include <optional>
#include <string>

namespace ravelin {

/// How statements of a label end.
enum class Dialect {
  kPvl,   ///< with ';'; groups are opened by BEGIN_GROUP
  kNasa,  ///< with their line; groups are opened by GROUP
};

/// "pvl" or "nasa".
std::string DialectName(Dialect dialect);
/// Reads what DialectName gives; none for anything else.
std::optional<Dialect> ParseDialect(const std::string& text);

struct LabelFile {
  std::string path;
  std::string text;  ///< without its byte-order mark, UTF-16 as UTF-8
  Dialect dialect;
  std::string reason;  ///< why it is taken for that dialect, for people
};

/// The label in a folder: the only file whose name ends in _mtl.txt, .lbl, .pvl, .met or label.txt,
/// letter case ignored. Throws HostError, listing the files, when there is none or several.
std::string FindLabel(const std::string& folder);

/// Reads a label. Its dialect, unless given, is told by the first line that opens a group: GROUP
/// (or OBJECT) or BEGIN_GROUP (or BEGIN_OBJECT), in any case, behind blanks. Throws HostError when
/// the file cannot be read, is UTF-32, is longer than 16 MiB or does not tell its dialect.
LabelFile ReadLabel(const std::string& path, std::optional<Dialect> dialect);

/// The label as XML-ini. Throws HostError naming the line that cannot be converted.
std::string LabelXml(const LabelFile& label);

}  // namespace ravelin
