#include "Kv/Services.h"
#include "SatCommonUtils/Files.h"
#include "files/Wildcard.h"

namespace SatCommonUtils {
namespace {

using Names = std::vector<std::string>;

constexpr std::size_t kEnd = static_cast<std::size_t>(-1);

/// A cursor on the name at `position`; at the end when there is none.
std::size_t CursorAt(const Names& names, std::size_t position) {
  return position < names.size() ? position : kEnd;
}

/// A cursor on the first match from `position` on.
std::size_t CursorAtMatch(const Names& names, std::size_t position, const std::string& mask) {
  const TWildcard wildcard(mask);
  while (position < names.size() && !wildcard.check(names[position])) ++position;
  return CursorAt(names, position);
}

bool CopyName(const Names& names, std::size_t cursor, std::string* out) {
  if (cursor == kEnd) return false;
  if (out != nullptr) *out = names[cursor];
  return true;
}

}  // namespace

TFilenamesList::TFilenamesList() : cursor_(kEnd) {}

TFilenamesList::TFilenamesList(const TFilenamesList& other)
    : names_(other.names_), cursor_(CursorAt(names_, 0)) {}

TFilenamesList& TFilenamesList::operator=(const TFilenamesList& other) {
  if (this != &other) names_ = other.names_;
  cursor_ = kEnd;
  return *this;
}

TFilenamesList::~TFilenamesList() = default;

void TFilenamesList::Insert(const std::string& name) {
  names_.push_back(name);
}

void TFilenamesList::Remove() {
  if (cursor_ == kEnd) return;
  names_.erase(names_.begin() + static_cast<std::ptrdiff_t>(cursor_));
  cursor_ = CursorAt(names_, cursor_);
}

bool TFilenamesList::Remove(const std::string& mask) {
  if (!FindFirst(mask)) return false;
  Remove();
  return true;
}

void TFilenamesList::Clear() {
  names_.clear();
  cursor_ = kEnd;
}

bool TFilenamesList::GetFirst(std::string* out) const {
  cursor_ = CursorAt(names_, 0);
  return CopyName(names_, cursor_, out);
}

bool TFilenamesList::GetNext(std::string* out) const {
  if (cursor_ != kEnd) cursor_ = CursorAt(names_, cursor_ + 1);
  return CopyName(names_, cursor_, out);
}

bool TFilenamesList::GetCurrent(std::string* out) const {
  return CopyName(names_, cursor_, out);
}

bool TFilenamesList::FindFirst(const std::string& mask) const {
  cursor_ = CursorAtMatch(names_, 0, mask);
  return cursor_ != kEnd;
}

bool TFilenamesList::FindNext(const std::string& mask) const {
  if (cursor_ != kEnd) cursor_ = CursorAtMatch(names_, cursor_ + 1, mask);
  return cursor_ != kEnd;
}

bool TFilenamesList::Find(const std::string& mask, std::string* out) const {
  return CopyName(names_, CursorAtMatch(names_, 0, mask), out);
}

unsigned long TFilenamesList::FindAll(const std::string& mask,
                                      std::vector<std::string>* out) const {
  const TWildcard wildcard(mask);
  unsigned long count = 0;
  for (const std::string& name : names_) {
    if (!wildcard.check(name)) continue;
    ++count;
    if (out != nullptr) out->push_back(name);
  }
  return count;
}

void TFilenamesList::DebugOutput(std::string title) const {
  const Names names = names_;  // the debug sink may change the list
  ::KvPrintDbgMsg("-------" + title + "-------");
  for (const std::string& name : names) ::KvPrintDbgMsg(name);
  ::KvPrintDbgMsg("^^^^^^^" + title + "^^^^^^^");
}

}  // namespace SatCommonUtils
