// Everything that the console keeps: identity of the program, the pending input, macro, log and
// mode. State only.
#pragma once

#include <span>
#include <string>
#include <string_view>

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
inline std::string HISTORY_FILE;              // typed lines; blank: none are kept between runs
inline int RUN_TYPE = 1;                      // 1: console program; no other value is set

// ---- unit numbers ----
inline constexpr int LOG_UNIT = 90;
inline constexpr int MACRO_UNIT = 91;
inline constexpr int DATA_UNIT = 32;  // files read or written by a command

// ---- pending input ----
inline constexpr int INPUT_LENGTH = 255;
inline std::string INSTRING;  // the current input line, or what is left of it
inline int INSTRING_LEN = 0;  // characters in use; 0: no input pending
inline std::string INCOM;     // first word, upper case

// ---- prompt ----
inline std::string CMD_PROMPT;       // stem with version, "G_MARA-6.1>"
inline std::string SAVED_PROMPT;     // CMD_PROMPT kept during system mode
inline bool TIME_IN_PROMPT = false;  // date and time precede the prompt
inline int SYSTEM_MODE = 0;          // 1 while lines go to the operating system

// ---- macro, log, reserved commands, mode ----
inline int MACRO_STATE = 0;  // 0 none, 1 replaying, -1 recording
inline int MACRO_CHAIN = 0;  // macros started since the user last typed a line
inline FILE_RECORD MACRO_FILE;
inline FILE_RECORD LOG_FILE;
inline std::string LOG_PATH;      // of the log that was opened last, from the root
inline bool RESERVED_ON = false;  // reserved commands are open
inline int OPERATION_MODE = 0;    // 0 default, 1 expert, 2 debug; -1 disables MODE

// ---- output ----
inline int WIDTH = 100;  // of star lines; fixed at start

// ---- command table, rebuilt by the caller of COMMAND before each call ----
struct COMMAND_ENTRY {
  std::string CLIST;           // command word, upper case, 10 characters
  std::string CLIST_DESCRIPT;  // one line for HELP, 60 characters
  int CLIST_GROUP = 0;         // group under which HELP shows it; 0: before the first group
  bool CPRIV = false;          // reserved: hidden and refused until unlocked
  std::span<const std::string_view> MENU = {};  // entries that may follow on the line
};
inline LIST<COMMAND_ENTRY> COMMANDS;
inline LIST<std::string> CLIST_GROUP_TITLE;  // 40 characters each

}  // namespace KVA_CONSOLE
