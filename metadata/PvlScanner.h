// The statement scanners that both PVL dialects share.
#pragma once

#include <string>
#include <vector>

#include "metadata/PvlText.h"

namespace SatCommonUtils {

/// Recognises one `NAME = value;` statement at `*pos`.
///
/// `*pos` goes to the first character that is no white space. True, and `*pos` is behind the ';',
/// when a name of ASCII letters, digits and '_' (it may be empty), a '=' and a ';' outside quotes
/// follow. `*value` is what lies between, not trimmed: quotes are dropped, a backslash is kept
/// before any character but a double quote, which it makes part of the value, and a run of
/// backslashes leaves at most one. The '=' need not be on the same line; a value may run over many.
bool variable_detected(TPvlText& text, std::size_t* pos, std::string* name, std::string* value);

/// Splits a list in round brackets into its trimmed items; a list inside it stays one item with its
/// brackets. What stands before the opening bracket belongs to the first item, what follows the
/// closing one is ignored. False, with `*items` of no use, when the list is not there or not
/// closed.
bool unpack_array(const std::string& value, std::vector<std::string>* items);

}  // namespace SatCommonUtils
