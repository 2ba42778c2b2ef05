// The operating system, behind one small header: the terminal, environment, directories, the file
// dialogue, system commands. Each system has a source of its own for it. Knows nothing of the
// program's records. Texts are UTF-8.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace KVA_CONSOLE {

// Puts the null device in place of a standard stream that is closed, so that no file that is opened
// later is taken for it, and lets bytes through as they are. Called before any file is opened.
void FILL_STANDARD_STREAMS();

// Gives the console window its size, where it is the program that does so.
void SIZE_CONSOLE();

// Columns of the terminal on standard output; 0 when it is none.
int CONSOLE_COLUMNS();

// Standard input and output are both a terminal on which a cursor can be moved.
bool AT_TERMINAL();

// Sets the terminal's title, when there is a terminal that can.
void SET_CONSOLE_TITLE(std::string_view title);

// Writes text to standard output as it is, and flushes it.
void WRITE_CONSOLE(std::string_view text);

// Reads one line of standard input; of a long one, at least its first 255 bytes and some more.
// False at the end of input, and when the interrupt key ended the reading.
bool READ_CONSOLE(std::string& line);

// Shows text on the terminal of standard error in place of what was shown before; blank removes it.
// Nothing happens when standard error is no terminal.
void SHOW_STATUS(std::string_view text);

// From the first to the second the interrupt key is only remembered. Where standard input is a
// terminal KEEP_INTERRUPTS, called once at start, makes it so for good.
void LISTEN_FOR_INTERRUPT();
void STOP_LISTENING();
void KEEP_INTERRUPTS();
bool INTERRUPTED();
void FORGET_INTERRUPT();

// While it is on, an interrupt that is kept ends a reading that waits for input.
void LET_INTERRUPT_END_READING(bool on);

// The program's name and arguments.
std::vector<std::string> COMMAND_LINE(int argc, char** argv);

// Value of an environment variable. False when it is unset.
bool GET_ENVIRONMENT(const std::string& name, std::string& value);

// The user's home directory. False when the system tells none.
bool GET_HOME(std::string& path);

// Characters that divide a path; the program writes the first.
extern const std::string_view PATH_SEPARATORS;

// The current directory; blank when the system cannot tell. Changing and making one: true on
// success.
std::string GET_DIRECTORY();
bool CHANGE_DIRECTORY(const std::string& path);
bool MAKE_DIRECTORY(const std::string& path);

// What the system's own dialogue for choosing a file shows, and whether the file must exist.
struct FILE_QUESTION {
  std::string TITLE;
  std::string DESCRIPTOR;  // of the files with the extension
  std::string EXT;
  std::string FOLDER;  // where it begins; blank: where the system likes
  bool MUST_EXIST = false;
};
enum class FILE_CHOICE { CHOSEN, CANCELLED, NO_DIALOGUE };

// Lets the user choose; name is the whole path. NO_DIALOGUE when the system has none or nobody sits
// at the console.
FILE_CHOICE CHOOSE_FILE(const FILE_QUESTION& question, std::string& name);

// The system's command that lists a directory.
extern const std::string_view LISTING_COMMAND;

// Runs a command line with the system's command processor on our own input and output. Its status
// is ignored.
void RUN_COMMAND_LINE(const std::string& line);

// Adds text at the end of a file, in one piece also when others do so at the same time. A new file
// is its owner's alone. False on failure.
bool APPEND_TO_FILE(const std::string& path, std::string_view text);

}  // namespace KVA_CONSOLE
