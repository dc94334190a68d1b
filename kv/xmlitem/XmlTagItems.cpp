#include <stdexcept>
#include <utility>

#include "xmlitem/XmlTreeData.h"

namespace {

constexpr unsigned long kNone = ~0UL;

}  // namespace

std::shared_ptr<TKvXmlTagItems::Data> TKvXmlTagItems::Data::Make() {
  return {new Data, &Data::Free};
}

void TKvXmlTagItems::Data::Free(Data* data) {
  thread_local bool isFreeing = false;
  thread_local Data* waiting = nullptr;
  data->nextToFree = std::exchange(waiting, data);
  if (isFreeing) return;
  isFreeing = true;
  while (waiting != nullptr) {
    const std::unique_ptr<Data> next(std::exchange(waiting, waiting->nextToFree));
  }
  isFreeing = false;
}

TKvXmlTagItems::TKvXmlTagItems() = default;

TKvXmlTagItems::TKvXmlTagItems(const TKvXmlTagItems&) = default;

TKvXmlTagItems& TKvXmlTagItems::operator=(const TKvXmlTagItems&) = default;

TKvXmlTagItems::~TKvXmlTagItems() = default;

unsigned long TKvXmlTagItems::find_tag_f(const std::string& tag, unsigned long start) const {
  for (unsigned long i = start; i < size(); ++i) {
    if (data_->children[i]->Element().tag == tag) return i;
  }
  return kNone;
}

var_a_legacy::var_a<TKvXmlItem*> TKvXmlTagItems::operator[](unsigned long i) const {
  if (i >= size()) throw std::out_of_range("XML: there is no child at this position");
  return data_->children[i];
}

unsigned long TKvXmlTagItems::size() const {
  return data_ ? data_->children.size() : 0;
}

std::string TKvXmlTagItems::get_text() const {
  return data_ ? data_->text : std::string();
}
