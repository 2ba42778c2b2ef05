// The command interpreter: one line to a built-in or to a number of the command table.
#pragma once

#include <string>

namespace KVA_CONSOLE {

// Prompts until a command of the table is given; icom is its number, or 0 or less for the end of
// the caller's loop.
void COMMAND(int& icom);

void CONSOLE_HELP();

// Adds the version to the stem in CMD_PROMPT.
void SET_CMD_PROMPT();

// The prompt to show.
std::string SET_CMD_PROMPT_DATE();

}  // namespace KVA_CONSOLE
