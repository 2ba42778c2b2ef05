// The command interpreter: one line to a built-in or to a number of the command table.
#pragma once

#include <string>
#include <vector>

namespace KVA_CONSOLE {

// Prompts until a command of the table is given; icom is its number, or 0 or less for the end of
// the caller's loop. leaving: the lines by which a macro leaves this prompt; none at the main one.
// The interrupt key drops the line; at an empty main prompt it tells how to leave. When it drops a
// built-in command, or is pressed at another prompt than the main one, icom is 0 and
// CONSOLE.DROPPED holds.
void COMMAND(int& icom, const std::vector<std::string>& leaving = {});

// The main prompt comes next: a command that was dropped is over, and what is recorded stays.
void BACK_AT_MAIN_PROMPT();

void CONSOLE_HELP();

// Adds the version to the stem in CMD_PROMPT.
void SET_CMD_PROMPT();

// The prompt to show.
std::string SET_CMD_PROMPT_DATE();

}  // namespace KVA_CONSOLE
