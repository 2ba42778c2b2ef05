// Files by unit number, file names, and whole files as lines. Asks and prints nothing.
#pragma once

#include <string>
#include <string_view>

#include "console_code/kva_utilities/table.h"

namespace KVA_UTILITIES {

inline constexpr int LINE_LENGTH = 255;  // bytes of an input line that are kept

// Lines of a file, numbered from 1, each at most LINE_LENGTH bytes and without trailing blanks.
using FILE_LINES = LIST<std::string>;

// Lines of a file, the first and the last included, among which something is looked for.
struct LINE_RANGE {
  const FILE_LINES& FLINES;
  int FIRST = 1;
  int LAST = 0;
};

// One kind of file that the program opens.
struct FILE_RECORD {
  std::string NAME;        // as opened, with its path; at most 255 characters
  std::string DESCRIPTOR;  // words for messages, such as "Log file"
  int UNIT = 0;            // unit number
  bool OPEN = false;       // file is open
  bool MADE = false;       // it did not exist before it was opened
  std::string EXT;         // default extension, 3 characters
  std::string SHORT_NAME;  // name after the last separator
};

// ---- units ----

enum class UNIT_MODE { UNKNOWN, OLD, NEW, APPEND, REPLACE };

// Opens the file on the unit; a unit in use is closed first. OLD asks for an existing file, for
// reading and writing as far as the system lets, positioned at its start; UNKNOWN makes it when
// it is absent. Returns 0 or the system's error number. Directories are refused, and files that
// another unit has open.
int OPEN_UNIT(int unit, const std::string& name, UNIT_MODE mode);
void CLOSE_UNIT(int unit);
bool IS_OPEN(const std::string& name);  // on any unit
bool UNIT_READABLE(int unit);
bool UNIT_WRITABLE(int unit);

// Next line, cut at LINE_LENGTH, without its line end and trailing blanks. longer, if asked for:
// whether there was more of it.
enum class READ_STATUS { LINE, END, FAILED };
READ_STATUS READ_UNIT(int unit, std::string& line, bool* longer = nullptr);

// Writes one line, which is in the file at once. False when the system refused; no part of the line
// stays then.
bool WRITE_UNIT(int unit, std::string_view line);

// Bytes before the place where the next line of the unit is written; less than 0 where that cannot
// be told, as of a pipe. CUT_UNIT goes back there and takes away what stands behind it.
long UNIT_POSITION(int unit);
bool CUT_UNIT(int unit, long position);

// Opens a file that is written whole, behind what it holds (APPEND) or over it (REPLACE): until
// KEEP_UNIT it stays as it was, and whoever reads it finds the old content or the whole new one. A
// device or a pipe gets lines as they come. Returns 0 or the error number. Lines gather until they
// are written; FLUSH_UNIT writes them and is false when one of all was refused. Without KEEP_UNIT
// closing the unit drops them.
int OPEN_WHOLE(int unit, const std::string& name, UNIT_MODE mode);
bool FLUSH_UNIT(int unit);

// Puts what was written in the file's place and closes the unit. error: number of what went wrong.
enum class KEPT { WHOLE, AS_IT_WAS, TORN };
KEPT KEEP_UNIT(int unit, int& error);

// Replaces the file's content in the same way. False when the new content is not there; error, if
// asked for: number of what went wrong.
bool REPLACE_FILE(const std::string& name, std::string_view content, int* error = nullptr);

// True when anything exists under the name, and when it is a directory.
bool FILE_EXISTS(const std::string& name);
bool IS_DIRECTORY(const std::string& name);

// Names in a directory that begin with start, "/" behind those of directories; none on failure.
std::vector<std::string> FILE_NAMES(const std::string& directory, std::string_view start);

// ---- names ----

// Name behind the last "/" or "\"; with "NOEXT" in control also without the part from its last ".".
std::string FILENAME(std::string_view name, std::string_view control = "");

// A line cut at LINE_LENGTH bytes (not inside a UTF-8 character) without trailing blanks.
std::string CUT_LINE(std::string_view line);

// ---- whole files ----

// Reads the file by its NAME. message is blank on success; else the lines are empty and the
// record is closed.
void READ_FILE(FILE_RECORD& file, FILE_LINES& flines, std::string& message);
void CLOSE_FILE(FILE_RECORD& file);

// The bytes of a file as they are. False when it cannot be read or is no ordinary file.
bool READ_FILE_BYTES(const std::string& name, std::string& bytes);

// The bytes without the UTF-8 mark that some editors put at the start of a file.
std::string_view WITHOUT_MARK(std::string_view bytes);

// Takes the first line off the bytes: at most LINE_LENGTH of it, without trailing blanks. A return
// before its end stays.
std::string_view TAKE_LINE(std::string_view& bytes);

// All lines of the bytes, by TAKE_LINE. The memory of the lines that flines held serves them.
void LINES_OF(std::string_view bytes, FILE_LINES& flines);
int COUNT_LINES(std::string_view bytes);

void CLEAN_LINE(std::string& line);          // control characters to blanks
void CLEAN_FILE(FILE_LINES& flines);         // control characters to blanks
void STRIP_BLANK_LINES(FILE_LINES& flines);  // non-blank lines to the front, the rest blank
void STRIP_COMMENTS(FILE_LINES& flines, std::string_view marker);
void REPLACE_WORD(FILE_LINES& flines, std::string_view word, std::string_view by);
int COUNT_KEY(const FILE_LINES& flines, std::string_view key);

// First line from start to end whose left-adjusted text begins with key, ignoring case; 0 when
// there is none. start or end of 0 or less: the first or the last line. PREVLINE searches backward.
int FINDLINE(const FILE_LINES& flines, std::string_view key, int start, int end);
int PREVLINE(const FILE_LINES& flines, std::string_view key, int start, int end);

// First blank line behind the given one; the count of lines plus 1 when there is none.
int NEXTBLANK(const FILE_LINES& flines, int line);

}  // namespace KVA_UTILITIES
