// The options of the command line and their answers. They come before the console: no settings are
// read, no header is shown, no log is written.
#include "src/facetor6_main/program_options.h"

#include <iostream>
#include <string_view>

#include "console_code/console/state.h"
#include "console_code/kva_utilities/columns.h"
#include "console_code/kva_utilities/text.h"
#include "src/facetor6_readfiles/readfiles.h"

namespace FACETOR_MAIN {

using namespace KVA_CONSOLE;
using namespace KVA_UTILITIES;

namespace {

constexpr std::string_view help_text =
    "Usage: gemmara [MACRO] [FILE.cif | FILE.out]...\n"
    "       gemmara --help | --version\n"
    "\n"
    "Follows crystal structures through a series of pressures or temperatures:\n"
    "reads CIF, measures the same bonds, angles and polyhedra in every block, with\n"
    "esds, and writes tables, CIF and equation-of-state data files.\n"
    "\n"
    "  MACRO      file of recorded input, replayed at start; without a \".\" in its\n"
    "             name \".mcr\" is added; then the prompt comes back\n"
    "  FILE.cif   structures to read before that, as by READ full\n"
    "  FILE.out   output of CRYSTAL to read before that\n"
    "  --help     show this text and end\n"
    "  --version  show the version and end\n"
    "\n"
    "At the prompt HELP lists the commands and EXIT ends the program.\n"
    "\n"
    "Exit status: 0 after EXIT or X and after an option, 1 if the answer to an option\n"
    "could not be written, 2 if standard input ends at a prompt, 64 for an unknown\n"
    "option, 71 if there is no memory left to go on.\n"
    "\n"
    "Environment: LOCALAPPDATA, else XDG_CONFIG_HOME, else HOME/.config is the folder\n"
    "of quorvansoftware/gemmara.ini, the settings file. LOCALAPPDATA set but blank\n"
    "means no settings file.\n";

std::string VERSION_TEXT() {
  return PROGRAM_NAME + " " + LEFT_ADJUST(REAL_COLUMNS(PROGRAM_VERSION, 5, 1)) + ", " +
         PROGRAM_VERSION_DATE + "\n";
}

PROGRAM_STATUS SHOW(std::string_view text) {
  std::cout << text << std::flush;
  if (std::cout) return STATUS_OK;
  std::cerr << "gemmara: standard output cannot be written\n";
  return STATUS_NOT_WRITTEN;
}

PROGRAM_STATUS ANSWER_OPTION(std::string_view option) {
  if (option == "--help") return SHOW(help_text);
  if (option == "--version") return SHOW(VERSION_TEXT());
  std::cerr << "gemmara: unknown option " << option << ", see gemmara --help\n";
  return STATUS_USAGE;
}

}  // namespace

PROGRAM_STATUS END_WITHOUT_MEMORY() {
  std::cerr << "gemmara: there is not enough memory to go on\n";
  return STATUS_NO_MEMORY;
}

PROGRAM_ARGUMENTS READ_ARGUMENTS(const std::vector<std::string>& command_line) {
  PROGRAM_ARGUMENTS arguments;
  for (std::size_t i = 1; i < command_line.size(); ++i) {
    const std::string_view argument = command_line[i];
    if (!argument.starts_with("--")) continue;
    arguments.ANSWERED = true;
    arguments.STATUS = ANSWER_OPTION(argument);
    return arguments;
  }
  for (std::size_t i = 1; i < command_line.size(); ++i)
    if (FACETOR_READFILES::IS_STRUCTURE_FILE(command_line[i]))
      arguments.FILES.push_back(command_line[i]);
    else if (arguments.MACRO.empty())
      arguments.MACRO = command_line[i];
    else
      arguments.MORE_MACROS.push_back(command_line[i]);
  return arguments;
}

}  // namespace FACETOR_MAIN
