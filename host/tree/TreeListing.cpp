#include "host/tree/TreeListing.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <vector>

#include "Kv/Text.h"
#include "host/HostError.h"

namespace ravelin {
namespace {

using Json = nlohmann::ordered_json;
using TTree = SatCommonUtils::TDataTree<std::string>;
using TField = SatCommonUtils::TDataField<std::string>;

constexpr int kDeepestJson = 1000;

std::string Quoted(const std::string& text) {
  std::string quoted(1, '"');
  for (const char c : Printable(text)) {
    if (c == '"') quoted += '\\';
    quoted += c;
  }
  quoted += '"';
  return quoted;
}

std::string Label(int tag, int idx, const std::string& header) {
  const std::string keys = TreeKeys(tag, idx);
  return header.empty() ? keys : keys + " " + Printable(header);
}

std::string Indentation(std::size_t depth) {
  constexpr std::size_t kMost = 32;
  return std::string(2 * std::min(depth, kMost), ' ');
}

void ListField(const TField& field, std::size_t depth, std::string* text) {
  *text += Indentation(depth) + Label(field.tag, field.idx, field.header) + " =";
  for (std::size_t i = 0; i < field.count; ++i) text->append(" ").append(Quoted(field.values[i]));
  *text += "\n";
}

Json Text(const std::string& bytes) {
  return KvAnsiToChar(bytes, kvEncodingUtf8);
}

Json FieldJson(const TField& field) {
  Json json = {{"tag", field.tag}, {"idx", field.idx}, {"header", Text(field.header)}};
  json["values"] = Json::array();
  for (std::size_t i = 0; i < field.count; ++i) json["values"].push_back(Text(field.values[i]));
  return json;
}

Json NodeJson(const TTree& tree, int depth, const std::string& file) {
  if (depth > kDeepestJson) {
    throw HostError(file, "trees lie more than " + std::to_string(kDeepestJson) + " deep",
                    "list it without --json");
  }
  Json json = {{"tag", tree.tag}, {"idx", tree.idx}, {"header", Text(tree.header)}};
  json["fields"] = Json::array();
  for (const TField* field : tree.fields) json["fields"].push_back(FieldJson(*field));
  json["subtrees"] = Json::array();
  for (const TTree* subtree : tree.subtrees) {
    json["subtrees"].push_back(NodeJson(*subtree, depth + 1, file));
  }
  return json;
}

}  // namespace

std::string TreeKeys(int tag, int idx) {
  std::string text("(");
  return text.append(std::to_string(tag)).append(",").append(std::to_string(idx)).append(")");
}

std::string TreeListing(const SatCommonUtils::TStringTree& root) {
  struct Open {
    const TTree* tree;
    std::size_t depth;
  };
  std::string text;
  std::vector<Open> open = {{&root, 0}};
  while (!open.empty()) {
    const auto [tree, depth] = open.back();
    open.pop_back();
    text += Indentation(depth) + Label(tree->tag, tree->idx, tree->header) + "\n";
    for (const TField* field : tree->fields) ListField(*field, depth + 1, &text);
    for (std::size_t i = tree->subtrees.size(); i > 0; --i) {
      open.push_back({tree->subtrees[i - 1], depth + 1});
    }
  }
  return text;
}

std::string TreeJson(const SatCommonUtils::TStringTree& tree, const std::string& file) {
  return NodeJson(tree, 0, file).dump(2) + "\n";
}

}  // namespace ravelin
