#include "host/tree/TreeTextCheck.h"

#include <algorithm>
#include <cstddef>
#include <optional>
#include <string_view>
#include <vector>

#include "host/HostError.h"
#include "host/ParseNumber.h"

namespace ravelin {
namespace {

/// Takes what stands before `end`, and `end`, off the front of `rest`.
std::optional<std::string_view> TakeUntil(std::string_view* rest, char end) {
  const std::size_t length = rest->find(end);
  if (length == std::string_view::npos) return std::nullopt;
  const std::string_view taken = rest->substr(0, length);
  rest->remove_prefix(length + 1);
  return taken;
}

struct Keys {
  int tag;
  int idx;
};

/// Takes "(tag,idx)" off the front of a line.
std::optional<Keys> TakeKeys(std::string_view* line) {
  if (!line->starts_with('(')) return std::nullopt;
  line->remove_prefix(1);
  const auto tag = TakeUntil(line, ',');
  const auto idx = TakeUntil(line, ')');
  if (!tag || !idx) return std::nullopt;
  const auto tagNumber = ParseNumber<int>(*tag);
  const auto idxNumber = ParseNumber<int>(*idx);
  if (!tagNumber || !idxNumber) return std::nullopt;
  return Keys{*tagNumber, *idxNumber};
}

/// Takes a text line by line.
class TreeTextCheck {
 public:
  explicit TreeTextCheck(const std::string& file) : file_(file) {}

  void Check(std::string_view text) {
    if (text.empty()) Fail("it is empty");
    if (text.find('\0') != std::string_view::npos) Fail("it holds a NUL byte");
    while (!text.empty()) {
      ++line_;
      const auto line = TakeUntil(&text, '\n');
      if (!line) FailHere("the text ends inside the line");
      CheckLine(*line);
    }
    if (!depths_.empty()) {
      FailHere("the text ends with an open tree; " + std::to_string(depths_.size()) +
               " empty lines close it and those around it");
    }
  }

 private:
  [[noreturn]] void Fail(const std::string& reason) const {
    throw HostError(file_, "is no text of a tree: " + reason, "check that it is the right file");
  }
  [[noreturn]] void FailHere(const std::string& reason) const {
    throw HostError(file_, "line " + std::to_string(line_) + ": " + reason,
                    "correct the text there");
  }

  void CheckLine(std::string_view line) {
    const std::size_t tabs = std::min(line.find_first_not_of('\t'), line.size());
    line.remove_prefix(tabs);
    if (depths_.empty() && line_ > 1) FailHere("there is more text behind the tree");
    if (depths_.empty() || tabs > depths_.back()) {
      if (!TakeKeys(&line)) FailHere("a tree that does not begin with (TAG,IDX)");
      depths_.push_back(tabs);
    } else if (line.empty()) {
      depths_.pop_back();
    } else {
      CheckField(line);
    }
  }

  void CheckField(std::string_view line) const {
    const auto keys = TakeKeys(&line);
    const auto count = keys && line.starts_with('[') ? TakeUntil(&line, ']') : std::nullopt;
    const auto number = count ? ParseNumber<unsigned long>(count->substr(1)) : std::nullopt;
    if (!number) FailHere("a field that does not begin with (TAG,IDX)[COUNT]");
    if (keys->tag < 0 || keys->idx < 0) FailHere("a field with a negative tag or index");
    if (*number == 0) FailHere("a field without values, which text cannot carry");
    const auto values = static_cast<unsigned long>(std::count(line.begin(), line.end(), '\t'));
    if (values == *number) return;
    FailHere("a field with " + std::to_string(values) + " values and a count of " +
             std::to_string(*number));
  }

  const std::string& file_;
  unsigned long line_ = 0;
  std::vector<std::size_t> depths_;  ///< the tabs of the trees that are open
};

}  // namespace

void CheckTreeText(const std::string& text, const std::string& file) {
  TreeTextCheck(file).Check(text);
}

}  // namespace ravelin
