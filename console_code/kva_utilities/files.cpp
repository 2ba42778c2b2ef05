// Files by unit number, file names, and whole files as lines. Asks and prints nothing.
#include "console_code/kva_utilities/files.h"

#include <algorithm>  // for count, max, min
#include <cerrno>
#include <cstring>  // for memchr
#include <map>
#include <optional>
#include <span>

#include "console_code/kva_utilities/system_files.h"
#include "console_code/kva_utilities/text.h"
#include "console_code/kva_utilities/whole_files.h"

namespace KVA_UTILITIES {

namespace {

// Bytes that were read ahead of the lines.
struct READ_AHEAD {
  std::vector<char> BYTES;
  std::size_t NEXT = 0;
  std::size_t END = 0;
};

struct OPENED_UNIT {
  OPENED_FILE OPENED;  // blank when it is written whole
  FILE_IDENTITY IDENTITY;
  bool AT_START = true;  // no line has been read yet
  READ_AHEAD AHEAD;
  std::optional<WHOLE_FILE> WHOLE;
};

std::map<int, OPENED_UNIT>& UNITS() {
  static std::map<int, OPENED_UNIT> units;
  return units;
}

constexpr int reading_unit = -1;  // of READ_FILE, which may read what another unit has open

// Two units that write to one file would destroy each other's lines.
bool IN_USE_ELSEWHERE(int unit, const std::string& name) {
  const FILE_IDENTITY wanted = IDENTITY_OF(name);
  if (!wanted.REGULAR || unit == reading_unit) return false;
  for (const auto& [other, opened] : UNITS()) {
    const FILE_IDENTITY& held = opened.IDENTITY;
    if (other != unit && held.REGULAR && held.DEVICE == wanted.DEVICE && held.NODE == wanted.NODE)
      return true;
  }
  return false;
}

}  // namespace

// ---- units ----

int OPEN_UNIT(int unit, const std::string& name, UNIT_MODE mode) {
  CLOSE_UNIT(unit);
  if (IS_DIRECTORY(name)) return EISDIR;
  if (IN_USE_ELSEWHERE(unit, name)) return EBUSY;
  OPENED_UNIT opened;
  const int error = OPEN_AS_ALLOWED(name, mode, opened.OPENED);
  if (error != 0) return error;
  opened.IDENTITY = IDENTITY_OF(name);
  UNITS()[unit] = std::move(opened);
  return 0;
}

void CLOSE_UNIT(int unit) {
  const auto found = UNITS().find(unit);
  if (found == UNITS().end()) return;
  if (found->second.WHOLE) DROP_WHOLE(*found->second.WHOLE);
  UNITS().erase(found);
}

bool IS_OPEN(const std::string& name) {
  constexpr int no_unit = -2;
  return IN_USE_ELSEWHERE(no_unit, name);
}

bool UNIT_READABLE(int unit) {
  const auto found = UNITS().find(unit);
  return found != UNITS().end() && found->second.OPENED.READABLE;
}

bool UNIT_WRITABLE(int unit) {
  const auto found = UNITS().find(unit);
  return found != UNITS().end() && (found->second.WHOLE || found->second.OPENED.WRITABLE);
}

namespace {

// Reads further bytes; END when there are none.
READ_STATUS FILL(OPENED_UNIT& opened) {
  constexpr std::size_t buffer_size = 1U << 16;
  READ_AHEAD& ahead = opened.AHEAD;
  ahead.BYTES.resize(buffer_size);
  ahead.NEXT = 0;
  ahead.END = 0;
  const std::ptrdiff_t read = READ_BYTES(opened.OPENED.FILE.get(), ahead.BYTES);
  if (read < 0) return READ_STATUS::FAILED;
  ahead.END = static_cast<std::size_t>(read);
  return read > 0 ? READ_STATUS::LINE : READ_STATUS::END;
}

// Next line without its end, in bounded memory. A device may never end a line.
READ_STATUS READ_LINE(OPENED_UNIT& opened, std::string& line) {
  constexpr std::size_t kept = LINE_LENGTH + 4;  // a mark, and a character that the cut may split
  constexpr std::size_t longest = 1U << 24;      // bytes
  READ_AHEAD& ahead = opened.AHEAD;
  line.clear();
  std::size_t length = 0;
  while (length < longest) {
    if (ahead.NEXT == ahead.END) {
      const READ_STATUS status = FILL(opened);
      if (status != READ_STATUS::LINE) return length > 0 ? READ_STATUS::LINE : status;
    }
    const char* const start = ahead.BYTES.data() + ahead.NEXT;
    const std::size_t held = ahead.END - ahead.NEXT;
    const void* const end = std::memchr(start, '\n', held);
    const std::size_t taken =
        end != nullptr ? static_cast<std::size_t>(static_cast<const char*>(end) - start) : held;
    line.append(start, std::min(taken, kept - line.size()));
    length += taken;
    ahead.NEXT += taken + (end != nullptr ? 1 : 0);
    if (end == nullptr || length >= longest) continue;
    if (length <= kept && line.ends_with('\r')) line.pop_back();
    return READ_STATUS::LINE;
  }
  return READ_STATUS::FAILED;
}

}  // namespace

READ_STATUS READ_UNIT(int unit, std::string& line, bool* longer) {
  line.clear();
  if (longer != nullptr) *longer = false;
  const auto found = UNITS().find(unit);
  if (found == UNITS().end() || !found->second.OPENED.READABLE) return READ_STATUS::FAILED;
  OPENED_UNIT& opened = found->second;
  const READ_STATUS status = READ_LINE(opened, line);
  if (opened.AT_START) line.erase(0, line.size() - WITHOUT_MARK(line).size());
  opened.AT_START = false;
  if (longer != nullptr) *longer = status == READ_STATUS::LINE && line.size() > LINE_LENGTH;
  line.resize(CUT_VIEW(line, LINE_LENGTH).size());
  return status;
}

bool WRITE_UNIT(int unit, std::string_view line) {
  const auto found = UNITS().find(unit);
  if (found == UNITS().end()) return false;
  std::string text;
  text.reserve(line.size() + 1);
  text.append(line).append("\n");
  if (found->second.WHOLE) return WRITE_WHOLE(*found->second.WHOLE, text);
  if (!found->second.OPENED.WRITABLE) return false;
  std::FILE* const stream = found->second.OPENED.FILE.get();
  int error = 0;
  const std::size_t written = WRITE_BYTES(stream, text, error);
  if (error != 0 && written > 0) CUT_AT(stream, FILE_POSITION(stream) - static_cast<long>(written));
  return error == 0;
}

long UNIT_POSITION(int unit) {
  const auto found = UNITS().find(unit);
  if (found == UNITS().end() || found->second.WHOLE) return -1;
  return FILE_POSITION(found->second.OPENED.FILE.get());
}

bool CUT_UNIT(int unit, long position) {
  const auto found = UNITS().find(unit);
  if (found == UNITS().end() || position < 0 || !found->second.OPENED.WRITABLE) return false;
  return CUT_AT(found->second.OPENED.FILE.get(), position);
}

// ---- files that are written whole ----

int OPEN_WHOLE(int unit, const std::string& name, UNIT_MODE mode) {
  CLOSE_UNIT(unit);
  if (IS_DIRECTORY(name)) return EISDIR;
  if (IN_USE_ELSEWHERE(unit, name)) return EBUSY;
  OPENED_UNIT opened;
  const int error = PREPARE_WHOLE(opened.WHOLE.emplace(), name, mode);
  if (error != 0) return error;
  opened.IDENTITY = IDENTITY_OF(name);
  UNITS()[unit] = std::move(opened);
  return 0;
}

bool FLUSH_UNIT(int unit) {
  const auto found = UNITS().find(unit);
  return found != UNITS().end() && (!found->second.WHOLE || FLUSH_WHOLE(*found->second.WHOLE));
}

KEPT KEEP_UNIT(int unit, int& error) {
  const auto found = UNITS().find(unit);
  error = EBADF;
  if (found == UNITS().end() || !found->second.WHOLE) return KEPT::AS_IT_WAS;
  const KEPT kept = KEEP_WHOLE(*found->second.WHOLE);
  error = found->second.WHOLE->ERROR;
  UNITS().erase(found);
  return kept;
}

bool REPLACE_FILE(const std::string& name, std::string_view content, int* error) {
  WHOLE_FILE file;
  file.ERROR = IS_DIRECTORY(name) ? EISDIR : PREPARE_WHOLE(file, name, UNIT_MODE::REPLACE);
  bool whole = false;
  if (file.ERROR == 0) {
    WRITE_WHOLE(file, content);
    whole = KEEP_WHOLE(file) == KEPT::WHOLE;
  }
  if (error != nullptr) *error = file.ERROR;
  return whole;
}

// ---- names ----

std::string FILENAME(std::string_view name, std::string_view control) {
  const std::string trimmed = TRIM(name);
  const std::string last = trimmed.substr(trimmed.find_last_of("/\\") + 1);
  if (INDEXALL(control, "NOEXT") == 0) return last;
  return last.substr(0, last.rfind('.'));
}

std::string CUT_LINE(std::string_view line) {
  return CUT_TEXT(line, LINE_LENGTH);
}

// ---- whole files ----

namespace {

// All lines of the file; false when it cannot be opened.
bool READ_LINES(const std::string& name, FILE_LINES& flines, bool& failed) {
  constexpr std::size_t usual_length = 32;  // bytes of a line
  const FILE_IDENTITY identity = IDENTITY_OF(name);
  if (!identity.REGULAR || OPEN_UNIT(reading_unit, name, UNIT_MODE::OLD) != 0) return false;
  flines.ITEMS.reserve(identity.SIZE / usual_length);
  std::string line;
  READ_STATUS status = READ_UNIT(reading_unit, line);
  for (; status == READ_STATUS::LINE; status = READ_UNIT(reading_unit, line)) flines.ADD(line);
  failed = status == READ_STATUS::FAILED;
  CLOSE_UNIT(reading_unit);
  return true;
}

}  // namespace

void READ_FILE(FILE_RECORD& file, FILE_LINES& flines, std::string& message) {
  message.clear();
  flines.CLEAR();
  const std::string name = TRIM(file.NAME);
  if (name.empty()) {
    message = "File cannot be read: No file name given";
    return;
  }
  bool failed = false;
  if (!READ_LINES(name, flines, failed)) {
    message = "*****Error opening file: " + name;
    CLOSE_FILE(file);
  } else if (failed || flines.COUNT() == 0) {
    message = "*****Error in reading file: " + name + " or it is empty";
    flines.CLEAR();
    CLOSE_FILE(file);
  }
}

bool READ_FILE_BYTES(const std::string& name, std::string& bytes) {
  bytes.clear();
  const FILE_IDENTITY identity = IDENTITY_OF(name);
  OPENED_FILE opened;
  if (!identity.REGULAR || OPEN_AS_ALLOWED(name, UNIT_MODE::OLD, opened) != 0 || !opened.READABLE)
    return false;
  constexpr std::size_t step = 1U << 16;
  std::size_t held = 0;
  bytes.resize(identity.SIZE + 1);  // the end of the file is seen without growing
  while (true) {
    if (held == bytes.size()) bytes.resize(held + std::max(held, step));
    const std::ptrdiff_t read = READ_BYTES(opened.FILE.get(), std::span(bytes).subspan(held));
    if (read < 0) bytes.clear();
    if (read < 0) return false;
    held += static_cast<std::size_t>(read);
    if (read > 0) continue;
    bytes.resize(held);
    return true;
  }
}

std::string_view WITHOUT_MARK(std::string_view bytes) {
  constexpr std::string_view mark = "\xEF\xBB\xBF";
  return bytes.substr(bytes.starts_with(mark) ? mark.size() : 0);
}

std::string_view TAKE_LINE(std::string_view& bytes) {
  const std::size_t end = std::min(bytes.find('\n'), bytes.size());
  const std::string_view line = CUT_VIEW(bytes.substr(0, end), LINE_LENGTH);
  bytes.remove_prefix(std::min(end + 1, bytes.size()));
  return line;
}

void LINES_OF(std::string_view bytes, FILE_LINES& flines) {
  flines.RESIZE(COUNT_LINES(bytes));
  for (std::string& line : flines) line = TAKE_LINE(bytes);
}

int COUNT_LINES(std::string_view bytes) {
  const bool open_line = !bytes.empty() && !bytes.ends_with('\n');
  return static_cast<int>(std::count(bytes.begin(), bytes.end(), '\n')) + (open_line ? 1 : 0);
}

void CLOSE_FILE(FILE_RECORD& file) {
  CLOSE_UNIT(file.UNIT);
  file.OPEN = false;
  file.NAME.clear();
  file.SHORT_NAME.clear();
}

void CLEAN_LINE(std::string& line) {
  for (char& c : line) c = static_cast<unsigned char>(c) < ' ' ? ' ' : c;
  line.resize(static_cast<std::size_t>(LENTRIM(line)));
}

void CLEAN_FILE(FILE_LINES& flines) {
  for (std::string& line : flines) CLEAN_LINE(line);
}

void STRIP_BLANK_LINES(FILE_LINES& flines) {
  int kept = 0;
  for (int i = 1; i <= flines.COUNT(); ++i) {
    if (LENTRIM(flines(i)) == 0) continue;
    ++kept;
    if (kept != i) flines(kept).swap(flines(i));
  }
}

void STRIP_COMMENTS(FILE_LINES& flines, std::string_view marker) {
  if (marker.empty()) return;
  for (std::string& line : flines) line = TRIM(std::string_view(line).substr(0, line.find(marker)));
}

void REPLACE_WORD(FILE_LINES& flines, std::string_view word, std::string_view by) {
  const TEXT_SEARCH wanted = SEARCH_FOR(word);
  for (std::string& line : flines) {
    std::size_t start = 0;
    while (true) {
      const int at = INDEXALL(std::string_view(line).substr(start), wanted);
      if (at == 0) break;
      const std::size_t position = start + static_cast<std::size_t>(at - 1);
      line.replace(position, word.size(), by);
      start = position + by.size();
    }
    if (start > 0) line = CUT_LINE(line);
  }
}

int COUNT_KEY(const FILE_LINES& flines, std::string_view key) {
  int count = 0;
  for (const std::string& line : flines)
    if (INDEXALL(line, key) > 0) ++count;
  return count;
}

namespace {

bool LINE_BEGINS_WITH(const std::string& line, std::string_view key) {
  const std::size_t first = line.find_first_not_of(' ');
  return first != std::string::npos && BEGINS_WITH(std::string_view(line).substr(first), key);
}

int FIRST_LINE(int start) {
  return start <= 0 ? 1 : start;
}

int LAST_LINE(const FILE_LINES& flines, int end) {
  return end <= 0 || end > flines.COUNT() ? flines.COUNT() : end;
}

}  // namespace

int FINDLINE(const FILE_LINES& flines, std::string_view key, int start, int end) {
  for (int i = FIRST_LINE(start); i <= LAST_LINE(flines, end); ++i)
    if (LINE_BEGINS_WITH(flines(i), key)) return i;
  return 0;
}

int PREVLINE(const FILE_LINES& flines, std::string_view key, int start, int end) {
  for (int i = LAST_LINE(flines, end); i >= FIRST_LINE(start); --i)
    if (LINE_BEGINS_WITH(flines(i), key)) return i;
  return 0;
}

int NEXTBLANK(const FILE_LINES& flines, int line) {
  int i = FIRST_LINE(line + 1);
  while (i <= flines.COUNT() && LENTRIM(flines(i)) > 0) ++i;
  return std::min(i, flines.COUNT() + 1);
}

}  // namespace KVA_UTILITIES
