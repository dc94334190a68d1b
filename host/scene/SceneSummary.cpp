#include "host/scene/SceneSummary.h"

#include <nlohmann/json.hpp>

#include "Kv/Text.h"
#include "host/HostError.h"

namespace ravelin {
namespace {

using Json = nlohmann::ordered_json;
using SatCommonUtils::TShapeFilePoint;

Json Text(const std::string& bytes) {
  return KvAnsiToChar(bytes, kvEncodingUtf8);
}

Json TextOrNull(const std::string& bytes) {
  return bytes.empty() ? Json() : Text(bytes);
}

Json SizeOf(const ImageSize& size) {
  if (size.width == 0) return Json();
  return {{"width", size.width}, {"height", size.height}};
}

Json StatisticsOf(const BandStatistics& statistics) {
  return {{"samples", statistics.count},    {"minimum", statistics.minimum},
          {"maximum", statistics.maximum},  {"mean", statistics.mean},
          {"percentile2", statistics.dark}, {"percentile98", statistics.bright}};
}

Json ChannelOf(const SceneChannel& channel) {
  Json json = Json::object();
  json["key"] = channel.key;
  json["name"] = Text(channel.name);
  json["file"] = TextOrNull(channel.file);
  json["byteOrder"] = TextOrNull(channel.order);
  json["statistics"] = StatisticsOf(channel.statistics);
  return json;
}

Json CornersOf(const std::optional<SceneCorners>& corners) {
  if (!corners) return Json();
  const auto point = [](const TShapeFilePoint& p) { return Json::array({p.x, p.y}); };
  Json json = Json::object();
  json["upperLeft"] = point(corners->upperLeft);
  json["upperRight"] = point(corners->upperRight);
  json["lowerRight"] = point(corners->lowerRight);
  json["lowerLeft"] = point(corners->lowerLeft);
  return json;
}

Json FileOf(const SceneReport& report, const SceneOutput::File& file) {
  return {{"file", Text(report.output + "/" + file.name)}, {"bytes", file.bytes}};
}

Json SceneOf(const SceneReport& report) {
  Json json = Json::object();
  json["folder"] = Text(report.folder);
  json["output"] = Text(report.output);
  json["done"] = report.error.empty();
  json["error"] = TextOrNull(report.error);
  json["label"] = TextOrNull(report.label);
  json["dialect"] = TextOrNull(report.dialect);
  json["size"] = SizeOf(report.size);
  json["quicklook"] = SizeOf(report.quicklook);
  json["statisticsOf"] = report.allCounted ? "all pixels" : "the pixels of the quicklook";
  json["bands"] = Json::array();
  for (const SceneChannel& channel : report.channels) json["bands"].push_back(ChannelOf(channel));
  json["tiles"] = report.tiles.size();
  json["projection"] = TextOrNull(report.projection);
  json["cornersDegrees"] = CornersOf(report.degrees);
  json["cornersProjection"] = CornersOf(report.metres);
  json["warnings"] = Json::array();
  for (const std::string& warning : report.warnings) json["warnings"].push_back(Text(warning));
  json["files"] = Json::array();
  for (const SceneOutput::File& file : report.files) json["files"].push_back(FileOf(report, file));
  return json;
}

std::string HeadLine(const SceneReport& report) {
  std::string names;
  for (const SceneChannel& channel : report.channels) {
    names += (names.empty() ? ": " : ", ") + channel.name;
  }
  const std::string tiles =
      report.tiles.empty() ? "" : " of " + std::to_string(report.tiles.size()) + " tiles";
  return report.folder + ": " + ToText(report.size) + " pixels" + tiles + ", " +
         std::to_string(report.channels.size()) +
         (report.channels.size() == 1 ? " band" : " bands") + names;
}

}  // namespace

Json SceneSummary(const std::vector<SceneReport>& reports) {
  Json json = Json::object();
  json["scenes"] = Json::array();
  for (const SceneReport& report : reports) json["scenes"].push_back(SceneOf(report));
  return json;
}

std::string SceneSummaryText(const SceneReport& report) {
  std::string text = report.error.empty() ? Printable(HeadLine(report)) + "\n" : "";
  for (const std::string& warning : report.warnings) text += "  note: " + warning + "\n";
  for (const SceneOutput::File& file : report.files) {
    text += Printable(report.output + "/" + file.name) + "\n";
  }
  return text;
}

}  // namespace ravelin
