// Opens labels of the same statements with GDAL: its driver of planetary labels reads them all into
// its lists before it looks for the image. From memory.
#include <benchmark/benchmark.h>
#include <cpl_vsi.h>
#include <gdal.h>

#include <stdexcept>
#include <string>

#include "bench/metadata/Labels.h"
#include "bench/support/Size.h"

namespace RavelinBench {
namespace {

constexpr const char* kImage = "/vsimem/bench_image.img";

/// What the driver needs to know of the image, before the statements: it looks there first.
std::string PlanetaryLabel(int statements) {
  return "PDS_VERSION_ID = PDS3\nRECORD_TYPE = FIXED_LENGTH\nRECORD_BYTES = 16\n"
         "FILE_RECORDS = 16\n^IMAGE = \"bench_image.img\"\nOBJECT = IMAGE\nLINES = 16\n"
         "LINE_SAMPLES = 16\nSAMPLE_TYPE = MSB_UNSIGNED_INTEGER\nSAMPLE_BITS = 8\n"
         "END_OBJECT = IMAGE\n" +
         Statements(TDialect::kNasa, statements);
}

/// A file in GDAL's memory, made of bytes that outlive it.
class TMemoryFile {
 public:
  TMemoryFile(const char* path, std::string* bytes) : path_(path) {
    VSIFCloseL(
        VSIFileFromMemBuffer(path, reinterpret_cast<GByte*>(bytes->data()), bytes->size(), 0));
  }
  TMemoryFile(const TMemoryFile&) = delete;
  TMemoryFile& operator=(const TMemoryFile&) = delete;
  ~TMemoryFile() { VSIUnlink(path_); }

 private:
  const char* path_;
};

void BenchGdal(benchmark::State& state, int statements) {
  constexpr const char* kLabel = "/vsimem/bench_label.lbl";
  static const char* const drivers[] = {"PDS", nullptr};
  std::string text = PlanetaryLabel(statements);
  std::string pixels(256, '\0');
  const TMemoryFile label(kLabel, &text);
  const TMemoryFile image(kImage, &pixels);
  for (auto unused : state) {
    GDALDatasetH const data = GDALOpenEx(kLabel, GDAL_OF_RASTER, drivers, nullptr, nullptr);
    if (data == nullptr) throw std::runtime_error("GDAL does not read the label");
    GDALClose(data);
  }
  state.SetBytesProcessed(state.iterations() * static_cast<long>(text.size()));
}

/// For both dialects: the general one is not the driver's, the statements are the same.
const bool registered = [] {
  GDALAllRegister();
  for (const std::string dialect : {"nasa_pvl", "pvl"}) {
    for (const int megabytes : {1, 16}) {
      const std::string name = dialect + "/" + std::to_string(megabytes) + "MB/peer:GDAL";
      benchmark::RegisterBenchmark(name.c_str(), BenchGdal,
                                   megabytes * Sized(kStatementsOfMegabyte))
          ->Unit(benchmark::kMillisecond);
    }
  }
  return true;
}();

}  // namespace
}  // namespace RavelinBench
