// What the tests of the message log share.
#pragma once

#include <functional>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

#include "Kv/Services.h"
#include "SatCommonUtils/Log.h"

namespace SatCommonUtils {

inline bool operator==(const TSatLog::TLogDataItem& a, const TSatLog::TLogDataItem& b) {
  return a.type == b.type && a.message == b.message;
}
inline std::ostream& operator<<(std::ostream& out, const TSatLog::TLogDataItem& item) {
  return out << static_cast<int>(item.type) << " \"" << item.message << '"';
}

}  // namespace SatCommonUtils

namespace log_test {

using SatCommonUtils::TSatLog;
using Item = TSatLog::TLogDataItem;
using Items = std::vector<Item>;
using Texts = std::vector<std::string>;

inline TSatLog::TMsgType Type(int value) {
  return static_cast<TSatLog::TMsgType>(value);
}

/// One message of every kind, and one of none; the last one is long.
inline TSatLog MixedLog() {
  TSatLog log;
  log.AppendMessage(TSatLog::mtDebug, "d\n");
  log.AppendMessage(TSatLog::mtError, "first error\n");
  log.AppendMessage(TSatLog::mtWarning, "");
  log.AppendMessage(TSatLog::mtInfo, "info\r\n");
  log.AppendMessage(Type(7), "odd");
  log.AppendMessage(TSatLog::mtError, std::string(100, 'e'));
  return log;
}

inline Texts MixedLines() {
  return {"D d\n", "! first error\n", "* ", "i info\r\n", "? odd", "! " + std::string(100, 'e')};
}

inline std::string Joined(const Texts& lines) {
  std::string all;
  for (const std::string& line : lines) all += line;
  return all;
}

/// An output that hands every write to a function and returns what that returns.
class FunctionStream : public TKvStream {
 public:
  using TTake = std::function<unsigned long(const std::string&)>;

  explicit FunctionStream(TTake take) : take_(std::move(take)) {}

  bool IsOpen() const override { return true; }
  unsigned long Read(void*, unsigned long) override { return 0; }
  unsigned long Write(const void* buffer, unsigned long count) override {
    return take_(std::string(static_cast<const char*>(buffer), count));
  }
  bool SetPos(unsigned long) override { return false; }
  unsigned long GetPos() const override { return 0; }
  unsigned long getSize() const override { return 0; }
  bool Eof() const override { return true; }

 private:
  TTake take_;
};

/// Takes `limit` bytes in all, as a disk does that is full then, and keeps what it was asked for.
class FullStream : public FunctionStream {
 public:
  explicit FullStream(unsigned long limit)
      : FunctionStream([this](const std::string& line) { return Take(line); }), left_(limit) {}

  Texts writes;
  std::string bytes;

 private:
  unsigned long Take(const std::string& line) {
    const unsigned long taken = line.size() < left_ ? line.size() : left_;
    writes.push_back(line);
    bytes.append(line, 0, taken);
    left_ -= taken;
    return taken;
  }

  unsigned long left_;
};

/// Installs a debug sink for its lifetime.
class DebugSink {
 public:
  explicit DebugSink(TKvDebugSink sink) : former_(KvSetDebugSink(std::move(sink))) {}
  DebugSink(const DebugSink&) = delete;
  DebugSink& operator=(const DebugSink&) = delete;
  ~DebugSink() { KvSetDebugSink(former_); }

 private:
  TKvDebugSink former_;
};

}  // namespace log_test
