// Running another program without a command processor: what it is given reaches nobody else. Each
// system has a source of its own for it. Texts are UTF-8.
#pragma once

#include <chrono>
#include <string>
#include <vector>

namespace KVA_CONSOLE {

struct PROGRAM_CALL {
  std::string PATH;  // of the program, from the root
  std::vector<std::string> ARGUMENTS;
  std::string INPUT;   // what it reads on standard input
  std::string FOLDER;  // in which it runs; blank: ours
  std::chrono::seconds LIMIT{60};
};

enum class PROGRAM_END {
  BY_ITSELF,    // its status tells how
  NOT_STARTED,  // the system could not run it
  INTERRUPTED,  // the interrupt key ended it
  GIVEN_UP      // it took longer than its limit, or wrote more than there is room for
};

struct PROGRAM_ANSWER {
  PROGRAM_END END = PROGRAM_END::NOT_STARTED;
  int STATUS = 0;      // 0: all is well; of a program that was killed, not 0
  std::string OUTPUT;  // what it wrote
  std::string ERRORS;  // and to standard error
};

// Runs the program and waits for it. It is ended when the interrupt key is pressed, which the
// caller listens for.
PROGRAM_ANSWER RUN_PROGRAM(const PROGRAM_CALL& call);

// The whole path of a program in the folders that the user has for programs, and where its
// installer puts it; blank when there is none. Folders that are not told from the root are left
// out, so that no program is taken from the current directory.
std::string FIND_PROGRAM(const std::string& name);

}  // namespace KVA_CONSOLE
