// What the targets share that know the structure of their inputs.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <random>
#include <string>

extern "C" {
/// libFuzzer's own changes, in place; gives the new size.
std::size_t LLVMFuzzerMutate(std::uint8_t* data, std::size_t size, std::size_t maxSize);
/// What libFuzzer calls in place of its own where a target brings it.
std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size, std::size_t maxSize,
                                    unsigned int seed);
}

using Random = std::minstd_rand;

/// From 0 to `end` - 1; 0 when there is nothing to choose from.
inline std::size_t Below(std::size_t end, Random& random) {
  return end == 0 ? 0 : random() % end;
}

/// The piece changed as libFuzzer does, longer by some bytes at most.
inline std::string Mutated(const std::string& piece) {
  constexpr std::size_t kMoreBytes = 16;
  std::string buffer = piece + std::string(kMoreBytes, '\0');
  auto* const bytes = reinterpret_cast<std::uint8_t*>(buffer.data());
  buffer.resize(LLVMFuzzerMutate(bytes, piece.size(), buffer.size()));
  return buffer;
}

/// Puts the text in place of the input, cut to the room that there is.
inline std::size_t Replace(const std::string& text, std::uint8_t* data, std::size_t maxSize) {
  const std::size_t size = text.size() < maxSize ? text.size() : maxSize;
  if (size != 0) std::memcpy(data, text.data(), size);
  return size;
}
