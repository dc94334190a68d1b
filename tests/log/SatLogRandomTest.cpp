// Random commands to the log and to a model of it that is written as plainly as can be.
#include <gtest/gtest.h>

#include <random>
#include <string>
#include <utility>

#include "log/LogTest.h"

namespace {

using log_test::FullStream;
using log_test::Item;
using log_test::Items;
using log_test::Texts;
using SatCommonUtils::TSatLog;

class LogModel {
 public:
  void Append(int type, const std::string& message) {
    if (type == 0 && skipsDebug) return;
    types_.push_back(type);
    messages_.push_back(message);
    if (type == 1 && firstError == "") firstError = message;
  }
  Items Chosen(bool all) const {
    Items chosen;
    for (unsigned long i = 0; i < types_.size(); ++i) {
      if (all || (types_[i] >= 1 && types_[i] < 3)) {
        chosen.push_back({log_test::Type(types_[i]), messages_[i]});
      }
    }
    return chosen;
  }
  Texts Errors() const {
    Texts errors;
    for (unsigned long i = 0; i < types_.size(); ++i) {
      if (types_[i] == 1) errors.push_back(messages_[i]);
    }
    return errors;
  }
  Texts Lines() const {
    Texts lines;
    for (unsigned long i = 0; i < types_.size(); ++i) {
      std::string symbol = "?";
      if (types_[i] == 0) symbol = "D";
      if (types_[i] == 1) symbol = "!";
      if (types_[i] == 2) symbol = "*";
      if (types_[i] == 3) symbol = "i";
      lines.push_back(symbol + " " + messages_[i]);
    }
    return lines;
  }

  bool skipsDebug = false;
  std::string firstError;

 private:
  std::vector<int> types_;
  Texts messages_;
};

class RandomCommands {
 public:
  explicit RandomCommands(std::mt19937* random) : random_(*random) {}

  /// Does the same to both and compares what they answer.
  void Step() {
    switch (Below(10)) {
      case 0:
        log_.skipDebugMessages = model_.skipsDebug = Below(2) == 0;
        break;
      case 1:
        CompareLists();
        break;
      case 2:
        CompareSaved();
        break;
      default:
        Append();
    }
    ASSERT_EQ(log_.firstError, model_.firstError);
  }

 private:
  unsigned long Below(unsigned long end) { return random_() % end; }

  std::string RandomText() {
    std::string text(Below(4) == 0 ? 0 : Below(40), ' ');
    for (char& c : text) c = static_cast<char>(Below(256));
    return text;
  }

  void Append() {
    const int type = Below(8) == 0 ? static_cast<int>(random_()) : static_cast<int>(Below(5));
    const std::string text = RandomText();
    log_.AppendMessage(log_test::Type(type), text);
    model_.Append(type, text);
  }

  void CompareLists() {
    Items items(Below(3), Item{TSatLog::mtError, "old"});
    ASSERT_EQ(log_.GetMessages(&items), model_.Chosen(true).size());
    ASSERT_EQ(items, model_.Chosen(true));
    ASSERT_EQ(log_.GetAlarmMessages(&items), model_.Chosen(false).size());
    ASSERT_EQ(items, model_.Chosen(false));
    Texts errors(Below(3), "old");
    ASSERT_EQ(log_.GetErrorMessages(&errors), model_.Errors().size());
    ASSERT_EQ(errors, model_.Errors());
  }

  void CompareSaved() {
    const Texts lines = model_.Lines();
    const std::string whole = log_test::Joined(lines);
    const unsigned long room = Below(2) == 0 ? whole.size() : Below(whole.size() + 1);
    FullStream stream(room);
    ASSERT_EQ(log_.SaveToStream(&stream), room == whole.size());
    ASSERT_EQ(stream.bytes, whole.substr(0, room));
    Texts begun;
    for (const std::string& line : lines) {
      if (log_test::Joined(begun).size() > room) break;
      begun.push_back(line);
    }
    ASSERT_EQ(stream.writes, begun);
  }

  std::mt19937& random_;
  TSatLog log_;
  LogModel model_;
};

TEST(SatLogRandomTest, RandomCommandsAnswerAsAPlainModelDoes) {
  std::mt19937 random(20240811);
  for (int i = 0; i < 4000; ++i) {
    RandomCommands commands(&random);
    for (int step = 0; step < 30; ++step) ASSERT_NO_FATAL_FAILURE(commands.Step()) << i;
  }
}

}  // namespace
