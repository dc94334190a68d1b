// The bands that a label tells of.
#pragma once

#include <map>
#include <string>
#include <utility>
#include <vector>

#include "host/scene/SceneKeys.h"

namespace ravelin {

/// A band of a label.
struct LabelBand {
  enum Resolution { kUsual, kThermal, kPanchromatic };

  int number;
  int key;                 ///< channel-kind code; unique among the bands of the label
  std::string name;        ///< what it is called in listings
  std::string file;        ///< empty when the label names none
  std::string place;       ///< of the file's name in the label
  std::string sampleType;  ///< "UINT16" and so on; empty when the label does not tell
  Resolution resolution;
  const LabelScope* scope;  ///< its group, or all of the label
};

/// Keys of bands that are neither visible nor of a kind of their own: this and the band's number.
constexpr int kFirstBandKey = 100;

/// The bands by their numbers: of groups BAND_n first, of FILE_NAME_BAND_n for numbers that have no
/// file of a group. A band's key is its CHANNEL_KIND, where no other band has that kind; else 6, 4
/// or 3 when its CHANNEL_ROLE, or the number and the spacecraft, say that it is red, green or blue;
/// else kFirstBandKey and its number. Throws HostError for more than 1,000 bands, for a key that is
/// no int and for two with one key. Points into `label`.
std::vector<LabelBand> FindLabelBands(const LabelScopes& label, const std::string& file);

/// The keys of those bands, and of bands that only tiles tell of, by their numbers.
std::map<int, int> KeysOfNumbers(const LabelScopes& label, const std::string& file);

/// The numbers and values of FILE_NAME_BAND_n in a part of a label.
std::vector<std::pair<int, std::string>> BandFilesOf(const LabelScope& scope);

}  // namespace ravelin
