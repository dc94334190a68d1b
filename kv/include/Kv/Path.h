/// @file
/// File paths as byte strings.
#pragma once

#include <string>

#include "Kv/Export.h"

/// A POSIX path. Only '/' separates; the bytes are never changed or normalised.
///
///     TKvPath("/data/scene/b1.raw").path(false).toSysStr();  // "/data/scene/"
///     TKvPath("/data/scene/b1.raw").fileName();              // "b1.raw"
///
/// A path that holds a NUL byte can be carried, but every operation that opens or deletes refuses
/// it. Copies are independent; different objects may be used on different threads.
class KV_EXPORT TKvPath {
 public:
  /// The empty path.
  TKvPath();
  /// A path of these bytes, whatever they are.
  TKvPath(const std::string& path);

  /// The folder part up to and including the last '/', empty when there is none. With `absolute`,
  /// that of the path made absolute first (against the working folder); an empty path stays empty.
  TKvPath path(bool absolute) const;
  /// Without trailing '/'s; of a path of '/'s alone one stays.
  TKvPath remSlash() const;
  /// The bytes.
  std::string toSysStr() const;
  /// What follows the last '/'; the whole path when there is none.
  std::string fileName() const;

 private:
  std::string path_;
};

/// Deletes one file or link, never a folder. True when it is gone by this call.
KV_EXPORT bool KvDeleteFile(const TKvPath& path);
