// POSIX calls behind system_files.h and the questions of files.h about names. Reads no content
// itself.
#include "console_code/kva_utilities/system_files.h"

#include <fcntl.h>     // for open
#include <sys/stat.h>  // for stat
#include <unistd.h>    // for read

#include <cerrno>

namespace KVA_UTILITIES {

std::filesystem::path SYSTEM_PATH(const std::string& name) {
  return name;
}

FILE_IDENTITY IDENTITY_OF(const std::string& name) {
  struct stat status {};
  if (::stat(name.c_str(), &status) != 0) return {};
  return {S_ISREG(status.st_mode), status.st_dev, status.st_ino,
          static_cast<std::size_t>(status.st_size)};
}

bool FILE_EXISTS(const std::string& name) {
  struct stat status {};
  return ::stat(name.c_str(), &status) == 0;
}

bool IS_DIRECTORY(const std::string& name) {
  struct stat status {};
  return ::stat(name.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

// ---- opening ----

namespace {

// One way to open a file, and the stream's mode for it.
struct ACCESS {
  int FLAGS;
  const char* MODE;
  bool READABLE;
  bool WRITABLE;
};

constexpr ACCESS both_ways{O_RDWR, "r+", true, true};
constexpr ACCESS read_only{O_RDONLY, "r", true, false};
constexpr ACCESS write_only{O_WRONLY, "w", false, true};

// Flags of the mode, and whether the file is to be made.
int MODE_FLAGS(UNIT_MODE mode) {
  switch (mode) {
    case UNIT_MODE::UNKNOWN:
      return O_CREAT;
    case UNIT_MODE::OLD:
      return 0;
    case UNIT_MODE::NEW:
      return O_CREAT | O_EXCL;
    case UNIT_MODE::APPEND:
      return O_CREAT | O_APPEND;
    default:
      return O_CREAT | O_TRUNC;
  }
}

}  // namespace

int OPEN_AS_ALLOWED(const std::string& name, UNIT_MODE mode, OPENED_FILE& opened) {
  constexpr mode_t rights = 0666;
  const int flags = MODE_FLAGS(mode);
  int error = 0;
  for (const ACCESS& access : {both_ways, read_only, write_only}) {
    // A file that is replaced or added to must be written.
    if (!access.WRITABLE && (flags & ~O_CREAT) != 0) continue;
    // Without O_NONBLOCK a pipe without a partner would never come back.
    const int descriptor =
        ::open(name.c_str(), access.FLAGS | flags | O_CLOEXEC | O_NONBLOCK | O_NOCTTY, rights);
    if (descriptor >= 0) {
      opened.FILE.reset(::fdopen(descriptor, access.MODE));
      opened.READABLE = access.READABLE;
      opened.WRITABLE = access.WRITABLE;
      return opened.FILE ? 0 : errno;
    }
    if (error == 0) error = errno;
    if (errno != EACCES && errno != EPERM && errno != EROFS) break;
  }
  return error;
}

std::ptrdiff_t READ_BYTES(std::FILE* stream, std::span<char> bytes) {
  ssize_t read = -1;
  do {
    read = ::read(::fileno(stream), bytes.data(), bytes.size());
  } while (read < 0 && errno == EINTR);
  return read;
}

bool SHORTEN(std::FILE* stream, long size) {
  return ::ftruncate(::fileno(stream), static_cast<off_t>(size)) == 0;
}

}  // namespace KVA_UTILITIES
