#include <algorithm>

#include "Kv/Path.h"
#include "Kv/Services.h"
#include "SatCommonUtils/Log.h"

namespace SatCommonUtils {
namespace {

char SymbolOf(TSatLog::TMsgType type) {
  switch (type) {
    case TSatLog::mtDebug:
      return 'D';
    case TSatLog::mtError:
      return '!';
    case TSatLog::mtWarning:
      return '*';
    case TSatLog::mtInfo:
      return 'i';
  }
  return '?';
}

bool IsAlarm(const TSatLog::TLogDataItem& item) {
  return item.type == TSatLog::mtError || item.type == TSatLog::mtWarning;
}

void PutLine(const TSatLog::TLogDataItem& item, std::string* line) {
  line->assign({SymbolOf(item.type), ' '}).append(item.message);
}

/// Calls `take` with each message line until it gives false, and tells whether it never did. What
/// `take` calls may add to the log (a debug sink that logs): messages that come meanwhile are left
/// out.
template <class Take>
bool ForEachLine(const std::vector<TSatLog::TLogDataItem>& items, Take take) {
  const std::size_t count = items.size();
  std::string line;
  for (std::size_t i = 0; i < std::min(count, items.size()); ++i) {
    PutLine(items[i], &line);
    if (!take(line)) return false;
  }
  return true;
}

}  // namespace

std::string TSatLog::GetTypeSymbol(TMsgType type) {
  return std::string(1, SymbolOf(type));
}

std::string TSatLog::TLogDataItem::GetMsgLine() const {
  std::string line;
  PutLine(*this, &line);
  return line;
}

void TSatLog::AppendMessage(TMsgType type, const std::string& message) {
  if (type == mtDebug && skipDebugMessages) return;
  const bool isFirstError = type == mtError && firstError.empty();
  std::string error = isFirstError ? message : std::string();
  items.push_back({type, message});
  if (isFirstError) firstError.swap(error);
}

std::size_t TSatLog::GetMessages(std::vector<TLogDataItem>* out) const {
  out->clear();
  out->insert(out->end(), items.begin(), items.end());
  return out->size();
}

std::size_t TSatLog::GetAlarmMessages(std::vector<TLogDataItem>* out) const {
  out->clear();
  for (const TLogDataItem& item : items) {
    if (IsAlarm(item)) out->push_back(item);
  }
  return out->size();
}

std::size_t TSatLog::GetErrorMessages(std::vector<std::string>* out) const {
  out->clear();
  for (const TLogDataItem& item : items) {
    if (item.type == mtError) out->push_back(item.message);
  }
  return out->size();
}

bool TSatLog::SaveToStream(TKvStream* stream) const {
  return ForEachLine(items, [stream](const std::string& line) {
    return stream->Write(line.data(), line.size()) >= line.size();
  });
}

bool TSatLog::SaveToFile(const std::string& path) const {
  TKvFileStream file;
  return file.Open(TKvPath(path), kvOpenWrite, kvShareAll) && SaveToStream(&file);
}

void TSatLog::DebugOutput() const {
  ForEachLine(items, [](const std::string& line) {
    ::KvPrintDbgMsg(line);
    return true;
  });
}

}  // namespace SatCommonUtils
