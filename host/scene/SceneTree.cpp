#include "host/scene/SceneTree.h"

#include <cstdio>
#include <string>
#include <vector>

namespace ravelin {
namespace {

using SatCommonUtils::TStringTree;

/// Every subtree of a TStringTree is one. Their indices count up, so none is looked for.
TStringTree* AddSubtree(TStringTree* tree, const char* header, int tag, int idx) {
  tree->subtrees.push_back(tree->CreateSubtree(tag, idx, header));
  return static_cast<TStringTree*>(tree->subtrees.back());
}

void AddList(TStringTree* tree, const char* header, int tag, std::vector<std::string> values) {
  if (!values.empty()) tree->InsertField(header, tag, 0, values.data(), values.size());
}

void AddText(TStringTree* tree, const char* header, int tag, const std::string& value) {
  if (!value.empty()) tree->InsertString(header, tag, 0, value);
}

void AddNumber(TStringTree* tree, const char* header, int tag, unsigned long value) {
  tree->InsertString(header, tag, 0, std::to_string(value));
}

void AddStatistics(TStringTree* band, const BandStatistics& statistics) {
  AddNumber(band, "Samples that are not 0", kSamplesTag, statistics.count);
  band->InsertInteger("Minimum", kMinimumTag, 0, statistics.minimum);
  band->InsertInteger("Maximum", kMaximumTag, 0, statistics.maximum);
  band->InsertDouble("Mean", kMeanTag, 0, statistics.mean);
  band->InsertInteger("2nd percentile", kDarkTag, 0, statistics.dark);
  band->InsertInteger("98th percentile", kBrightTag, 0, statistics.bright);
}

void AddChannel(TStringTree* tree, int idx, const SceneChannel& channel) {
  TStringTree* band = AddSubtree(tree, "Band", kBandTag, idx);
  band->InsertInteger("Key", kKeyTag, 0, channel.key);
  AddText(band, "Name", kNameTag, channel.name);
  AddText(band, "File", kFileTag, channel.file);
  AddText(band, "Byte order", kOrderTag, channel.order);
  AddStatistics(band, channel.statistics);
}

void AddTile(TStringTree* tree, int idx, const TileEntry& entry) {
  TStringTree* tile = AddSubtree(tree, "Tile", kTileTag, idx);
  AddList(tile, "Left, top, right, bottom", kPlaceTag,
          {std::to_string(entry.left), std::to_string(entry.top), std::to_string(entry.right),
           std::to_string(entry.bottom)});
  AddList(tile, "Source left, top", kSourceTag,
          {std::to_string(entry.srcLeft), std::to_string(entry.srcTop)});
  std::vector<std::string> files;
  for (const BandArgument& band : entry.bands) files.push_back(band.file);
  AddList(tile, "Files", kFilesTag, files);
}

std::string Text(double number) {
  char text[32];
  const int length = std::snprintf(text, sizeof(text), "%.9f", number);
  return std::string(text, static_cast<std::size_t>(length));
}

void AddCorners(TStringTree* tree, const char* header, int idx, const SceneCorners& corners) {
  TStringTree* place = AddSubtree(tree, header, kCornersTag, idx);
  const auto add = [place](const char* name, int tag, const SatCommonUtils::TShapeFilePoint& p) {
    AddList(place, name, tag, {Text(p.x), Text(p.y)});
  };
  add("Upper left", kUpperLeftTag, corners.upperLeft);
  add("Upper right", kUpperRightTag, corners.upperRight);
  add("Lower right", kLowerRightTag, corners.lowerRight);
  add("Lower left", kLowerLeftTag, corners.lowerLeft);
}

}  // namespace

void FillSceneTree(const SceneReport& report, TStringTree* tree) {
  AddText(tree, "Folder", kFolderTag, report.folder);
  AddText(tree, "Label", kLabelTag, report.label);
  AddText(tree, "Dialect", kDialectTag, report.dialect);
  tree->InsertString("Width", kWidthTag, 0, std::to_string(report.size.width));
  tree->InsertString("Height", kHeightTag, 0, std::to_string(report.size.height));
  AddText(tree, "Projection", kProjectionTag, report.projection);
  AddText(tree, "Statistics of", kCountedTag,
          report.allCounted ? "all pixels" : "the pixels of the quicklook");
  int idx = 0;
  for (const SceneChannel& channel : report.channels) AddChannel(tree, idx++, channel);
  idx = 0;
  for (const TileEntry& tile : report.tiles) AddTile(tree, idx++, tile);
  if (report.degrees) AddCorners(tree, "Corners, degrees", 0, *report.degrees);
  if (report.metres) AddCorners(tree, "Corners, projection", 1, *report.metres);
}

}  // namespace ravelin
