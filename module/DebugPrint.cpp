#include "module/DebugPrint.h"

#include "Kv/Services.h"
#include "module/NullText.h"

namespace SatCommonUtils {

void KvPrintDbgMsg(const char* text) {
  ::KvPrintDbgMsg(TextOrThrow(text));
}

}  // namespace SatCommonUtils
