// Every operation that reads or writes a stream, while every call and every byte of the stream
// fails in turn: it does its work, says that it failed, or lets out what the stream threw.
#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "Kv/Kv.h"
#include "SatCommonUtils/Log.h"
#include "SatCommonUtils/Metadata.h"
#include "SatCommonUtils/Raster.h"
#include "SatCommonUtils/Shapefile.h"
#include "SatCommonUtils/Text.h"
#include "support/FaultyStream.h"

namespace {

using namespace SatCommonUtils;
using ravelin_test::FaultKind;
using ravelin_test::FaultyStream;
using ravelin_test::StreamFault;
using Stream = var_a_legacy::var_a<FaultyStream*>;

constexpr const char* kFailed = "failed";
constexpr unsigned long kMostCalls = 5000;

/// An operation and what is promised of it.
struct Operation {
  const char* name;
  std::string bytes;                              ///< what the stream holds
  std::function<std::string(const Stream&)> run;  ///< all that came of it, or kFailed
  bool passes;                                    ///< whether it lets out what the stream throws
  bool goesOn = false;  ///< whether it asks the stream for more afterwards

  friend void PrintTo(const Operation& operation, std::ostream* out) { *out << operation.name; }
};

std::string Failure(bool good, const std::string& result) {
  return good ? result : kFailed;
}

std::string Written(bool good, const Stream& stream) {
  return Failure(good, stream->Bytes());
}

TSatLog Log() {
  TSatLog log;
  log.AppendMessage(TSatLog::mtInfo, "what was done\n");
  log.AppendMessage(TSatLog::mtError, "what failed\n");
  return log;
}

TShapeFilePolygonData Polygon() {
  TShapeFilePolygonData polygon;
  polygon.Setup({{{0, 0}, {0, 1}, {1, 1}, {1, 0}}, {{2, 2}, {2, 3}, {3, 3}}});
  return polygon;
}

/// A file of one ring, which reads back.
std::string MainFile() {
  TShapeFilePolygonData polygon;
  polygon.Setup({{{0, 0}, {0, 1}, {1, 1}, {1, 0}}});
  TKvMemoryStream stream;
  polygon.Write(&stream);
  return stream.Bytes();
}

std::string WriteItems(TKvXIniStreamWriter& writer) {
  const unsigned long section = writer.BeginSectionS("scene");
  bool good = section != 0;
  for (int i = 0; i < 5; ++i) good &= writer.WriteS<int>("item", i);
  good &= writer.Flush() && writer.WriteS<double>("last", 0.5) && writer.EndSection(section);
  return writer.Close() && good ? "" : kFailed;
}

std::string ReadItems(const Stream& stream) {
  try {
    const TKvXIniReader reader(stream);
    return reader.ReadE<std::string>(0) + reader.ReadE<std::string>(1);
  } catch (const TKvError&) {
    return kFailed;
  }
}

std::string ParseText(const Stream& stream) {
  try {
    return TKvXmlItem::Parse(stream.get())->Element().items.get_text();
  } catch (const TKvError&) {
    return kFailed;
  }
}

std::string ReadPixels(const Stream& stream) {
  TRawWordDibData band;
  if (!band.Setup(stream, 4, 3, TRawWordDibData::boBigEndian)) return kFailed;
  std::string pixels(24, '.');
  const TKvDibDataOutBuffer out = {reinterpret_cast<unsigned char*>(pixels.data()), 8};
  const int result = band.GetRect(out, {{{0, 0}}, {{4, 3}}, 1}, iqNearest, 0, nullptr);
  if (result != kvDibWritten) {
    EXPECT_EQ(pixels, std::string(24, '.'));
  }
  return Failure(result == kvDibWritten, pixels);
}

/// The lines, each at its place.
std::string ReadLines(const Stream& stream) {
  std::string lines;
  unsigned long end = 0;
  for (char line[20]; !stream->Eof();) {
    const unsigned long consumed = stream->ReadLine(line, sizeof line);
    if (consumed == 0) break;
    end += consumed;
    EXPECT_EQ(stream->GetPos(), end);
    lines.append(line).append("|");
  }
  return Failure(end == stream->getSize(), lines);
}

const std::string kSamples = "000011112222333344445555";

using Band = var_a_legacy::var_a<TBasePushbroomDibData*>;

Band BandOn(const var_a_legacy::var_a<TKvStream*>& stream) {
  auto* const band = new TRawWordDibData;
  EXPECT_TRUE(band->Setup(stream, 4, 3, TRawWordDibData::boLittleEndian));
  return Band(band);
}

Band OtherBand() {
  return BandOn(var_a_legacy::var_a<TKvStream*>(new TKvMemoryStream(std::string(24, 'x'))));
}

/// Of every 2 * `size` bytes of a raster the first half, which comes from a band of kSamples. The
/// other half comes from the other band and must be there whatever becomes of the first.
std::string FirstHalf(TKvDibData& raster, std::size_t size) {
  std::string pixels(48, '.');
  const TKvDibDataOutBuffer out = {reinterpret_cast<unsigned char*>(pixels.data()), 16};
  EXPECT_EQ(raster.GetRect(out, raster.Bounds(), iqNearest, 0, nullptr), kvDibWritten);
  std::string first, second;
  for (std::size_t i = 0; i < pixels.size(); i += 2 * size) {
    first += pixels.substr(i, size);
    second += pixels.substr(i + size, size);
  }
  EXPECT_EQ(second, std::string(24, 'x'));
  return Failure(first == "444455552222333300001111", first);
}

std::string ComposePixels(const Stream& stream) {
  TSeparateBandsDibData compositor;
  if (!compositor.Setup({{4, BandOn(stream)}, {6, OtherBand()}})) return kFailed;
  return FirstHalf(compositor, 2);
}

std::string StitchPixels(const Stream& stream) {
  TSuperTiledDibDataEnvelope stitched;
  const std::vector<TSuperTileData> tiles = {{0, 0, 3, 2, 0, 0, BandOn(stream), ""},
                                             {4, 0, 7, 2, 0, 0, OtherBand(), ""}};
  if (!stitched.Setup(tiles, nullptr)) return kFailed;
  return FirstHalf(stitched, 8);
}

template <class Converter>
std::function<std::string(const Stream&)> Converting(Converter convert, const char* text) {
  return [=](const Stream& out) {
    const var_a_legacy::var_a<TKvStream*> in(new TKvMemoryStream(text));
    return Written(convert(in, out), out);
  };
}

using PvlConverter = bool (*)(var_a_legacy::var_a<TKvStream*>, var_a_legacy::var_a<TKvStream*>);

std::vector<Operation> TextOperations() {
  const std::string marked = "\xff\xfe" + std::string(2100, 'x');
  return {
      {"ReadBOM", marked,
       [](const Stream& stream) {
         const TSatBOM mark = ReadBOM(stream.get());
         return Failure(mark != bomNone, std::to_string(mark));
       },
       true, true},
      {"PseudoUTF16toUTF8", marked,
       [](const Stream& stream) {
         const std::string read = PseudoUTF16toUTF8(stream.get(), true, 2);
         return Failure(!read.empty(), read);
       },
       true},
      {"PseudoUTF16toUTF8BOM", marked,
       [](const Stream& stream) {
         const std::string read = PseudoUTF16toUTF8BOM(stream.get());
         return Failure(!read.empty(), read);
       },
       true, true},
      {"TSatLogSaveToStream", "",
       [](const Stream& stream) { return Written(Log().SaveToStream(stream.get()), stream); },
       true},
      {"PVLtoXML", "",
       Converting(static_cast<PvlConverter>(PVLtoXML),
                  "BEGIN_GROUP = A;\nB = (1, 2);\nEND_GROUP = A;\nEND;\n"),
       false},
      {"NASA_PVLtoXML", "",
       Converting(static_cast<PvlConverter>(NASA_PVLtoXML),
                  "GROUP = A\nB = (1, 2)\nEND_GROUP = A\nEND\n"),
       false},
  };
}

std::vector<Operation> ShapefileOperations() {
  return {
      {"TShapeFileDataInitialize", MainFile(),
       [](const Stream& stream) {
         TShapeFileData data;
         const bool good = data.Initialize(stream.get());
         return Failure(good, std::to_string(data.info.fileLength));
       },
       true},
      {"TShapeFilePolygonDataInitialize", MainFile(),
       [](const Stream& stream) {
         TShapeFilePolygonData data;
         const bool good = data.Initialize(stream.get());
         return Failure(good, good ? std::to_string(data.rings.front().back().x) : "");
       },
       true},
      {"CheckShapeFile", MainFile(),
       [](const Stream& stream) {
         const TShapeFileType type = CheckShapeFile(stream.get());
         return Failure(type != sftInvalid, std::to_string(type));
       },
       true},
      {"TShapeFilePolygonDataWrite", "",
       [](const Stream& stream) { return Written(Polygon().Write(stream.get()), stream); }, true},
  };
}

std::vector<Operation> FrameworkOperations() {
  return {
      {"TKvXIniReader", "<r><a>first</a><b>second</b></r>", ReadItems, true, true},
      {"TKvXmlItemParse", "<r>some text of several bytes</r>", ParseText, true, true},
      {"TKvXIniStreamWriter", "",
       [](const Stream& stream) {
         TKvXIniStreamWriter writer(stream, 0, TKvXIniStreamWriter::htDocument);
         return WriteItems(writer) + stream->Bytes();
       },
       false},
      {"TKvStreamReadLine", "one\ntwo\n\na line that is longer than its buffer\nlast", ReadLines,
       true, true},
  };
}

std::vector<Operation> RasterOperations() {
  return {
      {"TRawWordDibDataGetRect", kSamples, ReadPixels, false},
      {"TSeparateBandsDibDataGetRect", kSamples, ComposePixels, false},
      {"TSuperTiledDibDataEnvelopeGetRect", kSamples, StitchPixels, false},
  };
}

class StreamFaults : public testing::TestWithParam<Operation> {
 protected:
  /// Runs the operation on a stream that `prepare` has told how to fail; whether it did.
  template <class Prepare>
  bool FailsRightly(const Prepare& prepare) const {
    const Operation& operation = GetParam();
    const Stream stream(new FaultyStream(operation.bytes));
    prepare(*stream);
    std::string result;
    bool threw = false;
    try {
      result = operation.run(stream);
    } catch (const StreamFault&) {
      threw = true;
    }
    EXPECT_EQ(stream.use_count(), 1) << "the stream is held";
    if (!stream->failed) {
      EXPECT_EQ(result, whole_);
      return false;
    }
    EXPECT_TRUE(operation.goesOn || !stream->calledLater);
    if (threw || stream->kind == FaultKind::kThrowing) {
      EXPECT_EQ(threw, operation.passes);
      if (threw) return true;
    }
    if (result != whole_) {
      EXPECT_TRUE(result.starts_with(kFailed)) << result;
    }
    return true;
  }

  std::string whole_ = GetParam().run(Stream(new FaultyStream(GetParam().bytes)));
};

constexpr FaultKind kKinds[] = {FaultKind::kShort, FaultKind::kNothing, FaultKind::kThrowing};

TEST_P(StreamFaults, AtEveryCall) {
  for (const FaultKind kind : kKinds) {
    unsigned long call = 0;
    while (call < kMostCalls && !HasFailure() && FailsRightly([&](FaultyStream& stream) {
             stream.kind = kind;
             stream.call = call;
           })) {
      ++call;
    }
    EXPECT_GT(call, 0u);
    EXPECT_LT(call, kMostCalls);
  }
}

TEST_P(StreamFaults, AtEveryByte) {
  for (const FaultKind kind : kKinds) {
    unsigned long byte = 0;
    while (byte < kMostCalls && !HasFailure() && FailsRightly([&](FaultyStream& stream) {
             stream.kind = kind;
             stream.byte = byte;
           })) {
      ++byte;
    }
    EXPECT_GT(byte, 0u);
    EXPECT_LT(byte, kMostCalls);
  }
}

std::string NameOf(const testing::TestParamInfo<Operation>& info) {
  return info.param.name;
}

INSTANTIATE_TEST_SUITE_P(Texts, StreamFaults, testing::ValuesIn(TextOperations()), NameOf);
INSTANTIATE_TEST_SUITE_P(Shapefiles, StreamFaults, testing::ValuesIn(ShapefileOperations()),
                         NameOf);
INSTANTIATE_TEST_SUITE_P(Rasters, StreamFaults, testing::ValuesIn(RasterOperations()), NameOf);
INSTANTIATE_TEST_SUITE_P(Framework, StreamFaults, testing::ValuesIn(FrameworkOperations()), NameOf);

}  // namespace
