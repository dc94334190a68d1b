// A log of a million messages: filled, handed out and saved.
#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <vector>

#include "SatCommonUtils/Log.h"

namespace {

using SatCommonUtils::TSatLog;

constexpr unsigned long kMessages = 1000000;

/// A file of the benchmark's own, removed at the end.
class TemporaryFile {
 public:
  TemporaryFile() : path_(std::filesystem::temp_directory_path() / "ravelin-bench-XXXXXX") {
    const int descriptor = ::mkstemp(path_.data());
    if (descriptor < 0) throw std::runtime_error("cannot make " + path_);
    ::close(descriptor);
  }
  TemporaryFile(const TemporaryFile&) = delete;
  TemporaryFile& operator=(const TemporaryFile&) = delete;
  ~TemporaryFile() { ::unlink(path_.c_str()); }

  const std::string& Path() const { return path_; }

 private:
  std::string path_;
};

/// An output that takes everything and does nothing with it.
class NullStream : public TKvStream {
 public:
  bool IsOpen() const override { return true; }
  unsigned long Read(void* /*buffer*/, unsigned long /*count*/) override { return 0; }
  unsigned long Write(const void* buffer, unsigned long count) override {
    benchmark::DoNotOptimize(buffer);
    return count;
  }
  bool SetPos(unsigned long /*offset*/) override { return false; }
  unsigned long GetPos() const override { return 0; }
  unsigned long getSize() const override { return 0; }
  bool Eof() const override { return true; }
};

void Fill(TSatLog* log) {
  const std::string message = "tile 17 of 64: 3 samples beyond the range\n";
  for (unsigned long i = 0; i < kMessages; ++i) {
    log->AppendMessage(static_cast<TSatLog::TMsgType>(i % 4), message);
  }
}

const TSatLog& FilledLog() {
  static const TSatLog log = [] {
    TSatLog filled;
    Fill(&filled);
    return filled;
  }();
  return log;
}

void Check(bool isGood) {
  if (!isGood) throw std::runtime_error("a call failed");
}

void CountLines(benchmark::State& state) {
  state.SetItemsProcessed(state.iterations() * static_cast<long>(kMessages));
}

void BenchAppend(benchmark::State& state) {
  for (auto unused : state) {
    TSatLog log;
    Fill(&log);
    benchmark::DoNotOptimize(log.items.data());
  }
  CountLines(state);
}

void BenchGet(benchmark::State& state) {
  for (auto unused : state) {
    std::vector<TSatLog::TLogDataItem> messages;
    Check(FilledLog().GetMessages(&messages) == kMessages);
  }
  CountLines(state);
}

void BenchSaveToFile(benchmark::State& state) {
  const TemporaryFile file;
  for (auto unused : state) Check(FilledLog().SaveToFile(file.Path()));
  CountLines(state);
}

void BenchSaveToNothing(benchmark::State& state) {
  NullStream stream;
  for (auto unused : state) Check(FilledLog().SaveToStream(&stream));
  CountLines(state);
}

/// The least for one write a line: lines that are there already, straight to the system.
void BenchFloor(benchmark::State& state) {
  const TemporaryFile file;
  std::vector<std::string> lines;
  for (const auto& item : FilledLog().items) lines.push_back(item.GetMsgLine());
  for (auto unused : state) {
    const int descriptor = ::open(file.Path().c_str(), O_WRONLY | O_TRUNC);
    for (const std::string& line : lines) {
      Check(::write(descriptor, line.data(), line.size()) == static_cast<ssize_t>(line.size()));
    }
    ::close(descriptor);
  }
  CountLines(state);
}

BENCHMARK(BenchAppend)->Name("log/append")->Unit(benchmark::kMillisecond);
BENCHMARK(BenchGet)->Name("log/get_messages")->Unit(benchmark::kMillisecond);
BENCHMARK(BenchSaveToFile)->Name("log/save_to_file")->Unit(benchmark::kMillisecond);
BENCHMARK(BenchFloor)->Name("log/save_to_file/floor")->Unit(benchmark::kMillisecond);
BENCHMARK(BenchSaveToNothing)->Name("log/save_to_nothing")->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
