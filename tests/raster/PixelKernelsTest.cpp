#include "raster/PixelKernels.h"

#include <gtest/gtest.h>
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <new>
#include <ostream>
#include <random>
#include <string>
#include <vector>

namespace SatCommonUtils {
namespace {

using Bytes = std::vector<unsigned char>;

constexpr std::size_t kLengths = 200;
constexpr std::size_t kAlignments = 32;
constexpr std::size_t kMargin = 64;

Bytes RandomBytes(std::size_t count, std::mt19937* random) {
  Bytes bytes(count);
  for (unsigned char& byte : bytes) byte = static_cast<unsigned char>((*random)());
  return bytes;
}

void ModelCopySwapped(unsigned char* to, const unsigned char* from, std::size_t count) {
  for (std::size_t i = 0; i < count; ++i) {
    const unsigned char first = from[2 * i];
    const unsigned char second = from[2 * i + 1];
    to[2 * i] = second;
    to[2 * i + 1] = first;
  }
}

void ModelInterleave(unsigned char* to, const std::vector<const unsigned char*>& from,
                     std::size_t count) {
  const std::size_t channels = from.size();
  for (std::size_t p = 0; p < count; ++p) {
    for (std::size_t k = 0; k < channels; ++k) {
      to[2 * (p * channels + k)] = from[k][2 * p];
      to[2 * (p * channels + k) + 1] = from[k][2 * p + 1];
    }
  }
}

/// Readable and writable bytes with a page on either side that can be neither read nor written.
class FencedBytes {
 public:
  explicit FencedBytes(std::size_t size) {
    const auto page = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
    size_ = (size + page - 1) / page * page;
    mappedSize_ = size_ + 2 * page;
    void* mapped = mmap(nullptr, mappedSize_, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, /*fd=*/-1, 0);
    if (mapped == MAP_FAILED) throw std::bad_alloc();
    mapped_ = static_cast<unsigned char*>(mapped);
    if (mprotect(mapped_ + page, size_, PROT_READ | PROT_WRITE) != 0) throw std::bad_alloc();
    begin_ = mapped_ + page;
  }
  FencedBytes(FencedBytes&& other) noexcept
      : mapped_(other.mapped_),
        mappedSize_(other.mappedSize_),
        begin_(other.begin_),
        size_(other.size_) {
    other.mapped_ = nullptr;
  }
  ~FencedBytes() {
    if (mapped_ != nullptr) munmap(mapped_, mappedSize_);
  }

  /// The first bytes behind the lower fence.
  unsigned char* First() const { return begin_; }
  /// The last `count` bytes before the upper fence.
  unsigned char* Last(std::size_t count) const { return begin_ + size_ - count; }

 private:
  unsigned char* mapped_ = nullptr;
  std::size_t mappedSize_ = 0;
  unsigned char* begin_ = nullptr;
  std::size_t size_ = 0;
};

struct KernelSet {
  const char* name;
  const TPixelKernels* kernels;
};

void PrintTo(const KernelSet& set, std::ostream* out) {
  *out << set.name;
}

class PixelKernels : public testing::TestWithParam<KernelSet> {
 protected:
  void SetUp() override {
    if (GetParam().kernels == nullptr) {
      GTEST_SKIP() << "this machine does not have the instructions of " << GetParam().name;
    }
  }

  const TPixelKernels& Kernel() const { return *GetParam().kernels; }

  /// Compares the whole buffers, so that a byte written beside the samples is seen.
  void ExpectCopySwapped(std::size_t count, std::size_t toAlignment, std::size_t fromAlignment) {
    const Bytes from = RandomBytes(2 * count + kMargin, &random_);
    Bytes to = RandomBytes(2 * count + 2 * kMargin, &random_);
    Bytes expected = to;
    ModelCopySwapped(expected.data() + kMargin + toAlignment, from.data() + fromAlignment, count);
    Kernel().copySwapped(to.data() + kMargin + toAlignment, from.data() + fromAlignment, count);
    ASSERT_EQ(to, expected) << count << " samples, destination at " << toAlignment << ", source at "
                            << fromAlignment;
  }

  void ExpectInterleaved(std::size_t count, std::size_t toAlignment,
                         const std::vector<std::size_t>& fromAlignments) {
    const std::size_t channels = fromAlignments.size();
    std::vector<Bytes> sources;
    std::vector<const unsigned char*> from;
    for (const std::size_t alignment : fromAlignments) {
      sources.push_back(RandomBytes(2 * count + kMargin, &random_));
      from.push_back(sources.back().data() + alignment);
    }
    Bytes to = RandomBytes(2 * count * channels + 2 * kMargin, &random_);
    Bytes expected = to;
    ModelInterleave(expected.data() + kMargin + toAlignment, from, count);
    Kernel().interleave(to.data() + kMargin + toAlignment, from.data(), static_cast<int>(channels),
                        count);
    ASSERT_EQ(to, expected) << count << " pixels of " << channels << " channels, destination at "
                            << toAlignment << ", first source at " << fromAlignments[0];
  }

  std::vector<std::size_t> RandomAlignments(std::size_t count) {
    std::vector<std::size_t> alignments(count);
    for (std::size_t& alignment : alignments) alignment = random_() % kAlignments;
    return alignments;
  }

  std::mt19937 random_{20240611};
};

class PixelKernelsByChannels : public PixelKernels {
 protected:
  template <class Check>
  void ForEachChannelCount(const Check& check) {
    for (std::size_t channels = 2; channels <= kMaxKernelChannels; ++channels) {
      ASSERT_NO_FATAL_FAILURE(check(channels));
    }
  }
};

TEST_P(PixelKernels, CopySwappedExchangesTheTwoBytesOfASample) {
  const unsigned char from[] = {0x12, 0x34, 0xff, 0x00};
  unsigned char to[4] = {};
  Kernel().copySwapped(to, from, 2);
  EXPECT_EQ(Bytes(to, to + 4), (Bytes{0x34, 0x12, 0x00, 0xff}));
}

TEST_P(PixelKernels, CopySwappedTakesEveryLength) {
  for (std::size_t count = 0; count <= kLengths; ++count) {
    ASSERT_NO_FATAL_FAILURE(ExpectCopySwapped(count, 0, 0));
  }
}

TEST_P(PixelKernels, CopySwappedTakesEveryAlignmentOfBothBuffers) {
  for (const std::size_t count : {7U, 16U, 63U, 64U, 150U}) {
    for (std::size_t to = 0; to < kAlignments; ++to) {
      for (std::size_t from = 0; from < kAlignments; ++from) {
        ASSERT_NO_FATAL_FAILURE(ExpectCopySwapped(count, to, from));
      }
    }
  }
}

TEST_P(PixelKernels, CopySwappedTakesLongRuns) {
  for (int i = 0; i < 50; ++i) {
    const std::vector<std::size_t> alignments = RandomAlignments(2);
    ASSERT_NO_FATAL_FAILURE(ExpectCopySwapped(random_() % 20000, alignments[0], alignments[1]));
  }
}

TEST_P(PixelKernels, CopySwappedSwapsInPlaceAtEveryLengthAndAlignment) {
  for (std::size_t count = 0; count <= kLengths; ++count) {
    for (std::size_t alignment = 0; alignment < kAlignments; ++alignment) {
      Bytes bytes = RandomBytes(2 * count + 2 * kMargin, &random_);
      Bytes expected = bytes;
      unsigned char* samples = expected.data() + alignment;
      ModelCopySwapped(samples, samples, count);
      Kernel().copySwapped(bytes.data() + alignment, bytes.data() + alignment, count);
      ASSERT_EQ(bytes, expected) << count << " samples at " << alignment;
    }
  }
}

TEST_P(PixelKernels, CopySwappedStaysInsideBothBuffersAtTheirEnds) {
  const FencedBytes from(2 * kLengths);
  const FencedBytes to(2 * kLengths);
  for (std::size_t count = 0; count <= kLengths; ++count) {
    const Bytes source = RandomBytes(2 * count, &random_);
    std::copy(source.begin(), source.end(), from.Last(2 * count));
    Bytes expected(2 * count);
    ModelCopySwapped(expected.data(), source.data(), count);
    Kernel().copySwapped(to.Last(2 * count), from.Last(2 * count), count);
    ASSERT_EQ(Bytes(to.Last(2 * count), to.Last(0)), expected) << count << " samples";
  }
}

TEST_P(PixelKernels, CopySwappedStaysInsideBothBuffersAtTheirBeginnings) {
  const FencedBytes from(2 * kLengths);
  const FencedBytes to(2 * kLengths);
  for (std::size_t count = 0; count <= kLengths; ++count) {
    const Bytes source = RandomBytes(2 * count, &random_);
    std::copy(source.begin(), source.end(), from.First());
    Bytes expected(2 * count);
    ModelCopySwapped(expected.data(), source.data(), count);
    Kernel().copySwapped(to.First(), from.First(), count);
    ASSERT_EQ(Bytes(to.First(), to.First() + 2 * count), expected) << count << " samples";
  }
}

TEST_P(PixelKernelsByChannels, InterleavePutsTheChannelsOfAPixelSideBySide) {
  const unsigned char red[] = {1, 2, 3, 4};
  const unsigned char green[] = {5, 6, 7, 8};
  const unsigned char blue[] = {9, 10, 11, 12};
  const unsigned char* from[] = {red, green, blue};
  unsigned char to[12] = {};
  Kernel().interleave(to, from, 3, 2);
  EXPECT_EQ(Bytes(to, to + 12), (Bytes{1, 2, 5, 6, 9, 10, 3, 4, 7, 8, 11, 12}));
}

TEST_P(PixelKernelsByChannels, InterleaveTakesEveryLength) {
  ForEachChannelCount([&](std::size_t channels) {
    for (std::size_t count = 0; count <= kLengths; ++count) {
      ASSERT_NO_FATAL_FAILURE(
          ExpectInterleaved(count, 0, std::vector<std::size_t>(channels, std::size_t{0})));
    }
  });
}

TEST_P(PixelKernelsByChannels, InterleaveTakesEveryAlignmentOfTheDestination) {
  ForEachChannelCount([&](std::size_t channels) {
    for (const std::size_t count : {7U, 8U, 15U, 16U, 33U, 47U}) {
      for (std::size_t to = 0; to < kAlignments; ++to) {
        ASSERT_NO_FATAL_FAILURE(ExpectInterleaved(count, to, RandomAlignments(channels)));
      }
    }
  });
}

TEST_P(PixelKernelsByChannels, InterleaveTakesEveryAlignmentOfEachSource) {
  ForEachChannelCount([&](std::size_t channels) {
    for (std::size_t channel = 0; channel < channels; ++channel) {
      for (std::size_t alignment = 0; alignment < kAlignments; ++alignment) {
        std::vector<std::size_t> alignments = RandomAlignments(channels);
        alignments[channel] = alignment;
        ASSERT_NO_FATAL_FAILURE(ExpectInterleaved(37, random_() % kAlignments, alignments));
      }
    }
  });
}

TEST_P(PixelKernelsByChannels, InterleaveTakesLongRuns) {
  ForEachChannelCount([&](std::size_t channels) {
    for (int i = 0; i < 20; ++i) {
      ASSERT_NO_FATAL_FAILURE(
          ExpectInterleaved(random_() % 5000, random_() % kAlignments, RandomAlignments(channels)));
    }
  });
}

TEST_P(PixelKernelsByChannels, InterleaveTakesOneSourceForAllChannels) {
  ForEachChannelCount([&](std::size_t channels) {
    const Bytes source = RandomBytes(2 * kLengths, &random_);
    const std::vector<const unsigned char*> from(channels, source.data());
    Bytes expected(2 * kLengths * channels);
    ModelInterleave(expected.data(), from, kLengths);
    Bytes to(expected.size());
    Kernel().interleave(to.data(), from.data(), static_cast<int>(channels), kLengths);
    ASSERT_EQ(to, expected) << channels << " channels";
  });
}

TEST_P(PixelKernelsByChannels, InterleaveStaysInsideAllBuffersAtTheirEnds) {
  ForEachChannelCount([&](std::size_t channels) {
    std::vector<FencedBytes> sources;
    for (std::size_t k = 0; k < channels; ++k) sources.emplace_back(2 * kLengths);
    const FencedBytes to(2 * kLengths * channels);
    for (std::size_t count = 0; count <= kLengths; ++count) {
      std::vector<const unsigned char*> from;
      for (const FencedBytes& source : sources) {
        const Bytes samples = RandomBytes(2 * count, &random_);
        from.push_back(std::copy(samples.begin(), samples.end(), source.Last(2 * count)) -
                       static_cast<std::ptrdiff_t>(2 * count));
      }
      Bytes expected(2 * count * channels);
      ModelInterleave(expected.data(), from, count);
      Kernel().interleave(to.Last(expected.size()), from.data(), static_cast<int>(channels), count);
      ASSERT_EQ(Bytes(to.Last(expected.size()), to.Last(0)), expected)
          << count << " pixels of " << channels << " channels";
    }
  });
}

TEST_P(PixelKernelsByChannels, InterleaveStaysInsideAllBuffersAtTheirBeginnings) {
  ForEachChannelCount([&](std::size_t channels) {
    std::vector<FencedBytes> sources;
    for (std::size_t k = 0; k < channels; ++k) sources.emplace_back(2 * kLengths);
    const FencedBytes to(2 * kLengths * channels);
    for (std::size_t count = 0; count <= kLengths; ++count) {
      std::vector<const unsigned char*> from;
      for (const FencedBytes& source : sources) {
        const Bytes samples = RandomBytes(2 * count, &random_);
        std::copy(samples.begin(), samples.end(), source.First());
        from.push_back(source.First());
      }
      Bytes expected(2 * count * channels);
      ModelInterleave(expected.data(), from, count);
      Kernel().interleave(to.First(), from.data(), static_cast<int>(channels), count);
      ASSERT_EQ(Bytes(to.First(), to.First() + expected.size()), expected)
          << count << " pixels of " << channels << " channels";
    }
  });
}

std::vector<KernelSet> AllSets() {
  return {{"plain", &PlainKernels()}, {"sse4.1", Sse41Kernels()}, {"avx2", Avx2Kernels()}};
}

std::string TestName(const testing::TestParamInfo<KernelSet>& info) {
  std::string name = info.param.name;
  std::erase(name, '.');
  return name;
}

INSTANTIATE_TEST_SUITE_P(Sets, PixelKernels, testing::ValuesIn(AllSets()), TestName);
INSTANTIATE_TEST_SUITE_P(Sets, PixelKernelsByChannels, testing::ValuesIn(AllSets()), TestName);

TEST(PixelKernelChoice, EachSetNamesItsInstructions) {
  for (const KernelSet& set : AllSets()) {
    if (set.kernels == nullptr) continue;
    EXPECT_STREQ(set.kernels->name, set.name);
  }
}

TEST(PixelKernelChoice, TheBestSetOfTheMachineIsChosen) {
  const TPixelKernels* best = &PlainKernels();
  if (Sse41Kernels() != nullptr) best = Sse41Kernels();
  if (Avx2Kernels() != nullptr) best = Avx2Kernels();
  EXPECT_EQ(&Kernels(), best);
}

}  // namespace
}  // namespace SatCommonUtils
