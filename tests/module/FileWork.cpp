// A program that does one piece of work on files, twice with the same objects, and prints what came
// of each: the whole result, or "failed". FileFaultsTest.cpp lets calls of the system fail under
// it.
#include <sys/syscall.h>
#include <unistd.h>

#include <functional>
#include <map>
#include <memory>
#include <string>

#include "Kv/Kv.h"
#include "SatCommonUtils/Log.h"
#include "SatCommonUtils/Raster.h"
#include "SatCommonUtils/Shapefile.h"
#include "SatCommonUtils/Text.h"

namespace {

using namespace SatCommonUtils;
using Work = std::function<std::string()>;

std::string Result(bool good, const std::string& result) {
  return good ? result : "failed";
}

Work ReadPieces() {
  return [stream = std::make_shared<TKvFileStream>()] {
    if (!stream->Open(TKvPath("in"), kvOpenRead, kvShareAll)) return Result(false, "");
    std::string bytes(stream->getSize(), '.');
    unsigned long got = 0;
    while (!stream->Eof()) got += stream->Read(bytes.data() + got, 3000);
    return Result(got == bytes.size() && stream->GetPos() == got, bytes);
  };
}

Work ReadLines() {
  return [stream = std::make_shared<TKvFileStream>()] {
    if (!stream->Open(TKvPath("in"), kvOpenRead, kvShareAll)) return Result(false, "");
    std::string lines;
    unsigned long consumed = 0;
    for (char line[100]; !stream->Eof();) {
      consumed += stream->ReadLine(line, sizeof line);
      lines.append(line).append("|");
    }
    return Result(consumed == stream->getSize(), lines);
  };
}

Work WritePieces() {
  return [stream = std::make_shared<TKvFileStream>()] {
    if (!stream->Open(TKvPath("out"), kvOpenWrite, kvShareAll)) return Result(false, "");
    unsigned long written = 0;
    for (const char byte : {'a', 'b', 'c'}) {
      const std::string piece(5000, byte);
      written += stream->Write(piece.data(), piece.size());
    }
    const bool told = stream->GetPos() == written && stream->getSize() == written;
    return told ? Result(written == 15000, "") : "a count that is not the file's";
  };
}

Work SaveLog() {
  TSatLog log;
  log.AppendMessage(TSatLog::mtInfo, "what was done\n");
  log.AppendMessage(TSatLog::mtError, "what failed\n");
  return [log] { return Result(log.SaveToFile("out"), ""); };
}

Work WritePolygon() {
  const auto polygon = std::make_shared<TShapeFilePolygonData>();
  polygon->Setup({{{0, 0}, {0, 1}, {1, 1}, {1, 0}}, {{2, 2}, {2, 3}, {3, 3}}});
  return [polygon] { return Result(polygon->WriteToFile("out"), ""); };
}

template <class Data>
Work ReadShape() {
  return [data = std::make_shared<Data>()] {
    const bool good = data->InitializeFromFile("in.shp");
    if (good != static_cast<bool>(data->info)) return std::string("a header that is not read");
    return Result(good, std::to_string(data->info.fileLength));
  };
}

std::string TypeOfShape() {
  const TShapeFileType type = CheckShapeFile("in.shp");
  return Result(type != sftInvalid, std::to_string(type));
}

Work ReadPixels() {
  const auto band = std::make_shared<TRawWordDibData>();
  return [band] {
    if (band->stream == nullptr) {
      const auto file = new TKvFileStream;
      const var_a_legacy::var_a<TKvStream*> stream(file);
      if (!file->Open(TKvPath("in"), kvOpenRead, kvShareAll)) return Result(false, "");
      band->Setup(stream, 100, 50, TRawWordDibData::boLittleEndian);
    }
    std::string pixels(100 * 50 * 2, '.');
    const TKvDibDataOutBuffer out = {reinterpret_cast<unsigned char*>(pixels.data()), 200};
    const int result = band->GetRect(out, {{{0, 0}}, {{100, 50}}, 1}, iqNearest, 0, nullptr);
    return Result(result == kvDibWritten, pixels);
  };
}

std::string ReadItems() {
  try {
    const var_a_legacy::var_a<TKvStream*> stream(
        new TKvFileStream(TKvPath("in.xml"), kvOpenRead, kvShareAll));
    return TKvXIniReader(stream).ReadE<std::string>(0);
  } catch (const TKvError&) {
    return Result(false, "");
  }
}

std::string WriteItems() {
  try {
    const var_a_legacy::var_a<TKvStream*> stream(
        new TKvFileStream(TKvPath("out"), kvOpenWrite, kvShareAll));
    TKvXIniStreamWriter writer(stream, 0, TKvXIniStreamWriter::htDocument);
    const bool good = writer.WriteS<int>("a", 1) && writer.Flush() && writer.WriteS<int>("b", 2);
    return Result(writer.Close() && good, "");
  } catch (const TKvError&) {
    return Result(false, "");
  }
}

std::string ReadString() {
  const std::string bytes = ReadStringFromFile("in");
  return Result(!bytes.empty(), bytes);
}

std::string WriteString() {
  return Result(WriteStringToFile("out", std::string(20000, 'x')), "");
}

const std::map<std::string, Work> kWorks = {
    {"Read", ReadPieces()},
    {"ReadLine", ReadLines()},
    {"Write", WritePieces()},
    {"TKvXIniReader", ReadItems},
    {"TKvXIniStreamWriter", WriteItems},
    {"TSatLogSaveToFile", SaveLog()},
    {"TShapeFilePolygonDataWriteToFile", WritePolygon()},
    {"TShapeFilePolygonDataInitializeFromFile", ReadShape<TShapeFilePolygonData>()},
    {"TShapeFileDataInitializeFromFile", ReadShape<TShapeFileData>()},
    {"CheckShapeFile", TypeOfShape},
    {"TRawWordDibData", ReadPixels()},
    {"ReadStringFromFile", ReadString},
    {"WriteStringToFile", WriteString}};

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2 || kWorks.count(argv[1]) == 0) return 2;
  Init_KvServices();
  const Work& work = kWorks.at(argv[1]);
  const std::string first = work();
  const std::string results = first + "\n" + work();
  Deinit_KvServices();
  // Not by a call that may be the one to fail.
  const long printed = syscall(SYS_write, STDOUT_FILENO, results.data(), results.size());
  return printed == static_cast<long>(results.size()) ? 0 : 1;
}
