// The output channel: lines to the console, the log or a unit, and the framed header. Asks nothing.
#include "console_code/console/output.h"

#include <algorithm>  // for max, replace
#include <optional>

#include "console_code/console/settings.h"
#include "console_code/console/state.h"
#include "console_code/console_win.h"
#include "console_code/kva_utilities/columns.h"
#include "console_code/kva_utilities/files.h"
#include "console_code/kva_utilities/numbers.h"
#include "console_code/kva_utilities/text.h"

namespace KVA_CONSOLE {

using namespace KVA_UTILITIES;

namespace {

constexpr char line_break = '|';
constexpr char shown_bar = '\x1C';  // stands for a "|" that is to be shown
constexpr int silent_run = 5;       // run type of a program that says nothing on the console
constexpr int control_columns = 5;  // of a number in a control text
constexpr int text_column = 10;     // where the texts of the header begin

enum class DESTINATION { CONSOLE_AND_LOG, LOG, CONSOLE, UNIT };

// ---- control texts ----

bool HAS_WORD(std::string_view control, std::string_view word) {
  return !control.empty() && INDEXALL(control, word) > 0;
}

// The whole number in the columns behind word. Nothing when there is none, or when the word itself
// is absent.
std::optional<int> CONTROL_NUMBER(std::string_view control, std::string_view word) {
  const int at = INDEXALL(control, word);
  if (at == 0) return std::nullopt;
  const std::size_t start = static_cast<std::size_t>(at) - 1 + word.size();
  NUMBER number;
  const bool read = GETNUM(LEFT_ADJUST(control.substr(start, control_columns)), number);
  return read && number.WHOLE ? std::optional<int>(number.IVAL) : std::nullopt;
}

// ---- one line ----

// Bytes of the character that begins a text and is shown as a blank: a control character of ASCII,
// U+0080 to U+009F, or a mark of direction, U+202A to U+202E and U+2066 to U+2069. 0 when it is
// none.
std::size_t CONTROL_LENGTH(std::string_view text) {
  const auto byte = [text](std::size_t k) {
    return k < text.size() ? static_cast<unsigned char>(text[k]) : 0U;
  };
  if (byte(0) < 0x20U || byte(0) == 0x7FU) return 1;
  if (byte(0) == 0xC2U && byte(1) >= 0x80U && byte(1) <= 0x9FU) return 2;
  if (byte(0) != 0xE2U) return 0;
  const bool embedding = byte(1) == 0x80U && byte(2) >= 0xAAU && byte(2) <= 0xAEU;
  const bool isolate = byte(1) == 0x81U && byte(2) >= 0xA6U && byte(2) <= 0xA9U;
  return embedding || isolate ? 3 : 0;
}

// Whether it has bytes that control characters and marks begin with, or the bar. All bytes are
// looked at, many at a time.
bool MAY_BE_SHOWN_OTHERWISE(std::string_view line) {
  unsigned seen = 0;
  for (const char c : line) {
    const auto byte = static_cast<unsigned char>(c);
    seen |= static_cast<unsigned>(byte < 0x20U) | static_cast<unsigned>(byte == 0x7FU) |
            static_cast<unsigned>(byte == 0xC2U) | static_cast<unsigned>(byte == 0xE2U);
  }
  return seen != 0;
}

std::string AS_SHOWN(std::string_view line) {
  if (!MAY_BE_SHOWN_OTHERWISE(line)) return std::string(line);
  std::string shown;
  while (!line.empty()) {
    const std::size_t length = CONTROL_LENGTH(line);
    if (line.front() == shown_bar)
      shown += line_break;
    else
      shown += length > 0 ? ' ' : line.front();
    line.remove_prefix(std::max<std::size_t>(length, 1));
  }
  return shown;
}

void WRITE_LINE(const std::string& line, DESTINATION destination, int unit) {
  if (destination == DESTINATION::UNIT) {
    WRITE_UNIT(unit, TRIM(line));
    return;
  }
  if (destination != DESTINATION::LOG) WRITE_OUT_CONSOLE(line);
  if (destination != DESTINATION::CONSOLE) WRITE_LOG(line);
}

// ---- header ----

std::string FRAME(int width) {
  std::string line(static_cast<std::size_t>(width), ' ');
  line.front() = '*';
  line.back() = '*';
  return line;
}

// The text from a column on, ended by last_column at the latest.
std::string FRAMED(std::string_view text, int column, int width, int last_column) {
  std::string line = FRAME(width);
  if (column >= 2 && column <= last_column)
    PUT_AT(line, column, CUT_TEXT(text, last_column - column + 1));
  return line;
}

std::string FRAMED_TEXT(std::string_view text, int width) {
  return FRAMED(text, text_column, width, width - 1);
}

std::string FRAMED_COMMENT(std::string_view comment, int width) {
  return FRAMED(comment, text_column, width, width - 2);
}

std::string FRAMED_TITLE(std::string_view title, int width) {
  return FRAMED(title, std::max((width - LENTRIM(title)) / 2, 2), width, width - 1);
}

int HEADER_WIDTH(std::string_view control) {
  constexpr int smallest = 2;  // room for both ends of the frame
  const int width = CONTROL_NUMBER(control, "WIDTH=").value_or(CONSOLE.WIDTH);
  return width >= smallest && width <= INPUT_LENGTH ? width : CONSOLE.WIDTH;
}

}  // namespace

// ---- lines ----

std::string AS_IT_IS(std::string_view text) {
  std::string marked(text);
  if (text.find(line_break) == std::string_view::npos &&
      text.find(shown_bar) == std::string_view::npos)
    return marked;
  std::replace(marked.begin(), marked.end(), shown_bar, ' ');
  std::replace(marked.begin(), marked.end(), line_break, shown_bar);
  return marked;
}

void WRITE_OUT_CONSOLE(std::string_view line) {
  const std::string_view kept = TRIM_VIEW(line);
  std::string text;
  text.reserve(kept.size() + 1);
  text += kept;
  text += '\n';
  WRITE_CONSOLE(text);
}

void WRITE_LOG(std::string_view line) {
  if (!CONSOLE.LOG_FILE.OPEN || WRITE_UNIT(CONSOLE.LOG_FILE.UNIT, TRIM(line))) return;
  WRITE_OUT_CONSOLE("*****Log file " + CONSOLE.LOG_FILE.NAME + " cannot be written and was closed");
  CLOSE_FILE(CONSOLE.LOG_FILE);
}

void WRITE_OUT(std::string_view text, std::string_view control) {
  DESTINATION destination = DESTINATION::CONSOLE_AND_LOG;
  int unit = 0;
  if (HAS_WORD(control, "LOGONLY")) destination = DESTINATION::LOG;
  if (HAS_WORD(control, "NOLOG")) destination = DESTINATION::CONSOLE;
  if (HAS_WORD(control, "UNIT=")) {
    const std::optional<int> number = CONTROL_NUMBER(control, "UNIT=");
    if (!number) return;
    destination = DESTINATION::UNIT;
    unit = *number;
  }
  const bool shifted = HAS_WORD(control, "BLANK");

  if (CONSOLE.DROPPED && destination != DESTINATION::UNIT) return;
  if (CONSOLE.RUN_TYPE == silent_run && destination == DESTINATION::CONSOLE) return;
  if (CONSOLE.RUN_TYPE == silent_run && destination != DESTINATION::UNIT)
    destination = DESTINATION::LOG;

  const std::size_t blanks = !shifted ? 0 : destination == DESTINATION::UNIT ? 2 : 1;
  for (bool last = false; !last;) {
    const std::size_t bar = text.find(line_break);
    last = bar == std::string_view::npos;
    std::string line = AS_SHOWN(text.substr(0, bar));
    if (blanks > 0) line.insert(0, blanks, ' ');
    WRITE_LINE(line, destination, unit);
    if (!last) text.remove_prefix(bar + 1);
  }
}

void WRITE_OUT_BLANK(int n) {
  for (int i = 1; i <= n; ++i) WRITE_OUT(" ");
}

// ---- blocks ----

void ANNOUNCE(std::string_view text, std::string_view control) {
  std::string line = MAKESTARS(CONSOLE.WIDTH);
  const int length = LENTRIM(text);
  if (length > 0) {
    PUT_AT(line, std::max((CONSOLE.WIDTH - length) / 2, 1), TRIM(text) + " ");
  }
  WRITE_OUT(" ", control);
  WRITE_OUT(line, control);
  WRITE_OUT(" ", control);
}

void WARNING(std::string_view text, std::string_view control) {
  WRITE_OUT(" ", control);
  const std::size_t breaks = std::min(text.find_first_not_of(line_break), text.size());
  WRITE_OUT("*****WARNING: " + std::string(text.substr(0, breaks)) +
                AS_IT_IS(TRIM_VIEW(text.substr(breaks))),
            control);
  WRITE_OUT(" ", control);
}

void WRITE_WDIR(std::string_view control) {
  int ierr = 0;
  GET_PARAM("WDIR", ierr);
  // The entry may hold another directory, when the name of this one does not fit it. One that was
  // deleted under us has no name.
  const std::string directory = GET_DIRECTORY();
  if (ierr == 0 && !directory.empty())
    WRITE_OUT("|    Current working directory is now: " + AS_IT_IS(directory) + "|", control);
}

void WRITE_HEADER(std::string_view control) {
  const int width = HEADER_WIDTH(control);
  const std::string frame = FRAME(width);
  const std::string version = REAL_COLUMNS(PROGRAM_VERSION, 5, 2);
  const auto write = [&](const std::string& line) { WRITE_OUT(line, control); };

  write(MAKESTARS(width));
  write(frame);
  write(FRAMED_TITLE(PROGRAM_NAME, width));
  write(frame);
  write(FRAMED_TEXT("     Authors: " + PROGRAM_AUTHORS, width));
  write(FRAMED_TEXT("Version date: " + PROGRAM_VERSION_DATE, width));
  write(FRAMED_TEXT("     Version: " + version, width));
  write(frame);
  write(frame);
  for (const std::string& comment : PROGRAM_COMMENT) write(FRAMED_COMMENT(comment, width));
  write(frame);
  write(frame);
  write(FRAMED_TEXT("Current date and time: " + DATE_AND_TIME(), width));
  write(frame);
  write(MAKESTARS(width));
  WRITE_WDIR(control);
}

}  // namespace KVA_CONSOLE
