#include "host/scene/SceneKeys.h"

#include <algorithm>
#include <set>
#include <stdexcept>
#include <utility>

#include "Kv/Text.h"
#include "host/HostError.h"
#include "host/ParseNumber.h"

namespace ravelin {
namespace {

constexpr std::string_view kBandGroup = "BAND_";
constexpr std::string_view kTileGroup = "TILE_";
constexpr std::string_view kBandFile = "FILE_NAME_BAND_";
constexpr std::string_view kBandType = "DATA_TYPE_BAND_";
constexpr std::size_t kLongestShown = 40;

std::map<std::string, std::string> MakeNames() {
  std::map<std::string, std::string> names;
  for (const SceneKey& key : SceneKeys()) {
    names[key.name] = key.name;
    for (const char* other : key.others) names[other] = key.name;
  }
  return names;
}

/// BAND4_FILE_NAME, as labels before 2012 have it.
std::optional<int> OldBandNumber(const std::string& name) {
  constexpr std::string_view start = "BAND";
  constexpr std::string_view end = "_FILE_NAME";
  if (!name.starts_with(start) || !name.ends_with(end)) return std::nullopt;
  return BandNumber(std::string_view(name).substr(0, name.size() - end.size()), start);
}

std::string Shortened(const std::string& text) {
  return text.size() > kLongestShown ? text.substr(0, kLongestShown) + "..." : text;
}

/// Whether a path is `key` or ends with it behind a '/'. Both in upper case.
bool EndsWithKey(const std::string& path, const std::string& key) {
  if (!path.ends_with(key)) return false;
  return path.size() == key.size() || path[path.size() - key.size() - 1] == '/';
}

}  // namespace

const std::vector<SceneKey>& SceneKeys() {
  static const std::vector<SceneKey> keys = {
      {"LINES", {"REFLECTIVE_LINES", "PRODUCT_LINES_REF"}},
      {"LINE_SAMPLES", {"REFLECTIVE_SAMPLES", "PRODUCT_SAMPLES_REF"}},
      {"THERMAL_LINES", {"PRODUCT_LINES_THM"}},
      {"THERMAL_SAMPLES", {"PRODUCT_SAMPLES_THM"}},
      {"PANCHROMATIC_LINES", {"PRODUCT_LINES_PAN"}},
      {"PANCHROMATIC_SAMPLES", {"PRODUCT_SAMPLES_PAN"}},
      {"SAMPLE_TYPE", {}},
      {"SAMPLE_BITS", {}},
      {"HEADER_BYTES", {}},
      {"FILE_NAME", {}},
      {"BAND_NAME", {}},
      {"CHANNEL_KIND", {}},
      {"CHANNEL_ROLE", {}},
      {"SPACECRAFT_ID", {}},
      {"FILE_NAME_PROJECTION", {}},
      {"DATUM", {"REFERENCE_DATUM"}},
      {"LEFT", {}},
      {"TOP", {}},
      {"RIGHT", {}},
      {"BOTTOM", {}},
      {"SOURCE_LEFT", {}},
      {"SOURCE_TOP", {}},
      {"CORNER_UL_LAT_PRODUCT", {"PRODUCT_UL_CORNER_LAT"}},
      {"CORNER_UL_LON_PRODUCT", {"PRODUCT_UL_CORNER_LON"}},
      {"CORNER_UR_LAT_PRODUCT", {"PRODUCT_UR_CORNER_LAT"}},
      {"CORNER_UR_LON_PRODUCT", {"PRODUCT_UR_CORNER_LON"}},
      {"CORNER_LL_LAT_PRODUCT", {"PRODUCT_LL_CORNER_LAT"}},
      {"CORNER_LL_LON_PRODUCT", {"PRODUCT_LL_CORNER_LON"}},
      {"CORNER_LR_LAT_PRODUCT", {"PRODUCT_LR_CORNER_LAT"}},
      {"CORNER_LR_LON_PRODUCT", {"PRODUCT_LR_CORNER_LON"}},
      {"CORNER_UL_PROJECTION_X_PRODUCT", {"PRODUCT_UL_CORNER_MAPX"}},
      {"CORNER_UL_PROJECTION_Y_PRODUCT", {"PRODUCT_UL_CORNER_MAPY"}},
      {"CORNER_UR_PROJECTION_X_PRODUCT", {"PRODUCT_UR_CORNER_MAPX"}},
      {"CORNER_UR_PROJECTION_Y_PRODUCT", {"PRODUCT_UR_CORNER_MAPY"}},
      {"CORNER_LL_PROJECTION_X_PRODUCT", {"PRODUCT_LL_CORNER_MAPX"}},
      {"CORNER_LL_PROJECTION_Y_PRODUCT", {"PRODUCT_LL_CORNER_MAPY"}},
      {"CORNER_LR_PROJECTION_X_PRODUCT", {"PRODUCT_LR_CORNER_MAPX"}},
      {"CORNER_LR_PROJECTION_Y_PRODUCT", {"PRODUCT_LR_CORNER_MAPY"}},
  };
  return keys;
}

std::optional<int> BandNumber(std::string_view name, std::string_view start) {
  if (!name.starts_with(start)) return std::nullopt;
  const std::optional<int> number = ParseNumber<int>(name.substr(start.size()));
  return number && *number >= 0 && name[start.size()] != '-' ? number : std::nullopt;
}

std::string StandardName(std::string_view labelName) {
  static const std::map<std::string, std::string> names = MakeNames();
  const std::string upper = toupper(std::string(labelName));
  const auto found = names.find(upper);
  if (found != names.end()) return found->second;
  for (const std::string_view start : {kBandFile, kBandType}) {
    const std::optional<int> number = BandNumber(upper, start);
    if (number) return std::string(start) + std::to_string(*number);
  }
  const std::optional<int> number = OldBandNumber(upper);
  return number ? std::string(kBandFile) + std::to_string(*number) : "";
}

KeyMapping ParseKeyMapping(std::string_view text) {
  const std::size_t equals = text.rfind('=');
  if (equals == std::string_view::npos || equals == 0) {
    throw std::invalid_argument("'" + std::string(text) + "' is not of the form KEY=NAME");
  }
  const std::string given = toupper(std::string(text.substr(equals + 1)));
  const std::string name = StandardName(given);
  if (name.empty() || name != given) {
    throw std::invalid_argument("'" + given + "' is no name of the table in docs/scene.md" +
                                (name.empty() ? "" : ": give " + name));
  }
  return {toupper(std::string(text.substr(0, equals))), name};
}

LabelScope::LabelScope(std::string file, std::string path)
    : file_(std::move(file)), path_(std::move(path)) {}

const LabelScope::Place* LabelScope::Find(const std::string& name,
                                          const std::string& option) const {
  const auto found = places_.find(name);
  if (found == places_.end()) return nullptr;
  const std::vector<Place>& places = found->second;
  std::set<std::string> texts;
  std::string list;
  for (const Place& place : places) {
    if (!texts.insert(trim(place.value->text)).second || texts.size() > 5) continue;
    list += (list.empty() ? "" : ", ") + place.group->Path(*place.value) + " = " +
            Shortened(place.value->text);
  }
  if (texts.size() == 1) return &places.front();
  throw HostError(file_, "gives " + name + " several times: " + list, "choose by " + option);
}

std::optional<std::string> LabelScope::Text(const std::string& name,
                                            const std::string& option) const {
  const Place* place = Find(name, option);
  if (place == nullptr) return std::nullopt;
  return trim(LabelText(*place->group, *place->value));
}

std::optional<double> LabelScope::Number(const std::string& name, const std::string& option) const {
  const Place* place = Find(name, option);
  if (place == nullptr) return std::nullopt;
  const std::optional<double> number = LabelNumber(*place->group, *place->value);
  if (number) return number;
  throw HostError(file_,
                  place->group->Path(*place->value) + " is '" + Shortened(place->value->text) +
                      "', which is no number",
                  "correct the label or choose by " + option);
}

std::vector<std::string> LabelScope::Names() const {
  std::vector<std::string> names;
  for (const auto& [name, places] : places_) names.push_back(name);
  return names;
}

/// Sorts the values of a label into the parts that they belong to.
class ScopeBuilder {
 public:
  ScopeBuilder(const std::vector<LabelGroup>& groups, const std::vector<KeyMapping>& mappings,
               const std::string& file)
      : groups_(groups),
        mappings_(mappings),
        file_(file),
        main_(file, ""),
        isUsed_(mappings.size(), false) {
    isLevel2_ = std::any_of(groups.begin(), groups.end(), [](const LabelGroup& group) {
      return !group.names.empty() && toupper(group.names.back()) == "LEVEL2_PROCESSING_RECORD";
    });
  }

  LabelScopes Build() {
    for (const LabelGroup& group : groups_) Sort(group);
    LabelScopes scopes = {main_, {}, {}, {}, otherBands_};
    for (auto& [path, scope] : bands_) scopes.bands.push_back(std::move(scope));
    for (auto& [path, scope] : tiles_) {
      if (scope.places_.contains("LEFT")) scopes.tiles.push_back(std::move(scope));
    }
    for (std::size_t i = 0; i < mappings_.size(); ++i) {
      if (!isUsed_[i]) scopes.unusedMappings.push_back(mappings_[i].key);
    }
    return scopes;
  }

 private:
  using Scopes = std::vector<std::pair<std::string, LabelScope>>;

  void Sort(const LabelGroup& group) {
    if (isLevel2_ && IsInput(group)) return;
    LabelScope& scope = ScopeOf(group);
    for (const LabelValue& value : group.values) AddValue(scope, group, value);
  }

  static bool IsInput(const LabelGroup& group) {
    return std::any_of(group.names.begin(), group.names.end(), [](const std::string& name) {
      return toupper(name).starts_with("LEVEL1_");
    });
  }

  LabelScope& ScopeOf(const LabelGroup& group) {
    for (std::size_t depth = group.names.size(); depth > 0; --depth) {
      const std::string name = toupper(group.names[depth - 1]);
      if (BandNumber(name, kBandGroup)) return ScopeAt(bands_, group, depth);
      if (name.starts_with(kTileGroup)) return TileScope(group, depth);
    }
    return main_;
  }

  /// TILE_LAYOUT and its like, which hold tiles, are no tiles: they have no LEFT of their own.
  LabelScope& TileScope(const LabelGroup& group, std::size_t depth) {
    return ScopeAt(tiles_, group, depth);
  }

  /// Groups come in the order of the label, so what belongs to one scope comes in a row.
  LabelScope& ScopeAt(Scopes& scopes, const LabelGroup& group, std::size_t depth) {
    const std::string path = LabelGroup{
        {group.names.begin(), group.names.begin() + static_cast<std::ptrdiff_t>(depth)},
        {},
        {}}.Path();
    if (depth == group.names.size() || scopes.empty() || scopes.back().first != path) {
      scopes.emplace_back(path, LabelScope(file_, path));
    }
    return scopes.back().second;
  }

  void AddValue(LabelScope& scope, const LabelGroup& group, const LabelValue& value) {
    const std::string path = mappings_.empty() ? "" : toupper(group.Path(value));
    for (std::size_t i = 0; i < mappings_.size(); ++i) {
      if (!EndsWithKey(path, mappings_[i].key)) continue;
      isUsed_[i] = true;
      AddPlace(scope, mappings_[i].name, {&group, &value, true});
      return;
    }
    const std::string name = StandardName(value.name);
    if (!name.empty()) {
      AddPlace(scope, name, {&group, &value, false});
    } else if (toupper(value.name).starts_with(kBandFile)) {
      otherBands_.push_back(group.Path(value));
    }
  }

  static void AddPlace(LabelScope& scope, const std::string& name, const LabelScope::Place& place) {
    std::vector<LabelScope::Place>& places = scope.places_[name];
    if (!places.empty() && place.mapped != places.front().mapped) {
      if (!place.mapped) return;
      places.clear();
    }
    places.push_back(place);
  }

  const std::vector<LabelGroup>& groups_;
  const std::vector<KeyMapping>& mappings_;
  const std::string& file_;
  LabelScope main_;
  Scopes bands_;
  Scopes tiles_;
  std::vector<bool> isUsed_;
  std::vector<std::string> otherBands_;
  bool isLevel2_ = false;
};

LabelScopes SortLabel(const std::vector<LabelGroup>& groups,
                      const std::vector<KeyMapping>& mappings, const std::string& file) {
  return ScopeBuilder(groups, mappings, file).Build();
}

}  // namespace ravelin
