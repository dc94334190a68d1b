// The command while calls of the system fail, one after the other until all have: the work is done
// as ever or not at all, and the message names the file.
#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "host/scene/support/SmallProduct.h"
#include "host/support/FaultyRun.h"

namespace {

namespace fs = std::filesystem;
using Words = std::vector<std::string>;
using Files = std::map<std::string, std::string>;

constexpr unsigned long kMostCalls = 1000;

struct Job {
  std::string name;
  Words words;
  std::string input;                 ///< for standard input
  std::vector<std::string> outputs;  ///< files that it makes
  bool walks = false;                ///< whether it opens folders

  friend void PrintTo(const Job& job, std::ostream* stream) { *stream << job.name; }
};

const std::string kSamples(24, 'x');

/// What all jobs find in their folder.
class Inputs : public TempFolder {
 public:
  Inputs() {
    for (const char* name : {"a.raw", "b.raw", "i.bip"}) Write(name, kSamples);
    Write("i.hdr",
          "ENVI\nsamples = 4\nlines = 3\nbands = 1\ndata type = 12\ninterleave = bip\n"
          "byte order = 0\n");
    Write("t.idx", "0 0 3 2 0 0 4 3 red=a.raw green=b.raw:big\n");
    Write("l.pvl", "BEGIN_GROUP = IMAGE;\n  LINES = 100;\nEND_GROUP = IMAGE;\nEND;\n");
    Write("w.wkt", "GEOGCS[\"a\",DATUM[\"b\"]]");
    Write("t.tree", "(1,0)Product\n(10,0)[1]Rows\t512\n\n");
    Write("points", "0 0\n0 1\n1 1\n1 0\n");
    MakeFolder("p");
    Write("p/one.raw", kSamples);
    Write("p/small.lbl",
          "GROUP = SMALL\n  LINES = 3\n  LINE_SAMPLES = 4\n" +
              SmallProduct::Band(1, "one.raw",
                                 "SAMPLE_TYPE = MSB_UNSIGNED_INTEGER\nCHANNEL_KIND = 3\n") +
              "END_GROUP = SMALL\nEND\n");
    RunCommand({"shape", "from-points", "points", "-o", "s.shp"}, Path());
    RunCommand({"tree", "text2xml", "t.tree", "-o", "t.xml"}, Path());
  }
};

const std::vector<Job> kJobs = {
    {"Compose",
     {"compose", "--size", "4x3", "--band", "red=a.raw", "green=b.raw", "-o", "o.bip"},
     "",
     {"o.bip", "o.hdr"}},
    {"ComposeAPicture",
     {"compose", "--size", "2x3", "--offset", "12", "--band", "red=a.raw", "-o", "o.png"},
     "",
     {"o.png"}},
    {"Stitch", {"stitch", "t.idx", "-o", "o.png"}, "", {"o.png"}},
    {"Xml", {"xml", "pvl", "l.pvl", "-o", "o.xml"}, "", {"o.xml"}},
    {"XmlOfStandardInput", {"xml", "wkt", "-", "-o", "o.xml"}, "w.wkt", {"o.xml"}},
    {"Tree", {"tree", "text2xml", "t.tree", "-o", "o.xml"}, "", {"o.xml"}},
    {"XmlNasaPvl", {"xml", "nasa-pvl", "p/small.lbl", "-o", "o.xml"}, "", {"o.xml"}},
    {"XmlGet", {"xml", "get", "t.xml", "tree/hdr"}, "", {}},
    {"TreeToText", {"tree", "xml2text", "t.xml", "-o", "o.tree"}, "", {"o.tree"}},
    {"TreeToStandardOutput", {"tree", "show", "t.xml"}, "", {}},
    {"Shape",
     {"shape", "from-points", "points", "--wkt", "w.wkt", "-o", "o.shp"},
     "",
     {"o.shx", "o.dbf", "o.prj", "o.shp"}},
    {"ShapeInfo", {"shape", "info", "s.shp"}, "", {}},
    {"ShapeShow", {"shape", "show", "s.shp", "--size", "32x32", "-o", "o.png"}, "", {"o.png"}},
    {"InfoOnAnImage", {"info", "i.bip"}, "", {}},
    {"InfoOnAnIndex", {"info", "t.idx"}, "", {}},
    {"Files", {"files", "p", "--mask", "*.RAW"}, "", {}, true},
    {"FilesFind", {"files", "find", ".", "A.RAW"}, "", {}, true},
    {"Scene",
     {"scene", "p", "--pixels", "-o", "out"},
     "",
     {"out/pixels.hdr", "out/pixels.bip", "out/quicklook.png", "out/metadata.xml", "out/scene.tree",
      "out/scene.xml", "out/ravelin.log"},
     true},
};

class SystemFaults : public testing::TestWithParam<Job> {
 protected:
  SystemFaults() {
    whole_ = RunWithFault(GetParam().words, inputs_.Path(), "", GetParam().input).result;
    EXPECT_EQ(whole_.exitCode, 0) << whole_.err;
    after_ = FilesThere();
  }

  /// What is in the folder; a scene's log is left out after a failure.
  Files FilesThere(bool withLog = true) const {
    Files files;
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(inputs_.Path())) {
      if (!entry.is_regular_file()) continue;
      const std::string name = entry.path().lexically_relative(inputs_.Path()).string();
      if (withLog || name != "out/ravelin.log") files[name] = inputs_.Read(name);
    }
    return files;
  }

  /// Makes the folder as it was, or with a former file in the place of every output.
  void Restore(bool former) const {
    for (const std::string& name : GetParam().outputs) {
      fs::remove(inputs_ / name);
      if (former) inputs_.Write(name, "former");
    }
    if (!former) fs::remove(inputs_ / "out");
  }

  bool IsWhole(const CommandResult& result) const {
    return result.exitCode == 0 && result.out == whole_.out && FilesThere() == after_;
  }

  /// Runs the job with the fault `call`:N:`how` for N from 1 until the job makes no such call;
  /// returns how many there were.
  template <class Check>
  unsigned long ForEveryCall(const std::string& call, const std::string& how, bool former,
                             const Check& check) const {
    const std::size_t plus = std::min(how.find('+'), how.size());
    for (unsigned long number = 1; number < kMostCalls; ++number) {
      Restore(former);
      const Files files = FilesThere(false);
      const std::string fault =
          call + ":" + std::to_string(number) + how.substr(plus) + ":" + how.substr(0, plus);
      const FaultyRun run = RunWithFault(GetParam().words, inputs_.Path(), fault, GetParam().input);
      SCOPED_TRACE(fault + (former ? " with former files" : "") + ": " + run.result.err);
      if (!run.seen) return number - 1;
      check(run.result, files);
      if (testing::Test::HasFailure()) return number;
    }
    ADD_FAILURE() << "there is no end to the calls of " << call;
    return 0;
  }

  /// Every fault is overcome.
  unsigned long IsOvercome(const std::string& call, const std::string& how) const {
    return ForEveryCall(call, how, false, [&](const CommandResult& result, const Files&) {
      EXPECT_TRUE(IsWhole(result)) << result.exitCode;
    });
  }

  void IsToldAndLeavesNothing(const CommandResult& result, const Files& before) const {
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_THAT(result.err, testing::MatchesRegex("ravelin: [^:\n]+: [^\n]+; [^\n]+\n"));
    std::string file = result.err.substr(9, result.err.find(':', 9) - 9);
    if (file.starts_with(inputs_.Path())) file.erase(0, inputs_.Path().size() + 1);
    std::set<std::string> names(GetParam().words.begin(), GetParam().words.end());
    for (const auto& [name, bytes] : after_) names.insert(name);
    if (!GetParam().input.empty()) names.insert("standard input");
    EXPECT_EQ(names.count(file), 1u) << file;
    EXPECT_EQ(FilesThere(false), before);
  }

  /// Every fault makes the job fail.
  unsigned long IsFatal(const std::string& call, const std::string& how, bool former) const {
    return ForEveryCall(call, how, former, [&](const CommandResult& result, const Files& before) {
      IsToldAndLeavesNothing(result, before);
    });
  }

  /// Every fault makes the job fail, or does not matter.
  unsigned long IsTold(const std::string& call, const std::string& how, bool former) const {
    return ForEveryCall(call, how, former, [&](const CommandResult& result, const Files& before) {
      if (!IsWhole(result)) IsToldAndLeavesNothing(result, before);
    });
  }

  bool Writes() const { return !GetParam().outputs.empty(); }

 private:
  Inputs inputs_;
  CommandResult whole_;
  Files after_;
};

const std::string kInterrupted = std::to_string(EINTR);
const std::string kBroken = std::to_string(EIO);
const std::string kFull = std::to_string(ENOSPC);
const std::string kFullForGood = kFull + "+";
const std::string kForbidden = std::to_string(EPERM);
const std::string kNoMemory = std::to_string(ENOMEM);

TEST_P(SystemFaults, AnInterruptedOrShortTransferIsGoneOnWith) {
  IsOvercome("read", kInterrupted);
  IsOvercome("read", "short");
  EXPECT_EQ(IsOvercome("write", kInterrupted) > 0, Writes());
  IsOvercome("write", "short");
  IsOvercome("close", kInterrupted);
}

TEST_P(SystemFaults, AReadThatFailsOrEndsEarlyIsTold) {
  IsTold("read", kBroken, false);
  IsTold("read", "none", false);
}

TEST_P(SystemFaults, AWriteThatFailsLeavesNoFile) {
  EXPECT_EQ(IsFatal("write", kFull, false) > 0, Writes());
  IsFatal("write", kFullForGood, true);
  IsFatal("write", "none", false);
}

TEST_P(SystemFaults, AFileThatCannotBeOpenedIsTold) {
  EXPECT_GT(IsTold("open", kBroken, false), 0u);
  if (!GetParam().walks) IsOvercome("open", kInterrupted);
}

TEST_P(SystemFaults, ACloseThatFailsIsTold) {
  const unsigned long closed = IsTold("close", kBroken, false);
  EXPECT_GE(closed, GetParam().outputs.size());
}

TEST_P(SystemFaults, AFileThatCannotBePutInPlaceTakesTheOthersBack) {
  EXPECT_EQ(IsFatal("rename", kBroken, false), GetParam().outputs.size());
  // Several files are exchanged with the former ones, or renamed when that fails: both must fail.
  IsTold("rename", kBroken, true);
  EXPECT_EQ(IsTold("rename", kBroken + "+1", true) > 0, Writes());
  EXPECT_EQ(IsFatal("chmod", kForbidden, true), GetParam().outputs.size());
  IsOvercome("chmod", kInterrupted);
  IsFatal("mkdir", kFull, false);
}

TEST_P(SystemFaults, AnAllocationOfALibraryThatFailsIsTold) {
  ForEveryCall("malloc", kNoMemory, false, [&](const CommandResult& result, const Files& before) {
    // Qt takes a folder that it has no memory to open for an empty one, and the module promises no
    // more of folders that cannot be read.
    if (IsWhole(result) || (GetParam().words.front() == "files" && result.exitCode == 0)) return;
    EXPECT_EQ(FilesThere(false), before);
    // Shapelib uses its blocks without a look at them.
    if (GetParam().name == "Shape" && result.exitCode == -1) return;
    EXPECT_EQ(result.exitCode, 1);
    // Qt may say something, too.
    EXPECT_THAT(result.err, testing::MatchesRegex("([^r][^\n]*\n)*ravelin: [^\n]+; [^\n]+\n"));
  });
}

INSTANTIATE_TEST_SUITE_P(Commands, SystemFaults, testing::ValuesIn(kJobs),
                         [](const auto& info) { return info.param.name; });

class FullStandardOutput : public testing::TestWithParam<Words> {};

TEST_P(FullStandardOutput, IsTold) {
  if (!fs::exists("/dev/full")) GTEST_SKIP() << "there is no /dev/full";
  const Inputs inputs;
  const CommandResult result = RunCommand(GetParam(), inputs.Path(),
                                          [] { dup2(open("/dev/full", O_WRONLY), STDOUT_FILENO); });
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_EQ(result.err,
            "ravelin: standard output: cannot be written; free some space or write elsewhere\n");
}

INSTANTIATE_TEST_SUITE_P(Commands, FullStandardOutput,
                         testing::Values(Words{"--help"}, Words{"--version"},
                                         Words{"xml", "pvl", "l.pvl"},
                                         Words{"tree", "show", "t.xml"}, Words{"files", "."},
                                         Words{"files", "find", ".", "a.raw"},
                                         Words{"shape", "info", "s.shp"}, Words{"info", "i.bip"},
                                         Words{"scene", "p", "-o", "out"}, Words{"sample", "s"}));

}  // namespace
