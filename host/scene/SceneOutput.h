// The files that a scene becomes.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "SatCommonUtils/Files.h"
#include "host/io/PendingFile.h"

namespace ravelin {

/// Files on their way into a folder. They appear together by Commit, or not at all: until then they
/// have temporary names there, which are in a TTemporaryFilesList; what is on that list goes when
/// the object does, and with an interrupt.
class SceneOutput {
 public:
  /// The folder must be there.
  explicit SceneOutput(const std::string& folder);
  SceneOutput(const SceneOutput&) = delete;
  SceneOutput& operator=(const SceneOutput&) = delete;
  ~SceneOutput();

  struct File {
    std::string name;
    unsigned long bytes;
  };

  std::string PathOf(const std::string& name) const { return folder_ + "/" + name; }
  /// A file to be written, owned by this object. Throws HostError when it cannot be made.
  PendingFile& Add(const std::string& name);
  void AddBytes(const std::string& name, const std::string& bytes);
  /// Those added so far, in their order.
  std::vector<File> Files() const;
  void Commit();

 private:
  std::string ListedPath(const std::string& temporaryPath) const;

  std::string folder_;
  int descriptor_;  ///< of the folder
  SatCommonUtils::TTemporaryFilesList temporary_;
  std::vector<std::string> names_;
  std::vector<std::unique_ptr<PendingFile>> files_;
};

}  // namespace ravelin
