#include "host/shapefile/ShapeCompanions.h"

#include <shapefil.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <map>
#include <memory>
#include <new>
#include <utility>

#include "Kv/Stream.h"
#include "host/HostError.h"

namespace ravelin {
namespace {

/// A header and the place of one record. Shapelib makes an index of anything.
constexpr std::size_t kIndexBytes = 108;

// Shapelib reads and writes here instead of on the disk, so that its files can appear together with
// the main file, or none of them. Its hooks are C functions without a context: the files of the
// thread's call are found through a pointer. No exception may pass through it.
class MemoryFiles {
 public:
  MemoryFiles() { current = this; }
  MemoryFiles(const MemoryFiles&) = delete;
  MemoryFiles& operator=(const MemoryFiles&) = delete;
  ~MemoryFiles() { current = nullptr; }

  std::map<std::string, TKvMemoryStream> files;
  std::string error;
  bool full = false;  ///< a write fell short, for want of memory

  static SAHooks Hooks() {
    SAHooks hooks = {};
    hooks.FOpen = Open;
    hooks.FRead = Read;
    hooks.FWrite = Write;
    hooks.FSeek = Seek;
    hooks.FTell = [](SAFile file) -> SAOffset { return Stream(file)->GetPos(); };
    hooks.FFlush = [](SAFile) { return 0; };
    hooks.FClose = [](SAFile) { return 0; };
    hooks.Remove = [](const char*) { return 0; };
    hooks.Error = KeepError;
    hooks.Atof = [](const char* text) { return std::strtod(text, nullptr); };
    return hooks;
  }

 private:
  static TKvMemoryStream* Stream(SAFile file) { return reinterpret_cast<TKvMemoryStream*>(file); }

  /// Modes that begin with 'w' empty the file, the others want one.
  static SAFile Open(const char* name, const char* access) {
    try {
      auto& files = current->files;
      if (access[0] == 'w') {
        files.erase(name);
      } else if (files.count(name) == 0) {
        return nullptr;
      }
      TKvMemoryStream& stream = files[name];
      stream.SetPos(0);
      return reinterpret_cast<SAFile>(&stream);
    } catch (const std::bad_alloc&) {
      return nullptr;
    }
  }

  /// Shapelib looks at all that it asked for, also when it got less.
  static SAOffset Read(void* to, SAOffset size, SAOffset count, SAFile file) {
    std::memset(to, 0, size * count);
    return size == 0 ? 0 : Stream(file)->Read(to, size * count) / size;
  }

  static SAOffset Write(void* from, SAOffset size, SAOffset count, SAFile file) {
    const SAOffset written = Stream(file)->Write(from, size * count);
    if (written < size * count) current->full = true;
    return size == 0 ? 0 : written / size;
  }

  static SAOffset Seek(SAFile file, SAOffset offset, int whence) {
    TKvMemoryStream* const stream = Stream(file);
    SAOffset base = 0;
    if (whence == SEEK_CUR) base = stream->GetPos();
    if (whence == SEEK_END) base = stream->getSize();
    return stream->SetPos(base + offset) ? 0 : 1;
  }

  static void KeepError(const char* message) {
    try {
      current->error = message;
    } catch (const std::bad_alloc&) {
      current->error.clear();
    }
  }

  static thread_local MemoryFiles* current;
};

thread_local MemoryFiles* MemoryFiles::current = nullptr;

using Attributes = std::unique_ptr<DBFInfo, decltype(&DBFClose)>;

bool WriteAttributes(const char* name, SAHooks* hooks) {
  const Attributes attributes(DBFCreateLL(name, nullptr, hooks), &DBFClose);
  if (attributes == nullptr) return false;
  const int field = DBFAddField(attributes.get(), "ID", FTInteger, 9, 0);
  return field >= 0 && DBFWriteIntegerAttribute(attributes.get(), 0, field, 1) != 0;
}

}  // namespace

ShapeCompanions MakeShapeCompanions(const std::string& mainFile, const std::string& name) {
  MemoryFiles memory;
  memory.files.emplace("a.shp", mainFile);
  SAHooks hooks = MemoryFiles::Hooks();
  const bool made = SHPRestoreSHX("a.shp", "rb", &hooks) != 0 && WriteAttributes("a.dbf", &hooks);
  // Shapelib looks at the result of few writes.
  if (memory.full) throw std::bad_alloc();
  ShapeCompanions companions = {memory.files["a.shx"].Bytes(), memory.files["a.dbf"].Bytes()};
  if (!made || companions.index.size() != kIndexBytes) {
    throw HostError(name, "has no index or attributes that can be made: " + memory.error,
                    "check the points, or give fewer");
  }
  return companions;
}

}  // namespace ravelin
