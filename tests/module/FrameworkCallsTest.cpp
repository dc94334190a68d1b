// That the module leaves to the framework what is the framework's: this program supplies
// services, letter case, white space, paths, files and more itself, by rules of its own that the
// module must follow.
#include <gmock/gmock.h>

#include <algorithm>
#include <limits>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "Kv/Kv.h"
#include "SatCommonUtils/Files.h"
#include "SatCommonUtils/Log.h"
#include "SatCommonUtils/Metadata.h"
#include "SatCommonUtils/Module.h"
#include "SatCommonUtils/Raster.h"
#include "SatCommonUtils/Shapefile.h"
#include "SatCommonUtils/Text.h"
#include "support/TempFolder.h"

namespace {

using namespace std::string_literals;
using namespace SatCommonUtils;
using testing::ElementsAre;

/// `text` with each byte of `from` replaced by the one of `to`.
std::string Replaced(std::string text, const std::string& from, const std::string& to) {
  for (char& c : text) {
    const std::size_t place = from.find(c);
    if (place != std::string::npos) c = to[place];
  }
  return text;
}

using StreamPointer = var_a_legacy::var_a<TKvStream*>;

StreamPointer MemoryOf(const std::string& bytes) {
  return StreamPointer(new TKvMemoryStream(bytes));
}

/// The files of this framework: one, whose operations are written down and fail as told.
struct Files {
  bool open = true;
  unsigned long size = 0;
  unsigned long most = std::numeric_limits<unsigned long>::max();  ///< bytes that one call moves
  std::string throwing;                                            ///< the call that throws
  std::vector<std::string> calls;

  void Call(const std::string& call) {
    calls.push_back(call);
    if (call == throwing) throw 1;
  }
};

Files files;

/// What was asked of the services, each with the module's count of initialisations then.
std::vector<std::string> serviceCalls;

void CallServices(const std::string& call) {
  serviceCalls.push_back(call + " " + std::to_string(KvModule_Initializer::getInst().counter));
}

std::string Opened(const std::string& path, int mode) {
  return "open " + path + " " + std::to_string(mode) + " 4294967295";
}

}  // namespace

void Init_KvServices() {
  CallServices("up");
}
void Deinit_KvServices() {
  CallServices("down");
}

// Latin-1 letters have case too; FF has an upper case, 9F, that has no lower case.
std::string tolower(const std::string& text) {
  return Replaced(text, "ABCDEFGHIJKLMNOPQRSTUVWXYZ\xC4", "abcdefghijklmnopqrstuvwxyz\xE4");
}
std::string toupper(const std::string& text) {
  return Replaced(text, "abcdefghijklmnopqrstuvwxyz\xE4\xFF", "ABCDEFGHIJKLMNOPQRSTUVWXYZ\xC4\x9F");
}

std::string KvAnsiToChar(const std::string& text, TKvCharEncoding encoding) {
  return std::to_string(encoding) + " " + Replaced(text, "\xFC", "u");
}
std::string ChannelKindToText(int kind) {
  return "the kind " + std::to_string(kind);
}

// Asterisks are the only white space.
std::string trim(std::string text) {
  text.erase(text.find_last_not_of('*') + 1);
  text.erase(0, text.find_first_not_of('*'));
  return text;
}

// Colons separate, and are slashes to the system.
TKvPath TKvPath::path(bool absolute) const {
  return TKvPath((absolute ? "root:" : "") + path_.substr(0, path_.rfind(':') + 1));
}
TKvPath TKvPath::remSlash() const {
  return TKvPath(path_.substr(0, path_.find_last_not_of(':') + 1));
}
std::string TKvPath::toSysStr() const {
  return Replaced(path_, ":", "/");
}
std::string TKvPath::fileName() const {
  return path_.substr(path_.rfind(':') + 1);
}

bool KvDeleteFile(const TKvPath& path) {
  files.Call("delete " + path.toSysStr());
  return false;
}

TKvFileStream::TKvFileStream(const TKvPath& path, kvOpenMode mode, kvShareMode share)
    : TKvFileStream() {
  if (!Open(path, mode, share)) throw TKvError("no such file");
}
bool TKvFileStream::Open(const TKvPath& path, kvOpenMode mode, kvShareMode share) {
  files.Call("open " + path.toSysStr() + " " + std::to_string(mode) + " " + std::to_string(share));
  return files.open;
}
unsigned long TKvFileStream::getSize() const {
  files.Call("size");
  return files.size;
}
unsigned long TKvFileStream::Read(void* buffer, unsigned long count) {
  files.Call("read " + std::to_string(count));
  const unsigned long read = std::min(count, files.most);
  std::fill_n(static_cast<char*>(buffer), read, '\0');
  return read;
}
unsigned long TKvFileStream::Write(const void* buffer, unsigned long count) {
  files.Call("write " + std::string(static_cast<const char*>(buffer), count));
  return std::min(count, files.most);
}

namespace {

TEST(FrameworkServicesTest, TheyComeUpAndGoDownOnceForAnyNumberOfInitialisations) {
  for (int turn = 0; turn < 2; ++turn) {
    for (int i = 0; i < 3; ++i) Init_Ravelin();
    EXPECT_THAT(std::exchange(serviceCalls, {}), ElementsAre("up 0"));
    for (int i = 0; i < 5; ++i) Deinit_Ravelin();
    EXPECT_THAT(std::exchange(serviceCalls, {}), ElementsAre("down 0"));
  }
}

TEST(FrameworkCaseTest, BeginningsPartsAndEndsAreComparedInItsUpperCase) {
  for (const auto& [upper, lower] : {std::pair("\xC4"s, "\xE4"s), std::pair("\x9F"s, "\xFF"s)}) {
    EXPECT_TRUE(StringBegins(upper + "x", lower + "X", false));
    EXPECT_TRUE(StringContains("x" + lower + "x", upper, false));
    EXPECT_TRUE(StringEnds("x" + upper, "X" + lower, false));
    EXPECT_EQ(CutStringHead(lower + "x", upper, false), "x");
    EXPECT_EQ(CutStringTail("x" + lower, upper, false), "x");
    EXPECT_FALSE(StringBegins(upper, lower, true));
  }
}

TEST(FrameworkCaseTest, NamesAreToldApartInItsLowerCase) {
  EXPECT_EQ(GenerateUniqueString("A\xC4", {"a\xE4", "a\xE4[1]"}, false), "A\xC4[2]");
  EXPECT_EQ(GenerateUniqueString("\x9F", {"\xFF"}, false), "\x9F");
  EXPECT_EQ(GenerateUniqueString("\xC4", {"\xE4"}, true), "\xC4");
}

TEST(FrameworkCaseTest, FileNamesAndMasksAreComparedInItsLowerCase) {
  TFilenamesList list;
  for (const char* const name : {"\x9F", "\xC4.tif", "\xE4.TIF"}) list.Insert(name);
  EXPECT_EQ(list.FindAll("\xE4.*", nullptr), 2u);
  EXPECT_EQ(list.FindAll("\xC4.tif", nullptr), 2u);
  EXPECT_EQ(list.FindAll("#\xC4.TIF", nullptr), 2u);
  EXPECT_FALSE(list.Find("\xFF", nullptr));
}

TEST(FrameworkCaseTest, TemporaryFilesAreKeptInItsLowerCase) {
  TTemporaryFilesList list;
  list.InsertFile("/A\xC4\x9F");
  EXPECT_THAT(list.files, ElementsAre("/a\xE4\x9F"));
}

TEST(FrameworkCaseTest, FoldersOfATreeAreNamedInItsUpperCase) {
  const TempFolder folder;
  const std::string path = folder / "\xE4\xB8\x80";
  folder.MakeFolder("\xE4\xB8\x80");
  folder.Write("\xE4\xB8\x80/a", "");
  std::map<std::string, TFilenamesList> tree;
  FillFolderAndSubfoldersFilesList(path, &tree, true, nullptr);
  EXPECT_THAT(tree, ElementsAre(testing::Key(toupper(path))));
  EXPECT_TRUE(tree.begin()->first.ends_with("/\xC4\xB8\x80"));
}

TEST(FrameworkEncodingTest, XmlOfASectionIsConvertedByItToUtf8) {
  std::string xml;
  EXPECT_TRUE(WktSectionToXml("A[\"\xFC\"]", &xml));
  EXPECT_THAT(xml, testing::StartsWith("1 <?xml"));
  EXPECT_THAT(xml, testing::HasSubstr("\"u\""));
}

TEST(FrameworkKindsTest, ChannelsArePrintedByItsNamesOfTheirKinds) {
  TRawWordDibData band;
  ASSERT_TRUE(band.Setup(MemoryOf("12345678"), 2, 2, TRawWordDibData::boBigEndian));
  ASSERT_TRUE(band.SetChannelsBands({7}));
  std::vector<std::string> lines;
  const TKvDebugSink former =
      KvSetDebugSink([&](const std::string& line) { lines.push_back(line); });
  band.DebugOutputChannels();
  KvSetDebugSink(former);
  EXPECT_THAT(lines, ElementsAre("--- DebugOutputChannels ---", "the kind 7",
                                 "-^- DebugOutputChannels -^-"));
}

TEST(FrameworkTrimTest, ItsWhiteSpaceIsTakenOffItemsAndValuesOfMetadata) {
  auto* const xml = new TKvMemoryStream;
  const StreamPointer out(xml);
  EXPECT_TRUE(PVLtoXML(MemoryOf("A = (*a*, b);\nEND;\n"), out));
  EXPECT_THAT(xml->Bytes(), testing::HasSubstr("<A>a, b</A>"));

  auto* const items = new TKvMemoryStream;
  TKvXIniStreamWriter writer(StreamPointer(items), 0, TKvXIniStreamWriter::htFragment);
  EXPECT_TRUE(WriteNotEmptyString(&writer, "first", "*a *"));
  EXPECT_TRUE(WriteNotEmptyString(&writer, "second", "**"));
  EXPECT_TRUE(writer.Close());
  EXPECT_EQ(items->Bytes(), "<first>a </first>\n");
}

TEST(FrameworkTrimTest, ItsWhiteSpaceIsTakenOffWhatIsTrimmed) {
  EXPECT_EQ(CombineStrings("* a*", "*b*", "", "", ""), " a *b*");
  EXPECT_EQ(GetNotEmptyDef("* a*", "none", true), " a");
  EXPECT_EQ(GetNotEmptyDef("**", "none", true), "none");
  EXPECT_EQ(RemoveQuotes("*\"a\"*"), "a");
  EXPECT_EQ(RemoveQuotes(" \"a\""), " \"a\"");
  std::string target;
  EXPECT_TRUE(SetIfNotEmpty(&target, "* *", true));
  EXPECT_EQ(target, " ");
}

TEST(FrameworkTrimTest, QuotesAndWhiteSpaceOfAValueAreASetOfTheirOwn) {
  EXPECT_EQ(RemoveQuotesAndWhitespaces(" \"*a*\" "), "*a*");
}

TEST(FrameworkPathTest, ItTellsTheFolderFromTheName) {
  std::string folder, name;
  SplitPathFilename("a/b::c:d/e", &folder, &name);
  EXPECT_EQ(folder, "a/b//c");
  EXPECT_EQ(name, "d/e");
}

TEST(FrameworkPathTest, ItIsNotAskedByTheFunctionsWithSeparatorsOfTheirOwn) {
  std::string folder, name;
  SplitPathFilename2("a:b/c:d", &folder, &name);
  EXPECT_EQ(folder, "a:b");
  EXPECT_EQ(name, "c:d");
}

class FrameworkFilesTest : public testing::Test {
 protected:
  void SetUp() override { files = {}; }

  /// What was asked of the files since the last time.
  static std::vector<std::string> Calls() { return std::exchange(files.calls, {}); }
};

TEST_F(FrameworkFilesTest, AStringIsWrittenByOneCall) {
  EXPECT_TRUE(WriteStringToFile("a", "one\0two"s));
  EXPECT_THAT(Calls(), ElementsAre(Opened("a", 9), "write one\0two"s));
}

TEST_F(FrameworkFilesTest, AStringIsNotWrittenWhenTheCallMovesLess) {
  files.most = 6;
  EXPECT_FALSE(WriteStringToFile("a", "one two"));
  EXPECT_THAT(Calls(), ElementsAre(Opened("a", 9), "write one two"));
}

TEST_F(FrameworkFilesTest, AStringIsNotWrittenToAFileThatDoesNotOpen) {
  files.open = false;
  EXPECT_FALSE(WriteStringToFile("a", ""));
  EXPECT_THAT(Calls(), ElementsAre(Opened("a", 9)));
}

TEST_F(FrameworkFilesTest, AStringIsReadByOneCallOfTheFilesSize) {
  files.size = 5;
  EXPECT_EQ(ReadStringFromFile("a"), std::string(5, '\0'));
  EXPECT_THAT(Calls(), ElementsAre(Opened("a", 10), "size", "read 5"));
}

TEST_F(FrameworkFilesTest, AStringIsEmptyWhenTheCallMovesLess) {
  files.size = 5;
  files.most = 4;
  EXPECT_EQ(ReadStringFromFile("a"), "");
  EXPECT_THAT(Calls(), ElementsAre(Opened("a", 10), "size", "read 5"));
}

TEST_F(FrameworkFilesTest, AStringIsEmptyWhenTheFileDoesNotOpen) {
  files.open = false;
  files.size = 5;
  EXPECT_EQ(ReadStringFromFile("a"), "");
  EXPECT_THAT(Calls(), ElementsAre(Opened("a", 10)));
}

TEST_F(FrameworkFilesTest, NoExceptionGetsOutOfStringFiles) {
  files.size = 5;
  for (const std::string& call : {Opened("a", 9), "write x"s}) {
    files.throwing = call;
    EXPECT_FALSE(WriteStringToFile("a", "x"));
    EXPECT_EQ(Calls().back(), call);
  }
  for (const std::string& call : {Opened("a", 10), "size"s, "read 5"s}) {
    files.throwing = call;
    EXPECT_EQ(ReadStringFromFile("a"), "");
    EXPECT_EQ(Calls().back(), call);
  }
}

TEST_F(FrameworkFilesTest, FilesAreOpenedInTheTwoModesWithAllShared) {
  files.open = false;
  EXPECT_FALSE(TSatLog().SaveToFile("a"));
  EXPECT_THAT(Calls(), ElementsAre(Opened("a", 9)));

  TShapeFilePolygonData polygon;
  ASSERT_TRUE(polygon.Setup({{{0, 0}, {0, 1}, {1, 1}}}));
  EXPECT_FALSE(polygon.WriteToFile("b"));
  EXPECT_THAT(Calls(), ElementsAre(Opened("b", 9)));
  EXPECT_FALSE(polygon.InitializeFromFile("c"));
  EXPECT_THAT(Calls(), ElementsAre(Opened("c", 10)));
  EXPECT_EQ(CheckShapeFile("d"), sftInvalid);
  EXPECT_THAT(Calls(), ElementsAre(Opened("d", 10)));
}

TEST_F(FrameworkFilesTest, TemporaryFilesAreDeletedByItAlone) {
  const TempFolder folder;
  folder.Write("a", "");
  TTemporaryFilesList list;
  list.InsertFile("b");
  list.InsertFile("C");
  list.DeleteFile(folder / "a");
  EXPECT_THAT(Calls(), ElementsAre("delete " + folder / "a"));
  EXPECT_TRUE(folder.Has("a"));
  list.DeleteAllFiles();
  EXPECT_THAT(Calls(), ElementsAre("delete b", "delete c"));
}

}  // namespace
