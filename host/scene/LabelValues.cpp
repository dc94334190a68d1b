#include "host/scene/LabelValues.h"

#include <cmath>
#include <utility>

#include "Kv/Stream.h"
#include "host/HostError.h"

namespace ravelin {
namespace {

using SatCommonUtils::TXmlItem;

constexpr std::size_t kDeepest = 100;  ///< groups inside each other

/// The name that an element of XML-ini goes by; empty when it has none, or none that is text.
std::string NameOf(const TKvXmlElement& element) {
  if (!element.attributes.get_value("_enc", "").empty()) return "";
  return element.tag == "_" ? element.attributes.get_value("_name", "") : element.tag;
}

void ReadGroup(LabelGroup& group, std::vector<LabelGroup>& inner) {
  const TKvXmlTagItems& children = group.item->Element().items;
  for (unsigned long i = 0; i < children.size(); ++i) {
    const TXmlItem child = children[i];
    const std::string name = NameOf(child->Element());
    if (name.empty()) continue;
    if (child->Element().items.size() == 0) {
      group.values.push_back({name, child->Element().items.get_text()});
      continue;
    }
    inner.push_back({group.names, child, {}});
    inner.back().names.push_back(name);
  }
}

}  // namespace

std::string LabelGroup::Path() const {
  std::string path;
  for (const std::string& name : names) path += (path.empty() ? "" : "/") + name;
  return path;
}

std::string LabelGroup::Path(const LabelValue& value) const {
  return names.empty() ? value.name : Path() + "/" + value.name;
}

std::vector<LabelGroup> ReadLabelValues(const std::string& xml, const std::string& file) {
  std::vector<LabelGroup> pending;
  try {
    pending.push_back({{}, TKvXmlItem::Parse(xml), {}});
  } catch (const TKvError& error) {
    throw HostError(file, std::string("its XML cannot be read back: ") + error.what(),
                    "check that it is a label");
  }
  std::vector<LabelGroup> groups;
  while (!pending.empty()) {
    LabelGroup group = std::move(pending.back());
    pending.pop_back();
    std::vector<LabelGroup> inner;
    ReadGroup(group, inner);
    if (!inner.empty() && group.names.size() == kDeepest) {
      throw HostError(file, "groups lie more than " + std::to_string(kDeepest) + " deep",
                      "check that it is a label");
    }
    groups.push_back(std::move(group));
    pending.insert(pending.end(), inner.rbegin(), inner.rend());
  }
  return groups;
}

std::string LabelText(const LabelGroup& group, const LabelValue& value) {
  return SatCommonUtils::ReadStringFromXMLItemText(group.item, value.name, value.text);
}

std::optional<double> LabelNumber(const LabelGroup& group, const LabelValue& value) {
  double number = std::nan("");
  if (!SatCommonUtils::ReadDoubleFromXMLItemText(group.item, value.name, &number)) {
    return std::nullopt;
  }
  if (!std::isfinite(number)) return std::nullopt;
  return number;
}

}  // namespace ravelin
