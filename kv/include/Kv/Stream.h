/// @file
/// Byte streams: the abstract stream, files and memory.
#pragma once

#include <memory>
#include <stdexcept>
#include <string>

#include "Kv/Export.h"
#include "Kv/Path.h"

/// How a file is opened.
enum kvOpenMode : int {
  kvOpenWrite = 9,  ///< create, or empty what is there; write
  kvOpenRead = 10,  ///< read
};
/// What others may do with the file meanwhile.
enum kvShareMode : unsigned int {
  kvShareAll = 0xFFFFFFFFu,  ///< no restriction
};

/// What the framework throws; what() names the thing and the reason.
class KV_EXPORT TKvError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// A stream of bytes with a position. Offsets and counts are bytes.
///
/// Threads: one stream has one position; calls on one stream must not overlap.
class KV_EXPORT TKvStream {
 public:
  virtual ~TKvStream();
  /// Whether the stream can be used.
  virtual bool IsOpen() const = 0;
  /// Reads at the position and moves it. Returns the bytes read: short at the end or on failure.
  virtual unsigned long Read(void* buffer, unsigned long count) = 0;
  /// Writes at the position and moves it. Returns the bytes that reached the system.
  virtual unsigned long Write(const void* buffer, unsigned long count) = 0;
  /// Moves to an absolute offset.
  virtual bool SetPos(unsigned long offset) = 0;
  /// The position, from 0.
  virtual unsigned long GetPos() const = 0;
  /// The bytes that the stream holds, wherever it stands.
  virtual unsigned long getSize() const = 0;
  /// At or past the end, or a read has failed: a loop over Eof ends.
  virtual bool Eof() const = 0;
  /// Stores the bytes up to the next LF, the LF left out and a CR kept, always NUL-terminated, at
  /// most `size` - 1 of them; a longer line comes in pieces. The LF of a line of exactly
  /// `size` - 1 bytes is consumed with it. Returns the bytes consumed, the LF counted (an empty
  /// line gives 1), and 0 when nothing could be read. Reads ahead; Read after it continues at the
  /// byte behind the line. With a `size` of 0 nothing is stored, and 0 returned.
  ///
  /// The base class works through Read and SetPos and moves back over what it read too far; when
  /// that fails, the line is empty and the result 0. On a stream whose SetPos always fails it reads
  /// byte by byte, and the LF of a line of exactly `size` - 1 bytes then makes an empty line of its
  /// own.
  virtual unsigned long ReadLine(char* buffer, unsigned long size);
  /// Drops what the stream buffers.
  virtual void Purge();
};

/// A file.
///
///     TKvFileStream file(TKvPath("b1.raw"), kvOpenRead, kvShareAll);
///     file.SetPos(16384);
///     unsigned long got = file.Read(row, sizeof row);
///
/// Reading: between Init_KvServices and Deinit_KvServices a file is served from a read-only mapping
/// that is made when it is opened or first read, so a read costs no system call; at most 64 MiB of
/// it stay resident. Otherwise, for pipes and special files, and for bytes beyond the size that the
/// file had when it was opened, a read is one system call. A file that was cut short or fails makes
/// Read short and raises no signal in the host; what a cut takes away at the very moment of a read
/// may come as zero bytes.
/// Writing is not buffered: a full disk is reported by the call that met it. A file written cannot
/// be read through the same stream, nor the other way round.
///
/// A pipe or terminal has no positions: SetPos succeeds only where the stream stands, getSize is 0,
/// Eof is true once a read came short, and Purge keeps what ReadLine has read ahead.
///
/// The file is closed with the object. Not copyable.
class KV_EXPORT TKvFileStream : public TKvStream {
 public:
  /// Not open.
  TKvFileStream();
  /// Throws TKvError naming path and reason when the file cannot be opened.
  TKvFileStream(const TKvPath& path, kvOpenMode mode, kvShareMode share);
  TKvFileStream(const TKvFileStream&) = delete;
  TKvFileStream& operator=(const TKvFileStream&) = delete;
  ~TKvFileStream() override;

  /// Closes what is open, then opens `path`. False when it cannot: a folder, a missing path, no
  /// permission, a NUL byte in the path, an unknown mode.
  bool Open(const TKvPath& path, kvOpenMode mode, kvShareMode share);
  /// Closes the file; nothing when none is open.
  void Close();

  bool IsOpen() const override;
  unsigned long Read(void* buffer, unsigned long count) override;
  unsigned long Write(const void* buffer, unsigned long count) override;
  bool SetPos(unsigned long offset) override;
  unsigned long GetPos() const override;
  unsigned long getSize() const override;
  bool Eof() const override;
  unsigned long ReadLine(char* buffer, unsigned long size) override;
  void Purge() override;

 private:
  class Impl;
  std::unique_ptr<Impl> impl_;
};

/// A growing byte buffer that is read and written like a file.
///
/// A write behind the end fills the gap with zero bytes. A write that memory cannot hold returns 0
/// and changes nothing.
class KV_EXPORT TKvMemoryStream : public TKvStream {
 public:
  /// Holds nothing.
  TKvMemoryStream();
  /// Starts with `bytes`, positioned at their beginning.
  explicit TKvMemoryStream(std::string bytes);
  ~TKvMemoryStream() override;

  /// What it holds, whatever the position; valid until the next write.
  const std::string& Bytes() const;

  bool IsOpen() const override;
  unsigned long Read(void* buffer, unsigned long count) override;
  unsigned long Write(const void* buffer, unsigned long count) override;
  bool SetPos(unsigned long offset) override;
  unsigned long GetPos() const override;
  unsigned long getSize() const override;
  bool Eof() const override;
  unsigned long ReadLine(char* buffer, unsigned long size) override;

 private:
  unsigned long Left() const;

  std::string bytes_;
  unsigned long pos_ = 0;
  bool stopped_ = false;
};
