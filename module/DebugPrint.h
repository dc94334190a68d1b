// The module's own debug print.
#pragma once

namespace SatCommonUtils {

/// Prints one line to the framework's debug sink. A null text throws std::logic_error
/// "basic_string::_M_construct null not valid".
void KvPrintDbgMsg(const char* text);

}  // namespace SatCommonUtils
