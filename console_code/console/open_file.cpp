// Opening the files that the user names: policy on names, extensions, overwriting and access.
// Reads and writes no content.
#include "console_code/console/open_file.h"

#include <algorithm>  // for sort
#include <array>
#include <cerrno>        // for ENAMETOOLONG
#include <system_error>  // for generic_category

#include "console_code/console/input.h"
#include "console_code/console/output.h"
#include "console_code/console/prompts.h"
#include "console_code/console/settings.h"
#include "console_code/console/state.h"
#include "console_code/console_win.h"
#include "console_code/kva_utilities/columns.h"
#include "console_code/kva_utilities/system_files.h"
#include "console_code/kva_utilities/text.h"

namespace KVA_CONSOLE {

using namespace KVA_UTILITIES;

namespace {

constexpr int peek_unit = 97;  // of a file that is looked into before it is opened

enum class OPEN_MODE { UNKNOWN, APPEND, NEW, OLD, REPLACE, CONFIRM };

// What the control text of OPEN_FILE asks for.
struct OPEN_REQUEST {
  OPEN_MODE MODE = OPEN_MODE::UNKNOWN;
  bool TO_READ = false;  // read access is wanted, else write access
  bool MACRO = false;    // to be replayed
  bool WHOLE = false;    // nothing of it is seen before it is kept
  std::string WORD = "Open";
};

OPEN_REQUEST READ_CONTROL(std::string_view control) {
  const auto has = [control](std::string_view word) { return INDEXALL(control, word) > 0; };
  OPEN_REQUEST request;
  if (has("APPEND")) request.MODE = OPEN_MODE::APPEND;
  if (has("NEW")) request.MODE = OPEN_MODE::NEW;
  if (has("OLD")) request.MODE = OPEN_MODE::OLD;
  if (has("REPLACE")) request.MODE = has("CONF") ? OPEN_MODE::CONFIRM : OPEN_MODE::REPLACE;
  if (has("SAVE")) request.WORD = "Save";
  if (has("READ")) request.TO_READ = true;
  if (has("MACRO")) request.MACRO = request.TO_READ;
  request.WHOLE = has("WHOLE");
  return request;
}

// ---- the name ----

// True when the file was open and stays so.
bool KEEP_OPEN_FILE(FILE_RECORD& file) {
  if (!file.OPEN) return false;
  if (CONSOLE.INSTRING_LEN == 0) {
    WRITE_OUT(TRIM(file.DESCRIPTOR) + " named " + AS_IT_IS(file.NAME) + " is already open");
    if (GET_ANSWER_YN("Do you want to close this and open a new file", "Y") != 'Y') return true;
  }
  CLOSE_FILE(file);
  return false;
}

// Asks for a name when none is pending. False when none is given.
bool NAME_IS_PENDING(const FILE_RECORD& file, const OPEN_REQUEST& request) {
  if (CONSOLE.INSTRING_LEN > 0) return true;
  if (CONSOLE.MACRO_STATE == -1) {
    WRITE_OUT(" *****Selecting a filename this way will not be recorded by the Macro");
    WRITE_OUT(" *****For recording enter the filename with the command");
  }
  WRITE_OUT_BLANK(1);
  GET_INPUT_FILENAME(request.WORD, file.DESCRIPTOR, file.EXT, request.MODE == OPEN_MODE::OLD);
  return CONSOLE.INSTRING_LEN > 0;
}

std::string UNQUOTED(std::string_view typed) {
  const std::string path = LEFT_ADJUST(typed);
  const bool quoted = path.size() >= 2 && (path.front() == '"' || path.front() == '\'') &&
                      path.back() == path.front();
  return quoted ? LEFT_ADJUST(std::string_view(path).substr(1, path.size() - 2)) : path;
}

std::string HOME_EXPANDED(std::string path) {
  std::string home;
  const bool at_home = path.starts_with('~') && path.find_first_of(PATH_SEPARATORS) == 1;
  if ((path == "~" || at_home) && GET_HOME(home)) path.replace(0, 1, home);
  return path;
}

// The name that is meant: one that must exist and does not is tried with the extension, since its
// "." may be that of a folder: ../data/quartz
std::string MEANT_NAME(const std::string& typed, const FILE_RECORD& file, OPEN_MODE mode) {
  const std::string name = HOME_EXPANDED(WITH_EXTENSION(typed, file.EXT));
  if (mode != OPEN_MODE::OLD || FILE_EXISTS(name)) return name;
  if (FILENAME(name).find('.') != std::string::npos) return name;
  const std::string extended = name + "." + file.EXT;
  return FILE_EXISTS(extended) ? extended : name;
}

// Leaves the name of a macro pending and takes the words behind it, which are its arguments. A file
// that has the whole text as its name is that file.
std::vector<std::string> TAKE_ARGUMENTS(const FILE_RECORD& file) {
  std::vector<std::string> words = FILE_WORDS(CONSOLE.INSTRING);
  const auto exists = [&file](const std::string& typed) {
    return FILE_EXISTS(MEANT_NAME(UNQUOTED(typed), file, OPEN_MODE::OLD));
  };
  if (words.size() < 2 || exists(CONSOLE.INSTRING) || !exists(words.front())) return {};
  CONSOLE.INSTRING = words.front();
  CONSOLE.INSTRING_LEN = LENTRIM(CONSOLE.INSTRING);
  words.erase(words.begin());
  return words;
}

// The pending text as a file name, blank when there is none in it.
std::string TAKE_NAME(const FILE_RECORD& file, const OPEN_REQUEST& request) {
  const std::string typed = UNQUOTED(CONSOLE.INSTRING);
  MARK_ANSWER();
  CLEAR_INPUT();
  return typed.empty() ? "" : MEANT_NAME(typed, file, request.MODE);
}

// ---- kinds of files ----

enum class KIND { CIF, CRYSTAL_OUTPUT, DATA, MACRO, LOG, SHEET, GRAPH, SCRIPT, OTHER };

struct KIND_ROW {
  std::string_view EXTENSION;
  KIND CODE;
};

// The files that the program knows by their extensions.
// clang-format off
constexpr std::array kinds{
    KIND_ROW{"cif", KIND::CIF},
    KIND_ROW{"out", KIND::CRYSTAL_OUTPUT},
    KIND_ROW{"dat", KIND::DATA},
    KIND_ROW{"mcr", KIND::MACRO},
    KIND_ROW{"log", KIND::LOG},
    KIND_ROW{"csv", KIND::SHEET},
    KIND_ROW{"tsv", KIND::SHEET},
    KIND_ROW{"tex", KIND::SHEET},
    KIND_ROW{"svg", KIND::GRAPH},
    KIND_ROW{"pdf", KIND::GRAPH},
    KIND_ROW{"png", KIND::GRAPH},
    KIND_ROW{"gp",  KIND::SCRIPT},
};
// clang-format on

KIND KIND_OF(std::string_view extension) {
  for (const KIND_ROW& row : kinds)
    if (EQUAL_TEXT(row.EXTENSION, extension)) return row.CODE;
  return KIND::OTHER;
}

// Whether a file of this name would be taken for another kind than those with the extension.
bool IS_OF_ANOTHER_KIND(const std::string& name, std::string_view extension) {
  const std::string last = FILENAME(name);
  const std::size_t dot = last.rfind('.');
  if (dot == std::string::npos) return false;
  const KIND kind = KIND_OF(last.substr(dot + 1));
  return kind != KIND::OTHER && kind != KIND_OF(extension);
}

// Lines of a file that can be read again and again; 0 of any other.
int LINES_IN(const std::string& name) {
  int lines = 0;
  if (!IDENTITY_OF(name).REGULAR || OPEN_UNIT(peek_unit, name, UNIT_MODE::OLD) != 0) return lines;
  for (std::string line; READ_UNIT(peek_unit, line) == READ_STATUS::LINE;) ++lines;
  CLOSE_UNIT(peek_unit);
  return lines;
}

// The first line that is neither blank nor a comment begins a data block.
bool IS_CIF(const std::string& name) {
  if (!IDENTITY_OF(name).REGULAR || OPEN_UNIT(peek_unit, name, UNIT_MODE::OLD) != 0) return false;
  std::string line;
  bool found = false;
  while (!found && READ_UNIT(peek_unit, line) == READ_STATUS::LINE) {
    line.erase(0, line.find_first_not_of(" \t"));
    found = !line.empty() && line.front() != '#';
  }
  CLOSE_UNIT(peek_unit);
  return found && BEGINS_WITH(line, "data_");
}

// ---- opening ----

// True when the mode allows a file of this name; unit_mode is the way to open it.
bool MODE_ALLOWS(OPEN_MODE mode, const std::string& name, UNIT_MODE& unit_mode) {
  const bool exists = FILE_EXISTS(name);
  switch (mode) {
    case OPEN_MODE::UNKNOWN:
      unit_mode = UNIT_MODE::UNKNOWN;
      return true;
    case OPEN_MODE::APPEND:
      unit_mode = UNIT_MODE::APPEND;
      return true;
    case OPEN_MODE::NEW:
      unit_mode = UNIT_MODE::NEW;
      if (exists)
        WRITE_OUT("*****File " + AS_IT_IS(name) + " already exists, overwriting not allowed");
      return !exists;
    case OPEN_MODE::OLD:
      unit_mode = UNIT_MODE::OLD;
      if (!exists)
        WRITE_OUT("*****File " + AS_IT_IS(name) + " does not exist, but is required to pre-exist");
      return exists;
    case OPEN_MODE::REPLACE:
      unit_mode = UNIT_MODE::REPLACE;
      return true;
    case OPEN_MODE::CONFIRM:
      unit_mode = exists ? UNIT_MODE::REPLACE : UNIT_MODE::NEW;
      if (!exists) return true;
      WRITE_OUT("*****File " + AS_IT_IS(name) + " exists");
      return GET_ANSWER_YN("Do you want to overwrite it", "N") == 'Y';
  }
  return false;
}

// A longer name would not fit the record, and cut it would be another file.
int OPEN_NAMED_UNIT(int unit, const std::string& name, UNIT_MODE mode, bool whole) {
  if (name.size() > INPUT_LENGTH) return ENAMETOOLONG;
  return whole ? OPEN_WHOLE(unit, name, mode) : OPEN_UNIT(unit, name, mode);
}

// True when the open file has the access that is wanted; else it is closed, with a message.
bool ACCESS_GRANTED(const FILE_RECORD& file, const std::string& name, bool to_read) {
  if (to_read ? UNIT_READABLE(file.UNIT) : UNIT_WRITABLE(file.UNIT)) return true;
  CLOSE_UNIT(file.UNIT);
  WARNING("Error trying to open file   " + name, "NOLOG");
  WRITE_OUT(to_read ? "     Read access was requested, but file is locked against reading"
                    : "     Write access was requested, but file locked against writing",
            "NOLOG");
  return false;
}

bool OPEN_NAMED_FILE(FILE_RECORD& file, const std::string& name, const OPEN_REQUEST& request) {
  UNIT_MODE unit_mode = UNIT_MODE::OLD;
  if (!MODE_ALLOWS(request.MODE, name, unit_mode)) return false;
  file.MADE = !FILE_EXISTS(name);
  if (OPEN_NAMED_UNIT(file.UNIT, name, unit_mode, request.WHOLE) != 0) {
    WRITE_OUT("Error trying to open file " + file.DESCRIPTOR, "NOLOG");
    WRITE_OUT("Named " + AS_IT_IS(name) + " try again", "NOLOG");
    CLOSE_UNIT(file.UNIT);
    return false;
  }
  return ACCESS_GRANTED(file, name, request.TO_READ);
}

// name is our own copy: a log that cannot be written loses its name while it is reported.
// lines: that stand in it already.
void REPORT_OPEN(const FILE_RECORD& file, const std::string& name, int lines) {
  WRITE_OUT_BLANK(1);
  if (!file.OPEN) return;
  WRITE_OUT("Successfully opened " + file.DESCRIPTOR);
  WRITE_OUT("Named " + AS_IT_IS(name));
  if (lines > 0)
    WRITE_OUT("     The file exists: this is added behind its " + INTEGER_COLUMNS(lines) +
              " lines");
  WRITE_OUT_BLANK(1);
}

}  // namespace

std::string IN_DIRECTORY(const std::string& name) {
  return GET_DIRECTORY() + PATH_SEPARATORS.front() + name;
}

std::string USER_PATH(std::string_view typed) {
  return HOME_EXPANDED(UNQUOTED(typed));
}

std::string WITH_EXTENSION(const std::string& name, std::string_view ext) {
  return name.find('.') == std::string::npos ? name + "." + TRIM(ext) : name;
}

void TAKE_CHOSEN(const std::string& path) {
  const std::string name = FILENAME(path);
  const bool moved = CHANGE_DIRECTORY(path.substr(0, path.size() - name.size()));
  if (moved) SAVE_WORK_DIR();
  CONSOLE.INSTRING = moved && name.size() <= INPUT_LENGTH ? name : path;
  CONSOLE.INSTRING_LEN = LENTRIM(CONSOLE.INSTRING);
}

namespace {

// Asks by the system's dialogue. False when the question must be put at the prompt: a macro answers
// it by a line.
bool CHOSEN_BY_DIALOGUE(const FILE_QUESTION& question) {
  if (CONSOLE.MACRO_STATE == 1 || CONSOLE.DROPPED) return false;
  std::string path;
  const FILE_CHOICE choice = CHOOSE_FILE(question, path);
  if (choice == FILE_CHOICE::CHOSEN) TAKE_CHOSEN(path);
  return choice != FILE_CHOICE::NO_DIALOGUE;
}

}  // namespace

void GET_INPUT_FILENAME(std::string_view word, std::string_view descriptor, std::string_view ext,
                        bool must_exist) {
  int ierr = 0;
  FILE_QUESTION question{TRIM(word) + " " + TRIM(descriptor), TRIM(descriptor), TRIM(ext),
                         GET_PARAM("WDIR", ierr), must_exist};
  if (CHOSEN_BY_DIALOGUE(question)) return;
  GET_INPUT("     " + TRIM(word) + " " + TRIM(descriptor) + " (*." + TRIM(ext) + "):",
            {.FILES = true});
}

namespace {

// Opens the file that the pending text names. Without success there is a message, and the name may
// be asked for again unless it is given up.
enum class OPENING { DONE, AGAIN, GIVEN_UP };
OPENING OPEN_PENDING(FILE_RECORD& file, const OPEN_REQUEST& request) {
  if (request.MACRO) CONSOLE.MACRO_ARGUMENTS = TAKE_ARGUMENTS(file);
  const std::string name = TAKE_NAME(file, request);
  const int lines = request.MODE == OPEN_MODE::APPEND ? LINES_IN(name) : 0;
  if (name.empty()) {
    WRITE_OUT("*****Failed to read file name, try again");
  } else if (request.MODE != OPEN_MODE::OLD && IS_OF_ANOTHER_KIND(name, file.EXT)) {
    WRITE_OUT("*****The file " + AS_IT_IS(name) + " is of another kind");
    const bool ended = !CONSOLE.MACRO_FILE.OPEN;  // by RECORD, which says more
    if (CONSOLE.MACRO_STATE == 1 && ended) return OPENING::GIVEN_UP;
    REFUSE_ANSWER();
  } else if (request.MACRO && IS_CIF(name)) {
    WRITE_OUT("*****This is a CIF, not a macro: READ cif reads it");
    return OPENING::GIVEN_UP;
  } else if (OPEN_NAMED_FILE(file, name, request)) {
    file.NAME = name;
    file.OPEN = true;
    file.SHORT_NAME = FILENAME(name);
    REPORT_OPEN(file, name, lines);
    return OPENING::DONE;
  }
  CLEAR_INPUT();
  return OPENING::AGAIN;
}

}  // namespace

bool OPEN_FILE(FILE_RECORD& file, std::string_view control) {
  const OPEN_REQUEST request = READ_CONTROL(control);
  WRITE_OUT_BLANK(1);
  if (KEEP_OPEN_FILE(file)) return false;
  OPENING opening = OPENING::AGAIN;
  while (opening == OPENING::AGAIN && NAME_IS_PENDING(file, request))
    opening = OPEN_PENDING(file, request);
  return opening == OPENING::DONE && file.OPEN;
}

bool KEEP_FILE(FILE_RECORD& file) {
  int error = 0;
  const KEPT kept = KEEP_UNIT(file.UNIT, error);
  const std::string name = AS_IT_IS(file.NAME);
  CLOSE_FILE(file);
  if (kept == KEPT::WHOLE) return true;
  WRITE_OUT("*****" +
            (kept == KEPT::AS_IT_WAS ? "Nothing was written to " + name
                                     : name + " could not be written to its end") +
            ": " + std::generic_category().message(error));
  return false;
}

// ---- files that are written whole ----

namespace {

// Why a file of that name cannot be made; blank when it can.
std::string REASON_AGAINST(const std::string& name, std::string_view ext) {
  const std::string file = "*****The file " + AS_IT_IS(name);
  if (name.empty()) return "*****Failed to read file name, try again";
  if (name.size() > INPUT_LENGTH)
    return "*****The name of the file is too long: choose another name";
  if (IS_OF_ANOTHER_KIND(name, ext)) return file + " is of another kind";
  if (IS_DIRECTORY(name)) return file + " is a folder: choose another name";
  if (IS_OPEN(name)) return file + " is open: choose another name";
  return "";
}

}  // namespace

std::string NAME_OF_NEW_FILE(const FILE_RECORD& file) {
  OPEN_REQUEST request;
  request.WORD = "Save";
  while (NAME_IS_PENDING(file, request)) {
    const std::string name = TAKE_NAME(file, request);
    const std::string reason = REASON_AGAINST(name, file.EXT);
    if (reason.empty()) return name;
    WRITE_OUT(reason);
    REFUSE_ANSWER();
  }
  return "";
}

bool MAY_REPLACE(const std::vector<std::string>& names) {
  std::string existing;
  int count = 0;
  for (const std::string& name : names)
    if (FILE_EXISTS(name)) existing += (++count > 1 ? ", " : "") + AS_IT_IS(name);
  if (count == 0) return true;
  if (CONSOLE.MACRO_STATE == 1) {
    WRITE_OUT(count == 1 ? "     The file " + existing + " exists: it is replaced"
                         : "     The files " + existing + " exist: they are replaced");
    return true;
  }
  WRITE_OUT(count == 1 ? "*****File " + existing + " exists" : "*****Files " + existing + " exist");
  const TYPED_ANSWER name = CONSOLE.LAST_ANSWER;
  const char answer =
      GET_ANSWER_YN("Do you want to overwrite " + std::string(count == 1 ? "it" : "them"), "N");
  if (CONSOLE.DROPPED) return false;
  // A macro is not asked.
  REFUSE_ANSWER();
  CONSOLE.LAST_ANSWER = name;
  if (answer != 'Y') REFUSE_ANSWER();
  return answer == 'Y';
}

// ---- several files ----

namespace {

// Whether the text names several files, or one by a pattern. A file that has the whole text as its
// name is that file.
bool NAMES_SEVERAL(const std::string& typed, std::string_view ext) {
  const std::string whole = USER_PATH(typed);
  for (const std::string& name : {whole, whole + "." + std::string(ext)})
    if (FILE_EXISTS(name)) return false;
  const bool quoted = whole != LEFT_ADJUST(typed) && FILE_WORDS(typed).size() <= 1;
  if (typed.starts_with('\'') || quoted) return IS_PATTERN(whole);
  return FILE_WORDS(typed).size() > 1 || IS_PATTERN(typed);
}

// The files of all the names; none, after a message, when a pattern fits no file.
std::vector<NAMED_FILE> FIND_SEVERAL(const std::string& typed, std::string_view ext) {
  std::vector<NAMED_FILE> all;
  for (const std::string& word : FILE_WORDS(typed)) {
    const std::vector<NAMED_FILE> files = FILES_NAMED(word, ext);
    if (files.empty()) {
      WRITE_OUT("*****No file fits " + AS_IT_IS(word) + ": DIR shows the names");
      return {};
    }
    all.insert(all.end(), files.begin(), files.end());
  }
  return all;
}

}  // namespace

std::vector<NAMED_FILE> FILES_NAMED(std::string_view typed, std::string_view ext) {
  const std::string path = USER_PATH(typed);
  if (!IS_PATTERN(path) || FILE_EXISTS(path))
    return {{HOME_EXPANDED(WITH_EXTENSION(path, ext)), {}}};
  const std::string pattern = WITH_EXTENSION(FILENAME(path), ext);
  const std::string folder = path.substr(0, path.size() - FILENAME(path).size());
  std::vector<std::string> names = FILE_NAMES(folder.empty() ? "." : folder, "");
  std::sort(names.begin(), names.end(), NATURAL_LESS);
  std::vector<NAMED_FILE> files;
  for (const std::string& name : names) {
    NAMED_FILE file{folder + name, {}};
    const bool hidden = name.starts_with('.') && !pattern.starts_with('.');
    const bool folder_name = name.ends_with('/');
    if (!hidden && !folder_name && FITS_PATTERN(pattern, name, file.NUMBERS)) files.push_back(file);
  }
  return files;
}

std::vector<NAMED_FILE> OPEN_FILES(FILE_RECORD& file, std::string_view control) {
  const OPEN_REQUEST request = READ_CONTROL(control);
  WRITE_OUT_BLANK(1);
  if (KEEP_OPEN_FILE(file)) return {};
  while (NAME_IS_PENDING(file, request)) {
    const std::string typed = CONSOLE.INSTRING;
    if (NAMES_SEVERAL(typed, file.EXT)) {
      CLEAR_INPUT();
      const std::vector<NAMED_FILE> files = FIND_SEVERAL(typed, file.EXT);
      if (!files.empty()) return files;
    } else if (OPEN_PENDING(file, request) == OPENING::DONE) {
      return {{file.NAME, {}}};
    }
  }
  return {};
}

// ---- the console's own files ----

namespace {

std::string FULL_PATH(const std::string& name) {
  return SYSTEM_PATH(name).is_absolute() ? name : IN_DIRECTORY(name);
}

}  // namespace

// A name that is given again means another file when the working directory has changed.
void OPEN_LOG_FILE() {
  CONSOLE.LOG_FILE.DESCRIPTOR = "Log file";
  CONSOLE.LOG_FILE.UNIT = LOG_UNIT;
  CONSOLE.LOG_FILE.EXT = "log";
  const std::string old_name = CONSOLE.LOG_FILE.NAME;
  const std::string old_path = CONSOLE.LOG_PATH;
  if (!OPEN_FILE(CONSOLE.LOG_FILE, "append")) return;
  CONSOLE.LOG_PATH = FULL_PATH(CONSOLE.LOG_FILE.NAME);
  if (CONSOLE.LOG_FILE.NAME != old_name || CONSOLE.LOG_PATH != old_path || CONSOLE.LOG_FILE.MADE)
    WRITE_HEADER("logonly");
}

bool OPEN_MACRO_FILE(std::string_view control) {
  CONSOLE.MACRO_FILE.DESCRIPTOR = "file for macros";
  CONSOLE.MACRO_FILE.UNIT = MACRO_UNIT;
  CONSOLE.MACRO_FILE.EXT = "mcr";
  return OPEN_FILE(CONSOLE.MACRO_FILE, std::string(control) + " MACRO");
}

}  // namespace KVA_CONSOLE
