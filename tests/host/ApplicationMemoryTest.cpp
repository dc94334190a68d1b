// Every subcommand, in this process, while its allocations fail one after the other: the work is
// done as ever, or not at all and the exit code and the message say so.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <filesystem>
#include <iostream>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include "host/Application.h"
#include "host/scene/support/SmallProduct.h"
#include "kv/BuildKind.h"
#include "support/FailingNew.h"

namespace {

namespace fs = std::filesystem;
using Files = std::map<std::string, std::string>;

struct Job {
  std::string name;
  std::vector<std::string> words;
  /// In a process of its own: where some allocations fail, the library of JSON loses memory or ends
  /// the program.
  bool apart = false;
  /// Which allocations fail: each of so many the first. For work that takes seconds.
  unsigned long step = 1;

  friend void PrintTo(const Job& job, std::ostream* stream) { *stream << job.name; }
};

const std::vector<std::string> kScene = {"scene", "product", "-o", "out"};

const std::vector<Job> kJobs = {
    {"Compose", {"compose", "--size", "4x3", "--band", "1=red.raw", "2=blue.raw", "-o", "o.bip"}},
    {"ComposeAPicture", {"compose", "--size", "4x3", "--band", "red=red.raw", "-o", "o.png"}},
    {"Stitch", {"stitch", "t.idx", "--stretch", "none", "-o", "o.bip"}},
    {"XmlPvl", {"xml", "pvl", "l.pvl", "-o", "o.xml"}},
    {"XmlNasaPvl", {"xml", "nasa-pvl", "product/small.lbl", "-o", "o.xml"}},
    {"XmlWkt", {"xml", "wkt", "w.wkt"}},
    {"XmlGet", {"xml", "get", "t.xml", "tree/hdr"}},
    {"TreeShow", {"tree", "show", "t.tree"}},
    {"TreeShowXml", {"tree", "show", "t.xml"}},
    {"TreeShowJson", {"tree", "show", "t.xml", "--json"}, true},
    {"TreeToXml", {"tree", "text2xml", "t.tree", "-o", "o.xml"}},
    {"TreeToText", {"tree", "xml2text", "t.xml", "-o", "o.tree"}},
    {"ShapeFromPoints", {"shape", "from-points", "points", "--wkt", "w.wkt", "-o", "o.shp"}},
    {"ShapeShow", {"shape", "show", "s.shp", "--size", "32x32", "-o", "o.png"}},
    {"ShapeInfo", {"shape", "info", "s.shp", "--json"}, true},
    {"InfoOnAnImage", {"info", "s.bip", "--json"}, true},
    {"InfoOnAnIndex", {"info", "t.idx", "--json"}, true},
    {"Files", {"files", ".", "--recursive", "--mask", "*.RAW"}},
    {"FilesJson", {"files", ".", "--json"}, true},
    {"FilesFind", {"files", "find", ".", "RED.RAW"}},
    {"Scene", kScene},
    {"SceneJson", {"scene", "product", "-o", "out", "--json"}, true},
    {"Sample", {"sample", "s"}, false, 1500},
    {"Help", {"--help"}},
    {"HelpOnASubcommand", {"shape", "from-points", "--help"}},
    {"Version", {"--version"}},
    {"WrongUse", {"compose", "--size", "4", "--band", "1=red.raw", "-o", "o.png"}},
    {"FailedWork", {"tree", "show", "a-file-that-is-not-there-and-has-a-long-name"}},
};

/// Gets what a stream of the program prints, without allocating: where the buffer ends, it is full.
class Printed : public std::streambuf {
 public:
  explicit Printed(std::ostream& stream) : stream_(stream), former_(stream.rdbuf(this)) {
    setp(bytes_.data(), bytes_.data() + bytes_.size());
  }
  Printed(const Printed&) = delete;
  Printed& operator=(const Printed&) = delete;
  ~Printed() override {
    stream_.rdbuf(former_);
    stream_.clear();
  }
  std::string Text() const { return {pbase(), pptr()}; }

 private:
  std::array<char, 65536> bytes_;
  std::ostream& stream_;
  std::streambuf* former_;
};

/// The bytes of a file, which is closed.
std::string ContentOf(FILE* file) {
  std::rewind(file);
  std::string content;
  for (int c = std::getc(file); c != EOF; c = std::getc(file)) content += static_cast<char>(c);
  std::fclose(file);
  return content;
}

struct Result {
  int exitCode = -1;
  std::string out;
  std::string err;
  bool allocationFailed = true;
};

class ApplicationMemory : public testing::TestWithParam<Job> {
 protected:
  ApplicationMemory() : former_(fs::current_path()) {
    const TempFolder& folder = product_.Folder();
    fs::current_path(folder.Path());
    for (const char* name : {"red.raw", "blue.raw"}) {
      fs::copy_file(folder / ("product/" + std::string(name)), folder / name);
    }
    folder.Write("t.idx", "0 0 3 2 0 0 4 3 red=red.raw\n");
    folder.Write("l.pvl", "BEGIN_GROUP = IMAGE;\n  LINES = 100;\nEND_GROUP = IMAGE;\nEND;\n");
    folder.Write("w.wkt", "GEOGCS[\"a\",DATUM[\"b\"]]");
    folder.Write("t.tree",
                 "(1,0)Product\n(10,0)[1]Rows\t512\n"
                 "\t(2,0)Sensor\n\t(11,0)[2]A header that needs memory\tand a value that does\tb\n"
                 "\t\t(3,0)A subtree without fields\n\t\t\n\t\n\n");
    folder.Write("points", "0 0\n0 1\n1 1\n1 0\n");
    Run({"shape", "from-points", "points", "-o", "s.shp"});
    Run({"tree", "text2xml", "t.tree", "-o", "t.xml"});
    Run({"compose", "--size", "4x3", "--band", "1=red.raw", "-o", "s.bip"});
    before_ = FilesThere();
  }
  ~ApplicationMemory() override { fs::current_path(former_); }

  static int ExitCodeOf(const std::vector<std::string>& words, unsigned long successes,
                        unsigned long failures) {
    std::vector<const char*> arguments = {"ravelin"};
    for (const std::string& word : words) arguments.push_back(word.c_str());
    const ravelin_test::FailingNew failing(successes, failures);
    return ravelin::RunApplication(static_cast<int>(arguments.size()), arguments.data());
  }

  /// Runs the application with the allocation number `successes` + 1 failing, `failures` in all.
  static Result Run(const std::vector<std::string>& words, unsigned long successes = ~0ul,
                    unsigned long failures = 0) {
    Result result;
    const Printed out(std::cout);
    const Printed err(std::cerr);
    result.exitCode = ExitCodeOf(words, successes, failures);
    result.allocationFailed = ravelin_test::AllocationFailed();
    result.out = out.Text();
    result.err = err.Text();
    return result;
  }

  /// The same in a process of its own, which may end on the way: an allocation has failed then.
  static Result RunApart(const std::vector<std::string>& words, unsigned long successes,
                         unsigned long failures) {
    std::array<FILE*, 3> files = {std::tmpfile(), std::tmpfile(), std::tmpfile()};
    std::fflush(nullptr);
    const pid_t process = fork();
    if (process == 0) {
      dup2(fileno(files[1]), STDOUT_FILENO);
      dup2(fileno(files[2]), STDERR_FILENO);
      const int exitCode = ExitCodeOf(words, successes, failures);
      const std::size_t told = ravelin_test::AllocationFailed() ? 0 : 1;
      _exit(write(fileno(files[0]), "", told) < 0 ? 126 : exitCode);
    }
    Result result;
    int status = 0;
    if (waitpid(process, &status, 0) == process && WIFEXITED(status)) {
      result.exitCode = WEXITSTATUS(status);
    }
    result.allocationFailed = ContentOf(files[0]).empty();
    result.out = ContentOf(files[1]);
    result.err = ContentOf(files[2]);
    return result;
  }

  /// Allocations of a command line; fewer by some that its message takes.
  static unsigned long AllocationsOf(const std::vector<std::string>& words) {
    constexpr unsigned long kMessage = 100;
    unsigned long low = 0;
    unsigned long high = 1ul << 16;
    while (low < high) {
      const unsigned long middle = (low + high) / 2;
      Run(words, middle, 1);
      if (ravelin_test::AllocationFailed()) {
        low = middle + 1;
      } else {
        high = middle;
      }
    }
    return low > kMessage ? low - kMessage : 0;
  }

  /// What is the same for all, one job tells of; of the work of a scene the one without JSON.
  static unsigned long AllocationsOfOthers() {
    if (GetParam().name == "WrongUse") return 0;
    return AllocationsOf(GetParam().name == "SceneJson" ? kScene : std::vector<std::string>());
  }

  Files FilesThere() const {
    Files files;
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(".")) {
      if (!entry.is_regular_file()) continue;
      const std::string name = entry.path().lexically_relative(".").string();
      files[name] = product_.Folder().Read(name);
    }
    return files;
  }

  void Restore() const {
    for (const auto& [name, bytes] : FilesThere()) {
      if (before_.count(name) == 0) fs::remove(name);
    }
    fs::remove("out");
  }

  /// It says why it failed, and leaves no file but the log of a scene, or all when only the summary
  /// of a scene failed.
  void LeavesNothing(const Result& result, int exitCodeElse, const Files& after) const {
    if (result.exitCode != exitCodeElse) {
      EXPECT_EQ(result.exitCode, 1);
    }
    EXPECT_THAT(result.err, testing::MatchesRegex("ravelin: [^\n]+; [^\n]+\n"));
    Files files = FilesThere();
    if (files.count("out/scene.xml") != 0) {
      EXPECT_EQ(files, after);
      return;
    }
    files.erase("out/ravelin.log");
    EXPECT_EQ(files, before_);
  }

  const Files& Before() const { return before_; }

 private:
  fs::path former_;
  SmallProduct product_;
  Files before_;
};

TEST_P(ApplicationMemory, EveryFailureIsTold) {
  const Result whole = Run(GetParam().words);
  const Files after = FilesThere();
  // Twice, so that what is kept from call to call is there.
  Run(GetParam().words);
  const unsigned long first = AllocationsOfOthers();
  // With a sanitizer, which takes ten times as long, each allocation fails one way: alone or with
  // all behind it.
  const unsigned long step = GetParam().step * (kv_test::kSanitized ? 2 : 1);
  for (const unsigned long failures : {1ul, ~0ul}) {
    bool failed = true;
    for (unsigned long successes = first + (failures == 1 ? 0 : step - 1); failed;
         successes += step) {
      Restore();
      SCOPED_TRACE(std::to_string(successes) + (failures == 1 ? " alone" : " and all behind it"));
      const long live = ravelin_test::LiveAllocations();
      {
        const Result result = GetParam().apart ? RunApart(GetParam().words, successes, failures)
                                               : Run(GetParam().words, successes, failures);
        failed = result.allocationFailed;
        const bool same = result.exitCode == whole.exitCode && result.out == whole.out &&
                          result.err == whole.err && FilesThere() == after;
        EXPECT_TRUE(failed || same);
        if (!same) LeavesNothing(result, whole.exitCode, after);
        if (HasFailure()) FAIL() << result.exitCode << " " << result.err << result.out;
      }
      EXPECT_EQ(ravelin_test::LiveAllocations(), live);
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Commands, ApplicationMemory, testing::ValuesIn(kJobs),
                         [](const auto& info) { return info.param.name; });

}  // namespace
