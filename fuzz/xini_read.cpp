// Reads any bytes as an XML-ini document, walks through all of it, writes what was found and reads
// that back: the second document must hold the same.
#include <string>
#include <vector>

#include "Kv/XIni.h"
#include "fuzz/FuzzInput.h"

namespace {

using StreamPointer = var_a_legacy::var_a<TKvStream*>;

/// Section to section through a document, with a hand on where each stands.
struct Place {
  unsigned long section;
  unsigned long next;
};

// The reader gives no names, so that items are written unnamed.
void WriteValue(const TKvXIniReader& reader, unsigned long item, TKvXIniWriter* writer) {
  try {
    Require(writer->WriteS<std::string>("", reader.ReadE<std::string>(item)), "a value is written");
  } catch (const TKvError&) {
    Require(writer->WriteS<int>("", 0), "a number is written");
  }
}

bool Enter(TKvXIniReader* reader, unsigned long item, unsigned long* section) {
  try {
    *section = reader->EnterItem(item);
    return true;
  } catch (const TKvError&) {
    return false;
  }
}

void Copy(TKvXIniReader* reader, TKvXIniWriter* writer) {
  std::vector<Place> places = {{0, 0}};
  std::vector<unsigned long> written;
  while (!places.empty()) {
    const unsigned long item = places.back().next++;
    if (!reader->HasItem(item)) {
      reader->LeaveSection(places.back().section);
      places.pop_back();
      if (places.empty()) return;
      Require(writer->EndSection(written.back()), "the innermost section ends");
      written.pop_back();
      continue;
    }
    WriteValue(*reader, item, writer);
    unsigned long section = 0;
    if (!Enter(reader, item, &section)) continue;
    places.push_back({section, 0});
    written.push_back(writer->BeginSectionSE("s"));
  }
}

// The items and sections of one document as the other has them.
void Compare(const TKvXIniReader& first, const TKvXIniReader& second) {
  for (unsigned long i = 0, k = 0; first.HasItem(i); ++i, ++k) {
    try {
      Require(first.ReadE<std::string>(i) == second.ReadE<std::string>(k),
              "a value is read back as it was written");
    } catch (const TKvError&) {
      Require(second.HasItem(k), "every item is there");
    }
    Require(second.FindF("s", k) != k, "an unnamed item has no name");
    if (second.FindF("s", k + 1) == k + 1) ++k;
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const StreamPointer input(
      new TKvMemoryStream(std::string(reinterpret_cast<const char*>(data), size)));
  try {
    TKvXIniReader reader(input);
    const StreamPointer output(new TKvMemoryStream);
    TKvXIniStreamWriter writer(output, 0, TKvXIniStreamWriter::htDocument);
    Copy(&reader, &writer);
    Require(writer.Close(), "memory takes every byte");
    Compare(reader, TKvXIniReader(output));
  } catch (const TKvError&) {
    return 0;
  }
  return 0;
}
