// What the tests of the PVL converters share.
#pragma once

#include <ostream>
#include <string>

#include "SatCommonUtils/Metadata.h"
#include "gtest/gtest.h"
#include "kv/XIniTest.h"
#include "metadata/PvlModel.h"

namespace metadata_test {

using kv_test::StreamPointer;

/// What a conversion returned and wrote.
struct Outcome {
  bool result;
  std::string xml;
  bool operator==(const Outcome&) const = default;
};

inline std::ostream& operator<<(std::ostream& out, const Outcome& outcome) {
  return out << std::boolalpha << outcome.result << ", " << testing::PrintToString(outcome.xml);
}

inline bool RunConverter(Dialect dialect, const StreamPointer& in, const StreamPointer& out) {
  return dialect == Dialect::kNasa ? SatCommonUtils::NASA_PVLtoXML(in, out)
                                   : SatCommonUtils::PVLtoXML(in, out);
}

inline Outcome ConvertStream(Dialect dialect, const StreamPointer& in) {
  auto* written = new TKvMemoryStream;
  const StreamPointer out(written);
  const bool result = RunConverter(dialect, in, out);
  return {result, written->Bytes()};
}

inline Outcome ConvertText(Dialect dialect, const std::string& text) {
  return ConvertStream(dialect, kv_test::MakeStream(text));
}

inline Outcome ExpectedOutcome(Dialect dialect, const std::string& text) {
  const Conversion expected = Convert(text, dialect);
  return {expected.result, Replay(expected.calls)};
}

/// The document that holds `content` in its root.
inline std::string WholeDocument(const std::string& content) {
  return content.empty() ? std::string(kv_test::kDeclaration) + "<xini/>\n"
                         : kv_test::Document(content);
}
/// A conversion that succeeds, and one that fails, having written `content` into the root.
inline Outcome Good(const std::string& content) {
  return {true, WholeDocument(content)};
}
inline Outcome Bad(const std::string& content) {
  return {false, WholeDocument(content)};
}

inline std::string Repeated(unsigned long count, const std::string& text) {
  std::string repeated;
  repeated.reserve(count * text.size());
  for (unsigned long i = 0; i < count; ++i) repeated += text;
  return repeated;
}

inline std::string DialectName(const testing::TestParamInfo<Dialect>& info) {
  return info.param == Dialect::kNasa ? "Nasa" : "General";
}

}  // namespace metadata_test
