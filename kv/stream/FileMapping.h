// A read-only view of an open file that survives the file's being cut or failing.
#pragma once

#include <array>
#include <cstddef>

namespace kv {

/// Maps the bytes that a file has when it is opened and copies from them without a system call.
///
/// Copies are guarded (see BusGuard): call only while BusGuard::Active(). Of a mapping larger than
/// 64 MiB at most that much stays resident: it is touched in aligned pieces of 2 MiB, the oldest of
/// which is given back before one too many is touched. Pieces of that size hold whatever the system
/// maps around a fault, large pages included.
class FileMapping {
 public:
  enum Result {
    kCopied,   ///< as a read from the file would have
    kDoubt,    ///< copied, but only if the file still reaches behind the bytes copied
    kNotRead,  ///< the file failed or ends before; the system has to be asked
  };

  FileMapping() = default;
  FileMapping(const FileMapping&) = delete;
  FileMapping& operator=(const FileMapping&) = delete;
  ~FileMapping();

  /// Maps [0, size) of the file. False when the system cannot. Not mapped before.
  bool Map(int file, unsigned long size) noexcept;
  /// Whether the range lies inside; never when nothing is mapped.
  bool Covers(unsigned long offset, unsigned long count) const noexcept {
    return offset < size_ && count <= size_ - offset;
  }
  /// Copies a range that is covered, `count` > 0. What `to` holds after kNotRead is undefined.
  Result Copy(unsigned long offset, void* to, unsigned long count) noexcept;
  /// Gives every resident page back to the system.
  void GiveBack() noexcept;

 private:
  static constexpr unsigned kPieceShift = 21;
  static constexpr std::size_t kPiece = std::size_t{1} << kPieceShift;
  static constexpr std::size_t kPieces = 32;
  static constexpr unsigned kNoPieces = 63;  // shift of a mapping that may be resident whole

  void LookAhead(unsigned long offset, unsigned long count) noexcept;
  void AskForLargePages() noexcept;
  bool CopyGuarded(unsigned long offset, void* to, unsigned long count) noexcept;
  bool CopyByPieces(unsigned long offset, void* to, unsigned long count) noexcept;
  void Enter(unsigned long piece) noexcept;
  bool IsResident(unsigned long piece) const noexcept;
  void GiveBackOldest() noexcept;

  char* base_ = nullptr;
  unsigned long size_ = 0;
  unsigned long previous_ = 1UL << 63;  // where the last copy began
  unsigned long step_ = 0;              // how far behind the one before it
  bool dense_ = false;                  // copies have come at steps smaller than half a piece
  unsigned shift_ = kNoPieces;
  unsigned long current_ = 0;  // the piece entered last
  // The pieces that may be resident: a ring, the oldest at oldest_ once it is full.
  std::array<unsigned long, kPieces> resident_{};
  std::size_t residentCount_ = 0;
  std::size_t oldest_ = 0;
};

}  // namespace kv
