// What the fuzz targets share: a scratch folder, fresh state, console input that ends, and a
// console whose output goes nowhere. Nothing here may be linked into the program.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "console_code/kva_utilities/files.h"

// Called by libFuzzer once for each input.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace FUZZ {

// Thrown out of the console when a dialogue has run out of input, or says too much.
struct END_OF_DIALOGUE {};

// The input as text.
std::string TEXT_OF(const std::uint8_t* data, std::size_t size);

// The lines of a text as the program reads them from a file.
KVA_UTILITIES::FILE_LINES LINES_OF(const std::string& text);

// An empty scratch folder, which is the working directory and holds the settings, and all state as
// at the start of the program.
void START();

// The same but for the blocks that are loaded, and what comes with them: the rest is CLEAR's.
void START_WITH_BLOCKS();

// A file in the scratch folder.
void PUT_FILE(const std::string& name, std::string_view text);

// A file of the project.
std::string PROJECT_FILE(const std::string& name);

// The names and sizes of the files in the scratch folder, a line each.
std::string FILES_THERE();

// Calls a routine while the console reads these lines, and blank_lines blank ones behind them.
using ROUTINE = void (*)();
void WITH_CONSOLE(const std::string& lines, int blank_lines, ROUTINE routine);

// The same for the whole program, which may end itself. Returns what it said.
std::string RUN_PROGRAM(const std::string& lines, int blank_lines, ROUTINE program);

// Ends the run as a find when a statement that must hold for every input does not.
void MUST_HOLD(bool statement, std::string_view what);

}  // namespace FUZZ
