// What the PVL converters have to hand to their writer, written as plainly as can be.
#pragma once

#include <string>
#include <vector>

namespace metadata_test {

enum class Dialect { kGeneral, kNasa };

/// One call of the XML-ini writer. A section that is closed is the innermost open one.
struct WriterCall {
  enum Kind { kBeginSection, kEndSection, kWrite };
  Kind kind;
  std::string name;
  std::string value;
  bool operator==(const WriterCall&) const = default;
};

struct Conversion {
  bool result = false;
  std::vector<WriterCall> calls;
};

/// Converts the bytes of a stream that is open.
Conversion Convert(const std::string& bytes, Dialect dialect);

/// The text that the lines of a stream of `bytes` are gathered to.
std::string GatherLines(const std::string& bytes, Dialect dialect);

/// Recognises one statement NAME = value; at `*pos`.
bool DetectVariable(const std::string& text, unsigned long* pos, std::string* name,
                    std::string* value);

/// Splits a list in round brackets.
bool UnpackArray(const std::string& value, std::vector<std::string>* items);

/// What a real writer makes of the calls, closed at the end. Throws std::logic_error when it
/// refuses one.
std::string Replay(const std::vector<WriterCall>& calls);

}  // namespace metadata_test
