// Reads any bytes as the text of a tree, as the plain model does, copies the tree and takes it
// through both forms.
#include <cstring>
#include <memory>
#include <stdexcept>
#include <string>

#include "fuzz/TreeForms.h"
#include "tree/TreeModel.h"

namespace {

using SatCommonUtils::TStringTree;

/// The longest text that is read by the model too, which takes quadratic time.
constexpr std::size_t kLongestForModel = 4096;

/// What the model reads, and where it ends; empty for a count that lies.
std::string ReadByModel(const std::string& text) {
  tree_model::ModelTextReader reader(text);
  try {
    const tree_model::ModelTree tree = reader.Read();
    return tree_model::Describe(tree) + std::to_string(reader.Position());
  } catch (const std::length_error&) {
    return "";
  }
}

/// In memory of exactly the text's size, so that a sanitizer sees what goes beyond.
std::unique_ptr<char[]> Exactly(const std::uint8_t* data, std::size_t size) {
  std::unique_ptr<char[]> text(new char[size + 1]);
  if (size != 0) std::memcpy(text.get(), data, size);
  text[size] = '\0';
  return text;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::unique_ptr<char[]> text = Exactly(data, size);
  const bool isForModel = size <= kLongestForModel;
  const std::string expected = isForModel ? ReadByModel(text.get()) : "";
  TStringTree tree(0, 0, nullptr, "");
  std::size_t position = 0;
  try {
    tree.ReadFromString(text.get(), &position, nullptr);
    Require(!isForModel || tree_test::Describe(tree) + std::to_string(position) == expected,
            "the tree is the model's");
  } catch (const std::length_error&) {
    Require(expected.empty(), "a count lies to the model too");
    TStringTree other(0, 0, nullptr, "");
    Require(!SatCommonUtils::InsertFromString(text.get(), &other), "a lying count gives false");
    return 0;
  }
  Require(position <= std::strlen(text.get()), "reading does not pass the end");
  TStringTree copy(tree.tag, tree.idx, nullptr, tree.header);
  if (tree.CopyTo(&copy)) {
    Require(WriteTreeToString(copy) == WriteTreeToString(tree), "a copy is the same");
  }
  RequireXmlRoundTrip(tree);
  return 0;
}
