// Writes and reads XML-ini, beside documents of pugixml and libxml2 built and saved, and parsed.
#include <benchmark/benchmark.h>
#include <libxml/parser.h>
#include <libxml/tree.h>

#include <memory>
#include <pugixml.hpp>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "Kv/XIni.h"
#include "bench/support/Floor.h"
#include "bench/support/Size.h"

namespace RavelinBench {
namespace {

using StreamPointer = var_a_legacy::var_a<TKvStream*>;
using TXmlDocument = std::unique_ptr<xmlDoc, decltype(&xmlFreeDoc)>;

struct TItem {
  std::string name;
  std::string value;
};
using TItems = std::vector<TItem>;

TItems MakeItems(int count) {
  TItems items;
  for (int i = 0; i < count; ++i) {
    items.push_back({"item" + std::to_string(i), "value of " + std::to_string(7 * i)});
  }
  return items;
}

const xmlChar* Xml(const std::string& text) {
  return reinterpret_cast<const xmlChar*>(text.c_str());
}

/// pugixml's output to a framework stream.
class StreamSink : public pugi::xml_writer {
 public:
  explicit StreamSink(TKvStream* stream) : stream_(stream) {}
  void write(const void* data, std::size_t size) override { stream_->Write(data, size); }

 private:
  TKvStream* stream_;
};

void Write(const TItems& items, const StreamPointer& stream) {
  TKvXIniStreamWriter writer(stream, 0, TKvXIniStreamWriter::htDocument);
  for (const TItem& item : items) writer.WriteS<std::string>(item.name, item.value);
  if (!writer.Close()) throw std::runtime_error("the writer failed");
}

void WriteWithPugixml(const TItems& items, const StreamPointer& stream) {
  pugi::xml_document document;
  pugi::xml_node root = document.append_child("xini");
  for (const TItem& item : items) {
    root.append_child(item.name.c_str()).text().set(item.value.c_str());
  }
  StreamSink sink(stream.get());
  document.save(sink, "\t");
}

void WriteWithLibxml2(const TItems& items, const StreamPointer& stream) {
  const TXmlDocument document(xmlNewDoc(Xml("1.0")), &xmlFreeDoc);
  xmlNode* const root = xmlNewNode(nullptr, Xml("xini"));
  xmlDocSetRootElement(document.get(), root);
  for (const TItem& item : items) xmlNewTextChild(root, nullptr, Xml(item.name), Xml(item.value));
  xmlChar* bytes = nullptr;
  int size = 0;
  xmlDocDumpFormatMemory(document.get(), &bytes, &size, 1);
  const std::unique_ptr<xmlChar, decltype(xmlFree)> owner(bytes, xmlFree);
  stream->Write(bytes, static_cast<unsigned long>(size));
}

std::string Document(int count) {
  auto* const bytes = new TKvMemoryStream;
  const StreamPointer stream(bytes);
  Write(MakeItems(count), stream);
  return bytes->Bytes();
}

void BenchWrite(benchmark::State& state, void (*write)(const TItems&, const StreamPointer&),
                int count) {
  const TItems items = MakeItems(count);
  for (auto unused : state) write(items, StreamPointer(new TKvMemoryStream));
  state.SetItemsProcessed(state.iterations() * count);
}

/// Appends the pieces of the document.
void BenchWriteFloor(benchmark::State& state, int count) {
  const std::string document = Document(count);
  const std::vector<std::string_view> pieces = Pieces(document);
  for (auto unused : state) {
    const std::string out = Joined(pieces);
    TKvMemoryStream stream;
    stream.Write(out.data(), out.size());
  }
  state.SetItemsProcessed(state.iterations() * count);
}

void Parse(const std::string& document) {
  const TKvXIniReader reader(StreamPointer(new TKvMemoryStream(document)));
  benchmark::DoNotOptimize(&reader);
}

void ParseWithPugixml(const std::string& bytes) {
  pugi::xml_document document;
  if (!document.load_buffer(bytes.data(), bytes.size())) throw std::runtime_error("not parsed");
}

TXmlDocument Parsed(const std::string& bytes) {
  TXmlDocument document(
      xmlReadMemory(bytes.data(), static_cast<int>(bytes.size()), "", nullptr, XML_PARSE_HUGE),
      &xmlFreeDoc);
  if (document == nullptr) throw std::runtime_error("not parsed");
  return document;
}

void ParseWithLibxml2(const std::string& bytes) {
  Parsed(bytes);
}

void ReadValues(const std::string& document) {
  const TKvXIniReader reader(StreamPointer(new TKvMemoryStream(document)));
  for (unsigned long i = 0; reader.HasItem(i); ++i) {
    benchmark::DoNotOptimize(reader.ReadE<std::string>(i).size());
  }
}

void ReadValuesWithPugixml(const std::string& bytes) {
  pugi::xml_document document;
  document.load_buffer(bytes.data(), bytes.size());
  for (const pugi::xml_node item : document.first_child()) {
    benchmark::DoNotOptimize(std::string(item.child_value()).size());
  }
}

void ReadValuesWithLibxml2(const std::string& bytes) {
  const TXmlDocument document = Parsed(bytes);
  for (xmlNode* item = xmlDocGetRootElement(document.get())->children; item != nullptr;
       item = item->next) {
    if (item->type != XML_ELEMENT_NODE) continue;
    const std::unique_ptr<xmlChar, decltype(xmlFree)> value(xmlNodeGetContent(item), xmlFree);
    benchmark::DoNotOptimize(std::string(reinterpret_cast<const char*>(value.get())).size());
  }
}

/// Finds the lines of the document and copies them.
void ReadFloor(const std::string& document) {
  std::string copy(document.size(), '\0');
  CopyLines(document, &copy);
}

void BenchRead(benchmark::State& state, void (*read)(const std::string&), int count) {
  const std::string document = Document(count);
  for (auto unused : state) read(document);
  state.SetBytesProcessed(state.iterations() * static_cast<long>(document.size()));
}

template <class... Arguments>
void Register(const char* name, Arguments... arguments) {
  benchmark::RegisterBenchmark(name, arguments...)->Unit(benchmark::kMillisecond);
}

const bool registered = [] {
  const int count = Sized(100000);
  Register("xini_write/ours", BenchWrite, Write, count);
  Register("xini_write/peer:pugixml", BenchWrite, WriteWithPugixml, count);
  Register("xini_write/peer:libxml2", BenchWrite, WriteWithLibxml2, count);
  Register("xini_write/floor", BenchWriteFloor, count);
  Register("xini_write/4x", BenchWrite, Write, kGrowth * count);
  Register("xini_parse/ours", BenchRead, Parse, count);
  Register("xini_parse/peer:pugixml", BenchRead, ParseWithPugixml, count);
  Register("xini_parse/peer:libxml2", BenchRead, ParseWithLibxml2, count);
  Register("xini_parse/floor", BenchRead, ReadFloor, count);
  Register("xini_parse/4x", BenchRead, Parse, kGrowth * count);
  Register("xini_values/ours", BenchRead, ReadValues, count);
  Register("xini_values/peer:pugixml", BenchRead, ReadValuesWithPugixml, count);
  Register("xini_values/peer:libxml2", BenchRead, ReadValuesWithLibxml2, count);
  Register("xini_values/floor", BenchRead, ReadFloor, count);
  Register("xini_values/4x", BenchRead, ReadValues, kGrowth * count);
  return true;
}();

}  // namespace
}  // namespace RavelinBench
