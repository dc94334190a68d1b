#include "host/tree/TreeConversion.h"

#include <algorithm>
#include <cstddef>
#include <new>
#include <vector>

#include "Kv/XIni.h"
#include "SatCommonUtils/Text.h"
#include "host/HostError.h"
#include "host/tree/TreeListing.h"
#include "host/tree/TreeTextCheck.h"
#include "host/tree/TreeXmlCheck.h"

namespace ravelin {
namespace {

using namespace SatCommonUtils;
using StreamPointer = var_a_legacy::var_a<TKvStream*>;
using TTree = TDataTree<std::string>;
using TField = TDataField<std::string>;

bool SurvivesEscapes(const std::string& text) {
  std::string line;
  Encode(text, &line);
  std::string back;
  Decode(line, &back);
  return back == text && text.find('\0') == std::string::npos;
}

/// What text cannot carry of a field; empty when it carries all.
std::string LossOf(const TField& field) {
  if (field.tag < 0 || field.idx < 0) return "its tag or index is negative";
  if (field.count == 0) return "it has no values";
  for (std::size_t i = 0; i < field.count; ++i) {
    if (!SurvivesEscapes(field.values[i])) return "a value has a NUL or a backslash of an escape";
  }
  return SurvivesEscapes(field.header) ? "" : "its header has a NUL or a backslash of an escape";
}

void CheckFields(const TTree& tree, const std::string& file) {
  for (const TField* field : tree.fields) {
    const std::string loss = LossOf(*field);
    if (loss.empty()) continue;
    throw HostError(file,
                    "text cannot carry the field " + TreeKeys(field->tag, field->idx) +
                        " of the tree " + TreeKeys(tree.tag, tree.idx) + ": " + loss,
                    "keep the XML or change that field");
  }
}

void CheckHeader(const TTree& tree, const std::string& file) {
  if (tree.header.find('\n') == std::string::npos && tree.header.find('\0') == std::string::npos) {
    return;
  }
  throw HostError(file,
                  "text cannot carry the tree " + TreeKeys(tree.tag, tree.idx) +
                      ": its header has a NUL or a line feed",
                  "keep the XML or change that header");
}

/// Tag, idx and so on of every tree, without recursion: files may be nested deeply.
void CheckFitsText(const TTree& root, const std::string& file) {
  std::vector<const TTree*> open = {&root};
  while (!open.empty()) {
    const TTree& tree = *open.back();
    open.pop_back();
    CheckHeader(tree, file);
    CheckFields(tree, file);
    open.insert(open.end(), tree.subtrees.begin(), tree.subtrees.end());
  }
}

void EnterSection(TKvXIniReader* reader, const std::string& section, const std::string& file) {
  if (section.empty()) return;
  try {
    reader->EnterSectionSE(section);
  } catch (const TKvError&) {
    throw HostError(file, "there is no section '" + section + "'",
                    "name the section that holds the tree with --section");
  }
}

}  // namespace

bool IsTreeText(const std::string& text) {
  const std::size_t tabs = std::min(text.find_first_not_of('\t'), text.size());
  return text.compare(tabs, 1, "(") == 0;
}

void ReadTreeText(const std::string& text, const std::string& file, TStringTree* tree) {
  CheckTreeText(text, file);
  tree->ReadFromString(text.c_str(), nullptr, nullptr);
}

void ReadTreeXml(const std::string& xml, const std::string& section, const std::string& file,
                 TStringTree* tree) {
  try {
    TKvXIniReader reader(StreamPointer(new TKvMemoryStream(xml)));
    EnterSection(&reader, section, file);
    const TreeExtent extent = CheckTreeXml(&reader, file);
    // Only memory can fail behind the check, also for a part of the tree, which then is shorter.
    if (!tree->ReadFromXML(&reader, 0, nullptr) || ExtentOf(*tree) != extent) {
      throw std::bad_alloc();
    }
  } catch (const TKvError& error) {
    throw HostError(file, error.what(), "give a file of XML-ini");
  }
}

std::string TreeText(const TStringTree& tree, const std::string& file) {
  CheckFitsText(tree, file);
  return WriteTreeToString(tree);
}

std::string TreeXml(const TStringTree& tree, const std::string& section) {
  auto* const bytes = new TKvMemoryStream;
  TKvXIniStreamWriter writer(StreamPointer(bytes), 0, TKvXIniStreamWriter::htDocument);
  // A stream in memory fails for want of memory alone.
  const bool begun = section.empty() || writer.BeginSectionS(section) != 0;
  if (!begun || !tree.WriteToXML(&writer) || !writer.Close()) throw std::bad_alloc();
  return bytes->Bytes();
}

}  // namespace ravelin
