// POSIX calls behind system_files.h and the questions of files.h about names. Reads no content
// itself.
#include "console_code/kva_utilities/system_files.h"

#include <dirent.h>    // for opendir, readdir
#include <fcntl.h>     // for open
#include <poll.h>      // for poll
#include <signal.h>    // for sigaction, pthread_sigmask
#include <sys/mman.h>  // for madvise
#include <sys/stat.h>  // for stat, fchmod, umask
#include <unistd.h>    // for read, write, fsync, ftruncate, lseek, unlink, sysconf

#if __has_include(<malloc.h>)
#include <malloc.h>  // for mallopt
#endif

#include <algorithm>  // for min
#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>  // for sig_atomic_t
#include <cstdlib>  // for malloc, mkstemp
#include <cstring>  // for memcpy
#include <memory>   // for align

namespace KVA_UTILITIES {

std::filesystem::path SYSTEM_PATH(const std::string& name) {
  return name;
}

FILE_IDENTITY IDENTITY_OF(const std::string& name) {
  struct stat status {};
  if (::stat(name.c_str(), &status) != 0) return {};
  return {S_ISREG(status.st_mode), status.st_nlink > 1, status.st_dev, status.st_ino,
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

// By readdir, as std::filesystem's iterator ends the program where memory is refused.
std::vector<std::string> FILE_NAMES(const std::string& directory, std::string_view start) {
  struct CLOSE_DIRECTORY {
    void operator()(DIR* opened) const { ::closedir(opened); }
  };
  std::vector<std::string> names;
  const std::string folder = directory + "/";
  const std::unique_ptr<DIR, CLOSE_DIRECTORY> opened(::opendir(directory.c_str()));
  if (!opened) return names;
  while (const dirent* const entry = ::readdir(opened.get())) {
    std::string name = entry->d_name;
    if (name == "." || name == ".." || !name.starts_with(start)) continue;
    if (IS_DIRECTORY(folder + name)) name += '/';
    names.push_back(std::move(name));
  }
  return names;
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

bool IS_PIPE(const std::string& name) {
  struct stat status {};
  return ::stat(name.c_str(), &status) == 0 && S_ISFIFO(status.st_mode);
}

}  // namespace

int OPEN_AS_ALLOWED(const std::string& name, UNIT_MODE mode, OPENED_FILE& opened) {
  constexpr mode_t rights = 0666;
  const int flags = MODE_FLAGS(mode);
  int error = 0;
  for (const ACCESS& access : {both_ways, read_only, write_only}) {
    // A file that is replaced or added to must be written. A pipe that is open both ways takes
    // bytes that nobody reads.
    const bool to_write = (flags & ~O_CREAT) != 0;
    if (to_write && (!access.WRITABLE || (access.READABLE && IS_PIPE(name)))) continue;
    // Without O_NONBLOCK a pipe without a partner would never come back.
    const int descriptor =
        ::open(name.c_str(), access.FLAGS | flags | O_CLOEXEC | O_NONBLOCK | O_NOCTTY, rights);
    if (descriptor >= 0) {
      opened.FILE.reset(::fdopen(descriptor, access.MODE));
      opened.READABLE = access.READABLE;
      opened.WRITABLE = access.WRITABLE;
      if (opened.FILE) return 0;
      error = errno;
      ::close(descriptor);
      return error;
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

// ---- writing ----

namespace {

// While it is set, a pipe without a reader is an error of writing and does not end the program.
volatile std::sig_atomic_t writing_a_file = 0;

// Waits until a pipe has room again. False when nobody empties it.
bool HAS_ROOM(int descriptor) {
  constexpr int patience = 10000;  // milliseconds
  pollfd waiting{descriptor, POLLOUT, 0};
  return ::poll(&waiting, 1, patience) > 0;
}

}  // namespace

std::size_t WRITE_BYTES(std::FILE* stream, std::string_view bytes, int& error) {
  const int descriptor = ::fileno(stream);
  std::size_t done = 0;
  error = 0;
  writing_a_file = 1;
  while (done < bytes.size() && error == 0) {
    const ssize_t written = ::write(descriptor, bytes.data() + done, bytes.size() - done);
    if (written > 0)
      done += static_cast<std::size_t>(written);
    else if (written == 0)
      error = EIO;
    else if (errno != EINTR && !(errno == EAGAIN && HAS_ROOM(descriptor)))
      error = errno;
  }
  writing_a_file = 0;
  return done;
}

long FILE_POSITION(std::FILE* stream) {
  return static_cast<long>(::lseek(::fileno(stream), 0, SEEK_CUR));
}

bool CUT_AT(std::FILE* stream, long position) {
  const int descriptor = ::fileno(stream);
  const off_t place = position;
  return ::ftruncate(descriptor, place) == 0 && ::lseek(descriptor, place, SEEK_SET) == place;
}

bool IS_OPEN_HERE(const FILE_IDENTITY& file) {
  constexpr int descriptors = 64;  // more than the program and a shell that starts it ever have
  struct stat status {};
  for (int i = 0; i < descriptors; ++i)
    if (::fstat(i, &status) == 0 && status.st_dev == file.DEVICE && status.st_ino == file.NODE)
      return true;
  return false;
}

// ---- memory ----

#if defined(__GLIBC__) && defined(MADV_HUGEPAGE)

// Room at the end of the heap is marked and freed at once, and what is asked for next is cut from
// it. So much is kept there however little of it is in use; only pieces that are larger than any
// table of a few thousand blocks are still mapped by themselves.
void EXPECT_MEMORY(std::size_t bytes) {
  constexpr std::size_t megabyte = std::size_t{1} << 20U;
  constexpr std::size_t least = 4 * megabyte;   // of less most would lie beside the large pages
  constexpr std::size_t most = 128 * megabyte;  // more gains nothing where the host lends pages
  constexpr int usual_mappings = 65536;
  if (bytes < least) return;
  const std::size_t size = std::min(bytes, most);
  ::mallopt(M_TRIM_THRESHOLD, static_cast<int>(most + megabyte));
  ::mallopt(M_MMAP_THRESHOLD, static_cast<int>(32 * megabyte));
  ::mallopt(M_MMAP_MAX, 0);
  void* const room = std::malloc(size);
  ::mallopt(M_MMAP_MAX, usual_mappings);
  if (room == nullptr) return;
  void* page = room;
  std::size_t left = size;
  const auto page_size = static_cast<std::size_t>(::sysconf(_SC_PAGESIZE));
  if (std::align(page_size, page_size, page, left) != nullptr)
    ::madvise(page, left - left % page_size, MADV_HUGEPAGE);
  std::free(room);
}

#else

void EXPECT_MEMORY(std::size_t /*bytes*/) {}

#endif

// ---- temporary files ----

namespace {

// Names that a signal's routine can read at any moment.
enum class LISTING : int { FREE, CLAIMED, LISTED };
struct TIDY_NAME {
  std::atomic<LISTING> STATE{LISTING::FREE};
  std::array<char, 4096> NAME{};
};
std::array<TIDY_NAME, 8> tidy_names;

constexpr std::array ending_signals{SIGHUP,  SIGINT,  SIGQUIT, SIGPIPE,
                                    SIGTERM, SIGXCPU, SIGUSR1, SIGUSR2};

void REMOVE_ALL_AND_END(int signal) {
  if (signal == SIGPIPE && writing_a_file != 0) return;
  for (const TIDY_NAME& name : tidy_names)
    if (name.STATE == LISTING::LISTED) ::unlink(name.NAME.data());
  ::signal(signal, SIG_DFL);
  ::raise(signal);  // comes when this routine ends
}

void LET_WRITING_FAIL(int /*signal*/) {}

int waiting_for = 0;  // number of those that live
sigset_t before_waiting;

// A name that finds no room in the list is removed by its owner alone.
void LIST_NAME(const std::string& name) {
  for (TIDY_NAME& place : tidy_names) {
    LISTING wanted = LISTING::FREE;
    if (name.size() >= place.NAME.size() ||
        !place.STATE.compare_exchange_strong(wanted, LISTING::CLAIMED))
      continue;
    std::memcpy(place.NAME.data(), name.c_str(), name.size() + 1);
    place.STATE = LISTING::LISTED;
    return;
  }
}

void STRIKE_NAME(const std::string& name) {
  for (TIDY_NAME& place : tidy_names)
    if (place.STATE == LISTING::LISTED && name == place.NAME.data()) place.STATE = LISTING::FREE;
}

// The file is to be what the target is, or what a new file would be.
bool TAKES_RIGHTS_OF(const std::string& target, int descriptor) {
  constexpr mode_t new_file_mode = 0666;  // before the user's mask
  struct stat wanted {};
  struct stat made {};
  if (::stat(target.c_str(), &wanted) != 0) {
    const mode_t mask = ::umask(0);
    ::umask(mask);
    return ::fchmod(descriptor, new_file_mode & ~mask) == 0;
  }
  if (::fstat(descriptor, &made) != 0) return false;
  const bool same_owner = made.st_uid == wanted.st_uid && made.st_gid == wanted.st_gid;
  return (same_owner || ::fchown(descriptor, wanted.st_uid, wanted.st_gid) == 0) &&
         ::fchmod(descriptor, wanted.st_mode & 07777U) == 0;
}

}  // namespace

SIGNALS_WAIT::SIGNALS_WAIT() {
  if (waiting_for++ > 0) return;
  sigset_t ending;
  ::sigemptyset(&ending);
  for (const int signal : ending_signals) ::sigaddset(&ending, signal);
  ::pthread_sigmask(SIG_BLOCK, &ending, &before_waiting);
}

SIGNALS_WAIT::~SIGNALS_WAIT() {
  if (--waiting_for == 0) ::pthread_sigmask(SIG_SETMASK, &before_waiting, nullptr);
}

// Below, no signal comes between a file and its name in the list.

void REMOVE_TEMPORARY::operator()(const std::string* name) const {
  const SIGNALS_WAIT wait;
  ::unlink(name->c_str());
  STRIKE_NAME(*name);
  delete name;
}

int MAKE_TEMPORARY(const std::string& target, std::string_view start, TEMPORARY& temporary,
                   OPENED_FILE& opened) {
  std::string name = std::string(start) + "XXXXXX";
  const SIGNALS_WAIT wait;
  auto owned = std::make_unique<std::string>(name);
  const int descriptor = ::mkostemp(name.data(), O_CLOEXEC);
  if (descriptor < 0) return errno;
  LIST_NAME(name);
  owned->swap(name);
  temporary.reset(owned.release());
  opened.FILE.reset(::fdopen(descriptor, "r+"));
  opened.READABLE = opened.WRITABLE = true;
  int error = opened.FILE && TAKES_RIGHTS_OF(target, descriptor) ? 0 : errno;
  if (!opened.FILE) ::close(descriptor);
  if (error != 0) temporary.reset();
  return error;
}

int PUT_IN_PLACE(TEMPORARY& temporary, OPENED_FILE& opened, const std::string& target) {
  const bool safe = ::fsync(::fileno(opened.FILE.get())) == 0;
  const int error = safe ? 0 : errno;
  if (std::fclose(opened.FILE.release()) != 0 || !safe) return error != 0 ? error : errno;
  const SIGNALS_WAIT wait;
  if (std::rename(temporary->c_str(), target.c_str()) != 0) return errno;
  STRIKE_NAME(*temporary);
  delete temporary.release();
  return 0;
}

void REMOVE_TEMPORARIES_AT_SIGNALS() {
  const auto follow = [](int signal, void (*routine)(int)) {
    struct sigaction found {};
    if (::sigaction(signal, nullptr, &found) != 0 || found.sa_handler != SIG_DFL) return;
    struct sigaction action {};
    action.sa_handler = routine;
    action.sa_flags = SA_RESTART;
    ::sigaction(signal, &action, nullptr);
  };
  for (const int signal : ending_signals) follow(signal, REMOVE_ALL_AND_END);
  follow(SIGXFSZ, LET_WRITING_FAIL);
}

}  // namespace KVA_UTILITIES
