// Field order, field offsets, sizes and enumeration values that hosts are compiled against: x86-64,
// libstdc++.
#include <gtest/gtest.h>

#include <cstddef>
#include <cstring>
#include <functional>
#include <set>
#include <string>
#include <type_traits>
#include <vector>

#include "Kv/Kv.h"
#include "SatCommonUtils/Files.h"
#include "SatCommonUtils/Log.h"
#include "SatCommonUtils/Module.h"
#include "SatCommonUtils/Raster.h"
#include "SatCommonUtils/Shapefile.h"
#include "SatCommonUtils/Text.h"
#include "SatCommonUtils/Tree.h"

namespace {

using namespace SatCommonUtils;

/// Bytes from the start of an object to one of its members.
template <class Object, class Member>
long Offset(const Object& object, const Member& member) {
  return reinterpret_cast<const char*>(&member) - reinterpret_cast<const char*>(&object);
}

class OpenRawWord : public TRawWordDibData {
 public:
  using TRawWordDibData::levelBounds;
  using TRawWordDibData::readBuffer;
  using TRawWordDibData::readBufferSize;
  using TRawWordDibData::rowCache;
  using TRawWordDibData::rowCacheSize;
};

class OpenSuperTiled : public TSuperTiledDibDataEnvelope {
 public:
  using TSuperTiledDibDataEnvelope::tileBuffer;
  using TSuperTiledDibDataEnvelope::tileBufferSize;
};

TEST(LayoutTest, TheInitializerHasItsFieldsInOrder) {
  KvModule_Initializer& module = KvModule_Initializer::getInst();
  EXPECT_EQ(Offset(module, module.counter), 0);
  EXPECT_EQ(Offset(module, module.name), 8);
  EXPECT_EQ(Offset(module, module.modulePath), 40);
  EXPECT_EQ(Offset(module, module.folder), 72);
  EXPECT_EQ(Offset(module, module.fileName), 104);
  EXPECT_EQ(Offset(module, module.extension), 136);
  EXPECT_EQ(sizeof(KvModule_Initializer), 168u);
}

TEST(LayoutTest, TheBandBaseHasItsFieldsInOrder) {
  OpenRawWord band;
  EXPECT_EQ(Offset(band, band.levelBounds), 8);
  EXPECT_EQ(Offset(band, band.channels), 32);
  EXPECT_EQ(Offset(band, band.width), 72);
  EXPECT_EQ(Offset(band, band.height), 80);
  EXPECT_EQ(Offset(band, band.bandsCount), 88);
  EXPECT_EQ(Offset(band, band.bandFlag), 96);
  EXPECT_EQ(Offset(band, band.bandName), 104);
  EXPECT_EQ(sizeof(TKvDibData), 8u);
  EXPECT_EQ(sizeof(TKvMultiScaleDibData), 32u);
  EXPECT_EQ(sizeof(TBasePushbroomDibData), 136u);
}

TEST(LayoutTest, ThePushbroomBandAddsItsReadBuffer) {
  OpenRawWord band;
  EXPECT_EQ(Offset(band, band.readBuffer), 136);
  EXPECT_EQ(Offset(band, band.readBufferSize), 144);
  EXPECT_EQ(sizeof(TPushbroomDibData<unsigned short>), 152u);
}

TEST(LayoutTest, TheRawBandAddsStreamAndRowCache) {
  OpenRawWord band;
  EXPECT_EQ(Offset(band, band.stream), 152);
  EXPECT_EQ(Offset(band, band.rowCache), 168);
  EXPECT_EQ(Offset(band, band.rowCacheSize), 176);
  EXPECT_EQ(sizeof(TRawDibData<unsigned short>), 184u);
}

TEST(LayoutTest, TheSixteenBitBandAddsItsByteOrder) {
  OpenRawWord band;
  EXPECT_EQ(Offset(band, band.bytesOrder), 184);
  EXPECT_EQ(sizeof(TRawWordDibData), 192u);
}

TEST(LayoutTest, TheEnvelopeAddsTheRaster) {
  var_a_legacy::var_a<TKvDibData*> raster(new TKvMemoryDibData(1, 1, {1, 1, {1}}, 1));
  TPushbroomDibDataEnvelope envelope(raster, "", false);
  EXPECT_EQ(Offset(envelope, envelope.data), 136);
  EXPECT_EQ(sizeof(TPushbroomDibDataEnvelope), 152u);
}

TEST(LayoutTest, TheCompositorAddsItsTwoMaps) {
  TSeparateBandsDibData compositor;
  EXPECT_EQ(Offset(compositor, compositor.bands), 136);
  EXPECT_EQ(Offset(compositor, compositor.channelBands), 184);
  EXPECT_EQ(sizeof(TSeparateBandsDibData), 232u);
}

TEST(LayoutTest, ATileHasItsFieldsInOrder) {
  TSuperTileData tile = {};
  EXPECT_EQ(Offset(tile, tile.left), 0);
  EXPECT_EQ(Offset(tile, tile.top), 8);
  EXPECT_EQ(Offset(tile, tile.right), 16);
  EXPECT_EQ(Offset(tile, tile.bottom), 24);
  EXPECT_EQ(Offset(tile, tile.srcLeft), 32);
  EXPECT_EQ(Offset(tile, tile.srcTop), 40);
  EXPECT_EQ(Offset(tile, tile.raster), 48);
  EXPECT_EQ(Offset(tile, tile.fileName), 64);
  EXPECT_EQ(sizeof(TSuperTileData), 96u);
}

TEST(LayoutTest, TheSuperTiledRasterAddsTilesAndTileBuffer) {
  OpenSuperTiled raster;
  EXPECT_EQ(Offset(raster, raster.tiles), 136);
  EXPECT_EQ(Offset(raster, raster.tileBuffer), 160);
  EXPECT_EQ(Offset(raster, raster.tileBufferSize), 168);
  EXPECT_EQ(sizeof(TSuperTiledDibDataEnvelope), 176u);
}

TEST(LayoutTest, AFieldHasItsMembersInOrder) {
  const TStringTreeField field(1, 0, "value", "header");
  EXPECT_EQ(Offset(field, field.tag), 8);
  EXPECT_EQ(Offset(field, field.idx), 12);
  EXPECT_EQ(Offset(field, field.count), 16);
  EXPECT_EQ(Offset(field, field.values), 24);
  EXPECT_EQ(Offset(field, field.header), 32);
  EXPECT_EQ(sizeof(TDataField<std::string>), 64u);
  EXPECT_EQ(sizeof(TStringTreeField), 64u);
  static_assert(std::is_same_v<decltype(TStringTreeField::tag), int>);
  static_assert(std::is_same_v<decltype(TStringTreeField::idx), int>);
  static_assert(std::is_same_v<decltype(TStringTreeField::count), unsigned long>);
}

TEST(LayoutTest, ATreeHasItsMembersInOrder) {
  const TStringTree tree(1, 0, nullptr, "header");
  EXPECT_EQ(Offset(tree, tree.parent), 8);
  EXPECT_EQ(Offset(tree, tree.subtrees), 16);
  EXPECT_EQ(Offset(tree, tree.fields), 40);
  EXPECT_EQ(Offset(tree, tree.tag), 64);
  EXPECT_EQ(Offset(tree, tree.idx), 68);
  EXPECT_EQ(Offset(tree, tree.header), 72);
  EXPECT_EQ(sizeof(TPtrVector<TStringTree>), 24u);
  EXPECT_EQ(sizeof(TDataTree<std::string>), 104u);
  EXPECT_EQ(sizeof(TStringTree), 104u);
  static_assert(std::is_same_v<decltype(TStringTree::tag), int>);
  static_assert(std::is_same_v<decltype(TStringTree::idx), int>);
}

TEST(LayoutTest, AnOutputBufferIsAddressAndStrideOwnedOrNot) {
  TKvDibDataOutBuffer buffer = {};
  EXPECT_EQ(Offset(buffer, buffer.data), 0);
  EXPECT_EQ(Offset(buffer, buffer.stride), 8);
  EXPECT_EQ(sizeof buffer, 16u);
  TKvDibDataOutBufferAutoRelease owned;
  EXPECT_EQ(Offset(owned, owned.data), 0);
  EXPECT_EQ(Offset(owned, owned.stride), 8);
  EXPECT_EQ(sizeof owned, 16u);
}

TEST(LayoutTest, ARequestIsPositionSizeAndScale) {
  TKvDibRect rect = {};
  EXPECT_EQ(Offset(rect, rect.pos), 0);
  EXPECT_EQ(Offset(rect, rect.size), 16);
  EXPECT_EQ(Offset(rect, rect.scale), 32);
  EXPECT_EQ(sizeof rect, 40u);
  TKvDibRectI pixels = {};
  EXPECT_EQ(Offset(pixels, pixels.x), 0);
  EXPECT_EQ(Offset(pixels, pixels.y), 8);
  EXPECT_EQ(Offset(pixels, pixels.w), 16);
  EXPECT_EQ(Offset(pixels, pixels.h), 24);
  EXPECT_EQ(sizeof pixels, 32u);
}

TEST(LayoutTest, AShapeFileHeaderIsTheHundredBytesOfTheFile) {
  TShapeFileHeader header;
  EXPECT_EQ(Offset(header, header.fileCode), 0);
  EXPECT_EQ(Offset(header, header.unused1), 4);
  EXPECT_EQ(Offset(header, header.unused2), 8);
  EXPECT_EQ(Offset(header, header.unused3), 12);
  EXPECT_EQ(Offset(header, header.unused4), 16);
  EXPECT_EQ(Offset(header, header.unused5), 20);
  EXPECT_EQ(Offset(header, header.fileLength), 24);
  EXPECT_EQ(Offset(header, header.version), 28);
  EXPECT_EQ(Offset(header, header.shapeType), 32);
  EXPECT_EQ(offsetof(TShapeFileHeader, xMin), 36u);
  EXPECT_EQ(offsetof(TShapeFileHeader, yMin), 44u);
  EXPECT_EQ(offsetof(TShapeFileHeader, xMax), 52u);
  EXPECT_EQ(offsetof(TShapeFileHeader, yMax), 60u);
  EXPECT_EQ(offsetof(TShapeFileHeader, zMin), 68u);
  EXPECT_EQ(offsetof(TShapeFileHeader, zMax), 76u);
  EXPECT_EQ(offsetof(TShapeFileHeader, mMin), 84u);
  EXPECT_EQ(offsetof(TShapeFileHeader, mMax), 92u);
  EXPECT_EQ(sizeof(TShapeFileHeader), 100u);
}

TEST(LayoutTest, AShapeFilePolygonHeaderIsTheFiftyTwoBytesOfTheFile) {
  EXPECT_EQ(offsetof(TShapeFilePolygonHeader, recordNumber), 0u);
  EXPECT_EQ(offsetof(TShapeFilePolygonHeader, contentLength), 4u);
  EXPECT_EQ(offsetof(TShapeFilePolygonHeader, shapeType), 8u);
  EXPECT_EQ(offsetof(TShapeFilePolygonHeader, xMin), 12u);
  EXPECT_EQ(offsetof(TShapeFilePolygonHeader, yMin), 20u);
  EXPECT_EQ(offsetof(TShapeFilePolygonHeader, xMax), 28u);
  EXPECT_EQ(offsetof(TShapeFilePolygonHeader, yMax), 36u);
  EXPECT_EQ(offsetof(TShapeFilePolygonHeader, numParts), 44u);
  EXPECT_EQ(offsetof(TShapeFilePolygonHeader, numPoints), 48u);
  EXPECT_EQ(sizeof(TShapeFilePolygonHeader), 52u);
}

TEST(LayoutTest, ShapeFileHeadersLieAtAnyAddress) {
  EXPECT_EQ(alignof(TShapeFileHeader), 1u);
  EXPECT_EQ(alignof(TShapeFilePolygonHeader), 1u);
}

TEST(LayoutTest, ADecodedShapeFileHeaderHasEachMinimumBeforeItsMaximum) {
  TShapeFileHeaderInfo info;
  EXPECT_EQ(Offset(info, info.fileLength), 0);
  EXPECT_EQ(Offset(info, info.shapeType), 4);
  EXPECT_EQ(Offset(info, info.xMin), 8);
  EXPECT_EQ(Offset(info, info.xMax), 16);
  EXPECT_EQ(Offset(info, info.yMin), 24);
  EXPECT_EQ(Offset(info, info.yMax), 32);
  EXPECT_EQ(Offset(info, info.zMin), 40);
  EXPECT_EQ(Offset(info, info.zMax), 48);
  EXPECT_EQ(Offset(info, info.mMin), 56);
  EXPECT_EQ(Offset(info, info.mMax), 64);
  EXPECT_EQ(sizeof info, 72u);
}

TEST(LayoutTest, AShapeFileHasItsHeaderAndAPolygonItsRingsBehind) {
  TShapeFilePolygonData polygon;
  EXPECT_EQ(Offset(polygon, polygon.info), 8);
  EXPECT_EQ(sizeof(TShapeFileData), 80u);
  EXPECT_EQ(Offset(polygon, polygon.rings), 80);
  EXPECT_EQ(sizeof polygon, 104u);
}

TEST(LayoutTest, AShapeFilePointIsTwoDoublesAndARingAVectorOfThem) {
  TShapeFilePoint point;
  EXPECT_EQ(Offset(point, point.x), 0);
  EXPECT_EQ(Offset(point, point.y), 8);
  EXPECT_EQ(sizeof point, 16u);
  static_assert(std::is_same_v<TShapeFileRing, std::vector<TShapeFilePoint>>);
}

TEST(LayoutTest, AChannelDescriptionHasItsFieldsInOrder) {
  TKvDibChannels channels = {};
  EXPECT_EQ(Offset(channels, channels.sampleType), 0);
  EXPECT_EQ(Offset(channels, channels.sampleSize), 8);
  EXPECT_EQ(Offset(channels, channels.kinds), 16);
  EXPECT_EQ(sizeof channels, 40u);
}

TEST(LayoutTest, AnOrderOfVisibleBandsHasItsFieldsInOrder) {
  TVisibleBandsOrder order = {};
  EXPECT_EQ(Offset(order, order.first), 0);
  EXPECT_EQ(Offset(order, order.second), 8);
  EXPECT_EQ(Offset(order, order.third), 16);
  EXPECT_EQ(sizeof order, 24u);
}

// The names and the cursor are private: they are read where hosts expect them.
TEST(LayoutTest, TheListOfFileNamesHasItsNamesBeforeItsCursor) {
  TFilenamesList list;
  list.Insert("a");
  list.Insert("b");
  list.FindFirst("b");
  const auto* const bytes = reinterpret_cast<const char*>(&list);
  const auto* const names = reinterpret_cast<const std::vector<std::string>*>(bytes + 8);
  ASSERT_EQ(names->size(), 2u);
  EXPECT_EQ(names->at(1), "b");
  unsigned long cursor = 0;
  std::memcpy(&cursor, bytes + 32, sizeof cursor);
  EXPECT_EQ(cursor, 1u);
  EXPECT_EQ(sizeof(TFilenamesList), 40u);
}

TEST(LayoutTest, AListOfTemporaryFilesIsASetOfTextsAlone) {
  TTemporaryFilesList list;
  static_assert(
      std::is_same_v<decltype(list.files), std::set<std::string, std::less<std::string>>>);
  EXPECT_EQ(Offset(list, list.files), 0);
  EXPECT_EQ(sizeof list, 48u);
}

TEST(LayoutTest, ALogHasItsFieldsInOrderAndNoVtable) {
  TSatLog log;
  EXPECT_EQ(Offset(log, log.items), 0);
  EXPECT_EQ(Offset(log, log.firstError), 24);
  EXPECT_EQ(Offset(log, log.skipDebugMessages), 56);
  EXPECT_EQ(sizeof(TSatLog), 64u);
}

TEST(LayoutTest, ALoggedMessageHasItsFieldsInOrder) {
  TSatLog::TLogDataItem item = {};
  EXPECT_EQ(Offset(item, item.type), 0);
  EXPECT_EQ(Offset(item, item.message), 8);
  EXPECT_EQ(sizeof item, 40u);
}

TEST(LayoutTest, FieldsHaveTheirWidthAndSign) {
  static_assert(std::is_same_v<decltype(KvModule_Initializer::counter), unsigned long>);
  static_assert(std::is_same_v<decltype(TBasePushbroomDibData::width), long>);
  static_assert(std::is_same_v<decltype(TBasePushbroomDibData::height), long>);
  static_assert(std::is_same_v<decltype(TBasePushbroomDibData::bandsCount), long>);
  static_assert(std::is_same_v<decltype(OpenRawWord::readBufferSize), long>);
  static_assert(std::is_same_v<decltype(OpenRawWord::rowCacheSize), unsigned long>);
  static_assert(std::is_same_v<decltype(OpenSuperTiled::tileBufferSize), unsigned long>);
  static_assert(std::is_same_v<decltype(TSuperTileData::left), long>);
  static_assert(std::is_same_v<decltype(TVisibleBandsOrder::first), long>);
  static_assert(std::is_same_v<decltype(TKvDibChannels::sampleType), int>);
  static_assert(std::is_same_v<decltype(TKvDibChannels::sampleSize), unsigned long>);
  static_assert(
      std::is_same_v<decltype(TSeparateBandsDibData::channelBands)::key_type, unsigned int>);
  static_assert(std::is_same_v<decltype(TShapeFileHeader::fileCode), int>);
  static_assert(std::is_same_v<decltype(TShapeFileHeaderInfo::fileLength), unsigned int>);
  EXPECT_EQ(sizeof(long), 8u);
}

TEST(LayoutTest, ReferencesAreTwoPointersAndSmallVectorsAreBare) {
  EXPECT_EQ(sizeof(var_a_legacy::var_a<TKvStream*>), 16u);
  EXPECT_EQ(sizeof(vec_t_<unsigned long, 2>), 16u);
  EXPECT_EQ(sizeof(vec_t_<double, 2>), 16u);
}

TEST(LayoutTest, AStreamIsItsVtablePointerAlone) {
  EXPECT_EQ(sizeof(TKvStream), 8u);
}

TEST(LayoutTest, EnumerationsHaveTheirValues) {
  EXPECT_EQ(TRawWordDibData::boLittleEndian, 0);
  EXPECT_EQ(TRawWordDibData::boBigEndian, 1);
  EXPECT_EQ(bomNone, 0);
  EXPECT_EQ(bomUTF8, 1);
  EXPECT_EQ(bomUTF16BE, 2);
  EXPECT_EQ(bomUTF16LE, 3);
  EXPECT_EQ(bomUTF32BE, 4);
  EXPECT_EQ(bomUTF32LE, 5);
  EXPECT_EQ(TSatLog::mtDebug, 0);
  EXPECT_EQ(TSatLog::mtError, 1);
  EXPECT_EQ(TSatLog::mtWarning, 2);
  EXPECT_EQ(TSatLog::mtInfo, 3);
  EXPECT_EQ(kvOpenWrite, 9);
  EXPECT_EQ(kvOpenRead, 10);
  EXPECT_EQ(kvShareAll, 0xFFFFFFFFu);
  EXPECT_EQ(iqNearest, 0);
  EXPECT_EQ(iqBilinear, 1);
  EXPECT_EQ(kvDibNothing, 2);
  EXPECT_EQ(kvDibWritten, 3);
  EXPECT_EQ(kvEncodingAnsi, 0);
  EXPECT_EQ(kvEncodingUtf8, 1);
}

TEST(LayoutTest, EnumerationsAreFourBytesWide) {
  EXPECT_EQ(sizeof(TRawWordDibData::TBytesOrder), 4u);
  EXPECT_EQ(sizeof(TSatBOM), 4u);
  EXPECT_EQ(sizeof(TSatLog::TMsgType), 4u);
  EXPECT_EQ(sizeof(kvOpenMode), 4u);
  EXPECT_EQ(sizeof(kvShareMode), 4u);
  EXPECT_EQ(sizeof(TInterpolationQuality), 4u);
  EXPECT_EQ(sizeof(TKvDibResult), 4u);
  EXPECT_EQ(sizeof(TKvCharEncoding), 4u);
  EXPECT_EQ(sizeof(TShapeFileType), 4u);
  static_assert(std::is_same_v<std::underlying_type_t<TShapeFileType>, int>);
}

}  // namespace
