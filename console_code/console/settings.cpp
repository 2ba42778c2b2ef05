// The settings file, working directory, operation mode, start and end of the console, and system
// commands. Nothing else may change the working directory.
#include "console_code/console/settings.h"

#include <algorithm>  // for clamp, min
#include <array>
#include <cerrno>   // for ENOENT
#include <cmath>    // for round
#include <cstdlib>  // for exit

#include "console_code/console/open_file.h"
#include "console_code/console/output.h"
#include "console_code/console/prompts.h"
#include "console_code/console/state.h"
#include "console_code/console_win.h"
#include "console_code/kva_utilities/files.h"
#include "console_code/kva_utilities/system_files.h"
#include "console_code/kva_utilities/text.h"

namespace KVA_CONSOLE {

using namespace KVA_UTILITIES;

namespace {

constexpr int settings_unit = 99;
constexpr std::size_t settings_columns = 255;  // of a line of the settings file
constexpr std::size_t key_length = 4;
constexpr std::string_view key_gap = "  ";
constexpr std::string_view directory_key = "WDIR";
constexpr std::string_view mode_key = "MODE";
constexpr std::string_view local_settings = "LOCALAPPDATA";

// ---- the settings file ----

// The folder under which the settings lie; blank: no settings. below_home: of our own choice,
// because LOCALAPPDATA is unset.
std::string SETTINGS_ROOT(bool& below_home) {
  std::string root;
  below_home = !GET_ENVIRONMENT(std::string(local_settings), root);
  if (!below_home) return TRIM(root);
  // XDG base directory specification: a relative path is not valid.
  if (GET_ENVIRONMENT("XDG_CONFIG_HOME", root) && root.starts_with('/')) return root;
  if (GET_ENVIRONMENT("HOME", root) && !root.empty()) return root + "/.config";
  return "";
}

// Makes the folder of the settings file; those above it only where the place is our own choice.
void MAKE_SETTINGS_FOLDER(const std::string& path, bool below_home) {
  if (below_home)
    for (std::size_t at = path.find_first_of(PATH_SEPARATORS, 1); at != std::string::npos;
         at = path.find_first_of(PATH_SEPARATORS, at + 1))
      MAKE_DIRECTORY(path.substr(0, at));
  else
    MAKE_DIRECTORY(path.substr(0, path.find_last_of(PATH_SEPARATORS)));
}

// The settings file; blank: none.
std::string SETTINGS_PATH(bool& below_home) {
  const std::string root = SETTINGS_ROOT(below_home);
  return root.empty() ? "" : root + PROGRAM_INI_FILE;
}

// Opens the settings file on its unit, made if absent. Returns its path; ierr is 0 on success.
std::string OPEN_INI(int& ierr) {
  ierr = 1;
  bool below_home = false;
  const std::string path = SETTINGS_PATH(below_home);
  if (path.empty()) return "";
  ierr = OPEN_UNIT(settings_unit, path, UNIT_MODE::UNKNOWN);
  if (ierr != ENOENT) return path;
  MAKE_SETTINGS_FOLDER(path, below_home);
  ierr = OPEN_UNIT(settings_unit, path, UNIT_MODE::UNKNOWN);
  return path;
}

void WRITE_PARAMS() {
  int ierr = 0;
  const std::string path = OPEN_INI(ierr);
  if (ierr != 0) return;
  CLOSE_UNIT(settings_unit);
  std::string content;
  for (std::string line : CONSOLE.INITPARMS) {
    if (LENTRIM(line) == 0) continue;
    line.resize(settings_columns, ' ');
    content += line + "\n";
  }
  REPLACE_FILE(path, content);
}

// From the root, since the working directory will change.
void SET_HISTORY_FILE() {
  bool below_home = false;
  const std::string path = SETTINGS_PATH(below_home);
  CONSOLE.HISTORY_FILE = path.substr(0, path.rfind('.')) + ".history";
  if (path.empty())
    CONSOLE.HISTORY_FILE.clear();
  else if (!SYSTEM_PATH(path).is_absolute())
    CONSOLE.HISTORY_FILE = IN_DIRECTORY(CONSOLE.HISTORY_FILE);
}

// ---- entries ----

bool HAS_KEY(const std::string& line, std::string_view key) {
  const std::string text = LEFT_ADJUST(line);
  return !text.starts_with('!') && BEGINS_WITH(text, key);
}

std::string VALUE_OF(const std::string& line, std::string_view key) {
  return LEFT_ADJUST(LEFT_ADJUST(line).substr(key.size()));
}

// The first entry of the key that has a value, 0 when there is none. A blank key has none.
int FIND_PARAM(std::string_view key) {
  for (int i = 1; i <= MAX_PARAMS; ++i)
    if (HAS_KEY(CONSOLE.INITPARMS(i), key) && !VALUE_OF(CONSOLE.INITPARMS(i), key).empty())
      return i;
  return 0;
}

int BLANK_PARAM() {
  for (int i = 1; i <= MAX_PARAMS; ++i)
    if (LENTRIM(CONSOLE.INITPARMS(i)) == 0) return i;
  return 0;
}

bool IS_KEY(std::string_view key) {
  return key.size() == key_length && key.find(' ') == std::string_view::npos;
}

// Whether a line of the settings can hold the value and give it back.
bool IS_STORABLE(std::string_view value) {
  return value == TRIM(value) && value.find_first_of("\r\n") == std::string_view::npos;
}

// Sets the entry in memory. A value that does not fit is not kept: a cut path is another directory.
void STORE_PARAM(std::string_view key, std::string_view value) {
  if (!IS_STORABLE(value)) return;
  const std::string line = std::string(key) + std::string(key_gap) + TRIM(value);
  if (!IS_KEY(key) || line.size() > settings_columns) return;
  int i = FIND_PARAM(key);
  if (i == 0) i = BLANK_PARAM();
  if (i > 0) CONSOLE.INITPARMS(i) = line;
}

void FORGET_PARAM(std::string_view key) {
  for (std::string& line : CONSOLE.INITPARMS)
    if (HAS_KEY(line, key)) line.clear();
}

// ---- working directory ----

// What is shown as working directory must be where we are, also when no directory was restored.
void SHOW_REAL_DIRECTORY() {
  if (FIND_PARAM(directory_key) > 0) STORE_PARAM(directory_key, GET_DIRECTORY());
}

// Relative names in a script mean the folder where the program was started, unless the user has
// set a place for settings.
void IGNORE_STORED_DIRECTORY() {
  std::string root;
  if (!GET_ENVIRONMENT(std::string(local_settings), root)) FORGET_PARAM(directory_key);
}

// The path that an upper-case copy of what was typed means, as on systems that ignore case.
std::string UPPER_CASE_PATH(std::string_view typed) {
  const char separator = PATH_SEPARATORS.front();
  std::string rest = U_CASE(typed);
  for (const char other : {'\\', '/'}) REPLACE_CHAR(rest, other, separator);
  const std::string directory = GET_DIRECTORY();
  if (rest.find("..") != std::string::npos) {
    const std::size_t at = directory.find_last_of(separator);
    if (at == std::string::npos) return "";
    const std::string parent = directory.substr(0, at) + rest.substr(2);
    // The root, "/" or "C:\", keeps its separator.
    return parent.empty() || parent.ends_with(':') ? parent + separator : parent;
  }
  if (rest.find(separator) == std::string::npos) return IN_DIRECTORY(rest);
  return rest;
}

void CHANGE_WORK_DIR(const std::string& typed) {
  if (typed.empty()) return;
  if (CHANGE_DIRECTORY(USER_PATH(typed)) || CHANGE_DIRECTORY(UPPER_CASE_PATH(typed)))
    SAVE_WORK_DIR();
  else
    WRITE_OUT(
        "     Cannot change directory to " + AS_IT_IS(typed) +
        (IS_DIRECTORY(USER_PATH(typed)) ? ": it may not be entered" : ": there is no such folder"));
}

// ---- start ----

void SET_WIDTH() {
  constexpr int narrowest = 30;
  const int columns = CONSOLE_COLUMNS();
  if (columns - 1 > narrowest) CONSOLE.WIDTH = std::min(columns - 2, INPUT_LENGTH);
}

// The name of a macro file given at start, in the current directory when it names none.
std::string MACRO_PATH(const std::string& argument) {
  if (argument.find_first_of("/\\") != std::string::npos) return argument;
  const std::string path = IN_DIRECTORY(WITH_EXTENSION(argument, "mcr"));
  return path.size() > INPUT_LENGTH ? argument : path;
}

void START_MACRO(const std::string& argument) {
  CONSOLE.INSTRING = MACRO_PATH(argument);
  CONSOLE.INSTRING_LEN = LENTRIM(CONSOLE.INSTRING);
  OPEN_MACRO_FILE("OLD READ");
  if (CONSOLE.MACRO_FILE.OPEN) CONSOLE.MACRO_STATE = 1;
  CONSOLE.DROPPED = false;  // the question for another name
}

// ---- operation mode ----

struct MODE_NAME {
  std::string_view WORD;  // in the settings file
  std::string_view SHOWN;
};
constexpr std::array mode_names{MODE_NAME{"NORMAL", "Default"}, MODE_NAME{"EXPERT", "Expert"},
                                MODE_NAME{"DEBUG", "Debug"}};

const MODE_NAME& CURRENT_MODE() {
  return mode_names[static_cast<std::size_t>(std::clamp(CONSOLE.OPERATION_MODE, 0, 2))];
}

// Takes the mode that the user gives. False when it is none and must be asked for again.
bool INPUT_MODE() {
  float value = 0.0f;
  GET_INPUT_VALUES("     Input operation mode: ", value);
  if (CONSOLE.INSTRING_LEN == 0) {
    WRITE_OUT("     No change in operation mode");
    return true;
  }
  const float mode = std::round(value);
  if (!(mode >= 0.0f && mode < static_cast<float>(mode_names.size()))) return false;
  CONSOLE.OPERATION_MODE = static_cast<int>(mode);
  WRITE_MODE();
  return true;
}

}  // namespace

// ---- settings ----

void INIT_PARAMS() {
  CONSOLE.INITPARMS.FILL("");
  int ierr = 0;
  OPEN_INI(ierr);
  if (ierr != 0) return;
  int count = 0;
  for (std::string line; READ_UNIT(settings_unit, line) == READ_STATUS::LINE;) {
    if (LENTRIM(line) == 0) continue;
    if (count == MAX_PARAMS) break;
    CONSOLE.INITPARMS(++count) = line;
  }
  CLOSE_UNIT(settings_unit);
}

std::string GET_PARAM(std::string_view key, int& ierr) {
  const int i = FIND_PARAM(key);
  ierr = i == 0 ? 1 : 0;
  return i == 0 ? "" : VALUE_OF(CONSOLE.INITPARMS(i), key);
}

void SAVE_PARAM(std::string_view key, std::string_view value) {
  constexpr int silent_run = 5;  // run type of a program that leaves no trace
  STORE_PARAM(key, value);
  if (CONSOLE.RUN_TYPE != silent_run) WRITE_PARAMS();
}

void INIT_WORK_DIR() {
  int ierr = 0;
  const std::string directory = GET_PARAM(directory_key, ierr);
  if (ierr == 0 && !CHANGE_DIRECTORY(directory)) SHOW_REAL_DIRECTORY();
}

// A directory that was deleted under us has no name and is not kept.
void SAVE_WORK_DIR() {
  const std::string directory = GET_DIRECTORY();
  if (!directory.empty()) SAVE_PARAM(directory_key, directory);
}

// ---- operation mode ----

void WRITE_MODE() {
  WRITE_OUT_BLANK(1);
  WRITE_OUT("Now running in " + std::string(CURRENT_MODE().SHOWN) + " Mode");
}

void SET_MODE() {
  if (CONSOLE.OPERATION_MODE < 0) return;
  WRITE_MODE();
  WRITE_OUT("     Available modes are:  0 = Default user, 1 = Expert, 2 = Debug");
  bool answered = false;
  while (!answered) answered = INPUT_MODE();
  SAVE_PARAM(mode_key, CURRENT_MODE().WORD);
}

// ---- system commands ----

void SYSTEM_COMMAND(std::string_view line, bool& err) {
  err = false;
  std::string rest(line);
  const std::string first = U_CASE(CUT_WORD(rest));
  if (first == "CD" || first == "CHDIR")
    CHANGE_WORK_DIR(rest);
  else
    RUN_COMMAND_LINE(TRIM(line));
}

// ---- start and end ----

void INIT_CONSOLE(const std::string& argument) {
  CONSOLE.RUN_TYPE = 1;
  FILL_STANDARD_STREAMS();
  KEEP_INTERRUPTS();
  SIZE_CONSOLE();
  SET_WIDTH();
  SET_CONSOLE_TITLE(PROGRAM_NAME + " ");
  INIT_PARAMS();
  SET_HISTORY_FILE();
  IGNORE_STORED_DIRECTORY();
  if (LENTRIM(argument) == 0) {
    INIT_WORK_DIR();
    return;
  }
  SHOW_REAL_DIRECTORY();
  START_MACRO(LEFT_ADJUST(argument));
}

void CLOSE_CONSOLE() {
  SAVE_WORK_DIR();
  std::exit(EXIT_SUCCESS);
}

}  // namespace KVA_CONSOLE
