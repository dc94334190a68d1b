#include "host/sample/SampleLabel.h"

#include "host/sample/SampleLayout.h"
#include "host/sample/SceneSun.h"
#include "host/sample/SceneTerrain.h"

namespace ravelin {

namespace {

constexpr int kFirstEasting = 543000;    ///< metres, centre of the left column
constexpr int kFirstNorthing = 5172000;  ///< metres, centre of the top row

/// A corner of the scene, the centre of its pixel. Degrees of WGS 84, north and east positive: the
/// inverse transverse Mercator projection of the metres.
struct Corner {
  const char* name;
  int column;
  int row;
  const char* latitude;
  const char* longitude;
};

constexpr Corner kCorners[] = {
    {"UL", 0, 0, "-43.603735", "171.532799"},
    {"UR", kSceneWidth - 1, 0, "-43.600790", "171.978442"},
    {"LL", 0, kSceneHeight - 1, "-43.846561", "171.534956"},
    {"LR", kSceneWidth - 1, kSceneHeight - 1, "-43.843590", "171.982402"},
};

/// Lines of NAME = VALUE in groups, each level indented by two more spaces.
class LabelText {
 public:
  void Begin(const std::string& group) {
    Value("GROUP", group);
    indent_ += "  ";
  }
  void End(const std::string& group) {
    indent_.resize(indent_.size() - 2);
    Value("END_GROUP", group);
  }
  void Value(const std::string& name, const std::string& value) {
    text_ += indent_ + name + " = " + value + "\n";
  }
  void Value(const std::string& name, int value) { Value(name, std::to_string(value)); }
  void Quoted(const std::string& name, const std::string& value) {
    Value(name, "\"" + value + "\"");
  }
  std::string Finish() { return text_ + "END\n"; }

 private:
  std::string indent_;
  std::string text_;
};

const char* SampleType(BytesOrder order) {
  return order == BytesOrder::boBigEndian ? "MSB_UNSIGNED_INTEGER" : "LSB_UNSIGNED_INTEGER";
}

std::string InTileFolder(const std::string& file) {
  return std::string(kSampleTileFolder) + "/" + file;
}

void AddContents(LabelText* label) {
  label->Begin("PRODUCT_CONTENTS");
  label->Quoted("PRODUCT_ID", "RAVELIN_SAMPLE");
  label->Quoted("DESCRIPTION", "Computed scene of a place that does not exist");
  label->Quoted("FILE_NAME_PROJECTION", kSampleProjectionFile);
  label->Quoted("FILE_NAME_TILE_INDEX", InTileFolder(kSampleIndexFile));
  label->End("PRODUCT_CONTENTS");
}

void AddImage(LabelText* label) {
  label->Begin("IMAGE_ATTRIBUTES");
  label->Value("BANDS", static_cast<int>(kSampleBands.size()));
  label->Value("LINES", kSceneHeight);
  label->Value("LINE_SAMPLES", kSceneWidth);
  label->Value("SAMPLE_BITS", 16);
  label->Quoted("BAND_STORAGE_TYPE", "BAND_SEQUENTIAL");
  label->Quoted("LINE_DISPLAY_DIRECTION", "DOWN");
  label->Value("HEADER_BYTES", 0);
  label->Value("REFLECTANCE_MULT", "2.75E-05");
  label->Value("REFLECTANCE_ADD", "-0.2");
  label->Value("SUN_AZIMUTH", kSunAzimuth);
  label->Value("SUN_ELEVATION", kSunElevation);
  label->End("IMAGE_ATTRIBUTES");
}

void AddBand(LabelText* label, int number, const SampleBand& band) {
  const std::string group = "BAND_" + std::to_string(number);
  label->Begin(group);
  label->Quoted("BAND_NAME", band.name);
  label->Quoted("FILE_NAME", BandFileName(band));
  label->Value("LINES", kSceneHeight);
  label->Value("LINE_SAMPLES", kSceneWidth);
  label->Value("SAMPLE_TYPE", SampleType(band.order));
  label->Value("SAMPLE_BITS", 16);
  label->Quoted("CHANNEL_ROLE", band.role);
  label->Value("CHANNEL_KIND", band.kind);
  label->End(group);
}

void AddCorner(LabelText* label, const Corner& corner) {
  const std::string start = std::string("CORNER_") + corner.name;
  label->Value(start + "_LAT_PRODUCT", corner.latitude);
  label->Value(start + "_LON_PRODUCT", corner.longitude);
  const int easting = kFirstEasting + corner.column * kScenePixelSize;
  const int northing = kFirstNorthing - corner.row * kScenePixelSize;
  label->Value(start + "_PROJECTION_X_PRODUCT", std::to_string(easting) + ".000");
  label->Value(start + "_PROJECTION_Y_PRODUCT", std::to_string(northing) + ".000");
}

void AddProjection(LabelText* label) {
  label->Begin("PROJECTION_ATTRIBUTES");
  label->Quoted("MAP_PROJECTION", "UTM");
  label->Quoted("DATUM", "WGS84");
  label->Quoted("ELLIPSOID", "WGS84");
  label->Value("UTM_ZONE", 59);
  label->Quoted("UTM_HEMISPHERE", "SOUTH");
  label->Value("GRID_CELL_SIZE", std::to_string(kScenePixelSize) + ".00");
  label->Quoted("ORIENTATION", "NORTH_UP");
  label->Quoted("CORNER_REFERENCE", "PIXEL_CENTER");
  for (const Corner& corner : kCorners) AddCorner(label, corner);
  label->End("PROJECTION_ATTRIBUTES");
}

void AddTile(LabelText* label, const SampleTile& tile) {
  const std::string group = "TILE_R" + std::to_string(tile.row) + "C" + std::to_string(tile.column);
  label->Begin(group);
  label->Value("LEFT", tile.left);
  label->Value("TOP", tile.top);
  label->Value("RIGHT", tile.right);
  label->Value("BOTTOM", tile.bottom);
  label->Value("SOURCE_LEFT", tile.left - tile.fileLeft);
  label->Value("SOURCE_TOP", tile.top - tile.fileTop);
  label->Value("LINES", tile.fileHeight);
  label->Value("LINE_SAMPLES", tile.fileWidth);
  label->Value("SAMPLE_TYPE", SampleType(tile.order));
  for (std::size_t band = 0; band < kSampleBands.size(); ++band) {
    label->Quoted("FILE_NAME_BAND_" + std::to_string(band + 1),
                  InTileFolder(TileFileName(tile, kSampleBands[band])));
  }
  label->End(group);
}

std::string IndexLine(const SampleTile& tile) {
  std::string line;
  for (const int number : {tile.left, tile.top, tile.right, tile.bottom, tile.left - tile.fileLeft,
                           tile.top - tile.fileTop, tile.fileWidth, tile.fileHeight}) {
    line += std::to_string(number) + " ";
  }
  const char* order = tile.order == BytesOrder::boBigEndian ? ":big" : ":little";
  for (const SampleBand& band : kSampleBands) {
    line += std::to_string(band.kind) + "=" + TileFileName(tile, band) + order + " ";
  }
  line.back() = '\n';
  return line;
}

}  // namespace

std::string SampleLabel() {
  LabelText label;
  label.Begin("SAMPLE_METADATA_FILE");
  AddContents(&label);
  AddImage(&label);
  int number = 0;
  for (const SampleBand& band : kSampleBands) AddBand(&label, ++number, band);
  AddProjection(&label);
  label.Begin("TILE_LAYOUT");
  label.Value("TILE_ROWS", 3);
  label.Value("TILE_COLUMNS", 3);
  for (const SampleTile& tile : SampleTiles()) AddTile(&label, tile);
  label.End("TILE_LAYOUT");
  label.End("SAMPLE_METADATA_FILE");
  return label.Finish();
}

std::string SampleProjection() {
  return R"(PROJCS["WGS 84 / UTM zone 59S",
    GEOGCS["WGS 84",
        DATUM["WGS_1984",
            SPHEROID["WGS 84",6378137,298.257223563,
                AUTHORITY["EPSG","7030"]],
            AUTHORITY["EPSG","6326"]],
        PRIMEM["Greenwich",0,
            AUTHORITY["EPSG","8901"]],
        UNIT["degree",0.0174532925199433,
            AUTHORITY["EPSG","9122"]],
        AUTHORITY["EPSG","4326"]],
    PROJECTION["Transverse_Mercator"],
    PARAMETER["latitude_of_origin",0],
    PARAMETER["central_meridian",171],
    PARAMETER["scale_factor",0.9996],
    PARAMETER["false_easting",500000],
    PARAMETER["false_northing",10000000],
    UNIT["metre",1,
        AUTHORITY["EPSG","9001"]],
    AXIS["Easting",EAST],
    AXIS["Northing",NORTH],
    AUTHORITY["EPSG","32759"]]
)";
}

std::string SampleIndex() {
  std::string index =
      "# The sample scene as 3 x 3 super tiles. Keys: 3 blue, 4 green, 6 red, 32 near infrared.\n"
      "# left top right bottom srcLeft srcTop width height KEY=FILE...\n";
  for (const SampleTile& tile : SampleTiles()) index += IndexLine(tile);
  return index;
}

}  // namespace ravelin
