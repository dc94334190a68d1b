// Hostile texts cost time in proportion to their length.
#include "kv/BuildKind.h"
#include "kv/Growth.h"
#include "metadata/PvlTest.h"

namespace metadata_test {
namespace {

using Text = std::string (*)(unsigned long);

struct Case {
  const char* name;
  Text text;
};

std::ostream& operator<<(std::ostream& out, const Case& made) {
  return out << made.name;
}

/// A long run of one character. Passing over it costs so little that the machine's caches show;
/// the statements before it keep the time measurable.
std::string RunBehindStatements(unsigned long n, const std::string& begin, char c) {
  return Repeated(n, "a = 1;\n") + begin + std::string(60 * n, c);
}

std::string Alternating(unsigned long count, const std::string& texts) {
  std::string text;
  for (unsigned long i = 0; i < count; ++i) text += i % 7 == 0 ? texts : "a\n";
  return text;
}

const Case kCases[] = {
    {"LinesWithoutASemicolon", [](unsigned long n) { return Repeated(n, "a = 1\n"); }},
    {"LinesWithoutAnEqualsSign", [](unsigned long n) { return Repeated(n, "abcd;\n"); }},
    {"OneLetterLines", [](unsigned long n) { return Repeated(3 * n, "a\n"); }},
    {"OneLetterLinesAndAFarEqualsSign",
     [](unsigned long n) { return Repeated(3 * n, "a\n") + "= 1;\n"; }},
    {"LinesWithAnOpenQuote", [](unsigned long n) { return Repeated(n, "a = \"b;\n"); }},
    {"LinesOfTwoOpenings", [](unsigned long n) { return Repeated(n, "a=\"\n"); }},
    {"LinesOfQuotesAndAFarEnd",
     [](unsigned long n) { return Repeated(n, "a = \"\n") + "b = 2;\n"; }},
    {"LinesWithThreeQuotes", [](unsigned long n) { return Repeated(n, "a=\"\"\"\n"); }},
    {"OneOpenQuoteBeforeAll", [](unsigned long n) { return "a = \"\n" + Repeated(n, "b = 1;\n"); }},
    {"SemicolonsOnlyBetweenQuotes", [](unsigned long n) { return Repeated(n, "a=\";\"\n"); }},
    {"AnOpenQuoteBehindQuotedSemicolons",
     [](unsigned long n) { return Repeated(n, "a=1\"\n;\"\n") + "\"\n"; }},
    {"EscapedQuotes", [](unsigned long n) { return Repeated(n, "a = \\\"\n"); }},
    {"EscapedQuotesBehindQuotes", [](unsigned long n) { return Repeated(n, "a=\"\\\";\n"); }},
    {"RunsOfBackslashes",
     [](unsigned long n) { return RunBehindStatements(n, "a = ", '\\') + "\n"; }},
    {"LinesOfBackslashes", [](unsigned long n) { return Repeated(n, "a=\\\\\\\n"); }},
    {"VerticalTabs", [](unsigned long n) { return Repeated(3 * n, "\v\n"); }},
    {"VerticalTabsAndAFarEqualsSign",
     [](unsigned long n) { return Repeated(3 * n, "\v\n") + "= 1;\n"; }},
    {"VerticalTabsBeforeAStatementWithoutAnEnd",
     [](unsigned long n) { return Repeated(3 * n, "\v\n") + "a = 1\n"; }},
    {"VerticalTabsBeforeANameAndBlanksWithoutAnEnd",
     [](unsigned long n) { return Repeated(n, "\v\n") + "a" + Repeated(n, "\v\n") + "= 1\n"; }},
    {"VerticalTabsBehindNames",
     [](unsigned long n) {
       return Repeated(n, "a\n") + Repeated(n, "\v\n") + "= \"1\n" + Repeated(n, "a\n");
     }},
    {"NamesAmongVerticalTabsBeforeAnOpenQuote",
     [](unsigned long n) { return Repeated(n, "a\v\n\f") + "= \"1\n"; }},
    {"VerticalTabsBeforeEqualsSigns",
     [](unsigned long n) { return Repeated(n, "\v\n") + Repeated(n, "= 1\n"); }},
    {"WhiteSpaceAlone", [](unsigned long n) { return Repeated(3 * n, " \n"); }},
    {"BlanksOnOneLine", [](unsigned long n) { return RunBehindStatements(n, "", ' '); }},
    {"AFarEqualsSignBehindBlanks",
     [](unsigned long n) { return Repeated(n, "a\n") + Repeated(n, " \n\t") + "= 1\n"; }},
    {"GroupsWithoutEqualsSigns", [](unsigned long n) { return Repeated(n, "GROUPS\n"); }},
    {"GroupKeywords", [](unsigned long n) { return Repeated(n, "BEGIN_GROUP = a\nGROUP = a\n"); }},
    {"GroupsWithoutNames",
     [](unsigned long n) { return Repeated(n, "BEGIN_GROUP = ;\nGROUP = ;\n"); }},
    {"GroupsThatClose",
     [](unsigned long n) {
       return Repeated(n, "BEGIN_GROUP = a\nGROUP = a\n") + Repeated(n, "END_GROUP = a\n");
     }},
    {"GroupsInTurn",
     [](unsigned long n) { return Repeated(n, "BEGIN_GROUP = a;\nEND_GROUP = a;\n"); }},
    {"LongGroupName",
     [](unsigned long n) { return RunBehindStatements(n, "BEGIN_GROUP = ", 'a') + "\n"; }},
    {"DeepLists", [](unsigned long n) { return RunBehindStatements(n, "a = ", '(') + ";\n"; }},
    {"ListsThatClose",
     [](unsigned long n) { return "a = \"" + Repeated(n, "(\n") + Repeated(n, ")\n") + "\";\n"; }},
    {"ItemsOfOneList", [](unsigned long n) { return "a = \"(" + Repeated(n, "1,\n") + ")\";\n"; }},
    {"LinesOfLists", [](unsigned long n) { return Repeated(n, "a = (1, 2\n"); }},
    {"LongName", [](unsigned long n) { return RunBehindStatements(n, "", 'a') + " = 1;\n"; }},
    {"LongNamesBeforeEveryEqualsSign",
     [](unsigned long n) { return Repeated(n, "a\n") + Repeated(n, "a=\"\n"); }},
    {"NulBytes", [](unsigned long n) { return RunBehindStatements(n, "", '\0'); }},
    {"Statements", [](unsigned long n) { return Repeated(n, "a = 1;\n"); }},
    {"Mixture",
     [](unsigned long n) {
       return Alternating(n, "b = \"\\\n\vc = (\n= 3\n\"\nBEGIN_GROUP = x\n");
     }},
};

/// A sanitizer makes conversions many times longer.
constexpr unsigned long kSize = kv_test::kSanitized ? 8000 : 32000;

class PvlGrowth : public ::testing::TestWithParam<std::tuple<Dialect, Case>> {};

TEST_P(PvlGrowth, IsLinear) {
  const auto& [dialect, made] = GetParam();
  EXPECT_TRUE(kv_test::IsLinear(kSize, [&, dialect = dialect, text = made.text](unsigned long n) {
    ConvertText(dialect, text(n));
  }));
}

INSTANTIATE_TEST_SUITE_P(, PvlGrowth,
                         testing::Combine(testing::Values(Dialect::kGeneral, Dialect::kNasa),
                                          testing::ValuesIn(kCases)),
                         [](const auto& info) {
                           const bool isNasa = std::get<0>(info.param) == Dialect::kNasa;
                           return std::string(isNasa ? "Nasa" : "General") +
                                  std::get<1>(info.param).name;
                         });

}  // namespace
}  // namespace metadata_test
