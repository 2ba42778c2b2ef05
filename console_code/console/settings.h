// What is kept between runs, the working directory, the operation mode, start and end of the
// console, and system commands.
#pragma once

#include <string>
#include <string_view>

namespace KVA_CONSOLE {

void INIT_PARAMS();

// Value of a key of 4 characters. ierr is 1 when it is absent or blank.
std::string GET_PARAM(std::string_view key, int& ierr);
void SAVE_PARAM(std::string_view key, std::string_view value);

void SET_MODE();
void WRITE_MODE();

void INIT_WORK_DIR();
void SAVE_WORK_DIR();

// Sizes the console, reads the settings, and starts a macro when argument names one (blank: none).
void INIT_CONSOLE(const std::string& argument);

// Saves the working directory and ends the process with status 0.
void CLOSE_CONSOLE();

// Runs a system command; CD and CHDIR change our own directory.
void SYSTEM_COMMAND(std::string_view line, bool& err);

}  // namespace KVA_CONSOLE
