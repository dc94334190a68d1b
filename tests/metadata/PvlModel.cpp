#include "metadata/PvlModel.h"

#include <stdexcept>

#include "kv/XIniTest.h"

namespace metadata_test {
namespace {

constexpr unsigned long kNone = std::string::npos;

bool IsWhite(char c) {
  return c == ' ' || c == '\t' || c == '\r' || c == '\n';
}
bool IsLetter(char c) {
  return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
}
bool IsDigit(char c) {
  return c >= '0' && c <= '9';
}
bool IsNameCharacter(char c) {
  return IsLetter(c) || IsDigit(c) || c == '_';
}

std::string Trim(const std::string& text) {
  const std::string blanks = " \t\r\n\v\f";
  std::string trimmed = text;
  while (!trimmed.empty() && blanks.find(trimmed.front()) != kNone) trimmed.erase(0, 1);
  while (!trimmed.empty() && blanks.find(trimmed.back()) != kNone) trimmed.pop_back();
  return trimmed;
}

/// The first character at or after `pos` that is no white space, or none.
unsigned long FindNonWhite(const std::string& text, unsigned long pos) {
  for (unsigned long i = pos; i < text.size(); ++i) {
    if (!IsWhite(text[i])) return i;
  }
  return kNone;
}

unsigned long Find(const std::string& text, char c, unsigned long pos) {
  for (unsigned long i = pos; i < text.size(); ++i) {
    if (text[i] == c) return i;
  }
  return kNone;
}

void RequireWritten(bool isWritten) {
  if (!isWritten) throw std::logic_error("the writer refuses a call of the model");
}

/// One conversion at work.
class Converter {
 public:
  Converter(std::string text, Dialect dialect) : text_(std::move(text)), dialect_(dialect) {}

  Conversion Run() {
    Conversion done;
    done.result = true;
    while (pos_ < text_.size() && done.result && !ended_) done.result = TakeStatement();
    done.calls = calls_;
    return done;
  }

 private:
  void SkipWhite() {
    const unsigned long found = FindNonWhite(text_, pos_);
    if (found != kNone) pos_ = found;
  }

  bool IsKeyword(const std::string& keyword) {
    SkipWhite();
    if (text_.compare(pos_, keyword.size(), keyword) != 0) return false;
    const unsigned long behind = pos_ + keyword.size();
    if (behind >= text_.size()) return false;
    if (IsNameCharacter(text_[behind])) return false;
    pos_ = behind;
    return true;
  }

  bool TakeStatement() {
    if (IsKeyword(dialect_ == Dialect::kNasa ? "GROUP" : "BEGIN_GROUP")) return BeginGroup();
    if (IsKeyword("END_GROUP")) return EndGroup();
    if (IsKeyword("END")) return End();
    return TakeVariable();
  }

  /// Reads "=" and a name; false when the "=" is not where it should be.
  bool ReadEqualsAndName(std::string* name) {
    SkipWhite();
    const unsigned long p = pos_;
    const unsigned long equals = Find(text_, '=', p);
    pos_ = p + 1;
    SkipWhite();
    name->clear();
    while (pos_ < text_.size() && IsNameCharacter(text_[pos_])) *name += text_[pos_++];
    return equals == p;
  }

  bool BeginGroup() {
    std::string name;
    if (!ReadEqualsAndName(&name)) return false;
    calls_.push_back({WriterCall::kBeginSection, name, ""});
    groups_.push_back(name);
    return true;
  }

  bool EndGroup() {
    std::string name;
    if (!ReadEqualsAndName(&name)) return false;
    if (groups_.empty()) return false;
    if (groups_.back() != name) return false;
    calls_.push_back({WriterCall::kEndSection, "", ""});
    groups_.pop_back();
    return true;
  }

  bool End() {
    SkipWhite();
    ended_ = true;
    return Find(text_, ';', pos_) == pos_;
  }

  bool TakeVariable() {
    std::string name;
    std::string value;
    if (!DetectVariable(text_, &pos_, &name, &value)) {
      const unsigned long lineEnd = Find(text_, '\n', pos_);
      pos_ = lineEnd == kNone ? text_.size() : lineEnd + 1;
      return true;
    }
    std::vector<std::string> items;
    if (UnpackArray(value, &items)) {
      std::string joined;
      for (unsigned long i = 0; i < items.size(); ++i) {
        if (i > 0) joined += ",";
        joined += Trim(items[i]);
      }
      calls_.push_back({WriterCall::kWrite, name, joined});
    } else {
      calls_.push_back({WriterCall::kWrite, name, Trim(value)});
    }
    return true;
  }

  std::string text_;
  Dialect dialect_;
  unsigned long pos_ = 0;
  bool ended_ = false;
  std::vector<std::string> groups_;
  std::vector<WriterCall> calls_;
};

}  // namespace

std::string GatherLines(const std::string& bytes, Dialect dialect) {
  std::string text;
  unsigned long pos = 0;
  while (pos < bytes.size()) {
    std::string line;
    while (pos < bytes.size() && bytes[pos] != '\n' && line.size() < 1023) line += bytes[pos++];
    if (pos < bytes.size() && bytes[pos] == '\n') ++pos;
    text += line.c_str();
    text += dialect == Dialect::kNasa ? ";\n" : "\n";
  }
  return text;
}

bool DetectVariable(const std::string& text, unsigned long* pos, std::string* name,
                    std::string* value) {
  const unsigned long found = FindNonWhite(text, *pos);
  if (found != kNone) *pos = found;
  const unsigned long s = *pos;
  const unsigned long equals = Find(text, '=', s);
  if (equals == kNone || equals == s) return false;
  *name = Trim(text.substr(s, equals - s));
  for (const char c : *name) {
    if (static_cast<signed char>(c) < 0 || !IsNameCharacter(c)) return false;
  }
  value->clear();
  bool inQuotes = false;
  char previous = '=';
  for (unsigned long i = equals + 1; i < text.size(); ++i) {
    const char c = text[i];
    if (c == '\\') {
      // It becomes the previous character and nothing else.
    } else if (c == ';' && !inQuotes) {
      *pos = i + 1;
      return true;
    } else if (c == '"' && previous != '\\') {
      inQuotes = !inQuotes;
    } else {
      if (previous == '\\' && c != '"') *value += '\\';
      *value += c;
    }
    previous = c;
  }
  return false;
}

bool UnpackArray(const std::string& value, std::vector<std::string>* items) {
  items->clear();
  const unsigned long begin = FindNonWhite(value, 0);
  if (begin == kNone) return false;
  long depth = 0;
  std::string item;
  for (unsigned long i = begin; i < value.size(); ++i) {
    const char c = value[i];
    if (c == '(') {
      if (depth != 0) item += c;
      ++depth;
    } else if (c == ')') {
      --depth;
      if (depth == 0) {
        items->push_back(Trim(item));
        return true;
      }
      item += c;
    } else if (c == ',' && depth == 1) {
      items->push_back(Trim(item));
      item.clear();
    } else {
      item += c;
    }
  }
  return false;
}

Conversion Convert(const std::string& bytes, Dialect dialect) {
  if (dialect == Dialect::kGeneral && bytes.empty()) return {};
  return Converter(GatherLines(bytes, dialect), dialect).Run();
}

std::string Replay(const std::vector<WriterCall>& calls) {
  return kv_test::Written([&](TKvXIniStreamWriter& writer) {
    std::vector<unsigned long> sections;
    for (const WriterCall& call : calls) {
      if (call.kind == WriterCall::kBeginSection) {
        sections.push_back(writer.BeginSectionS(call.name));
        RequireWritten(sections.back() != 0);
      } else if (call.kind == WriterCall::kEndSection) {
        RequireWritten(writer.EndSection(sections.back()));
        sections.pop_back();
      } else {
        RequireWritten(writer.WriteS<std::string>(call.name, call.value));
      }
    }
  });
}

}  // namespace metadata_test
