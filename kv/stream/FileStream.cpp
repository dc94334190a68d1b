#include <algorithm>
#include <array>
#include <cstring>
#include <limits>
#include <new>
#include <utility>

#include "Kv/Stream.h"
#include "services/BusGuard.h"
#include "stream/FileDescriptor.h"
#include "stream/FileMapping.h"

using kv::BusGuard;
using kv::FileDescriptor;
using kv::FileMapping;
using kv::Transfer;

// An open file stream.
class __attribute__((visibility("hidden"))) TKvFileStream::Impl {
 public:
  Impl(FileDescriptor file, kvOpenMode mode)
      : file_(std::move(file)),
        reads_(mode == kvOpenRead),
        mapNext_(reads_ && file_.Is().regular),
        sizeAtOpening_(mapNext_ ? file_.Size() : 0) {}

  // Null, and `reason` says why, when the file cannot be opened.
  static std::unique_ptr<Impl> Open(const TKvPath& path, kvOpenMode mode, std::string& reason) {
    FileDescriptor file;
    reason = file.Open(path.toSysStr(), mode);
    return reason.empty() ? std::make_unique<Impl>(std::move(file), mode) : nullptr;
  }

  unsigned long Read(void* buffer, unsigned long count);
  unsigned long Write(const void* buffer, unsigned long count);
  bool SetPos(unsigned long offset);
  unsigned long GetPos() const { return pos_; }
  unsigned long Size() const { return file_.Size(); }
  bool Eof() const;
  unsigned long ReadLine(char* buffer, unsigned long size);
  void Purge();

 private:
  Transfer ReadAt(unsigned long pos, void* buffer, unsigned long count);
  bool ReadMapped(unsigned long pos, void* buffer, unsigned long count);
  unsigned long ReadUnseekable(char* buffer, unsigned long count);
  void CameShort(const Transfer& read);

  unsigned long Ahead() const { return aheadEnd_ - aheadBegin_; }
  void DropAhead() { aheadBegin_ = aheadEnd_ = 0; }
  bool FillAhead();
  void TakeAhead(char* buffer, unsigned long count);

  FileDescriptor file_;
  FileMapping mapping_;
  unsigned long pos_ = 0;
  const bool reads_;
  bool mapNext_;          // a mapping is to be tried at the next read
  bool stopped_ = false;  // a read came short, and the size does not tell so
  const unsigned long sizeAtOpening_;

  // What ReadLine has read ahead: the bytes from pos_ on are [aheadBegin_, aheadEnd_) of ahead_.
  static constexpr unsigned long kAhead = 8192;
  unsigned long aheadBegin_ = 0;
  unsigned long aheadEnd_ = 0;
  std::array<char, kAhead> ahead_;
};

// What was read ahead is passed over, not used, where the system can be asked again: the file may
// have been cut since.
unsigned long TKvFileStream::Impl::Read(void* buffer, unsigned long count) {
  if (count == 0) return 0;
  if (!file_.Is().seekable) return ReadUnseekable(static_cast<char*>(buffer), count);
  const Transfer read = ReadAt(pos_, buffer, count);
  pos_ += read.bytes;
  aheadBegin_ += std::min(read.bytes, Ahead());
  if (read.bytes < count) {
    DropAhead();
    CameShort(read);
  }
  return read.bytes;
}

unsigned long TKvFileStream::Impl::ReadUnseekable(char* buffer, unsigned long count) {
  const unsigned long first = std::min(count, Ahead());
  TakeAhead(buffer, first);
  if (first == count) return count;
  const Transfer read = ReadAt(pos_, buffer + first, count - first);
  pos_ += read.bytes;
  if (read.bytes < count - first) CameShort(read);
  return first + read.bytes;
}

Transfer TKvFileStream::Impl::ReadAt(unsigned long pos, void* buffer, unsigned long count) {
  if (ReadMapped(pos, buffer, count)) return {count, false};
  return reads_ ? file_.ReadAll(pos, buffer, count) : Transfer{0, true};
}

bool TKvFileStream::Impl::ReadMapped(unsigned long pos, void* buffer, unsigned long count) {
  if (!BusGuard::Active()) return false;
  if (mapNext_) {
    mapNext_ = false;
    mapping_.Map(file_.Number(), sizeAtOpening_);
  }
  if (!mapping_.Covers(pos, count)) return false;
  const FileMapping::Result result = mapping_.Copy(pos, buffer, count);
  return result == FileMapping::kCopied ||
         (result == FileMapping::kDoubt && file_.Reaches(pos + count));
}

void TKvFileStream::Impl::CameShort(const Transfer& read) {
  if (read.failed || !file_.Is().sized || pos_ < file_.Size()) stopped_ = true;
}

unsigned long TKvFileStream::Impl::Write(const void* buffer, unsigned long count) {
  if (reads_) return 0;
  const unsigned long written = file_.WriteAll(pos_, buffer, count).bytes;
  pos_ += written;
  return written;
}

bool TKvFileStream::Impl::SetPos(unsigned long offset) {
  constexpr auto kLast = static_cast<unsigned long>(std::numeric_limits<long>::max());
  if (file_.Is().seekable ? offset > kLast : offset != pos_) return false;
  if (file_.Is().seekable) DropAhead();
  pos_ = offset;
  stopped_ = false;
  return true;
}

bool TKvFileStream::Impl::Eof() const {
  if (stopped_) return true;
  if (Ahead() > 0) return false;
  return file_.Is().sized && pos_ >= file_.Size();
}

unsigned long TKvFileStream::Impl::ReadLine(char* buffer, unsigned long size) {
  if (size == 0) {
    stopped_ = true;
    return 0;
  }
  const unsigned long room = size - 1;
  unsigned long text = 0;
  buffer[0] = '\0';
  while (Ahead() > 0 || FillAhead()) {
    const char* const next = ahead_.data() + aheadBegin_;
    const unsigned long most = std::min(Ahead(), room - text);
    // One byte more than fits may be the LF of a line that just fits.
    const auto* const lf =
        static_cast<const char*>(std::memchr(next, '\n', std::min(Ahead(), room - text + 1)));
    const unsigned long part = lf ? static_cast<unsigned long>(lf - next) : most;
    TakeAhead(buffer + text, part);
    text += part;
    buffer[text] = '\0';
    if (lf) {
      ++aheadBegin_;
      ++pos_;
      return text + 1;
    }
    if (Ahead() > 0) break;
  }
  // Without room for a byte no call will ever come further.
  if (room == 0 && Ahead() > 0) stopped_ = true;
  return text;
}

void TKvFileStream::Impl::TakeAhead(char* buffer, unsigned long count) {
  std::memcpy(buffer, ahead_.data() + aheadBegin_, count);
  aheadBegin_ += count;
  pos_ += count;
}

// One call of the system on a pipe, so that a line is there as soon as its sender has sent it. What
// cut a portion short is met again by the next one, when everything before it has been taken.
bool TKvFileStream::Impl::FillAhead() {
  const Transfer read = file_.Is().seekable || !reads_
                            ? ReadAt(pos_, ahead_.data(), kAhead)
                            : file_.ReadOnce(pos_, ahead_.data(), kAhead);
  aheadBegin_ = 0;
  aheadEnd_ = read.bytes;
  if (read.bytes == 0) CameShort(read);
  return read.bytes > 0;
}

// What was read ahead from a pipe stays: it could not be read again.
void TKvFileStream::Impl::Purge() {
  if (file_.Is().seekable) DropAhead();
  mapping_.GiveBack();
}

namespace {

// For a text that may end at the first NUL.
std::string Shown(const std::string& path) {
  std::string shown;
  for (const char byte : path) {
    if (byte == '\0') {
      shown += "\\0";
    } else {
      shown += byte;
    }
  }
  return shown;
}

}  // namespace

TKvFileStream::TKvFileStream() = default;

TKvFileStream::TKvFileStream(const TKvPath& path, kvOpenMode mode, kvShareMode) {
  std::string reason;
  // cppcheck-suppress useInitializationList ; the reason must be there before
  impl_ = Impl::Open(path, mode, reason);
  if (!impl_) throw TKvError(Shown(path.toSysStr()) + ": " + reason);
}

TKvFileStream::~TKvFileStream() = default;

bool TKvFileStream::Open(const TKvPath& path, kvOpenMode mode, kvShareMode) {
  Close();
  try {
    std::string reason;
    impl_ = Impl::Open(path, mode, reason);
  } catch (const std::bad_alloc&) {
    return false;
  }
  return impl_ != nullptr;
}

void TKvFileStream::Close() {
  impl_.reset();
}

bool TKvFileStream::IsOpen() const {
  return impl_ != nullptr;
}

unsigned long TKvFileStream::Read(void* buffer, unsigned long count) {
  return impl_ ? impl_->Read(buffer, count) : 0;
}

unsigned long TKvFileStream::Write(const void* buffer, unsigned long count) {
  return impl_ ? impl_->Write(buffer, count) : 0;
}

bool TKvFileStream::SetPos(unsigned long offset) {
  return impl_ && impl_->SetPos(offset);
}

unsigned long TKvFileStream::GetPos() const {
  return impl_ ? impl_->GetPos() : 0;
}

unsigned long TKvFileStream::getSize() const {
  return impl_ ? impl_->Size() : 0;
}

bool TKvFileStream::Eof() const {
  return !impl_ || impl_->Eof();
}

unsigned long TKvFileStream::ReadLine(char* buffer, unsigned long size) {
  if (impl_) return impl_->ReadLine(buffer, size);
  if (size > 0) buffer[0] = '\0';
  return 0;
}

void TKvFileStream::Purge() {
  if (impl_) impl_->Purge();
}
