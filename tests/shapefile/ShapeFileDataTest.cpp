#include <gtest/gtest.h>

#include <cfloat>
#include <filesystem>
#include <iterator>
#include <stdexcept>
#include <string>

#include "SatCommonUtils/Shapefile.h"
#include "shapefile/ShapeFiles.h"
#include "shapefile/Streams.h"
#include "support/TempFolder.h"

namespace {

using namespace SatCommonUtils;
using namespace shape_test;

std::string FileOfType(int type) {
  TModelFile file;
  file.type = type;
  return file.Bytes();
}

void ExpectReset(const TShapeFileData& data) {
  EXPECT_FALSE(data);
  EXPECT_EQ(data.info.fileLength, 0u);
  EXPECT_EQ(data.info.shapeType, -1);
  EXPECT_EQ(data.info.xMin, DBL_MAX);
}

TShapeFileData Loaded() {
  TShapeFileData data;
  TKvMemoryStream stream(FileOfType(5));
  EXPECT_TRUE(data.Initialize(&stream));
  return data;
}

/// Counts the calls that the base class makes, and answers them as it is told.
class TRecordingData : public TShapeFileData {
 public:
  bool Initialize(TKvStream* stream) override {
    ++initialized;
    if (throws) throw std::runtime_error("no");
    return TShapeFileData::Initialize(stream) && result;
  }
  bool Write(TKvStream* stream) const override {
    if (throws) throw std::runtime_error("no");
    return stream->Write("written", 7) == 7 && result;
  }
  void Reset() override {
    ++resets;
    TShapeFileData::Reset();
  }
  operator bool() const override { return hasContent && TShapeFileData::operator bool(); }

  bool result = true;
  bool hasContent = true;
  bool throws = false;
  int initialized = 0;
  int resets = 0;
};

long OpenFiles() {
  return std::distance(std::filesystem::directory_iterator("/proc/self/fd"), {});
}

TEST(ShapeFileDataTest, ANewOneIsInvalid) {
  ExpectReset(TShapeFileData());
}

TEST(ShapeFileDataTest, InitializeReadsTheHeader) {
  TShapeFileData data;
  TLimitedStream stream(FileOf({kSquare}).Bytes());
  ASSERT_TRUE(data.Initialize(&stream));
  EXPECT_TRUE(data);
  EXPECT_EQ(data.info.fileLength, 236u);
  EXPECT_EQ(data.info.shapeType, 5);
  EXPECT_EQ(data.info.xMax, 10);
  EXPECT_EQ(stream.reads, 1);
  EXPECT_EQ(stream.GetPos(), 100u);
}

TEST(ShapeFileDataTest, InitializeReadsFromWhereTheStreamStands) {
  TShapeFileData data;
  TKvMemoryStream stream("before " + FileOfType(5));
  stream.SetPos(7);
  EXPECT_TRUE(data.Initialize(&stream));
}

TEST(ShapeFileDataTest, InitializeWithoutAStreamResets) {
  TShapeFileData data = Loaded();
  EXPECT_FALSE(data.Initialize(nullptr));
  ExpectReset(data);
}

TEST(ShapeFileDataTest, InitializeOfFewerThanAHundredBytesResets) {
  const std::string bytes = FileOfType(5);
  for (unsigned long size = 0; size < 100; ++size) {
    TShapeFileData data = Loaded();
    TKvMemoryStream stream(bytes.substr(0, size));
    EXPECT_FALSE(data.Initialize(&stream));
    ExpectReset(data);
  }
}

TEST(ShapeFileDataTest, InitializeWithARefusedHeaderResets) {
  for (const int type : {2, 25}) {
    TShapeFileData data = Loaded();
    TKvMemoryStream stream(FileOfType(type));
    EXPECT_FALSE(data.Initialize(&stream));
    ExpectReset(data);
  }
}

TEST(ShapeFileDataTest, WhatTheStreamThrowsPasses) {
  TShapeFileData data = Loaded();
  TLimitedStream stream(FileOfType(5));
  stream.most = 99;
  stream.throws = true;
  EXPECT_THROW(data.Initialize(&stream), std::runtime_error);
  ExpectReset(data);
}

TEST(ShapeFileDataTest, WriteGivesFalse) {
  TLimitedStream stream;
  EXPECT_FALSE(Loaded().Write(&stream));
  EXPECT_EQ(stream.writes, 0);
  EXPECT_FALSE(Loaded().Write(nullptr));
}

TEST(ShapeFileDataTest, ResetForgetsTheHeader) {
  TShapeFileData data = Loaded();
  data.Reset();
  ExpectReset(data);
}

TEST(ShapeFileDataTest, InitializeFromFileReadsTheFile) {
  const TempFolder folder;
  TShapeFileData data;
  EXPECT_TRUE(data.InitializeFromFile(folder.Write("a.shp", FileOfType(15))));
  EXPECT_EQ(data.info.shapeType, 15);
}

TEST(ShapeFileDataTest, InitializeFromFileOfARefusedHeaderResets) {
  const TempFolder folder;
  TShapeFileData data = Loaded();
  EXPECT_FALSE(data.InitializeFromFile(folder.Write("a.shp", FileOfType(25))));
  ExpectReset(data);
}

TEST(ShapeFileDataTest, InitializeFromAFileThatCannotBeOpenedResets) {
  const TempFolder folder;
  for (const std::string& path :
       {folder / "missing", folder.Path(), std::string(), std::string("a\0b", 3)}) {
    TShapeFileData data = Loaded();
    EXPECT_FALSE(data.InitializeFromFile(path));
    ExpectReset(data);
  }
}

TEST(ShapeFileDataTest, InitializeFromFileCallsWhatASubclassOverrides) {
  const TempFolder folder;
  TRecordingData data;
  EXPECT_TRUE(data.InitializeFromFile(folder.Write("a.shp", FileOfType(5))));
  EXPECT_EQ(data.initialized, 1);
}

TEST(ShapeFileDataTest, InitializeFromFileResetsWhenASubclassFails) {
  const TempFolder folder;
  TRecordingData data;
  data.result = false;
  EXPECT_FALSE(data.InitializeFromFile(folder.Write("a.shp", FileOfType(5))));
  ExpectReset(data);
  EXPECT_EQ(data.resets, 3);
}

TEST(ShapeFileDataTest, InitializeFromFileGivesTheValidityThatASubclassTells) {
  const TempFolder folder;
  TRecordingData data;
  data.hasContent = false;
  EXPECT_FALSE(data.InitializeFromFile(folder.Write("a.shp", FileOfType(5))));
  EXPECT_TRUE(data.info);
}

TEST(ShapeFileDataTest, InitializeFromFileCatchesWhatASubclassThrows) {
  const TempFolder folder;
  TRecordingData data;
  data.throws = true;
  EXPECT_FALSE(data.InitializeFromFile(folder.Write("a.shp", FileOfType(5))));
  ExpectReset(data);
}

TEST(ShapeFileDataTest, WriteToFileOfAnInvalidOneLeavesTheFileAlone) {
  const TempFolder folder;
  const std::string path = folder.Write("a.shp", "as it was");
  EXPECT_FALSE(TRecordingData().WriteToFile(path));
  EXPECT_EQ(folder.Read("a.shp"), "as it was");
}

TEST(ShapeFileDataTest, WriteToFileOfASubclassWithoutContentLeavesTheFileAlone) {
  const TempFolder folder;
  TRecordingData data;
  ASSERT_TRUE(data.InitializeFromFile(folder.Write("in", FileOfType(5))));
  data.hasContent = false;
  EXPECT_FALSE(data.WriteToFile(folder.Write("a.shp", "as it was")));
  EXPECT_EQ(folder.Read("a.shp"), "as it was");
}

TEST(ShapeFileDataTest, FilesAreClosedHoweverTheirReadingAndWritingEnds) {
  const TempFolder folder;
  const std::string path = folder.Write("a.shp", FileOfType(5));
  TRecordingData data;
  ASSERT_TRUE(data.InitializeFromFile(path));
  TRecordingData failing = data;
  failing.throws = true;
  const long open = OpenFiles();
  EXPECT_TRUE(data.InitializeFromFile(path));
  EXPECT_EQ(OpenFiles(), open);
  EXPECT_TRUE(data.WriteToFile(folder / "out"));
  EXPECT_EQ(OpenFiles(), open);
  EXPECT_FALSE(failing.WriteToFile(folder / "out"));
  EXPECT_EQ(OpenFiles(), open);
  EXPECT_FALSE(failing.InitializeFromFile(path));
  EXPECT_EQ(OpenFiles(), open);
  EXPECT_EQ(CheckShapeFile(path), 5);
  EXPECT_EQ(OpenFiles(), open);
}

class WriteToFileTest : public testing::Test {
 protected:
  void SetUp() override {
    ASSERT_TRUE(data_.InitializeFromFile(folder_.Write("in", FileOfType(5))));
  }

  const TempFolder folder_;
  TRecordingData data_;
};

TEST_F(WriteToFileTest, ReplacesTheFileByWhatASubclassWrites) {
  const std::string path = folder_.Write("a.shp", "a longer text than the new one");
  EXPECT_TRUE(data_.WriteToFile(path));
  EXPECT_EQ(folder_.Read("a.shp"), "written");
}

TEST_F(WriteToFileTest, GivesTheResultOfWrite) {
  data_.result = false;
  EXPECT_FALSE(data_.WriteToFile(folder_ / "a.shp"));
}

TEST_F(WriteToFileTest, CatchesWhatASubclassThrows) {
  data_.throws = true;
  EXPECT_FALSE(data_.WriteToFile(folder_ / "a.shp"));
}

TEST_F(WriteToFileTest, GivesFalseWhenTheFileCannotBeOpened) {
  EXPECT_FALSE(data_.WriteToFile(folder_ / "no/such/folder"));
  EXPECT_FALSE(data_.WriteToFile(folder_.Path()));
}

TEST_F(WriteToFileTest, GivesFalseInTheBaseClass) {
  TShapeFileData base;
  base.info = data_.info;
  EXPECT_FALSE(base.WriteToFile(folder_ / "a.shp"));
}

TEST_F(WriteToFileTest, GivesFalseOnAFullDisk) {
  EXPECT_FALSE(data_.WriteToFile("/dev/full"));
}

TEST(CheckShapeFileTest, TellsTheTypeOfAStream) {
  for (const int type : {0, 1, 3, 5, 8, 11, 13, 15, 18, 21, 23, 25, 28, 31}) {
    TKvMemoryStream stream(FileOfType(type));
    EXPECT_EQ(CheckShapeFile(&stream), type);
  }
}

TEST(CheckShapeFileTest, DoesNotLookAtTheLength) {
  TModelFile file;
  file.lengthInWords = 0;
  TKvMemoryStream stream(file.Bytes());
  EXPECT_EQ(CheckShapeFile(&stream), 5);
}

TEST(CheckShapeFileTest, ReadsFromWhereTheStreamStands) {
  TKvMemoryStream stream("before " + FileOfType(5));
  EXPECT_EQ(CheckShapeFile(&stream), -1);
  stream.SetPos(7);
  EXPECT_EQ(CheckShapeFile(&stream), 5);
}

TEST(CheckShapeFileTest, AHundredBytesAreEnoughAndFewerAreNot) {
  for (unsigned long size = 0; size <= 100; ++size) {
    TKvMemoryStream stream(FileOfType(5).substr(0, size));
    EXPECT_EQ(CheckShapeFile(&stream), size == 100 ? 5 : -1) << size;
  }
}

TEST(CheckShapeFileTest, AnInvalidHeaderAndANullStreamHaveNoType) {
  TKvMemoryStream stream(FileOfType(2));
  EXPECT_EQ(CheckShapeFile(&stream), -1);
  EXPECT_EQ(CheckShapeFile(static_cast<TKvStream*>(nullptr)), -1);
}

TEST(CheckShapeFileTest, TellsTheTypeOfAFile) {
  const TempFolder folder;
  EXPECT_EQ(CheckShapeFile(folder.Write("a.shp", FileOfType(25))), 25);
  EXPECT_EQ(CheckShapeFile(folder.Write("b.shp", FileOfType(2))), -1);
}

TEST(CheckShapeFileTest, AFileThatCannotBeOpenedHasNoType) {
  const TempFolder folder;
  EXPECT_EQ(CheckShapeFile(folder / "missing"), -1);
  EXPECT_EQ(CheckShapeFile(folder.Path()), -1);
}

}  // namespace
