#include "metadata/PvlConverter.h"

#include <cctype>
#include <utility>

#include "Kv/Text.h"
#include "metadata/PvlScanner.h"

namespace SatCommonUtils {
namespace {

/// The whole input, every line followed by `lineEnd`. A line ends at a NUL byte; one longer than
/// the buffer comes as several.
std::string ReadLines(TKvStream& in, const char* lineEnd) {
  std::string text;
  char line[1024];
  in.SetPos(0);
  while (!in.Eof()) {
    if (in.ReadLine(line, sizeof line) == 0) continue;
    text.append(line).append(lineEnd);
  }
  return text;
}

bool IsWordCharacter(char c) {
  return c == '_' || std::isalnum(static_cast<unsigned char>(c)) != 0;
}

/// The items, joined by ','.
std::string Join(const std::vector<std::string>& items) {
  std::string joined;
  for (const std::string& item : items) {
    if (&item != &items.front()) joined.push_back(',');
    joined.append(trim(item));
  }
  return joined;
}

/// One text on its way through the statement loop.
class TPvlConversion {
 public:
  TPvlConversion(std::string text, TKvXIniStreamWriter& writer, const char* groupKeyword)
      : text_(std::move(text)), writer_(writer), groupKeyword_(groupKeyword) {}

  bool Run() {
    bool result = true;
    while (result && !ended_ && pos_ < text_.Size()) result = TakeStatement();
    return result;
  }

 private:
  bool TakeStatement() {
    if (TakeKeyword(groupKeyword_)) return BeginGroup();
    if (TakeKeyword("END_GROUP")) return EndGroup();
    if (TakeKeyword("END")) return End();
    return TakeVariable();
  }

  /// Whether the keyword stands at the next character that is no white space, with a character
  /// behind it that cannot belong to a word.
  bool TakeKeyword(std::string_view keyword) {
    pos_ = text_.SkipWhite(pos_);
    const std::size_t behind = pos_ + keyword.size();
    if (behind >= text_.Size() || text_.Text().compare(pos_, keyword.size(), keyword) != 0 ||
        IsWordCharacter(text_[behind])) {
      return false;
    }
    pos_ = behind;
    return true;
  }

  /// Reads `= name`; whether the '=' was there.
  bool TakeGroupName(std::string* name) {
    pos_ = text_.SkipWhite(pos_);
    const bool equals = text_[pos_] == '=';
    pos_ = text_.SkipWhite(pos_ + 1);
    name->clear();
    while (pos_ < text_.Size() && IsWordCharacter(text_[pos_])) name->push_back(text_[pos_++]);
    return equals;
  }

  bool BeginGroup() {
    std::string name;
    if (!TakeGroupName(&name)) return false;
    const unsigned long section = writer_.BeginSectionS(name);
    if (section == 0) return false;
    groups_.push_back({section, std::move(name)});
    return true;
  }

  /// Closes the innermost group only, and only by its own name.
  bool EndGroup() {
    std::string name;
    if (!TakeGroupName(&name) || groups_.empty() || groups_.back().name != name) return false;
    const bool result = writer_.EndSection(groups_.back().section);
    groups_.pop_back();
    return result;
  }

  /// Whatever follows is never read.
  bool End() {
    ended_ = true;
    pos_ = text_.SkipWhite(pos_);
    return text_[pos_] == ';';
  }

  bool TakeVariable() {
    if (!variable_detected(text_, &pos_, &name_, &value_)) {
      const std::size_t lineEnd = text_.Text().find('\n', pos_);
      pos_ = lineEnd == std::string::npos ? text_.Size() : lineEnd + 1;
      return true;
    }
    return writer_.WriteS(name_, unpack_array(value_, &items_) ? Join(items_) : trim(value_));
  }

  TPvlText text_;
  TKvXIniStreamWriter& writer_;
  const char* groupKeyword_;
  std::size_t pos_ = 0;
  bool ended_ = false;
  std::vector<TGroupSection> groups_;
  std::string name_;
  std::string value_;
  std::vector<std::string> items_;
};

}  // namespace

bool ConvertPvl(var_a_legacy::var_a<TKvStream*> in, var_a_legacy::var_a<TKvStream*> out,
                const TPvlDialect& dialect) {
  const bool present = !dialect.needsInput || (in && in->IsOpen() && in->getSize() != 0);
  std::string text;
  if (present && in) text = ReadLines(*in, dialect.lineEnd);
  if (!out) return false;
  TKvXIniStreamWriter writer(std::move(out), 0, TKvXIniStreamWriter::htDocument);
  if (!present) {
    writer.Close();
    return false;
  }
  const bool converted = TPvlConversion(std::move(text), writer, dialect.groupKeyword).Run();
  return writer.Close() && converted;
}

}  // namespace SatCommonUtils
