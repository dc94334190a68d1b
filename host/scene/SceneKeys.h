// The names of a label's values that a scene is described by, and a label sorted by them.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/scene/LabelValues.h"

namespace ravelin {

/// A name that the description of a scene asks for, and the other names that labels use for it. The
/// table is in docs/scene.md.
struct SceneKey {
  const char* name;
  std::vector<const char*> others;
};
const std::vector<SceneKey>& SceneKeys();

/// The name of the table that a label's name stands for, letter case ignored; of a band's number
/// the digits without leading zeros. Empty when the table does not know it.
///
///     StandardName("REFLECTIVE_LINES");  // "LINES"
///     StandardName("BAND4_FILE_NAME");   // "FILE_NAME_BAND_4"
std::string StandardName(std::string_view labelName);

/// KEY=NAME: the label's value KEY is read as the table's NAME. KEY is a value's name, with the
/// names of groups before it where needed: "IMAGE/ROWS".
struct KeyMapping {
  std::string key;
  std::string name;
};
/// Throws std::invalid_argument saying what is wrong.
KeyMapping ParseKeyMapping(std::string_view text);

/// The values of one part of a label under the table's names: of one BAND_n group, of one TILE_...
/// group, or of all else.
class LabelScope {
 public:
  LabelScope(std::string file, std::string path);

  /// The name of the group; empty for all else.
  const std::string& Path() const { return path_; }

  /// The text of a value; none when it is not there. Throws HostError, naming the places, when the
  /// label gives it several times and not the same; `option` is what to give instead.
  std::optional<std::string> Text(const std::string& name, const std::string& option) const;
  /// The number that a value begins with. Throws HostError also when it does not.
  std::optional<double> Number(const std::string& name, const std::string& option) const;
  /// The table's names of all values, each once.
  std::vector<std::string> Names() const;

 private:
  friend class ScopeBuilder;

  struct Place {
    const LabelGroup* group;
    const LabelValue* value;
    bool mapped;
  };

  const Place* Find(const std::string& name, const std::string& option) const;

  std::string file_;
  std::string path_;
  std::map<std::string, std::vector<Place>> places_;
};

/// A label sorted. `groups` must outlive it.
struct LabelScopes {
  LabelScope main;
  std::vector<LabelScope> bands;            ///< BAND_n groups
  std::vector<LabelScope> tiles;            ///< TILE_... groups that have a LEFT
  std::vector<std::string> unusedMappings;  ///< keys that the label does not have
  std::vector<std::string> otherBands;      ///< values FILE_NAME_BAND_... whose band has no number
};

/// Sorts the values of the label in `file`. A value that a mapping is for goes before all others of
/// its part that the table would take for the same name. In a label that has a group
/// LEVEL2_PROCESSING_RECORD the groups LEVEL1_... tell of the input of the processing and are left
/// out. Linear in the label but for a logarithm and the number of mappings.
LabelScopes SortLabel(const std::vector<LabelGroup>& groups,
                      const std::vector<KeyMapping>& mappings, const std::string& file);

/// The digits at the end of BAND_4, FILE_NAME_BAND_4; none when there is no such number.
std::optional<int> BandNumber(std::string_view name, std::string_view start);

}  // namespace ravelin
