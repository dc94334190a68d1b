#include "host/xml/XmlCommand.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/resource.h>

#include <string>
#include <utility>
#include <vector>

#include "host/support/Subcommand.h"

namespace {

using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;
using Words = std::vector<std::string>;

const char* const kPvl = "BEGIN_GROUP = IMAGE;\n  LINES = 100;\nEND_GROUP = IMAGE;\nEND;\n";
const char* const kNasaPvl = "GROUP = IMAGE\n  LINES = 100\nEND_GROUP = IMAGE\nEND\n";
const char* const kXIni =
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<xini>\n\t<IMAGE>\n\t\t<LINES>100</LINES>\n"
    "\t</IMAGE>\n</xini>\n";

CommandResult Xml(const TempFolder& folder, Words arguments) {
  return RunSubcommand("xml", std::move(arguments), folder);
}

/// The same with a file of the folder as standard input.
CommandResult XmlFrom(const TempFolder& folder, const std::string& input, Words arguments) {
  return RunSubcommand("xml", std::move(arguments), folder, FromFile(folder / input));
}

TEST(XmlCommand, ConvertsPvlToStandardOutput) {
  TempFolder folder;
  folder.Write("a.pvl", kPvl);
  ExpectDone(Xml(folder, {"pvl", "a.pvl"}), kXIni);
}

TEST(XmlCommand, ConvertsNasaPvlToStandardOutput) {
  TempFolder folder;
  folder.Write("a.lbl", kNasaPvl);
  ExpectDone(Xml(folder, {"nasa-pvl", "a.lbl"}), kXIni);
}

TEST(XmlCommand, ConvertsWktToStandardOutput) {
  TempFolder folder;
  folder.Write("a.prj", "GEOGCS[\"x\", PRIMEM[\"y\", 0]]");
  const CommandResult result = Xml(folder, {"wkt", "a.prj"});
  EXPECT_EQ(result.exitCode, 0);
  EXPECT_EQ(result.err, "");
  EXPECT_EQ(result.out,
            "<?xml version=\"1.0\" encoding=\"utf-8\"?>\r\n<GEOGCS>\r\n\t<VALUE>\"x\"</VALUE>\r\n"
            "\t<PRIMEM>\r\n\t\t<VALUE>\"y\"</VALUE>\r\n\t\t<VALUE>0</VALUE>\r\n\t</PRIMEM>\r\n"
            "</GEOGCS>\r\n");
}

TEST(XmlCommand, WritesAFileWhenOneIsNamed) {
  TempFolder folder;
  folder.Write("a.lbl", kNasaPvl);
  ExpectDone(Xml(folder, {"nasa-pvl", "a.lbl", "-o", "a.xml"}));
  EXPECT_EQ(folder.Read("a.xml"), kXIni);
}

TEST(XmlCommand, ReadsStandardInput) {
  TempFolder folder;
  folder.Write("a.lbl", kNasaPvl);
  const CommandResult result = XmlFrom(folder, "a.lbl", {"nasa-pvl", "-"});
  EXPECT_EQ(result.exitCode, 0);
  EXPECT_EQ(result.out, kXIni);
}

TEST(XmlCommand, ReadsLongStandardInputToItsEnd) {
  TempFolder folder;
  std::string text = "A = 1\n";
  for (int i = 0; i < 20000; ++i) text += "/* a comment */\n";
  folder.Write("a.lbl", text + "LAST = 2\n");
  const CommandResult result = XmlFrom(folder, "a.lbl", {"nasa-pvl", "-"});
  EXPECT_EQ(result.exitCode, 0);
  EXPECT_THAT(result.out, HasSubstr("<LAST>2</LAST>"));
}

TEST(XmlCommand, DropsAByteOrderMark) {
  TempFolder folder;
  folder.Write("a.pvl", "\xEF\xBB\xBF" + std::string(kPvl));
  folder.Write("a.lbl", "\xEF\xBB\xBF" + std::string(kNasaPvl));
  folder.Write("a.prj",
               "\xEF\xBB\xBF"
               "A[1]");
  EXPECT_EQ(Xml(folder, {"pvl", "a.pvl"}).out, kXIni);
  EXPECT_EQ(Xml(folder, {"nasa-pvl", "a.lbl"}).out, kXIni);
  EXPECT_THAT(Xml(folder, {"wkt", "a.prj"}).out, HasSubstr("<A>"));
}

/// ASCII as UTF-16.
std::string Utf16(const std::string& text, bool isLittleEndian) {
  std::string units;
  for (const char c : text) units += isLittleEndian ? std::string{c, '\0'} : std::string{'\0', c};
  return units;
}

TEST(XmlCommand, ReadsUtf16OfEitherByteOrder) {
  TempFolder folder;
  folder.Write("a", "\xFF\xFE" + Utf16(kNasaPvl, true));
  folder.Write("b", "\xFE\xFF" + Utf16(kNasaPvl, false));
  EXPECT_EQ(Xml(folder, {"nasa-pvl", "a"}).out, kXIni);
  EXPECT_EQ(Xml(folder, {"nasa-pvl", "b"}).out, kXIni);
  EXPECT_EQ(XmlFrom(folder, "a", {"nasa-pvl", "-"}).out, kXIni);
}

TEST(XmlCommand, KeepsLatinCharactersOfUtf16) {
  TempFolder folder;
  folder.Write(
      "a", "\xFF\xFE" + Utf16("UNIT = \"", true) + std::string("\xB0\0", 2) + Utf16("C\"\n", true));
  EXPECT_THAT(Xml(folder, {"nasa-pvl", "a"}).out, HasSubstr("<UNIT>\xC2\xB0"
                                                            "C</UNIT>"));
}

TEST(XmlCommand, RefusesUtf16BeyondLatin1) {
  TempFolder folder;
  folder.Write("a", "\xFE\xFF" + Utf16("A = 1\nB = \"", false) + "\x20\xAC" + Utf16("\"", false));
  ExpectFailure(Xml(folder, {"nasa-pvl", "a"}),
                "a: is UTF-16 with a character beyond U+00FF at line 2; convert it to UTF-8");
}

TEST(XmlCommand, RefusesUtf32) {
  TempFolder folder;
  folder.Write("a", std::string("\xFF\xFE\0\0A\0\0\0", 8));
  for (const char* converter : {"pvl", "nasa-pvl", "wkt"}) {
    ExpectFailure(Xml(folder, {converter, "a"}), "a: is UTF-32; convert it to UTF-8");
  }
  ExpectFailure(Xml(folder, {"get", "a", "A"}), "a: is UTF-32; convert it to UTF-8");
  ExpectFailure(XmlFrom(folder, "a", {"wkt", "-"}),
                "standard input: is UTF-32; convert it to UTF-8");
}

TEST(XmlCommand, GetsFromXmlInUtf16AndWithAMark) {
  TempFolder folder;
  const std::string xml = "<xini><A>1</A></xini>";
  folder.Write("a.xml",
               "\xFF\xFE" + Utf16("<xini><A>", true) + "\xAC\x20" + Utf16("</A></xini>", true));
  folder.Write("b.xml", "\xFE\xFF" + Utf16(xml, false));
  folder.Write("c.xml", "\xEF\xBB\xBF" + xml);
  EXPECT_EQ(Xml(folder, {"get", "a.xml", "A"}).out, "\xE2\x82\xAC\n");
  EXPECT_EQ(Xml(folder, {"get", "b.xml", "A"}).out, "1\n");
  EXPECT_EQ(Xml(folder, {"get", "c.xml", "A"}).out, "1\n");
}

TEST(XmlCommand, SaysWhatToDoWhenMemoryIsShort) {
  if (RAVELIN_SANITIZED) GTEST_SKIP() << "a sanitizer does not start in little memory";
  TempFolder folder;
  folder.WriteSparse("a.pvl", 1UL << 28);
  const CommandResult result = RunCommand({"xml", "pvl", "a.pvl"}, folder.Path(), [] {
    const rlimit limit = {100UL << 20, 100UL << 20};
    setrlimit(RLIMIT_AS, &limit);
  });
  ExpectFailure(result,
                "memory: there is not enough; close other programs or raise the limit on memory");
}

TEST(XmlCommand, MayReplaceItsInput) {
  TempFolder folder;
  folder.Write("a", kPvl);
  EXPECT_EQ(Xml(folder, {"pvl", "a", "-o", "a"}).exitCode, 0);
  EXPECT_EQ(folder.Read("a"), kXIni);
}

TEST(XmlCommand, WritesNothingWhenAConversionStops) {
  TempFolder folder;
  folder.Write("a.lbl", "GROUP = A\n  X = 1\nEND_GROUP = B\n");
  folder.Write("old.xml", "as it was");
  ExpectFailure(Xml(folder, {"nasa-pvl", "a.lbl"}),
                "a.lbl: the conversion stopped at line 3: END_GROUP = 'B' does not name the "
                "innermost open group 'A'; correct the text there");
  EXPECT_EQ(Xml(folder, {"nasa-pvl", "a.lbl", "-o", "new.xml"}).exitCode, 1);
  EXPECT_FALSE(folder.Has("new.xml"));
  EXPECT_EQ(Xml(folder, {"nasa-pvl", "a.lbl", "-o", "old.xml"}).exitCode, 1);
  EXPECT_EQ(folder.Read("old.xml"), "as it was");
  EXPECT_EQ(folder.Names().size(), 2u);
}

TEST(XmlCommand, SaysAtWhichLinePvlStopped) {
  TempFolder folder;
  folder.Write("a.pvl", "A = 1;\nB = 2;\n\nBEGIN_GROUP C;\n");
  ExpectFailure(Xml(folder, {"pvl", "a.pvl"}),
                "a.pvl: the conversion stopped at line 4: BEGIN_GROUP without '='; correct the "
                "text there");
}

TEST(XmlCommand, NamesStandardInputWhenItsConversionStops) {
  TempFolder folder;
  folder.Write("a.pvl", "END\n");
  ExpectFailure(XmlFrom(folder, "a.pvl", {"pvl", "-"}),
                "standard input: the conversion stopped at line 1: END is not followed by ';'; "
                "correct the text there");
}

TEST(XmlCommand, RefusesEmptyPvl) {
  TempFolder folder;
  folder.Write("a.pvl", "");
  ExpectFailure(Xml(folder, {"pvl", "a.pvl"}),
                "a.pvl: the conversion stopped: the input is empty; check that it is the right "
                "file");
}

TEST(XmlCommand, TakesEmptyNasaPvl) {
  TempFolder folder;
  folder.Write("a.lbl", "");
  const CommandResult result = Xml(folder, {"nasa-pvl", "a.lbl"});
  EXPECT_EQ(result.exitCode, 0);
  EXPECT_THAT(result.out, EndsWith("<xini/>\n"));
}

TEST(XmlCommand, RefusesEmptyWkt) {
  TempFolder folder;
  folder.Write("a.prj", "");
  ExpectFailure(Xml(folder, {"wkt", "a.prj"}),
                "a.prj: the conversion stopped: the input is empty; check that it is the right "
                "file");
}

std::string Repeated(const std::string& text, int count) {
  std::string repeated;
  for (int i = 0; i < count; ++i) repeated += text;
  return repeated;
}

TEST(XmlCommand, TakesAHundredSectionsOfWktInsideEachOther) {
  TempFolder folder;
  folder.Write("a.prj", Repeated("A[", 100) + Repeated("]", 100) + "B[C[");
  EXPECT_EQ(Xml(folder, {"wkt", "a.prj"}).exitCode, 0);
}

TEST(XmlCommand, RefusesWktThatIsDeeper) {
  TempFolder folder;
  folder.Write("a.prj", "A[\"[[[\"\n," + Repeated("A[", 100) + Repeated("]", 101));
  ExpectFailure(Xml(folder, {"wkt", "a.prj"}),
                "a.prj: the conversion stopped at line 2: sections lie more than 100 deep; correct "
                "the text there");
}

TEST(XmlCommand, DoesNotCountBracketsInQuotesAsDepth) {
  TempFolder folder;
  folder.Write("a.prj", "A[\"" + Repeated("[", 200) + "\"]");
  EXPECT_EQ(Xml(folder, {"wkt", "a.prj"}).exitCode, 0);
}

TEST(XmlCommand, DoesNotCountBracketsBehindTheOutermostSectionAsDepth) {
  TempFolder folder;
  folder.Write("a.prj", "A[1]," + Repeated("B[", 200));
  EXPECT_EQ(Xml(folder, {"wkt", "a.prj"}).exitCode, 0);
}

TEST(XmlCommand, SaysThatAnInputIsMissing) {
  TempFolder folder;
  for (const char* converter : {"pvl", "nasa-pvl", "wkt"}) {
    ExpectFailure(Xml(folder, {converter, "gone"}), "gone: no such file; check the name");
  }
  ExpectFailure(Xml(folder, {"get", "gone", "A"}), "gone: no such file; check the name");
}

TEST(XmlCommand, RefusesAnInputThatIsTooLong) {
  TempFolder folder;
  folder.WriteSparse("a.prj", (1UL << 24) + 1);
  ExpectFailure(Xml(folder, {"wkt", "a.prj"}),
                "a.prj: holds 16777217 bytes, more than the 16777216 that such a file may have; "
                "check that it is the right file");
  ExpectFailure(XmlFrom(folder, "a.prj", {"wkt", "-"}),
                "standard input: holds more than 16777216 bytes; check that it is the right text");
}

TEST(XmlCommand, SaysThatStandardInputCannotBeRead) {
  TempFolder folder;
  folder.MakeFolder("b");
  ExpectFailure(XmlFrom(folder, "b", {"wkt", "-"}),
                "standard input: cannot be read: Is a directory; name a file");
}

TEST(XmlCommand, SaysThatAnOutputCannotBeWritten) {
  TempFolder folder;
  folder.Write("a.lbl", kNasaPvl);
  folder.MakeFolder("b");
  ExpectFailure(Xml(folder, {"nasa-pvl", "a.lbl", "-o", "b"}),
                "b: is a folder; name a file to write");
}

TEST(XmlCommand, FailsWhenStandardOutputIsFull) {
  TempFolder folder;
  folder.Write("a.lbl", kNasaPvl);
  folder.Write("a.xml", kXIni);
  for (const Words& arguments :
       {Words{"xml", "nasa-pvl", "a.lbl"}, Words{"xml", "get", "a.xml", "IMAGE/LINES"}}) {
    const CommandResult result = RunCommand(arguments, folder.Path(), ToFullDisk);
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.err,
              "ravelin: standard output: cannot be written; free some space or write elsewhere\n");
  }
}

TEST(XmlCommand, LeavesNoHalfWrittenFileOnAFullDisk) {
  TempFolder folder;
  folder.Write("a.lbl", kNasaPvl);
  const CommandResult result =
      RunCommand({"xml", "nasa-pvl", "a.lbl", "-o", "a.xml"}, folder.Path(), [] {
        signal(SIGXFSZ, SIG_IGN);
        const rlimit limit = {10, 10};
        setrlimit(RLIMIT_FSIZE, &limit);
      });
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_THAT(folder.Names(), testing::ElementsAre("a.lbl"));
}

TEST(XmlCommand, GetsAValueByItsPath) {
  TempFolder folder;
  folder.Write("a.xml", kXIni);
  const CommandResult result = Xml(folder, {"get", "a.xml", "IMAGE/LINES"});
  EXPECT_EQ(result.exitCode, 0);
  EXPECT_EQ(result.err, "");
  EXPECT_EQ(result.out, "100\n");
}

TEST(XmlCommand, GetsAValueOutsideAnySection) {
  TempFolder folder;
  folder.Write("a.xml", "<xini><A>1</A></xini>");
  EXPECT_EQ(Xml(folder, {"get", "a.xml", "A"}).out, "1\n");
}

TEST(XmlCommand, GetsAnEmptyValueAsALineEnd) {
  TempFolder folder;
  folder.Write("a.xml", "<xini><A/></xini>");
  const CommandResult result = Xml(folder, {"get", "a.xml", "A"});
  EXPECT_EQ(result.exitCode, 0);
  EXPECT_EQ(result.out, "\n");
}

TEST(XmlCommand, GetsAttributes) {
  TempFolder folder;
  folder.Write("a.xml", "<xini><A B=\"1\"/></xini>");
  EXPECT_EQ(Xml(folder, {"get", "a.xml", "A/B"}).out, "1\n");
}

TEST(XmlCommand, TakesABackslashAndASlashForASlashInAName) {
  TempFolder folder;
  folder.Write("a.xml", "<xini><_ _name=\"a/b\"><_ _name=\"/\">7</_></_></xini>");
  EXPECT_EQ(Xml(folder, {"get", "a.xml", "a\\/b/\\/"}).out, "7\n");
}

TEST(XmlCommand, TakesTwoBackslashesForABackslashInAName) {
  TempFolder folder;
  folder.Write("a.xml", "<xini><_ _name=\"a\\\"><b>7</b></_></xini>");
  EXPECT_EQ(Xml(folder, {"get", "a.xml", "a\\\\/b"}).out, "7\n");
}

TEST(XmlCommand, TakesABackslashBeforeAnyOtherCharacterForItself) {
  TempFolder folder;
  folder.Write("a.xml", "<xini><_ _name=\"a\\b\\\">7</_></xini>");
  EXPECT_EQ(Xml(folder, {"get", "a.xml", "a\\b\\"}).out, "7\n");
}

TEST(XmlCommand, NamesThingsAsTheyStandInAPath) {
  TempFolder folder;
  folder.Write("a.xml", "<xini><_ _name=\"a/b\"><_ _name=\"c\\d\"/><S><T/></S></_></xini>");
  ExpectFailure(Xml(folder, {"get", "a.xml", "x\\/y/z"}),
                "a.xml: there is no section 'x\\/y'; what is there: a\\/b");
  ExpectFailure(Xml(folder, {"get", "a.xml", "a\\/b/x\\/y"}),
                "a.xml: there is no value 'x\\/y' in 'a\\/b'; what is there: c\\\\d, S");
  ExpectFailure(Xml(folder, {"get", "a.xml", "a\\/b/S"}),
                "a.xml: 'S' in 'a\\/b' is a section; name a value in it");
}

TEST(XmlCommand, GetsTheFirstOfSeveralValues) {
  TempFolder folder;
  folder.Write("a.xml", "<xini><A>1</A><A>2</A></xini>");
  EXPECT_EQ(Xml(folder, {"get", "a.xml", "A"}).out, "1\n");
}

TEST(XmlCommand, GetsValuesWhoseNamesAreNotNamesInXml) {
  TempFolder folder;
  folder.Write("a.xml", "<xini><_ _name=\"row time\"><_>7</_></_></xini>");
  EXPECT_EQ(Xml(folder, {"get", "a.xml", "row time/"}).out, "7\n");
}

TEST(XmlCommand, GetsFromStandardInput) {
  TempFolder folder;
  folder.Write("a.xml", kXIni);
  EXPECT_EQ(XmlFrom(folder, "a.xml", {"get", "-", "IMAGE/LINES"}).out, "100\n");
}

TEST(XmlCommand, GetsIntoASectionBehindAnAttributeOfItsName) {
  TempFolder folder;
  folder.Write("a.xml", "<xini><A S=\"no\"><S><B>1</B><C/></S></A></xini>");
  EXPECT_EQ(Xml(folder, {"get", "a.xml", "A/S/B"}).out, "1\n");
  ExpectFailure(Xml(folder, {"get", "a.xml", "A/S/X"}),
                "a.xml: there is no value 'X' in 'A/S'; what is there: B, C");
}

TEST(XmlCommand, NamesTheSectionThatIsMissingAndWhatIsThere) {
  TempFolder folder;
  folder.Write("a.xml", "<xini><A><B u=\"1\" _x=\"2\"><C>1</C><C/></B></A><D/></xini>");
  ExpectFailure(Xml(folder, {"get", "a.xml", "X/B/C"}),
                "a.xml: there is no section 'X'; what is there: A, D");
  ExpectFailure(Xml(folder, {"get", "a.xml", "A/X/C"}),
                "a.xml: there is no section 'X' in 'A'; what is there: B");
  ExpectFailure(Xml(folder, {"get", "a.xml", "A/B/X"}),
                "a.xml: there is no value 'X' in 'A/B'; what is there: u, C");
  ExpectFailure(Xml(folder, {"get", "a.xml", "A/B/u/X"}),
                "a.xml: there is no section 'u' in 'A/B'; what is there: u, C");
}

TEST(XmlCommand, NamesTenThingsAtMost) {
  TempFolder folder;
  std::string items;
  for (int i = 0; i < 12; ++i) items += "<A" + std::to_string(i) + "/>";
  folder.Write("a.xml", "<xini>" + items + "</xini>");
  ExpectFailure(Xml(folder, {"get", "a.xml", "X"}),
                "a.xml: there is no value 'X'; what is there: A0, A1, A2, A3, A4, A5, A6, A7, A8, "
                "A9 and 2 more");
}

TEST(XmlCommand, CutsLongNamesInMessages) {
  TempFolder folder;
  folder.Write("a.xml", "<xini><" + std::string(100, 'A') + "/></xini>");
  ExpectFailure(Xml(folder, {"get", "a.xml", "X"}),
                "a.xml: there is no value 'X'; what is there: " + std::string(60, 'A') + "...");
}

TEST(XmlCommand, NamesWhatIsThereByNamesThatXmlCannotCarry) {
  TempFolder folder;
  folder.Write("a.xml",
               "<xini><_ _name=\"row&#10;time\">1</_><_>2</_><_ _enc=\"name\" _name=\"AAE=\">3</_>"
               "</xini>");
  ExpectFailure(Xml(folder, {"get", "a.xml", "X"}),
                "a.xml: there is no value 'X'; what is there: row\\x0atime");
}

TEST(XmlCommand, SaysWhenNothingThereHasAName) {
  TempFolder folder;
  folder.Write("a.xml", "<xini><A>1</A></xini>");
  ExpectFailure(Xml(folder, {"get", "a.xml", "A/B"}),
                "a.xml: there is no value 'B' in 'A'; nothing there has a name");
}

TEST(XmlCommand, SaysThatASectionIsNoValue) {
  TempFolder folder;
  folder.Write("a.xml", "<xini><A><B><C/></B></A></xini>");
  ExpectFailure(Xml(folder, {"get", "a.xml", "A/B"}),
                "a.xml: 'B' in 'A' is a section; name a value in it");
}

TEST(XmlCommand, SaysWhereAFileIsNotXml) {
  TempFolder folder;
  folder.Write("a.xml", "<xini>\n<A></B></xini>");
  const CommandResult result = Xml(folder, {"get", "a.xml", "A"});
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_EQ(result.out, "");
  EXPECT_THAT(result.err, StartsWith("ravelin: a.xml: XML, line 2, "));
}

TEST(XmlCommand, GetsWhatTheLabelOfTheSampleSays) {
  TempFolder folder;
  ASSERT_EQ(RunCommand({"sample", "s"}, folder.Path()).exitCode, 0);
  ASSERT_EQ(Xml(folder, {"nasa-pvl", "s/sample.lbl", "-o", "s.xml"}).exitCode, 0);
  EXPECT_EQ(Xml(folder, {"get", "s.xml", "SAMPLE_METADATA_FILE/IMAGE_ATTRIBUTES/LINE_SAMPLES"}).out,
            "1200\n");
  const CommandResult wkt = Xml(folder, {"wkt", "s/sample.wkt"});
  EXPECT_EQ(wkt.exitCode, 0);
  EXPECT_THAT(wkt.out, HasSubstr("\t<GEOGCS>\r\n"));
}

TEST(XmlCommand, NamesTheWrongWordAndTheHelpThatIsNear) {
  TempFolder folder;
  const struct {
    Words arguments;
    const char* err;
  } cases[] = {
      {{}, "ravelin: A subcommand is required; see ravelin xml --help\n"},
      {{"rpc"}, "ravelin: 'rpc' is not known; see ravelin xml --help\n"},
      {{"pvl"}, "ravelin: IN is required; see ravelin xml pvl --help\n"},
      {{"get", "a"}, "ravelin: PATH is required; see ravelin xml get --help\n"},
  };
  for (const auto& c : cases) {
    const CommandResult result = Xml(folder, c.arguments);
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.err, c.err);
  }
}

TEST(XmlCommand, HelpsWithAnExampleAtEachLevel) {
  TempFolder folder;
  for (const Words& arguments :
       {Words{"--help"}, Words{"pvl", "--help"}, Words{"nasa-pvl", "--help"},
        Words{"wkt", "--help"}, Words{"get", "--help"}}) {
    const CommandResult result = Xml(folder, arguments);
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_THAT(result.out, HasSubstr("Example:\n  ravelin xml "));
    EXPECT_THAT(result.err, IsEmpty());
  }
}

}  // namespace
