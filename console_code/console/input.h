// Reading one line, from the console or the running macro, and its recording. The only reader.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "console_code/console/completion.h"

namespace KVA_CONSOLE {

// Reads one line into INSTRING and INSTRING_LEN. At the end of standard input it closes the log
// and the macro file and ends the program with status 2. help: what a user at a terminal is helped
// with while he types. The interrupt key drops the command: there is no line then, as if it were
// blank, and there is none before the main prompt. Who asks goes back from there and applies
// nothing: where a blank line means anything but that, he looks at CONSOLE.DROPPED.
void GET_INPUT(std::string_view prompt, const LINE_HELP& help = {});

// Drops the command that runs, and takes its lines out of the macro that is recorded.
void DROP_COMMAND();

// The answer that was marked last is refused, and the question asked again. A macro has no other
// answer, so its command is dropped; one that is recorded loses what was refused, so that its next
// line answers when it is replayed.
void REFUSE_ANSWER();

// What is pending is the next answer: a line that was read, or the rest of a command's line.
void MARK_ANSWER();

// A step of the command that runs is done: what is recorded of it so far stays when it is dropped,
// with the lines behind it that lead back to the main prompt.
void KEEP_RECORDED(std::vector<std::string> leaving);

// A macro that is replayed ends here.
void STOP_MACRO();

// The console alone: prompt and line. False at the end of input, and when interrupted.
bool GET_INPUT_CMD(std::string_view prompt, const LINE_HELP& help = {});

void CLEAR_INPUT();

// Clears the input. What still stood behind the command is told, with the advice.
void TELL_UNUSED(std::string_view advice);

// Takes the first word off INSTRING; the rest is left-adjusted and stays pending.
std::string TAKE_WORD();

}  // namespace KVA_CONSOLE
