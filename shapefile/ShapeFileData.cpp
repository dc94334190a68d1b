#include "Kv/VarA.h"
#include "SatCommonUtils/Shapefile.h"

namespace SatCommonUtils {
namespace {

using TStream = var_a_legacy::var_a<TKvStream*>;

/// Throws when the file cannot be opened.
TStream OpenFile(const std::string& path, kvOpenMode mode) {
  return TStream(new TKvFileStream(TKvPath(path), mode, kvShareAll));
}

bool ReadHeader(TKvStream* stream, TShapeFileHeader* header) {
  return stream->Read(header, sizeof *header) == sizeof *header;
}

}  // namespace

TShapeFileData::TShapeFileData() = default;
TShapeFileData::~TShapeFileData() = default;

bool TShapeFileData::Initialize(TKvStream* stream) {
  Reset();
  if (stream == nullptr) return false;
  TShapeFileHeader header;
  if (ReadHeader(stream, &header) && !info.Setup(header)) Reset();
  return info;
}

bool TShapeFileData::Write(TKvStream*) const {
  return false;
}

void TShapeFileData::Reset() {
  info.Reset();
}

TShapeFileData::operator bool() const {
  return info;
}

bool TShapeFileData::InitializeFromFile(const std::string& path) {
  Reset();
  try {
    const TStream stream = OpenFile(path, kvOpenRead);
    if (!Initialize(stream.get())) Reset();
  } catch (...) {
    Reset();
  }
  return *this;
}

bool TShapeFileData::WriteToFile(const std::string& path) const {
  if (!*this) return false;
  try {
    const TStream stream = OpenFile(path, kvOpenWrite);
    return Write(stream.get());
  } catch (...) {
    return false;
  }
}

TShapeFileType CheckShapeFile(TKvStream* stream) {
  TShapeFileHeader header;
  if (stream == nullptr || !ReadHeader(stream, &header) || !header) return sftInvalid;
  return IntToShapeFileType(header.shapeType);
}

TShapeFileType CheckShapeFile(const std::string& path) {
  try {
    const TStream stream = OpenFile(path, kvOpenRead);
    return CheckShapeFile(stream.get());
  } catch (...) {
    return sftInvalid;
  }
}

}  // namespace SatCommonUtils
