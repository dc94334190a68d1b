// What the fuzz targets of data trees share.
#pragma once

#include <string>

#include "SatCommonUtils/Tree.h"
#include "fuzz/FuzzInput.h"

using StreamPointer = var_a_legacy::var_a<TKvStream*>;

/// Reads the tree of a document's root element.
inline bool ReadTreeXml(const std::string& xml, SatCommonUtils::TStringTree* tree) {
  TKvXIniReader reader(StreamPointer(new TKvMemoryStream(xml)));
  return tree->ReadFromXML(&reader, 0, nullptr);
}

/// Writes a tree as XML, reads that back and requires the same tree: the same text shows it.
inline void RequireXmlRoundTrip(const SatCommonUtils::TStringTree& tree) {
  auto* const bytes = new TKvMemoryStream;
  TKvXIniStreamWriter writer(StreamPointer(bytes), 0, TKvXIniStreamWriter::htDocument);
  Require(tree.WriteToXML(&writer), "a tree is written as XML");
  Require(writer.Close(), "memory takes every byte");
  SatCommonUtils::TStringTree read(0, 0, nullptr, "");
  Require(ReadTreeXml(bytes->Bytes(), &read), "what was written as XML is read");
  Require(WriteTreeToString(read) == WriteTreeToString(tree), "XML gives the same tree");
}
