// Reads any bytes as the XML of a tree, as the plain model does; what was read, wholly or not, is
// written and read again.
#include <string>

#include "fuzz/TreeForms.h"
#include "tree/TreeModel.h"

namespace {

/// The longest document that is read by the model too, which recurses.
constexpr std::size_t kLongestForModel = 1 << 16;

void CompareWithTheModel(const std::string& xml, bool isRead,
                         const SatCommonUtils::TStringTree& tree) {
  TKvXIniReader reader(StreamPointer(new TKvMemoryStream(xml)));
  bool isReadByModel = false;
  const tree_model::ModelTree expected = tree_model::ReadXml(&reader, &isReadByModel);
  Require(isRead == isReadByModel, "a document is read when the model reads it");
  Require(tree_test::Describe(tree) == tree_model::Describe(expected), "the tree is the model's");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string xml(reinterpret_cast<const char*>(data), size);
  SatCommonUtils::TStringTree tree(0, 0, nullptr, "");
  try {
    const bool isRead = ReadTreeXml(xml, &tree);
    if (size <= kLongestForModel) CompareWithTheModel(xml, isRead, tree);
  } catch (const TKvError&) {
    return 0;
  }
  RequireXmlRoundTrip(tree);
  return 0;
}
