// Editing a line at a terminal: keys, history and TAB. Without libedit, and away from terminals, it
// is never possible and lines are read plainly.
#pragma once

#include <string>
#include <string_view>

#include "console_code/console/completion.h"

namespace KVA_CONSOLE {

// From now on lines are edited where that is possible. Called once at start.
void START_LINE_EDITOR();

// Whether a line behind this prompt can be edited.
bool EDITING_POSSIBLE(const std::string& prompt);

// Shows the prompt and reads one line, of any length. False at the end of input, and when the
// interrupt key ended the reading: line is then what had been typed.
bool EDIT_LINE(const std::string& prompt, const LINE_HELP& help, std::string& line);

// Keeps the line in the history, unless it is blank or the same as the one before.
void REMEMBER_LINE(std::string_view line);

}  // namespace KVA_CONSOLE
