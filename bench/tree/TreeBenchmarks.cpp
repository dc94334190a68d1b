// Reads, writes and copies a tree of 100,000 fields, beside the least that passing over the text
// costs, and pugixml's parse of the same document.
#include <benchmark/benchmark.h>

#include <cstring>
#include <pugixml.hpp>
#include <stdexcept>
#include <string>

#include "SatCommonUtils/Tree.h"

namespace {

using namespace SatCommonUtils;
using StreamPointer = var_a_legacy::var_a<TKvStream*>;

constexpr int kFields = 100000;

/// As if read from text: inserting them would compare each with all before it.
std::string MakeText(long count) {
  std::string text = "(1,0)Product\n";
  for (long i = 0; i < count; ++i) {
    const std::string number = std::to_string(i);
    text.append("(").append(number).append(",0)[1]Parameter ").append(number);
    text.append("\tvalue of ").append(std::to_string(7 * i)).append("\n");
  }
  return text + "\n";
}

const std::string& Text() {
  static const std::string text = MakeText(kFields);
  return text;
}

void Read(const std::string& text, TStringTree* tree) {
  tree->ReadFromString(text.c_str(), nullptr, nullptr);
}

std::string MakeXml() {
  TStringTree tree(0, 0, nullptr, "");
  Read(Text(), &tree);
  auto* const bytes = new TKvMemoryStream;
  TKvXIniStreamWriter writer(StreamPointer(bytes), 0, TKvXIniStreamWriter::htDocument);
  if (!tree.WriteToXML(&writer) || !writer.Close()) throw std::runtime_error("the writer failed");
  return bytes->Bytes();
}

const std::string& Xml() {
  static const std::string xml = MakeXml();
  return xml;
}

void SetSpeed(benchmark::State& state, const std::string& text) {
  state.SetBytesProcessed(state.iterations() * static_cast<long>(text.size()));
}

/// Reading and destroying what was read.
void TextRead(benchmark::State& state) {
  for (auto unused : state) {
    TStringTree tree(0, 0, nullptr, "");
    Read(Text(), &tree);
    if (tree.fields.size() != kFields) throw std::runtime_error("fields are missing");
  }
  SetSpeed(state, Text());
}

/// Finds the lines and copies each.
void TextFloor(benchmark::State& state) {
  std::string copy(Text().size(), '\0');
  for (auto unused : state) {
    const char* line = Text().data();
    const char* const end = line + Text().size();
    char* to = copy.data();
    while (line != end) {
      const void* const feed = std::memchr(line, '\n', static_cast<std::size_t>(end - line));
      const auto length = static_cast<std::size_t>(static_cast<const char*>(feed) + 1 - line);
      std::memcpy(to, line, length);
      to += length;
      line += length;
    }
    benchmark::DoNotOptimize(copy.data());
  }
  if (copy != Text()) throw std::runtime_error("the copy is another text");
  SetSpeed(state, Text());
}

void TextWrite(benchmark::State& state) {
  TStringTree tree(0, 0, nullptr, "");
  Read(Text(), &tree);
  if (WriteTreeToString(tree) != Text()) throw std::runtime_error("the text is another");
  for (auto unused : state) benchmark::DoNotOptimize(WriteTreeToString(tree));
  SetSpeed(state, Text());
}

void XmlWrite(benchmark::State& state) {
  TStringTree tree(0, 0, nullptr, "");
  Read(Text(), &tree);
  for (auto unused : state) {
    TKvXIniStreamWriter writer(StreamPointer(new TKvMemoryStream), 0,
                               TKvXIniStreamWriter::htDocument);
    if (!tree.WriteToXML(&writer) || !writer.Close()) throw std::runtime_error("not written");
  }
  SetSpeed(state, Xml());
}

/// Parsing the document, reading the tree, destroying both.
void XmlRead(benchmark::State& state) {
  const StreamPointer stream(new TKvMemoryStream(Xml()));
  for (auto unused : state) {
    TKvXIniReader reader(stream);
    TStringTree tree(0, 0, nullptr, "");
    if (!tree.ReadFromXML(&reader, 0, nullptr)) throw std::runtime_error("the tree is not read");
    if (tree.fields.size() != kFields) throw std::runtime_error("fields are missing");
  }
  SetSpeed(state, Xml());
}

/// The framework's part of it.
void XmlParseRavelin(benchmark::State& state) {
  const StreamPointer stream(new TKvMemoryStream(Xml()));
  for (auto unused : state) benchmark::DoNotOptimize(TKvXIniReader(stream).GetItemCount());
  SetSpeed(state, Xml());
}

void XmlParsePugixml(benchmark::State& state) {
  for (auto unused : state) {
    pugi::xml_document document;
    if (!document.load_buffer(Xml().data(), Xml().size())) throw std::runtime_error("not parsed");
  }
  SetSpeed(state, Xml());
}

void Copy(benchmark::State& state) {
  TStringTree source(0, 0, nullptr, "");
  Read(MakeText(state.range(0)), &source);
  for (auto unused : state) {
    TStringTree destination(0, 0, nullptr, "");
    if (!source.CopyTo(&destination)) throw std::runtime_error("not copied");
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

/// One by one, each compared with all before it.
void Insert(benchmark::State& state) {
  const std::string value = "value";
  for (auto unused : state) {
    TStringTree tree(0, 0, nullptr, "");
    for (int i = 0; i < state.range(0); ++i) tree.InsertString("Parameter", i, 0, value);
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

BENCHMARK(TextRead)->Name("text_read/ravelin");
BENCHMARK(TextFloor)->Name("text_read/floor");
BENCHMARK(TextWrite)->Name("text_write/ravelin");
BENCHMARK(XmlWrite)->Name("xml_write/ravelin");
BENCHMARK(XmlRead)->Name("xml_read/ravelin");
BENCHMARK(XmlParseRavelin)->Name("xml_parse/ravelin");
BENCHMARK(XmlParsePugixml)->Name("xml_parse/pugixml");
BENCHMARK(Copy)->Name("copy/ravelin")->Arg(1000)->Arg(10000)->Arg(100000);
BENCHMARK(Insert)->Name("insert/ravelin")->Arg(1000)->Arg(10000);

}  // namespace
