#include "module/HostWork.h"

#include <map>
#include <vector>

#include "Kv/Kv.h"
#include "SatCommonUtils/Files.h"
#include "SatCommonUtils/Log.h"
#include "SatCommonUtils/Metadata.h"
#include "SatCommonUtils/Raster.h"
#include "SatCommonUtils/Shapefile.h"
#include "SatCommonUtils/Text.h"
#include "SatCommonUtils/Tree.h"

namespace {

using namespace SatCommonUtils;
using StreamPointer = var_a_legacy::var_a<TKvStream*>;
using BandPointer = var_a_legacy::var_a<TBasePushbroomDibData*>;

StreamPointer MemoryOf(const std::string& bytes) {
  return StreamPointer(new TKvMemoryStream(bytes));
}

std::string ConvertedLabels(const std::string& number) {
  auto* const xml = new TKvMemoryStream;
  const StreamPointer out(xml);
  const bool converted =
      PVLtoXML(MemoryOf("BEGIN_GROUP = G\nA = (" + number + ", 1.5);\nEND_GROUP = G\nEND;\n"), out);
  std::string wkt;
  const bool convertedWkt = WktSectionToXml("GEOGCS[\"g" + number + "\",UNIT[\"d\",0.5]]", &wkt);
  return xml->Bytes() + wkt + (converted && convertedWkt ? "" : "failed");
}

std::string TreeInBothForms(int number) {
  TStringTree tree(1, 0, nullptr, "Tree");
  tree.InsertInteger("Number", 10, 0, number);
  tree.InsertDouble("Half", 11, 0, number + 0.5);
  const std::string text = WriteTreeToString(tree);
  auto* const xml = new TKvMemoryStream;
  TKvXIniStreamWriter writer(StreamPointer(xml), 0, TKvXIniStreamWriter::htDocument);
  tree.WriteToXML(&writer);
  writer.Close();
  TKvXIniReader reader(MemoryOf(xml->Bytes()));
  TStringTree back(0, 0, nullptr, "");
  back.ReadFromXML(&reader, 0, nullptr);
  return text + xml->Bytes() + (WriteTreeToString(back) == text ? "same" : "other");
}

std::string TransformThereAndBack(int number) {
  auto* const xml = new TKvMemoryStream;
  TKvXIniStreamWriter writer(StreamPointer(xml), 0, TKvXIniStreamWriter::htDocument);
  SaveToXML(TKv2DTransform(1.25, 0, number, 0, 0.5, 1e-9), &writer, "t");
  writer.WriteS<double>("number", number + 0.125);
  writer.Close();
  TKvXIniReader reader(MemoryOf(xml->Bytes()));
  const auto transform = CreateFromXMLE(&reader, "t");
  return xml->Bytes() + (transform->Apply(4, 0)[0] == 5.0 + number ? "same" : "other");
}

std::string ShapefileBytes(int number) {
  TShapeFilePolygonData polygon;
  polygon.Setup({{{0, 0}, {0, number + 1.5}, {2, 2}}});
  TKvMemoryStream stream;
  polygon.Write(&stream);
  TShapeFilePolygonData back;
  return stream.Bytes() + (back.Initialize(&stream) ? "valid" : "invalid");
}

BandPointer Band(const std::string& samples) {
  auto* const band = new TRawWordDibData;
  const BandPointer pointer(band);
  band->Setup(MemoryOf(samples), 2, 2, TRawWordDibData::boBigEndian);
  return pointer;
}

std::string ComposedPixels(int number) {
  const std::string digit = std::to_string(number % 10);
  TSeparateBandsDibData raster;
  raster.Setup({{3, Band("b0b1b2b" + digit)}, {6, Band("r0r1r2r" + digit)}});
  std::string pixels(16, '-');
  TKvDibDataOutBuffer out;
  out.data = reinterpret_cast<unsigned char*>(pixels.data());
  out.stride = 8;
  const int result = raster.GetRect(out, {{{0, 0}}, {{2, 2}}, 1}, iqNearest, 0, nullptr);
  return std::to_string(result) + pixels;
}

std::string FoundNamesAndMessages(const std::string& number) {
  TFilenamesList names;
  names.Insert("scene" + number + "_MTL.TXT");
  std::vector<std::string> found;
  names.FindAll("#_mtl.txt", &found);
  TSatLog log;
  for (const std::string& name : found) log.AppendMessage(TSatLog::mtWarning, name + "\n");
  TKvMemoryStream stream;
  log.SaveToStream(&stream);
  return stream.Bytes();
}

}  // namespace

std::string HostWork(int number) {
  const std::string text = std::to_string(number);
  return ConvertedLabels(text) + TreeInBothForms(number) + TransformThereAndBack(number) +
         ShapefileBytes(number) + ComposedPixels(number) + FoundNamesAndMessages(text);
}
