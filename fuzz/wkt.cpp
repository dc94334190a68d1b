// Converts any bytes as WKT, as the plain model does: only an empty text fails, and it leaves the
// result alone.
#include <string>

#include "SatCommonUtils/Metadata.h"
#include "fuzz/FuzzInput.h"
#include "metadata/WktModel.h"

namespace {

/// The longest text that is converted by the model too, which takes cubic time.
constexpr std::size_t kLongestForModel = 600;

void CompareWithTheModel(const std::string& text, bool converted, const std::string& xml) {
  std::string expected = "as it was";
  Require(wkt_model::Document(text, &expected) == converted, "a text fails as the model's does");
  Require(xml == expected, "the XML is the model's");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string declaration = "<?xml version=\"1.0\" encoding=\"utf-8\"?>\r\n";
  const std::string text(reinterpret_cast<const char*>(data), size);
  std::string xml = "as it was";
  const bool converted = SatCommonUtils::WktSectionToXml(text, &xml);
  Require(converted == !text.empty(), "only an empty text fails");
  if (size <= kLongestForModel) CompareWithTheModel(text, converted, xml);
  if (!converted) {
    Require(xml == "as it was", "a failure leaves the result alone");
    return 0;
  }
  Require(xml.compare(0, declaration.size(), declaration) == 0, "the XML begins as a document");
  Require(xml.compare(xml.size() - 2, 2, "\r\n") == 0, "the XML ends with a line end");
  if (text.find_first_of("[]") == std::string::npos && text.find(',') == std::string::npos) {
    Require(xml == declaration, "without a bracket or comma there is nothing to write");
  }
  return 0;
}
