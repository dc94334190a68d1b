#include "host/scene/SceneOutput.h"

#include <fcntl.h>
#include <unistd.h>

#include <new>

#include "Kv/Text.h"

namespace ravelin {

SceneOutput::SceneOutput(const std::string& folder)
    : folder_(folder), descriptor_(open(folder.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC)) {}

SceneOutput::~SceneOutput() {
  files_.clear();
  try {
    temporary_.DeleteAllFiles();
  } catch (const std::bad_alloc&) {
    // The pending files have removed what they had made.
  }
  if (descriptor_ >= 0) close(descriptor_);
}

/// The list keeps paths in lower case. One with capitals is listed by the folder's descriptor.
std::string SceneOutput::ListedPath(const std::string& temporaryPath) const {
  if (tolower(temporaryPath) == temporaryPath || descriptor_ < 0) return temporaryPath;
  return "/proc/self/fd/" + std::to_string(descriptor_) +
         temporaryPath.substr(temporaryPath.rfind('/'));
}

PendingFile& SceneOutput::Add(const std::string& name) {
  files_.push_back(std::make_unique<PendingFile>(PathOf(name)));
  names_.push_back(name);
  temporary_.InsertFile(ListedPath(files_.back()->TemporaryPath()));
  return *files_.back();
}

void SceneOutput::AddBytes(const std::string& name, const std::string& bytes) {
  Add(name).Write(bytes.data(), bytes.size());
}

std::vector<SceneOutput::File> SceneOutput::Files() const {
  std::vector<File> files;
  for (std::size_t i = 0; i < files_.size(); ++i) files.push_back({names_[i], files_[i]->Size()});
  return files;
}

void SceneOutput::Commit() {
  std::vector<PendingFile*> files;
  for (const std::unique_ptr<PendingFile>& file : files_) files.push_back(file.get());
  PendingFile::CommitTogether(files);
}

}  // namespace ravelin
