// The command interpreter: built-in commands, the search in the command table, and HELP. Knows no
// command of the table.
#include "console_code/console/command.h"

#include <algorithm>  // for any_of
#include <array>
#include <string_view>
#include <utility>  // for move

#include "console_code/console/input.h"
#include "console_code/console/open_file.h"
#include "console_code/console/output.h"
#include "console_code/console/settings.h"
#include "console_code/console/state.h"
#include "console_code/console_win.h"
#include "console_code/kva_utilities/columns.h"
#include "console_code/kva_utilities/files.h"
#include "console_code/kva_utilities/text.h"

namespace KVA_CONSOLE {

using namespace KVA_UTILITIES;

namespace {

constexpr int word_columns = 10;  // of a command word in HELP
constexpr int end_by_exit = 0;
constexpr int end_by_x = -1;
constexpr std::string_view gate_word = "kompressa";  // opens the reserved commands

// ---- built-in commands ----

enum class BUILT_IN {
  NONE,
  EXIT,
  X,
  HELP,
  LOG,
  MODE,
  PRIV,
  INFO,
  TIME,
  SYS,
  DIR,
  CD,
  RECORD,
  END,
  MACRO
};

struct BUILT_IN_WORD {
  std::string_view WORD;
  BUILT_IN CODE;
};

// In test order, which settles a word that contains two of them: TIMELOG is LOG.
// clang-format off
constexpr std::array built_ins{
    BUILT_IN_WORD{"EXIT",   BUILT_IN::EXIT},
    BUILT_IN_WORD{"X",      BUILT_IN::X},
    BUILT_IN_WORD{"HELP",   BUILT_IN::HELP},
    BUILT_IN_WORD{"LOG",    BUILT_IN::LOG},
    BUILT_IN_WORD{"MODE",   BUILT_IN::MODE},
    BUILT_IN_WORD{"PRIV",   BUILT_IN::PRIV},
    BUILT_IN_WORD{"INFO",   BUILT_IN::INFO},
    BUILT_IN_WORD{"TIME",   BUILT_IN::TIME},
    BUILT_IN_WORD{"SYS",    BUILT_IN::SYS},
    BUILT_IN_WORD{"DIR",    BUILT_IN::DIR},
    BUILT_IN_WORD{"CD",     BUILT_IN::CD},
    BUILT_IN_WORD{"RECORD", BUILT_IN::RECORD},
    BUILT_IN_WORD{"END",    BUILT_IN::END},
    BUILT_IN_WORD{"MACRO",  BUILT_IN::MACRO},
};
// clang-format on

// A built-in fits when the word contains it anywhere; X must be the whole word, and END counts
// only while a macro is recorded.
bool BUILT_IN_FITS(const BUILT_IN_WORD& built_in, std::string_view word) {
  if (built_in.CODE == BUILT_IN::X) return word == built_in.WORD;
  if (built_in.CODE == BUILT_IN::END && CONSOLE.MACRO_STATE != -1) return false;
  return word.find(built_in.WORD) != std::string_view::npos;
}

BUILT_IN FIND_BUILT_IN(std::string_view word) {
  for (const BUILT_IN_WORD& built_in : built_ins)
    if (BUILT_IN_FITS(built_in, word)) return built_in.CODE;
  return BUILT_IN::NONE;
}

bool PASSWORD_IS_GIVEN() {
  WRITE_OUT_BLANK(1);
  GET_INPUT("     Password:", {.SECRET = true});
  return EQUAL_TEXT(CONSOLE.INSTRING, gate_word);
}

void RUN_PRIV() {
  if (CONSOLE.RESERVED_ON)
    CONSOLE.RESERVED_ON = false;
  else
    CONSOLE.RESERVED_ON = PASSWORD_IS_GIVEN();
}

void ENTER_SYSTEM_MODE() {
  CONSOLE.SYSTEM_MODE = 1;
  WRITE_OUT("     To exit from system and return to the program, type PROG");
  CONSOLE.SAVED_PROMPT = CONSOLE.CMD_PROMPT;
  CONSOLE.CMD_PROMPT = "SYSTEM>";
}

void LEAVE_SYSTEM_MODE() {
  CONSOLE.SYSTEM_MODE = 0;
  CONSOLE.CMD_PROMPT = CONSOLE.SAVED_PROMPT;
}

void RUN_SYSTEM_COMMAND(const std::string& line, std::string_view failure) {
  bool err = false;
  SYSTEM_COMMAND(line, err);
  if (err) WARNING(failure);
}

// Opens a macro file. A file that the user keeps open stays what it is: one that is replayed is not
// written to, one that is recorded is not replayed.
void OPEN_MACRO(std::string_view control, int state) {
  const bool opened = OPEN_MACRO_FILE(control);
  if (opened)
    CONSOLE.MACRO_STATE = state;
  else if (!CONSOLE.MACRO_FILE.OPEN)
    CONSOLE.MACRO_STATE = 0;
}

void RECORD_MACRO() {
  WRITE_OUT("       Open a file to record the commands");
  OPEN_MACRO("REPLACE CONFIRM", -1);
  WRITE_OUT(CONSOLE.MACRO_STATE == -1 ? "***** Macro recording intiated"
                                      : "***** Macro recording FAILED to be intiated");
}

void END_MACRO() {
  CONSOLE.MACRO_STATE = 0;
  CLOSE_FILE(CONSOLE.MACRO_FILE);
  WRITE_OUT("***** Macro recording stopped");
}

void REPLAY_MACRO() {
  constexpr int longest_chain = 1000;
  OPEN_MACRO("OLD READ", 1);
  if (++CONSOLE.MACRO_CHAIN > longest_chain) {
    WRITE_OUT("***** Macros start one another without end, last " +
              AS_IT_IS(CONSOLE.MACRO_FILE.NAME));
    CLOSE_FILE(CONSOLE.MACRO_FILE);
    CONSOLE.MACRO_STATE = 0;
  }
  WRITE_OUT(CONSOLE.MACRO_STATE == 1 ? "***** Running macro" : "***** Failed to start macro");
}

// Carries out a built-in other than those that end the caller's loop.
void RUN_BUILT_IN(BUILT_IN built_in) {
  switch (built_in) {
    case BUILT_IN::HELP:
      return CONSOLE_HELP();
    case BUILT_IN::LOG:
      return OPEN_LOG_FILE();
    case BUILT_IN::MODE:
      return SET_MODE();
    case BUILT_IN::PRIV:
      return RUN_PRIV();
    case BUILT_IN::INFO:
      return WRITE_HEADER();
    case BUILT_IN::TIME:
      CONSOLE.TIME_IN_PROMPT = !CONSOLE.TIME_IN_PROMPT;
      return;
    case BUILT_IN::SYS:
      return ENTER_SYSTEM_MODE();
    case BUILT_IN::DIR:
      RUN_SYSTEM_COMMAND(std::string(LISTING_COMMAND) + " " + CONSOLE.INSTRING,
                         "LS command returned an error");
      return CLEAR_INPUT();
    case BUILT_IN::CD:
      RUN_SYSTEM_COMMAND("chdir " + CONSOLE.INSTRING, "CD command returned an error");
      CLEAR_INPUT();
      return WRITE_WDIR();
    case BUILT_IN::RECORD:
      return RECORD_MACRO();
    case BUILT_IN::END:
      return END_MACRO();
    case BUILT_IN::MACRO:
      return REPLAY_MACRO();
    case BUILT_IN::NONE:
    case BUILT_IN::EXIT:
    case BUILT_IN::X:
      return;
  }
}

// A line of the system mode.
void RUN_SYSTEM_LINE() {
  if (CONSOLE.CUT)
    WRITE_OUT("*****The command does not fit on a line: nothing is run");
  else if (CONSOLE.INCOM.find("PROG") != std::string::npos)
    LEAVE_SYSTEM_MODE();
  else
    RUN_SYSTEM_COMMAND(CONSOLE.INSTRING, "System command returned an error");
}

// ---- command table ----

bool IS_HIDDEN(const COMMAND_ENTRY& entry) {
  return entry.CPRIV && !CONSOLE.RESERVED_ON;
}

// The entry that the word abbreviates; 0 when none fits, or several do, with a message.
int FIND_COMMAND(std::string_view word) {
  int found = 0;
  for (int i = 1; i <= CONSOLE.COMMANDS.COUNT(); ++i) {
    if (IS_HIDDEN(CONSOLE.COMMANDS(i)) || !CONSOLE.COMMANDS(i).CLIST.starts_with(word)) continue;
    if (found > 0) {
      WRITE_OUT("*****Ambiguous command ");
      return 0;
    }
    found = i;
  }
  return found;
}

// ---- what TAB offers ----

// Those that HELP shows. A line for the operating system has no words of ours.
LINE_HELP HELP_WITH_COMMANDS() {
  LINE_HELP help{.FILES = true};
  if (CONSOLE.SYSTEM_MODE == 1) return help;
  for (const BUILT_IN_WORD& built_in : built_ins) {
    const bool hidden = built_in.CODE == BUILT_IN::PRIV || built_in.CODE == BUILT_IN::X ||
                        (built_in.CODE == BUILT_IN::END && CONSOLE.MACRO_STATE != -1) ||
                        (built_in.CODE == BUILT_IN::MODE && CONSOLE.OPERATION_MODE < 0);
    if (!hidden) help.WORDS.push_back({std::string(built_in.WORD)});
  }
  for (const COMMAND_ENTRY& entry : CONSOLE.COMMANDS)
    if (!IS_HIDDEN(entry)) help.WORDS.push_back({entry.CLIST, entry.MENU});
  return help;
}

// ---- help ----

bool HAS_COMMANDS(int group) {
  return std::any_of(CONSOLE.COMMANDS.begin(), CONSOLE.COMMANDS.end(),
                     [group](const COMMAND_ENTRY& entry) {
                       return entry.CLIST_GROUP == group && !IS_HIDDEN(entry);
                     });
}

void HELP_GROUP(int group) {
  for (const COMMAND_ENTRY& entry : CONSOLE.COMMANDS) {
    if (entry.CLIST_GROUP != group || IS_HIDDEN(entry)) continue;
    WRITE_OUT("           " + TEXT_COLUMNS(entry.CLIST, word_columns) + ":  " +
              TRIM(entry.CLIST_DESCRIPT));
  }
}

}  // namespace

void CONSOLE_HELP() {
  WRITE_OUT_BLANK(1);
  WRITE_OUT("        ******General Commands******");
  std::string general = "           EXIT     HELP     INFO    LOG";
  if (CONSOLE.OPERATION_MODE >= 0) general += "     MODE";
  WRITE_OUT(general);
  HELP_GROUP(0);
  for (int group = 1; group <= CONSOLE.CLIST_GROUP_TITLE.COUNT(); ++group) {
    const std::string title = TRIM(CONSOLE.CLIST_GROUP_TITLE(group));
    if (title.empty() || !HAS_COMMANDS(group)) continue;
    WRITE_OUT_BLANK(1);
    WRITE_OUT("        ******" + title + "******");
    HELP_GROUP(group);
  }
  WRITE_OUT_BLANK(1);
  WRITE_OUT("        ******System & Macro Commands******");
  WRITE_OUT("           TIME     RECORD   MACRO     END");
  WRITE_OUT("           SYS      DIR       CD");
}

void SET_CMD_PROMPT() {
  CONSOLE.CMD_PROMPT = TRIM(CONSOLE.CMD_PROMPT) + "-" + REAL_COLUMNS(PROGRAM_VERSION, 3, 1) + ">";
}

std::string SET_CMD_PROMPT_DATE() {
  const std::string prompt = TRIM(CONSOLE.CMD_PROMPT);
  const std::string stem = prompt.substr(0, prompt.find('>'));
  if (!CONSOLE.TIME_IN_PROMPT) return stem + ">";
  return DATE_AND_TIME() + " " + stem + ">";
}

void BACK_AT_MAIN_PROMPT() {
  CONSOLE.DROPPED = false;
  KEEP_RECORDED({});
}

namespace {

// The line, or a command before it, was dropped. True when the prompt is the main one, which goes
// on; else the caller's loop ends.
bool GOES_ON(const std::vector<std::string>& leaving) {
  const bool main_prompt = leaving.empty() && CONSOLE.SYSTEM_MODE == 0;
  if (CONSOLE.SYSTEM_MODE == 1) LEAVE_SYSTEM_MODE();
  if (!main_prompt) return false;
  CONSOLE.DROPPED = false;
  if (CONSOLE.DROPPED_BLANK) WRITE_OUT("     To leave the program type EXIT");
  return true;
}

// A command that ends at this prompt is done.
void KEEP_COMMAND(std::vector<std::string> leaving) {
  if (CONSOLE.SYSTEM_MODE == 1) leaving.insert(leaving.begin(), "PROG");
  KEEP_RECORDED(std::move(leaving));
}

}  // namespace

void COMMAND(int& icom, const std::vector<std::string>& leaving) {
  icom = 0;
  while (true) {
    TELL_UNUSED("");
    WRITE_OUT_BLANK(1);
    GET_INPUT(SET_CMD_PROMPT_DATE(), HELP_WITH_COMMANDS());
    if (CONSOLE.DROPPED && !GOES_ON(leaving)) return;
    if (CONSOLE.INSTRING_LEN == 0) continue;
    CONSOLE.INCOM = U_CASE(CONSOLE.INSTRING.substr(0, CONSOLE.INSTRING.find(' ')));
    if (CONSOLE.SYSTEM_MODE == 1) {
      RUN_SYSTEM_LINE();
      KEEP_COMMAND(leaving);
      continue;
    }
    TAKE_WORD();
    CONSOLE.BEHIND_COMMAND = true;
    const BUILT_IN built_in = FIND_BUILT_IN(CONSOLE.INCOM);
    if (built_in == BUILT_IN::EXIT || built_in == BUILT_IN::X) {
      icom = built_in == BUILT_IN::EXIT ? end_by_exit : end_by_x;
      return;
    }
    if (built_in != BUILT_IN::NONE) {
      RUN_BUILT_IN(built_in);
      if (CONSOLE.DROPPED) return;
      if (built_in != BUILT_IN::SYS) KEEP_COMMAND(leaving);
      continue;
    }
    icom = FIND_COMMAND(CONSOLE.INCOM);
    if (icom > 0) return;
    CLEAR_INPUT();
  }
}

}  // namespace KVA_CONSOLE
