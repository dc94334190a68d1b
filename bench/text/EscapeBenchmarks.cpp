// Encodes and decodes a megabyte, into a buffer that is there and from string to string.
#include <benchmark/benchmark.h>

#include <random>
#include <string>

#include "SatCommonUtils/Text.h"

namespace RavelinBench {
namespace {

using SatCommonUtils::Decode;
using SatCommonUtils::Encode;

constexpr unsigned long kSize = 1000000;

using Convert = unsigned long (*)(const char*, unsigned long, char*, unsigned long);
using ConvertString = void (*)(std::string, std::string*);

/// `pieces`, one after the other, over and over.
std::string Repeated(const std::string& pieces) {
  std::string text;
  while (text.size() < kSize) text += pieces;
  return text;
}

/// `plain` bytes in the mean between two of `special`.
std::string Mixed(double plain, const std::string& special) {
  std::mt19937 random(1);
  std::geometric_distribution<int> run(1 / (plain + 1));
  std::string text;
  while (text.size() < kSize) {
    text.append(static_cast<std::size_t>(run(random)), 'x');
    text += special[random() % special.size()];
  }
  return text;
}

void BenchBuffer(benchmark::State& state, Convert convert, const std::string& text) {
  std::string out(2 * text.size(), '\0');
  for (auto unused : state) {
    benchmark::DoNotOptimize(convert(text.data(), text.size(), out.data(), 0));
    benchmark::ClobberMemory();
  }
  state.SetBytesProcessed(state.iterations() * static_cast<long>(text.size()));
}

void BenchMeasure(benchmark::State& state, Convert convert, const std::string& text) {
  for (auto unused : state) {
    benchmark::DoNotOptimize(convert(text.data(), text.size(), nullptr, 0));
  }
  state.SetBytesProcessed(state.iterations() * static_cast<long>(text.size()));
}

/// With the copy that the argument is.
void BenchString(benchmark::State& state, ConvertString convert, const std::string& text) {
  for (auto unused : state) {
    std::string out;
    convert(text, &out);
    benchmark::DoNotOptimize(out.data());
  }
  state.SetBytesProcessed(state.iterations() * static_cast<long>(text.size()));
}

void RegisterForms(const std::string& name, Convert convert, ConvertString convertString,
                   const std::string& text) {
  benchmark::RegisterBenchmark((name + "/buffer").c_str(), BenchBuffer, convert, text);
  benchmark::RegisterBenchmark((name + "/measure").c_str(), BenchMeasure, convert, text);
  benchmark::RegisterBenchmark((name + "/string").c_str(), BenchString, convertString, text);
}

void RegisterEncode(const std::string& name, const std::string& text) {
  RegisterForms("encode/" + name, Encode, Encode, text);
}

void RegisterDecode(const std::string& name, const std::string& text) {
  RegisterForms("decode/" + name, Decode, Decode, text);
}

const bool registered = [] {
  RegisterEncode("plain", Repeated("plain text "));
  RegisterEncode("lines", Mixed(40, "\n"));
  RegisterEncode("mixed", Mixed(1, "\t\n\r"));
  RegisterEncode("alternating", Repeated("x\t"));
  RegisterEncode("tabs", Repeated("\t"));
  RegisterEncode("backslashes", Repeated("\\"));
  RegisterDecode("plain", Repeated("plain text "));
  RegisterDecode("lines", Mixed(40, "\\"));
  RegisterDecode("mixed", Mixed(1, "\\tnrx"));
  RegisterDecode("a_word", Repeated("\\n123456"));
  RegisterDecode("escapes", Repeated("\\t"));
  RegisterDecode("alternating", Repeated("x\\"));
  RegisterDecode("backslashes", Repeated("\\"));
  return true;
}();

}  // namespace
}  // namespace RavelinBench
