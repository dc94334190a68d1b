#include "host/scene/SceneCommand.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <pty.h>
#include <unistd.h>

#include <nlohmann/json.hpp>

#include "host/scene/support/SmallProduct.h"
#include "host/support/PngFile.h"
#include "kv/CommaLocale.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

TEST(SceneCommand, WritesEverythingThatTheProductAllows) {
  SmallProduct product;
  const CommandResult result = product.Run({"product"});
  EXPECT_EQ(result.exitCode, 0);
  EXPECT_EQ(result.err, "");
  EXPECT_EQ(result.out,
            "product: 4 x 3 pixels, 3 bands: Red, Green, Blue\n"
            "product-ravelin/quicklook.png\nproduct-ravelin/metadata.xml\n"
            "product-ravelin/scene.tree\nproduct-ravelin/scene.xml\nproduct-ravelin/ravelin.log\n");
  for (const char* name :
       {"quicklook.png", "metadata.xml", "scene.tree", "scene.xml", "ravelin.log"}) {
    EXPECT_TRUE(product.Folder().Has(std::string("product-ravelin/") + name)) << name;
  }
}

/// What a run prints and writes in texts, in the locale of this name.
std::string TextsOf(const SmallProduct& product, const std::string& locale) {
  const auto setLocale = [&locale] { setenv("LC_ALL", locale.c_str(), 1); };
  std::string texts = product.Run({"product", "-o", "out", "--pixels", "--json"}, setLocale).out;
  for (const char* name :
       {"metadata.xml", "scene.tree", "scene.xml", "ravelin.log", "pixels.hdr"}) {
    texts += product.Folder().Read(std::string("out/") + name);
  }
  return texts;
}

TEST(SceneCommand, WritesNumbersWithADotWhateverTheLocale) {
  SmallProduct product;
  const std::string texts = TextsOf(product, "C");
  EXPECT_THAT(texts, HasSubstr("\"mean\": 106.5"));
  const kv_test::CommaLocale locale;
  if (!locale.IsThere()) GTEST_SKIP() << "no locale with a decimal comma";
  EXPECT_EQ(TextsOf(product, std::setlocale(LC_ALL, nullptr)), texts);
}

TEST(SceneCommand, StretchesTheQuicklookBetweenPercentiles) {
  SmallProduct product;
  EXPECT_EQ(product.Run({"product", "-o", "out"}).exitCode, 0);
  const PngFile picture = ReadPng(product.Folder() / "out/quicklook.png");
  EXPECT_EQ(picture.width, 4);
  EXPECT_EQ(picture.height, 3);
  EXPECT_EQ(picture.channels, 3);
  EXPECT_EQ(Samples(picture.samples.begin(), picture.samples.begin() + 6),
            Samples({0, 0, 0, 0, 23, 23}));
  EXPECT_EQ(picture.samples.back(), 255);
}

TEST(SceneCommand, WritesAllPixelsWhenAsked) {
  SmallProduct product;
  EXPECT_EQ(product.Run({"product", "-o", "out", "--pixels"}).exitCode, 0);
  EXPECT_EQ(product.Folder().Read("out/pixels.bip"),
            LittleBytes(Interleave({product.red, product.green, product.blue})));
  EXPECT_THAT(product.Folder().Read("out/pixels.hdr"), HasSubstr("samples = 4\nlines = 3\n"));
}

TEST(SceneCommand, TellsInTheLogWhatItDid) {
  SmallProduct product;
  EXPECT_EQ(product.Run({"product", "-o", "out"}).exitCode, 0);
  const std::string log = product.Folder().Read("out/ravelin.log");
  EXPECT_THAT(log, testing::StartsWith("i scene: product\ni label: product/small.lbl\n"
                                       "i dialect: nasa, line 1 begins with GROUP\n"
                                       "i size: 4 x 3 pixels, by the label\n"
                                       "i opened product/blue.raw: Blue, big-endian, 24 bytes\n"));
  EXPECT_THAT(log, HasSubstr("i wrote out/metadata.xml: "));
  EXPECT_THAT(log, testing::EndsWith("i done\n"));
}

TEST(SceneCommand, CountsZerosAsNoData) {
  SmallProduct product;
  EXPECT_EQ(product.Run({"product", "-o", "out"}).exitCode, 0);
  const std::string tree = product.Folder().Read("out/scene.tree");
  EXPECT_THAT(tree, HasSubstr("Statistics of\tall pixels\n"));
  EXPECT_THAT(tree, HasSubstr("(21,0)[1]Name\tRed\n"));
  EXPECT_THAT(tree, HasSubstr("(30,0)[1]Samples that are not 0\t11\n"
                              "\t(31,0)[1]Minimum\t202\n\t(32,0)[1]Maximum\t212\n"
                              "\t(33,0)[1]Mean\t207\n"));
}

TEST(SceneCommand, PrintsJsonInsteadOfText) {
  SmallProduct product;
  const CommandResult result = product.Run({"product", "-o", "out", "--json"});
  EXPECT_EQ(result.exitCode, 0);
  const nlohmann::json scene = nlohmann::json::parse(result.out)["scenes"][0];
  EXPECT_EQ(scene["bands"].size(), 3u);
  EXPECT_EQ(scene["bands"][0]["byteOrder"], "big");
  EXPECT_EQ(scene["files"].back()["file"], "out/ravelin.log");
  EXPECT_EQ(scene["files"].back()["bytes"], product.Folder().Read("out/ravelin.log").size());
}

TEST(SceneCommand, PrintsNothingWhenItIsToBeQuiet) {
  SmallProduct product;
  const CommandResult result = product.Run({"product", "--quiet"});
  EXPECT_EQ(result.exitCode, 0);
  EXPECT_EQ(result.out + result.err, "");
}

TEST(SceneCommand, TakesBandsSizeAndOrderFromOptions) {
  SmallProduct product;
  product.Write("small.lbl", "GROUP = EMPTY\nEND_GROUP = EMPTY\nEND\n");
  const CommandResult result =
      product.Run({"product", "-o", "out", "--pixels", "--size", "4x3", "--order", "big", "--band",
                   "1=BLUE.RAW", "2=green.raw:little"});
  EXPECT_EQ(result.err, "");
  EXPECT_EQ(product.Folder().Read("out/pixels.bip"),
            LittleBytes(Interleave({product.blue, product.green})));
}

TEST(SceneCommand, ReadsMappedValues) {
  SmallProduct product;
  product.Write("small.lbl",
                "BEGIN_GROUP = IMAGE;\nnumRows = 3;\nnumColumns = 4;\n"
                "END_GROUP = IMAGE;\nEND;\n");
  const CommandResult result =
      product.Run({"product", "-o", "out", "--band", "1=green.raw:little", "--map", "numRows=LINES",
                   "image/numcolumns=LINE_SAMPLES"});
  EXPECT_EQ(result.err, "");
  EXPECT_THAT(product.Folder().Read("out/ravelin.log"), HasSubstr("i dialect: pvl"));
}

TEST(SceneCommand, TakesTheLabelThatIsNamed) {
  SmallProduct product;
  product.Write("other.lbl", SmallProduct::Label());
  EXPECT_EQ(product.Run({"product"}).exitCode, 1);
  EXPECT_EQ(product.Run({"product", "--label", "other.lbl"}).exitCode, 0);
  const std::string path = product.Folder() / "product/other.lbl";
  EXPECT_EQ(product.Run({"product", "--label", path}).exitCode, 0);
}

TEST(SceneCommand, StitchesTilesOfALabel) {
  SmallProduct product;
  const auto tile = [](const std::string& name, int left, const std::string& file) {
    return "GROUP = TILE_" + name + "\nLEFT = " + std::to_string(left) +
           "\nTOP = 0\nRIGHT = " + std::to_string(left + 1) +
           "\nBOTTOM = 1\nSOURCE_LEFT = 0\nSOURCE_TOP = 0\nLINES = 2\nLINE_SAMPLES = 2\n"
           "SAMPLE_TYPE = LSB_UNSIGNED_INTEGER\nFILE_NAME_BAND_1 = " +
           file + "\nEND_GROUP = TILE_" + name + "\n";
  };
  product.Folder().MakeFolder("product/T");
  product.Write("T/a.raw", LittleBytes({1, 2, 5, 6}));
  product.Write("T/b.raw", LittleBytes({3, 4, 7, 8}));
  product.Write("small.lbl", tile("A", 0, "t/A.raw") + tile("B", 2, "t/B.raw") + "END\n");
  const CommandResult result = product.Run({"product", "-o", "out", "--pixels"});
  EXPECT_EQ(result.err, "");
  EXPECT_EQ(product.Folder().Read("out/pixels.bip"), LittleBytes({1, 2, 3, 4, 5, 6, 7, 8}));
  EXPECT_THAT(result.out, HasSubstr("product: 4 x 2 pixels of 2 tiles, 1 band: Band 101\n"));
}

TEST(SceneCommand, ReadsALabelInUtf16) {
  SmallProduct product;
  std::string wide = "\xff\xfe";
  for (const char c : SmallProduct::Label()) wide += {c, '\0'};
  product.Write("small.lbl", wide);
  EXPECT_EQ(product.Run({"product"}).exitCode, 0);
}

TEST(SceneCommand, ReducesTheQuicklookOfALargeScene) {
  SmallProduct product;
  product.Folder().WriteSparse("product/large.raw", 5000ul * 3000 * 2);
  const std::vector<std::string> arguments = {"product", "-o",     "out",      "--order",
                                              "big",     "--size", "5000x3000"};
  std::vector<std::string> reduced = arguments;
  reduced.insert(reduced.end(), {"--band", "1=large.raw"});
  EXPECT_EQ(product.Run(reduced).exitCode, 0);
  const PngFile small = ReadPng(product.Folder() / "out/quicklook.png");
  EXPECT_EQ(small.width, 2048);
  EXPECT_EQ(small.height, 1229);
  EXPECT_THAT(product.Folder().Read("out/scene.tree"), HasSubstr("the pixels of the quicklook"));
  std::vector<std::string> full = arguments;
  full.insert(full.end(), {"--full", "--band", "1=large.raw"});
  EXPECT_EQ(product.Run(full).exitCode, 0);
  EXPECT_EQ(ReadPng(product.Folder() / "out/quicklook.png").width, 5000);
  EXPECT_THAT(product.Folder().Read("out/scene.tree"), HasSubstr("all pixels"));
}

TEST(SceneCommand, KeepsItsMemorySmallOnASceneLargerThanMemory) {
  if (RAVELIN_SANITIZED) GTEST_SKIP() << "a sanitizer's own memory would be measured";
  SmallProduct product;
  product.Folder().WriteSparse("product/large.raw", 60000ul * 60000 * 2);
  const CommandResult scene = product.Run(
      {"product", "-o", "out", "--size", "60000x60000", "--order", "big", "--band", "1=large.raw"});
  EXPECT_EQ(scene.err, "");
  EXPECT_LT(scene.maxResidentKiB, 300 * 1024);
  EXPECT_EQ(ReadPng(product.Folder() / "out/quicklook.png").height, 2048);
  const CommandResult window =
      RunCommand({"compose", "--size", "60000x60000", "--band", "1=product/large.raw", "--rect",
                  "29000,31000,1500,1000", "-o", "window.png"},
                 product.Folder().Path());
  EXPECT_EQ(window.err, "");
  EXPECT_LT(window.maxResidentKiB, 300 * 1024);
  EXPECT_EQ(ReadPng(product.Folder() / "window.png").width, 1500);
}

TEST(SceneCommand, DoesEveryFolder) {
  SmallProduct one;
  std::filesystem::copy(one.Folder() / "product", one.Folder() / "second");
  one.Folder().MakeFolder("bad");
  const CommandResult result = one.Run({"product", "bad", "gone", "second", "-o", "out"});
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_EQ(result.err,
            "ravelin: bad: has no label: no file there is called *_mtl.txt, *.lbl, *.pvl, *.met or "
            "*label.txt; name it with --label FILE\n"
            "ravelin: gone: no such folder: No such file or directory; check the name\n"
            "ravelin: scene: 2 of 4 folders failed; see the messages above\n");
  EXPECT_THAT(result.out, HasSubstr("out/second/ravelin.log\n"));
  EXPECT_TRUE(one.Folder().Has("out/product/quicklook.png"));
  EXPECT_TRUE(one.Folder().Has("out/second/quicklook.png"));
  EXPECT_TRUE(one.Folder().Has("out/bad/ravelin.log"));
  EXPECT_FALSE(one.Folder().Has("out/gone"));
}

TEST(SceneCommand, TellsOfEveryFolderInJson) {
  SmallProduct product;
  const CommandResult result = product.Run({"product", "gone", "--json"});
  EXPECT_EQ(result.exitCode, 1);
  const nlohmann::json scenes = nlohmann::json::parse(result.out)["scenes"];
  ASSERT_EQ(scenes.size(), 2u);
  EXPECT_EQ(scenes[0]["done"], true);
  EXPECT_EQ(scenes[1]["done"], false);
  EXPECT_EQ(scenes[1]["error"], "gone: no such folder: No such file or directory; check the name");
}

TEST(SceneCommand, NamesTheOutputAfterAFolderGivenByAnyPath) {
  SmallProduct product;
  EXPECT_EQ(product.Run({"product/../product/"}).exitCode, 0);
  EXPECT_TRUE(product.Folder().Has("product-ravelin/quicklook.png"));
}

TEST(SceneCommand, LeavesOtherFilesOfTheOutputAlone) {
  SmallProduct product;
  product.Folder().MakeFolder("out");
  product.Folder().Write("out/mine.txt", "mine");
  EXPECT_EQ(product.Run({"product", "-o", "out"}).exitCode, 0);
  EXPECT_EQ(product.Run({"product", "-o", "out"}).exitCode, 0);
  EXPECT_EQ(product.Folder().Read("out/mine.txt"), "mine");
}

struct WrongUse {
  std::vector<std::string> arguments;
  const char* message;
};

TEST(SceneCommand, RefusesWrongUse) {
  const WrongUse cases[] = {
      {{}, "ravelin: FOLDER is required"},
      {{"product", "--dialect", "isis"}, "ravelin: --dialect: 'isis' is neither pvl nor nasa"},
      {{"product", "--order", "middle"}, "ravelin: --order: 'middle' is neither big nor little"},
      {{"product", "--size", "4"}, "ravelin: --size: '4' is not WxH"},
      {{"product", "--band", "red"}, "ravelin: --band: 'red' is not of the form KEY=FILE"},
      {{"product", "--band", "red=a", "6=b"},
       "ravelin: --band: the key 6 has a second file, b: give each band a key of its own"},
      {{"product", "--map", "A=B"}, "ravelin: --map: 'B' is no name of the table"},
      {{"product", "-o", "product"},
       "ravelin: product: would be written into itself: give another -o OUT"},
      {{"product", "./product/"},
       "ravelin: ./product/: would be written into product-ravelin as product is: give each a call "
       "of its own"},
      {{"/"}, "ravelin: /: has no name to call the output after: give -o OUT"},
  };
  for (const WrongUse& wrong : cases) {
    SmallProduct product;
    const CommandResult result = product.Run(wrong.arguments);
    EXPECT_EQ(result.exitCode, 2) << wrong.message;
    EXPECT_THAT(result.err, testing::StartsWith(wrong.message));
    EXPECT_THAT(result.err, testing::EndsWith("; see ravelin scene --help\n"));
    EXPECT_THAT(product.Folder().Names(), ElementsAre("product"));
  }
}

std::string TerminalOutputOf(const SmallProduct& product,
                             const std::vector<std::string>& arguments) {
  int terminal = -1;
  int side = -1;
  if (openpty(&terminal, &side, nullptr, nullptr, nullptr) != 0) return "no terminal";
  product.Run(arguments, [side] { dup2(side, STDERR_FILENO); });
  close(side);
  std::string shown;
  char part[4096];
  for (ssize_t got = read(terminal, part, sizeof(part)); got > 0;
       got = read(terminal, part, sizeof(part))) {
    shown.append(part, static_cast<std::size_t>(got));
  }
  close(terminal);
  return shown;
}

TEST(SceneCommand, ShowsProgressOnATerminalUnlessItIsToBeQuiet) {
  SmallProduct product;
  const std::string shown = TerminalOutputOf(product, {"product"});
  if (shown == "no terminal") GTEST_SKIP() << "There are no terminals to open here";
  EXPECT_THAT(shown, HasSubstr("100 %"));
  EXPECT_THAT(TerminalOutputOf(product, {"product", "--quiet"}), Not(HasSubstr("%")));
}

}  // namespace
