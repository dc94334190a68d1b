#include "host/scene/SceneDescription.h"

#include "host/HostError.h"
#include "host/scene/BandTable.h"
#include "host/scene/LabelNumbers.h"
#include "host/scene/SampleTypes.h"
#include "host/scene/SceneLog.h"

namespace ravelin {
namespace {

using SatCommonUtils::TSatLog;

constexpr const char* kOrderOption = "--order big or --order little";
constexpr const char* kSizeOption = "--size WxH";

std::string Place(const LabelScope& scope, const std::string& name) {
  return scope.Path().empty() ? name : scope.Path() + "/" + name;
}

class Describer {
 public:
  Describer(const LabelScopes& label, const SceneOptions& options, const std::string& file,
            TSatLog* log)
      : label_(label), options_(options), file_(file), log_(log) {}

  SceneDescription Describe() {
    CheckMappings();
    CheckBits(label_.main);
    scene_.headerBytes = static_cast<unsigned long>(
        WholeNumber(label_.main, "HEADER_BYTES", 0, "--map KEY=HEADER_BYTES", file_).value_or(0));
    if (!options_.bands.empty()) {
      TakeSize();
      TakeChosenBands();
    } else if (!label_.tiles.empty()) {
      TakeTiles();
    } else {
      TakeSize();
      TakeLabelBands();
    }
    scene_.degrees = CornersInDegrees(label_.main, log_);
    scene_.metres = CornersInProjection(label_.main, log_);
    scene_.datum = label_.main.Text("DATUM", "--map KEY=DATUM").value_or("");
    scene_.projectionFile =
        label_.main.Text("FILE_NAME_PROJECTION", "--map KEY=FILE_NAME_PROJECTION").value_or("");
    return scene_;
  }

 private:
  void CheckMappings() const {
    for (const std::string& key : label_.unusedMappings) {
      throw HostError(file_, "has no value " + key, "check --map");
    }
  }

  void CheckBits(const LabelScope& scope) const {
    const std::optional<long> bits =
        WholeNumber(scope, "SAMPLE_BITS", 1, "--map KEY=SAMPLE_BITS", file_);
    if (!bits || *bits == 16) return;
    throw HostError(file_,
                    Place(scope, "SAMPLE_BITS") + " is " + std::to_string(*bits) +
                        ", but only samples of 16 bits are read",
                    "convert the files to unsigned 16-bit samples and correct the label");
  }

  /// The size that a part of the label gives, by the names of its rows and columns.
  std::optional<ImageSize> SizeOf(const LabelScope& scope, const char* lines,
                                  const char* samples) const {
    const std::optional<long> height = WholeNumber(scope, lines, 1, kSizeOption, file_);
    const std::optional<long> width = WholeNumber(scope, samples, 1, kSizeOption, file_);
    if (!height && !width) return std::nullopt;
    if (height && width) return ImageSize{*width, *height};
    throw HostError(file_, "does not tell " + Place(scope, height ? samples : lines),
                    std::string("give ") + kSizeOption);
  }

  std::optional<ImageSize> SizeOf(const LabelScope& scope) const {
    return SizeOf(scope, "LINES", "LINE_SAMPLES");
  }

  std::optional<ImageSize> LabelSize() const {
    std::optional<ImageSize> size = SizeOf(label_.main);
    for (const LabelScope& band : label_.bands) {
      if (!size) size = SizeOf(band);
    }
    return size;
  }

  void TakeSize() {
    const std::optional<ImageSize> size = options_.size ? options_.size : LabelSize();
    if (!size) {
      throw HostError(
          file_, "tells no size: LINES and LINE_SAMPLES are missing",
          std::string("give ") + kSizeOption + ", or --map KEY=LINES and --map KEY=LINE_SAMPLES");
    }
    scene_.size = *size;
    LogInfo(log_,
            "size: " + ToText(*size) + " pixels, by " + (options_.size ? "--size" : "the label"));
  }

  /// The byte order of a part of the label, or of all of it.
  BytesOrder OrderOf(const LabelScope& scope, const std::string& about) const {
    if (options_.order) return *options_.order;
    std::optional<std::string> type = scope.Text("SAMPLE_TYPE", kOrderOption);
    if (!type) type = label_.main.Text("SAMPLE_TYPE", kOrderOption);
    if (!type) {
      throw HostError(file_,
                      "does not tell the byte order of " + about + ": SAMPLE_TYPE is missing",
                      std::string("give ") + kOrderOption);
    }
    const std::optional<BytesOrder> order = OrderOfSampleType(*type);
    if (order) return *order;
    throw HostError(file_, "SAMPLE_TYPE is " + *type + ", but only unsigned whole numbers are read",
                    std::string("convert the files, or give ") + kOrderOption +
                        " to read them as unsigned all the same");
  }

  void TakeChosenBands() {
    for (const BandChoice& choice : options_.bands) {
      const BytesOrder order = choice.order ? *choice.order : OrderOf(label_.main, choice.file);
      scene_.bands.push_back({choice.key, BandName(choice.key), choice.file, "--band", order});
    }
  }

  bool Fits(const LabelBand& band) const {
    const std::optional<ImageSize> size = SizeOfBand(band);
    if (options_.size || !size) return true;
    if (size->width == scene_.size.width && size->height == scene_.size.height) return true;
    LogWarning(log_, "skipped " + band.file + ": its size is " + ToText(*size) + " pixels");
    return false;
  }

  std::optional<ImageSize> SizeOfBand(const LabelBand& band) const {
    switch (band.resolution) {
      case LabelBand::kThermal:
        return SizeOf(label_.main, "THERMAL_LINES", "THERMAL_SAMPLES");
      case LabelBand::kPanchromatic:
        return SizeOf(label_.main, "PANCHROMATIC_LINES", "PANCHROMATIC_SAMPLES");
      default:
        return SizeOf(*band.scope);
    }
  }

  void TakeLabelBands() {
    for (const std::string& place : label_.otherBands) {
      LogWarning(log_, "skipped " + place + ": its band has no number");
    }
    for (const LabelBand& band : FindLabelBands(label_, file_)) {
      if (band.file.empty() || !Fits(band)) continue;
      CheckBits(*band.scope);
      CheckSampleType(band);
      scene_.bands.push_back(
          {band.key, band.name, band.file, band.place, OrderOf(*band.scope, band.file)});
    }
    if (scene_.bands.empty()) {
      throw HostError(file_,
                      "names no band file: FILE_NAME in groups BAND_n, or FILE_NAME_BAND_n, "
                      "is missing",
                      "give --band KEY=FILE for every band");
    }
  }

  void CheckSampleType(const LabelBand& band) const {
    if (band.sampleType.empty() || band.sampleType == "UINT16") return;
    throw HostError(file_,
                    band.place + " is of the type " + band.sampleType + ", but only UINT16 is read",
                    "choose the files with --band KEY=FILE");
  }

  long TileNumber(const LabelScope& tile, const char* name, long smallest) const {
    const std::string option = std::string("--map KEY=") + name;
    const std::optional<long> number = WholeNumber(tile, name, smallest, option, file_);
    if (number) return *number;
    throw HostError(file_, "does not tell " + Place(tile, name), "give " + option);
  }

  TileEntry TileOf(const LabelScope& tile, const std::map<int, int>& keys) const {
    TileEntry entry = {};
    entry.left = TileNumber(tile, "LEFT", 0);
    entry.top = TileNumber(tile, "TOP", 0);
    entry.right = TileNumber(tile, "RIGHT", 0);
    entry.bottom = TileNumber(tile, "BOTTOM", 0);
    entry.srcLeft = TileNumber(tile, "SOURCE_LEFT", 0);
    entry.srcTop = TileNumber(tile, "SOURCE_TOP", 0);
    entry.fileSize = {TileNumber(tile, "LINE_SAMPLES", 1), TileNumber(tile, "LINES", 1)};
    entry.place = tile.Path();
    CheckBits(tile);
    const BytesOrder order = OrderOf(tile, tile.Path());
    for (const auto& [number, file] : BandFilesOf(tile)) {
      entry.bands.push_back({keys.at(number), file, order});
    }
    if (entry.bands.empty()) {
      throw HostError(file_, "does not tell " + Place(tile, "FILE_NAME_BAND_n"),
                      "add the tile's files to the label");
    }
    return entry;
  }

  void TakeTiles() {
    const std::map<int, int> keys = KeysOfNumbers(label_, file_);
    TileIndex index;
    try {
      for (const LabelScope& tile : label_.tiles) {
        place_ = tile.Path();
        index.tiles.push_back(TileOf(tile, keys));
        CheckTilePlace(index.tiles.back());
        CheckTileKeys(index.tiles.back(), index.tiles.front());
      }
      place_ = "the tiles";
      CheckTileCover(index);
    } catch (const TileFault& fault) {
      throw HostError(file_, place_ + ": " + fault.what, fault.remedy);
    }
    TakeTileSize(index);
    scene_.tiles = std::move(index.tiles);
  }

  void TakeTileSize(const TileIndex& index) {
    const ImageSize size = index.Size();
    const std::optional<ImageSize> wanted = options_.size ? options_.size : SizeOf(label_.main);
    if (wanted && (wanted->width != size.width || wanted->height != size.height)) {
      throw HostError(file_,
                      "the tiles make " + ToText(size) + " pixels, but " +
                          (options_.size ? "--size" : "the label") + " says " + ToText(*wanted),
                      "correct the tiles of the label or give the right --size");
    }
    scene_.size = size;
    LogInfo(log_, "size: " + ToText(size) + " pixels, of " + std::to_string(index.tiles.size()) +
                      " tiles");
  }

  const LabelScopes& label_;
  const SceneOptions& options_;
  const std::string& file_;
  TSatLog* log_;
  std::string place_;
  SceneDescription scene_ = {};
};

}  // namespace

SceneDescription DescribeScene(const LabelScopes& label, const SceneOptions& options,
                               const std::string& file, TSatLog* log) {
  return Describer(label, options, file, log).Describe();
}

}  // namespace ravelin
