// Runs a fuzz target over files: every argument is an input, or a folder of inputs.
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <string>

#include "fuzz/FuzzInput.h"

namespace {

namespace fs = std::filesystem;

int Run(const fs::path& path) {
  std::ifstream file(path, std::ios::binary);
  if (!file) {
    std::cerr << path.string() << ": cannot be opened\n";
    return 0;
  }
  const std::string bytes(std::istreambuf_iterator<char>(file), {});
  LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
  return 1;
}

int RunAll(const fs::path& path) {
  if (!fs::is_directory(path)) return Run(path);
  int count = 0;
  for (const fs::directory_entry& entry : fs::directory_iterator(path)) count += Run(entry.path());
  return count;
}

}  // namespace

int main(int argc, char** argv) {
  int count = 0;
  for (int i = 1; i < argc; ++i) count += RunAll(argv[i]);
  std::cout << count << " inputs\n";
  return count > 0 ? 0 : 1;
}
