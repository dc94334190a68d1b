// The escapes against a plain model, at every length and alignment, between pages that cannot be
// touched; their growth and what they do without memory.
#include <gtest/gtest.h>

#include <functional>
#include <new>
#include <random>
#include <string>
#include <vector>

#include "SatCommonUtils/Text.h"
#include "kv/Growth.h"
#include "support/FailingNew.h"
#include "text/EscapesModel.h"
#include "text/GuardedBytes.h"

namespace {

using SatCommonUtils::Decode;
using SatCommonUtils::Encode;
using text_test::GuardedBytes;
using Edge = GuardedBytes::Edge;
using BufferForm = unsigned long (*)(const char*, unsigned long, char*, unsigned long);
using StringForm = void (*)(std::string, std::string*);

/// A text of `length` bytes in which bytes of `special` are as frequent as `one in` says.
std::string RandomText(std::mt19937& random, unsigned long length, const std::string& special,
                       unsigned long oneIn) {
  std::string text(length, '\0');
  for (char& c : text) {
    c = random() % oneIn == 0 ? special[random() % special.size()] : static_cast<char>(random());
  }
  return text;
}

const std::string kControls = "\t\n\r\\";
const std::string kEscapes = "\\\\\\\\tnrq\t";

std::string Converted(StringForm convert, const std::string& text) {
  std::string out = "held before";
  convert(text, &out);
  return out;
}

void ExpectEncoded(const std::string& text) {
  const std::string expected = escapes_model::Encode(text);
  ASSERT_EQ(Encode(text.data(), text.size(), nullptr, 0), expected.size());
  std::string out(expected.size() + 2, '#');
  ASSERT_EQ(Encode(text.data(), text.size(), out.data(), 1), expected.size());
  ASSERT_EQ(out, "#" + expected + "#");
  ASSERT_EQ(Converted(Encode, text), expected);
}

void ExpectDecoded(const std::string& text) {
  const std::string expected = escapes_model::Decode(text);
  ASSERT_EQ(Decode(text.data(), text.size(), nullptr, 0), escapes_model::MeasuredDecode(text));
  std::string out(expected.size() + 2, '#');
  ASSERT_EQ(Decode(text.data(), text.size(), out.data(), 1), expected.size());
  ASSERT_EQ(out, "#" + expected + "#");
  ASSERT_EQ(Converted(Decode, text), expected);
}

TEST(EscapesModel, RandomTextsOfEveryLengthAreEncodedAsByTheModel) {
  std::mt19937 random(1);
  for (unsigned long length = 0; length < 250; ++length) {
    for (const unsigned long oneIn : {1ul, 2ul, 5ul, 20ul, 200ul}) {
      for (int i = 0; i < 80; ++i) {
        ExpectEncoded(RandomText(random, length, kControls, oneIn));
        if (HasFatalFailure()) return;
      }
    }
  }
}

TEST(EscapesModel, RandomTextsOfEveryLengthAreDecodedAsByTheModel) {
  std::mt19937 random(2);
  for (unsigned long length = 0; length < 250; ++length) {
    for (const unsigned long oneIn : {1ul, 2ul, 5ul, 20ul, 200ul}) {
      for (int i = 0; i < 80; ++i) {
        ExpectDecoded(RandomText(random, length, kEscapes, oneIn));
        if (HasFatalFailure()) return;
      }
    }
  }
}

TEST(EscapesModel, EveryShortTextOfTheBytesThatMatterIsConvertedAsByTheModel) {
  const std::string bytes = "\\n\ta";
  for (unsigned long length = 0; length <= 6; ++length) {
    for (unsigned long number = 0; number < 1ul << (2 * length); ++number) {
      std::string text;
      for (unsigned long i = 0; i < length; ++i) text += bytes[number >> (2 * i) & 3];
      // The same in front of, and behind, what is converted a word at a time.
      for (const std::string& whole :
           {text, text + "plain text 12345", "plain text 12345" + text}) {
        ExpectEncoded(whole);
        ExpectDecoded(whole);
        if (HasFatalFailure()) return;
      }
    }
  }
}

TEST(EscapesModel, OneSpecialByteAtEachPlaceIsFound) {
  for (unsigned long length = 1; length < 70; ++length) {
    for (unsigned long at = 0; at < length; ++at) {
      for (const char c : kControls) {
        std::string text(length, 'n');
        text[at] = c;
        ExpectEncoded(text);
        ExpectDecoded(text);
        if (HasFatalFailure()) return;
      }
    }
  }
}

TEST(EscapesModel, EveryByteIsToldFromEveryOtherWhereverItStands) {
  for (int c = 0; c < 256; ++c) {
    for (unsigned long at = 0; at < 24; ++at) {
      std::string text(24, '\x0b');
      text[at] = static_cast<char>(c);
      ExpectEncoded(text);
      ExpectDecoded(text);
      if (HasFatalFailure()) return;
    }
  }
}

/// Converts from and into memory that is exactly as large as it must be, at both edges of it.
void ExpectNothingTouchedOutside(BufferForm convert, const std::string& text,
                                 const std::string& expected, unsigned long measured) {
  for (const Edge edge : {Edge::kBehind, Edge::kBefore}) {
    const GuardedBytes from(text, edge);
    const GuardedBytes to(expected.size(), edge);
    ASSERT_EQ(convert(from.Data(), text.size(), nullptr, 0), measured);
    ASSERT_EQ(convert(from.Data(), text.size(), to.Data(), 0), expected.size());
    ASSERT_EQ(to.Text(), expected);
  }
}

TEST(EscapesEdge, EncodingTouchesNoByteOutsideTheSourceAndTheResult) {
  std::mt19937 random(3);
  for (unsigned long length = 0; length < 80; ++length) {
    for (const unsigned long oneIn : {1ul, 2ul, 10ul, 1000ul}) {
      const std::string text = RandomText(random, length, kControls, oneIn);
      const std::string expected = escapes_model::Encode(text);
      ExpectNothingTouchedOutside(Encode, text, expected, expected.size());
      if (HasFatalFailure()) return;
    }
  }
}

TEST(EscapesEdge, DecodingTouchesNoByteOutsideTheSourceAndTheResult) {
  std::mt19937 random(4);
  for (unsigned long length = 0; length < 80; ++length) {
    for (const unsigned long oneIn : {1ul, 2ul, 10ul, 1000ul}) {
      for (const std::string& special : {kEscapes, std::string("\\"), std::string("\\n")}) {
        const std::string text = RandomText(random, length, special, oneIn);
        ExpectNothingTouchedOutside(Decode, text, escapes_model::Decode(text),
                                    escapes_model::MeasuredDecode(text));
        if (HasFatalFailure()) return;
      }
    }
  }
}

TEST(EscapesEdge, EveryEndOfADecodedTextStaysInsideItsResult) {
  const std::string bytes = "\\na";
  for (unsigned long number = 0; number < 729; ++number) {
    std::string text = "12345678";
    for (unsigned long i = 0, rest = number; i < 6; ++i, rest /= 3) text += bytes[rest % 3];
    ExpectNothingTouchedOutside(Decode, text, escapes_model::Decode(text),
                                escapes_model::MeasuredDecode(text));
    if (HasFatalFailure()) return;
  }
}

TEST(EscapesEdge, ATextIsDecodedInPlace) {
  std::mt19937 random(5);
  for (unsigned long length = 0; length < 300; ++length) {
    for (const unsigned long oneIn : {1ul, 3ul, 20ul}) {
      const std::string text = RandomText(random, length, kEscapes, oneIn);
      std::string out = text;
      out.resize(Decode(out.data(), out.size(), out.data(), 0));
      ASSERT_EQ(out, escapes_model::Decode(text));
    }
  }
}

TEST(EscapesEdge, AStringThatIsBothSourceAndResultIsConverted) {
  std::string text = "a\tb";
  Encode(text, &text);
  EXPECT_EQ(text, "a\\tb");
  Decode(text, &text);
  EXPECT_EQ(text, "a\tb");
}

TEST(EscapesEdge, TheResultHasRoomForAFifthMoreThanTheSource) {
  for (const StringForm convert :
       {static_cast<StringForm>(Encode), static_cast<StringForm>(Decode)}) {
    std::string out;
    convert(std::string(1000, 'x'), &out);
    EXPECT_GE(out.capacity(), 1200u);
  }
}

/// Whether a text of `piece`s is converted in linear time by all forms.
bool ConvertsLinearly(BufferForm buffer, StringForm string, const std::string& piece) {
  return kv_test::IsLinear(200000, [&](unsigned long size) {
    std::string text;
    while (text.size() < size) text += piece;
    std::string out(2 * text.size(), '\0');
    const unsigned long written = buffer(text.data(), text.size(), out.data(), 0);
    string(text, &out);
    EXPECT_EQ(out.size(), written);
  });
}

TEST(EscapesGrowth, EncodingIsLinear) {
  for (const char* piece : {"plain", "\t", "x\t", "\\"}) {
    EXPECT_TRUE(ConvertsLinearly(Encode, Encode, piece)) << piece;
  }
}

TEST(EscapesGrowth, DecodingIsLinear) {
  for (const char* piece : {"plain", "\\", "\\t", "x\\"}) {
    EXPECT_TRUE(ConvertsLinearly(Decode, Decode, piece)) << piece;
  }
}

TEST(EscapesMemory, AnAllocationThatFailsPasses) {
  for (const StringForm convert :
       {static_cast<StringForm>(Encode), static_cast<StringForm>(Decode)}) {
    std::string text(1000, '\t');
    std::string out;
    const auto convertWithoutMemory = [&] {
      const ravelin_test::FailingNew failing(0);
      convert(std::move(text), &out);
    };
    EXPECT_THROW(convertWithoutMemory(), std::bad_alloc);
    EXPECT_EQ(out, "");
  }
}

}  // namespace
