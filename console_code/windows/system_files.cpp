// Windows calls behind system_files.h and the questions of files.h about names. Reads no content
// itself.
#include "console_code/kva_utilities/system_files.h"

#include <fcntl.h>  // for _O_BINARY
#include <io.h>     // for _open_osfhandle, _read, _write

#include <algorithm>  // for min
#include <atomic>
#include <cerrno>

#include "console_code/windows/wide_text.h"

namespace KVA_UTILITIES {

namespace {

// Other programs may go on with the file while it is open here.
constexpr DWORD shared_with_all = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

struct CLOSE_HANDLE {
  void operator()(HANDLE handle) const { ::CloseHandle(handle); }
};
using OWNED_HANDLE = std::unique_ptr<void, CLOSE_HANDLE>;

OWNED_HANDLE OPEN_HANDLE(const std::string& name, DWORD access, DWORD disposition, DWORD flags) {
  const HANDLE handle = ::CreateFileW(WIDE_TEXT(name).c_str(), access, shared_with_all, nullptr,
                                      disposition, flags, nullptr);
  return OWNED_HANDLE(handle == INVALID_HANDLE_VALUE ? nullptr : handle);
}

DWORD ATTRIBUTES_OF(const std::string& name) {
  return ::GetFileAttributesW(WIDE_TEXT(name).c_str());
}

constexpr std::uint64_t JOINED(DWORD high, DWORD low) {
  return (static_cast<std::uint64_t>(high) << 32U) | low;
}

}  // namespace

std::filesystem::path SYSTEM_PATH(const std::string& name) {
  return WIDE_TEXT(name);
}

FILE_IDENTITY IDENTITY_OF(const std::string& name) {
  const OWNED_HANDLE file =
      OPEN_HANDLE(name, FILE_READ_ATTRIBUTES, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS);
  BY_HANDLE_FILE_INFORMATION status{};
  if (!file || ::GetFileType(file.get()) != FILE_TYPE_DISK ||
      ::GetFileInformationByHandle(file.get(), &status) == 0)
    return {};
  return {(status.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) == 0, status.nNumberOfLinks > 1,
          status.dwVolumeSerialNumber, JOINED(status.nFileIndexHigh, status.nFileIndexLow),
          static_cast<std::size_t>(JOINED(status.nFileSizeHigh, status.nFileSizeLow))};
}

bool FILE_EXISTS(const std::string& name) {
  return ATTRIBUTES_OF(name) != INVALID_FILE_ATTRIBUTES;
}

bool IS_DIRECTORY(const std::string& name) {
  const DWORD attributes = ATTRIBUTES_OF(name);
  return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

std::vector<std::string> FILE_NAMES(const std::string& directory, std::string_view start) {
  namespace fs = std::filesystem;
  std::vector<std::string> names;
  std::error_code error;
  std::error_code ignored;
  fs::directory_iterator file(SYSTEM_PATH(directory), error);
  for (; !error && file != fs::directory_iterator(); file.increment(error)) {
    const std::string name = NARROW_TEXT(file->path().filename().native());
    if (!name.starts_with(start)) continue;
    names.push_back(name + (file->is_directory(ignored) ? "/" : ""));
  }
  return names;
}

// ---- opening ----

namespace {

// One way to open a file, and the stream's mode for it.
struct ACCESS_WAY {
  const char* MODE;
  bool READABLE;
  bool WRITABLE;
};

constexpr ACCESS_WAY both_ways{"r+b", true, true};
constexpr ACCESS_WAY read_only{"rb", true, false};
constexpr ACCESS_WAY write_only{"wb", false, true};

// A handle that may only append writes behind what any program has written meanwhile.
DWORD RIGHTS(const ACCESS_WAY& way, UNIT_MODE mode) {
  DWORD rights = way.READABLE ? GENERIC_READ : 0;
  if (way.WRITABLE) rights |= mode == UNIT_MODE::APPEND ? FILE_APPEND_DATA : GENERIC_WRITE;
  return rights;
}

DWORD DISPOSITION(UNIT_MODE mode) {
  switch (mode) {
    case UNIT_MODE::UNKNOWN:
    case UNIT_MODE::APPEND:
      return OPEN_ALWAYS;
    case UNIT_MODE::OLD:
      return OPEN_EXISTING;
    case UNIT_MODE::NEW:
      return CREATE_NEW;
    default:
      return CREATE_ALWAYS;
  }
}

// The error number that other systems give for the same.
int LAST_ERROR() {
  switch (::GetLastError()) {
    case ERROR_FILE_NOT_FOUND:
    case ERROR_PATH_NOT_FOUND:
      return ENOENT;
    case ERROR_ACCESS_DENIED:
    case ERROR_SHARING_VIOLATION:
    case ERROR_WRITE_PROTECT:
      return EACCES;
    case ERROR_FILE_EXISTS:
      return EEXIST;
    case ERROR_DISK_FULL:
    case ERROR_HANDLE_DISK_FULL:
      return ENOSPC;
    default:
      return EIO;
  }
}

// The stream owns the handle from here on.
STREAM STREAM_OF(OWNED_HANDLE handle, const ACCESS_WAY& way) {
  const int descriptor = ::_open_osfhandle(reinterpret_cast<std::intptr_t>(handle.get()),
                                           way.WRITABLE ? _O_BINARY : _O_BINARY | _O_RDONLY);
  if (descriptor < 0) return nullptr;
  handle.release();
  STREAM stream(::_fdopen(descriptor, way.MODE));
  if (!stream) ::_close(descriptor);
  return stream;
}

}  // namespace

int OPEN_AS_ALLOWED(const std::string& name, UNIT_MODE mode, OPENED_FILE& opened) {
  const bool must_write =
      mode == UNIT_MODE::NEW || mode == UNIT_MODE::APPEND || mode == UNIT_MODE::REPLACE;
  int error = 0;
  for (const ACCESS_WAY& way : {both_ways, read_only, write_only}) {
    if (must_write && !way.WRITABLE) continue;
    OWNED_HANDLE handle =
        OPEN_HANDLE(name, RIGHTS(way, mode), DISPOSITION(mode), FILE_ATTRIBUTE_NORMAL);
    if (handle) {
      opened.FILE = STREAM_OF(std::move(handle), way);
      opened.READABLE = way.READABLE;
      opened.WRITABLE = way.WRITABLE;
      return opened.FILE ? 0 : EMFILE;
    }
    const int refused = LAST_ERROR();
    if (error == 0) error = refused;
    if (refused != EACCES) break;
  }
  return error;
}

std::ptrdiff_t READ_BYTES(std::FILE* stream, std::span<char> bytes) {
  return ::_read(::_fileno(stream), bytes.data(), static_cast<unsigned>(bytes.size()));
}

// ---- writing ----

std::size_t WRITE_BYTES(std::FILE* stream, std::string_view bytes, int& error) {
  constexpr std::size_t at_once = 1U << 30;
  const int descriptor = ::_fileno(stream);
  std::size_t done = 0;
  error = 0;
  while (done < bytes.size() && error == 0) {
    const auto part = static_cast<unsigned>(std::min(bytes.size() - done, at_once));
    const int written = ::_write(descriptor, bytes.data() + done, part);
    if (written > 0)
      done += static_cast<std::size_t>(written);
    else
      error = written < 0 ? errno : ENOSPC;
  }
  return done;
}

long FILE_POSITION(std::FILE* stream) {
  return static_cast<long>(::_telli64(::_fileno(stream)));
}

bool CUT_AT(std::FILE* stream, long position) {
  const int descriptor = ::_fileno(stream);
  return ::_chsize_s(descriptor, position) == 0 &&
         ::_lseeki64(descriptor, position, SEEK_SET) == position;
}

bool IS_OPEN_HERE(const FILE_IDENTITY& file) {
  for (const DWORD stream : {STD_INPUT_HANDLE, STD_OUTPUT_HANDLE, STD_ERROR_HANDLE}) {
    BY_HANDLE_FILE_INFORMATION status{};
    if (::GetFileInformationByHandle(::GetStdHandle(stream), &status) != 0 &&
        status.dwVolumeSerialNumber == file.DEVICE &&
        JOINED(status.nFileIndexHigh, status.nFileIndexLow) == file.NODE)
      return true;
  }
  return false;
}

// ---- temporary files ----

void REMOVE_TEMPORARY::operator()(const std::string* name) const {
  ::DeleteFileW(WIDE_TEXT(*name).c_str());
  delete name;
}

// Large pages are for those whom the administrator lets have them.
void EXPECT_MEMORY(std::size_t /*bytes*/) {}

// The system gives a new file the rights of its folder.
int MAKE_TEMPORARY(const std::string& /*target*/, std::string_view start, TEMPORARY& temporary,
                   OPENED_FILE& opened) {
  static std::atomic<unsigned> count{0};
  auto name = std::make_unique<std::string>(
      std::string(start) + std::to_string(::GetCurrentProcessId()) + "-" + std::to_string(++count));
  const int error = OPEN_AS_ALLOWED(*name, UNIT_MODE::NEW, opened);
  if (error == 0) temporary.reset(name.release());
  return error;
}

int PUT_IN_PLACE(TEMPORARY& temporary, OPENED_FILE& opened, const std::string& target) {
  constexpr DWORD in_one_step = MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH;
  const int error = ::_commit(::_fileno(opened.FILE.get())) == 0 ? 0 : errno;
  if (std::fclose(opened.FILE.release()) != 0 || error != 0) return error != 0 ? error : EIO;
  if (::MoveFileExW(WIDE_TEXT(*temporary).c_str(), WIDE_TEXT(target).c_str(), in_one_step) == 0)
    return LAST_ERROR();
  delete temporary.release();
  return 0;
}

SIGNALS_WAIT::SIGNALS_WAIT() {}
SIGNALS_WAIT::~SIGNALS_WAIT() {}

// A program that is ended from outside leaves its temporary file to the next that saves there.
void REMOVE_TEMPORARIES_AT_SIGNALS() {}

}  // namespace KVA_UTILITIES
