#include "bench/raster/Reader.h"

namespace RavelinBench {

std::unique_ptr<TReader> MakeGdalReader(const TDataSet& /*set*/) {
  return nullptr;
}

}  // namespace RavelinBench
