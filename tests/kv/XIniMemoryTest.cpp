// XML-ini and XML while allocations fail.
#include <gtest/gtest.h>

#include <cstdlib>
#include <functional>
#include <new>
#include <pugixml.hpp>
#include <string>
#include <utility>

#include "Kv/Transform2D.h"
#include "Kv/XmlItem.h"
#include "XIniTest.h"
#include "support/EveryAllocation.h"

namespace kv_test {
namespace {

// Texts that the writer must allocate for, made before allocation fails.
struct Texts {
  std::string section = "a section name that is too long for a short string";
  std::string attribute = "an_attribute_name_that_is_too_long_as_well";
  std::string item = "an item name that is too long for a short string";
  std::string value = std::string("\0", 1);
};

// True when nothing failed.
bool WriteAll(TKvXIniStreamWriter* writer, const Texts& texts) {
  bool isWritten = true;
  writer->SetAttributeMode(true);
  for (int i = 0; i < 3; ++i) {
    isWritten &= writer->BeginSectionS(texts.section) != 0;
    isWritten &= writer->WriteS<std::string>(texts.attribute, texts.value);
    isWritten &= writer->WriteS<std::string>(texts.attribute, texts.section);
    isWritten &= writer->WriteS<std::string>(texts.item, texts.value);
  }
  return writer->Close() && isWritten;
}

TEST(XIniMemory, AWriterWithoutMemoryFailsAndThrowsNothing) {
  const Texts texts;
  unsigned long failures = 0;
  bool isDone = false;
  for (unsigned long successes = 0; !isDone; ++successes) {
    ASSERT_LT(successes, 1000U);
    TKvXIniStreamWriter writer(StreamPointer(new LimitedStream(~0UL)), 0,
                               TKvXIniStreamWriter::htDocument);
    {
      const ravelin_test::FailingNew failing(successes, 1);
      isDone = WriteAll(&writer, texts);
    }
    if (isDone) break;
    ++failures;
    EXPECT_FALSE(writer.WriteS<int>("a", 1));
    EXPECT_FALSE(writer.Close());
  }
  EXPECT_GT(failures, 2U);
}

TEST(XIniMemory, AWriterNeedsNoMoreMemoryForMoreItemsAndSections) {
  auto* const stream = new TKvFileStream(TKvPath("/dev/null"), kvOpenWrite, kvShareAll);
  TKvXIniStreamWriter writer(StreamPointer(stream), 0, TKvXIniStreamWriter::htDocument);
  const std::string names[] = {"name", "odd name", ""};
  const std::string value = "what is <not> plain & longer than a string without memory of its own";
  const auto write = [&] {
    bool isWritten = true;
    for (const std::string& name : names) {
      const unsigned long section = writer.BeginSectionS(name);
      isWritten &= writer.WriteS<std::string>(name, value) && writer.WriteS<int>(name, 7);
      isWritten &= writer.WriteS<double>(name, 0.5) && writer.EndSection(section);
    }
    return isWritten;
  };
  // Once for the sections that are open together.
  EXPECT_TRUE(write());
  bool isWritten = true;
  {
    const ravelin_test::FailingNew failing(0);
    for (int i = 0; i < 10000; ++i) isWritten &= write();
  }
  EXPECT_TRUE(isWritten);
  EXPECT_TRUE(writer.Close());
}

// What the operations that throw their failures throw then.
TEST(XIniMemory, AWriterWithoutMemoryThrowsWhereItThrowsFailures) {
  const Texts texts;
  const TKv2DTransform transform(1, 2, 3, 4, 5, 6);
  using Write = std::function<void(TKvXIniStreamWriter&)>;
  const std::pair<const char*, Write> writes[] = {
      {"BeginSectionSE", [&](auto& writer) { writer.BeginSectionSE(texts.section); }},
      {"BeginSectionCompactSE", [&](auto& writer) { writer.BeginSectionCompactSE(texts.section); }},
      {"SaveE", [&](auto& writer) { transform.SaveE(&writer); }}};
  for (const auto& [name, write] : writes) {
    SCOPED_TRACE(name);
    for (unsigned long successes = 0;; ++successes) {
      const long live = ravelin_test::LiveAllocations();
      bool failed = false;
      {
        TKvXIniStreamWriter writer(StreamPointer(new LimitedStream(~0UL)), 0,
                                   TKvXIniStreamWriter::htFragment);
        std::string said;
        said.reserve(100);
        try {
          const ravelin_test::FailingNew failing(successes, 1);
          write(writer);
        } catch (const TKvError& error) {
          said = error.what();
        }
        failed = ravelin_test::AllocationFailed();
        EXPECT_EQ(said, failed ? "XML-ini: out of memory" : "");
        EXPECT_NE(writer.WriteS<int>("a", 1), failed);
        EXPECT_NE(writer.Close(), failed);
      }
      EXPECT_EQ(ravelin_test::LiveAllocations(), live);
      if (!failed) break;
    }
  }
}

/// A section of more items than are listed at once, or looked through by name, of every kind.
std::string ManyItems() {
  std::string text = "<r one='1' two='2' three='3'>";
  for (int i = 0; i < 20; ++i) text += "<n" + std::to_string(i) + ">7</n" + std::to_string(i) + ">";
  const std::string encoded(64, 'A');
  text += "<_ _name='" + encoded + "' _enc='name'>8</_>";
  text += "<v _enc='value'>" + encoded + "</v><pieces>9<!-- -->9</pieces>";
  return text + "<s><a>10</a></s><s/><last>" + std::string(100, 'x') + "</last></r>";
}

/// All that a reader tells of the section that it stands in.
std::string Told(const TKvXIniReader& reader) {
  std::string told = std::to_string(reader.GetItemCount());
  for (const char* name : {"three", "n0", "n19", "v", "s", "last", "none"}) {
    told += " " + std::to_string(reader.FindF(name, 0));
  }
  for (unsigned long i = 0; reader.HasItem(i); ++i) {
    try {
      told += " " + reader.ReadE<std::string>(i);
    } catch (const TKvError&) {
      told += " no value";
    }
  }
  return told;
}

using Reading = std::function<std::string(TKvXIniReader&)>;

/// What is read from a reader for which an allocation fails throws, and again is as ever.
void ReadsOn(const char* name, const Reading& read) {
  SCOPED_TRACE(name);
  TKvXIniReader whole(MakeStream(ManyItems()));
  const std::string expected = read(whole);
  const std::string told = Told(whole);
  for (unsigned long successes = 0;; ++successes) {
    SCOPED_TRACE(successes);
    const long live = ravelin_test::LiveAllocations();
    bool failed = false;
    {
      TKvXIniReader reader(MakeStream(ManyItems()));
      const auto value = ravelin_test::RunFailing([&] { return read(reader); }, successes, 1);
      failed = ravelin_test::AllocationFailed();
      EXPECT_EQ(value.has_value(), !failed);
      EXPECT_EQ(value.value_or(expected), expected);
      EXPECT_EQ(Told(reader), told);
      EXPECT_EQ(read(reader), expected);
    }
    EXPECT_EQ(ravelin_test::LiveAllocations(), live);
    if (testing::Test::HasFailure()) return;
    if (failed) continue;
    EXPECT_GT(successes, 0U);
    return;
  }
}

TEST(XIniMemory, AReaderThatRanOutOfMemoryReadsOn) {
  ReadsOn("HasItem", [](auto& reader) { return std::to_string(reader.HasItem(20)); });
  ReadsOn("GetItemCount", [](auto& reader) { return std::to_string(reader.GetItemCount()); });
  ReadsOn("FindF", [](auto& reader) { return std::to_string(reader.FindF("n2", 0)); });
  ReadsOn("FindF far on", [](auto& reader) { return std::to_string(reader.FindF("last", 0)); });
  ReadsOn("FindFE", [](auto& reader) { return std::to_string(reader.FindFE("last", 1)); });
  ReadsOn("ReadE of an int",
          [](auto& reader) { return std::to_string(reader.template ReadE<int>(5)); });
  ReadsOn("ReadE of a double",
          [](auto& reader) { return std::to_string(reader.template ReadE<double>(5)); });
  for (const char* name : {"v", "pieces", "last"}) {
    ReadsOn(name, [&](auto& reader) {
      return reader.template ReadE<std::string>(reader.FindFE(name, 0));
    });
  }
}

TEST(XIniMemory, AReaderThatRanOutOfMemoryWhenItWasToEnterASectionStaysWhereItIs) {
  const Reading enter[] = {
      [](auto& reader) { return std::to_string(reader.EnterSectionSE("s")); },
      [](auto& reader) { return std::to_string(reader.EnterItem(reader.FindFE("s", 0))); }};
  const std::string told = Told(TKvXIniReader(MakeStream(ManyItems())));
  for (const Reading& read : enter) {
    for (unsigned long successes = 0;; ++successes) {
      TKvXIniReader reader(MakeStream(ManyItems()));
      const auto entered = ravelin_test::RunFailing([&] { return read(reader); }, successes, 1);
      EXPECT_EQ(entered.has_value(), !ravelin_test::AllocationFailed());
      if (entered) {
        EXPECT_GT(successes, 0U);
        EXPECT_EQ(reader.template ReadE<int>(0), 10);
        break;
      }
      ASSERT_EQ(Told(reader), told);
    }
  }
}

TEST(XIniMemory, AReaderWithoutMemoryThrowsBadAlloc) {
  const StreamPointer stream = MakeStream(ManyItems());
  ravelin_test::ThrowsEverywhere("making and reading", [&] { return Told(TKvXIniReader(stream)); });
  ravelin_test::ThrowsEverywhere("a transform", [] {
    const StreamPointer items = MakeStream("<r a='1' b='2' c='3' d='4' e='5' f='6'/>");
    TKvXIniReader reader(items);
    return TKv2DTransform::LoadE(&reader)->Coefficients()[5];
  });
}

/// All that an element holds, by every operation.
std::string Held(const TKvXmlItem& item) {
  const TKvXmlElement element = item.Element();
  std::string held = element.tag + element.items.get_text() + element.attributes.get_value("x", "");
  for (unsigned long i = 0; i < element.attributes.size(); ++i) held += element.attributes[i].name;
  for (unsigned long i = 0; i < element.items.size(); ++i) held += Held(*element.items[i]);
  return held;
}

TEST(XIniMemory, ElementsWithoutMemoryThrowBadAlloc) {
  const std::string text(100, 'x');
  const std::string xml = "<r a='1'><b>" + text + "</b><c><d x='" + text + "'/></c></r>";
  ravelin_test::ThrowsEverywhere("Parse", [&] { return Held(*TKvXmlItem::Parse(xml)); });
  ravelin_test::ThrowsEverywhere("Parse of a stream", [&] {
    TKvMemoryStream stream(xml);
    return TKvXmlItem::Parse(&stream)->Element().items.size();
  });
  const auto item = TKvXmlItem::Parse(xml);
  ravelin_test::ThrowsEverywhere("what is parsed", [&] { return Held(*item); });
  ravelin_test::ThrowsEverywhere("an element of a host", [&] {
    return var_a_legacy::var_a<TKvXmlItem*>(new TKvXmlItem(item->Element()))->Element().tag;
  });
}

/// While it lives, the allocation number `successes` + 1 of pugixml fails. It allocates in C.
class FailingPugixml {
 public:
  explicit FailingPugixml(unsigned long successes) {
    left = successes;
    failed = false;
    pugi::set_memory_management_functions(Allocate, Free);
  }
  FailingPugixml(const FailingPugixml&) = delete;
  FailingPugixml& operator=(const FailingPugixml&) = delete;
  ~FailingPugixml() { pugi::set_memory_management_functions(std::malloc, std::free); }

  static inline bool failed = false;
  static inline long live = 0;

 private:
  static void* Allocate(std::size_t size) {
    failed = failed || left == 0;
    if (left-- == 0) return nullptr;
    ++live;
    return std::malloc(size);
  }
  static void Free(void* memory) {
    if (memory != nullptr) --live;
    std::free(memory);
  }

  static inline unsigned long left = 0;
};

TEST(XIniMemory, ADocumentThatTheParserHasNoMemoryForIsNotToldToBeNoXml) {
  std::string xml = "<r>";
  for (int i = 0; i < 2000; ++i) xml += "<a b='c'>text</a>";
  xml += "</r>";
  const StreamPointer stream = MakeStream(xml);
  for (const bool items : {false, true}) {
    for (unsigned long successes = 0;; ++successes) {
      bool threw = false;
      unsigned long count = 2000;
      const FailingPugixml failing(successes);
      try {
        count = items ? TKvXmlItem::Parse(xml)->Element().items.size()
                      : TKvXIniReader(stream).GetItemCount();
      } catch (const std::bad_alloc&) {
        threw = true;
      }
      EXPECT_EQ(count, 2000U);
      EXPECT_EQ(threw, FailingPugixml::failed);
      EXPECT_EQ(FailingPugixml::live, 0);
      if (threw) continue;
      EXPECT_GT(successes, 3U);
      break;
    }
  }
}

}  // namespace
}  // namespace kv_test
