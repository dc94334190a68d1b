#include "tree/ForeignCall.h"

#include <stdexcept>

namespace SatCommonUtils {
namespace {

thread_local int depth = 0;

}  // namespace

TForeignCall::TForeignCall() {
  if (depth == kDeepest) throw std::length_error("a data tree lies too deep for its class");
  ++depth;
}

TForeignCall::~TForeignCall() {
  --depth;
}

}  // namespace SatCommonUtils
