#include "host/xml/XmlValue.h"

#include <algorithm>
#include <set>
#include <vector>

#include "Kv/XIni.h"
#include "Kv/XmlItem.h"
#include "host/HostError.h"

namespace ravelin {
namespace {

using StreamPointer = var_a_legacy::var_a<TKvStream*>;

constexpr std::size_t kMostNames = 10;  ///< of a section, in one message

bool NeedsEscape(char c) {
  return c == '/' || c == '\\';
}

/// The names between the slashes. A backslash takes a slash or a backslash behind it into a name.
std::vector<std::string> Split(const std::string& path) {
  std::vector<std::string> parts(1);
  for (std::size_t i = 0; i < path.size(); ++i) {
    if (path[i] == '\\' && i + 1 < path.size() && NeedsEscape(path[i + 1])) {
      parts.back() += path[++i];
    } else if (path[i] == '/') {
      parts.emplace_back();
    } else {
      parts.back() += path[i];
    }
  }
  return parts;
}

/// A name as it stands in a path.
std::string Escaped(const std::string& name) {
  std::string escaped;
  for (const char c : name) {
    if (NeedsEscape(c)) escaped += '\\';
    escaped += c;
  }
  return escaped;
}

/// A name that is in the file, held to a length that fits in a message.
std::string Shortened(const std::string& name) {
  constexpr std::size_t kLongest = 60;
  return name.size() > kLongest ? name.substr(0, kLongest) + "..." : name;
}

/// The name that an element of XML-ini goes by; empty when it has none that can be read as it is.
std::string NameOf(const TKvXmlElement& element) {
  if (element.tag != "_") return element.tag;
  const std::string encoded = element.attributes.get_value("_enc", "");
  return encoded.starts_with("name") ? "" : element.attributes.get_value("_name", "");
}

/// The names of the attributes that are items.
std::vector<std::string> AttributeNames(const TKvXmlElement& element) {
  std::vector<std::string> names;
  for (unsigned long i = 0; i < element.attributes.size(); ++i) {
    const std::string& name = element.attributes[i].name;
    if (name[0] != '_') names.push_back(name);
  }
  return names;
}

/// The names of all items, each once, in order.
std::vector<std::string> ItemNames(const TKvXmlElement& element) {
  std::vector<std::string> names = AttributeNames(element);
  std::set<std::string> known(names.begin(), names.end());
  for (unsigned long i = 0; i < element.items.size(); ++i) {
    const std::string name = NameOf(element.items[i]->Element());
    if (!name.empty() && known.insert(name).second) names.push_back(name);
  }
  return names;
}

std::string ListOf(const std::vector<std::string>& names) {
  if (names.empty()) return "nothing there has a name";
  std::string list = "what is there: ";
  for (std::size_t i = 0; i < std::min(names.size(), kMostNames); ++i) {
    list += (i == 0 ? "" : ", ") + Escaped(Shortened(names[i]));
  }
  if (names.size() <= kMostNames) return list;
  return list + " and " + std::to_string(names.size() - kMostNames) + " more";
}

/// A way into an XML-ini document, section by section.
class SectionPath {
 public:
  SectionPath(const std::string& text, const std::string& file)
      : text_(text), file_(file), reader_(StreamPointer(new TKvMemoryStream(text))) {}

  void Enter(const std::string& name) {
    unsigned long item = reader_.FindF(name.c_str(), 0);
    while (reader_.HasItem(item) && !Enter(item)) item = reader_.FindF(name.c_str(), item + 1);
    if (entered_.size() == names_.size())
      FailWithNames("there is no section '" + Escaped(name) + "'");
    names_.push_back(name);
  }

  std::string Value(const std::string& name) const {
    const unsigned long item = reader_.FindF(name.c_str(), 0);
    if (!reader_.HasItem(item)) FailWithNames("there is no value '" + Escaped(name) + "'");
    try {
      return reader_.ReadE<std::string>(item);
    } catch (const TKvError&) {
      throw HostError(file_, "'" + Escaped(name) + "'" + Place() + " is a section",
                      "name a value in it");
    }
  }

 private:
  /// Attributes cannot be entered.
  bool Enter(unsigned long item) {
    try {
      reader_.EnterItem(item);
    } catch (const TKvError&) {
      return false;
    }
    entered_.push_back(item);
    return true;
  }

  std::string Place() const {
    std::string place;
    for (const std::string& name : names_) place += (place.empty() ? "" : "/") + Escaped(name);
    return place.empty() ? "" : " in '" + place + "'";
  }

  [[noreturn]] void FailWithNames(const std::string& what) const {
    throw HostError(file_, what + Place(), ListOf(ItemNames(Section())));
  }

  /// The section entered last as XML: the reader does not tell the names of items.
  TKvXmlElement Section() const {
    TKvXmlElement section = TKvXmlItem::Parse(text_)->Element();
    for (const unsigned long item : entered_) {
      const std::size_t attributes = AttributeNames(section).size();
      section = TKvXmlElement(section.items[item - attributes]->Element());
    }
    return section;
  }

  const std::string& text_;
  const std::string& file_;
  TKvXIniReader reader_;
  std::vector<std::string> names_;      ///< of the sections entered
  std::vector<unsigned long> entered_;  ///< the items that they are
};

}  // namespace

std::string XmlValue(const std::string& text, const std::string& path, const std::string& file) {
  std::vector<std::string> names = Split(path);
  const std::string last = names.back();
  names.pop_back();
  try {
    SectionPath sections(text, file);
    for (const std::string& name : names) sections.Enter(name);
    return sections.Value(last);
  } catch (const TKvError& error) {
    throw HostError(file, error.what(), "give a file of XML-ini");
  }
}

}  // namespace ravelin
