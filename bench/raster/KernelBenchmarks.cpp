#include "bench/raster/KernelBenchmarks.h"

#include <benchmark/benchmark.h>

#include <cstdint>

#include "raster/PixelKernels.h"

namespace RavelinBench {
namespace {

using SatCommonUtils::kMaxKernelChannels;
using SatCommonUtils::TPixelKernels;

/// The samples of 8 channels and their interleaved pixels take 32 KiB.
constexpr std::size_t kSamples = 1024;

[[gnu::noinline]] void TypedInterleave(std::uint16_t* to, const std::uint16_t* const* from,
                                       int channels, std::size_t count) {
  const auto step = static_cast<std::size_t>(channels);
  for (std::size_t p = 0; p < count; ++p) {
    for (std::size_t k = 0; k < step; ++k) to[p * step + k] = from[k][p];
  }
}

[[gnu::noinline]] void TypedCopySwapped(std::uint16_t* to, const std::uint16_t* from,
                                        std::size_t count) {
  for (std::size_t i = 0; i < count; ++i) to[i] = __builtin_bswap16(from[i]);
}

struct TSamples {
  explicit TSamples(int channels)
      : from(static_cast<std::size_t>(channels), std::vector<std::uint16_t>(kSamples, 1)),
        to(kSamples * from.size()) {
    for (const auto& channel : from) {
      typed.push_back(channel.data());
      bytes.push_back(reinterpret_cast<const unsigned char*>(channel.data()));
    }
  }

  std::vector<std::vector<std::uint16_t>> from;
  std::vector<const std::uint16_t*> typed;
  std::vector<const unsigned char*> bytes;
  std::vector<std::uint16_t> to;
};

/// `kernels` null: the typed loop.
void BenchInterleave(benchmark::State& state, const TPixelKernels* kernels, int channels) {
  TSamples samples(channels);
  for (auto unused : state) {
    if (kernels == nullptr) {
      TypedInterleave(samples.to.data(), samples.typed.data(), channels, kSamples);
    } else {
      kernels->interleave(samples.to.data(), samples.bytes.data(), channels, kSamples);
    }
    benchmark::ClobberMemory();
  }
  state.SetBytesProcessed(state.iterations() * static_cast<long>(2 * samples.to.size()));
}

void BenchSwap(benchmark::State& state, const TPixelKernels* kernels) {
  TSamples samples(1);
  for (auto unused : state) {
    if (kernels == nullptr) {
      TypedCopySwapped(samples.to.data(), samples.typed[0], kSamples);
    } else {
      kernels->copySwapped(samples.to.data(), samples.bytes[0], kSamples);
    }
    benchmark::ClobberMemory();
  }
  state.SetBytesProcessed(state.iterations() * static_cast<long>(2 * samples.to.size()));
}

std::string InterleaveGroup(int channels) {
  return "interleave" + std::to_string(channels);
}

void RegisterSet(const std::string& name, const TPixelKernels* kernels) {
  benchmark::RegisterBenchmark(("swap/" + name).c_str(), BenchSwap, kernels)->MinTime(0.02);
  for (int channels = 2; channels <= kMaxKernelChannels; ++channels) {
    const std::string full = InterleaveGroup(channels) + "/" + name;
    benchmark::RegisterBenchmark(full.c_str(), BenchInterleave, kernels, channels)->MinTime(0.02);
  }
}

}  // namespace

std::vector<std::string> RegisterKernelBenchmarks() {
  RegisterSet("typed", nullptr);
  for (const TPixelKernels* kernels :
       {&SatCommonUtils::PlainKernels(), SatCommonUtils::Sse41Kernels(),
        SatCommonUtils::Avx2Kernels()}) {
    if (kernels != nullptr) RegisterSet(kernels->name, kernels);
  }
  std::vector<std::string> groups{"swap"};
  for (int channels = 2; channels <= kMaxKernelChannels; ++channels) {
    groups.push_back(InterleaveGroup(channels));
  }
  return groups;
}

}  // namespace RavelinBench
