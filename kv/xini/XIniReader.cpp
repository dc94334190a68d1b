#include <algorithm>
#include <deque>

#include "Kv/XIni.h"
#include "xini/NumberText.h"
#include "xini/SectionItems.h"
#include "xini/XIniElement.h"
#include "xml/XmlDocument.h"

namespace {

constexpr unsigned long kNone = ~0UL;

std::string Quoted(std::string_view text) {
  constexpr std::size_t kLongest = 60;
  const bool isLong = text.size() > kLongest;
  return "\"" + std::string(text.substr(0, kLongest)) + (isLong ? "...\"" : "\"");
}

bool HasChildElement(pugi::xml_node element) {
  const auto children = element.children();
  return std::any_of(children.begin(), children.end(),
                     [](pugi::xml_node child) { return child.type() == pugi::node_element; });
}

}  // namespace

class TKvXIniReader::Impl {
 public:
  explicit Impl(TKvStream* stream) {
    document_.Load(stream, kv::WhiteSpace::kInLeaves, kv::kEncodedMark, kv::CheckXIniElement);
    sections_.emplace_back(0, document_.Root());
  }

  const kv::SectionItems& Items() const { return sections_.back().items; }

  std::string Value(unsigned long i) const {
    const kv::SectionItems::Item& item = At(i);
    if (!item.element) return item.attribute.value();
    if (HasChildElement(item.element)) {
      throw TKvError("XML-ini: " + Quoted(item.name) + " is a section, not a value");
    }
    return kv::XIniValue(item.element);
  }

  template <class T>
  T Number(unsigned long i, const char* kind) const {
    const std::string text = Value(i);
    T number = 0;
    if (kv::ParseNumber(text, &number)) return number;
    throw TKvError("XML-ini: " + Quoted(At(i).name) + " is not " + kind + ": " + Quoted(text));
  }

  unsigned long FindElement(std::string_view name) const { return Items().FindElement(name); }

  unsigned long Enter(unsigned long i) {
    const kv::SectionItems::Item& item = At(i);
    if (!item.element) throw TKvError("XML-ini: " + Quoted(item.name) + " is not a section");
    sections_.emplace_back(lastSection_ + 1, item.element);
    return ++lastSection_;
  }

  void Leave(unsigned long section) {
    const auto entered = std::lower_bound(
        sections_.begin() + 1, sections_.end(), section,
        [](const Section& candidate, unsigned long id) { return candidate.id < id; });
    if (entered == sections_.end() || entered->id != section) return;
    sections_.erase(entered, sections_.end());
  }

 private:
  struct Section {
    Section(unsigned long number, pugi::xml_node element) : id(number), items(element) {}

    unsigned long id;
    kv::SectionItems items;
  };

  const kv::SectionItems::Item& At(unsigned long i) const {
    if (i < Items().Size()) return Items()[i];
    throw TKvError("XML-ini: there is no item " + std::to_string(i) + " in the section");
  }

  kv::XmlDocument document_;
  // In the order of their identifiers; the root, which is not entered and not left, is the first.
  std::deque<Section> sections_;
  unsigned long lastSection_ = 0;
};

TKvXIniReader::TKvXIniReader(var_a_legacy::var_a<TKvStream*> stream)
    : impl_(std::make_unique<Impl>(stream.get())) {}

TKvXIniReader::~TKvXIniReader() = default;

unsigned long TKvXIniReader::FindF(const char* name, unsigned long start) const {
  return name == nullptr ? kNone : impl_->Items().Find(name, start);
}

unsigned long TKvXIniReader::FindFE(const char* name, unsigned long start) const {
  const unsigned long item = FindF(name, start);
  if (item != kNone) return item;
  throw TKvError("XML-ini: there is no item " + Quoted(name == nullptr ? "" : name));
}

template <>
std::string TKvXIniReader::ReadE<std::string>(unsigned long item) const {
  return impl_->Value(item);
}

template <>
int TKvXIniReader::ReadE<int>(unsigned long item) const {
  return impl_->Number<int>(item, "an integer");
}

template <>
double TKvXIniReader::ReadE<double>(unsigned long item) const {
  return impl_->Number<double>(item, "a number");
}

unsigned long TKvXIniReader::EnterSectionSE(const std::string& name) {
  const unsigned long item = impl_->FindElement(name);
  if (item == kNone) throw TKvError("XML-ini: there is no section " + Quoted(name));
  return EnterItem(item);
}

unsigned long TKvXIniReader::EnterItem(unsigned long item) {
  return impl_->Enter(item);
}

bool TKvXIniReader::HasItem(unsigned long item) const {
  return item < GetItemCount();
}

unsigned long TKvXIniReader::GetItemCount() const {
  return impl_->Items().Size();
}

void TKvXIniReader::LeaveSection(unsigned long section) {
  impl_->Leave(section);
}
