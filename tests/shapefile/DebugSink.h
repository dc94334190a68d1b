// What is printed to the debug sink.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "Kv/Services.h"

namespace shape_test {

/// Keeps the lines that are printed while it lives.
class TDebugLines {
 public:
  TDebugLines()
      : former_(KvSetDebugSink([this](const std::string& line) { lines.push_back(line); })) {}
  TDebugLines(const TDebugLines&) = delete;
  TDebugLines& operator=(const TDebugLines&) = delete;
  ~TDebugLines() { KvSetDebugSink(std::move(former_)); }

  std::vector<std::string> lines;

 private:
  TKvDebugSink former_;
};

}  // namespace shape_test
