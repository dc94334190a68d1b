// A scene as a tree of values.
#pragma once

#include "SatCommonUtils/Tree.h"
#include "host/scene/SceneReport.h"

namespace ravelin {

/// Tags of the tree, its fields and its subtrees; docs/scene.md lists them.
enum SceneTag : int {
  kSceneTag = 1,
  kBandTag = 2,     ///< subtree, idx counts the channels
  kTileTag = 3,     ///< subtree, idx counts the tiles
  kCornersTag = 4,  ///< subtree, idx 0: degrees, 1: the units of the projection
  kFolderTag = 10,
  kLabelTag,
  kDialectTag,
  kWidthTag,
  kHeightTag,
  kProjectionTag,
  kCountedTag,
  kKeyTag = 20,
  kNameTag,
  kFileTag,
  kOrderTag,
  kSamplesTag = 30,
  kMinimumTag,
  kMaximumTag,
  kMeanTag,
  kDarkTag,
  kBrightTag,
  kPlaceTag = 40,  ///< left, top, right, bottom
  kSourceTag,      ///< left, top
  kFilesTag,
  kUpperLeftTag = 50,  ///< x, y
  kUpperRightTag,
  kLowerRightTag,
  kLowerLeftTag,
};

/// Fills a tree that is empty and has the tag kSceneTag.
void FillSceneTree(const SceneReport& report, SatCommonUtils::TStringTree* tree);

}  // namespace ravelin
