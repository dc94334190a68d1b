// The values of a label, read back from its XML.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "SatCommonUtils/Metadata.h"

namespace ravelin {

/// One statement of a label.
struct LabelValue {
  std::string name;
  std::string text;
};

/// A group: the values that stand directly in it, in their order.
struct LabelGroup {
  std::vector<std::string> names;  ///< of the groups from the outermost to this one
  SatCommonUtils::TXmlItem item;
  std::vector<LabelValue> values;

  /// "A/B", or "A/B/NAME" for a value; "" for the label's top.
  std::string Path() const;
  std::string Path(const LabelValue& value) const;
};

/// The groups of the XML-ini document that a label became, the top first, then in their order.
/// Values that are not text, and what has no name, are left out. Throws HostError naming `file`
/// when the text is no XML or groups lie more than 100 deep. Linear in the text.
std::vector<LabelGroup> ReadLabelValues(const std::string& xml, const std::string& file);

/// The text of the first value of that name in the group.
std::string LabelText(const LabelGroup& group, const LabelValue& value);

/// The number that the first value of that name in the group begins with, so that a unit may follow
/// it: "12.5 <m>". None when it does not begin with a finite number.
std::optional<double> LabelNumber(const LabelGroup& group, const LabelValue& value);

}  // namespace ravelin
