// Prints the smallest and the largest sample of a raw big-endian band.
#include <Kv/Kv.h>
#include <SatCommonUtils/Module.h>
#include <SatCommonUtils/Raster.h>

#include <algorithm>
#include <cstdio>
#include <exception>
#include <string>
#include <vector>

using SatCommonUtils::TRawWordDibData;

static int PrintRange(const char* path, unsigned long width, unsigned long height) {
  var_a_legacy::var_a<TKvStream*> file(new TKvFileStream(TKvPath(path), kvOpenRead, kvShareAll));
  TRawWordDibData band;
  if (!band.Setup(file, width, height, TRawWordDibData::boBigEndian)) return 1;

  std::vector<unsigned short> samples(width * height);
  const TKvDibDataOutBuffer out{reinterpret_cast<unsigned char*>(samples.data()),
                                static_cast<long>(width * sizeof(unsigned short))};
  if (band.GetRect(out, band.Bounds(), iqNearest, 0, nullptr) != kvDibWritten) return 1;

  const auto range = std::minmax_element(samples.begin(), samples.end());
  std::printf("%lu x %lu samples from %d to %d\n", width, height, *range.first, *range.second);
  return 0;
}

int main(int argc, char** argv) try {
  if (argc != 4) return 2;
  Init_Ravelin();
  const int status = PrintRange(argv[1], std::stoul(argv[2]), std::stoul(argv[3]));
  Deinit_Ravelin();
  return status;
} catch (const std::exception& error) {
  std::fprintf(stderr, "%s\n", error.what());
  return 1;
}
