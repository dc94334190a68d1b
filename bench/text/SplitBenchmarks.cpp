// Splits texts into fields and numbers, beside the least that this takes.
#include <benchmark/benchmark.h>

#include <charconv>
#include <cstdio>
#include <cstring>
#include <random>
#include <stdexcept>
#include <string>
#include <system_error>
#include <vector>

#include "SatCommonUtils/Text.h"
#include "bench/support/Size.h"

namespace RavelinBench {
namespace {

using SatCommonUtils::SplitString;
using SatCommonUtils::SplitStringIntoDoubles;
using SatCommonUtils::SplitStringQuot;

constexpr std::size_t kBytes = 10000000;

/// Numbers as measurements have them, six to seventeen digits, a blank between two.
std::string Numbers(std::size_t bytes) {
  std::mt19937_64 random(1);
  std::string made;
  while (made.size() < bytes) {
    const double value = std::uniform_real_distribution<double>(-1000, 1000)(random);
    char number[40];
    std::snprintf(number, sizeof number, "%.*g ", static_cast<int>(6 + random() % 12), value);
    made += number;
  }
  made.pop_back();
  return made;
}

/// Fields of eight bytes, a comma behind each.
std::string Fields() {
  std::string text;
  for (std::size_t i = 0; text.size() < kBytes; ++i) {
    text.append(std::to_string(10000000 + i % 90000000)).append(1, ',');
  }
  return text;
}

/// The same with quotes as their first and last bytes, a comma between them.
std::string QuotedFields() {
  std::string text = Fields();
  for (std::size_t begin = 0; begin < text.size(); begin += 9) {
    text[begin] = text[begin + 7] = '"';
    text[begin + 3] = ',';
  }
  return text;
}

/// All tokens of the text by `convert`, which gives the end of the number at `begin`.
template <class Convert>
std::vector<double> EachToken(const std::string& text, Convert convert) {
  std::vector<double> numbers;
  for (const char* begin = text.c_str();; ++begin) {
    double number = 0;
    begin = convert(begin, text.c_str() + text.size(), &number);
    numbers.push_back(number);
    if (*begin == '\0') return numbers;
  }
}

/// One pass of std::from_chars, which finds the ends of the numbers itself.
std::vector<double> ByFromChars(const std::string& text) {
  return EachToken(text, [](const char* begin, const char* end, double* number) {
    const auto [stop, error] = std::from_chars(begin, end, *number);
    if (error != std::errc()) throw std::runtime_error("no number");
    return stop;
  });
}

/// The C library's scan of each token, in a buffer of its own.
std::vector<double> ByScan(const std::string& text) {
  return EachToken(text, [](const char* begin, const char* /*end*/, double* number) {
    char token[64];
    const std::size_t size = std::strcspn(begin, " ");
    std::memcpy(token, begin, size);
    token[size] = '\0';
    if (std::sscanf(token, "%lg", number) != 1) throw std::runtime_error("no number");
    return begin + size;
  });
}

std::vector<double> BySplitting(const std::string& text) {
  std::vector<double> numbers;
  SplitStringIntoDoubles(text.c_str(), " ", &numbers, nullptr);
  return numbers;
}

void SetSpeed(benchmark::State& state, const std::string& text) {
  state.SetBytesProcessed(state.iterations() * static_cast<long>(text.size()));
}

void BenchNumbers(benchmark::State& state, std::vector<double> (*split)(const std::string&),
                  int bytes) {
  const std::string text = Numbers(static_cast<std::size_t>(bytes));
  if (split(text) != ByScan(text)) throw std::runtime_error("the numbers differ");
  for (auto unused : state) benchmark::DoNotOptimize(split(text));
  SetSpeed(state, text);
}

void RegisterNumbers(const char* name, std::vector<double> (*split)(const std::string&),
                     int bytes) {
  benchmark::RegisterBenchmark(name, BenchNumbers, split, bytes)->Unit(benchmark::kMillisecond);
}

const bool registered = [] {
  const int bytes = Sized(10000000);
  RegisterNumbers("numbers/ours", BySplitting, bytes);
  RegisterNumbers("numbers/peer:sscanf", ByScan, bytes);
  RegisterNumbers("numbers/floor", ByFromChars, bytes);
  RegisterNumbers("numbers/4x", BySplitting, kGrowth * bytes);
  return true;
}();

using ArraySplitter = unsigned int (*)(const char*, const char*, std::string*, unsigned int,
                                       TKvProgressHandler*, bool);

void BenchArray(benchmark::State& state, const std::string& text, ArraySplitter split) {
  std::vector<std::string> out(text.size() / 2 + 1);
  const auto room = static_cast<unsigned int>(out.size());
  for (auto unused : state) {
    benchmark::DoNotOptimize(split(text.c_str(), ",;\t", out.data(), room, nullptr, true));
  }
  SetSpeed(state, text);
}

void BenchVector(benchmark::State& state, const std::string& text) {
  std::vector<std::string> out;
  for (auto unused : state) {
    out.clear();
    benchmark::DoNotOptimize(SplitStringQuot(text.c_str(), ",;\t", &out, true));
  }
  SetSpeed(state, text);
}

BENCHMARK_CAPTURE(BenchArray, , Fields(), SplitString)->Name("split/fields");
BENCHMARK_CAPTURE(BenchArray, , Fields(), SplitStringQuot)->Name("split_quot/fields");
BENCHMARK_CAPTURE(BenchArray, , QuotedFields(), SplitStringQuot)->Name("split_quot/quoted");
BENCHMARK_CAPTURE(BenchVector, , Fields())->Name("split_quot/vector");
BENCHMARK_CAPTURE(BenchVector, , QuotedFields())->Name("split_quot/vector_quoted");

}  // namespace
}  // namespace RavelinBench
