#include <vector>

#include "Kv/XIni.h"
#include "xini/OutputBuffer.h"
#include "xini/XmlElementWriter.h"

class TKvXIniStreamWriter::Impl {
 public:
  Impl(var_a_legacy::var_a<TKvStream*> stream, int indent, THeaderType header)
      : output_(stream), elements_(&output_, indent) {
    if (header != htDocument) return;
    output_.Append("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n");
    elements_.Begin("xini", /*isCompact=*/false);
  }

  bool WriteItem(const std::string& name, std::string_view value) {
    return Guarded([&] {
      if (isAttributeMode_ && elements_.AddAttribute(name, value)) return;
      elements_.Leaf(name, value);
    });
  }

  unsigned long OpenSection(const std::string& name, bool isCompact) {
    const bool isOpen = Guarded([&] {
      sections_.push_back(lastSection_ + 1);
      elements_.Begin(name, isCompact);
    });
    return isOpen ? ++lastSection_ : 0;
  }

  bool EndSection(unsigned long section) {
    if (IsOver()) return false;
    if (sections_.empty() || sections_.back() != section) {
      lastRefusal_ = "the section to end is not the innermost open one";
      return false;
    }
    sections_.pop_back();
    return Guarded([this] { elements_.End(); });
  }

  bool Flush() {
    return Guarded([this] { output_.Flush(); });
  }

  bool Close() {
    const bool isComplete = Guarded([this] {
      while (elements_.HasOpen()) elements_.End();
      output_.Flush();
    });
    isClosed_ = true;
    return isComplete;
  }

  void SetAttributeMode(bool on) { isAttributeMode_ = on; }

  std::string Failure() const {
    if (hasRunOutOfMemory_) return "out of memory";
    if (output_.HasFailed()) return output_.Failure();
    return isClosed_ ? "the writer is closed" : lastRefusal_;
  }

 private:
  bool IsOver() const { return isClosed_ || hasRunOutOfMemory_ || output_.HasFailed(); }

  // Output that memory failed half way through cannot be continued.
  template <class Action>
  bool Guarded(Action action) {
    if (IsOver()) return false;
    try {
      action();
    } catch (...) {
      hasRunOutOfMemory_ = true;
    }
    return !IsOver();
  }

  kv::OutputBuffer output_;
  kv::XmlElementWriter elements_;
  std::vector<unsigned long> sections_;
  unsigned long lastSection_ = 0;
  bool isAttributeMode_ = false;
  bool isClosed_ = false;
  bool hasRunOutOfMemory_ = false;
  const char* lastRefusal_ = "a write failed";
};

TKvXIniStreamWriter::TKvXIniStreamWriter(var_a_legacy::var_a<TKvStream*> stream, int indent,
                                         THeaderType header)
    : impl_(std::make_unique<Impl>(stream, indent, header)) {}

TKvXIniStreamWriter::~TKvXIniStreamWriter() {
  impl_->Close();
}

bool TKvXIniStreamWriter::Flush() {
  return impl_->Flush();
}

bool TKvXIniStreamWriter::Close() {
  return impl_->Close();
}

bool TKvXIniStreamWriter::EndSection(unsigned long section) {
  return impl_->EndSection(section);
}

void TKvXIniStreamWriter::SetAttributeMode(bool on) {
  impl_->SetAttributeMode(on);
}

void TKvXIniStreamWriter::ReportWriteError() {
  throw TKvError("XML-ini: " + impl_->Failure());
}

bool TKvXIniStreamWriter::WriteItemText(const std::string& name, std::string_view value) {
  return impl_->WriteItem(name, value);
}

unsigned long TKvXIniStreamWriter::OpenSection(const std::string& name, bool compact) {
  return impl_->OpenSection(name, compact);
}
