// Requests to the rasters: a raw band, a compositor of raw bands, super tiles of raw bands, over
// whole or cut streams. What they write is compared with a plain model, and nothing is written
// outside the output.
//
// Input: a byte for the kind of raster, one each for its width, height, bands and cut bytes, then
// requests: a byte for their form, and x, y, w, h as small numbers of one byte or as doubles.
#include <algorithm>
#include <map>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include "Kv/Stream.h"
#include "SatCommonUtils/Raster.h"
#include "fuzz/FuzzInput.h"

namespace {

using namespace SatCommonUtils;
using BandReference = var_a_legacy::var_a<TBasePushbroomDibData*>;

enum Kind { kRaw, kCompositor, kSuperTiles, kKinds };

constexpr unsigned char kFill = 0xa5;
constexpr std::size_t kGuard = 64;
constexpr long kMaxOutput = 1L << 20;

struct Setting {
  Kind kind;
  long width;
  long height;
  long bands;
  unsigned long cut;  // bytes that the streams are short
};

unsigned short SampleAt(long x, long rowFromTop, long band) {
  return static_cast<unsigned short>(x * 40503 + rowFromTop * 977 + band * 12347 + 1);
}

// A band of the columns [left, left + width) of the scene.
BandReference MakeBand(const Setting& setting, long left, long width, long band) {
  std::string bytes;
  for (long y = 0; y < setting.height; ++y) {
    for (long x = 0; x < width; ++x) {
      const unsigned short sample = SampleAt(left + x, y, band);
      const char low = static_cast<char>(sample & 0xff);
      const char high = static_cast<char>(sample >> 8);
      bytes += band % 2 == 0 ? low : high;
      bytes += band % 2 == 0 ? high : low;
    }
  }
  bytes.resize(bytes.size() - std::min<std::size_t>(setting.cut, bytes.size()));
  const var_a_legacy::var_a<TRawWordDibData*> raster(new TRawWordDibData);
  const bool done =
      raster->Setup(var_a_legacy::var_a<TKvStream*>(new TKvMemoryStream(std::move(bytes))),
                    static_cast<unsigned long>(width), static_cast<unsigned long>(setting.height),
                    band % 2 == 0 ? TRawWordDibData::boLittleEndian : TRawWordDibData::boBigEndian);
  Require(done, "a band is set up");
  return raster;
}

BandReference MakeBands(const Setting& setting, long left, long width) {
  if (setting.kind == kRaw) return MakeBand(setting, left, width, 0);
  std::map<int, BandReference> bands;
  for (long band = 0; band < setting.bands; ++band) {
    bands.emplace(static_cast<int>(10 + band), MakeBand(setting, left, width, band));
  }
  const var_a_legacy::var_a<TSeparateBandsDibData*> compositor(new TSeparateBandsDibData);
  Require(compositor->Setup(bands), "a compositor is set up");
  return compositor;
}

BandReference MakeRaster(const Setting& setting) {
  if (setting.kind != kSuperTiles) return MakeBands(setting, 0, setting.width);
  const long middle = setting.width / 2;
  const long last = setting.height - 1;
  std::vector<TSuperTileData> tiles;
  tiles.push_back({0, 0, middle - 1, last, 0, 0, MakeBands(setting, 0, middle), "left"});
  tiles.push_back({middle, 0, setting.width - 1, last, 0, 0,
                   MakeBands(setting, middle, setting.width - middle), "right"});
  const var_a_legacy::var_a<TSuperTiledDibDataEnvelope*> raster(new TSuperTiledDibDataEnvelope);
  Require(raster->Setup(tiles, nullptr), "super tiles are set up");
  return raster;
}

TKvDibRect TakeRequest(FuzzInput& input) {
  TKvDibRect rect = {};
  const auto form = input.Take<std::uint8_t>();
  double* const values[] = {&rect.pos[0], &rect.pos[1], &rect.size[0], &rect.size[1]};
  for (double* value : values) {
    *value = form % 2 == 0 ? static_cast<double>(input.Take<std::int8_t>()) : input.Take<double>();
  }
  rect.scale = form < 200 ? 1 : input.Take<double>();
  return rect;
}

bool Touches(const TKvDibRectI& area, const Setting& setting) {
  return area.w >= 1 && area.h >= 1 && area.x < setting.width && area.y < setting.height &&
         area.x + area.w > 0 && area.y + area.h > 0;
}

// Bytes of the output for a request; none when it is larger than this program cares for.
std::optional<long> OutputBytes(const TKvDibRectI& area, const Setting& setting) {
  if (area.w < 1 || area.h < 1) return 0;
  if (setting.kind != kSuperTiles && !Touches(area, setting)) return 0;
  if (area.w > kMaxOutput || area.h > kMaxOutput / area.w) return std::nullopt;
  const long bytes = area.w * area.h * setting.bands * 2;
  return bytes <= kMaxOutput ? std::optional<long>(bytes) : std::nullopt;
}

class Output {
 public:
  Output(long bytes, long stride)
      : bytes_(2 * kGuard + static_cast<std::size_t>(bytes), kFill), stride_(stride) {}

  TKvDibDataOutBuffer Buffer() { return {bytes_.data() + kGuard, stride_}; }

  unsigned short Sample(long row, long sampleInRow) const {
    unsigned short sample = 0;
    std::memcpy(&sample, bytes_.data() + kGuard + row * stride_ + sampleInRow * 2, sizeof sample);
    return sample;
  }

  void CheckGuards() const {
    for (std::size_t i = 0; i < kGuard; ++i) {
      Require(bytes_[i] == kFill && bytes_[bytes_.size() - 1 - i] == kFill,
              "nothing is written outside the output");
    }
  }

 private:
  std::vector<unsigned char> bytes_;
  long stride_;
};

void CheckPixels(const Output& output, const TKvDibRectI& area, const Setting& setting) {
  constexpr unsigned short kUntouched = kFill << 8 | kFill;
  for (long row = 0; row < area.h; ++row) {
    for (long column = 0; column < area.w; ++column) {
      const long x = area.x + column;
      const long y = setting.height - 1 - (area.y + row);
      const bool inside = x >= 0 && x < setting.width && y >= 0 && y < setting.height;
      const unsigned short outside = setting.kind == kSuperTiles ? 0 : kUntouched;
      for (long band = 0; band < setting.bands; ++band) {
        Require(output.Sample(row, column * setting.bands + band) ==
                    (inside ? SampleAt(x, y, band) : outside),
                "pixels are those of the model");
      }
    }
  }
}

void Ask(TBasePushbroomDibData& raster, const TKvDibRect& rect, const Setting& setting) {
  TKvDibRectI area = {};
  const unsigned long level = raster.Rect2RectI(rect, iqNearest, 0, &area, false);
  const std::optional<long> bytes = OutputBytes(area, setting);
  if (!bytes) return;
  Output output(*bytes, *bytes > 0 ? area.w * setting.bands * 2 : 0);
  int result = 0;
  try {
    result = raster.GetRect(output.Buffer(), rect, iqNearest, 0, nullptr);
  } catch (const std::logic_error&) {
    Require(level != 0, "only levels that are not there are refused");
    return;
  }
  output.CheckGuards();
  Require(level == 0, "levels that are not there are refused");
  Require(result == kvDibNothing || result == kvDibWritten, "the result is one of two");
  if (setting.cut > 0) return;
  Require((result == kvDibWritten) == Touches(area, setting), "pixels inside are written");
  if (*bytes > 0) CheckPixels(output, area, setting);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  FuzzInput input(data, size);
  Setting setting = {};
  setting.kind = static_cast<Kind>(input.Between(0, kKinds - 1));
  setting.width = input.Between(2, 40);
  setting.height = input.Between(2, 40);
  setting.bands = setting.kind == kRaw ? 1 : 0;
  const long bands = input.Between(1, 9);
  if (setting.kind != kRaw) setting.bands = bands;
  setting.cut = static_cast<unsigned long>(std::max(0L, input.Between(-200, 55)));
  const BandReference raster = MakeRaster(setting);
  for (int request = 0; request < 64 && !input.AtEnd(); ++request) {
    Ask(*raster, TakeRequest(input), setting);
  }
  return 0;
}
