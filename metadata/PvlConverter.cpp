#include "metadata/PvlConverter.h"

#include <cctype>
#include <utility>

#include "Kv/Text.h"
#include "metadata/PvlInput.h"
#include "metadata/PvlScanner.h"

namespace SatCommonUtils {
namespace {

constexpr const char* kNotWritten = "the output could not be written";

bool IsWordCharacter(char c) {
  return c == '_' || std::isalnum(static_cast<unsigned char>(c)) != 0;
}

/// trim in place.
void Trim(std::string* text) {
  std::size_t end = text->size();
  while (end > 0 && TPvlText::IsTrimmed((*text)[end - 1])) --end;
  text->resize(end);
  std::size_t begin = 0;
  while (begin < end && TPvlText::IsTrimmed((*text)[begin])) ++begin;
  if (begin > 0) text->erase(0, begin);
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
  TPvlConversion(std::string text, TKvXIniStreamWriter& writer, const TPvlDialect& dialect)
      : text_(std::move(text)), writer_(writer), dialect_(dialect) {}

  bool Run() {
    bool result = true;
    while (result && !ended_ && pos_ < text_.Size()) result = TakeStatement();
    return result;
  }

  std::string_view Text() const { return text_.View(); }
  /// Where the statement that was taken last begins.
  std::size_t Statement() const { return statement_; }
  /// Why a statement failed.
  const std::string& Reason() const { return reason_; }

 private:
  bool TakeStatement() {
    pos_ = text_.SkipWhite(pos_);
    statement_ = pos_;
    if (TakeKeyword(dialect_.groupKeyword)) return BeginGroup();
    if (TakeKeyword("END_GROUP")) return EndGroup();
    if (TakeKeyword("END")) return End();
    return TakeVariable();
  }

  bool Fail(std::string reason) {
    reason_ = std::move(reason);
    return false;
  }
  bool Written(bool result) { return result || Fail(kNotWritten); }

  /// Whether the keyword stands here, with a character behind it that cannot belong to a word.
  bool TakeKeyword(std::string_view keyword) {
    const std::size_t behind = pos_ + keyword.size();
    if (text_[pos_] != keyword.front() || behind >= text_.Size() ||
        text_.View().compare(pos_, keyword.size(), keyword) != 0 ||
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
    if (!TakeGroupName(&name)) return Fail(std::string(dialect_.groupKeyword) + " without '='");
    const unsigned long section = writer_.BeginSectionS(name);
    if (section == 0) return Fail(kNotWritten);
    groups_.push_back({section, std::move(name)});
    return true;
  }

  /// Closes the innermost group only, and only by its own name.
  bool EndGroup() {
    std::string name;
    if (!TakeGroupName(&name)) return Fail("END_GROUP without '='");
    if (groups_.empty()) return Fail("END_GROUP without an open group");
    if (groups_.back().name != name) {
      return Fail("END_GROUP = '" + name + "' does not name the innermost open group '" +
                  groups_.back().name + "'");
    }
    const bool result = writer_.EndSection(groups_.back().section);
    groups_.pop_back();
    return Written(result);
  }

  /// Whatever follows is never read.
  bool End() {
    ended_ = true;
    pos_ = text_.SkipWhite(pos_);
    return text_[pos_] == ';' || Fail(dialect_.malformedEnd);
  }

  bool TakeVariable() {
    if (!variable_detected(text_, &pos_, &name_, &value_)) {
      pos_ = text_.NextLine(pos_);
      return true;
    }
    if (unpack_array(value_, &items_)) {
      value_ = Join(items_);
    } else {
      Trim(&value_);
    }
    return Written(writer_.WriteS(name_, value_));
  }

  TPvlText text_;
  TKvXIniStreamWriter& writer_;
  const TPvlDialect& dialect_;
  std::size_t pos_ = 0;
  std::size_t statement_ = 0;
  bool ended_ = false;
  std::vector<TGroupSection> groups_;
  std::string name_;
  std::string value_;
  std::vector<std::string> items_;
  std::string reason_;
};

/// Why there is nothing to convert; null when there is.
const char* MissingInput(const TKvStream* in, const TPvlDialect& dialect) {
  if (!dialect.needsInput) return nullptr;
  if (in == nullptr || !in->IsOpen()) return "the input is not open";
  return in->getSize() == 0 ? "the input is empty" : nullptr;
}

/// Tells the reason of a failure to who wants to know; always false.
bool Fail(TPvlFailure* failure, unsigned long line, const std::string& reason) {
  if (failure != nullptr) *failure = {line, reason};
  return false;
}

}  // namespace

bool ConvertPvl(var_a_legacy::var_a<TKvStream*> in, var_a_legacy::var_a<TKvStream*> out,
                const TPvlDialect& dialect, TPvlFailure* failure) {
  const char* const missing = MissingInput(in.get(), dialect);
  TPvlInput input;
  if (missing == nullptr && in) input = ReadPvlInput(*in, dialect.lineEnd);
  if (!out) return Fail(failure, 0, "there is no output");
  TKvXIniStreamWriter writer(std::move(out), 0, TKvXIniStreamWriter::htDocument);
  if (missing != nullptr) {
    writer.Close();
    return Fail(failure, 0, missing);
  }
  TPvlConversion conversion(std::move(input.text), writer, dialect);
  const bool converted = conversion.Run();
  const bool closed = writer.Close();
  if (!converted) {
    const unsigned long line =
        InputLine(conversion.Text(), input.unfinished, conversion.Statement());
    return Fail(failure, line, conversion.Reason());
  }
  return closed || Fail(failure, 0, kNotWritten);
}

}  // namespace SatCommonUtils
