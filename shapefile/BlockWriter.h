// Many small writes as few large ones.
#pragma once

#include <cstddef>
#include <vector>

#include "Kv/Stream.h"

namespace SatCommonUtils {

/// Gathers what is written to a stream. After a write that fell short everything fails.
class TBlockWriter {
 public:
  explicit TBlockWriter(TKvStream& stream);

  /// What does not fit into the block any more goes to the stream with one write of its own.
  bool Write(const void* bytes, std::size_t count);
  /// Writes what is gathered; to be called at the end.
  bool Flush();

 private:
  bool Put(const void* bytes, std::size_t count);

  TKvStream& stream_;
  std::vector<char> block_;
  bool good_ = true;
};

}  // namespace SatCommonUtils
