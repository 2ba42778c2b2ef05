// The dialogue of READ, and what completes a block that was read.
#include "src/facetor6_readfiles/readfiles.h"

#include <array>
#include <cmath>  // for abs
#include <string>

#include "console_code/console/open_file.h"
#include "console_code/console/output.h"
#include "console_code/console/prompts.h"
#include "console_code/console/state.h"
#include "console_code/console/work.h"
#include "console_code/kva_utilities/columns.h"
#include "console_code/kva_utilities/numbers.h"
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

// Opens a file of a type that can be read; 0 when the user wants none.
int CHOOSE_FILE(FILE_RECORD& file) {
  while (true) {
    const int type = GET_LIST_SELECTION("File type", type_menu);
    if (type <= 0) return 0;
    const auto entry = static_cast<std::size_t>(type - 1);
    if (type == RFINE_FILE || type == CCSL_FILE) {
      WRITE_OUT("|*****Reading of " + std::string(type_menu[entry]) + " file not yet available");
      continue;
    }
    file.EXT = type_extensions[entry];
    file.DESCRIPTOR = file.EXT + " file";
    file.UNIT = DATA_UNIT;
    OPEN_FILE(file, "OLD READ");
    if (file.OPEN) return type;
  }
}

// Shows what was read and adds it on the user's word; false when there was no room.
bool OFFER_BLOCKS(STRUCTURE_LIST& newx, int nblocks) {
  WRITE_OUT_BLANK(1);
  WRITE_OUT("The following " + INTEGER_AT_LEAST(nblocks, 2) +
            " crystal structures were read from the file:");
  FACETOR_LIST::LIST_PHASE(newx, nblocks);
  for (CRYSTAL_STRUCTURE_TYPE& phase : newx) COMPLETE_BLOCK(phase);
  if (GET_ANSWER_YN("Do you want to add this new data", "Y") != 'Y') return true;
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

// A file as its reader wants it: its lines, its bytes, or both.
struct FILE_CONTENTS {
  std::string NAME;
  FILE_LINES LINES;
  std::string BYTES;
};

// The message of a file that cannot be read, blank when it can.
std::string READ_CONTENTS(int type, FILE_RECORD& file, FILE_CONTENTS& contents) {
  contents.NAME = file.NAME;  // closing the file forgets it
  std::string message;
  if (type != FULL_CIF_FILE) READ_FILE(file, contents.LINES, message);
  CLOSE_FILE(file);
  if (!message.empty() || type == CRYSTAL_FILE) return message;
  const bool read = READ_FILE_BYTES(contents.NAME, contents.BYTES);
  if (read && !contents.BYTES.empty()) return "";
  return read ? "*****Error in reading file: " + contents.NAME + " or it is empty"
              : "*****Error opening file: " + contents.NAME;
}

// False, after a message, when there is nothing to read or the user stopped the work.
bool READ_CHOSEN_FILE(int type, FILE_RECORD& file, FILE_CONTENTS& contents) {
  WORK work("Reading the file", 1);
  const std::string message = READ_CONTENTS(type, file, contents);
  if (message.empty()) return GO_ON(work, 1);
  WRITE_OUT_BLANK(1);
  WRITE_OUT(message);
  return false;
}

// The blocks of a file, by its type. Those without a title get the file's name.
void READ_BLOCKS(int type, FILE_CONTENTS& contents, STRUCTURE_LIST& newx, int& nblocks) {
  if (type == FULL_CIF_FILE)
    READ_FULL_TO_LIST(contents.BYTES, newx, nblocks);
  else if (type == CIF_FILE)
    READ_CIF_TO_LIST(contents.LINES, newx, nblocks);
  else
    READ_OUT_FILE(contents.LINES, newx, nblocks);
  NAME_UNTITLED(contents.NAME, newx);
  const bool stopped = newx.COUNT() < nblocks;
  if (type == CIF_FILE && !stopped) CHECK_PLAIN_READING(contents.BYTES, contents.LINES, newx);
}

}  // namespace

std::span<const std::string_view> READ_MENU() {
  return type_menu;
}

void READ_PHASE_FROM_FILE() {
  FILE_RECORD file;
  const int type = CHOOSE_FILE(file);
  if (type == 0) return;
  FILE_CONTENTS contents;
  if (!READ_CHOSEN_FILE(type, file, contents)) return;
  STRUCTURE_LIST newx;
  int nblocks = 0;
  READ_BLOCKS(type, contents, newx, nblocks);
  if (newx.COUNT() == 0) return WARNING("     No crystal structures were read from this file");
  if (newx.COUNT() < nblocks) WARNING("More crystal structures in file than capacity of arrays");
  if (OFFER_BLOCKS(newx, nblocks)) SHOW_LOADED();
}

}  // namespace FACETOR_READFILES
