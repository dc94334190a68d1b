#include "host/raster/InterleavedFile.h"

#include <bit>

#include "host/ProgressBar.h"
#include "host/raster/EnviHeader.h"

namespace ravelin {
namespace {

static_assert(std::endian::native == std::endian::little, "samples are written as they are");

EnviHeader HeaderOf(const AreaReader& area, const std::vector<std::string>& bandNames) {
  EnviHeader header;
  header.samples = static_cast<unsigned long>(area.Width());
  header.lines = static_cast<unsigned long>(area.Height());
  header.bands = static_cast<unsigned long>(area.Channels());
  header.bandNames = bandNames;
  return header;
}

}  // namespace

void WriteInterleaved(AreaReader& area, const std::vector<std::string>& bandNames,
                      PendingFile& image, PendingFile& header, const AreaReader::BlockUser& use,
                      std::ostream* terminal) {
  const std::string text = FormatEnviHeader(HeaderOf(area, bandNames));
  header.Write(text.data(), text.size());
  ProgressBar bar(terminal, static_cast<unsigned long>(area.Height()));
  const auto write = [&](const std::uint16_t* samples, long rows) {
    const long count = rows * area.Width() * area.Channels();
    image.Write(samples, static_cast<std::size_t>(count) * sizeof(std::uint16_t));
    if (use) use(samples, rows);
  };
  area.ReadBlocks(write, &bar);
}

void WriteInterleaved(AreaReader& area, const std::vector<std::string>& bandNames,
                      const std::string& path, std::ostream* terminal) {
  PendingFile image(path);
  PendingFile header(EnviHeaderPath(path));
  WriteInterleaved(area, bandNames, image, header, {}, terminal);
  PendingFile::CommitTogether({&header, &image});
}

}  // namespace ravelin
