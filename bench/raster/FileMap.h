#pragma once

#include <cstddef>
#include <string>

namespace RavelinBench {

/// A whole file mapped read-only, its pages in place: aligned for the largest pages, so that the
/// system can use them.
class TFileMap {
 public:
  /// Throws std::runtime_error when the file cannot be mapped.
  explicit TFileMap(const std::string& path);
  TFileMap(const TFileMap&) = delete;
  TFileMap& operator=(const TFileMap&) = delete;
  ~TFileMap();

  const unsigned char* Bytes() const { return bytes_; }

 private:
  void* area_;
  std::size_t areaSize_;
  const unsigned char* bytes_;
};

}  // namespace RavelinBench
