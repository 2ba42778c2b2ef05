// Files that are written whole: beside the old one and then put in its place, or in place and taken
// back.
#include "console_code/kva_utilities/whole_files.h"

#include <cerrno>
#include <chrono>
#include <filesystem>
#include <optional>
#include <vector>

#include "console_code/kva_utilities/text.h"

namespace KVA_UTILITIES {

namespace {

constexpr std::string_view temporary_mark = ".saving-";
constexpr std::size_t gathered = 1U << 16;  // bytes that are written at once

// ---- names ----

// The file that links lead to, whether it exists or not, so that a link stays a link.
std::string END_OF_LINKS(const std::string& name) {
  constexpr int longest_chain = 40;
  std::filesystem::path path = SYSTEM_PATH(name);
  std::error_code error;
  if (!std::filesystem::is_symlink(path, error)) return name;
  for (int i = 0; i < longest_chain && std::filesystem::is_symlink(path, error); ++i)
    path = path.parent_path() / std::filesystem::read_symlink(path, error);
  const std::u8string end = path.u8string();
  return {end.begin(), end.end()};
}

// What the names of a file's temporary files begin with. A name must not become too long by it.
std::string TEMPORARY_START(const std::string& target) {
  constexpr std::size_t longest = 200;  // bytes of 255
  const std::string last = FILENAME(target);
  const std::string folder = target.substr(0, target.size() - last.size());
  return folder + std::string(CUT_VIEW(last, longest)) + std::string(temporary_mark);
}

// A program that is killed while it saves leaves its temporary file. A young one may be that of a
// program that is still at it.
void REMOVE_STALE_TEMPORARIES(const std::string& target) {
  namespace fs = std::filesystem;
  constexpr std::chrono::minutes stale{1};
  const std::string start = TEMPORARY_START(target);
  const std::string first = FILENAME(start);
  const std::string folder = start.substr(0, start.size() - first.size());
  for (const std::string& name : FILE_NAMES(folder.empty() ? "." : folder, first)) {
    const fs::path file = SYSTEM_PATH(folder + name);
    std::error_code error;
    const fs::file_time_type written = fs::last_write_time(file, error);
    if (error) continue;  // its program has finished meanwhile
    if (fs::file_time_type::clock::now() - written > stale) fs::remove(file, error);
  }
}

// ---- opening ----

int OPEN_BESIDE(WHOLE_FILE& file) {
  return MAKE_TEMPORARY(file.TARGET, TEMPORARY_START(file.TARGET), file.BESIDE, file.OPENED);
}

void CLOSE_BESIDE(WHOLE_FILE& file) {
  file.OPENED = {};
  file.BESIDE.reset();
}

// The file itself, which must exist. A file on a disk can be brought back.
int OPEN_IN_PLACE(WHOLE_FILE& file, bool on_disk) {
  const UNIT_MODE mode = on_disk && !file.BEHIND ? UNIT_MODE::OLD : UNIT_MODE::APPEND;
  const int error = OPEN_AS_ALLOWED(file.TARGET, mode, file.OPENED);
  if (error != 0) return error;
  if (!file.OPENED.WRITABLE) return EACCES;
  file.IN_PLACE = true;
  file.AT_ONCE = on_disk;
  file.START = static_cast<long>(IDENTITY_OF(file.TARGET).SIZE);
  file.RESTORABLE = on_disk && (file.BEHIND || READ_FILE_BYTES(file.TARGET, file.OLD));
  return 0;
}

// ---- copying ----

// passed: counts what the second file got.
int COPY_BYTES(std::FILE* from, std::FILE* to, std::size_t& passed) {
  std::vector<char> bytes(gathered);
  while (true) {
    const std::ptrdiff_t read = READ_BYTES(from, bytes);
    if (read < 0) return EIO;
    if (read == 0) return 0;
    int error = 0;
    passed += WRITE_BYTES(to, {bytes.data(), static_cast<std::size_t>(read)}, error);
    if (error != 0) return error;
  }
}

// The old content, in front of what is written behind it.
int COPY_OLD(WHOLE_FILE& file) {
  if (!file.BEHIND || !FILE_EXISTS(file.TARGET)) return 0;
  OPENED_FILE old;
  const int error = OPEN_AS_ALLOWED(file.TARGET, UNIT_MODE::OLD, old);
  if (error != 0) return error;
  return old.READABLE ? COPY_BYTES(old.FILE.get(), file.OPENED.FILE.get(), file.PASSED) : EACCES;
}

// Makes what the first bytes go to.
bool START_WHOLE(WHOLE_FILE& file) {
  if (file.OPENED.FILE || file.ERROR != 0) return file.ERROR == 0;
  REMOVE_STALE_TEMPORARIES(file.TARGET);
  file.ERROR = OPEN_BESIDE(file);
  if (file.ERROR == 0) file.ERROR = COPY_OLD(file);
  return file.ERROR == 0;
}

// ---- in place ----

// What was there before stands there again.
bool RESTORE(const WHOLE_FILE& file) {
  if (file.PASSED == 0) return true;
  if (!file.RESTORABLE) return false;
  if (file.BEHIND) return CUT_AT(file.OPENED.FILE.get(), file.START);
  OPENED_FILE again;
  int error = OPEN_AS_ALLOWED(file.TARGET, UNIT_MODE::OLD, again);
  if (error == 0) WRITE_BYTES(again.FILE.get(), file.OLD, error);
  return error == 0 && CUT_AT(again.FILE.get(), static_cast<long>(file.OLD.size()));
}

// Hands all bytes to the system.
bool HAND_OVER(WHOLE_FILE& file) {
  if (file.WAITING.empty() || !START_WHOLE(file)) return file.ERROR == 0;
  file.PASSED += WRITE_BYTES(file.OPENED.FILE.get(), file.WAITING, file.ERROR);
  file.WAITING.clear();
  return file.ERROR == 0;
}

// Takes away what is left of an old content that was longer.
int CUT_REST(const WHOLE_FILE& file) {
  const bool over = file.RESTORABLE && !file.BEHIND;
  return over && !CUT_AT(file.OPENED.FILE.get(), static_cast<long>(file.PASSED)) ? EIO : 0;
}

// Some files cannot change their place with another, such as one that is mounted.
bool MUST_STAY(int error) {
  return error == EBUSY || error == EACCES || error == EPERM;
}

// The rest of the content, of a file on a disk all of it; where that fails, the old one again.
KEPT KEEP_IN_PLACE(WHOLE_FILE& file) {
  std::optional<SIGNALS_WAIT> wait;
  if (file.AT_ONCE) wait.emplace();
  if (HAND_OVER(file)) file.ERROR = CUT_REST(file);
  if (file.ERROR == 0) return KEPT::WHOLE;
  return RESTORE(file) ? KEPT::AS_IT_WAS : KEPT::TORN;
}

// Writes the temporary file's content over the target.
KEPT COPY_IN_PLACE(WHOLE_FILE& file) {
  WHOLE_FILE over;
  over.TARGET = file.TARGET;
  OPENED_FILE beside;
  file.ERROR = OPEN_AS_ALLOWED(*file.BESIDE, UNIT_MODE::OLD, beside);
  if (file.ERROR == 0) file.ERROR = OPEN_IN_PLACE(over, true);
  if (file.ERROR != 0) return KEPT::AS_IT_WAS;
  const SIGNALS_WAIT wait;
  over.ERROR = COPY_BYTES(beside.FILE.get(), over.OPENED.FILE.get(), over.PASSED);
  const KEPT kept = KEEP_IN_PLACE(over);
  file.ERROR = over.ERROR;
  return kept;
}

// The temporary file takes the target's place, or else its content does.
KEPT KEEP_BESIDE(WHOLE_FILE& file) {
  if (!START_WHOLE(file) || !HAND_OVER(file)) return KEPT::AS_IT_WAS;
  file.ERROR = PUT_IN_PLACE(file.BESIDE, file.OPENED, file.TARGET);
  if (file.ERROR == 0) return KEPT::WHOLE;
  return MUST_STAY(file.ERROR) ? COPY_IN_PLACE(file) : KEPT::AS_IT_WAS;
}

}  // namespace

int PREPARE_WHOLE(WHOLE_FILE& file, const std::string& name, UNIT_MODE mode) {
  const FILE_IDENTITY found = IDENTITY_OF(name);
  file.BEHIND = mode == UNIT_MODE::APPEND;
  file.TARGET = name;
  const bool exists = FILE_EXISTS(name);
  if (exists && (!found.REGULAR || found.SHARED || IS_OPEN_HERE(found)))
    return OPEN_IN_PLACE(file, found.REGULAR);
  file.TARGET = END_OF_LINKS(name);
  OPENED_FILE old;
  int error = exists ? OPEN_AS_ALLOWED(name, UNIT_MODE::APPEND, old) : 0;
  if (error == 0) error = OPEN_BESIDE(file);
  CLOSE_BESIDE(file);
  return error != 0 && old.WRITABLE ? OPEN_IN_PLACE(file, true) : error;
}

bool FLUSH_WHOLE(WHOLE_FILE& file) {
  return file.AT_ONCE ? file.ERROR == 0 : HAND_OVER(file);
}

bool WRITE_WHOLE(WHOLE_FILE& file, std::string_view bytes) {
  while (file.ERROR == 0 && !bytes.empty()) {
    const std::string_view part = bytes.substr(0, gathered);
    bytes.remove_prefix(part.size());
    file.WAITING += part;
    if (file.WAITING.size() >= gathered) FLUSH_WHOLE(file);
  }
  return file.ERROR == 0;
}

KEPT KEEP_WHOLE(WHOLE_FILE& file) {
  const KEPT kept = file.IN_PLACE ? KEEP_IN_PLACE(file) : KEEP_BESIDE(file);
  CLOSE_BESIDE(file);
  return kept;
}

bool DROP_WHOLE(WHOLE_FILE& file) {
  const bool untouched = !file.IN_PLACE || file.PASSED == 0;
  CLOSE_BESIDE(file);
  return untouched;
}

}  // namespace KVA_UTILITIES
