#include <gdal.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>

#include "bench/raster/Reader.h"

namespace RavelinBench {
namespace {

std::string OpenTag(const TDataSet& set) {
  std::ostringstream tag;
  tag << "<VRTDataset rasterXSize='" << set.width << "' rasterYSize='" << set.height << "'>";
  return tag.str();
}

/// A virtual raster whose bands are raw files.
std::string RawBandsXml(const TDataSet& set) {
  std::ostringstream xml;
  xml << OpenTag(set);
  for (std::size_t i = 0; i < set.files.size(); ++i) {
    xml << "<VRTRasterBand dataType='UInt16' band='" << i + 1 << "' subClass='VRTRawRasterBand'>"
        << "<SourceFilename relativeToVRT='0'>" << set.files[i].path << "</SourceFilename>"
        << "<ImageOffset>0</ImageOffset><PixelOffset>2</PixelOffset>"
        << "<LineOffset>" << 2 * set.width << "</LineOffset><ByteOrder>MSB</ByteOrder>"
        << "</VRTRasterBand>";
  }
  xml << "</VRTDataset>";
  return xml.str();
}

/// The header beside a raw file that makes it a raster of its own.
void WriteEnviHeader(const TRawFile& file) {
  std::ofstream header(std::filesystem::path(file.path).replace_extension(".hdr"));
  header << "ENVI\nsamples = " << file.width << "\nlines = " << file.height
         << "\nbands = 1\nheader offset = 0\nfile type = ENVI Standard\ndata type = 12\n"
         << "interleave = bsq\nbyte order = 1\n";
  if (!header.flush()) throw std::runtime_error("cannot write the header of " + file.path);
}

std::string RectXml(const char* name, long left, long top, const TRawFile& file) {
  std::ostringstream xml;
  xml << "<" << name << " xOff='" << left << "' yOff='" << top << "' xSize='" << file.width
      << "' ySize='" << file.height << "'/>";
  return xml.str();
}

/// A virtual raster of one band that is put together from tiles.
std::string MosaicXml(const TDataSet& set) {
  std::ostringstream xml;
  xml << OpenTag(set) << "<VRTRasterBand dataType='UInt16' band='1'>";
  for (std::size_t i = 0; i < set.files.size(); ++i) {
    const TRawFile& file = set.files[i];
    const long left = static_cast<long>(i) % set.tilesAcross * file.width;
    const long top = static_cast<long>(i) / set.tilesAcross * file.height;
    xml << "<SimpleSource><SourceFilename relativeToVRT='0'>" << file.path
        << "</SourceFilename><SourceBand>1</SourceBand><SourceProperties RasterXSize='"
        << file.width << "' RasterYSize='" << file.height << "' DataType='UInt16' BlockXSize='"
        << file.width << "' BlockYSize='1'/>" << RectXml("SrcRect", 0, 0, file)
        << RectXml("DstRect", left, top, file) << "</SimpleSource>";
  }
  xml << "</VRTRasterBand></VRTDataset>";
  return xml.str();
}

struct TCloser {
  void operator()(GDALDatasetH set) const { GDALClose(set); }
};

class TGdalReader : public TReader {
 public:
  explicit TGdalReader(const TDataSet& set) : height_(set.height), channels_(set.channels) {
    GDALAllRegister();
    if (set.IsMosaic()) std::for_each(set.files.begin(), set.files.end(), WriteEnviHeader);
    const std::string xml = set.IsMosaic() ? MosaicXml(set) : RawBandsXml(set);
    data_.reset(GDALOpen(xml.c_str(), GA_ReadOnly));
    if (!data_) throw std::runtime_error("GDAL does not open " + set.name);
  }

  void BeginPass() override {
    while (GDALFlushCacheBlock() != 0) {
    }
  }

  void Read(const TWindow& window, unsigned char* out) override {
    const long pixelBytes = 2L * channels_;
    const long stride = window.width * pixelBytes;
    const auto width = static_cast<int>(window.width);
    const auto height = static_cast<int>(window.height);
    // A negative line space: the first line read is the top one, the last of the output.
    unsigned char* const top = out + (window.height - 1) * stride;
    const CPLErr error = GDALDatasetRasterIOEx(data_.get(), GF_Read, static_cast<int>(window.x),
                                               static_cast<int>(height_ - window.y - window.height),
                                               width, height, top, width, height, GDT_UInt16,
                                               channels_, nullptr, pixelBytes, -stride, 2, nullptr);
    if (error != CE_None) throw std::runtime_error("GDAL reads nothing");
  }

 private:
  std::unique_ptr<void, TCloser> data_;
  long height_;
  int channels_;
};

}  // namespace

std::unique_ptr<TReader> MakeGdalReader(const TDataSet& set) {
  return std::make_unique<TGdalReader>(set);
}

}  // namespace RavelinBench
