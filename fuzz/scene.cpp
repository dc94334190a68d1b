// A whole product folder in one input: every file stands behind a line "--- NAME" and ends before
// the line break of the next such line. Inputs of an even number of bytes have all pixels written.
#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <stdexcept>
#include <string>
#include <string_view>

#include "fuzz/FuzzInput.h"
#include "host/scene/SceneRun.h"

namespace {

namespace fs = std::filesystem;

constexpr std::string_view kMarker = "--- ";
constexpr std::size_t kMostFiles = 32;

using Files = std::map<std::string, std::string>;

/// Nothing that leads out of the folder, and no part that is longer than a file system takes.
bool IsUsable(const std::string& name) {
  const fs::path path(name);
  if (name.empty() || name.size() > 100 || path.is_absolute() || !path.has_filename()) return false;
  if (name.find('\0') != std::string::npos) return false;
  return std::none_of(path.begin(), path.end(),
                      [](const fs::path& part) { return part == ".." || part == "."; });
}

Files Unpack(std::string_view input) {
  Files files;
  const std::string separator = std::string(1, '\n').append(kMarker);
  while (input.starts_with(kMarker) && files.size() < kMostFiles) {
    input.remove_prefix(kMarker.size());
    const std::size_t lineEnd = std::min(input.find('\n'), input.size());
    const std::string name(input.substr(0, lineEnd));
    input.remove_prefix(std::min(lineEnd + 1, input.size()));
    const std::size_t end = std::min(input.find(separator), input.size());
    if (IsUsable(name)) files[name] = input.substr(0, end);
    input.remove_prefix(std::min(end + 1, input.size()));
  }
  return files;
}

/// A folder in memory where the machine has one, removed at the end of the program.
class WorkFolder {
 public:
  WorkFolder() {
    std::error_code error;
    const bool shared = fs::is_directory("/dev/shm", error);
    std::string pattern = (shared ? fs::path("/dev/shm") : fs::temp_directory_path(error)) /
                          "ravelin-fuzz-scene-XXXXXX";
    if (mkdtemp(pattern.data()) == nullptr) throw std::runtime_error("cannot make " + pattern);
    path_ = pattern;
  }
  WorkFolder(const WorkFolder&) = delete;
  WorkFolder& operator=(const WorkFolder&) = delete;
  ~WorkFolder() {
    std::error_code ignored;
    fs::remove_all(path_, ignored);
  }

  /// Puts these files into the folder `product` in place of what was there; no folder `out`.
  void Fill(const Files& files) const {
    fs::remove_all(Product());
    fs::remove_all(Output());
    fs::create_directory(Product());
    for (const auto& [name, bytes] : files) {
      std::error_code taken;  // a file may stand where another wants a folder
      const fs::path path = Product() / name;
      fs::create_directories(path.parent_path(), taken);
      std::ofstream(path, std::ios::binary) << bytes;
    }
  }
  fs::path Product() const { return path_ / "product"; }
  fs::path Output() const { return path_ / "out"; }

 private:
  fs::path path_;
};

std::map<std::string, unsigned long> FilesIn(const fs::path& folder) {
  std::map<std::string, unsigned long> files;
  std::error_code missing;
  for (const fs::directory_entry& entry : fs::directory_iterator(folder, missing)) {
    files[entry.path().filename().string()] = entry.file_size();
  }
  return files;
}

void Check(const ravelin::SceneReport& report, const fs::path& output) {
  std::map<std::string, unsigned long> reported;
  for (const ravelin::SceneOutput::File& file : report.files) reported[file.name] = file.bytes;
  Require(FilesIn(output) == reported, "the output holds the files of the report and no other");
  if (report.error.empty()) {
    Require(reported.count("quicklook.png") == 1, "a scene has a quicklook");
    Require(reported.count("scene.xml") == 1, "a scene has a tree");
    Require(report.size.width > 0 && report.size.height > 0, "a scene has pixels");
  } else {
    Require(reported.empty() || (reported.size() == 1 && reported.count("ravelin.log") == 1),
            "a scene that fails leaves its log alone");
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const WorkFolder folder;
  folder.Fill(Unpack({reinterpret_cast<const char*>(data), size}));
  ravelin::SceneOptions options;
  options.pixels = size % 2 == 0;
  const ravelin::SceneJob job = {folder.Product().string(), folder.Output().string()};
  Check(ravelin::RunScene(job, options, nullptr), folder.Output());
  return 0;
}
