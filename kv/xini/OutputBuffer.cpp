#include "xini/OutputBuffer.h"

#include <exception>

namespace {

// A stream that throws took nothing that one could rely on.
std::size_t WriteOrNothing(TKvStream* stream, std::string_view text) {
  if (stream == nullptr) return 0;
  try {
    return stream->Write(text.data(), text.size());
  } catch (...) {
    return 0;
  }
}

}  // namespace

namespace kv {

OutputBuffer::OutputBuffer(var_a_legacy::var_a<TKvStream*> stream)
    : stream_(stream), hasFailed_(!stream) {}

void OutputBuffer::AppendBeyond(std::string_view text) {
  Flush();
  if (text.size() > kCapacity) {
    Send(text);
  } else {
    Append(text);
  }
}

void OutputBuffer::Flush() {
  if (used_ != 0) Send({buffer_.data(), used_});
  used_ = 0;
}

void OutputBuffer::Send(std::string_view text) {
  if (hasFailed_) return;
  wanted_ = text.size();
  taken_ = WriteOrNothing(stream_.get(), text);
  hasFailed_ = taken_ < wanted_;
}

std::string OutputBuffer::Failure() const {
  if (!stream_) return "there is no stream";
  return "the stream took " + std::to_string(taken_) + " of " + std::to_string(wanted_) + " bytes";
}

}  // namespace kv
