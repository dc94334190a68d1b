// The classes of nodes and fields whose virtual operations are known to be this module's own.
#pragma once

#include <string>
#include <typeinfo>

#include "SatCommonUtils/Tree.h"

namespace SatCommonUtils {

/// Whether reading and writing may go on below a tree without calling its virtual operations for
/// it: what they do is known, and doing it in place takes no stack. Of a class that derives from
/// these, any operation may be the deriver's.
inline bool IsOwnType(const TDataTree<std::string>& tree) {
  const std::type_info& type = typeid(tree);
  return type == typeid(TStringTree) || type == typeid(TDataTree<std::string>);
}

inline bool IsOwnType(const TDataField<std::string>& field) {
  const std::type_info& type = typeid(field);
  return type == typeid(TStringTreeField) || type == typeid(TDataField<std::string>);
}

}  // namespace SatCommonUtils
