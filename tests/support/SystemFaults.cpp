// A library to preload: makes one call of the system fail. What fails is told by RAVELIN_FAULT:
//
//     CALL:NUMBER:HOW
//
// CALL is open, read, write, close, fsync, rename, mkdir or chmod, which stand for all forms of
// that call, or malloc, which stands for the allocations of libraries written in C; NUMBER counts
// its calls from 1; HOW is a number of errno, or "short" for half of the bytes, "none" for none of
// them. A '+' behind the number fails every call from there on, "+1" the
// next one as well. When the call comes, a byte is written to the descriptor RAVELIN_FAULT_SEEN.
// With RAVELIN_FAULT_UNMAPPED no file can be mapped, so that every read is a call. Files of the
// system do not count.
#include <dlfcn.h>
#include <errno.h>
#include <fcntl.h>
#include <stdarg.h>
#include <stdio.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <atomic>
#include <cstdlib>
#include <cstring>
#include <new>
#include <string_view>

extern "C" {
void* __libc_malloc(size_t size);
void* __libc_calloc(size_t count, size_t size);
void* __libc_realloc(void* memory, size_t size);
void __libc_free(void* memory);
}

#define PRELOADED extern "C" __attribute__((visibility("default")))

namespace {

enum class Outcome { kDone, kFailed, kShort, kNone };

struct Fault {
  std::string_view call;
  unsigned long number = 0;
  unsigned long more = 0;  ///< calls behind that one that fail, too
  int error = 0;
  Outcome outcome = Outcome::kFailed;
};

Fault ReadFault() {
  Fault fault;
  const char* const text = std::getenv("RAVELIN_FAULT");
  const char* const colon = text == nullptr ? nullptr : std::strchr(text, ':');
  if (colon == nullptr) return fault;
  fault.call = std::string_view(text, static_cast<std::size_t>(colon - text));
  char* end = nullptr;
  fault.number = std::strtoul(colon + 1, &end, 10);
  if (*end == '+') {
    fault.more = end[1] == ':' ? ~0ul : std::strtoul(end + 1, &end, 10);
    end += *end == '+' ? 1 : 0;
  }
  const std::string_view how = end + 1;
  if (how == "short") {
    fault.outcome = Outcome::kShort;
  } else if (how == "none") {
    fault.outcome = Outcome::kNone;
  } else {
    fault.error = std::atoi(end + 1);
  }
  return fault;
}

const Fault& TheFault() {
  static const Fault fault = ReadFault();
  return fault;
}

void TellSeen() {
  const char* const descriptor = std::getenv("RAVELIN_FAULT_SEEN");
  if (descriptor != nullptr) syscall(SYS_write, std::atoi(descriptor), "!", 1);
}

/// Counts a call, and says what it is to come to; errno is set when it fails.
Outcome Next(std::string_view call) {
  static std::atomic<unsigned long> calls = 0;
  const Fault& fault = TheFault();
  if (fault.call != call) return Outcome::kDone;
  const unsigned long number = ++calls;
  if (number < fault.number || number - fault.number > fault.more) return Outcome::kDone;
  TellSeen();
  errno = fault.error;
  return fault.outcome;
}

bool IsOfTheSystem(const char* path) {
  for (const std::string_view folder : {"/proc/", "/sys/", "/dev/", "/etc/", "/usr/", "/lib"}) {
    if (std::strncmp(path, folder.data(), folder.size()) == 0) return true;
  }
  return false;
}

Outcome NextOn(std::string_view call, const char* path) {
  return IsOfTheSystem(path) ? Outcome::kDone : Next(call);
}

template <class Function>
Function* Real(Function* /*replacement*/, const char* name) {
  return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

/// The count that a transfer of `count` bytes is called with, or -1 when it fails.
ssize_t Portion(std::string_view call, size_t count) {
  switch (Next(call)) {
    case Outcome::kFailed:
      return -1;
    case Outcome::kShort:
      return static_cast<ssize_t>((count + 1) / 2);
    case Outcome::kNone:
      return 0;
    default:
      return static_cast<ssize_t>(count);
  }
}

mode_t ModeOf(int flags, va_list& arguments) {
  return (flags & O_CREAT) != 0 ? va_arg(arguments, mode_t) : 0;
}

bool MappingIsRefused(int flags, int descriptor) {
  static const bool refused = std::getenv("RAVELIN_FAULT_UNMAPPED") != nullptr;
  if (!refused || descriptor < 0 || (flags & MAP_ANONYMOUS) != 0) return false;
  errno = ENODEV;
  return true;
}

// What is allocated before the program begins does not count: the loader's own.
std::atomic<bool> begun = false;
__attribute__((constructor)) void Begin() {
  begun = true;
}

bool MayAllocate() {
  return !begun || Next("malloc") == Outcome::kDone;
}

}  // namespace

#define OPEN_BY_PATH(name)                                   \
  PRELOADED int name(const char* path, int flags, ...) {     \
    va_list arguments;                                       \
    va_start(arguments, flags);                              \
    const mode_t mode = ModeOf(flags, arguments);            \
    va_end(arguments);                                       \
    if (NextOn("open", path) == Outcome::kFailed) return -1; \
    static auto* const real = Real(&name, #name);            \
    return real(path, flags, mode);                          \
  }
#define OPEN_IN_FOLDER(name)                                         \
  PRELOADED int name(int folder, const char* path, int flags, ...) { \
    va_list arguments;                                               \
    va_start(arguments, flags);                                      \
    const mode_t mode = ModeOf(flags, arguments);                    \
    va_end(arguments);                                               \
    if (NextOn("open", path) == Outcome::kFailed) return -1;         \
    static auto* const real = Real(&name, #name);                    \
    return real(folder, path, flags, mode);                          \
  }
#define TRANSFER(name, call, pointer)                             \
  PRELOADED ssize_t name(int file, pointer bytes, size_t count) { \
    const ssize_t portion = Portion(call, count);                 \
    if (portion < 0) return -1;                                   \
    static auto* const real = Real(&name, #name);                 \
    return real(file, bytes, static_cast<size_t>(portion));       \
  }
#define TRANSFER_AT(name, call, pointer)                                        \
  PRELOADED ssize_t name(int file, pointer bytes, size_t count, off_t offset) { \
    const ssize_t portion = Portion(call, count);                               \
    if (portion < 0) return -1;                                                 \
    static auto* const real = Real(&name, #name);                               \
    return real(file, bytes, static_cast<size_t>(portion), offset);             \
  }
#define MAP(name)                                                                     \
  PRELOADED void* name(void* where, size_t size, int protection, int flags, int file, \
                       off_t offset) noexcept {                                       \
    if (MappingIsRefused(flags, file)) return MAP_FAILED;                             \
    static auto* const real = Real(&name, #name);                                     \
    return real(where, size, protection, flags, file, offset);                        \
  }

OPEN_BY_PATH(open)
OPEN_BY_PATH(open64)
OPEN_IN_FOLDER(openat)
OPEN_IN_FOLDER(openat64)
TRANSFER(read, "read", void*)
TRANSFER(write, "write", const void*)
TRANSFER_AT(pread, "read", void*)
TRANSFER_AT(pread64, "read", void*)
TRANSFER_AT(pwrite, "write", const void*)
TRANSFER_AT(pwrite64, "write", const void*)
MAP(mmap)
MAP(mmap64)

// As on the system, the descriptor is gone after a failure, too.
PRELOADED int close(int file) {
  const Outcome outcome = Next("close");
  const int error = errno;
  static auto* const real = Real(&close, "close");
  const int result = real(file);
  if (outcome != Outcome::kFailed) return result;
  errno = error;
  return -1;
}

PRELOADED int fsync(int file) {
  if (Next("fsync") == Outcome::kFailed) return -1;
  static auto* const real = Real(&fsync, "fsync");
  return real(file);
}

PRELOADED int rename(const char* from, const char* to) noexcept {
  if (Next("rename") == Outcome::kFailed) return -1;
  static auto* const real = Real(&rename, "rename");
  return real(from, to);
}

PRELOADED int renameat2(int fromFolder, const char* from, int toFolder, const char* to,
                        unsigned int flags) noexcept {
  if (Next("rename") == Outcome::kFailed) return -1;
  static auto* const real = Real(&renameat2, "renameat2");
  return real(fromFolder, from, toFolder, to, flags);
}

PRELOADED int mkdir(const char* path, mode_t mode) noexcept {
  if (Next("mkdir") == Outcome::kFailed) return -1;
  static auto* const real = Real(&mkdir, "mkdir");
  return real(path, mode);
}

PRELOADED int fchmod(int file, mode_t mode) noexcept {
  if (Next("chmod") == Outcome::kFailed) return -1;
  static auto* const real = Real(&fchmod, "fchmod");
  return real(file, mode);
}

PRELOADED void* malloc(size_t size) noexcept {
  return MayAllocate() ? __libc_malloc(size) : nullptr;
}

PRELOADED void* calloc(size_t count, size_t size) noexcept {
  return MayAllocate() ? __libc_calloc(count, size) : nullptr;
}

PRELOADED void* realloc(void* memory, size_t size) noexcept {
  return MayAllocate() ? __libc_realloc(memory, size) : nullptr;
}

// Those of C++ fail in ApplicationMemoryTest.cpp: here they do not count.
void* operator new(size_t size) {
  void* const memory = __libc_malloc(size == 0 ? 1 : size);
  if (memory == nullptr) throw std::bad_alloc();
  return memory;
}

void operator delete(void* memory) noexcept {
  __libc_free(memory);
}

void operator delete(void* memory, size_t /*size*/) noexcept {
  __libc_free(memory);
}
