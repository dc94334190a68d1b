#include <stdlib.h>

#include <QtCore/QDirIterator>
#include <QtCore/QFile>
#include <algorithm>
#include <iterator>
#include <limits>
#include <memory>
#include <utility>

#include "Kv/Text.h"
#include "SatCommonUtils/Files.h"
#include "files/FilenamesListAccess.h"
#include "files/QtText.h"
#include "files/ScanProgress.h"

namespace SatCommonUtils {
namespace {

using Tree = std::map<std::string, TFilenamesList>;
using Names = std::vector<std::string>;

unsigned long AddSaturated(unsigned long a, unsigned long b) {
  return a + std::min(b, std::numeric_limits<unsigned long>::max() - a);
}

/// The absolute path without links, in the system's bytes; empty when it cannot be told.
std::string CanonicalPath(const QString& path) {
  const std::unique_ptr<char, decltype(&::free)> canonical(
      ::realpath(QFile::encodeName(path).constData(), nullptr), &::free);
  return canonical == nullptr ? std::string() : std::string(canonical.get());
}

/// Whether a folder is `inner` or lies above it; both paths are canonical.
bool IsOrHolds(const std::string& folder, const std::string& inner) {
  const std::string prefix = folder == "/" ? folder : folder + "/";
  return (inner + "/").compare(0, prefix.size(), prefix) == 0;
}

struct TEntry {
  std::string fileName;  ///< of a file
  QString folderPath;    ///< of a folder; null for a file
  bool isLink;           ///< to a folder
};

/// A folder that the walk is in. Its entries are read at once, so that no folder stays open.
struct TLevel {
  QString path;
  bool isLink;
  TKvProgressHandler* progress;  ///< null behind links: entries there are not polled after
  std::vector<TEntry> entries;
  std::size_t next = 0;
  Names names = {};
  unsigned long count = 0;

  bool IsDone() const { return next == entries.size(); }
};

TEntry MakeEntry(const QDirIterator& entries) {
  const QFileInfo info = entries.fileInfo();
  if (info.isDir()) return {std::string(), info.filePath(), info.isSymLink()};
  return {FileNameOf(info.filePath()), QString(), false};
}

std::vector<TEntry> ReadEntries(const QString& folder, TKvProgressHandler* progress) {
  std::vector<TEntry> read;
  QDirIterator entries(folder, QDir::Dirs | QDir::Files | QDir::NoDot | QDir::NoDotDot);
  while (entries.hasNext()) {
    entries.next();
    read.push_back(MakeEntry(entries));
    if (read.back().folderPath.isNull()) Poll(progress);
  }
  return read;
}

/// Walks a tree once. Scanning anew every folder that is met, with a walk through all that lies
/// below it, would visit a folder d levels down 2^d times; the lists are the same, and the counts
/// are the sums that those visits would give.
class TFolderTreeScan {
 public:
  TFolderTreeScan(Tree* tree, bool upperCaseKeys) : tree_(tree), upperCaseKeys_(upperCaseKeys) {}

  /// Visits what lies below the top folder, and writes the folders among it.
  void Walk(const std::string& folder, TKvProgressHandler* progress) {
    Enter(KvStrToQt(folder), false, progress);
    while (levels_.size() > 1 || !levels_.front().IsDone()) {
      if (levels_.back().IsDone()) {
        Leave();
      } else {
        VisitNext(levels_.back());
      }
    }
  }

  /// Writes the top folder and gives the count.
  unsigned long Finish(const std::string& folder) {
    Write(folder, std::move(levels_.front().names));
    return levels_.front().count;
  }

 private:
  void Enter(const QString& path, bool isLink, TKvProgressHandler* progress) {
    levels_.push_back({path, isLink, progress, ReadEntries(path, progress)});
  }

  void VisitNext(TLevel& level) {
    TEntry& entry = level.entries[level.next++];
    if (entry.folderPath.isNull()) {
      level.names.push_back(std::move(entry.fileName));
      level.count = AddSaturated(level.count, 1);
    } else if (!entry.isLink) {
      Enter(entry.folderPath, false, level.progress);
    } else if (!IsInside(CanonicalPath(entry.folderPath))) {
      Enter(entry.folderPath, true, nullptr);
    } else {
      Poll(level.progress);
    }
  }

  /// Adds the innermost folder to the one that holds it, and writes it.
  void Leave() {
    TLevel done = std::move(levels_.back());
    levels_.pop_back();
    TLevel& parent = levels_.back();
    parent.count = AddSaturated(parent.count, done.count);
    if (!done.isLink) {
      parent.count = AddSaturated(parent.count, done.count);
      parent.names.insert(parent.names.end(), done.names.begin(), done.names.end());
    }
    Write(QtToKvStr(done.path), std::move(done.names));
    Poll(parent.progress);
  }

  /// Whether the walk is in the target of a link, or below it, or cannot tell. The folders between
  /// two links lie in each other, so that the innermost stands for all.
  bool IsInside(const std::string& target) const {
    if (target.empty()) return true;
    for (std::size_t i = 0; i < levels_.size(); ++i) {
      const bool innermost = i + 1 == levels_.size() || levels_[i + 1].isLink;
      if (innermost && IsOrHolds(target, CanonicalPath(levels_[i].path))) return true;
    }
    return false;
  }

  void Write(const std::string& folder, Names names) {
    if (names.empty()) return;
    const std::string key = upperCaseKeys_ ? ::toupper(folder) : folder;
    TFilenamesListAccess::Replace((*tree_)[key], std::move(names));
  }

  Tree* tree_;
  bool upperCaseKeys_;
  std::vector<TLevel> levels_;
};

}  // namespace

unsigned long FillFolderAndSubfoldersFilesList(std::string folder, Tree* tree, bool upperCaseKeys,
                                               TKvProgressHandler* progress) {
  TKvProgress scope(progress, false);
  scope.StartIndefinite();
  TFolderTreeScan scan(tree, upperCaseKeys);
  scan.Walk(folder, progress);
  scope.Stop();
  return scan.Finish(folder);
}

}  // namespace SatCommonUtils
