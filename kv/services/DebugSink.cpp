#include <cstddef>
#include <cstdio>
#include <memory>
#include <mutex>
#include <new>
#include <utility>

#include "Kv/Services.h"

namespace {

struct Output {
  std::recursive_mutex mutex;          // recursive: a sink may print and may replace itself
  std::shared_ptr<TKvDebugSink> sink;  // null: standard error
  bool inSink = false;
};

// Never destroyed: lines may still come while the process ends. The first needs no memory for it.
Output& TheOutput() {
  alignas(Output) static std::byte place[sizeof(Output)];
  static auto* const output = new (place) Output;
  return *output;
}

void PrintToStandardError(const std::string& line) {
  const std::string whole = line + '\n';
  std::fwrite(whole.data(), 1, whole.size(), stderr);
}

class SinkCall {
 public:
  explicit SinkCall(Output& output) : output_(output) { output_.inSink = true; }
  SinkCall(const SinkCall&) = delete;
  SinkCall& operator=(const SinkCall&) = delete;
  ~SinkCall() { output_.inSink = false; }

 private:
  Output& output_;
};

void Print(Output& output, const std::string& line) {
  // The copy keeps a sink alive that replaces itself.
  const std::shared_ptr<TKvDebugSink> sink = output.sink;
  if (!sink || output.inSink) {
    PrintToStandardError(line);
  } else {
    const SinkCall call(output);
    (*sink)(line);
  }
}

}  // namespace

void KvPrintDbgMsg(const std::string& line) {
  Output& output = TheOutput();
  const std::lock_guard<std::recursive_mutex> lock(output.mutex);
  try {
    Print(output, line);
  } catch (...) {
    // A debug line never makes its caller fail.
  }
}

TKvDebugSink KvSetDebugSink(TKvDebugSink sink) {
  auto next = sink ? std::make_shared<TKvDebugSink>(std::move(sink)) : nullptr;
  Output& output = TheOutput();
  const std::lock_guard<std::recursive_mutex> lock(output.mutex);
  // Copied first, as that may throw: then nothing has changed.
  TKvDebugSink former = output.sink ? *output.sink : TKvDebugSink();
  output.sink.swap(next);
  return former;
}
