// Lists a folder of 50,000 files and a tree of folders, beside loops over Qt's iterator alone and
// over what the system tells.
#include <benchmark/benchmark.h>
#include <dirent.h>
#include <fcntl.h>
#include <stdlib.h>
#include <unistd.h>

#include <QtCore/QDirIterator>
#include <filesystem>
#include <map>
#include <memory>
#include <stdexcept>
#include <string>

#include "SatCommonUtils/Files.h"
#include "bench/support/Size.h"

namespace RavelinBench {
namespace {

namespace fs = std::filesystem;
using SatCommonUtils::TFilenamesList;

constexpr long kFolders = 100;

/// `flat` and `large` hold files, `large` four times as many; `tree` holds them in folders of
/// folders, ten to each, five deep.
class Folders {
 public:
  Folders() {
    std::string name = (fs::temp_directory_path() / "ravelin-bench-XXXXXX").string();
    if (::mkdtemp(name.data()) == nullptr) throw std::runtime_error("no temporary folder");
    path_ = name;
    Fill("flat", kFiles);
    Fill("large", kGrowth * kFiles);
    fs::path folder = path_ / "tree";
    for (long i = 0; i < kFolders; ++i) {
      folder = i % 20 == 0 ? path_ / "tree" / Name(i) : folder / Name(i);
      fs::create_directories(folder);
      for (long k = 0; k < 10; ++k) MakeFile(folder / ("file" + Name(k)));
    }
  }
  Folders(const Folders&) = delete;
  Folders& operator=(const Folders&) = delete;
  ~Folders() {
    std::error_code ignored;
    fs::remove_all(path_, ignored);
  }

  std::string Path(const char* folder) const { return (path_ / folder).string(); }

  static inline const long kFiles = Sized(50000);

 private:
  static std::string Name(long i) { return "scene_" + std::to_string(100000 + i) + "_b1.tif"; }

  void Fill(const char* folder, long files) const {
    fs::create_directory(path_ / folder);
    for (long i = 0; i < files; ++i) MakeFile(path_ / folder / Name(i));
  }

  static void MakeFile(const fs::path& path) {
    const int descriptor = ::open(path.c_str(), O_CREAT | O_WRONLY, 0600);
    if (descriptor < 0) throw std::runtime_error("cannot make " + path.string());
    ::close(descriptor);
  }

  fs::path path_;
};

const Folders& TheFolders() {
  static const Folders folders;
  return folders;
}

void Check(long found, long expected) {
  if (found != expected) throw std::runtime_error("files are missing");
}

void Flat(benchmark::State& state, const char* name, long files) {
  const std::string folder = TheFolders().Path(name);
  for (auto unused : state) {
    TFilenamesList list;
    Check(static_cast<long>(SatCommonUtils::FillFolderFilesList(folder, &list, nullptr)), files);
  }
  state.SetItemsProcessed(state.iterations() * files);
}

void FlatWithQt(benchmark::State& state) {
  const QString folder = QString::fromStdString(TheFolders().Path("flat"));
  for (auto unused : state) {
    long count = 0;
    QDirIterator files(folder, QDir::Files | QDir::NoDot | QDir::NoDotDot);
    for (; files.hasNext(); ++count) files.next();
    Check(count, Folders::kFiles);
  }
  state.SetItemsProcessed(state.iterations() * Folders::kFiles);
}

/// The names, and what kinds of files they are, as the system hands them out.
void FlatFloor(benchmark::State& state) {
  const std::string folder = TheFolders().Path("flat");
  for (auto unused : state) {
    const std::unique_ptr<DIR, int (*)(DIR*)> entries(::opendir(folder.c_str()), &::closedir);
    long count = 0;
    while (const dirent* entry = ::readdir(entries.get())) count += entry->d_type == DT_REG;
    Check(count, Folders::kFiles);
  }
  state.SetItemsProcessed(state.iterations() * Folders::kFiles);
}

void Tree(benchmark::State& state) {
  const std::string folder = TheFolders().Path("tree");
  for (auto unused : state) {
    std::map<std::string, TFilenamesList> tree;
    SatCommonUtils::FillFolderAndSubfoldersFilesList(folder, &tree, false, nullptr);
    if (tree.size() != kFolders + 1) throw std::runtime_error("folders are missing");
  }
}

/// One walk; scanning every folder anew would take a million of them here.
void TreeWithQt(benchmark::State& state) {
  const QString folder = QString::fromStdString(TheFolders().Path("tree"));
  for (auto unused : state) {
    QDirIterator entries(folder, QDir::Dirs | QDir::Files | QDir::NoDot | QDir::NoDotDot,
                         QDirIterator::Subdirectories);
    while (entries.hasNext()) entries.next();
  }
}

const bool registered = [] {
  const auto add = [](const char* name, auto... arguments) {
    benchmark::RegisterBenchmark(name, arguments...)->Unit(benchmark::kMillisecond);
  };
  add("folder/ours", Flat, "flat", Folders::kFiles);
  add("folder/peer:QDirIterator", FlatWithQt);
  add("folder/floor", FlatFloor);
  add("folder/4x", Flat, "large", kGrowth * Folders::kFiles);
  add("folders/ours", Tree);
  add("folders/peer:QDirIterator", TreeWithQt);
  return true;
}();

}  // namespace
}  // namespace RavelinBench
