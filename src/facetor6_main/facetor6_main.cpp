// Start-up, the command table and the dispatcher: the order of everything. No calculation, no
// report, and no question of its own.
#include <array>
#include <new>  // for bad_alloc
#include <span>
#include <string>
#include <string_view>

#include "console_code/console/command.h"
#include "console_code/console/line_editor.h"
#include "console_code/console/output.h"
#include "console_code/console/settings.h"
#include "console_code/console/state.h"
#include "console_code/console_win.h"
#include "console_code/kva_utilities/columns.h"
#include "console_code/kva_utilities/files.h"
#include "console_code/kva_utilities/system_files.h"
#include "console_code/kva_utilities/text.h"
#include "src/facetor6_atomedit/atomedit.h"
#include "src/facetor6_calc/calc.h"
#include "src/facetor6_console/measure_list.h"
#include "src/facetor6_console/parameters.h"
#include "src/facetor6_console/phase_list.h"
#include "src/facetor6_console/valence_table.h"
#include "src/facetor6_exportfiles/exportfiles.h"
#include "src/facetor6_graph/fit.h"
#include "src/facetor6_graph/graph.h"
#include "src/facetor6_graph/subjects.h"
#include "src/facetor6_list/list.h"
#include "src/facetor6_main/program_options.h"
#include "src/facetor6_measure/measure.h"
#include "src/facetor6_ptedit/ptedit.h"
#include "src/facetor6_readfiles/check.h"
#include "src/facetor6_readfiles/readfiles.h"
#include "src/facetor6_sheets/csv.h"
#include "src/facetor6_transform/transform.h"
#include "src/facetor6_writefiles/writefiles.h"
#include "version.h"

namespace {

using namespace KVA_CONSOLE;

// ---- command table ----

// Position in the command table.
enum MAIN_COMMAND {
  COMMAND_READ = 1,
  COMMAND_WRITE,
  COMMAND_LIST,
  COMMAND_SHOW,
  COMMAND_SET,
  COMMAND_EXPORT,
  COMMAND_CLEAR,
  COMMAND_USE,
  COMMAND_OMIT,
  COMMAND_SORT,
  COMMAND_UNSORT,
  COMMAND_CALC,
  COMMAND_TRANSFORM,
  COMMAND_CHECK,
  COMMAND_TABLE,
  COMMAND_ATOMEDIT,
  COMMAND_PTEDIT,
  COMMAND_TEST,
  COMMAND_MEASURE,
  COMMAND_CSV,
  COMMAND_GRAPH,
  COMMAND_FIT,
  COMMAND_COUNT = COMMAND_FIT
};

// Groups of HELP, in the order in which they are shown.
enum MAIN_GROUP { CONFIGURATION = 1, FILES, DATA, RESULTS, SHEETS };

constexpr std::array<std::string_view, SHEETS> group_titles{
    "Configuration", "File Input/Output", "Data management", "Calculations & Results",
    "Measures, sheets and graphs"};

struct MAIN_ROW {
  MAIN_COMMAND CODE;
  std::string_view WORD;
  std::string_view DESCRIPTION;
  MAIN_GROUP GROUP;
  bool RESERVED = false;
};

// clang-format off
constexpr std::array main_table{
    MAIN_ROW{COMMAND_READ,      "READ",      "Read in crystal data from file",  FILES},
    MAIN_ROW{COMMAND_WRITE,     "WRITE",     "Write crystal data to file",      FILES},
    MAIN_ROW{COMMAND_LIST,      "LIST",      "List crystal data",               RESULTS},
    MAIN_ROW{COMMAND_SHOW,      "SHOW",      "Show program parameters",         CONFIGURATION},
    MAIN_ROW{COMMAND_SET,       "SET",       "Set program parameters",          CONFIGURATION},
    MAIN_ROW{COMMAND_EXPORT,    "EXPORT",    "Export data",                     FILES},
    MAIN_ROW{COMMAND_CLEAR,     "CLEAR",     "Clear all data",                  DATA},
    MAIN_ROW{COMMAND_USE,       "USE",       "Use data blocks",                 DATA},
    MAIN_ROW{COMMAND_OMIT,      "OMIT",      "Omit data blocks",                DATA},
    MAIN_ROW{COMMAND_SORT,      "SORT",      "Sort data blocks",                DATA},
    MAIN_ROW{COMMAND_UNSORT,    "UNSORT",    "Unsort data blocks",              DATA},
    MAIN_ROW{COMMAND_CALC,      "CALC",      "Calculate structural parameters", RESULTS},
    MAIN_ROW{COMMAND_TRANSFORM, "TRANSFORM", "Transform atom coordinates",      RESULTS},
    MAIN_ROW{COMMAND_CHECK,     "CHECK",     "Check CIF contents",              DATA},
    MAIN_ROW{COMMAND_TABLE,     "TABLE",     "List crystal data with esds",     RESULTS},
    MAIN_ROW{COMMAND_ATOMEDIT,  "ATOMEDIT",  "Edit atom data and flags",        DATA},
    MAIN_ROW{COMMAND_PTEDIT,    "PTEDIT",    "Edit the P and/or T data",        DATA},
    MAIN_ROW{COMMAND_TEST,      "TEST",      "Test routine",                    DATA, true},
    MAIN_ROW{COMMAND_MEASURE,   "MEASURE",   "Define and list measures",        SHEETS},
    MAIN_ROW{COMMAND_CSV,       "CSV",       "Write data as a sheet",           SHEETS},
    MAIN_ROW{COMMAND_GRAPH,     "GRAPH",     "Draw a graph",                    SHEETS},
    MAIN_ROW{COMMAND_FIT,       "FIT",       "Fit lines against P or T",        SHEETS},
};
// clang-format on

consteval bool ROWS_STAND_IN_ORDER() {
  int position = 0;
  for (const MAIN_ROW& row : main_table)
    if (row.CODE != ++position) return false;
  return position == COMMAND_COUNT;
}
static_assert(ROWS_STAND_IN_ORDER(), "a command's number is its place in the table");

// The menu that the rest of a command's line may name an entry of.
std::span<const std::string_view> MENU_OF(MAIN_COMMAND command) {
  switch (command) {
    case COMMAND_READ:
      return FACETOR_READFILES::READ_MENU();
    case COMMAND_WRITE:
      return FACETOR_WRITEFILES::WRITE_MENU();
    case COMMAND_LIST:
      return FACETOR_LIST::LIST_MENU();
    case COMMAND_TABLE:
      return FACETOR_LIST::TABLE_MENU();
    case COMMAND_SET:
      return FACETOR_CONSOLE::SET_MENU();
    case COMMAND_CALC:
      return FACETOR_CALC::CALC_MENU();
    case COMMAND_CSV:
      return FACETOR_SHEETS::CSV_MENU();
    case COMMAND_GRAPH:
    case COMMAND_FIT:
      return FACETOR_GRAPH::SUBJECT_MENU();
    default:
      return {};
  }
}

// Called before every command, since the atom editor puts its own table in place of this one.
void SET_CLIST_MAIN() {
  CONSOLE.COMMANDS.CLEAR();
  for (const MAIN_ROW& row : main_table)
    CONSOLE.COMMANDS.ADD({std::string(row.WORD), std::string(row.DESCRIPTION), row.GROUP,
                          row.RESERVED, MENU_OF(row.CODE)});
  CONSOLE.CLIST_GROUP_TITLE.CLEAR();
  for (const std::string_view title : group_titles)
    CONSOLE.CLIST_GROUP_TITLE.ADD(std::string(title));
}

// ---- dispatcher ----

void RUN_TEST() {
  ANNOUNCE("Test routine to look at BVS parameters");
}

void REPORT_NO_ROUTINE(int icom) {
  const bool in_table = icom >= 1 && icom <= CONSOLE.COMMANDS.COUNT();
  WRITE_OUT_BLANK(1);
  WRITE_OUT("    ***** Command not allocated to a subroutine");
  WRITE_OUT(KVA_UTILITIES::INTEGER_AT_LEAST(icom, 5) + " " +
            (in_table ? CONSOLE.COMMANDS(icom).CLIST : ""));
  WRITE_OUT("   command argument was: " + AS_IT_IS(CONSOLE.INSTRING));
}

void EXECUTE(int icom) {
  switch (icom) {
    case COMMAND_READ:
      return FACETOR_READFILES::READ_PHASE_FROM_FILE();
    case COMMAND_WRITE:
      return FACETOR_WRITEFILES::WRITE_PHASE_TO_FILE();
    case COMMAND_LIST:
      return FACETOR_LIST::RUN_FACETOR_LIST();
    case COMMAND_SHOW:
      return FACETOR_CONSOLE::RUN_SHOW_FACETOR_PARAMS();
    case COMMAND_SET:
      return FACETOR_CONSOLE::RUN_SET_FACETOR_PARAMS();
    case COMMAND_EXPORT:
      return FACETOR_EXPORTFILES::RUN_EXPORT();
    case COMMAND_CLEAR:
      FACETOR_SHEETS::LAST_FIT = {};
      return FACETOR_CONSOLE::CLEAR_FACETOR_LIST();
    case COMMAND_USE:
      FACETOR_CONSOLE::USE_FACETOR_LIST();
      return FACETOR_LIST::FACETOR_LIST_PHASE();
    case COMMAND_OMIT:
      FACETOR_CONSOLE::OMIT_FACETOR_LIST();
      return FACETOR_LIST::FACETOR_LIST_PHASE();
    case COMMAND_SORT:
      FACETOR_CONSOLE::SORT_FACETOR_LIST();
      return FACETOR_LIST::FACETOR_LIST_PHASE();
    case COMMAND_UNSORT:
      FACETOR_CONSOLE::UNSORT_FACETOR_LIST();
      return FACETOR_LIST::FACETOR_LIST_PHASE();
    case COMMAND_CALC:
      return FACETOR_CALC::RUN_FACETOR_CALC();
    case COMMAND_TRANSFORM:
      return FACETOR_TRANSFORM::RUN_TRANSFORM();
    case COMMAND_CHECK:
      return FACETOR_READFILES::RUN_CHECK_CIF();
    case COMMAND_TABLE:
      return FACETOR_LIST::RUN_FACETOR_TABLE();
    case COMMAND_ATOMEDIT:
      return FACETOR_ATOMEDIT::RUN_ATOMEDIT();
    case COMMAND_PTEDIT:
      return FACETOR_PTEDIT::RUN_PTEDIT();
    case COMMAND_MEASURE:
      return FACETOR_MEASURE::RUN_MEASURE();
    case COMMAND_CSV:
      return FACETOR_SHEETS::RUN_CSV();
    case COMMAND_GRAPH:
      return FACETOR_GRAPH::RUN_GRAPH();
    case COMMAND_FIT:
      return FACETOR_GRAPH::RUN_FIT();
    case COMMAND_TEST:
      return RUN_TEST();
    default:
      return REPORT_NO_ROUTINE(icom);
  }
}

// What runs out of memory is given up; the program and what is loaded stay. False then.
template <class ROUTINE>
bool IN_MEMORY(ROUTINE routine) {
  try {
    routine();
    return true;
  } catch (const std::bad_alloc&) {
    KVA_UTILITIES::CLOSE_UNIT(DATA_UNIT);  // what it was writing is dropped
    WARNING("There is not enough memory for this command, which was given up");
  }
  return false;
}

// The next command of the user: its number, 0 or less for the end.
void ASK_COMMAND(int& icom) {
  CONSOLE.CMD_PROMPT = "G_MARA";
  SET_CMD_PROMPT();
  SET_CLIST_MAIN();
  BACK_AT_MAIN_PROMPT();
  COMMAND(icom);
}

void CARRY_OUT(int icom) {
  EXECUTE(icom);
  FACETOR_CONSOLE::FOLLOW_REFERENCE();
}

// ---- start-up ----

void SET_IDENTITY() {
  constexpr std::array<std::string_view, 7> comments{
      "Reads series of crystal structures from CIF files",
      "Finds the bonds once, on a reference block",
      "Measures the same bonds, angles and polyhedra in every block",
      "Propagates the estimated standard uncertainty of every value",
      "Polyhedral volumes, distortion and sphere-fit parameters",
      "Bond valences and bond-valence sums",
      "Writes tables, CIF and equation-of-state data files"};
  PROGRAM_NAME = "Gemmara";
  PROGRAM_VERSION = FACETOR_MAIN::version;
  PROGRAM_VERSION_DATE = FACETOR_MAIN::version_date;
  PROGRAM_AUTHORS = "The Gemmara developers";
  const std::string separator(1, PATH_SEPARATORS.front());
  PROGRAM_INI_FILE = separator + "quorvansoftware" + separator + "gemmara.ini";
  PROGRAM_COMMENT.FILL("");
  int line = 0;
  for (const std::string_view comment : comments) PROGRAM_COMMENT(++line) = comment;
}

void START_UP(const std::string& macro) {
  KVA_UTILITIES::REMOVE_TEMPORARIES_AT_SIGNALS();
  CONSOLE.RUN_TYPE = 1;
  FACETOR_CONSOLE::INIT_PHASE_LIST();
  FACETOR_CONSOLE::SET_DEFAULT_CHARGES();
  INIT_CONSOLE(macro);
  START_LINE_EDITOR();
  WRITE_HEADER();
}

// Without memory for the prompt itself there is nothing more to be asked.
void COMMAND_LOOP() {
  constexpr int patience = 100;
  int failures = 0;
  while (failures < patience) {
    int icom = 0;
    failures = IN_MEMORY([&] { ASK_COMMAND(icom); }) ? 0 : failures + 1;
    if (failures > 0) CONSOLE.SYSTEM_MODE = 0;
    if (failures > 0 || CONSOLE.DROPPED) continue;
    if (icom <= 0) CLOSE_CONSOLE();
    IN_MEMORY([&] { CARRY_OUT(icom); });
  }
}

// The exit status of an option that was answered; else the user is asked until he leaves.
int RUN(int argc, char** argv) {
  SET_IDENTITY();
  const FACETOR_MAIN::PROGRAM_ARGUMENTS arguments =
      FACETOR_MAIN::READ_ARGUMENTS(COMMAND_LINE(argc, argv));
  if (arguments.ANSWERED) return arguments.STATUS;
  START_UP(arguments.MACRO);
  for (const std::string& name : arguments.MORE_MACROS)
    WARNING(AS_IT_IS(name) + " is not read: it is no CIF or output, and there is a macro already");
  IN_MEMORY([&] { FACETOR_READFILES::READ_GIVEN_FILES(arguments.FILES); });
  COMMAND_LOOP();
  return FACETOR_MAIN::END_WITHOUT_MEMORY();
}

}  // namespace

int main(int argc, char** argv) {
  try {
    return RUN(argc, argv);
  } catch (const std::bad_alloc&) {
    return FACETOR_MAIN::END_WITHOUT_MEMORY();
  }
}
