// A bound on how deep virtual operations of classes that derive from ours run inside each other.
#pragma once

namespace SatCommonUtils {

/// Lives while such an operation runs that may come back for a tree below. Throws std::length_error
/// when too many run inside each other on this thread: the stack must not be used up.
class TForeignCall {
 public:
  static constexpr int kDeepest = 2000;

  TForeignCall();
  TForeignCall(const TForeignCall&) = delete;
  TForeignCall& operator=(const TForeignCall&) = delete;
  ~TForeignCall();
};

}  // namespace SatCommonUtils
