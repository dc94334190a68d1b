// Reads any bytes as the text of a tree, copies the tree and takes it through both forms.
#include <cstring>
#include <memory>
#include <stdexcept>
#include <string>

#include "fuzz/TreeForms.h"

namespace {

using SatCommonUtils::TStringTree;

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
  TStringTree tree(0, 0, nullptr, "");
  std::size_t position = 0;
  try {
    tree.ReadFromString(text.get(), &position, nullptr);
  } catch (const std::length_error&) {
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
