// The documents that are made of the table of options: they hold all of it, and the programs that
// they are for understand them.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

#include "host/CommandLine.h"
#include "host/documents/BashCompletion.h"
#include "host/documents/FishCompletion.h"
#include "host/documents/ManPage.h"
#include "host/documents/OptionTable.h"
#include "host/documents/ShellText.h"
#include "host/documents/ZshCompletion.h"
#include "support/TempFolder.h"

namespace {

using namespace ravelin;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::UnorderedElementsAre;
using Words = std::vector<std::string>;

DocumentedCommand Program() {
  return ReadOptionTable(*DescribeCommandLine());
}

/// What a line of sh prints, errors included.
std::string OutputOf(const std::string& line) {
  std::FILE* const pipe = popen(("{ " + line + "\n} 2>&1").c_str(), "r");
  if (pipe == nullptr) throw std::runtime_error("cannot run sh");
  std::string output;
  std::array<char, 4096> block;
  while (const std::size_t count = std::fread(block.data(), 1, block.size(), pipe)) {
    output.append(block.data(), count);
  }
  pclose(pipe);
  return output;
}

bool IsInstalled(const std::string& program) {
  return !OutputOf("command -v " + program).empty();
}

Words LinesOf(const std::string& text) {
  std::istringstream stream(text);
  Words lines;
  for (std::string line; std::getline(stream, line);) lines.push_back(line);
  return lines;
}

/// The text from `begin` up to what follows first of `ends`.
std::string Between(const std::string& text, const std::string& begin, const Words& ends) {
  const std::size_t from = text.find(begin);
  if (from == std::string::npos) return "";
  std::size_t to = text.size();
  for (const std::string& end : ends) to = std::min(to, text.find(end, from + begin.size()));
  return text.substr(from, to - from);
}

#define SKIP_WITHOUT(program) \
  if (!IsInstalled(program)) GTEST_SKIP() << program << " is not installed"

TEST(OptionTable, HoldsWhatTheCommandLineSays) {
  const DocumentedCommand program = Program();
  EXPECT_EQ(program.path, "ravelin");
  EXPECT_GE(AllCommands(program).size(), 19u);
  const auto compose =
      std::find_if(program.commands.begin(), program.commands.end(),
                   [](const DocumentedCommand& command) { return NameOf(command) == "compose"; });
  ASSERT_NE(compose, program.commands.end());
  const auto band =
      std::find_if(compose->options.begin(), compose->options.end(),
                   [](const DocumentedOption& option) { return option.names == Words{"--band"}; });
  ASSERT_NE(band, compose->options.end());
  EXPECT_EQ(band->value, "KEY=FILE[:big|:little]");
  EXPECT_TRUE(band->required);
  EXPECT_TRUE(band->many);
  EXPECT_EQ(band->kind.type, ValueKind::kKeyedFile);
  EXPECT_THAT(band->description, HasSubstr("the raw file"));
  EXPECT_THAT(compose->examples, ElementsAre(HasSubstr("ravelin compose --size 1200x900")));
  EXPECT_THAT(compose->remarks, ElementsAre(HasSubstr("other bands follow by ascending key")));
}

// Of every command, the part of the manual that is about it.
TEST(ManPage, DescribesEverySubcommandAndOption) {
  const DocumentedCommand program = Program();
  const std::string page = ManPage(program, "1.2.3");
  for (const DocumentedCommand* command : AllCommands(program)) {
    const bool top = command == AllCommands(program).front();
    const std::string title = top ? ".SH OPTIONS\n" : ".SS " + RoffText(command->path) + "\n";
    const std::string part = Between(page, title, {"\n.SS ", "\n.SH "});
    ASSERT_NE(part, "") << command->path;
    for (const DocumentedOption& value : command->values) {
      EXPECT_THAT(part, HasSubstr("\n\\fI" + RoffText(value.value) + "\\fR"));
    }
    for (const DocumentedOption& option : command->options) {
      if (!top && option.names.back() == "--help") continue;
      for (const std::string& name : option.names) {
        EXPECT_THAT(part, HasSubstr("\\fB" + RoffText(name) + "\\fR")) << command->path;
      }
      EXPECT_THAT(part, HasSubstr(RoffText(option.description))) << command->path;
    }
  }
}

TEST(ManPage, HasTheSectionsThatReadersLookFor) {
  const std::string page = ManPage(Program(), "1.2.3");
  for (const char* name : {"NAME", "SYNOPSIS", "DESCRIPTION", "COMMANDS", "OPTIONS", "EXIT STATUS",
                           "FILES", "EXAMPLES", "SEE ALSO"}) {
    EXPECT_THAT(page, HasSubstr(std::string("\n.SH ") + name + "\n"));
  }
  EXPECT_THAT(page, HasSubstr(".TP\n\\fB1\\fR\nThe work failed.\n"));
}

TEST(ManPage, EscapesWhatRoffWouldTakeForItsOwn) {
  EXPECT_EQ(RoffText("a-b"), "a\\-b");
  EXPECT_EQ(RoffText("\\/"), "\\e/");
  EXPECT_EQ(RoffText(".hdr"), "\\&.hdr");
  EXPECT_EQ(RoffText("'a' \"b\""), "\\&\\(aqa\\(aq \\(dqb\\(dq");
  EXPECT_EQ(RoffText("`~^"), "\\(ga\\(ti\\(ha");
}

TEST(ManPage, PrintsWithoutAWarning) {
  SKIP_WITHOUT("groff");
  TempFolder folder;
  folder.Write("ravelin.1", ManPage(Program(), "1.2.3"));
  EXPECT_EQ(OutputOf("groff -ww -z -man -Tutf8 -Kutf8 " + folder / "ravelin.1"), "");
}

TEST(ManPage, ShowsTextAsItIs) {
  SKIP_WITHOUT("groff");
  DocumentedCommand program = Program();
  program.commands.front().remarks = {".It's \\/ and \"--this\", `that`, ~^."};
  TempFolder folder;
  folder.Write("ravelin.1", ManPage(program, "1.2.3"));
  const std::string shown = OutputOf("groff -man -Tascii -P-cbou " + folder / "ravelin.1");
  EXPECT_THAT(shown, HasSubstr(".It's \\/ and \"--this\", `that`, ~^."));
}

TEST(ManPage, IsReadByMan) {
  SKIP_WITHOUT("man");
  SKIP_WITHOUT("groff");
  TempFolder folder;
  folder.Write("ravelin.1", ManPage(Program(), "1.2.3"));
  const std::string shown =
      OutputOf("LC_ALL=C.UTF-8 MANROFFSEQ= MANWIDTH=80 man --warnings -P cat -l " +
               folder / "ravelin.1 | col -bx || true");
  EXPECT_THAT(shown, HasSubstr("SYNOPSIS"));
  EXPECT_THAT(shown, testing::Not(HasSubstr("warning")));
}

/// bash with the completion read, and a folder with files to complete.
class Bash : public testing::Test {
 protected:
  Bash() {
    folder_.Write("completion", BashCompletion(Program()));
    folder_.MakeFolder("place");
    for (const char* name : {"place/red.raw", "place/two words.raw", "place/label.txt"}) {
      folder_.Write(name, "");
    }
    folder_.MakeFolder("place/inner");
  }

  std::string Run(const std::string& script) {
    folder_.Write("script", script);
    return OutputOf("cd " + folder_ / "place && bash --norc -u -e " + folder_ / "script");
  }

  /// What COMPREPLY holds with the cursor behind the last of the words, which are those that bash
  /// makes of a line.
  Words Complete(const Words& words) {
    std::string line;
    for (const std::string& word : words) line += " " + ShellQuoted(word);
    return LinesOf(Run("set +e\n. ../completion\nCOMP_WORDS=(ravelin" + line +
                       ")\nCOMP_CWORD=" + std::to_string(words.size()) +
                       "\n_ravelin\nprintf '%s\\n' \"${COMPREPLY[@]}\"\n"));
  }

  TempFolder folder_;
};

TEST_F(Bash, ReadsTheCompletionWithoutAWord) {
  SKIP_WITHOUT("bash");
  EXPECT_EQ(Run(". ../completion\ncomplete -p ravelin\n"), "complete -F _ravelin ravelin\n");
}

TEST_F(Bash, KnowsEverySubcommandAndOption) {
  SKIP_WITHOUT("bash");
  const DocumentedCommand program = Program();
  for (const DocumentedCommand* command : AllCommands(program)) {
    Words words = LinesOf(OutputOf("printf '%s\\n' " + command->path));
    words.front() = "-";
    std::rotate(words.begin(), words.begin() + 1, words.end());
    const Words offered = Complete(words);
    for (const DocumentedOption& option : command->options) {
      for (const std::string& name : option.names) EXPECT_THAT(offered, Contains(name));
    }
    words.back() = "";
    const Words names = Complete(words);
    for (const DocumentedCommand& below : command->commands) {
      EXPECT_THAT(names, Contains(NameOf(below)));
    }
  }
}

TEST_F(Bash, CompletesSubcommands) {
  SKIP_WITHOUT("bash");
  EXPECT_THAT(Complete({"sc"}), ElementsAre("scene"));
  EXPECT_THAT(Complete({"tree", ""}), ElementsAre("text2xml", "xml2text", "show"));
  EXPECT_THAT(Complete({"shape", "from"}), ElementsAre("from-points"));
}

TEST_F(Bash, CompletesOptionsOfTheSubcommandAtHand) {
  SKIP_WITHOUT("bash");
  EXPECT_THAT(Complete({"scene", "--p"}), ElementsAre("--pixels"));
  EXPECT_THAT(Complete({"stitch", "--p"}), ElementsAre(""));
  EXPECT_THAT(Complete({"files", "find", "--m"}), ElementsAre(""));
  EXPECT_THAT(Complete({"files", "inner", "--m"}), ElementsAre("--mask"));
}

TEST_F(Bash, CompletesFilesAndFolders) {
  SKIP_WITHOUT("bash");
  EXPECT_THAT(Complete({"info", ""}),
              UnorderedElementsAre("red.raw", "two words.raw", "label.txt", "inner"));
  EXPECT_THAT(Complete({"scene", ""}), ElementsAre("inner"));
  EXPECT_THAT(Complete({"scene", "inner", ""}), ElementsAre("inner"));
  EXPECT_THAT(Complete({"xml", "pvl", "x.lbl", "-o", "la"}), ElementsAre("label.txt"));
  EXPECT_THAT(Complete({"xml", "pvl", "x.lbl", "--output", "=", "la"}), ElementsAre("label.txt"));
  EXPECT_THAT(Complete({"shape", "show", "x", "-o", "two"}), ElementsAre("two words.raw"));
}

TEST_F(Bash, CompletesWordsOfASet) {
  SKIP_WITHOUT("bash");
  EXPECT_THAT(Complete({"scene", "inner", "--order", ""}), ElementsAre("big", "little"));
  EXPECT_THAT(Complete({"scene", "inner", "--dialect", "=", "n"}), ElementsAre("nasa"));
  EXPECT_THAT(Complete({"scene", "inner", "--dialect", "="}), ElementsAre("pvl", "nasa"));
  EXPECT_THAT(Complete({"stitch", "x", "--bits", ""}), ElementsAre("8", "16"));
}

// Bash takes a line apart at '=' and ':'.
TEST_F(Bash, CompletesBandsWithTheirKeysAndOrders) {
  SKIP_WITHOUT("bash");
  EXPECT_THAT(Complete({"compose", "--band", ""}), ElementsAre("red=", "green=", "blue="));
  EXPECT_THAT(Complete({"compose", "--band", "red", "=", "re"}), ElementsAre("red.raw"));
  EXPECT_THAT(Complete({"compose", "--band", "red", "="}), Contains("red.raw"));
  EXPECT_THAT(Complete({"compose", "--band", "red", "=", "red.raw", ":"}),
              ElementsAre("big", "little"));
  EXPECT_THAT(Complete({"compose", "--band", "red", "=", "red.raw", ":", "big", "gr"}),
              ElementsAre("green="));
  EXPECT_THAT(Complete({"compose", "--band", "red", "=", "red.raw", "-o", "la"}),
              ElementsAre("label.txt"));
}

TEST_F(Bash, OffersNothingForOtherValues) {
  SKIP_WITHOUT("bash");
  EXPECT_THAT(Complete({"compose", "--size", ""}), ElementsAre(""));
  EXPECT_THAT(Complete({"xml", "get", "label.txt", ""}), ElementsAre(""));
}

/// The script with the zsh completion in a folder of its own, ready to be autoloaded.
class Zsh : public testing::Test {
 protected:
  Zsh() {
    folder_.MakeFolder("functions");
    folder_.Write("functions/_ravelin", ZshCompletion(Program()));
    folder_.MakeFolder("place");
    folder_.MakeFolder("place/inner");
    for (const char* name : {"place/red.raw", "place/label.txt"}) folder_.Write(name, "");
  }

  /// The line that a tab at the end of `line` makes, in an interactive zsh of a terminal.
  std::string Complete(const std::string& line) {
    folder_.Write("rc", "PS1='> '\nfpath=(" + folder_ / "functions" + " $fpath)\n" +
                            "autoload -Uz compinit\ncompinit -D -u\n"
                            "tab() { zle complete-word; print -r -- \"$BUFFER\" >../line }\n"
                            "zle -N tab\nbindkey '^T' tab\ncd place\nprint yes >../ready\n");
    folder_.Write("drive",
                  "zmodload zsh/zpty zsh/zselect\n"
                  "wait_for() { repeat 600; do [[ -s $1 ]] && return; zselect -t 10; "
                  "zpty -r -t shell _ '*' >/dev/null; done }\n"
                  "zpty -b shell 'TERM=dumb zsh -f -i'\n"
                  "zpty -w shell '. ./rc'\nwait_for ready\n"
                  "zpty -w -n shell " +
                      ShellQuoted(line) +
                      "$'\\024'\nwait_for line\n"
                      "zpty -d shell\n");
    OutputOf("cd " + folder_.Path() + " && rm -f ready line && timeout 90 zsh -f drive");
    const Words lines = folder_.Has("line") ? LinesOf(folder_.Read("line")) : Words();
    return lines.empty() ? "" : lines.front();
  }

  TempFolder folder_;
};

TEST(ZshCompletion, HoldsEverySubcommandAndOption) {
  const DocumentedCommand program = Program();
  const std::string script = ZshCompletion(program);
  for (const DocumentedCommand* command : AllCommands(program)) {
    std::string name = "\n_" + command->path + "() {";
    for (char& c : name) c = c == '-' ? '_' : c;
    for (std::size_t i = 0; i + 4 < name.size(); ++i) name[i] = name[i] == ' ' ? '_' : name[i];
    const std::string part = Between(script, name, {"\n}\n"});
    ASSERT_NE(part, "") << name;
    for (const DocumentedCommand& below : command->commands) {
      EXPECT_THAT(part, HasSubstr(ShellQuoted(NameOf(below) + ":" + below.description)));
    }
    for (const DocumentedOption& option : command->options) {
      for (const std::string& word : option.names) {
        EXPECT_TRUE(part.find(word + "[") != std::string::npos ||
                    part.find(word + "=[") != std::string::npos)
            << command->path << " " << word;
      }
    }
  }
}

TEST_F(Zsh, ReadsTheScript) {
  SKIP_WITHOUT("zsh");
  EXPECT_EQ(OutputOf("zsh -n " + folder_ / "functions/_ravelin"), "");
}

TEST_F(Zsh, CompletesSubcommandsOptionsFilesAndBands) {
  SKIP_WITHOUT("zsh");
  EXPECT_EQ(Complete("ravelin sc"), "ravelin scene ");
  EXPECT_EQ(Complete("ravelin tree sh"), "ravelin tree show ");
  EXPECT_EQ(Complete("ravelin scene inner --dia"), "ravelin scene inner --dialect=");
  EXPECT_EQ(Complete("ravelin scene inner --dialect n"), "ravelin scene inner --dialect nasa ");
  EXPECT_EQ(Complete("ravelin info la"), "ravelin info label.txt ");
  EXPECT_EQ(Complete("ravelin files --rec"), "ravelin files --recursive ");
  EXPECT_EQ(Complete("ravelin files find i"), "ravelin files find inner/");
  EXPECT_EQ(Complete("ravelin compose --band gr"), "ravelin compose --band green=");
  EXPECT_EQ(Complete("ravelin compose --band red=re"), "ravelin compose --band red=red.raw ");
  EXPECT_EQ(Complete("ravelin compose --band red=red.raw:b"),
            "ravelin compose --band red=red.raw:big ");
  EXPECT_EQ(Complete("ravelin compose --band red=red.raw:big gr"),
            "ravelin compose --band red=red.raw:big green=");
  EXPECT_EQ(Complete("ravelin compose --band red=red.raw -o la"),
            "ravelin compose --band red=red.raw -o label.txt ");
  EXPECT_EQ(Complete("ravelin compose --band red=red.raw --al"),
            "ravelin compose --band red=red.raw --allow-short ");
}

/// fish with the completion read, and a folder with files to complete.
class Fish : public testing::Test {
 protected:
  Fish() {
    folder_.Write("ravelin.fish", FishCompletion(Program()));
    folder_.MakeFolder("place");
    folder_.MakeFolder("place/inner");
    for (const char* name : {"place/red.raw", "place/label.txt"}) folder_.Write(name, "");
  }

  /// What is offered at the end of the line, without descriptions.
  Words Complete(const std::string& line) {
    const std::string script = ". ../ravelin.fish; complete -C " + ShellQuoted(line);
    Words offered = LinesOf(OutputOf("cd " + folder_ / "place && HOME=" + folder_.Path() +
                                     " fish --no-config -c " + ShellQuoted(script)));
    for (std::string& word : offered) word = word.substr(0, word.find('\t'));
    return offered;
  }

  TempFolder folder_;
};

TEST_F(Fish, ReadsTheScript) {
  SKIP_WITHOUT("fish");
  EXPECT_EQ(OutputOf("HOME=" + folder_.Path() + " fish --no-config -n " + folder_ / "ravelin.fish"),
            "");
}

TEST_F(Fish, KnowsEverySubcommandAndOption) {
  SKIP_WITHOUT("fish");
  const DocumentedCommand program = Program();
  for (const DocumentedCommand* command : AllCommands(program)) {
    const Words offered = Complete(command->path + " -");
    for (const DocumentedOption& option : command->options) {
      for (const std::string& name : option.names) {
        EXPECT_THAT(offered, Contains(name)) << command->path;
      }
    }
    const Words names = Complete(command->path + " ");
    for (const DocumentedCommand& below : command->commands) {
      EXPECT_THAT(names, Contains(NameOf(below))) << command->path;
    }
  }
}

TEST_F(Fish, CompletesSubcommandsOptionsFilesAndBands) {
  SKIP_WITHOUT("fish");
  EXPECT_THAT(Complete("ravelin sc"), ElementsAre("scene"));
  EXPECT_THAT(Complete("ravelin scene inner --dia"), ElementsAre("--dialect"));
  EXPECT_THAT(Complete("ravelin scene inner --dialect n"), ElementsAre("nasa"));
  EXPECT_THAT(Complete("ravelin info la"), ElementsAre("label.txt"));
  EXPECT_THAT(Complete("ravelin scene i"), ElementsAre("inner/"));
  EXPECT_THAT(Complete("ravelin stitch x -o la"), ElementsAre("label.txt"));
  EXPECT_THAT(Complete("ravelin compose --size "), IsEmpty());
  EXPECT_THAT(Complete("ravelin compose --band "), UnorderedElementsAre("red=", "green=", "blue="));
  EXPECT_THAT(Complete("ravelin compose --band red=re"), ElementsAre("red=red.raw"));
  EXPECT_THAT(Complete("ravelin compose --band red=red.raw:"),
              UnorderedElementsAre("red=red.raw:big", "red=red.raw:little"));
  EXPECT_THAT(Complete("ravelin compose --band red=red.raw gr"), ElementsAre("green="));
}

}  // namespace
