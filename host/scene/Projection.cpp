#include "host/scene/Projection.h"

#include <set>
#include <vector>

#include "Kv/Stream.h"
#include "Kv/Text.h"
#include "Kv/XmlItem.h"
#include "SatCommonUtils/Files.h"
#include "host/HostError.h"
#include "host/io/InputFile.h"
#include "host/io/TextEncoding.h"
#include "host/scene/SceneLog.h"
#include "host/xml/XmlConversion.h"

namespace ravelin {
namespace {

using SatCommonUtils::TSatLog;

constexpr unsigned long kLongestWkt = 1UL << 20;

std::set<std::string> ProjectionNames(const std::string& folder) {
  SatCommonUtils::TFilenamesList files;
  SatCommonUtils::FillFolderFilesList(folder, &files, nullptr);
  std::vector<std::string> names;
  for (const char* mask : {"#.wkt", "#.prj"}) files.FindAll(mask, &names);
  return {names.begin(), names.end()};
}

std::optional<std::string> FindNamed(const ProductFolder& folder, const std::string& name,
                                     TSatLog* log) {
  std::optional<std::string> path = folder.Find(name);
  if (!path) LogWarning(log, "projection: there is no " + name + ", which the label names");
  return path;
}

std::optional<std::string> FindOnly(const ProductFolder& folder, TSatLog* log) {
  const std::set<std::string> names = ProjectionNames(folder.Path());
  if (names.size() == 1) return folder.Find(*names.begin());
  if (names.size() > 1) {
    LogWarning(log, "projection: left out, there are " + std::to_string(names.size()) +
                        " files .wkt or .prj, " + *names.begin() + " the first");
  } else {
    LogInfo(log, "projection: none, there is no file .wkt or .prj");
  }
  return std::nullopt;
}

Projection ReadProjection(const std::string& path) {
  Projection projection = {path, DecodedText(ReadWholeFile(path, kLongestWkt), path), ""};
  projection.xml = WktXml(projection.wkt, path);
  TKvXmlItem::Parse(projection.xml);
  return projection;
}

}  // namespace

bool Projection::IsProjected() const {
  return toupper(trim(wkt)).starts_with("PROJC");
}

std::optional<Projection> FindProjection(const ProductFolder& folder,
                                         const std::string& namedByLabel, TSatLog* log) {
  const std::optional<std::string> path =
      namedByLabel.empty() ? FindOnly(folder, log) : FindNamed(folder, namedByLabel, log);
  if (!path) return std::nullopt;
  try {
    const Projection projection = ReadProjection(*path);
    LogInfo(log, "projection: " + *path);
    return projection;
  } catch (const HostError& error) {
    LogWarning(log, std::string("projection: left out, ") + error.what());
  } catch (const TKvError& error) {
    LogWarning(log, "projection: left out, " + *path + " makes no XML: " + error.what());
  }
  return std::nullopt;
}

}  // namespace ravelin
