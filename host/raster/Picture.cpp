#include "host/raster/Picture.h"

#include <vector>

#include "host/ProgressBar.h"
#include "host/raster/Histogram.h"
#include "host/raster/PngWriter.h"

namespace ravelin {
namespace {

// The brightness of every sample value, a table a channel shown.
using Tables = std::vector<std::vector<std::uint16_t>>;

class PictureMaker {
 public:
  PictureMaker(AreaReader& area, const PictureOptions& options)
      : area_(area), options_(options), shown_(ShownChannels(area.Channels())) {}

  int Shown() const { return shown_; }

  Tables MakeTables(TKvProgressHandler* progress) {
    const auto brightest = static_cast<std::uint16_t>(options_.bits == 8 ? 255 : 65535);
    const Stretch& stretch = options_.stretch;
    const auto count = static_cast<std::size_t>(shown_);
    if (!options_.limits.empty()) return GivenTables(brightest);
    if (stretch.kind == StretchKind::kNone) return Tables(count, NoStretch(options_.bits));
    if (stretch.kind == StretchKind::kFixed) {
      return Tables(count, LinearStretch(stretch.low, stretch.high, brightest));
    }
    Tables tables;
    for (const Histogram& histogram : CountSamples(progress)) {
      tables.push_back(LinearStretch(histogram.Percentile(kDarkPercent),
                                     histogram.Percentile(kBrightPercent), brightest));
    }
    return tables;
  }

  void WriteRows(PngWriter& writer, const Tables& tables, TKvProgressHandler* progress) {
    const auto rowBytes = static_cast<std::size_t>(area_.Width() * shown_ * options_.bits / 8);
    std::vector<std::uint8_t> row(rowBytes);
    const auto writeBlock = [&](const std::uint16_t* samples, long rows) {
      for (long r = 0; r < rows; ++r) {
        FillRow(samples + r * area_.Width() * area_.Channels(), tables, row.data());
        writer.WriteRow(row.data());
      }
    };
    area_.ReadBlocks(writeBlock, progress);
  }

 private:
  Tables GivenTables(std::uint16_t brightest) const {
    Tables tables;
    for (const StretchLimits& limits : options_.limits) {
      tables.push_back(LinearStretch(limits.low, limits.high, brightest));
    }
    return tables;
  }

  std::vector<Histogram> CountSamples(TKvProgressHandler* progress) {
    std::vector<Histogram> histograms(static_cast<std::size_t>(shown_));
    const auto count = [&](const std::uint16_t* samples, long rows) {
      for (Histogram& histogram : histograms) {
        const long channel = &histogram - histograms.data();
        histogram.Add(samples + channel, rows * area_.Width(), area_.Channels());
      }
    };
    area_.ReadBlocks(count, progress);
    return histograms;
  }

  void FillRow(const std::uint16_t* pixel, const Tables& tables, std::uint8_t* out) const {
    for (long x = 0; x < area_.Width(); ++x, pixel += area_.Channels()) {
      const std::uint16_t* sample = pixel;
      for (const std::vector<std::uint16_t>& table : tables) {
        const std::uint16_t brightness = table[*sample++];
        if (options_.bits == 16) *out++ = static_cast<std::uint8_t>(brightness >> 8);
        *out++ = static_cast<std::uint8_t>(brightness & 0xff);
      }
    }
  }

  AreaReader& area_;
  const PictureOptions& options_;
  int shown_;
};

}  // namespace

int ShownChannels(long channels) {
  return channels >= 3 ? 3 : 1;
}

void WritePicture(AreaReader& area, const PictureOptions& options, PendingFile& file,
                  const std::string& path, std::ostream* terminal) {
  PictureMaker maker(area, options);
  PngWriter writer(file, {area.Width(), area.Height(), maker.Shown(), options.bits}, path);
  const bool counts = options.limits.empty() && options.stretch.kind == StretchKind::kPercentiles;
  const unsigned long passes = counts ? 2 : 1;
  ProgressBar bar(terminal, passes * static_cast<unsigned long>(area.Height()));
  const Tables tables = maker.MakeTables(&bar);
  maker.WriteRows(writer, tables, &bar);
  writer.Finish();
}

void WritePicture(AreaReader& area, const PictureOptions& options, const std::string& path,
                  std::ostream* terminal) {
  PendingFile file(path);
  WritePicture(area, options, file, path, terminal);
  file.Commit();
}

}  // namespace ravelin
