#include "host/raster/TileIndex.h"

#include <algorithm>
#include <array>
#include <limits>
#include <set>
#include <stdexcept>

#include "host/HostError.h"
#include "host/ParseNumber.h"

namespace ravelin {
namespace {

// Tiles that cover less of their scene than one pixel in so many are a slip in the numbers, and
// would turn a few bytes into an image without end.
constexpr unsigned long kSparsest = 1000;

bool IsBlank(char c) {
  return c == ' ' || c == '\t' || c == '\r';
}

class LineScanner {
 public:
  explicit LineScanner(std::string_view line) : rest_(line) { SkipBlanks(); }

  bool AtEnd() const { return rest_.empty(); }

  long Number(const char* name, long smallest) {
    const std::string_view word = Word();
    const std::optional<long> number = ParseNumber<long>(word);
    if (!number || *number < smallest || *number > kMaxSide - 1) {
      throw TileFault{std::string(name) + " is '" + std::string(word) +
                          "', not a whole number from " + std::to_string(smallest) + " to " +
                          std::to_string(kMaxSide - 1),
                      "give left top right bottom srcLeft srcTop width height, then the files"};
    }
    return *number;
  }

  BandArgument Band() {
    try {
      const std::size_t equals = rest_.find('=');
      const bool quoted = equals < WordEnd() && rest_.substr(equals + 1).starts_with('"');
      return quoted ? QuotedBand(equals) : ParseBandArgument(Word());
    } catch (const std::invalid_argument& error) {
      throw TileFault{error.what(), "see docs/tile-index.md"};
    }
  }

 private:
  std::size_t WordEnd() const {
    const auto end = std::find_if(rest_.begin(), rest_.end(), IsBlank);
    return static_cast<std::size_t>(end - rest_.begin());
  }

  std::string_view Word() {
    const std::string_view word = rest_.substr(0, WordEnd());
    rest_.remove_prefix(word.size());
    SkipBlanks();
    return word;
  }

  BandArgument QuotedBand(std::size_t equals) {
    const int key = ParseBandKey(rest_.substr(0, equals));
    rest_.remove_prefix(equals + 2);
    const std::size_t close = rest_.find('"');
    if (close == std::string_view::npos) {
      throw TileFault{"a file name's quote is not closed", "end the name with a double quote"};
    }
    const std::string file(rest_.substr(0, close));
    if (file.empty()) throw TileFault{"a file name is empty", "give KEY=FILE"};
    rest_.remove_prefix(close + 1);
    return {key, file, ParseBytesOrder(Word())};
  }

  void SkipBlanks() {
    while (!rest_.empty() && IsBlank(rest_.front())) rest_.remove_prefix(1);
  }

  std::string_view rest_;
};

TileEntry ParseTile(std::string_view line) {
  LineScanner scanner(line);
  TileEntry tile = {};
  tile.left = scanner.Number("left", 0);
  tile.top = scanner.Number("top", 0);
  tile.right = scanner.Number("right", 0);
  tile.bottom = scanner.Number("bottom", 0);
  tile.srcLeft = scanner.Number("srcLeft", 0);
  tile.srcTop = scanner.Number("srcTop", 0);
  tile.fileSize.width = scanner.Number("width", 1);
  tile.fileSize.height = scanner.Number("height", 1);
  CheckTilePlace(tile);
  if (scanner.AtEnd()) throw TileFault{"the tile has no file", "give at least one KEY=FILE"};
  while (!scanner.AtEnd()) tile.bands.push_back(scanner.Band());
  return tile;
}

std::set<int> KeysOf(const TileEntry& tile) {
  std::set<int> keys;
  for (const BandArgument& band : tile.bands) {
    if (!keys.insert(band.key).second) {
      throw TileFault{"the key " + std::to_string(band.key) + " stands there twice",
                      "give each file of a tile a key of its own"};
    }
  }
  return keys;
}

void CheckKeys(const TileEntry& tile, const std::set<int>& wanted) {
  if (KeysOf(tile) == wanted) return;
  throw TileFault{"the tile's keys are not those of the first tile",
                  "give every tile the same bands"};
}

class IndexParser {
 public:
  void Line(std::string_view line) {
    ++line_;
    if (line.size() > kMaxIndexLine) {
      throw TileFault{"is longer than " + std::to_string(kMaxIndexLine) + " bytes",
                      "give one tile a line"};
    }
    if (line.find('\0') != std::string_view::npos) {
      throw TileFault{"holds a NUL byte", "give a text file"};
    }
    const auto first = std::find_if_not(line.begin(), line.end(), IsBlank);
    if (first == line.end() || *first == '#') return;
    AddTile(ParseTile(line));
  }

  unsigned long LineNumber() const { return line_; }

  TileIndex Finish() {
    if (index_.tiles.empty()) {
      throw TileFault{"the index ends without a tile", "give one tile a line"};
    }
    CheckTileCover(index_);
    return std::move(index_);
  }

 private:
  void AddTile(TileEntry tile) {
    tile.line = line_;
    tile.place = "line " + std::to_string(line_) + " of the index";
    if (index_.tiles.empty()) keys_ = KeysOf(tile);
    CheckKeys(tile, keys_);
    index_.tiles.push_back(std::move(tile));
  }

  TileIndex index_;
  std::set<int> keys_;
  unsigned long line_ = 0;
};

void ParseLines(std::string_view text, IndexParser& parser) {
  if (text.starts_with("\xef\xbb\xbf")) text.remove_prefix(3);
  while (!text.empty()) {
    const std::size_t end = text.find('\n');
    parser.Line(text.substr(0, end));
    if (end == std::string_view::npos) return;
    text.remove_prefix(end + 1);
  }
}

}  // namespace

long TileIndex::Left() const {
  return std::min_element(tiles.begin(), tiles.end(),
                          [](const TileEntry& a, const TileEntry& b) { return a.left < b.left; })
      ->left;
}

long TileIndex::Top() const {
  return std::min_element(tiles.begin(), tiles.end(),
                          [](const TileEntry& a, const TileEntry& b) { return a.top < b.top; })
      ->top;
}

ImageSize TileIndex::Size() const {
  long right = 0;
  long bottom = 0;
  for (const TileEntry& tile : tiles) {
    right = std::max(right, tile.right);
    bottom = std::max(bottom, tile.bottom);
  }
  return {right - Left() + 1, bottom - Top() + 1};
}

void CheckTilePlace(const TileEntry& tile) {
  if (tile.right < tile.left || tile.bottom < tile.top) {
    throw TileFault{"the tile ends before it begins",
                    "give left top right bottom, right and bottom included"};
  }
  const long width = tile.right - tile.left + 1;
  const long height = tile.bottom - tile.top + 1;
  const PixelArea content = {tile.srcLeft, tile.srcTop, width, height};
  if (!Inside(content, tile.fileSize)) {
    throw TileFault{"the tile's " + ToText({width, height}) + " pixels from " +
                        std::to_string(tile.srcLeft) + "," + std::to_string(tile.srcTop) +
                        " do not lie in its files of " + ToText(tile.fileSize),
                    "check srcLeft, srcTop, width and height"};
  }
}

void CheckTileKeys(const TileEntry& tile, const TileEntry& first) {
  CheckKeys(tile, KeysOf(first));
}

void CheckTileCover(const TileIndex& index) {
  const ImageSize size = index.Size();
  if (size.width < 2 || size.height < 2) {
    throw TileFault{"the tiles make a scene of " + ToText(size) + " pixels",
                    "give tiles that make at least 2 x 2"};
  }
  double covered = 0;
  for (const TileEntry& tile : index.tiles) {
    covered += static_cast<double>(tile.right - tile.left + 1) *
               static_cast<double>(tile.bottom - tile.top + 1);
  }
  const double whole = static_cast<double>(size.width) * static_cast<double>(size.height);
  if (covered * static_cast<double>(kSparsest) < whole) {
    throw TileFault{"the tiles cover less than a pixel in " + std::to_string(kSparsest) +
                        " of their scene of " + ToText(size),
                    "check left, top, right and bottom of every tile"};
  }
}

TileIndex ParseTileIndex(std::string_view text, const std::string& file) {
  IndexParser parser;
  try {
    ParseLines(text, parser);
    return parser.Finish();
  } catch (const TileFault& error) {
    throw HostError(file, "line " + std::to_string(parser.LineNumber()) + ": " + error.what,
                    error.remedy);
  }
}

}  // namespace ravelin
