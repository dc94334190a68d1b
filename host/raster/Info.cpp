#include "host/raster/Info.h"

#include <limits>
#include <map>
#include <nlohmann/json.hpp>
#include <set>
#include <vector>

#include "Kv/Text.h"
#include "host/HostError.h"
#include "host/io/InputFile.h"
#include "host/raster/BandFile.h"
#include "host/raster/EnviHeader.h"
#include "host/raster/TileFiles.h"

namespace ravelin {
namespace {

using Json = nlohmann::ordered_json;

Json Text(const std::string& bytes) {
  return KvAnsiToChar(bytes, kvEncodingUtf8);
}

std::string ByteOrderName(int order) {
  switch (order) {
    case 0:
      return "little-endian";
    case 1:
      return "big-endian";
    default:
      return "unknown";
  }
}

// Bytes of the image that a header tells of; none when that is no number.
std::optional<unsigned long> ImageBytes(const EnviHeader& header) {
  unsigned long bytes = EnviSampleBytes(header.dataType);
  if (bytes == 0) return std::nullopt;
  for (const unsigned long factor : {header.samples, header.lines, header.bands}) {
    if (__builtin_mul_overflow(bytes, factor, &bytes)) return std::nullopt;
  }
  if (__builtin_add_overflow(bytes, header.headerOffset, &bytes)) return std::nullopt;
  return bytes;
}

std::string FindHeader(const std::string& path) {
  const std::string beside = EnviHeaderPath(path);
  const std::string behind = path + ".hdr";
  for (const std::string& candidate : {beside, behind}) {
    try {
      RegularFileSize(candidate);
      return candidate;
    } catch (const HostError&) {
      continue;
    }
  }
  throw HostError(path, "has no header " + beside + " beside it", "put its .hdr file there");
}

Json DescribeImage(const std::string& path) {
  const unsigned long there = RegularFileSize(path);
  const std::string headerPath = FindHeader(path);
  const EnviHeader header =
      ParseEnviHeader(ReadWholeFile(headerPath, kMaxEnviHeaderBytes), headerPath);
  const std::optional<unsigned long> wanted = ImageBytes(header);
  Json json = Json::object();
  json["file"] = Text(path);
  json["kind"] = "image";
  json["header"] = Text(headerPath);
  json["width"] = header.samples;
  json["height"] = header.lines;
  json["bands"] = header.bands;
  json["bandNames"] = Json::array();
  for (const std::string& name : header.bandNames) json["bandNames"].push_back(Text(name));
  json["sampleType"] = EnviTypeName(header.dataType);
  json["byteOrder"] = ByteOrderName(header.byteOrder);
  json["interleave"] = Text(header.interleave);
  json["headerOffset"] = header.headerOffset;
  json["bytes"] = there;
  json["expectedBytes"] = wanted ? Json(*wanted) : Json();
  json["complete"] = wanted == there;
  return json;
}

// "present", "missing", "wrong size" or "outside", and why.
Json DescribeTileFile(const std::string& indexPath, const TileEntry& tile,
                      const BandArgument& band) {
  Json json = Json::object();
  json["file"] = Text(band.file);
  json["line"] = tile.line;
  BandLayout layout;
  layout.size = tile.fileSize;
  layout.remedy = "check width and height in line " + std::to_string(tile.line) + " of the index";
  json["expectedBytes"] = BandFileBytes(band.file, layout);
  try {
    json["bytes"] = RegularFileSize(ResolveTileFile(indexPath, band.file, false));
    json["state"] = json["bytes"] == json["expectedBytes"] ? "present" : "wrong size";
  } catch (const OutsideIndexFolder&) {
    json["state"] = "outside";
  } catch (const HostError&) {
    json["state"] = "missing";
  }
  return json;
}

Json DescribeTileFiles(const std::string& path, const TileIndex& index) {
  std::map<std::string, unsigned long> counts;
  Json faults = Json::array();
  for (const TileEntry& tile : index.tiles) {
    for (const BandArgument& band : tile.bands) {
      const Json file = DescribeTileFile(path, tile, band);
      const std::string state = file["state"];
      ++counts[state];
      if (state != "present") faults.push_back(file);
    }
  }
  Json json = Json::object();
  json["present"] = counts["present"];
  json["missing"] = counts["missing"];
  json["wrongSize"] = counts["wrong size"];
  json["outside"] = counts["outside"];
  json["faults"] = faults;
  return json;
}

Json DescribeIndex(const std::string& path) {
  const TileIndex index = ReadTileIndex(path);
  const ImageSize size = index.Size();
  std::set<int> keys;
  for (const BandArgument& band : index.tiles.front().bands) keys.insert(band.key);
  Json json = Json::object();
  json["file"] = Text(path);
  json["kind"] = "tile index";
  json["tiles"] = index.tiles.size();
  json["width"] = size.width;
  json["height"] = size.height;
  json["bands"] = keys.size();
  json["keys"] = keys;
  json["bandNames"] = Json::array();
  for (const int key : keys) json["bandNames"].push_back(BandName(key));
  json["files"] = DescribeTileFiles(path, index);
  json["complete"] = json["files"]["faults"].empty();
  return json;
}

std::string Number(const Json& json, const char* name) {
  return json[name].is_null() ? "unknown" : std::to_string(json[name].get<unsigned long>());
}

std::string Shown(const Json& json) {
  return Printable(json.get<std::string>());
}

std::string BandsText(const Json& json) {
  std::string text = Number(json, "bands");
  const char* separator = ": ";
  for (const Json& name : json["bandNames"]) {
    text += separator + Shown(name);
    separator = ", ";
  }
  return text;
}

std::string ImageText(const Json& json) {
  const bool complete = json["complete"];
  return "  type     " + Shown(json["sampleType"]) + ", " + Shown(json["byteOrder"]) + ", " +
         Shown(json["interleave"]) + ", pixels from byte " + Number(json, "headerOffset") +
         "\n  file     " + Number(json, "bytes") + " bytes" +
         (complete ? ", as the header says"
                   : ", but the header says " + Number(json, "expectedBytes")) +
         "\n";
}

std::string FilesText(const Json& files) {
  std::string text = "  files    " + Number(files, "present") + " present, " +
                     Number(files, "missing") + " missing, " + Number(files, "wrongSize") +
                     " of the wrong size, " + Number(files, "outside") +
                     " outside the folder of the index\n";
  for (const Json& fault : files["faults"]) {
    text += "  line " + Number(fault, "line") + ": " + Shown(fault["file"]) + ": " +
            Shown(fault["state"]);
    if (fault.contains("bytes")) {
      text += ": " + Number(fault, "bytes") + " bytes instead of " + Number(fault, "expectedBytes");
    }
    text += '\n';
  }
  return text;
}

}  // namespace

Json DescribeFile(const std::string& path) {
  const bool image = tolower(path).ends_with(".bip");
  return image ? DescribeImage(path) : DescribeIndex(path);
}

std::string DescriptionText(const Json& json) {
  std::string text = Shown(json["file"]) + ": " + Shown(json["kind"]) + "\n  size     " +
                     Number(json, "width") + " x " + Number(json, "height") +
                     " pixels\n  bands    " + BandsText(json) + "\n";
  if (json["kind"] == "image") return text + ImageText(json);
  return text + "  tiles    " + Number(json, "tiles") + "\n" + FilesText(json["files"]);
}

}  // namespace ravelin
