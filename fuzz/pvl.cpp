// Converts any bytes as PVL, as the plain model does.
#include "fuzz/Pvl.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  ConvertPvlText(metadata_test::Dialect::kGeneral,
                 std::string(reinterpret_cast<const char*>(data), size));
  return 0;
}
