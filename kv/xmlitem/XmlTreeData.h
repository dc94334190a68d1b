// What the parts of a parsed element share.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "Kv/XmlItem.h"

struct TKvXmlTagAttributes::Data {
  std::vector<Attribute> attributes;
};

/// Children and text of one element. Freed without recursion: one that is freed while another is
/// being freed waits for it in a list, so a tree of any depth comes apart level by level.
struct TKvXmlTagItems::Data {
  std::vector<var_a_legacy::var_a<TKvXmlItem*>> children;
  std::string text;
  Data* nextToFree = nullptr;

  static std::shared_ptr<Data> Make();

 private:
  static void Free(Data* data);
};
