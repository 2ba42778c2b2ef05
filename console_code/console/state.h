// Everything that the console keeps: identity of the program, the pending input, macro, log and
// mode. State only.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "console_code/kva_utilities/files.h"
#include "console_code/kva_utilities/table.h"

namespace KVA_CONSOLE {

using KVA_UTILITIES::FILE_RECORD;
using KVA_UTILITIES::LIST;
using KVA_UTILITIES::ROW;

// ---- identity, set once at start ----
inline std::string PROGRAM_NAME;  // 255 characters
inline float PROGRAM_VERSION = 0.0f;
inline std::string PROGRAM_VERSION_DATE;      // 20 characters
inline std::string PROGRAM_AUTHORS;           // 255 characters
inline std::string PROGRAM_INI_FILE;          // settings file below the user's settings folder
inline ROW<std::string, 10> PROGRAM_COMMENT;  // what the program does, in short lines

// ---- fixed numbers ----
inline constexpr int LOG_UNIT = 90;
inline constexpr int MACRO_UNIT = 91;
inline constexpr int DATA_UNIT = 32;  // files read or written by a command
inline constexpr int INPUT_LENGTH = 255;
inline constexpr int MAX_PARAMS = 20;  // lines of the settings file

// A word of the command table, which is rebuilt by the caller of COMMAND before each call.
struct COMMAND_ENTRY {
  std::string CLIST;           // command word, upper case, 10 characters
  std::string CLIST_DESCRIPT;  // one line for HELP, 60 characters
  int CLIST_GROUP = 0;         // group under which HELP shows it; 0: before the first group
  bool CPRIV = false;          // reserved: hidden and refused until unlocked
  std::span<const std::string_view> MENU = {};  // entries that may follow on the line
};

// Where an answer stands in the macro that is recorded.
struct TYPED_ANSWER {
  long BEFORE_LINE = 0;  // bytes of the macro before the line
  std::string LINE;      // the line that was read last
  std::string TEXT;      // its end, from where the answer begins
};

// All that changes while the console runs. CONSOLE = CONSOLE_STATE{} is a console that has just
// been started; files that are open are closed before.
struct CONSOLE_STATE {
  // ---- pending input ----
  std::string INSTRING;         // the current input line, or what is left of it
  int INSTRING_LEN = 0;         // characters in use; 0: no input pending
  bool BEHIND_COMMAND = false;  // what is pending stood behind the command on its line
  bool CUT = false;             // the line that was read last was longer than INPUT_LENGTH
  std::string INCOM;            // first word, upper case

  // ---- prompt ----
  std::string CMD_PROMPT;       // stem with version, "G_MARA-6.1>"
  std::string SAVED_PROMPT;     // CMD_PROMPT kept during system mode
  bool TIME_IN_PROMPT = false;  // date and time precede the prompt
  int SYSTEM_MODE = 0;          // 1 while lines go to the operating system

  // ---- macro, log, reserved commands, mode ----
  int MACRO_STATE = 0;                       // 0 none, 1 replaying, -1 recording
  int MACRO_CHAIN = 0;                       // macros started since the user last typed a line
  std::vector<std::string> MACRO_ARGUMENTS;  // words behind the name of the macro: $1, $2 ...
  FILE_RECORD MACRO_FILE;
  FILE_RECORD LOG_FILE;
  std::string LOG_PATH;      // of the log that was opened last, from the root
  bool RESERVED_ON = false;  // reserved commands are open
  int OPERATION_MODE = 0;    // 0 default, 1 expert, 2 debug; -1 disables MODE

  // ---- a command that was dropped ----
  bool DROPPED = false;  // to the next main prompt nothing is asked, said or applied
  TYPED_ANSWER LAST_ANSWER;
  bool DROPPED_BLANK = false;  // nothing had been typed on the line at which it was dropped
  long RECORDED = 0;           // bytes of the recorded macro that stay when a command is dropped
  std::vector<std::string> LEAVING;  // lines that lead back to the main prompt behind them

  // ---- output ----
  int RUN_TYPE = 1;  // 1: console program; no other value is set
  int WIDTH = 100;   // of star lines; fixed at start

  // ---- kept between runs ----
  ROW<std::string, MAX_PARAMS> INITPARMS;  // image of the settings file
  std::string HISTORY_FILE;                // typed lines; blank: none are kept between runs

  // ---- command table ----
  LIST<COMMAND_ENTRY> COMMANDS;
  LIST<std::string> CLIST_GROUP_TITLE;  // 40 characters each
};
inline CONSOLE_STATE CONSOLE;

}  // namespace KVA_CONSOLE
