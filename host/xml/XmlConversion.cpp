#include "host/xml/XmlConversion.h"

#include <cstddef>

#include "SatCommonUtils/Metadata.h"
#include "host/HostError.h"

namespace ravelin {
namespace {

using StreamPointer = var_a_legacy::var_a<TKvStream*>;
using PvlConverter = bool (*)(StreamPointer in, StreamPointer out,
                              SatCommonUtils::TPvlFailure* failure);

constexpr std::size_t kDeepest = 100;  ///< sections of WKT inside each other

[[noreturn]] void FailAt(const std::string& file, unsigned long line, const std::string& reason) {
  const std::string place = line == 0 ? "" : " at line " + std::to_string(line);
  throw HostError(file, "the conversion stopped" + place + ": " + reason,
                  line == 0 ? "check that it is the right file" : "correct the text there");
}

std::string ConvertPvl(PvlConverter convert, const std::string& text, const std::string& file) {
  auto* const bytes = new TKvMemoryStream;
  const StreamPointer out(bytes);
  SatCommonUtils::TPvlFailure failure = {};
  if (!convert(StreamPointer(new TKvMemoryStream(text)), out, &failure)) {
    FailAt(file, failure.line, failure.reason);
  }
  return bytes->Bytes();
}

/// Follows the sections as the converter does: a bracket counts outside quotes, and what stands
/// behind the outermost section does not.
void CheckDepth(const std::string& text, const std::string& file) {
  std::size_t depth = 0;
  unsigned long line = 1;
  bool quoted = false;
  for (const char c : text) {
    if (c == '\n') ++line;
    if (c == '"') quoted = !quoted;
    if (quoted) continue;
    if (c == '[' && ++depth > kDeepest) {
      FailAt(file, line, "sections lie more than " + std::to_string(kDeepest) + " deep");
    }
    if (c == ']' && (depth == 0 || --depth == 0)) return;
  }
}

}  // namespace

std::string PvlXml(const std::string& text, const std::string& file) {
  return ConvertPvl(SatCommonUtils::PVLtoXML, text, file);
}

std::string NasaPvlXml(const std::string& text, const std::string& file) {
  return ConvertPvl(SatCommonUtils::NASA_PVLtoXML, text, file);
}

std::string WktXml(const std::string& text, const std::string& file) {
  CheckDepth(text, file);
  std::string xml;
  if (!SatCommonUtils::WktSectionToXml(text, &xml)) FailAt(file, 0, "the input is empty");
  return xml;
}

}  // namespace ravelin
