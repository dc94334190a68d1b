// Reads any bytes as the XML of a tree; what was read, wholly or not, is written and read again.
#include <string>

#include "fuzz/TreeForms.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string xml(reinterpret_cast<const char*>(data), size);
  SatCommonUtils::TStringTree tree(0, 0, nullptr, "");
  try {
    ReadTreeXml(xml, &tree);
  } catch (const TKvError&) {
    return 0;
  }
  RequireXmlRoundTrip(tree);
  return 0;
}
