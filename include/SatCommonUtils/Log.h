/// @file
/// The message log of a processing run.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "Kv/Stream.h"
#include "SatCommonUtils/Export.h"

namespace SatCommonUtils {

/// Collects the messages of a processing run in the order in which they arrive, and keeps the text
/// of the first error apart.
///
///     TSatLog log;
///     log.skipDebugMessages = true;
///     log.AppendMessage(TSatLog::mtError, "no such band\n");
///     if (!log.firstError.empty()) log.SaveToFile("run.log");  // "! no such band\n"
///
/// The log owns its messages by value and only grows. Texts are byte strings, kept as they are; no
/// line end is ever added, so a message that is to end its line carries one. Copies are
/// independent. Nothing but a failing allocation throws, std::bad_alloc then, unless a stream does.
///
/// Threads: calls on one log must not overlap unless all of them are const.
class RAVELIN_EXPORT TSatLog {
 public:
  /// Other values may be stored too; they are of no kind.
  enum TMsgType : int {
    mtDebug = 0,    ///< for the developers of the host
    mtError = 1,    ///< something failed
    mtWarning = 2,  ///< something is not as it should be
    mtInfo = 3,     ///< what was done
  };

  /// One message.
  struct RAVELIN_EXPORT TLogDataItem {
    TMsgType type;        ///< its kind
    std::string message;  ///< its text

    /// The symbol of the type, a space, the text: "! no such band".
    std::string GetMsgLine() const;
  };

  std::vector<TLogDataItem> items;  ///< in the order of arrival
  std::string firstError;           ///< of the first error whose text is not empty; then it stays
  bool skipDebugMessages = false;   ///< drop debug messages as they arrive

  /// "D" debug, "!" error, "*" warning, "i" information, "?" any other value.
  static std::string GetTypeSymbol(TMsgType type);

  /// Adds a message at the end. A failed allocation leaves the log as it was. Constant time but for
  /// the copy of the text and the growth of `items`.
  void AppendMessage(TMsgType type, const std::string& message);

  // The getters replace what `*out` held and return how many entries it has then.

  /// All messages.
  std::size_t GetMessages(std::vector<TLogDataItem>* out) const;
  /// Errors and warnings.
  std::size_t GetAlarmMessages(std::vector<TLogDataItem>* out) const;
  /// The texts of the errors.
  std::size_t GetErrorMessages(std::vector<std::string>* out) const;

  /// Writes every message line, one write a line and nothing between them. False at the first write
  /// that takes less than the line; what was written stays. What the stream throws passes.
  bool SaveToStream(TKvStream* stream) const;
  /// Does that with a new or emptied file; false, too, when it cannot be opened. An empty log makes
  /// an empty file.
  bool SaveToFile(const std::string& path) const;
  /// Prints every message line to the debug sink.
  void DebugOutput() const;
};

}  // namespace SatCommonUtils
