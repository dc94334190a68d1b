// Metadata texts converted to XML in memory.
#pragma once

#include <string>

namespace ravelin {

/// The XML of a text that was read from `file`. Throws HostError with the line at which the
/// conversion stopped, and why.
using XmlConversion = std::string (*)(const std::string& text, const std::string& file);

std::string PvlXml(const std::string& text, const std::string& file);
std::string NasaPvlXml(const std::string& text, const std::string& file);
/// Sections may lie at most 100 deep: every line of the XML is indented by its depth.
std::string WktXml(const std::string& text, const std::string& file);

}  // namespace ravelin
