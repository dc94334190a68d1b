// The command on products and disks that are broken: a clear error, the right exit code, and no
// file but a whole log.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include "host/scene/support/SmallProduct.h"

namespace {

using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;

std::set<std::string> NamesIn(const SmallProduct& product, const std::string& folder) {
  std::set<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(product.Folder() / folder)) {
    names.insert(entry.path().filename().string());
  }
  return names;
}

/// Runs the product, which must fail, and leave the log alone, with the error at its end.
std::string FailureOf(const SmallProduct& product, std::vector<std::string> more = {}) {
  std::vector<std::string> arguments = {"product", "-o", "out"};
  arguments.insert(arguments.end(), more.begin(), more.end());
  const CommandResult result = product.Run(arguments);
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_THAT(NamesIn(product, "out"), ElementsAre("ravelin.log"));
  EXPECT_THAT(result.err, testing::StartsWith("ravelin: "));
  EXPECT_THAT(product.Folder().Read("out/ravelin.log"), EndsWith("! " + result.err.substr(9)));
  EXPECT_THAT(result.out, EndsWith("out/ravelin.log\n"));
  return result.err;
}

TEST(BrokenProduct, WithoutALabel) {
  SmallProduct product;
  product.Remove("small.lbl");
  EXPECT_THAT(FailureOf(product), HasSubstr("product: has no label"));
}

TEST(BrokenProduct, WithTwoLabels) {
  SmallProduct product;
  product.Write("A_MTL.TXT", "");
  EXPECT_THAT(FailureOf(product),
              HasSubstr("product: has several labels: A_MTL.TXT, small.lbl; choose one with"));
}

TEST(BrokenProduct, WithALabelThatIsNamedAndMissing) {
  SmallProduct product;
  EXPECT_THAT(FailureOf(product, {"--label", "x.lbl"}), HasSubstr("product/x.lbl: no such file"));
}

TEST(BrokenProduct, WithALabelThatCannotBeConverted) {
  SmallProduct product;
  product.Write("small.lbl", "GROUP = A\nEND_GROUP = B\n");
  EXPECT_THAT(FailureOf(product), HasSubstr("small.lbl: the conversion stopped at line 2"));
}

TEST(BrokenProduct, WithALabelOfNoDialect) {
  SmallProduct product;
  product.Write("small.lbl", "LINES = 3\n");
  EXPECT_THAT(FailureOf(product), HasSubstr("give --dialect pvl or --dialect nasa"));
}

TEST(BrokenProduct, WithoutABandFile) {
  SmallProduct product;
  product.Remove("green.raw");
  EXPECT_THAT(FailureOf(product), HasSubstr("product/green.raw: no such file; check "
                                            "SMALL/BAND_2/FILE_NAME of the label or give --band"));
}

TEST(BrokenProduct, WithAShortBandFile) {
  SmallProduct product;
  product.Write("green.raw", "short");
  EXPECT_THAT(FailureOf(product),
              HasSubstr("product/green.raw: holds 5 bytes, but 4 x 3 pixels of 2 bytes make 24; "
                        "check LINES and LINE_SAMPLES of the label, or give --size"));
}

TEST(BrokenProduct, WithALongBandFile) {
  SmallProduct product;
  product.Write("green.raw", std::string(25, 'x'));
  EXPECT_THAT(FailureOf(product), HasSubstr("product/green.raw: holds 25 bytes"));
}

TEST(BrokenProduct, WithAFolderForABandFile) {
  SmallProduct product;
  product.Remove("green.raw");
  product.Folder().MakeFolder("product/green.raw");
  EXPECT_THAT(FailureOf(product), HasSubstr("product/green.raw: is a folder"));
}

TEST(BrokenProduct, WithRowsThatAreTooLong) {
  SmallProduct product;
  product.Folder().WriteSparse("product/wide.raw", 140000000ul * 2 * 2);
  EXPECT_THAT(FailureOf(product, {"--size", "140000000x2", "--band", "1=wide.raw:little"}),
              HasSubstr("product: a row of 140000000 pixels and 1 bands is longer than 134217728 "
                        "samples; choose fewer bands with --band"));
}

TEST(BrokenProduct, WithAnUnknownOrder) {
  SmallProduct product;
  EXPECT_THAT(FailureOf(product, {"--band", "1=green.raw"}),
              HasSubstr("does not tell the byte order of green.raw: SAMPLE_TYPE is missing; give "
                        "--order big or --order little"));
}

TEST(BrokenProduct, WithABandFileOutsideTheFolder) {
  SmallProduct product;
  product.Folder().Write("secret.raw", LittleBytes(product.green));
  EXPECT_THAT(FailureOf(product, {"--band", "1=../secret.raw:little"}),
              HasSubstr("../secret.raw: leads outside the folder product"));
  product.Remove("green.raw");
  std::filesystem::create_symlink("../secret.raw", product.Folder() / "product/green.raw");
  EXPECT_THAT(FailureOf(product), HasSubstr("green.raw: leads outside the folder product"));
}

TEST(BrokenProduct, WithALabelThatIsALinkToOutside) {
  SmallProduct product;
  product.Folder().Write("secret.lbl", product.Folder().Read("product/small.lbl"));
  product.Remove("small.lbl");
  std::filesystem::create_symlink("../secret.lbl", product.Folder() / "product/small.lbl");
  EXPECT_THAT(FailureOf(product), HasSubstr("small.lbl: leads outside the folder product"));
  EXPECT_EQ(product.Run({"product", "--label", "small.lbl", "-o", "named"}).exitCode, 0);
}

TEST(BrokenProduct, WithABandFileThatMustNotBeRead) {
  if (geteuid() == 0) GTEST_SKIP() << "the super-user may read everything";
  SmallProduct product;
  chmod((product.Folder() / "product/green.raw").c_str(), 0);
  EXPECT_THAT(FailureOf(product), HasSubstr("product/green.raw: cannot be opened"));
}

TEST(BrokenProduct, WithALabelThatMustNotBeRead) {
  if (geteuid() == 0) GTEST_SKIP() << "the super-user may read everything";
  SmallProduct product;
  chmod((product.Folder() / "product/small.lbl").c_str(), 0);
  EXPECT_THAT(FailureOf(product), HasSubstr("product/small.lbl: cannot be opened"));
}

TEST(BrokenProduct, ThatIsNoFolder) {
  SmallProduct product;
  const CommandResult missing = product.Run({"gone", "-o", "out"});
  EXPECT_EQ(missing.exitCode, 1);
  EXPECT_THAT(missing.err, HasSubstr("ravelin: gone: no such folder"));
  const CommandResult file = product.Run({"product/small.lbl", "-o", "out"});
  EXPECT_EQ(file.exitCode, 1);
  EXPECT_THAT(file.err, HasSubstr("product/small.lbl: is not a folder"));
  EXPECT_FALSE(product.Folder().Has("out"));
}

TEST(BrokenOutput, KeepsWhatWasThere) {
  SmallProduct product;
  EXPECT_EQ(product.Run({"product", "-o", "out"}).exitCode, 0);
  const std::string former = product.Folder().Read("out/quicklook.png");
  product.Write("green.raw", "short");
  EXPECT_EQ(product.Run({"product", "-o", "out"}).exitCode, 1);
  EXPECT_EQ(product.Folder().Read("out/quicklook.png"), former);
  EXPECT_THAT(product.Folder().Read("out/ravelin.log"), HasSubstr("! product/green.raw"));
}

TEST(BrokenOutput, IsAFile) {
  SmallProduct product;
  product.Folder().Write("out", "mine");
  const CommandResult result = product.Run({"product", "-o", "out"});
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_THAT(result.err, HasSubstr("ravelin: out: cannot make this folder"));
  EXPECT_EQ(product.Folder().Read("out"), "mine");
}

TEST(BrokenOutput, MustNotBeWritten) {
  if (geteuid() == 0) GTEST_SKIP() << "the super-user may write everywhere";
  SmallProduct product;
  product.Folder().MakeFolder("out");
  chmod((product.Folder() / "out").c_str(), 0500);
  const CommandResult result = product.Run({"product", "-o", "out"});
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_THAT(result.err, HasSubstr("ravelin: out/quicklook.png: cannot be written"));
  EXPECT_THAT(NamesIn(product, "out"), IsEmpty());
}

// A folder in the place of the last file makes the writing fail for every user.
TEST(BrokenOutput, HasAFolderInTheWay) {
  SmallProduct product;
  std::filesystem::create_directories(product.Folder() / "out/scene.xml");
  const CommandResult result = product.Run({"product", "-o", "out"});
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_THAT(result.err, HasSubstr("ravelin: out/scene.xml: is a folder"));
  EXPECT_THAT(NamesIn(product, "out"), ElementsAre("ravelin.log", "scene.xml"));
}

TEST(BrokenOutput, HasAFolderInTheWayOfTheLog) {
  SmallProduct product;
  std::filesystem::create_directories(product.Folder() / "out/ravelin.log");
  const CommandResult result = product.Run({"product", "-o", "out"});
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_THAT(result.err, HasSubstr("ravelin: out/ravelin.log: is a folder"));
  EXPECT_THAT(NamesIn(product, "out"), ElementsAre("ravelin.log"));
}

TEST(BrokenOutput, LiesOnAFullDisk) {
  SmallProduct product;
  product.Folder().WriteSparse("product/large.raw", 2000000);
  const auto limitFiles = [] {
    const struct rlimit limit = {500000, 500000};
    setrlimit(RLIMIT_FSIZE, &limit);
  };
  const CommandResult result = product.Run({"product", "-o", "out", "--pixels", "--size",
                                            "1000x1000", "--order", "big", "--band", "1=large.raw"},
                                           limitFiles);
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_EQ(
      result.err,
      "ravelin: out/pixels.bip: cannot be written: File too large; raise the limit on the size "
      "of files or write to another disk\n");
  EXPECT_THAT(NamesIn(product, "out"), ElementsAre("ravelin.log"));
  EXPECT_THAT(product.Folder().Read("out/ravelin.log"), EndsWith("! " + result.err.substr(9)));
}

TEST(BrokenOutput, LiesOnADiskWithoutAnySpace) {
  SmallProduct product;
  const auto limitFiles = [] {
    const struct rlimit limit = {0, 0};
    setrlimit(RLIMIT_FSIZE, &limit);
  };
  const CommandResult result = product.Run({"product", "-o", "out", "--quiet"}, limitFiles);
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_THAT(NamesIn(product, "out"), IsEmpty());
}

class Interrupted : public testing::TestWithParam<int> {};

TEST_P(Interrupted, LeavesNoFile) {
  SmallProduct product;
  product.Folder().WriteSparse("product/large.raw", 40000ul * 40000 * 2);
  RunningCommand command({"scene", "product", "-o", "out", "--pixels", "--size", "40000x40000",
                          "--order", "big", "--band", "1=large.raw"},
                         product.Folder().Path());
  const std::string out = product.Folder() / "out";
  while (!std::filesystem::exists(out) || std::filesystem::is_empty(out)) usleep(1000);
  kill(command.Process(), GetParam());
  EXPECT_EQ(command.Wait().signalNumber, GetParam());
  EXPECT_THAT(NamesIn(product, "out"), IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(Signals, Interrupted, testing::Values(SIGINT, SIGTERM, SIGHUP));

}  // namespace
