// WktSectionToXml again, written for plainness: recursive, copying, a branch a rule.
#pragma once

#include <string>

namespace wkt_model {

/// One section; the arguments are those of the worker in metadata/Wkt.h.
bool Section(const std::string& text, unsigned long* pos, unsigned long depth,
             const std::string& encoding, const std::string& name, std::string* out);

/// A whole text.
bool Document(const std::string& wkt, std::string* xml);

}  // namespace wkt_model
