// The operating system, behind one small header: the terminal, environment, directories, system
// commands. Knows nothing of the program's records.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace KVA_CONSOLE {

// Puts the null device in place of a standard stream that is closed, so that no file that is opened
// later is taken for it. Called before any file is opened.
void FILL_STANDARD_STREAMS();

// Columns of the terminal on standard output; 0 when it is none.
int CONSOLE_COLUMNS();

// Standard input and output are both a terminal on which a cursor can be moved.
bool AT_TERMINAL();

// Sets the terminal's title, when there is a terminal that can.
void SET_CONSOLE_TITLE(std::string_view title);

// Writes text to standard output as it is, and flushes it.
void WRITE_CONSOLE(std::string_view text);

// Reads one line of standard input, of any length, cut at 255 bytes. False at the end of input.
bool READ_CONSOLE(std::string& line);

// Shows text on the terminal of standard error in place of what was shown before; blank removes it.
// Nothing happens when standard error is no terminal.
void SHOW_STATUS(std::string_view text);

// From the first to the second the interrupt key is only remembered.
void LISTEN_FOR_INTERRUPT();
void STOP_LISTENING();
bool INTERRUPTED();

// Value of an environment variable. False when it is unset.
bool GET_ENVIRONMENT(const std::string& name, std::string& value);

// The current directory; blank when the system cannot tell. Changing and making one: true on
// success.
std::string GET_DIRECTORY();
bool CHANGE_DIRECTORY(const std::string& path);
bool MAKE_DIRECTORY(const std::string& path);

// Names in a directory that begin with start, "/" behind those of directories; none on failure.
std::vector<std::string> FILE_NAMES(const std::string& directory, std::string_view start);

// Runs a command line with /bin/sh on our own input and output. Its status is ignored.
void RUN_COMMAND_LINE(const std::string& line);

// Replaces the file's content in one step: the old or the new content is there, never half of it.
// Where the folder takes no second file, and for devices and pipes, it is written in place.
// Returns false when the new content is not there.
bool REPLACE_FILE(const std::string& path, const std::string& content);

// Adds text at the end of a file, in one piece also when others do so at the same time. A new file
// is its owner's alone. False on failure.
bool APPEND_TO_FILE(const std::string& path, std::string_view text);

}  // namespace KVA_CONSOLE
