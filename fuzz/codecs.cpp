// Escapes, byte-order marks and pseudo-UTF-16, compared with plain models.
#include <algorithm>
#include <memory>
#include <string>

#include "SatCommonUtils/Text.h"
#include "fuzz/FuzzInput.h"
#include "tests/text/EscapesModel.h"

namespace {

using BufferForm = unsigned long (*)(const char*, unsigned long, char*, unsigned long);

/// Into memory that just holds `expected`, so that a byte too much is noticed.
std::string Converted(BufferForm convert, const std::string& text, const std::string& expected) {
  const std::unique_ptr<char[]> from(new char[text.size()]);
  const std::unique_ptr<char[]> to(new char[expected.size()]);
  std::copy(text.begin(), text.end(), from.get());
  const unsigned long written = convert(from.get(), text.size(), to.get(), 0);
  Require(written == expected.size(), "as many bytes are written as the result has");
  return {to.get(), written};
}

void CheckEscapes(const std::string& text) {
  using SatCommonUtils::Decode;
  using SatCommonUtils::Encode;
  const std::string encoded = escapes_model::Encode(text);
  const std::string decoded = escapes_model::Decode(text);
  Require(Converted(Encode, text, encoded) == encoded, "a text is encoded as by the model");
  Require(Converted(Decode, text, decoded) == decoded, "a text is decoded as by the model");
  Require(Encode(text.data(), text.size(), nullptr, 0) == encoded.size(),
          "the encoded length is measured");
  Require(Decode(text.data(), text.size(), nullptr, 0) == escapes_model::MeasuredDecode(text),
          "the decoded length is measured, a backslash at the end counted");
  std::string out;
  Encode(text, &out);
  Require(out == encoded, "strings are encoded alike");
  Decode(text, &out);
  Require(out == decoded, "strings are decoded alike");
  std::string inPlace = text;
  inPlace.resize(Decode(inPlace.data(), inPlace.size(), inPlace.data(), 0));
  Require(inPlace == decoded, "a text is decoded in place");
}

bool BeginsWith(const std::string& text, const std::string& start) {
  return text.compare(0, start.size(), start) == 0;
}

int MarkOf(const std::string& text) {
  if (BeginsWith(text, "\xEF\xBB\xBF")) return 1;
  if (BeginsWith(text, "\xFE\xFF")) return 2;
  if (BeginsWith(text, std::string("\xFF\xFE\0\0", 4))) return 5;
  if (BeginsWith(text, "\xFF\xFE")) return 3;
  return BeginsWith(text, std::string("\0\0\xFE\xFF", 4)) ? 4 : 0;
}

void CheckMarks(const std::string& text) {
  TKvMemoryStream stream(text);
  stream.SetPos(text.size() / 2);
  const SatCommonUtils::TSatBOM mark = SatCommonUtils::ReadBOM(&stream);
  Require(mark == MarkOf(text), "the mark is that of the first bytes");
  Require(stream.GetPos() == text.size() / 2, "the position stays");
  Require(SatCommonUtils::GetBOMLength(mark) <= text.size(), "a mark lies inside the text");
  if (text.size() < 4) return;
  Require(SatCommonUtils::RecognizeBOM(text.data()) == mark, "a stream has the mark of its bytes");
}

std::string EverySecond(const std::string& bytes, unsigned long start) {
  std::string text;
  for (unsigned long i = start; i < bytes.size(); i += 2) text += bytes[i];
  return text;
}

void CheckUtf16(const std::string& text) {
  using SatCommonUtils::PseudoUTF16toUTF8;
  const int mark = MarkOf(text);
  TKvMemoryStream stream(text);
  for (const bool isLittleEndian : {false, true}) {
    const unsigned long low = isLittleEndian ? 0 : 1;
    Require(PseudoUTF16toUTF8(text, isLittleEndian) == EverySecond(text, low),
            "the low bytes of a string are kept");
    const unsigned long offset = text.empty() ? 1 : static_cast<unsigned char>(text.back());
    const std::string rest = offset < text.size() ? text.substr(offset) : "";
    const std::string units = rest.substr(0, rest.size() / 2 * 2);
    Require(PseudoUTF16toUTF8(&stream, isLittleEndian, offset) == EverySecond(units, low),
            "the low bytes of a stream are kept");
  }
  std::string expected;
  if (mark == 2 || mark == 3) {
    expected = EverySecond(text.substr(2, (text.size() - 2) / 2 * 2), mark == 3 ? 0 : 1);
  }
  Require(SatCommonUtils::PseudoUTF16toUTF8BOM(&stream) == expected, "a mark names the byte order");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string text(reinterpret_cast<const char*>(data), size);
  CheckEscapes(text);
  CheckMarks(text);
  CheckUtf16(text);
  return 0;
}
