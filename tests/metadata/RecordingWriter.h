// A writer that keeps what is asked of it, and does of it what a test says.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "Kv/XIni.h"

namespace metadata_test {

class RecordingWriter : public TKvXIniWriter {
 public:
  bool itemResult = true;          ///< what writing an item gives
  unsigned long sectionId = 4711;  ///< what opening a section gives; 0 is a failure
  bool endResult = true;           ///< what ending a section gives
  bool endThrows = false;          ///< an int, no exception of the standard library
  /// "name=value", "begin name", "end identifier", in the order of the calls.
  std::vector<std::string> calls;

  bool EndSection(unsigned long section) override {
    calls.push_back("end " + std::to_string(section));
    if (endThrows) throw 1;
    return endResult;
  }

 protected:
  bool WriteItemText(const std::string& name, std::string_view value) override {
    calls.push_back(name + "=" + std::string(value));
    return itemResult;
  }
  unsigned long OpenSection(const std::string& name, bool compact) override {
    calls.push_back((compact ? "begin compact " : "begin ") + name);
    return sectionId;
  }
};

}  // namespace metadata_test
