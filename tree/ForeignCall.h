// A bound on how deep virtual operations of classes that derive from ours run inside each other.
#pragma once

namespace SatCommonUtils {

/// Lives while such an operation runs that may come back for a tree below. Throws std::length_error
/// when too many run inside each other on this thread: the stack must not be used up.
class ForeignCall {
 public:
  static constexpr int kDeepest = 2000;

  ForeignCall();
  ForeignCall(const ForeignCall&) = delete;
  ForeignCall& operator=(const ForeignCall&) = delete;
  ~ForeignCall();
};

}  // namespace SatCommonUtils
