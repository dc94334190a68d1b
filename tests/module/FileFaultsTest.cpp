// Every operation that reads or writes a file, while calls of the system fail, one after the other
// until all have: it does its work or tells that it failed, and does it when it is asked again.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cerrno>
#include <string>

#include "host/support/FaultyRun.h"
#include "shapefile/ShapeFiles.h"
#include "support/TempFolder.h"

namespace {

constexpr unsigned long kMostCalls = 1000;

struct Work {
  const char* name;
  bool reads;
  bool writes;

  friend void PrintTo(const Work& work, std::ostream* stream) { *stream << work.name; }
};

constexpr Work kWorks[] = {{"Read", true, false},
                           {"ReadLine", true, false},
                           {"Write", false, true},
                           {"TKvXIniReader", true, false},
                           {"TKvXIniStreamWriter", false, true},
                           {"TSatLogSaveToFile", false, true},
                           {"TShapeFilePolygonDataWriteToFile", false, true},
                           {"TShapeFilePolygonDataInitializeFromFile", true, false},
                           {"TShapeFileDataInitializeFromFile", true, false},
                           {"CheckShapeFile", true, false},
                           {"TRawWordDibData", true, false},
                           {"ReadStringFromFile", true, false},
                           {"WriteStringToFile", false, true}};

class FileFaults : public testing::TestWithParam<Work> {
 protected:
  FileFaults() {
    std::string lines;
    for (int i = 0; i < 2000; ++i) lines += "line " + std::to_string(i) + "\n";
    folder_.Write("in", lines);
    folder_.Write("in.shp", shape_test::FileOf({shape_test::kSquare}).Bytes());
    folder_.Write("in.xml", "<r><a>" + std::string(200, 'x') + "</a></r>");
    const CommandResult twice = RunWithFault({GetParam().name}, folder_.Path(), "").result;
    EXPECT_EQ(twice.exitCode, 0);
    once_ = twice.out.substr(0, twice.out.size() / 2);
    EXPECT_EQ(twice.out, once_ + "\n" + once_);
    EXPECT_EQ(once_.find("failed"), std::string::npos);
    if (GetParam().writes) written_ = folder_.Read("out");
  }

  /// What the work may print when one of the two times a call failed that matters.
  bool IsFailure(const std::string& out) const {
    return out == "failed\n" + once_ || out == once_ + "\nfailed";
  }
  bool IsWhole(const std::string& out) const { return out == once_ + "\n" + once_; }

  /// Runs the work with the fault `call`:N:`how` for N from 1 until there is no such call; returns
  /// how many there were.
  template <class Check>
  unsigned long ForEveryCall(const std::string& call, const std::string& how,
                             const Check& check) const {
    for (unsigned long number = 1; number < kMostCalls; ++number) {
      const std::string fault = call + ":" + std::to_string(number) + ":" + how;
      SCOPED_TRACE(fault);
      const FaultyRun run = RunWithFault({GetParam().name}, folder_.Path(), fault);
      if (!run.seen) return number - 1;
      EXPECT_EQ(run.result.exitCode, 0) << run.result.signalNumber;
      check(run.result.out);
      if (GetParam().writes && !run.result.out.ends_with("failed")) {
        EXPECT_EQ(folder_.Read("out"), written_);
      }
      if (HasFailure()) return number;
    }
    ADD_FAILURE() << "there is no end to the calls of " << call;
    return 0;
  }

  unsigned long IsOvercome(const std::string& call, const std::string& how) const {
    return ForEveryCall(call, how, [&](const std::string& out) {
      EXPECT_TRUE(IsWhole(out)) << out.substr(0, 200);
    });
  }
  /// Returns how many there were that mattered. A read that comes after the last byte does not.
  unsigned long IsTold(const std::string& call, const std::string& how) const {
    unsigned long failures = 0;
    ForEveryCall(call, how, [&](const std::string& out) {
      EXPECT_TRUE(IsFailure(out) || (call == "read" && IsWhole(out))) << out.substr(0, 200);
      failures += IsFailure(out) ? 1 : 0;
    });
    return failures;
  }

 private:
  TempFolder folder_;
  std::string once_;
  std::string written_;
};

const std::string kInterrupted = std::to_string(EINTR);
const std::string kBroken = std::to_string(EIO);
const std::string kFull = std::to_string(ENOSPC);

TEST_P(FileFaults, AnInterruptedOrShortTransferIsGoneOnWith) {
  EXPECT_EQ(IsOvercome("read", kInterrupted) > 0, GetParam().reads);
  EXPECT_EQ(IsOvercome("read", "short") > 0, GetParam().reads);
  EXPECT_EQ(IsOvercome("write", kInterrupted) > 0, GetParam().writes);
  EXPECT_EQ(IsOvercome("write", "short") > 0, GetParam().writes);
  EXPECT_GT(IsOvercome("open", kInterrupted), 0u);
}

TEST_P(FileFaults, ATransferThatFailsIsTold) {
  EXPECT_EQ(IsTold("read", kBroken) > 0, GetParam().reads);
  EXPECT_EQ(IsTold("read", "none") > 0, GetParam().reads);
  EXPECT_EQ(IsTold("write", kFull) > 0, GetParam().writes);
  EXPECT_EQ(IsTold("write", "none") > 0, GetParam().writes);
}

TEST_P(FileFaults, AFileThatCannotBeOpenedIsTold) {
  EXPECT_GT(IsTold("open", kBroken), 0u);
}

INSTANTIATE_TEST_SUITE_P(Files, FileFaults, testing::ValuesIn(kWorks),
                         [](const auto& info) { return std::string(info.param.name); });

}  // namespace
