#include "host/scene/BandTable.h"

#include <algorithm>
#include <limits>
#include <optional>
#include <set>

#include "Kv/Text.h"
#include "host/HostError.h"
#include "host/ParseNumber.h"
#include "host/raster/BandArgument.h"
#include "host/scene/Spacecraft.h"

namespace ravelin {
namespace {

constexpr std::string_view kBandFile = "FILE_NAME_BAND_";
constexpr std::size_t kMostBands = 1000;
constexpr const char* kBandOption = "--band KEY=FILE for every band";

/// What a label tells of a band's key.
struct BandRole {
  std::optional<int> kind;
  int visible = 0;  ///< 3, 4, 6, or 0
};

int KeyOfRole(const std::string& role) {
  const std::string name = toupper(role);
  if (name == "RED") return kRedKey;
  if (name == "GREEN") return kGreenKey;
  return name == "BLUE" ? kBlueKey : 0;
}

bool IsVisible(int kind) {
  return kind == kRedKey || kind == kGreenKey || kind == kBlueKey;
}

/// Of the group BAND_n that the values come from.
int NumberOf(const LabelScope& band) {
  const std::string name = toupper(band.Path().substr(band.Path().rfind('/') + 1));
  return BandNumber(name, "BAND_").value_or(0);
}

/// Finds the key of every band number.
class KeyTable {
 public:
  KeyTable(const LabelScopes& label, const std::string& file) : file_(file) {
    const std::optional<std::string> id = label.main.Text("SPACECRAFT_ID", kBandOption);
    spacecraft_ = id ? FindSpacecraft(*id) : nullptr;
    for (const LabelScope& band : label.bands) AddGroup(band);
    AddFiles(label.main);
    for (const LabelScope& tile : label.tiles) AddFiles(tile);
  }

  std::map<int, int> Keys() const {
    std::map<int, int> keys;
    std::map<int, int> numbers;
    for (const auto& [number, role] : roles_) {
      const int key = KeyOf(number, role);
      const auto [other, fresh] = numbers.emplace(key, number);
      if (!fresh) {
        throw HostError(file_,
                        "gives the bands " + std::to_string(other->second) + " and " +
                            std::to_string(number) + " one channel, " + BandName(key),
                        std::string("give ") + kBandOption);
      }
      keys[number] = key;
    }
    return keys;
  }

  const Spacecraft* Craft() const { return spacecraft_; }

 private:
  void AddGroup(const LabelScope& band) {
    BandRole& role = Add(NumberOf(band));
    if (!groups_.insert(NumberOf(band)).second) {
      throw HostError(file_, "has two groups for one band, the second " + band.Path(),
                      std::string("give ") + kBandOption);
    }
    const std::optional<std::string> kind = band.Text("CHANNEL_KIND", kBandOption);
    if (kind) role.kind = KindOf(*kind, band);
    if (role.kind) ++kinds_[*role.kind];
    role.visible = KeyOfRole(band.Text("CHANNEL_ROLE", kBandOption).value_or(""));
  }

  int KindOf(const std::string& text, const LabelScope& band) const {
    const std::optional<int> kind = ParseNumber<int>(text);
    if (kind) return *kind;
    throw HostError(file_, band.Path() + "/CHANNEL_KIND is '" + text + "', not a whole number",
                    std::string("give ") + kBandOption);
  }

  void AddFiles(const LabelScope& scope) {
    for (const std::string& name : scope.Names()) {
      const std::optional<int> number = BandNumber(name, kBandFile);
      if (number) Add(*number);
    }
  }

  BandRole& Add(int number) {
    const auto [role, fresh] = roles_.emplace(number, BandRole{});
    if (fresh && roles_.size() > kMostBands) {
      throw HostError(file_, "tells of more than " + std::to_string(kMostBands) + " bands",
                      std::string("give ") + kBandOption);
    }
    return role->second;
  }

  int KeyOf(int number, const BandRole& role) const {
    if (role.kind && (IsVisible(*role.kind) || kinds_.at(*role.kind) == 1)) return *role.kind;
    if (role.visible != 0) return role.visible;
    const int visible = spacecraft_ == nullptr ? 0 : spacecraft_->VisibleKey(number);
    return visible != 0 ? visible : KeyBehindTheKnown(number);
  }

  int KeyBehindTheKnown(int number) const {
    constexpr int kLast = std::numeric_limits<int>::max() - kFirstBandKey;
    if (number <= kLast) return kFirstBandKey + number;
    throw HostError(file_,
                    "tells of a band " + std::to_string(number) + "; the largest number is " +
                        std::to_string(kLast),
                    std::string("give ") + kBandOption);
  }

  const std::string& file_;
  const Spacecraft* spacecraft_ = nullptr;
  std::map<int, BandRole> roles_;
  std::map<int, int> kinds_;
  std::set<int> groups_;
};

LabelBand::Resolution ResolutionOf(const Spacecraft* craft, int number) {
  if (craft == nullptr) return LabelBand::kUsual;
  const auto has = [number](const std::vector<int>& bands) {
    return std::find(bands.begin(), bands.end(), number) != bands.end();
  };
  if (has(craft->thermal)) return LabelBand::kThermal;
  return has(craft->panchromatic) ? LabelBand::kPanchromatic : LabelBand::kUsual;
}

}  // namespace

std::vector<std::pair<int, std::string>> BandFilesOf(const LabelScope& scope) {
  std::map<int, std::string> files;
  for (const std::string& name : scope.Names()) {
    const std::optional<int> number = BandNumber(name, kBandFile);
    if (number) files[*number] = scope.Text(name, kBandOption).value_or("");
  }
  return {files.begin(), files.end()};
}

std::map<int, int> KeysOfNumbers(const LabelScopes& label, const std::string& file) {
  return KeyTable(label, file).Keys();
}

std::vector<LabelBand> FindLabelBands(const LabelScopes& label, const std::string& file) {
  const KeyTable table(label, file);
  const std::map<int, int> keys = table.Keys();
  std::map<int, LabelBand> bands;
  for (const LabelScope& group : label.bands) {
    const int number = NumberOf(group);
    const int key = keys.at(number);
    const std::string name = group.Text("BAND_NAME", kBandOption).value_or(BandName(key));
    const std::string fileName = group.Text("FILE_NAME", kBandOption).value_or("");
    bands[number] = {
        number, key, name, fileName, group.Path() + "/FILE_NAME", "", LabelBand::kUsual, &group};
  }
  for (const auto& [number, fileName] : BandFilesOf(label.main)) {
    LabelBand& band = bands[number];
    if (!band.file.empty()) continue;
    const std::string digits = std::to_string(number);
    const std::string type = label.main.Text("DATA_TYPE_BAND_" + digits, kBandOption).value_or("");
    const int key = keys.at(number);
    band = {number,
            key,
            BandName(key),
            fileName,
            std::string(kBandFile) + digits,
            toupper(type),
            ResolutionOf(table.Craft(), number),
            &label.main};
  }
  std::vector<LabelBand> list;
  list.reserve(bands.size());
  for (auto& [number, band] : bands) list.push_back(std::move(band));
  return list;
}

}  // namespace ravelin
