// Converts any bytes as NASA PVL.
#include "fuzz/Pvl.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  ConvertPvlText(SatCommonUtils::NASA_PVLtoXML,
                 std::string(reinterpret_cast<const char*>(data), size));
  return 0;
}
