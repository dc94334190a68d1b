// The pages under docs/: they tell what the sources do, and lead somewhere.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <regex>
#include <stdexcept>
#include <string>
#include <vector>

#include "host/CommandLine.h"
#include "host/documents/OptionTable.h"

namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;

const fs::path kSources = RAVELIN_SOURCE_FOLDER;

std::string TextOf(const fs::path& path) {
  std::ifstream file(path);
  if (!file) throw std::runtime_error("cannot read " + path.string());
  return std::string(std::istreambuf_iterator<char>(file), {});
}

/// The matches of an expression's first group.
std::vector<std::string> Matches(const std::string& text, const char* expression) {
  const std::regex regex(expression);
  std::vector<std::string> matches;
  for (std::sregex_iterator it(text.begin(), text.end(), regex), end; it != end; ++it) {
    matches.push_back((*it)[1]);
  }
  return matches;
}

std::vector<fs::path> Pages() {
  std::vector<fs::path> pages = {kSources / "README.md", kSources / "CONTRIBUTING.md"};
  for (const auto& entry : fs::directory_iterator(kSources / "docs")) {
    if (entry.path().extension() == ".md") pages.push_back(entry.path());
  }
  return pages;
}

TEST(Pages, LinkToFilesThatAreThere) {
  std::size_t links = 0;
  for (const fs::path& page : Pages()) {
    for (const std::string& link : Matches(TextOf(page), R"(\]\(([^)#:\s]+)(#[^)]*)?\))")) {
      EXPECT_TRUE(fs::exists(page.parent_path() / link)) << page << " links to " << link;
      ++links;
    }
  }
  EXPECT_GT(links, 30u);
}

TEST(Pages, AreAllInTheIndex) {
  const std::string index = TextOf(kSources / "docs/README.md");
  for (const fs::path& page : Pages()) {
    if (page.parent_path() != kSources / "docs" || page.filename() == "README.md") continue;
    EXPECT_THAT(index, HasSubstr("(" + page.filename().string()));
  }
}

TEST(Pages, TellOfEverySubcommand) {
  const std::string index = TextOf(kSources / "docs/README.md");
  const auto program = ravelin::ReadOptionTable(*ravelin::DescribeCommandLine());
  for (const ravelin::DocumentedCommand& command : program.commands) {
    EXPECT_THAT(index, HasSubstr("| `" + command.path + "` |"));
  }
}

// Every text that a reason is put together of stands in the table, and the table has a row a
// reason.
TEST(TreePage, HasEveryReasonWhyATextIsNoTree) {
  const std::string source = TextOf(kSources / "host/tree/TreeTextCheck.cpp");
  const std::string page = TextOf(kSources / "docs/tree.md");
  const std::size_t begin = page.find("| reason | meaning |\n|---|---|\n");
  ASSERT_NE(begin, std::string::npos);
  const std::string table = page.substr(begin, page.find("\n\n", begin) - begin);
  const auto calls = Matches(source, R"( Fail(?:Here)?\(("[\s\S]*?)\);\n)");
  for (const std::string& call : calls) {
    const std::string text = Matches(call, R"x("([^";]*))x").front();
    EXPECT_THAT(table, HasSubstr(text)) << call;
  }
  EXPECT_EQ(Matches(table, R"(\n(\| `))").size(), calls.size());
}

}  // namespace
