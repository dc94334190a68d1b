// The names inside a list, for the scans that fill it.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "SatCommonUtils/Files.h"

namespace SatCommonUtils {

struct TFilenamesListAccess {
  static const std::vector<std::string>& Names(const TFilenamesList& list) { return list.names_; }

  /// As Insert, but takes the name over.
  static void Append(TFilenamesList& list, std::string name) {
    list.names_.push_back(std::move(name));
  }

  /// The cursor is at the end afterwards.
  static void Replace(TFilenamesList& list, std::vector<std::string> names) {
    list.Clear();
    list.names_.swap(names);
  }
};

}  // namespace SatCommonUtils
