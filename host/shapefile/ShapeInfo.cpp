#include "host/shapefile/ShapeInfo.h"

#include <array>
#include <charconv>
#include <nlohmann/json.hpp>

#include "Kv/Text.h"
#include "host/HostError.h"

namespace ravelin {
namespace {

using Json = nlohmann::ordered_json;

void DescribeHeader(const SatCommonUtils::TShapeFileHeader& header, Json& json) {
  const int type = header.shapeType;
  json["type"] = type;
  json["typeName"] = ShapeTypeName(type);
  json["version"] = int{header.version};
  json["storedBytes"] = StoredShapeBytes(header);
  json["box"] = {{"xMin", double{header.xMin}},
                 {"yMin", double{header.yMin}},
                 {"xMax", double{header.xMax}},
                 {"yMax", double{header.yMax}}};
  if (!IsZtype(SatCommonUtils::IntToShapeFileType(type))) return;
  json["heights"] = {{"zMin", double{header.zMin}}, {"zMax", double{header.zMax}}};
}

void DescribePolygon(const ShapeFile& file, Json& json) {
  unsigned long points = 0;
  Json sizes = Json::array();
  for (const auto& ring : file.polygon.rings) {
    points += ring.size();
    sizes.push_back(ring.size());
  }
  json["rings"] = file.polygon.rings.size();
  json["points"] = points;
  json["ringSizes"] = std::move(sizes);
  json["restBytes"] = file.restBytes;
}

/// The shortest text that reads back as the number. JSON has no word for what is none.
std::string Number(const Json& json) {
  if (json.is_null() || !json.is_number_float()) return json.dump();
  std::array<char, 32> text;
  const auto [end, error] =
      std::to_chars(text.data(), text.data() + text.size(), json.get<double>());
  return {text.data(), end};
}

std::string Range(const Json& low, const Json& high) {
  return Number(low) + " to " + Number(high);
}

std::string HeaderText(const Json& json) {
  const Json& box = json["box"];
  std::string text = "  type     " + Number(json["type"]) + " (" +
                     json["typeName"].get<std::string>() + ")\n  box      x " +
                     Range(box["xMin"], box["xMax"]) + ", y " + Range(box["yMin"], box["yMax"]) +
                     "\n";
  if (!json.contains("heights")) return text;
  return text + "  heights  " + Range(json["heights"]["zMin"], json["heights"]["zMax"]) + "\n";
}

std::string BytesText(const Json& json) {
  std::string text = "  file     " + Number(json["bytes"]) + " bytes";
  if (!json.contains("storedBytes")) return text + "\n";
  if (json["storedBytes"] == json["bytes"]) return text + ", as the header says\n";
  return text + ", but the header says " + Number(json["storedBytes"]) + "\n";
}

std::string RestText(const Json& json) {
  if (!json.contains("restBytes") || json["restBytes"] == 0) return {};
  return "  rest     " + Number(json["restBytes"]) +
         " bytes behind the first record are not read\n";
}

}  // namespace

Json DescribeShape(const ShapeFile& file, const std::string& name) {
  Json json = Json::object();
  json["file"] = KvAnsiToChar(name, kvEncodingUtf8);
  json["kind"] = file.header ? "shapefile" : "not a shapefile";
  json["bytes"] = file.bytes;
  if (file.header) DescribeHeader(*file.header, json);
  json["read"] = file.refusal.empty();
  if (file.refusal.empty()) {
    DescribePolygon(file, json);
  } else {
    json["refusal"] = file.refusal;
  }
  return json;
}

std::string ShapeText(const Json& json) {
  std::string text =
      Printable(json["file"].get<std::string>()) + ": " + json["kind"].get<std::string>() + "\n";
  if (json.contains("type")) text += HeaderText(json);
  if (json.contains("rings")) {
    text += "  rings    " + Number(json["rings"]) + "\n  points   " + Number(json["points"]) +
            ", closing points not counted\n";
  }
  text += BytesText(json) + RestText(json);
  if (json.contains("refusal")) text += "  refused  " + json["refusal"].get<std::string>() + "\n";
  return text;
}

}  // namespace ravelin
