// Converts any bytes as NASA PVL, as the plain model does.
#include "fuzz/Pvl.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  ConvertPvlText(metadata_test::Dialect::kNasa,
                 std::string(reinterpret_cast<const char*>(data), size));
  return 0;
}
