// The output channel: everything that the program says goes to the console and the log here.
#pragma once

#include <string>
#include <string_view>

namespace KVA_CONSOLE {

// A text of the user or of a file, for a place in one that is written: its "|" is shown as it is.
std::string AS_IT_IS(std::string_view text);

// Writes text; each "|" is a line break. Control characters are shown as blanks, one a character.
// Words in control: "LOGONLY", "NOLOG", "UNIT=" with a number in 5 columns, "BLANK" (one column
// further right).
void WRITE_OUT(std::string_view text, std::string_view control = "");
void WRITE_OUT_BLANK(int n);
void WRITE_OUT_CONSOLE(std::string_view line);

// One line to the log, if it is open. A log that cannot be written is closed, with a message.
void WRITE_LOG(std::string_view line);

// Text in a line of stars, blank lines around it.
void ANNOUNCE(std::string_view text, std::string_view control = "");

// "*****WARNING: " and the text, blank lines around it. Only a "|" that the text begins with is a
// line break.
void WARNING(std::string_view text, std::string_view control = "");

// The framed header with the program's identity and the time; "WIDTH=" in control sets its width.
void WRITE_HEADER(std::string_view control = "");

// "Current working directory is now: ...", when one is set.
void WRITE_WDIR(std::string_view control = "");

}  // namespace KVA_CONSOLE
