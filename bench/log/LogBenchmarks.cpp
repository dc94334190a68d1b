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
#include "bench/support/Size.h"

namespace RavelinBench {
namespace {

using SatCommonUtils::TSatLog;

const long kMessages = Sized(1000000);

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

void Fill(TSatLog* log, long messages) {
  const std::string message = "tile 17 of 64: 3 samples beyond the range\n";
  for (long i = 0; i < messages; ++i) {
    log->AppendMessage(static_cast<TSatLog::TMsgType>(i % 4), message);
  }
}

void Check(bool isGood) {
  if (!isGood) throw std::runtime_error("a call failed");
}

void CountLines(benchmark::State& state, long messages) {
  state.SetItemsProcessed(state.iterations() * messages);
}

void BenchAppend(benchmark::State& state, long messages) {
  for (auto unused : state) {
    TSatLog log;
    Fill(&log, messages);
    benchmark::DoNotOptimize(log.items.data());
  }
  CountLines(state, messages);
}

void BenchGet(benchmark::State& state, long messages) {
  TSatLog log;
  Fill(&log, messages);
  for (auto unused : state) {
    std::vector<TSatLog::TLogDataItem> items;
    Check(static_cast<long>(log.GetMessages(&items)) == messages);
  }
  CountLines(state, messages);
}

void BenchSaveToFile(benchmark::State& state, long messages) {
  TSatLog log;
  Fill(&log, messages);
  const TemporaryFile file;
  for (auto unused : state) Check(log.SaveToFile(file.Path()));
  CountLines(state, messages);
}

void BenchSaveToNothing(benchmark::State& state, long messages) {
  TSatLog log;
  Fill(&log, messages);
  NullStream stream;
  for (auto unused : state) Check(log.SaveToStream(&stream));
  CountLines(state, messages);
}

/// The least for one write a line: lines that are there already, straight to the system.
void BenchFloor(benchmark::State& state, long messages) {
  TSatLog log;
  Fill(&log, messages);
  const TemporaryFile file;
  std::vector<std::string> lines;
  for (const auto& item : log.items) lines.push_back(item.GetMsgLine());
  for (auto unused : state) {
    const int descriptor = ::open(file.Path().c_str(), O_WRONLY | O_TRUNC);
    for (const std::string& line : lines) {
      Check(::write(descriptor, line.data(), line.size()) == static_cast<ssize_t>(line.size()));
    }
    ::close(descriptor);
  }
  CountLines(state, messages);
}

const bool registered = [] {
  const auto add = [](const char* name, auto bench, long messages) {
    benchmark::RegisterBenchmark(name, bench, messages)->Unit(benchmark::kMillisecond);
  };
  add("log/ours", BenchSaveToFile, kMessages);
  add("log/floor", BenchFloor, kMessages);
  add("log/4x", BenchSaveToFile, kGrowth * kMessages);
  add("log_append/ours", BenchAppend, kMessages);
  add("log_get/ours", BenchGet, kMessages);
  add("log_save_to_nothing/ours", BenchSaveToNothing, kMessages);
  return true;
}();

}  // namespace
}  // namespace RavelinBench
