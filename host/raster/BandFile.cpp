#include "host/raster/BandFile.h"

#include "host/HostError.h"
#include "host/io/InputFile.h"
#include "host/raster/PaddedStream.h"
#include "host/raster/SubStream.h"

namespace ravelin {
namespace {

constexpr unsigned long kMaxFileBytes = 0x7fffffffffffffff;

constexpr unsigned long kSampleBytes = 2;

unsigned long PixelBytes(const ImageSize& size) {
  return static_cast<unsigned long>(size.width) * static_cast<unsigned long>(size.height) *
         kSampleBytes;
}

std::string Wanted(const BandLayout& layout, unsigned long bytes) {
  std::string text = ToText(layout.size) + " pixels of 2 bytes";
  if (layout.offset > 0) text += " behind " + std::to_string(layout.offset) + " bytes of header";
  return text + " make " + std::to_string(bytes);
}

}  // namespace

unsigned long BandFileBytes(const std::string& file, const BandLayout& layout) {
  unsigned long bytes = 0;
  if (layout.offset > kMaxFileBytes ||
      __builtin_add_overflow(PixelBytes(layout.size), layout.offset, &bytes) ||
      bytes > kMaxFileBytes) {
    throw HostError(file,
                    "cannot hold " + ToText(layout.size) + " pixels behind " +
                        std::to_string(layout.offset) + " bytes: no file is that long",
                    layout.remedy);
  }
  return bytes;
}

BandFile::BandFile(const std::string& path, const BandLayout& layout) : path_(path) {
  CheckSize(layout);
  const auto width = static_cast<unsigned long>(layout.size.width);
  const auto height = static_cast<unsigned long>(layout.size.height);
  if (!Setup(OpenPixels(layout), width, height, layout.order)) {
    throw HostError(path_, "makes no image of " + ToText(layout.size) + " pixels", layout.remedy);
  }
}

void BandFile::CheckSize(const BandLayout& layout) {
  const unsigned long wanted = BandFileBytes(path_, layout);
  const unsigned long there = RegularFileSize(path_);
  if (there < wanted) missing_ = wanted - there;
  if (there == wanted || (there < wanted && layout.allowShort)) return;
  const std::string what =
      "holds " + std::to_string(there) + " bytes, but " + Wanted(layout, wanted);
  throw HostError(path_, what, there < wanted ? layout.shortRemedy : layout.remedy);
}

var_a_legacy::var_a<TKvStream*> BandFile::OpenPixels(const BandLayout& layout) const {
  const var_a_legacy::var_a<TKvFileStream*> file(new TKvFileStream);
  if (!file->Open(TKvPath(path_), kvOpenRead, kvShareAll)) {
    throw HostError(path_, "cannot be opened", "check its permissions");
  }
  var_a_legacy::var_a<TKvStream*> pixels = file;
  if (layout.offset > 0) {
    pixels = var_a_legacy::var_a<TKvStream*>(new SubStream(pixels, layout.offset));
  }
  if (missing_ > 0) {
    const unsigned long bytes = PixelBytes(layout.size);
    pixels = var_a_legacy::var_a<TKvStream*>(new PaddedStream(pixels, bytes));
  }
  return pixels;
}

int BandFile::GetRect(const TKvDibDataOutBuffer& out, const TKvDibRect& rect,
                      const TInterpolationQuality& quality, int param,
                      TKvProgressHandler* progress) {
  const int result = TRawWordDibData::GetRect(out, rect, quality, param, progress);
  if (result != kvDibWritten) {
    throw HostError(path_, "could not be read, or there was no memory for a part of it",
                    "check the disk, and that the file does not change meanwhile");
  }
  return result;
}

}  // namespace ravelin
