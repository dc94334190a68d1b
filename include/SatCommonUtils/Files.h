/// @file
/// Files and folders: paths as plain texts, lists of file names with wildcard search, folder
/// scanning, file look-up, lists of temporary files.
///
/// Names and paths are UTF-8. Folders are walked with Qt Core, which users of this header need not
/// have. Files whose names are not UTF-8 do not exist for it: they are not listed and not found,
/// and folders with such names are not walked.
#pragma once

#include <cstddef>
#include <functional>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "Kv/Progress.h"
#include "SatCommonUtils/Export.h"

class QString;

namespace SatCommonUtils {

// Paths as plain texts. Which separators count is fixed for each function, and none looks at the
// disk. Nothing is normalised. Linear in the path.

/// Splits a path by the rules of TKvPath: the folder without its trailing '/'s (of a path in the
/// root "/" stays), and what follows the last '/'.
///
///     SplitPathFilename("/data/scene/b1.raw", &folder, &name);  // "/data/scene", "b1.raw"
RAVELIN_EXPORT void SplitPathFilename(std::string path, std::string* folder, std::string* name);
/// Splits a path at its last '/' or '\', whichever comes later; the separator goes to neither part.
/// Without one the folder is empty and the name the whole path; the name of a path that ends with
/// one is empty.
///
///     SplitPathFilename2("c:\\data/b1.raw", &folder, &name);  // "c:\\data", "b1.raw"
RAVELIN_EXPORT void SplitPathFilename2(std::string path, std::string* folder, std::string* name);

// The extension is what follows the last dot, wherever that is: it may be the first byte, and may
// stand in a folder's name when the file's has none ("dir.old/file"). Callers rely on it; so give
// names, or paths whose last part has an extension.

/// The name with `ext` (without a dot) in place of its extension, or behind a new dot when it has
/// none: "b1.raw" and "hdr" give "b1.hdr". An empty `ext` leaves the dot: "b1.".
RAVELIN_EXPORT std::string ChangeFileExt(std::string name, std::string ext);
/// What stands before the last dot; the whole name when there is none.
RAVELIN_EXPORT std::string CutFileExt(std::string name);
/// What follows the last dot, without the dot; empty when there is none.
RAVELIN_EXPORT std::string GetFileExt(std::string name);

// Of the following only '\' separates. A '/' is a byte like any other.

/// Without its last byte when that is a '\'; only one goes.
RAVELIN_EXPORT std::string RemoveTrailingBackslash(const std::string& path);
/// With a '\' behind it unless it ends with one already. Empty stays empty.
RAVELIN_EXPORT std::string AddTrailingBackslash(const std::string& path);
/// The folder above: one trailing '\' taken away, what stands before the last '\'. Empty when there
/// is none, for a drive or a path in the root.
///
///     GetUpperFolder("c:\\data\\sub\\");  // "c:\\data"
RAVELIN_EXPORT std::string GetUpperFolder(const std::string& path);
/// The last folder's name: one trailing '\' taken away, what follows the last '\'; all of it when
/// there is none. Empty for a path that ends with two.
///
///     GetFolderName("c:\\data\\sub\\");  // "sub"
RAVELIN_EXPORT std::string GetFolderName(const std::string& path);

/// File names in the order of insertion, duplicates kept, with a cursor for walks and searches.
///
///     for (bool found = list.FindFirst("*.imd"); found; found = list.FindNext("*.imd")) {
///       list.GetCurrent(&name);
///     }
///
/// A mask is compared with a whole name, letter case ignored (ASCII letters; the framework's
/// tolower). Both are taken apart at every dot and must have the same number of pieces, which are
/// compared pairwise: '?' stands for one byte, '*' for the rest of its piece, whatever follows it
/// there. So "*" matches names without a dot, "*.*" names with exactly one, "a*b.tif" what
/// "a*.tif" matches. A mask that begins with '#' matches names that end with what follows it, byte
/// for byte: "#.txt" matches "a.b.txt"; "#" alone and the empty mask match nothing. Matching is
/// linear in the name and the mask.
///
/// The cursor is on a name or at the end, where it is at first. The walks and searches that move
/// it are const; so a list must not be used by two threads at once, not even for reading. A list
/// owns its names. `out` gets a copy and is left alone by a false; it may be null.
class RAVELIN_EXPORT TFilenamesList {
 public:
  TFilenamesList();
  /// Copies the names; the copy's cursor is on its first name.
  TFilenamesList(const TFilenamesList& other);
  /// Takes over the names; the cursor is at the end.
  TFilenamesList& operator=(const TFilenamesList& other);
  virtual ~TFilenamesList();

  /// Appends a name; the cursor stays on the name that it is on, or at the end.
  void Insert(const std::string& name);
  /// Removes the name at the cursor, which is then on the following one or at the end; nothing when
  /// it is at the end. Linear in the number of names behind it.
  void Remove();
  /// FindFirst, and Remove when it found a name; whether it did.
  bool Remove(const std::string& mask);
  /// Removes all names; the cursor is at the end.
  void Clear();

  /// Moves the cursor to the first name; false when there is none.
  bool GetFirst(std::string* out) const;
  /// Moves the cursor on by one; false when it reaches the end or was there.
  bool GetNext(std::string* out) const;
  /// The name at the cursor; false at the end.
  bool GetCurrent(std::string* out) const;

  /// Moves the cursor to the first name that matches, to the end when there is none.
  bool FindFirst(const std::string& mask) const;
  /// Moves the cursor to the next name behind it that matches; false at the end, too.
  bool FindNext(const std::string& mask) const;
  /// The first name that matches. Does not move the cursor.
  bool Find(const std::string& mask, std::string* out) const;
  /// Appends all names that match to `out`; returns how many those are. Does not move the cursor.
  unsigned long FindAll(const std::string& mask, std::vector<std::string>* out) const;

  /// Prints title, names and title again to the debug sink, a line each.
  void DebugOutput(std::string title) const;

 private:
  friend struct TFilenamesListAccess;

  std::vector<std::string> names_;
  mutable std::size_t cursor_;  ///< a position in names_; the largest value at the end
};

// Scanning. Entries come in the order of the file system. Hidden files (names that begin with a
// dot), links that lead nowhere, sockets, pipes and devices are left out; links to files count as
// files. A folder that is missing or must not be read holds nothing. A path ends at its first NUL.
// After each entry the handler, unless null, is asked whether it needs service and given it; it
// cannot stop a scan but by an exception, which passes, as allocation failures do.

/// Appends the names of the files in `folder` to `list`, whose cursor stays. Returns the number of
/// names that it then holds, those from before included.
RAVELIN_EXPORT unsigned long FillFolderFilesList(std::string folder, TFilenamesList* list,
                                                 TKvProgressHandler* progress);

/// Lists a whole tree of folders. `tree` gets an entry for every folder that has files anywhere
/// below it: its key is the folder's path (`folder` as given for the top one, for others the path
/// of the parent, a slash and the name), in upper case when `upperCaseKeys` is set (the framework's
/// toupper). Its list holds the bare names of ALL files in the folder's subtree, not of its own
/// files only, and replaces what the entry held; its cursor is at the end. Hidden folders are left
/// out. A link to a folder is scanned as a folder of its own, with entries under the path of the
/// link, but its files do not show in the lists of the folders above the link; a link that leads to
/// a folder which the scan is inside already, or to one above that, is not followed.
///
/// The returned count counts a file in `folder` itself once, in a subfolder twice, two folders down
/// four times and so on, doubling with each; a link does not double. It stays at the largest value
/// once it has reached it. Callers rely on these lists and counts; for a folder's own files there
/// is FillFolderFilesList. Time is linear in the entries of the tree, links followed, and the names
/// in its lists. When something throws, `tree` has the entries of the folders scanned until then.
RAVELIN_EXPORT unsigned long FillFolderAndSubfoldersFilesList(
    std::string folder, std::map<std::string, TFilenamesList>* tree, bool upperCaseKeys,
    TKvProgressHandler* progress);

/// Looks for a file in `folder` by a wildcard pattern of Qt's ('*' any characters, '?' one, [...]
/// sets), letter case ignored, beyond ASCII too: "scene_b1.tif" finds SCENE_B1.TIF. True stores the
/// bare name as it is on disk, of several the first in the order of the file system; false leaves
/// `*foundName` alone. It may be null. A set without an end matches nothing, and neither may a
/// pattern of dozens of stars: Qt gives a name up that could match in too many ways.
/// A failing allocation passes but in a thread's first look-up by any other pattern than "*": there
/// Qt makes what it keeps for the thread, and crashes when it cannot.
RAVELIN_EXPORT bool FileExists(const std::string& folder, const std::string& nameFilter,
                               std::string* foundName);

/// The files that a host has made for temporary use, to be deleted one by one or together.
///
///     TTemporaryFilesList list;
///     list.InsertFile("/tmp/scene/part1.tmp");
///     list.DeleteAllFiles();
///
/// Paths are kept in lower case (ASCII letters; the framework's tolower), and callers rely on it.
/// So DeleteAllFiles deletes the files whose paths are in lower case, not those that were inserted
/// where the two differ: use paths without capitals. Whether a deletion succeeds is not told. A
/// failing allocation throws std::bad_alloc.
class RAVELIN_EXPORT TTemporaryFilesList {
 public:
  std::set<std::string> files;  ///< paths in lower case

  /// Remembers a file, in lower case; it need not exist yet.
  void InsertFile(const std::string& path);
  /// Deletes the file with exactly this path, also when it is not in the list, and takes the path's
  /// lower-case form off the list, also when the file stays.
  void DeleteFile(const std::string& path);
  /// Deletes the files with the paths of the list and empties it.
  void DeleteAllFiles();
  /// Prints the paths to the debug sink, a line each between two frame lines.
  void DebugOutput() const;
};

}  // namespace SatCommonUtils

/// The text in UTF-8, up to its first NUL.
RAVELIN_EXPORT std::string QtToKvStr(const QString& text);
