// Reads, writes and copies a tree of 100,000 fields, beside the least that passing over the text
// costs, and pugixml's and libxml2's parse of the same document.
#include <benchmark/benchmark.h>

#include <libxml/parser.h>

#include <memory>
#include <pugixml.hpp>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "SatCommonUtils/Tree.h"
#include "bench/support/Floor.h"
#include "bench/support/Size.h"

namespace RavelinBench {
namespace {

using namespace SatCommonUtils;
using StreamPointer = var_a_legacy::var_a<TKvStream*>;

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

void Read(const std::string& text, TStringTree* tree) {
  tree->ReadFromString(text.c_str(), nullptr, nullptr);
}

void WriteXml(const TStringTree& tree, const StreamPointer& stream) {
  TKvXIniStreamWriter writer(stream, 0, TKvXIniStreamWriter::htDocument);
  if (!tree.WriteToXML(&writer) || !writer.Close()) throw std::runtime_error("the writer failed");
}

std::string MakeXml(long count) {
  TStringTree tree(0, 0, nullptr, "");
  Read(MakeText(count), &tree);
  auto* const bytes = new TKvMemoryStream;
  const StreamPointer stream(bytes);
  WriteXml(tree, stream);
  return bytes->Bytes();
}

void SetSpeed(benchmark::State& state, const std::string& text) {
  state.SetBytesProcessed(state.iterations() * static_cast<long>(text.size()));
}

/// Reading and destroying what was read.
void TextRead(benchmark::State& state, long count) {
  const std::string text = MakeText(count);
  for (auto unused : state) {
    TStringTree tree(0, 0, nullptr, "");
    Read(text, &tree);
    if (static_cast<long>(tree.fields.size()) != count) {
      throw std::runtime_error("fields are missing");
    }
  }
  SetSpeed(state, text);
}

/// Finds the lines and copies each.
void LinesFloor(benchmark::State& state, std::string (*make)(long), long count) {
  const std::string text = make(count);
  std::string copy(text.size(), '\0');
  for (auto unused : state) CopyLines(text, &copy);
  if (copy != text) throw std::runtime_error("the copy is another text");
  SetSpeed(state, text);
}

void TextWrite(benchmark::State& state, long count) {
  const std::string text = MakeText(count);
  TStringTree tree(0, 0, nullptr, "");
  Read(text, &tree);
  if (WriteTreeToString(tree) != text) throw std::runtime_error("the text is another");
  for (auto unused : state) benchmark::DoNotOptimize(WriteTreeToString(tree));
  SetSpeed(state, text);
}

void XmlWrite(benchmark::State& state, long count) {
  TStringTree tree(0, 0, nullptr, "");
  Read(MakeText(count), &tree);
  for (auto unused : state) WriteXml(tree, StreamPointer(new TKvMemoryStream));
  state.SetItemsProcessed(state.iterations() * count);
}

/// Appends the pieces of the document, to a string and from there to a stream.
void XmlWriteFloor(benchmark::State& state, long count) {
  const std::string xml = MakeXml(count);
  const std::vector<std::string_view> pieces = Pieces(xml);
  for (auto unused : state) {
    const std::string out = Joined(pieces);
    TKvMemoryStream stream;
    stream.Write(out.data(), out.size());
  }
  state.SetItemsProcessed(state.iterations() * count);
}

/// Parsing the document, reading the tree, destroying both.
void XmlRead(benchmark::State& state, long count) {
  const std::string xml = MakeXml(count);
  const StreamPointer stream(new TKvMemoryStream(xml));
  for (auto unused : state) {
    TKvXIniReader reader(stream);
    TStringTree tree(0, 0, nullptr, "");
    if (!tree.ReadFromXML(&reader, 0, nullptr)) throw std::runtime_error("the tree is not read");
    if (static_cast<long>(tree.fields.size()) != count) {
      throw std::runtime_error("fields are missing");
    }
  }
  SetSpeed(state, xml);
}

/// The framework's part of it.
void XmlParse(benchmark::State& state, long count) {
  const std::string xml = MakeXml(count);
  const StreamPointer stream(new TKvMemoryStream(xml));
  for (auto unused : state) benchmark::DoNotOptimize(TKvXIniReader(stream).GetItemCount());
  SetSpeed(state, xml);
}

void XmlParsePugixml(benchmark::State& state, long count) {
  const std::string xml = MakeXml(count);
  for (auto unused : state) {
    pugi::xml_document document;
    if (!document.load_buffer(xml.data(), xml.size())) throw std::runtime_error("not parsed");
  }
  SetSpeed(state, xml);
}

void XmlParseLibxml2(benchmark::State& state, long count) {
  const std::string xml = MakeXml(count);
  for (auto unused : state) {
    const std::unique_ptr<xmlDoc, decltype(&xmlFreeDoc)> document(
        xmlReadMemory(xml.data(), static_cast<int>(xml.size()), "", nullptr, XML_PARSE_HUGE),
        &xmlFreeDoc);
    if (document == nullptr) throw std::runtime_error("not parsed");
  }
  SetSpeed(state, xml);
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

template <class... Arguments>
void Register(const char* name, Arguments... arguments) {
  benchmark::RegisterBenchmark(name, arguments...)->Unit(benchmark::kMillisecond);
}

const bool registered = [] {
  const long count = Sized(100000);
  Register("tree_text_read/ours", TextRead, count);
  Register("tree_text_read/floor", LinesFloor, MakeText, count);
  Register("tree_text_read/4x", TextRead, kGrowth * count);
  Register("tree_text_write/ours", TextWrite, count);
  Register("tree_text_write/floor", LinesFloor, MakeText, count);
  Register("tree_text_write/4x", TextWrite, kGrowth * count);
  Register("tree_xml_write/ours", XmlWrite, count);
  Register("tree_xml_write/floor", XmlWriteFloor, count);
  Register("tree_xml_write/4x", XmlWrite, kGrowth * count);
  Register("tree_xml_read/ours", XmlRead, count);
  Register("tree_xml_read/peer:pugixml", XmlParsePugixml, count);
  Register("tree_xml_read/peer:libxml2", XmlParseLibxml2, count);
  Register("tree_xml_read/floor", LinesFloor, MakeXml, count);
  Register("tree_xml_read/4x", XmlRead, kGrowth * count);
  Register("tree_xml_parse/ours", XmlParse, count);
  return true;
}();

BENCHMARK(Copy)->Name("copy")->Arg(1000)->Arg(10000)->Arg(100000);
BENCHMARK(Insert)->Name("insert")->Arg(1000)->Arg(10000);

}  // namespace
}  // namespace RavelinBench
