// A library that is loaded before the program's own and brings faults from outside: memory that is
// refused, a disk that fills, files that may not be opened or replaced, a signal in the middle of a
// call. What happens is told by the environment; without it, nothing does.
//
//   FAULT_MEMORY=n      the n-th allocation is refused
//   FAULT_MEMORY_EVERY=k  with it: every k-th one behind it, too
//   FAULT_MEMORY_AT=file  the allocation is refused that finds this file, and removes it
//   FAULT_DISK=n        files take n bytes, then there is no space left
//   FAULT_DENIED=text   files with the text in their names may not be opened for writing
//   FAULT_FIXED=text    files with the text in their names cannot be replaced
//   FAULT_UNSAFE=1      the disk does not take what files hold, which shows when they are saved
//   FAULT_PIPES=1       every other call on a pipe that does not wait finds it full or empty
//   FAULT_SIGNAL=s FAULT_CALL=n   signal s comes at the n-th call that opens, writes, saves,
//                       renames or removes a file
//   FAULT_COUNTS=file   gets, at the end, the numbers of allocations and of calls
#include <dlfcn.h>
#include <fcntl.h>
#include <signal.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>  // for max, min
#include <atomic>
#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>

// The system's own, behind those of this library.
extern "C" void* __libc_malloc(std::size_t);
extern "C" void* __libc_calloc(std::size_t, std::size_t);
extern "C" void* __libc_realloc(void*, std::size_t);

namespace {

std::atomic<long> allocations{0};
std::atomic<long> calls{0};
std::atomic<long> bytes_left{-1};
long first_refused = -1;
long refused_every = 0;
const char* refused_at = nullptr;
int signal_sent = 0;
long signal_call = -1;
const char* denied = nullptr;
const char* fixed_name = nullptr;
bool unsafe = false;
bool busy_pipes = false;
bool started = false;

long NUMBER_IN(const char* name, long none) {
  const char* const text = std::getenv(name);
  return text != nullptr ? std::strtol(text, nullptr, 10) : none;
}

// Before main: what the loader allocates is not counted.
__attribute__((constructor)) void START() {
  first_refused = NUMBER_IN("FAULT_MEMORY", -1);
  refused_every = NUMBER_IN("FAULT_MEMORY_EVERY", 0);
  refused_at = std::getenv("FAULT_MEMORY_AT");
  bytes_left = NUMBER_IN("FAULT_DISK", -1);
  signal_sent = static_cast<int>(NUMBER_IN("FAULT_SIGNAL", 0));
  signal_call = NUMBER_IN("FAULT_CALL", -1);
  denied = std::getenv("FAULT_DENIED");
  fixed_name = std::getenv("FAULT_FIXED");
  unsafe = std::getenv("FAULT_UNSAFE") != nullptr;
  busy_pipes = std::getenv("FAULT_PIPES") != nullptr;
  ::unsetenv("LD_PRELOAD");  // programs that are started have no faults
  started = true;
}

__attribute__((destructor)) void REPORT() {
  started = false;
  const char* const name = std::getenv("FAULT_COUNTS");
  if (name == nullptr) return;
  std::FILE* const file = std::fopen(name, "w");
  if (file == nullptr) return;
  std::fprintf(file, "%ld %ld\n", allocations.load(), calls.load());
  std::fclose(file);
}

bool IS_REFUSED() {
  if (!started) return false;
  const long n = ++allocations;
  if (refused_at != nullptr && ::unlinkat(AT_FDCWD, refused_at, 0) == 0) return true;
  if (first_refused < 1 || n < first_refused) return false;
  return n == first_refused || (refused_every > 0 && (n - first_refused) % refused_every == 0);
}

void CALL() {
  if (++calls == signal_call && signal_sent != 0) ::raise(signal_sent);
}

bool IS_IN(const char* text, const char* name) {
  return text != nullptr && name != nullptr && std::strstr(name, text) != nullptr;
}

template <class ROUTINE>
ROUTINE* NEXT(const char* name) {
  return reinterpret_cast<ROUTINE*>(::dlsym(RTLD_NEXT, name));
}

bool IS_FILE(int descriptor) {
  struct stat status {};
  return descriptor > STDERR_FILENO && ::fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode);
}

// By turns it is full or empty, ready, interrupted and ready.
bool IS_BUSY_PIPE(int descriptor) {
  static std::atomic<unsigned> turn{0};
  struct stat status {};
  if (!busy_pipes || ::fstat(descriptor, &status) != 0 || !S_ISFIFO(status.st_mode) ||
      (::fcntl(descriptor, F_GETFL) & O_NONBLOCK) == 0)
    return false;
  const unsigned now = turn++ % 4;
  errno = now == 0 ? EAGAIN : EINTR;
  return now % 2 == 0;
}

// Bytes of the file behind the place of the next one: what is written over needs no further room.
long BYTES_OVER(int descriptor) {
  struct stat status {};
  if (::fstat(descriptor, &status) != 0) return 0;
  const bool at_end = (::fcntl(descriptor, F_GETFL) & O_APPEND) != 0;
  return at_end
             ? 0
             : std::max(0L, static_cast<long>(status.st_size - ::lseek(descriptor, 0, SEEK_CUR)));
}

}  // namespace

extern "C" {

// ---- memory ----

void* malloc(std::size_t size) noexcept {
  if (!IS_REFUSED()) return __libc_malloc(size);
  errno = ENOMEM;
  return nullptr;
}

void* calloc(std::size_t count, std::size_t size) noexcept {
  if (!IS_REFUSED()) return __libc_calloc(count, size);
  errno = ENOMEM;
  return nullptr;
}

void* realloc(void* memory, std::size_t size) noexcept {
  if (!IS_REFUSED()) return __libc_realloc(memory, size);
  errno = ENOMEM;
  return nullptr;
}

// ---- files ----

int open(const char* name, int flags, ...) {
  static auto* const next = NEXT<int(const char*, int, ...)>("open");
  std::va_list rest;
  va_start(rest, flags);
  const auto mode = static_cast<mode_t>(va_arg(rest, int));
  va_end(rest);
  CALL();
  if ((flags & (O_WRONLY | O_RDWR)) != 0 && IS_IN(denied, name)) {
    errno = EACCES;
    return -1;
  }
  return next(name, flags, mode);
}

int mkostemp(char* pattern, int flags) {
  static auto* const next = NEXT<int(char*, int)>("mkostemp");
  CALL();
  if (IS_IN(denied, pattern)) {
    errno = EACCES;
    return -1;
  }
  return next(pattern, flags);
}

ssize_t write(int descriptor, const void* bytes, std::size_t size) {
  static auto* const next = NEXT<ssize_t(int, const void*, std::size_t)>("write");
  CALL();
  if (IS_BUSY_PIPE(descriptor)) return -1;
  if (bytes_left < 0 || !IS_FILE(descriptor)) return next(descriptor, bytes, size);
  const long over = BYTES_OVER(descriptor);
  const long part = std::min(static_cast<long>(size), over + bytes_left.load());
  if (part == 0) {
    errno = ENOSPC;
    return -1;
  }
  const ssize_t written = next(descriptor, bytes, static_cast<std::size_t>(part));
  if (written > over) bytes_left -= written - over;
  return written;
}

ssize_t read(int descriptor, void* bytes, std::size_t size) {
  static auto* const next = NEXT<ssize_t(int, void*, std::size_t)>("read");
  return IS_BUSY_PIPE(descriptor) ? -1 : next(descriptor, bytes, size);
}

int fsync(int descriptor) {
  static auto* const next = NEXT<int(int)>("fsync");
  CALL();
  if (unsafe) {
    errno = EIO;
    return -1;
  }
  return next(descriptor);
}

int rename(const char* from, const char* to) noexcept {
  static auto* const next = NEXT<int(const char*, const char*)>("rename");
  CALL();
  if (IS_IN(fixed_name, to)) {
    errno = EBUSY;
    return -1;
  }
  const int result = next(from, to);
  CALL();
  return result;
}

int unlink(const char* name) noexcept {
  static auto* const next = NEXT<int(const char*)>("unlink");
  CALL();
  return next(name);
}

}  // extern "C"
