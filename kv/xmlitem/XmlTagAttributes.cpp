#include <algorithm>
#include <stdexcept>

#include "xmlitem/XmlTreeData.h"

TKvXmlTagAttributes::TKvXmlTagAttributes() = default;

TKvXmlTagAttributes::TKvXmlTagAttributes(const TKvXmlTagAttributes&) = default;

TKvXmlTagAttributes& TKvXmlTagAttributes::operator=(const TKvXmlTagAttributes&) = default;

TKvXmlTagAttributes::~TKvXmlTagAttributes() = default;

std::string TKvXmlTagAttributes::get_value(const std::string& name, const std::string& def) const {
  if (!data_) return def;
  const auto found = std::find_if(data_->attributes.begin(), data_->attributes.end(),
                                  [&](const Attribute& a) { return a.name == name; });
  return found == data_->attributes.end() ? def : found->value;
}

unsigned long TKvXmlTagAttributes::size() const {
  return data_ ? data_->attributes.size() : 0;
}

const TKvXmlTagAttributes::Attribute& TKvXmlTagAttributes::operator[](unsigned long i) const {
  if (i >= size()) throw std::out_of_range("XML: there is no attribute at this position");
  return data_->attributes[i];
}
