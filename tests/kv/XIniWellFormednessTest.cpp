#include <gtest/gtest.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "XIniTest.h"

namespace kv_test {
namespace {

/// Files of a test, removed at its end.
class Files {
 public:
  Files() {
    std::string folder = std::filesystem::temp_directory_path() / "xini-XXXXXX";
    if (::mkdtemp(folder.data()) == nullptr) throw std::bad_alloc();
    folder_ = folder;
  }
  Files(const Files&) = delete;
  Files& operator=(const Files&) = delete;
  ~Files() {
    std::error_code ignored;
    std::filesystem::remove_all(folder_, ignored);
  }

  void Add(const std::string& bytes) {
    paths_.push_back(folder_ + "/" + std::to_string(paths_.size()) + ".xml");
    std::ofstream(paths_.back(), std::ios::binary) << bytes;
  }
  const std::vector<std::string>& Paths() const { return paths_; }

 private:
  std::string folder_;
  std::vector<std::string> paths_;
};

/// The exit code of xmllint on files, its messages on standard error; -1 when there is none.
int RunXmllint(const std::vector<std::string>& paths) {
  std::vector<std::string> words = {"xmllint", "--noout", "--huge", "--nonet"};
  words.insert(words.end(), paths.begin(), paths.end());
  std::vector<char*> arguments;
  for (std::string& word : words) arguments.push_back(word.data());
  arguments.push_back(nullptr);
  pid_t child = 0;
  if (::posix_spawnp(&child, "xmllint", nullptr, nullptr, arguments.data(), environ) != 0) {
    return -1;
  }
  int status = 0;
  ::waitpid(child, &status, 0);
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

bool HasXmllint() {
  Files files;
  files.Add("<a/>");
  return RunXmllint(files.Paths()) == 0;
}

void WriteRandom(TKvXIniStreamWriter* writer, std::mt19937* random, int depth) {
  const unsigned long count = (*random)() % 8;
  for (unsigned long i = 0; i < count; ++i) {
    writer->SetAttributeMode((*random)() % 2 == 0);
    if (depth > 0 && (*random)() % 3 == 0) {
      const std::string name = RandomText(random, 6);
      const unsigned long section =
          (*random)() % 3 == 0 ? writer->BeginSectionCompactSE(name) : writer->BeginSectionSE(name);
      WriteRandom(writer, random, depth - 1);
      writer->EndSection(section);
    } else {
      writer->WriteS<std::string>(RandomText(random, 6), RandomText(random, 30));
    }
  }
}

TEST(XIniWellFormedness, HoldsForRandomDocuments) {
  if (!HasXmllint()) GTEST_SKIP() << "xmllint is not installed";
  std::mt19937 random(19);
  Files files;
  for (int i = 0; i < 500; ++i) {
    files.Add(Written([&](TKvXIniStreamWriter& writer) { WriteRandom(&writer, &random, 6); }));
  }
  EXPECT_EQ(RunXmllint(files.Paths()), 0);
}

TEST(XIniWellFormedness, HoldsForEveryByteInNamesValuesAndAttributes) {
  if (!HasXmllint()) GTEST_SKIP() << "xmllint is not installed";
  Files files;
  files.Add(Written([](TKvXIniStreamWriter& writer) {
    for (int byte = 0; byte < 256; ++byte) {
      const std::string text(1, static_cast<char>(byte));
      for (const std::string& name : {text, "a" + text}) {
        const unsigned long section = writer.BeginSectionSE(name);
        writer.SetAttributeMode(true);
        writer.WriteS<std::string>(name, name);
        writer.WriteS<std::string>("v", name);
        writer.SetAttributeMode(false);
        writer.WriteS<std::string>(name, name);
        writer.EndSection(section);
      }
    }
  }));
  EXPECT_EQ(RunXmllint(files.Paths()), 0);
}

TEST(XIniWellFormedness, HoldsForEveryCodePointInNames) {
  if (!HasXmllint()) GTEST_SKIP() << "xmllint is not installed";
  Files files;
  files.Add(Written([](TKvXIniStreamWriter& writer) {
    for (unsigned code = 0x80; code < 0x10000; ++code) {
      std::string name = "a";
      if (code >= 0x800) {
        name += static_cast<char>(0xE0U | (code >> 12U));
        name += static_cast<char>(0x80U | ((code >> 6U) & 0x3FU));
      } else {
        name += static_cast<char>(0xC0U | (code >> 6U));
      }
      name += static_cast<char>(0x80U | (code & 0x3FU));
      writer.WriteS<std::string>(name, name);
      writer.WriteS<std::string>(name.substr(1), name.substr(1));
    }
  }));
  EXPECT_EQ(RunXmllint(files.Paths()), 0);
}

TEST(XIniWellFormedness, HoldsForNamesThatXmlReserves) {
  if (!HasXmllint()) GTEST_SKIP() << "xmllint is not installed";
  Files files;
  files.Add(Written([](TKvXIniStreamWriter& writer) {
    for (const char* name : {"xmlns", "xml", "xml:id", "xml:lang", "xmlns:a", "a:b", ":", "a:"}) {
      const unsigned long section = writer.BeginSectionSE(name);
      writer.SetAttributeMode(true);
      writer.WriteS<std::string>(name, "");
      writer.WriteS<std::string>(name, "b c");
      writer.SetAttributeMode(false);
      writer.EndSection(section);
    }
  }));
  EXPECT_EQ(RunXmllint(files.Paths()), 0);
}

TEST(XIniWellFormedness, IsSeenToFailByTheCheck) {
  if (!HasXmllint()) GTEST_SKIP() << "xmllint is not installed";
  Files files;
  files.Add("<a>");
  EXPECT_GT(RunXmllint(files.Paths()), 0);
}

}  // namespace
}  // namespace kv_test
