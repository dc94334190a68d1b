// Reading mapped files that may be cut or fail while they are read.
#pragma once

#include <atomic>
#include <cstddef>

namespace kv {

/// Turns the SIGBUS of a read from a mapping into a false result.
///
///     if (BusGuard::Active() && BusGuard::Copy(row, mapping + offset, size)) ...
///
/// The handler acts only on addresses of a read in progress on its own thread; every other SIGBUS
/// goes on to the handler that was found at Install. A handler that is installed on top later and
/// does not pass on takes the guard away.
class BusGuard {
 public:
  /// Installs the handler. Not to overlap with itself or Remove. When it cannot, Active stays
  /// false.
  static void Install();
  /// Puts back the handler that Install found, unless somebody else has installed one since; then
  /// this one stays below it and passes everything on. No read may be in progress.
  static void Remove();
  /// Whether reads are guarded.
  static bool Active() noexcept { return active_.load(std::memory_order_relaxed); }

  /// Looks again whether this thread takes SIGBUS at all: a thread that blocks it cannot be
  /// guarded, so nothing is read for it. Looked up by itself once a thread.
  static void RecheckThread() noexcept;

  /// Copies `count` bytes. False when the source cannot be read: the file ends before it or failed.
  static bool Copy(void* to, const void* from, std::size_t count) noexcept;
  /// Whether [from, from + count) can be read and holds a byte that is not zero. `count` > 0.
  static bool HoldsNonZero(const void* from, std::size_t count) noexcept;

 private:
  static std::atomic<bool> active_;
};

}  // namespace kv
