// Writes and reads XML-ini of 100,000 items, beside a pugixml document built and saved, and parsed.
#include <benchmark/benchmark.h>

#include <pugixml.hpp>
#include <stdexcept>
#include <string>
#include <vector>

#include "Kv/XIni.h"

namespace {

using StreamPointer = var_a_legacy::var_a<TKvStream*>;

struct Items {
  static constexpr int kCount = 100000;

  Items() {
    for (int i = 0; i < kCount; ++i) {
      names.push_back("item" + std::to_string(i));
      values.push_back("value of " + std::to_string(7 * i));
    }
  }

  std::vector<std::string> names;
  std::vector<std::string> values;
};

const Items& TheItems() {
  static const Items items;
  return items;
}

/// pugixml's output to a framework stream.
class StreamSink : public pugi::xml_writer {
 public:
  explicit StreamSink(TKvStream* stream) : stream_(stream) {}
  void write(const void* data, std::size_t size) override { stream_->Write(data, size); }

 private:
  TKvStream* stream_;
};

void WriteWithRavelin(const StreamPointer& stream) {
  TKvXIniStreamWriter writer(stream, 0, TKvXIniStreamWriter::htDocument);
  for (int i = 0; i < Items::kCount; ++i) {
    const auto k = static_cast<std::size_t>(i);
    writer.WriteS<std::string>(TheItems().names[k], TheItems().values[k]);
  }
  if (!writer.Close()) throw std::runtime_error("the writer failed");
}

void WriteWithPugixml(const StreamPointer& stream) {
  pugi::xml_document document;
  pugi::xml_node root = document.append_child("xini");
  for (int i = 0; i < Items::kCount; ++i) {
    const auto k = static_cast<std::size_t>(i);
    root.append_child(TheItems().names[k].c_str()).text().set(TheItems().values[k].c_str());
  }
  StreamSink sink(stream.get());
  document.save(sink, "\t");
}

const std::string& TheDocument() {
  static const std::string document = [] {
    auto* bytes = new TKvMemoryStream;
    const StreamPointer stream(bytes);
    WriteWithRavelin(stream);
    return bytes->Bytes();
  }();
  return document;
}

template <class Write>
void BenchWrite(benchmark::State& state, Write write) {
  for (auto unused : state) write(StreamPointer(new TKvMemoryStream));
  state.SetItemsProcessed(state.iterations() * Items::kCount);
}

void BenchReadRavelin(benchmark::State& state) {
  const StreamPointer stream(new TKvMemoryStream(TheDocument()));
  for (auto unused : state) {
    const TKvXIniReader reader(stream);
    benchmark::DoNotOptimize(&reader);
  }
  state.SetBytesProcessed(state.iterations() * static_cast<long>(TheDocument().size()));
}

void BenchReadPugixml(benchmark::State& state) {
  for (auto unused : state) {
    pugi::xml_document document;
    document.load_buffer(TheDocument().data(), TheDocument().size());
    benchmark::DoNotOptimize(&document);
  }
  state.SetBytesProcessed(state.iterations() * static_cast<long>(TheDocument().size()));
}

void BenchReadValuesRavelin(benchmark::State& state) {
  const StreamPointer stream(new TKvMemoryStream(TheDocument()));
  for (auto unused : state) {
    const TKvXIniReader reader(stream);
    for (unsigned long i = 0; reader.HasItem(i); ++i) {
      benchmark::DoNotOptimize(reader.ReadE<std::string>(i).size());
    }
  }
  state.SetBytesProcessed(state.iterations() * static_cast<long>(TheDocument().size()));
}

void BenchReadValuesPugixml(benchmark::State& state) {
  for (auto unused : state) {
    pugi::xml_document document;
    document.load_buffer(TheDocument().data(), TheDocument().size());
    for (const pugi::xml_node item : document.first_child()) {
      benchmark::DoNotOptimize(std::string(item.child_value()).size());
    }
  }
  state.SetBytesProcessed(state.iterations() * static_cast<long>(TheDocument().size()));
}

BENCHMARK_CAPTURE(BenchWrite, ravelin, WriteWithRavelin)->Name("xini_write/ravelin");
BENCHMARK_CAPTURE(BenchWrite, pugixml, WriteWithPugixml)->Name("xini_write/pugixml");
BENCHMARK(BenchReadRavelin)->Name("xini_parse/ravelin");
BENCHMARK(BenchReadPugixml)->Name("xini_parse/pugixml");
BENCHMARK(BenchReadValuesRavelin)->Name("xini_values/ravelin");
BENCHMARK(BenchReadValuesPugixml)->Name("xini_values/pugixml");

}  // namespace
