// Output files that appear whole or not at all.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "host/Interrupt.h"

namespace ravelin {

/// A file on its way: written under a temporary name in the folder of its final place and renamed
/// when it is complete. What is there already stays until then, and stays for good when the work
/// fails or is interrupted; the temporary file is removed then.
///
///     PendingFile file("out/scene.png");
///     file.Write(bytes, count);
///     file.Commit();
///
/// A link is followed: the file that it leads to is replaced. A file that is replaced keeps its
/// permissions. Every operation throws HostError naming the final place.
class PendingFile {
 public:
  /// Fails when the place is a folder or anything else that is no regular file, or when no file can
  /// be made in its folder.
  explicit PendingFile(const std::string& path);
  PendingFile(const PendingFile&) = delete;
  PendingFile& operator=(const PendingFile&) = delete;
  ~PendingFile();

  /// Appends; buffered.
  void Write(const void* bytes, std::size_t count);
  void Commit();
  /// Puts several files that belong together in place, in the order given: all are complete before
  /// the first is renamed. When one cannot be renamed, those before it are taken away again and
  /// what they replaced is put back; the latter only on a file system that can exchange two files.
  static void CommitTogether(const std::vector<PendingFile*>& files);

  /// Where the bytes go until then; empty when the file is in place.
  const std::string& TemporaryPath() const { return temporary_.Get(); }
  /// Bytes appended so far.
  unsigned long Size() const { return size_; }

 private:
  void FindTarget();
  void CreateTemporary();
  int OpenTemporary();
  void KeepMode();
  void Discard();
  void Flush();
  void Complete();
  void PutInPlace(bool keepFormer);
  bool Exchange() const;
  void TakeBack();
  void DropFormer();
  [[noreturn]] void Fail(int error) const;

  std::string path_;    // as the user gave it
  std::string target_;  // behind links
  bool replaces_ = false;
  unsigned int mode_ = 0;   // of the file that is replaced
  bool exchanged_ = false;  // that file lies in the temporary place
  TemporaryName temporary_;
  int descriptor_ = -1;
  unsigned long size_ = 0;
  std::vector<unsigned char> buffer_;
};

}  // namespace ravelin
