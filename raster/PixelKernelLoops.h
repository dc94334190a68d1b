// The vector kernels, written once for every vector width. Include it in one source file per
// instruction set, which supplies the vector type `V`:
//
//   V::Vec             one or more lanes of 16 bytes; every operation works lane by lane
//   V::kSamples        16-bit samples in a Vec
//   Load, Store        unaligned
//   StoreLanes<N>      stores the first lanes of N vectors, then their second lanes
//   UnpackLow<W>, UnpackHigh<W>   weave the low or high halves of two lanes, elements of W bytes
//   Shuffle(v, table)  byte i of each lane becomes its byte table[i]
//   Blend<mask>(a, b)  16-bit element i of each lane from b where bit i of mask is set
//
// What a block of pixels goes through is inlined by force: the shuffle tables stay in registers
// over the blocks, which is worth up to a quarter of the time.
//
// Everything here is internal to the including file, and nothing but intrinsics and C headers may
// be included: a function shared with other files could reach a machine that lacks the
// instructions.
#pragma once

#include <immintrin.h>
#include <stddef.h>

// NOLINTBEGIN(cert-dcl59-cpp,misc-definitions-in-headers): internal on purpose
namespace {

/// The place of element `slot` of output vector `vector`, as an element of all `Channels` outputs.
template <int Width>
constexpr int ElementIndex(int vector, int slot) {
  return vector * (16 / Width) + slot;
}

/// A permutation of a lane's bytes.
struct alignas(16) TByteTable {
  unsigned char byte[16];
};

/// Brings every element of a channel into the slot that it has in its output vector. With an odd
/// number of channels no two of a lane's elements want the same slot.
template <int Width, int Channels>
constexpr TByteTable SlotTable(int channel) {
  TByteTable table{};
  constexpr int kElements = 16 / Width;
  for (int pixel = 0; pixel < kElements; ++pixel) {
    const int slot = (pixel * Channels + channel) % kElements;
    for (int i = 0; i < Width; ++i) {
      table.byte[slot * Width + i] = static_cast<unsigned char>(pixel * Width + i);
    }
  }
  return table;
}

template <int Width, int Channels, int Channel>
constexpr TByteTable kSlotTable = SlotTable<Width, Channels>(Channel);

/// The 16-bit elements of output vector `vector` that belong to `channel`.
template <int Width, int Channels>
constexpr int BlendMask(int vector, int channel) {
  int mask = 0;
  for (int i = 0; i < 8; ++i) {
    const int slot = 2 * i / Width;
    if (ElementIndex<Width>(vector, slot) % Channels == channel) mask |= 1 << i;
  }
  return mask;
}

template <class V, int Width, int Channels, int Channel = 0>
[[gnu::always_inline]] inline void MoveToSlots(const typename V::Vec* in, typename V::Vec* slots) {
  if constexpr (Channel < Channels) {
    slots[Channel] = V::Shuffle(in[Channel], kSlotTable<Width, Channels, Channel>.byte);
    MoveToSlots<V, Width, Channels, Channel + 1>(in, slots);
  }
}

/// Output vector `Vector` of the channels up to `Channel`.
template <class V, int Width, int Channels, int Vector, int Channel>
[[gnu::always_inline]] inline typename V::Vec BlendSlots(const typename V::Vec* slots) {
  if constexpr (Channel == 0) {
    return slots[0];
  } else {
    return V::template Blend<BlendMask<Width, Channels>(Vector, Channel)>(
        BlendSlots<V, Width, Channels, Vector, Channel - 1>(slots), slots[Channel]);
  }
}

template <class V, int Width, int Channels, int Vector = 0>
[[gnu::always_inline]] inline void BlendAll(const typename V::Vec* slots, typename V::Vec* out) {
  if constexpr (Vector < Channels) {
    out[Vector] = BlendSlots<V, Width, Channels, Vector, Channels - 1>(slots);
    BlendAll<V, Width, Channels, Vector + 1>(slots, out);
  }
}

template <class V, int Width, int Pairs, int Pair = 0>
[[gnu::always_inline]] inline void WeavePairs(const typename V::Vec* in, typename V::Vec* low,
                                              typename V::Vec* high) {
  if constexpr (Pair < Pairs) {
    low[Pair] = V::template UnpackLow<Width>(in[2 * Pair], in[2 * Pair + 1]);
    high[Pair] = V::template UnpackHigh<Width>(in[2 * Pair], in[2 * Pair + 1]);
    WeavePairs<V, Width, Pairs, Pair + 1>(in, low, high);
  }
}

/// Interleaves within each lane `Channels` vectors of elements of `Width` bytes. An even number of
/// channels is half as many of elements twice as wide, once for the low and once for the high half.
template <class V, int Width, int Channels>
[[gnu::always_inline]] inline void Weave(const typename V::Vec* in, typename V::Vec* out) {
  if constexpr (Channels == 1) {
    out[0] = in[0];
  } else if constexpr (Channels % 2 == 0) {
    typename V::Vec low[Channels / 2];
    typename V::Vec high[Channels / 2];
    WeavePairs<V, Width, Channels / 2>(in, low, high);
    Weave<V, 2 * Width, Channels / 2>(low, out);
    Weave<V, 2 * Width, Channels / 2>(high, out + Channels / 2);
  } else {
    typename V::Vec slots[Channels];
    MoveToSlots<V, Width, Channels>(in, slots);
    BlendAll<V, Width, Channels>(slots, out);
  }
}

template <class V, int Channels, int Channel = 0>
[[gnu::always_inline]] inline void LoadAll(const unsigned char* const* from, size_t pixel,
                                           typename V::Vec* in) {
  if constexpr (Channel < Channels) {
    in[Channel] = V::Load(from[Channel] + 2 * pixel);
    LoadAll<V, Channels, Channel + 1>(from, pixel, in);
  }
}

template <class V, int Channels>
[[gnu::always_inline]] inline void InterleaveBlock(unsigned char* to,
                                                   const unsigned char* const* from, size_t pixel) {
  typename V::Vec in[Channels];
  typename V::Vec out[Channels];
  LoadAll<V, Channels>(from, pixel, in);
  Weave<V, 2, Channels>(in, out);
  V::template StoreLanes<Channels>(to + 2 * Channels * pixel, out);
}

/// Wants at least V::kSamples pixels: the last block is one that ends with the last pixel, and
/// overlaps the one before it.
template <class V, int Channels>
void InterleaveChannels(unsigned char* to, const unsigned char* const* from, size_t count) {
  size_t pixel = 0;
  for (; pixel + V::kSamples <= count; pixel += V::kSamples) {
    InterleaveBlock<V, Channels>(to, from, pixel);
  }
  if (pixel < count) InterleaveBlock<V, Channels>(to, from, count - V::kSamples);
}

/// Wants 2 to 8 channels and at least V::kSamples pixels.
template <class V>
void InterleaveBlocks(unsigned char* to, const unsigned char* const* from, int channels,
                      size_t count) {
  switch (channels) {
    case 2:
      return InterleaveChannels<V, 2>(to, from, count);
    case 3:
      return InterleaveChannels<V, 3>(to, from, count);
    case 4:
      return InterleaveChannels<V, 4>(to, from, count);
    case 5:
      return InterleaveChannels<V, 5>(to, from, count);
    case 6:
      return InterleaveChannels<V, 6>(to, from, count);
    case 7:
      return InterleaveChannels<V, 7>(to, from, count);
    case 8:
      return InterleaveChannels<V, 8>(to, from, count);
    default:
      return;
  }
}

constexpr TByteTable kSwapTable = {{1, 0, 3, 2, 5, 4, 7, 6, 9, 8, 11, 10, 13, 12, 15, 14}};

template <class V>
[[gnu::always_inline]] inline typename V::Vec LoadSwapped(const unsigned char* from,
                                                          size_t sample) {
  return V::Shuffle(V::Load(from + 2 * sample), kSwapTable.byte);
}

/// Wants at least V::kSamples samples. The last vector is taken before anything is stored, so that
/// copying in place exchanges no sample twice.
template <class V>
void CopySwappedBlocks(unsigned char* to, const unsigned char* from, size_t count) {
  constexpr size_t kStep = 4 * V::kSamples;
  const size_t last = count - V::kSamples;
  const typename V::Vec lastVector = LoadSwapped<V>(from, last);
  size_t sample = 0;
  for (; sample + kStep <= count; sample += kStep) {
    const typename V::Vec a = LoadSwapped<V>(from, sample);
    const typename V::Vec b = LoadSwapped<V>(from, sample + V::kSamples);
    const typename V::Vec c = LoadSwapped<V>(from, sample + 2 * V::kSamples);
    const typename V::Vec d = LoadSwapped<V>(from, sample + 3 * V::kSamples);
    V::Store(to + 2 * sample, a);
    V::Store(to + 2 * (sample + V::kSamples), b);
    V::Store(to + 2 * (sample + 2 * V::kSamples), c);
    V::Store(to + 2 * (sample + 3 * V::kSamples), d);
  }
  for (; sample < last; sample += V::kSamples) {
    V::Store(to + 2 * sample, LoadSwapped<V>(from, sample));
  }
  V::Store(to + 2 * last, lastVector);
}

}  // namespace
// NOLINTEND(cert-dcl59-cpp,misc-definitions-in-headers)
