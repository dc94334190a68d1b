// Lists a folder of 50,000 files and a tree of folders, beside loops over Qt's iterator alone.
#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <stdlib.h>
#include <unistd.h>

#include <QtCore/QDirIterator>
#include <filesystem>
#include <map>
#include <stdexcept>
#include <string>

#include "SatCommonUtils/Files.h"

namespace {

namespace fs = std::filesystem;
using SatCommonUtils::TFilenamesList;

constexpr long kFiles = 50000;
constexpr long kFolders = 100;

/// `flat` holds the files; `tree` holds them in folders of folders, ten to each, five deep.
class Folders {
 public:
  Folders() {
    std::string name = (fs::temp_directory_path() / "ravelin-bench-XXXXXX").string();
    if (::mkdtemp(name.data()) == nullptr) throw std::runtime_error("no temporary folder");
    path_ = name;
    fs::create_directory(path_ / "flat");
    for (long i = 0; i < kFiles; ++i) MakeFile(path_ / "flat" / Name(i));
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

  std::string Flat() const { return (path_ / "flat").string(); }
  std::string Tree() const { return (path_ / "tree").string(); }

 private:
  static std::string Name(long i) { return "scene_" + std::to_string(100000 + i) + "_b1.tif"; }

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

void Flat(benchmark::State& state) {
  const std::string folder = TheFolders().Flat();
  for (auto unused : state) {
    TFilenamesList list;
    if (SatCommonUtils::FillFolderFilesList(folder, &list, nullptr) != kFiles) {
      throw std::runtime_error("files are missing");
    }
  }
  state.SetItemsProcessed(state.iterations() * kFiles);
}

void FlatWithQt(benchmark::State& state) {
  const QString folder = QString::fromStdString(TheFolders().Flat());
  for (auto unused : state) {
    long count = 0;
    QDirIterator files(folder, QDir::Files | QDir::NoDot | QDir::NoDotDot);
    for (; files.hasNext(); ++count) files.next();
    if (count != kFiles) throw std::runtime_error("files are missing");
  }
  state.SetItemsProcessed(state.iterations() * kFiles);
}

void Tree(benchmark::State& state) {
  const std::string folder = TheFolders().Tree();
  for (auto unused : state) {
    std::map<std::string, TFilenamesList> tree;
    SatCommonUtils::FillFolderAndSubfoldersFilesList(folder, &tree, false, nullptr);
    if (tree.size() != kFolders + 1) throw std::runtime_error("folders are missing");
  }
}

/// One walk; scanning every folder anew would take a million of them here.
void TreeWithQt(benchmark::State& state) {
  const QString folder = QString::fromStdString(TheFolders().Tree());
  for (auto unused : state) {
    QDirIterator entries(folder, QDir::Dirs | QDir::Files | QDir::NoDot | QDir::NoDotDot,
                         QDirIterator::Subdirectories);
    while (entries.hasNext()) entries.next();
  }
}

BENCHMARK(Flat)->Name("folder/ravelin");
BENCHMARK(FlatWithQt)->Name("folder/qdiriterator");
BENCHMARK(Tree)->Name("tree/ravelin");
BENCHMARK(TreeWithQt)->Name("tree/qdiriterator");

}  // namespace
