// The least that writing and reading the ring can cost: the bytes of the file, ready made, with one
// call of the system each.
#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <unistd.h>

#include <memory>
#include <stdexcept>
#include <string>

#include "bench/shapefile/Ring.h"

namespace RavelinBench {
namespace {

const std::size_t kBytes = 156 + (static_cast<std::size_t>(kPoints) + 1) * 16;

class TDescriptor {
 public:
  TDescriptor(const std::string& path, int flags) : number_(open(path.c_str(), flags, 0666)) {
    if (number_ < 0) throw std::runtime_error(path + " cannot be opened");
  }
  TDescriptor(const TDescriptor&) = delete;
  TDescriptor& operator=(const TDescriptor&) = delete;
  ~TDescriptor() { close(number_); }

  int Number() const { return number_; }

 private:
  int number_;
};

void Load(const std::string& path, char* bytes) {
  const TDescriptor file(path, O_RDONLY);
  if (read(file.Number(), bytes, kBytes) != static_cast<ssize_t>(kBytes)) {
    throw std::runtime_error("not read");
  }
}

void BenchWrite(benchmark::State& state) {
  const std::unique_ptr<char[]> bytes(new char[kBytes]);
  Load(RingFile("ready.shp", kPoints), bytes.get());
  const std::string path = TemporaryPath("floor.shp");
  for (auto unused : state) {
    RemoveUntimed(path, &state);
    const TDescriptor file(path, O_WRONLY | O_CREAT | O_TRUNC);
    if (write(file.Number(), bytes.get(), kBytes) != static_cast<ssize_t>(kBytes)) {
      throw std::runtime_error("not written");
    }
  }
}

void BenchRead(benchmark::State& state) {
  const std::string path = RingFile("floor_read.shp", kPoints);
  for (auto unused : state) {
    const std::unique_ptr<char[]> bytes(new char[kBytes]);
    Load(path, bytes.get());
    benchmark::DoNotOptimize(bytes.get());
  }
}

BENCHMARK(BenchWrite)->Name("shapefile_write/floor")->Unit(benchmark::kMillisecond);
BENCHMARK(BenchRead)->Name("shapefile_read/floor")->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace RavelinBench
