#include <algorithm>
#include <memory>
#include <vector>

#include "Kv/XIni.h"
#include "xini/NumberText.h"
#include "xini/SectionItems.h"
#include "xini/XIniElement.h"
#include "xml/XmlDocument.h"

namespace {

constexpr unsigned long kNone = kv::SectionItems::kNone;

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
    Push(0, document_.Root());
  }

  const kv::SectionItems& Items() const { return current_->items; }

  std::string Value(unsigned long i) const {
    const kv::SectionItems::Item& item = At(i);
    const char* const plain = PlainValue(item);
    return plain != nullptr ? plain : OddValue(item, i);
  }

  template <class T>
  T Number(unsigned long i, const char* kind) const {
    const kv::SectionItems::Item& item = At(i);
    const char* const plain = PlainValue(item);
    T number = 0;
    if (plain != nullptr && kv::ParseNumber(plain, &number)) return number;
    return OddNumber<T>(i, kind);
  }

  unsigned long FindElement(const std::string& name) const { return Items().FindElement(name); }

  unsigned long Enter(unsigned long i) {
    const kv::SectionItems::Item& item = At(i);
    if (!item.IsElement())
      throw TKvError("XML-ini: " + Quoted(Items().NameAt(i)) + " is not a section");
    Push(lastSection_ + 1, item.Element());
    return ++lastSection_;
  }

  void Leave(unsigned long section) {
    const std::size_t depth = current_->id == section ? depth_ - 1 : DepthOf(section);
    if (depth == 0) return;
    depth_ = depth;
    current_ = sections_[depth_ - 1].get();
  }

 private:
  struct Section {
    unsigned long id;
    kv::SectionItems items;
  };
  using SectionPointer = std::unique_ptr<Section>;

  void Push(unsigned long id, pugi::xml_node element) {
    if (depth_ == sections_.size()) sections_.push_back(std::make_unique<Section>());
    current_ = sections_[depth_++].get();
    current_->id = id;
    current_->items.Reset(element);
  }

  /// The number of sections around the one of that identifier; 0 when it is not entered.
  std::size_t DepthOf(unsigned long section) const {
    const auto end = sections_.begin() + static_cast<std::ptrdiff_t>(depth_);
    const auto entered = std::lower_bound(
        sections_.begin() + 1, end, section,
        [](const SectionPointer& candidate, unsigned long id) { return candidate->id < id; });
    if (entered == end || (*entered)->id != section) return 0;
    return static_cast<std::size_t>(entered - sections_.begin());
  }

  const kv::SectionItems::Item& At(unsigned long i) const {
    if (Items().Has(i)) return Items()[i];
    throw TKvError("XML-ini: there is no item " + std::to_string(i) + " in the section");
  }

  /// The value where it lies in the document in one piece as it is, else null.
  const char* PlainValue(const kv::SectionItems::Item& item) const {
    if (!item.IsElement()) return item.Attribute().value();
    const pugi::xml_node element = item.Element();
    if (!kv::IsNull(element.first_child())) return nullptr;
    if (document_.HasMark() && !kv::IsNull(element.first_attribute())) return nullptr;
    return element.value();
  }

  /// The value of an element of several pieces, or encoded.
  std::string OddValue(const kv::SectionItems::Item& item, unsigned long i) const {
    if (HasChildElement(item.Element())) {
      throw TKvError("XML-ini: " + Quoted(Items().NameAt(i)) + " is a section, not a value");
    }
    return kv::XIniValue(item.Element());
  }

  template <class T>
  T OddNumber(unsigned long i, const char* kind) const {
    const std::string text = Value(i);
    T number = 0;
    if (kv::ParseNumber(text, &number)) return number;
    throw TKvError("XML-ini: " + Quoted(Items().NameAt(i)) + " is not " + kind + ": " +
                   Quoted(text));
  }

  kv::XmlDocument document_;
  // Those entered are the first `depth_`, in the order of their identifiers; the root, which is not
  // entered and not left, is the first of all. The others wait to be used again.
  std::vector<SectionPointer> sections_;
  std::size_t depth_ = 0;
  Section* current_ = nullptr;
  unsigned long lastSection_ = 0;
};

TKvXIniReader::TKvXIniReader(var_a_legacy::var_a<TKvStream*> stream)
    : impl_(std::make_unique<Impl>(stream.get())) {}

TKvXIniReader::~TKvXIniReader() = default;

unsigned long TKvXIniReader::FindF(const char* name, unsigned long start) const {
  return name == nullptr ? kNone : impl_->Items().Find(name, start);
}

unsigned long TKvXIniReader::FindFE(const char* name, unsigned long start) const {
  const unsigned long item = name == nullptr ? kNone : impl_->Items().Find(name, start);
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
  return impl_->Enter(item);
}

unsigned long TKvXIniReader::EnterItem(unsigned long item) {
  return impl_->Enter(item);
}

bool TKvXIniReader::HasItem(unsigned long item) const {
  return impl_->Items().Has(item);
}

unsigned long TKvXIniReader::GetItemCount() const {
  return impl_->Items().Size();
}

void TKvXIniReader::LeaveSection(unsigned long section) {
  impl_->Leave(section);
}
