// What the program is asked on its command line: options that are answered at once, or a macro.
#pragma once

#include <string>
#include <vector>

namespace FACETOR_MAIN {

// What the shell is told after an option. (The console ends with 0, or with 2 when input runs out.)
enum PROGRAM_STATUS {
  STATUS_OK = 0,
  STATUS_NOT_WRITTEN = 1,  // the answer could not be written
  STATUS_USAGE = 64,       // no such option (EX_USAGE of sysexits.h)
  STATUS_NO_MEMORY = 71    // no memory is left to go on (EX_OSERR)
};

// Says on standard error, without memory, why the program ends.
PROGRAM_STATUS END_WITHOUT_MEMORY();

struct PROGRAM_ARGUMENTS {
  bool ANSWERED = false;  // an option was dealt with: the program ends with STATUS
  PROGRAM_STATUS STATUS = STATUS_OK;
  std::string MACRO;                     // name of the macro to replay, blank when none is given
  std::vector<std::string> FILES;        // structures to read before it
  std::vector<std::string> MORE_MACROS;  // names behind that of the macro, which do nothing
};

// An argument that begins with "--" is an option, wherever it stands, and the first one counts;
// else those that end in .cif or .out are files to read, and the first other names a macro. The
// program's name stands before them. Uses the program's
// identity and nothing else of the console.
PROGRAM_ARGUMENTS READ_ARGUMENTS(const std::vector<std::string>& command_line);

}  // namespace FACETOR_MAIN
