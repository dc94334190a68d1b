#include "shapefile/BlockWriter.h"

namespace SatCommonUtils {
namespace {

constexpr std::size_t kBlock = std::size_t{1} << 16;

}  // namespace

TBlockWriter::TBlockWriter(TKvStream& stream) : stream_(stream) {
  block_.reserve(kBlock);
}

bool TBlockWriter::Write(const void* bytes, std::size_t count) {
  if (count > kBlock - block_.size() && !Flush()) return false;
  if (count > kBlock) return Put(bytes, count);
  const char* const first = static_cast<const char*>(bytes);
  block_.insert(block_.end(), first, first + count);
  return good_;
}

bool TBlockWriter::Flush() {
  if (block_.empty()) return good_;
  const bool written = Put(block_.data(), block_.size());
  block_.clear();
  return written;
}

bool TBlockWriter::Put(const void* bytes, std::size_t count) {
  if (good_) good_ = stream_.Write(bytes, count) == count;
  return good_;
}

}  // namespace SatCommonUtils
