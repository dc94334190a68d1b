#include "stream/FileMapping.h"

#include <sys/mman.h>

#include <algorithm>
#include <atomic>
#include <cstdint>
#include <limits>

#include "services/BusGuard.h"

namespace kv {
namespace {

constexpr std::uintptr_t kPage = 4096;  // a divisor of the true page size will do

char* MapFile(void* where, int flags, int file, unsigned long size) {
  void* const base = ::mmap(where, size, PROT_READ, MAP_SHARED | flags, file, 0);
  return base == MAP_FAILED ? nullptr : static_cast<char*>(base);
}

// Maps at an address that is a multiple of `alignment`, out of a larger reservation.
char* MapAligned(int file, unsigned long size, std::size_t alignment) {
  const std::size_t reserved = size + alignment;
  void* const area =
      ::mmap(nullptr, reserved, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
  if (area == MAP_FAILED) return nullptr;
  char* const begin = static_cast<char*>(area);
  const std::size_t before =
      (alignment - reinterpret_cast<std::uintptr_t>(area) % alignment) % alignment;
  char* const base = MapFile(begin + before, MAP_FIXED, file, size);
  if (!base) {
    ::munmap(area, reserved);
    return nullptr;
  }
  const std::size_t used = (before + size + kPage - 1) / kPage * kPage;
  if (before > 0) ::munmap(begin, before);
  if (used < reserved) ::munmap(begin + used, reserved - used);
  return base;
}

// A file that ends inside a page reads as zero bytes up to the end of the page, without a fault,
// where a read from the file is short. If the file ends at or before the last byte copied, then
// that byte and all behind it in its page are zero; so any other byte there proves that nothing is
// missing, wherever else the range lies. Without such a byte only the file's size can tell. The
// mapping is asked, after the copy: what was copied may have been taken in any order, the last byte
// before the file was cut and others after it. While a cut is being made its zeros may not have
// reached that byte yet; only a system call a read would close this moment.
bool IsProvenWhole(const char* last) {
  std::atomic_thread_fence(std::memory_order_acquire);
  const std::uintptr_t inPage = reinterpret_cast<std::uintptr_t>(last) % kPage;
  return BusGuard::HoldsNonZero(last, kPage - inPage);
}

}  // namespace

FileMapping::~FileMapping() {
  if (base_) ::munmap(base_, size_);
}

bool FileMapping::Map(int file, unsigned long size) noexcept {
  if (size == 0 || size > std::numeric_limits<std::size_t>::max() / 2) return false;
  const bool pieces = size > kPieces * kPiece;
  base_ = pieces ? MapAligned(file, size, kPiece) : MapFile(nullptr, 0, file, size);
  if (!base_) return false;
  size_ = size;
  shift_ = pieces ? kPieceShift : kNoPieces;
  current_ = pieces ? std::numeric_limits<unsigned long>::max() : 0;
  BusGuard::RecheckThread();
  return true;
}

FileMapping::Result FileMapping::Copy(unsigned long offset, void* to,
                                      unsigned long count) noexcept {
  LookAhead(offset, count);
  if (!CopyGuarded(offset, to, count)) return kNotRead;
  return IsProvenWhole(base_ + offset + count - 1) ? kCopied : kDoubt;
}

// The rows of a window lie a constant step apart, and in other pages: the processor does not
// foresee them. The row after next is fetched while this one is copied; fetching never faults.
void FileMapping::LookAhead(unsigned long offset, unsigned long count) noexcept {
  constexpr unsigned long kLine = 64;
  constexpr unsigned long kLongestRow = 65536;  // more would push out what is still needed
  const unsigned long step = offset - previous_;
  const bool steady = step == step_;
  previous_ = offset;
  step_ = step;
  if (!steady) return;
  if (!dense_ && (step < kPiece / 2 || -step < kPiece / 2)) AskForLargePages();
  const unsigned long ahead = offset + 2 * step;
  if (count > kLongestRow || !Covers(ahead, count)) return;
  for (unsigned long i = 0; i < count; i += kLine) __builtin_prefetch(base_ + ahead + i);
}

// Rows so close together are worth reading whole pieces from the disk for: in large pages, a piece
// that was given back is mapped again at once. Only pieces are given back.
void FileMapping::AskForLargePages() noexcept {
  dense_ = true;
  if (shift_ == kPieceShift) ::madvise(base_, size_, MADV_HUGEPAGE);
}

bool FileMapping::CopyGuarded(unsigned long offset, void* to, unsigned long count) noexcept {
  const bool inCurrent = offset >> shift_ == current_ && (offset + count - 1) >> shift_ == current_;
  return inCurrent ? BusGuard::Copy(to, base_ + offset, count) : CopyByPieces(offset, to, count);
}

bool FileMapping::CopyByPieces(unsigned long offset, void* to, unsigned long count) noexcept {
  char* next = static_cast<char*>(to);
  while (count > 0) {
    const unsigned long part = std::min<unsigned long>(count, kPiece - offset % kPiece);
    Enter(offset / kPiece);
    if (!BusGuard::Copy(next, base_ + offset, part)) return false;
    next += part;
    offset += part;
    count -= part;
  }
  return true;
}

void FileMapping::Enter(unsigned long piece) noexcept {
  current_ = piece;
  if (IsResident(piece)) return;
  BusGuard::RecheckThread();
  if (residentCount_ < kPieces) {
    resident_[residentCount_++] = piece;
    return;
  }
  GiveBackOldest();
  resident_[oldest_] = piece;
  oldest_ = (oldest_ + 1) % kPieces;
}

bool FileMapping::IsResident(unsigned long piece) const noexcept {
  const auto* const end = resident_.begin() + residentCount_;
  return std::find(resident_.begin(), end, piece) != end;
}

void FileMapping::GiveBackOldest() noexcept {
  const unsigned long offset = resident_[oldest_] << kPieceShift;
  ::madvise(base_ + offset, std::min<unsigned long>(kPiece, size_ - offset), MADV_DONTNEED);
}

void FileMapping::GiveBack() noexcept {
  if (!base_) return;
  ::madvise(base_, size_, MADV_DONTNEED);
  residentCount_ = 0;
  oldest_ = 0;
  if (shift_ == kPieceShift) current_ = std::numeric_limits<unsigned long>::max();
}

}  // namespace kv
