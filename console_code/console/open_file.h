// Opening the files that the user names, and the log.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "console_code/kva_utilities/file_patterns.h"
#include "console_code/kva_utilities/files.h"

namespace KVA_CONSOLE {

// Opens a file named by the pending text or by a prompt, and asks again until it is open or no
// name is given. Words in control: "APPEND", "NEW", "OLD", "REPLACE", "CONF", "SAVE", "READ",
// "WHOLE" (with APPEND or REPLACE: the file stays as it was until KEEP_FILE), and "MACRO", which
// refuses a CIF and asks for no other name. A file that is to be written, and whose
// extension is that of another kind of file of the program than file.EXT, is refused; in a macro
// that drops the command.
// True when this call opened the file; file.OPEN is true as well when one was kept open.
bool OPEN_FILE(KVA_UTILITIES::FILE_RECORD& file, std::string_view control = "");

// Puts what was written to a file that was opened "WHOLE" in its place and closes it. False, after
// a message that names the file and why, when that could not be done; the old file is still there
// then. CLOSE_FILE drops what was written.
bool KEEP_FILE(KVA_UTILITIES::FILE_RECORD& file);

// The name of a file that a command writes whole, by the pending text or a prompt, asked again
// while it is a folder, open, or of another kind than file.EXT, which in a macro drops the command.
// Blank: none is wanted.
std::string NAME_OF_NEW_FILE(const KVA_UTILITIES::FILE_RECORD& file);

// Asks once whether those of the files that exist may be replaced; in a macro it tells that they
// are.
bool MAY_REPLACE(const std::vector<std::string>& names);

// A file that the user named, with the numbers that its name gave where the pattern had {P} and
// {T}.
struct NAMED_FILE {
  std::string NAME;
  KVA_UTILITIES::PATTERN_NUMBERS NUMBERS;
};

// Like OPEN_FILE for files that exist, of which several may be named: names that blanks divide (a
// line that is the name of a file is that file) and patterns, whose files come in natural order. A
// single name without a pattern is opened as by OPEN_FILE; of several none is open. No names: the
// user wants none.
std::vector<NAMED_FILE> OPEN_FILES(KVA_UTILITIES::FILE_RECORD& file, std::string_view control);

// The files of one name or pattern; a name without a pattern need not exist.
std::vector<NAMED_FILE> FILES_NAMED(std::string_view typed, std::string_view ext);

// Asks for a file name, by the system's dialogue where there is one and no macro answers, else at
// the prompt. A blank answer means none. A folder that is chosen in the dialogue becomes the
// working directory.
void GET_INPUT_FILENAME(std::string_view word, std::string_view descriptor, std::string_view ext,
                        bool must_exist = false);

// The path that was chosen in such a dialogue becomes pending text, its folder the working
// directory. Of a folder that cannot be entered, and for a name too long for a line, the whole path
// is pending.
void TAKE_CHOSEN(const std::string& path);

void OPEN_LOG_FILE();

// Opens the macro file, control as for OPEN_FILE.
bool OPEN_MACRO_FILE(std::string_view control);

// The path of a name in the current directory.
std::string IN_DIRECTORY(const std::string& name);

// The path that a typed name means: without quotes around it, "~" as the home directory.
std::string USER_PATH(std::string_view typed);

// name with "." and ext behind it when it holds no ".".
std::string WITH_EXTENSION(const std::string& name, std::string_view ext);

}  // namespace KVA_CONSOLE
