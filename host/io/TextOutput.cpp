#include "host/io/TextOutput.h"

#include <iostream>

#include "host/HostError.h"
#include "host/io/PendingFile.h"

namespace ravelin {

void PrintText(const std::string& text) {
  std::cout << text << std::flush;
  if (!std::cout) {
    throw HostError("standard output", "cannot be written", "free some space or write elsewhere");
  }
}

void WriteTextOutput(const std::string& text, const std::string& path) {
  if (path.empty()) {
    PrintText(text);
    return;
  }
  PendingFile file(path);
  file.Write(text.data(), text.size());
  file.Commit();
}

}  // namespace ravelin
