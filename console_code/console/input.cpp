// Reading one line from the console or the running macro, its echo, log line and recording.
// Nothing else in the program reads the console.
#include "console_code/console/input.h"

#include <algorithm>
#include <cstdlib>  // for exit
#include <iostream>
#include <utility>  // for move

#include "console_code/console/line_editor.h"
#include "console_code/console/output.h"
#include "console_code/console/state.h"
#include "console_code/console_win.h"
#include "console_code/kva_utilities/files.h"
#include "console_code/kva_utilities/text.h"

namespace KVA_CONSOLE {

using namespace KVA_UTILITIES;

namespace {

constexpr int end_of_input_status = 2;
constexpr char delete_character = 0x7F;

void CONTROL_TO_BLANKS(std::string& line) {
  for (char& c : line)
    if ((c >= 0 && c < ' ') || c == delete_character) c = ' ';
}

// Input has run out, so nobody can say EXIT: the files are made safe and the program ends.
[[noreturn]] void END_OF_INPUT() {
  std::cout.flush();
  CLOSE_FILE(CONSOLE.LOG_FILE);
  CLOSE_FILE(CONSOLE.MACRO_FILE);
  std::cerr << "Gemmara: end of input\n" << std::flush;
  std::exit(end_of_input_status);
}

// Puts the words behind the name of the macro in place of $1 to $9; any other "$" is itself. The
// number of the first that has no word and stays, 0 when all have.
int PUT_ARGUMENTS(std::string& line) {
  int missing = 0;
  std::string whole;
  for (std::size_t i = 0; i < line.size(); ++i) {
    const char next = i + 1 < line.size() ? line[i + 1] : ' ';
    if (line[i] != '$' || next < '1' || next > '9') {
      whole += line[i];
      continue;
    }
    const auto number = static_cast<std::size_t>(next - '0');
    if (number <= CONSOLE.MACRO_ARGUMENTS.size()) {
      whole += CONSOLE.MACRO_ARGUMENTS[number - 1];
    } else {
      whole += {line[i], next};
      if (missing == 0) missing = static_cast<int>(number);
    }
    ++i;
  }
  line = whole;
  return missing;
}

// A command that lacks a word must not do its work without it, and the lines behind it would answer
// other questions than theirs.
void STOP_FOR_ARGUMENT(int missing) {
  std::string call = "MACRO " + AS_IT_IS(CONSOLE.MACRO_FILE.NAME);
  for (int number = 1; number <= missing; ++number) call += " WORD" + std::to_string(number);
  WRITE_OUT("*****The macro was given no word for $" + std::to_string(missing) + ": start it as " +
            call);
  STOP_MACRO();
  CONSOLE.DROPPED_BLANK = false;
  DROP_COMMAND();
}

// The number of an argument that the line lacks, 0 when there is none; lines for the shell have a
// "$" of their own.
int READ_MACRO_LINE(const std::string& prompt) {
  const READ_STATUS status = READ_UNIT(CONSOLE.MACRO_FILE.UNIT, CONSOLE.INSTRING, &CONSOLE.CUT);
  if (status != READ_STATUS::LINE) CONSOLE.INSTRING.clear();
  const int lacking = PUT_ARGUMENTS(CONSOLE.INSTRING);
  const int missing = CONSOLE.SYSTEM_MODE == 1 ? 0 : lacking;
  CONSOLE.CUT = CONSOLE.CUT || CONSOLE.INSTRING.size() > INPUT_LENGTH;
  CONSOLE.INSTRING = CUT_LINE(CONSOLE.INSTRING);
  CONTROL_TO_BLANKS(CONSOLE.INSTRING);
  WRITE_OUT(AS_IT_IS(prompt + TRIM(CONSOLE.INSTRING)), "NOLOG");
  if (status == READ_STATUS::LINE) return missing;
  CONSOLE.MACRO_STATE = 0;
  CLOSE_FILE(CONSOLE.MACRO_FILE);
  WRITE_OUT(status == READ_STATUS::END
                ? "***** Macro completed"
                : "***** Macro aborted because of reading error from macro file");
  return 0;
}

void RECORD_LINE() {
  if (CONSOLE.MACRO_STATE != -1 || !CONSOLE.MACRO_FILE.OPEN) return;
  CONSOLE.LAST_ANSWER = {UNIT_POSITION(CONSOLE.MACRO_FILE.UNIT), CONSOLE.INSTRING,
                         CONSOLE.INSTRING};
  if (WRITE_UNIT(CONSOLE.MACRO_FILE.UNIT, CONSOLE.INSTRING)) return;
  CONSOLE.MACRO_STATE = 0;
  WRITE_OUT("***** Macro recording stopped because " + AS_IT_IS(CONSOLE.MACRO_FILE.NAME) +
            " cannot be written");
  CLOSE_FILE(CONSOLE.MACRO_FILE);
}

bool READ_WHOLE_LINE(const std::string& prompt, const LINE_HELP& help) {
  if (EDITING_POSSIBLE(prompt)) return EDIT_LINE(prompt, help, CONSOLE.INSTRING);
  WRITE_CONSOLE(prompt);
  return READ_CONSOLE(CONSOLE.INSTRING);
}

bool READ_TYPED_LINE(const std::string& prompt, const LINE_HELP& help) {
  const bool read = READ_WHOLE_LINE(prompt, help);
  CONSOLE.CUT = CONSOLE.INSTRING.size() > INPUT_LENGTH;
  CONSOLE.INSTRING = CUT_LINE(CONSOLE.INSTRING);
  CONSOLE.MACRO_CHAIN = 0;
  CONTROL_TO_BLANKS(CONSOLE.INSTRING);
  if (read && !help.SECRET) REMEMBER_LINE(CONSOLE.INSTRING);
  return read;
}

// The interrupt key was pressed at the prompt, or since the last one.
void DROP_AT(const std::string& prompt) {
  FORGET_INTERRUPT();
  CONSOLE.DROPPED_BLANK = LENTRIM(CONSOLE.INSTRING) == 0;
  WRITE_CONSOLE("\n");
  WRITE_LOG(prompt + "^C");
  DROP_COMMAND();
}

}  // namespace

void CLEAR_INPUT() {
  CONSOLE.INSTRING.clear();
  CONSOLE.INSTRING_LEN = 0;
  CONSOLE.BEHIND_COMMAND = false;
}

void TELL_UNUSED(std::string_view advice) {
  if (CONSOLE.BEHIND_COMMAND && CONSOLE.INSTRING_LEN > 0)
    WRITE_OUT("*****\"" + AS_IT_IS(TRIM(CONSOLE.INSTRING)) + "\" behind the command is not used" +
              std::string(advice));
  CLEAR_INPUT();
}

std::string TAKE_WORD() {
  const std::string word = CUT_WORD(CONSOLE.INSTRING);
  CONSOLE.INSTRING_LEN = LENTRIM(CONSOLE.INSTRING);
  return word;
}

bool GET_INPUT_CMD(std::string_view prompt, const LINE_HELP& help) {
  return READ_TYPED_LINE(TRIM(prompt), help);
}

void STOP_MACRO() {
  if (CONSOLE.MACRO_STATE != 1) return;
  CONSOLE.MACRO_STATE = 0;
  CLOSE_FILE(CONSOLE.MACRO_FILE);
  WRITE_OUT("***** Macro stopped");
}

void DROP_COMMAND() {
  CLEAR_INPUT();
  CONSOLE.DROPPED = true;
  if (CONSOLE.MACRO_STATE != -1 || !CUT_UNIT(CONSOLE.MACRO_FILE.UNIT, CONSOLE.RECORDED)) return;
  for (const std::string& line : CONSOLE.LEAVING) WRITE_UNIT(CONSOLE.MACRO_FILE.UNIT, line);
}

void REFUSE_ANSWER() {
  if (CONSOLE.MACRO_STATE == 1) return DROP_COMMAND();
  TYPED_ANSWER& answer = CONSOLE.LAST_ANSWER;
  if (CONSOLE.MACRO_STATE != -1 || !CUT_UNIT(CONSOLE.MACRO_FILE.UNIT, answer.BEFORE_LINE)) return;
  const std::size_t before = answer.LINE.size() - std::min(answer.LINE.size(), answer.TEXT.size());
  answer.LINE = TRIM(answer.LINE.substr(0, before));
  if (!answer.LINE.empty()) WRITE_UNIT(CONSOLE.MACRO_FILE.UNIT, answer.LINE);
}

void MARK_ANSWER() {
  CONSOLE.LAST_ANSWER.TEXT = CONSOLE.INSTRING;
}

void KEEP_RECORDED(std::vector<std::string> leaving) {
  if (CONSOLE.DROPPED) return;
  CONSOLE.RECORDED = UNIT_POSITION(CONSOLE.MACRO_FILE.UNIT);
  CONSOLE.LEAVING = std::move(leaving);
}

void GET_INPUT(std::string_view prompt, const LINE_HELP& help) {
  const std::string shown = TRIM(prompt);
  TELL_UNUSED(": answer the question");
  if (CONSOLE.DROPPED) return;
  if (INTERRUPTED()) STOP_MACRO();
  CONSOLE.CUT = false;
  int missing = 0;
  if (CONSOLE.MACRO_STATE == 1) {
    missing = READ_MACRO_LINE(shown);
  } else if (INTERRUPTED() || !READ_TYPED_LINE(shown, help)) {
    if (INTERRUPTED()) return DROP_AT(shown);
    END_OF_INPUT();
  }
  WRITE_LOG(shown + TRIM(CONSOLE.INSTRING));
  if (missing > 0) return STOP_FOR_ARGUMENT(missing);
  if (CONSOLE.CUT) WARNING("The line is longer than 255 characters: the rest of it is not read");
  STRIP_FRONT_BLANK(CONSOLE.INSTRING, CONSOLE.INSTRING_LEN);
  RECORD_LINE();
}

}  // namespace KVA_CONSOLE
