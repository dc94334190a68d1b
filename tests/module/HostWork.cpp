#include "module/HostWork.h"

#include <algorithm>
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
#include "support/TempFolder.h"

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

std::string StitchedPixels(int number) {
  const std::string digit = std::to_string(number % 10);
  TSuperTiledDibDataEnvelope raster;
  raster.Setup({{0, 0, 1, 1, 0, 0, Band("a0a1a2a" + digit), "a"},
                {2, 0, 3, 1, 0, 0, Band("b0b1b2b" + digit), "b"}},
               nullptr);
  std::string pixels(16, '-');
  TKvDibDataOutBuffer out;
  out.data = reinterpret_cast<unsigned char*>(pixels.data());
  out.stride = 8;
  const int result = raster.GetRect(out, {{{0, 0}}, {{4, 2}}, 1}, iqNearest, 0, nullptr);
  return std::to_string(result) + pixels;
}

std::string CodedTexts(const std::string& number) {
  std::string line;
  Encode("tab\t" + number + "\n", &line);
  std::string back;
  Decode(line, &back);
  std::vector<std::string> fields;
  SplitStringQuot((number + ",\"a,b\",,c").c_str(), ",", &fields, true);
  std::vector<double> numbers;
  SplitStringIntoDoubles((number + ";2").c_str(), ";", &numbers, nullptr);
  std::string text = line + back + ValueToString(numbers.at(0) + numbers.at(1)) +
                     GenerateNextString("Band[" + number + "]") + LeftPadding(number, 5, ' ') +
                     PseudoUTF16toUTF8(std::string("\0x", 2) + number, false) +
                     KvAnsiToChar("\xFC" + number, kvEncodingAnsi);
  for (const std::string& field : fields) text += "|" + field;
  return text;
}

/// A label of the other dialect, and pixels of a file that may be mapped.
std::string WorkOnFiles(const std::string& number) {
  const TempFolder folder;
  const bool written =
      WriteStringToFile(folder / "label.txt", "GROUP = G\nA = " + number + "\nEND_GROUP = G\n") &&
      WriteStringToFile(folder / "band.raw", "p0p1p2p" + number.substr(0, 1));
  auto* const xml = new TKvMemoryStream;
  const StreamPointer out(xml);
  const bool converted = NASA_PVLtoXML(
      StreamPointer(new TKvFileStream(folder / "label.txt", kvOpenRead, kvShareAll)), out);
  TRawWordDibData band;
  band.Setup(StreamPointer(new TKvFileStream(folder / "band.raw", kvOpenRead, kvShareAll)), 2, 2,
             TRawWordDibData::boBigEndian);
  std::string pixels(8, '-');
  const int result = band.GetRect({reinterpret_cast<unsigned char*>(pixels.data()), 4},
                                  {{{0, 0}}, {{2, 2}}, 1}, iqNearest, 0, nullptr);
  TFilenamesList names;
  FillFolderFilesList(folder.Path(), &names, nullptr);
  std::vector<std::string> found;
  names.FindAll("*.*", &found);
  std::sort(found.begin(), found.end());
  std::string text =
      xml->Bytes() + std::to_string(result) + pixels + ReadStringFromFile(folder / "label.txt");
  for (const std::string& name : found) text += name;
  std::string real;
  if (FileExists(folder.Path(), "LABEL.*", &real)) text += real;
  return text + (written && converted ? "" : "failed");
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
         ShapefileBytes(number) + ComposedPixels(number) + StitchedPixels(number) +
         CodedTexts(text) + WorkOnFiles(text) + FoundNamesAndMessages(text);
}
