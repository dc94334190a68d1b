// Writing the sample while calls of the system fail, one after the other until all have.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cerrno>
#include <filesystem>
#include <functional>
#include <string>

#include "host/support/FaultyRun.h"
#include "support/TempFolder.h"

namespace {

namespace fs = std::filesystem;

constexpr unsigned long kMostCalls = 1000;
constexpr unsigned long kFiles = 43;  // four bands, each with nine tiles, index, projection, label

unsigned long FilesIn(const std::string& folder) {
  unsigned long count = 0;
  for (const fs::directory_entry& entry : fs::recursive_directory_iterator(folder)) {
    count += entry.is_regular_file() ? 1 : 0;
  }
  return count;
}

using Check = std::function<void(const CommandResult&, const std::string& folder)>;

/// Writes the sample with the fault `call`:N:`how` for N from 1 until there is no such call;
/// returns how many there were.
unsigned long ForEveryCall(const std::string& call, const std::string& how, const Check& check) {
  for (unsigned long number = 1; number < kMostCalls; ++number) {
    const TempFolder folder;
    const std::string fault = call + ":" + std::to_string(number) + ":" + how;
    const FaultyRun run = RunWithFault({"s"}, folder.Path(), fault);
    SCOPED_TRACE(fault + ": " + run.result.err);
    if (!run.seen) return number - 1;
    check(run.result, folder.Path());
    if (testing::Test::HasFailure()) return number;
  }
  ADD_FAILURE() << "there is no end to the calls of " << call;
  return 0;
}

void IsWhole(const CommandResult& result, const std::string& folder) {
  EXPECT_EQ(result.exitCode, 0);
  EXPECT_EQ(FilesIn(folder), kFiles);
}

void IsToldAndLeavesNoFile(const CommandResult& result, const std::string& folder) {
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_THAT(result.err, testing::MatchesRegex("ravelin: s[^:\n]*: [^\n]+; [^\n]+\n"));
  EXPECT_EQ(FilesIn(folder), 0u);
}

std::string Number(int error) {
  return std::to_string(error);
}

TEST(SampleFaults, AFileThatCannotBeMadeOrPutInPlaceLeavesNone) {
  EXPECT_EQ(ForEveryCall("open", Number(EACCES), IsToldAndLeavesNoFile), kFiles);
  EXPECT_EQ(ForEveryCall("close", Number(EIO), IsToldAndLeavesNoFile), kFiles);
  EXPECT_EQ(ForEveryCall("rename", Number(EIO), IsToldAndLeavesNoFile), kFiles);
  EXPECT_EQ(ForEveryCall("mkdir", Number(ENOSPC), IsToldAndLeavesNoFile), 2u);
}

TEST(SampleFaults, AWriteThatFailsLeavesNone) {
  EXPECT_GE(ForEveryCall("write", Number(ENOSPC), IsToldAndLeavesNoFile), kFiles);
}

TEST(SampleFaults, AnInterruptedWriteIsGoneOnWith) {
  EXPECT_GE(ForEveryCall("write", Number(EINTR), IsWhole), kFiles);
}

TEST(SampleFaults, AShortWriteIsGoneOnWith) {
  EXPECT_GT(ForEveryCall("write", "short", IsWhole), kFiles);
}

}  // namespace
