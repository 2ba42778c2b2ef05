// Reading one line, from the console or the running macro, and its recording. The only reader.
#pragma once

#include <string>
#include <string_view>

#include "console_code/console/completion.h"

namespace KVA_CONSOLE {

// Reads one line into INSTRING and INSTRING_LEN. At the end of standard input it closes the log
// and the macro file and ends the program with status 2. help: what a user at a terminal is helped
// with while he types.
void GET_INPUT(std::string_view prompt, const LINE_HELP& help = {});

// The console alone: prompt and line. False at the end of input.
bool GET_INPUT_CMD(std::string_view prompt, const LINE_HELP& help = {});

void CLEAR_INPUT();

// Takes the first word off INSTRING; the rest is left-adjusted and stays pending.
std::string TAKE_WORD();

}  // namespace KVA_CONSOLE
