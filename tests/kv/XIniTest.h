// What the tests of XML-ini share.
#pragma once

#include <algorithm>
#include <functional>
#include <memory>
#include <random>
#include <string>

#include "Kv/XIni.h"

namespace kv_test {

using StreamPointer = var_a_legacy::var_a<TKvStream*>;

inline StreamPointer MakeStream(std::string bytes) {
  return StreamPointer(new TKvMemoryStream(std::move(bytes)));
}

/// What `write` makes a writer put out, closed.
inline std::string Written(
    const std::function<void(TKvXIniStreamWriter&)>& write, int indent = 0,
    TKvXIniStreamWriter::THeaderType header = TKvXIniStreamWriter::htDocument) {
  auto* bytes = new TKvMemoryStream;
  const StreamPointer stream(bytes);
  TKvXIniStreamWriter writer(stream, indent, header);
  write(writer);
  if (!writer.Close()) return "the writer failed";
  return bytes->Bytes();
}

inline constexpr const char* kDeclaration = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";

/// The document around what stands in its root.
inline std::string Document(const std::string& content) {
  return std::string(kDeclaration) + "<xini>\n" + content + "</xini>\n";
}

/// What `action` throws as a TKvError; "nothing" when it throws nothing.
inline std::string ErrorOf(const std::function<void()>& action) {
  try {
    action();
  } catch (const TKvError& error) {
    return error.what();
  }
  return "nothing";
}

/// A stream that takes `limit` bytes in all and keeps them.
class LimitedStream : public TKvStream {
 public:
  explicit LimitedStream(unsigned long limit) : limit_(limit) {}

  const std::string& Bytes() const { return bytes_; }
  unsigned long Writes() const { return writes_; }

  bool IsOpen() const override { return true; }
  unsigned long Read(void*, unsigned long) override { return 0; }
  unsigned long Write(const void* buffer, unsigned long count) override {
    ++writes_;
    const unsigned long taken = std::min(count, limit_ - bytes_.size());
    bytes_.append(static_cast<const char*>(buffer), taken);
    return taken;
  }
  bool SetPos(unsigned long) override { return false; }
  unsigned long GetPos() const override { return bytes_.size(); }
  unsigned long getSize() const override { return bytes_.size(); }
  bool Eof() const override { return true; }

 private:
  unsigned long limit_;
  unsigned long writes_ = 0;
  std::string bytes_;
};

/// Up to `longest` bytes, mostly of those that XML has to do with.
inline std::string RandomText(std::mt19937* random, unsigned long longest) {
  static const std::string kOften =
      "ab _:-.09<>&\"'\t\n\r]]>=/?!;#x\xC3\xA9\xE2\x82\xAC\xEF\xBF\xBE\xF0\x9F\x98\x80";
  std::string text((*random)() % (longest + 1), '\0');
  const bool isText = (*random)() % 2 == 0;
  for (char& c : text) {
    const bool isOften = isText || (*random)() % 3 != 0;
    c = isOften ? kOften[(*random)() % kOften.size()] : static_cast<char>((*random)());
  }
  return text;
}

}  // namespace kv_test
