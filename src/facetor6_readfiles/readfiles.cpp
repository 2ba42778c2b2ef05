// The dialogue of READ, and what completes a block that was read.
#include "src/facetor6_readfiles/readfiles.h"

#include <array>
#include <cmath>  // for abs
#include <map>
#include <set>
#include <string>
#include <vector>

#include "console_code/console/input.h"
#include "console_code/console/open_file.h"
#include "console_code/console/output.h"
#include "console_code/console/prompts.h"
#include "console_code/console/state.h"
#include "console_code/console/work.h"
#include "console_code/kva_utilities/columns.h"
#include "console_code/kva_utilities/names.h"
#include "console_code/kva_utilities/numbers.h"
#include "console_code/kva_utilities/system_files.h"
#include "console_code/kva_utilities/text.h"
#include "src/facetor6_console/phase_list.h"
#include "src/facetor6_list/list.h"
#include "src/kva_crystal_structures/atom_search.h"
#include "src/kva_crystal_structures/displacement.h"

namespace FACETOR_READFILES {

using namespace FACETOR_CONSOLE;
using namespace KVA_CONSOLE;
using namespace KVA_CRYSTAL_STRUCTURES;
using namespace KVA_UTILITIES;

namespace {

// ---- completing a block ----

// A pressure that was measured as 0 keeps its esd.
void SET_DEFAULT_CONDITIONS(CRYSTAL_STRUCTURE_TYPE& phase) {
  if (phase.PT(TEMPERATURE, PT_VALUE) < TINY_REAL) {
    phase.PT(TEMPERATURE, PT_VALUE) = ROOM_TEMPERATURE;
    phase.PT(TEMPERATURE, PT_ESD) = 0.0f;
  }
  if (std::abs(phase.PT(PRESSURE, PT_VALUE)) < TINY_REAL)
    phase.PT(PRESSURE, PT_VALUE) = ONE_ATMOSPHERE;
}

// Names the unique axis of a monoclinic block, by the first angle that is not 90 degrees.
void SET_UNIQUE_AXIS(CRYSTAL_STRUCTURE_TYPE& phase) {
  constexpr float right_angle_tolerance = 0.01f;  // degrees
  constexpr std::string_view axes = "abc";
  if (phase.SPG.CRYSTALSYS.NAME != XTAL::SYSTEM::MONOCLINIC) return;
  for (std::size_t k = 0; k < 3; ++k) {
    if (!(std::abs(phase.CELL.ANG[k] - 90.0f) > right_angle_tolerance)) continue;
    phase.SPG.CRYSTALSYS.UNIQUE_AXIS = axes[k];
    return;
  }
}

void COMPLETE_BLOCK(CRYSTAL_STRUCTURE_TYPE& phase) {
  SET_ALLATOM_MULTIP(phase);
  SET_ALLATOM_ADP(phase);
  SET_DEFAULT_CONDITIONS(phase);
  SET_UNIQUE_AXIS(phase);
}

// ---- choosing and reading a file ----

enum FILE_TYPE { CIF_FILE = 1, RFINE_FILE, CRYSTAL_FILE, CCSL_FILE, FULL_CIF_FILE };
constexpr std::array<std::string_view, 5> type_menu{"cif", "RFINE prm", "Crystal17 out", "CCSL cnt",
                                                    "full CIF"};  // ORDER FILE_TYPE
constexpr std::array<std::string_view, 5> type_extensions{"cif", "prm", "out", "cnt",
                                                          "cif"};  // ORDER FILE_TYPE

// Files of a type that can be read; none when the user wants none.
struct CHOSEN_FILES {
  int TYPE = 0;
  FILE_RECORD FILE;  // open when there is one file
  std::vector<NAMED_FILE> NAMES;
};

FILE_RECORD RECORD_OF_TYPE(int type) {
  FILE_RECORD file;
  file.EXT = type_extensions[static_cast<std::size_t>(type - 1)];
  file.DESCRIPTOR = file.EXT + " file";
  file.UNIT = DATA_UNIT;
  return file;
}

// The names of files that stand where their type should are told, since the type is asked for.
void TELL_WITHOUT_TYPE() {
  const std::vector<std::string> words = FILE_WORDS(CONSOLE.INSTRING);
  if (words.empty() || !IS_STRUCTURE_FILE(words.front())) return;
  const bool output = L_CASE(words.front()).ends_with(".out");
  WRITE_OUT("*****The type of the file comes first: READ " +
            std::string(output ? "Crystal17" : "cif") + " " + AS_IT_IS(TRIM(CONSOLE.INSTRING)));
  CLEAR_INPUT();
}

// What stands behind a type is a file, even if it is called as the menu goes on: Crystal17 out
int CHOOSE_TYPE() {
  const int type = GET_LIST_INSTRING(type_menu);
  if (type > 0) return type;
  TELL_WITHOUT_TYPE();
  return GET_LIST_SELECTION("File type", type_menu);
}

CHOSEN_FILES CHOOSE_FILES() {
  while (true) {
    CHOSEN_FILES chosen;
    chosen.TYPE = CHOOSE_TYPE();
    if (chosen.TYPE <= 0) return {};
    if (chosen.TYPE == RFINE_FILE || chosen.TYPE == CCSL_FILE) {
      WRITE_OUT("|*****Reading of " +
                std::string(type_menu[static_cast<std::size_t>(chosen.TYPE - 1)]) +
                " file not yet available");
      continue;
    }
    chosen.FILE = RECORD_OF_TYPE(chosen.TYPE);
    chosen.NAMES = OPEN_FILES(chosen.FILE, "OLD READ");
    if (!chosen.NAMES.empty()) return chosen;
  }
}

// Shows what was read and adds it, if asked for on the user's word; false when there was no room.
bool OFFER_BLOCKS(STRUCTURE_LIST& newx, int nblocks, bool ask = true) {
  WRITE_OUT_BLANK(1);
  WRITE_OUT("The following " + INTEGER_AT_LEAST(nblocks, 2) +
            " crystal structures were read from the file:");
  FACETOR_LIST::LIST_PHASE(newx, nblocks);
  for (CRYSTAL_STRUCTURE_TYPE& phase : newx) COMPLETE_BLOCK(phase);
  if (ask && GET_ANSWER_YN("Do you want to add this new data", "Y") != 'Y') return true;
  bool error = false;
  ADD_PHASE_LIST(newx, nblocks, error);
  if (error)
    WARNING("Problem allocating arrays in add_phase_list, called from read_phase_from_file");
  return !error;
}

void SHOW_LOADED() {
  WRITE_OUT_BLANK(1);
  if (NPHASES > 0) {
    WRITE_OUT("The loaded phases are now:");
    FACETOR_LIST::FACETOR_LIST_PHASE();
  } else {
    WRITE_OUT("No phases loaded");
  }
  EQUAL_ATOMS();
}

// A file as its reader wants it: an output of CRYSTAL by its lines, a CIF by its bytes.
struct FILE_CONTENTS {
  std::string NAME;
  FILE_LINES LINES;
  std::string BYTES;
};

// The message of a file that cannot be read, blank when it can.
std::string READ_CONTENTS(int type, FILE_RECORD& file, FILE_CONTENTS& contents) {
  contents.NAME = file.NAME;  // closing the file forgets it
  std::string message;
  if (type == CRYSTAL_FILE) READ_FILE(file, contents.LINES, message);
  CLOSE_FILE(file);
  if (type == CRYSTAL_FILE) return message;
  const bool read = READ_FILE_BYTES(contents.NAME, contents.BYTES);
  if (read && !contents.BYTES.empty()) return "";
  return read ? "*****Error in reading file: " + contents.NAME + " or it is empty"
              : "*****Error opening file: " + contents.NAME;
}

// False, after a message, when there is nothing to read or the user stopped the work.
bool READ_CHOSEN_FILE(int type, FILE_RECORD& file, FILE_CONTENTS& contents) {
  constexpr std::size_t bytes_of_one = 10;  // of records, geometry and tables, for one of a CIF
  WORK work("Reading the file", 1);
  const std::string message = READ_CONTENTS(type, file, contents);
  EXPECT_MEMORY(bytes_of_one * contents.BYTES.size());
  if (message.empty()) return GO_ON(work, 1);
  WRITE_OUT_BLANK(1);
  WRITE_OUT(message);
  return false;
}

// What the numbers in a file's name tell of the blocks that tell nothing themselves.
void TAKE_NUMBERS_OF_NAME(int type, const PATTERN_NUMBERS& numbers, const FILE_CONTENTS& contents,
                          STRUCTURE_LIST& newx) {
  if (numbers.P)
    for (CRYSTAL_STRUCTURE_TYPE& phase : newx)
      if (std::abs(phase.PT(PRESSURE, PT_VALUE)) < TINY_REAL)
        phase.PT(PRESSURE, PT_VALUE) = *numbers.P;
  if (!numbers.T) return;
  // The plain reader puts room temperature where the file tells none.
  std::vector<bool> given;
  if (type == CIF_FILE) given = TEMPERATURES_GIVEN(contents.BYTES);
  for (int block = 1; block <= newx.COUNT(); ++block) {
    float& t = newx(block).PT(TEMPERATURE, PT_VALUE);
    const bool told = type == CIF_FILE ? given[static_cast<std::size_t>(block - 1)] : t > TINY_REAL;
    if (!told) t = *numbers.T;
  }
}

// The blocks of a file, by its type. Those without a title get the file's name.
void READ_BLOCKS(int type, FILE_CONTENTS& contents, const PATTERN_NUMBERS& numbers,
                 STRUCTURE_LIST& newx, int& nblocks) {
  if (type == FULL_CIF_FILE)
    READ_FULL_TO_LIST(contents.BYTES, newx, nblocks);
  else if (type == CIF_FILE)
    READ_CIF_TO_LIST(contents.BYTES, newx, nblocks);
  else
    READ_OUT_FILE(contents.LINES, newx, nblocks);
  NAME_UNTITLED(contents.NAME, newx);
  const bool stopped = newx.COUNT() < nblocks;
  if (type == CIF_FILE && !stopped) CHECK_PLAIN_READING(contents.BYTES, newx);
  TAKE_NUMBERS_OF_NAME(type, numbers, contents, newx);
  if (type != FULL_CIF_FILE) return;
  for (CRYSTAL_STRUCTURE_TYPE& phase : newx)  // as the plain reader has it, for the list
    if (phase.PT(TEMPERATURE, PT_VALUE) == 0.0f) phase.PT(TEMPERATURE, PT_VALUE) = ROOM_TEMPERATURE;
}

// ---- several files ----

// Blocks of one title from several files are titled by their files.
void TITLE_BY_FILES(const std::vector<std::string>& names, STRUCTURE_LIST& newx) {
  std::map<std::string, std::set<std::string>> files_of_title;
  for (int block = 1; block <= newx.COUNT(); ++block)
    files_of_title[newx(block).BLOCK_TITLE].insert(names[static_cast<std::size_t>(block - 1)]);
  NAMES_TAKEN taken;
  for (int block = 1; block <= newx.COUNT(); ++block) {
    std::string& title = newx(block).BLOCK_TITLE;
    if (files_of_title[title].size() < 2) continue;
    title = UNIQUE_NAME(FILENAME(names[static_cast<std::size_t>(block - 1)], "NOEXT"), taken,
                        TITLE_LENGTH);
  }
}

// The blocks of all files so far, and of which file each is.
struct SERIES {
  STRUCTURE_LIST BLOCKS;
  std::vector<std::string> NAMES;  // by block
};

// Adds the blocks of a file. One that cannot be read is told and left out, and so is one that asks
// for its group, unless it is alone.
void READ_INTO_SERIES(int type, const NAMED_FILE& named, bool alone, SERIES& series) {
  WRITE_OUT("Named " + AS_IT_IS(named.NAME));
  FILE_RECORD file = RECORD_OF_TYPE(type);
  file.NAME = named.NAME;
  FILE_CONTENTS contents;
  const std::string message = READ_CONTENTS(type, file, contents);
  if (!message.empty() && !FILE_EXISTS(named.NAME))
    return WRITE_OUT("*****File " + AS_IT_IS(named.NAME) + " does not exist, it is left out");
  if (!message.empty()) return WRITE_OUT(message + ", it is left out");
  if (type == CRYSTAL_FILE && !alone && !TELLS_GROUP(contents.LINES))
    return WRITE_OUT(
        "*****The file does not tell the number of its space group, it is left out: READ Crystal17 "
        "with this file alone asks for it");
  STRUCTURE_LIST newx;
  int nblocks = 0;
  READ_BLOCKS(type, contents, named.NUMBERS, newx, nblocks);
  for (CRYSTAL_STRUCTURE_TYPE& phase : newx) {
    series.BLOCKS.ADD(std::move(phase));
    series.NAMES.push_back(named.NAME);
  }
}

bool OFFER_SERIES(SERIES& series, bool ask) {
  if (series.BLOCKS.COUNT() == 0) {
    WARNING("     No crystal structures were read from these files");
    return false;
  }
  TITLE_BY_FILES(series.NAMES, series.BLOCKS);
  return OFFER_BLOCKS(series.BLOCKS, series.BLOCKS.COUNT(), ask);
}

void READ_SERIES(const CHOSEN_FILES& chosen) {
  WORK work("Reading the files: file", static_cast<int>(chosen.NAMES.size()));
  SERIES series;
  int number = 0;
  WRITE_OUT_BLANK(1);
  for (const NAMED_FILE& named : chosen.NAMES) {
    if (!GO_ON(work, ++number)) return;
    READ_INTO_SERIES(chosen.TYPE, named, chosen.NAMES.size() == 1, series);
  }
  if (OFFER_SERIES(series, true)) SHOW_LOADED();
}

// The blocks of one file, which is open. Their records hold all that was read of it. False when it
// could not be read.
bool READ_OPEN_FILE(CHOSEN_FILES& chosen, STRUCTURE_LIST& newx, int& nblocks) {
  FILE_CONTENTS contents;
  if (!READ_CHOSEN_FILE(chosen.TYPE, chosen.FILE, contents)) return false;
  READ_BLOCKS(chosen.TYPE, contents, {}, newx, nblocks);
  return true;
}

void READ_ONE_FILE(CHOSEN_FILES& chosen) {
  STRUCTURE_LIST newx;
  int nblocks = 0;
  if (!READ_OPEN_FILE(chosen, newx, nblocks)) return;
  if (newx.COUNT() == 0) return WARNING("     No crystal structures were read from this file");
  if (newx.COUNT() < nblocks) WARNING("More crystal structures in file than capacity of arrays");
  if (OFFER_BLOCKS(newx, nblocks)) SHOW_LOADED();
}

}  // namespace

std::span<const std::string_view> READ_MENU() {
  return type_menu;
}

bool IS_STRUCTURE_FILE(std::string_view name) {
  const std::string lower = L_CASE(TRIM_VIEW(name));
  return lower.ends_with(".cif") || lower.ends_with(".out");
}

void READ_GIVEN_FILES(const std::vector<std::string>& names) {
  if (names.empty()) return;
  SERIES series;
  WRITE_OUT_BLANK(1);
  for (const std::string& name : names) {
    const int type = L_CASE(name).ends_with(".out") ? CRYSTAL_FILE : FULL_CIF_FILE;
    const std::vector<NAMED_FILE> files = FILES_NAMED(name, "cif");
    if (files.empty()) WRITE_OUT("*****No file fits " + AS_IT_IS(name) + ", it is left out");
    for (const NAMED_FILE& named : files) READ_INTO_SERIES(type, named, names.size() == 1, series);
  }
  if (OFFER_SERIES(series, false)) SHOW_LOADED();
}

void READ_PHASE_FROM_FILE() {
  CHOSEN_FILES chosen = CHOOSE_FILES();
  if (chosen.TYPE == 0) return;
  if (chosen.FILE.OPEN)
    READ_ONE_FILE(chosen);
  else
    READ_SERIES(chosen);
}

}  // namespace FACETOR_READFILES
