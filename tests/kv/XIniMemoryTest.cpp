#include <gtest/gtest.h>

#include <new>
#include <string>

#include "Kv/XmlItem.h"
#include "XIniTest.h"
#include "support/FailingNew.h"

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
      const ravelin_test::FailingNew failing(successes);
      isDone = WriteAll(&writer, texts);
    }
    if (isDone) break;
    ++failures;
    EXPECT_FALSE(writer.WriteS<int>("a", 1));
    EXPECT_FALSE(writer.Close());
  }
  EXPECT_GT(failures, 2U);
}

// The number of failures before `action` gets through, each of them std::bad_alloc.
unsigned long FailuresOf(const std::function<void()>& action) {
  for (unsigned long successes = 0; successes < 10000; ++successes) {
    const ravelin_test::FailingNew failing(successes);
    try {
      action();
      return successes;
    } catch (const std::bad_alloc&) {
      continue;
    }
  }
  return 0;
}

TEST(XIniMemory, AReaderWithoutMemoryThrowsBadAlloc) {
  const StreamPointer stream =
      MakeStream("<r a='1'><_ _name='AAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAA' _enc='name'/><s/></r>");
  EXPECT_GT(FailuresOf([&] {
              TKvXIniReader reader(stream);
              reader.FindF("a", 0);
              reader.EnterItem(2);
            }),
            3U);
}

TEST(XIniMemory, ParsingWithoutMemoryThrowsBadAlloc) {
  const std::string text = "<r a='1'><b>text</b><c><d x='2'/></c></r>";
  EXPECT_GT(FailuresOf([&] { TKvXmlItem::Parse(text); }), 10U);
}

}  // namespace
}  // namespace kv_test
