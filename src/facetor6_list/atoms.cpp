// Site names and scattering factors, coordinates, and displacement parameters.
#include <algorithm>  // for max
#include <cmath>      // for abs

#include "console_code/console/output.h"
#include "console_code/kva_utilities/columns.h"
#include "console_code/kva_utilities/text.h"
#include "src/facetor6_console/phase_list.h"
#include "src/facetor6_list/list_parts.h"
#include "src/kva_crystal_structures/atom_search.h"
#include "src/kva_crystal_structures/displacement.h"
#include "src/kva_crystal_structures/uncertainty.h"

namespace FACETOR_LIST {

using namespace FACETOR_CONSOLE;
using namespace KVA_CONSOLE;
using namespace KVA_CRYSTAL_STRUCTURES;
using namespace KVA_UTILITIES;

// ---- site names ----

namespace {

constexpr int names_per_line = 10;
constexpr int least_name_width = 8;

// Behind the name of an atom that is omitted or a duplicate.
std::string USE_MARK(int atom_use) {
  if (atom_use == ATOM_OMITTED) return "*";
  return atom_use < ATOM_OMITTED ? "!" : "";
}

std::string MARKED_NAME(const CRYSTAL_STRUCTURE_TYPE& phase, int i) {
  return phase.ATOM(i).LAB + USE_MARK(phase.ATOM_USE(i));
}

// Columns that leave a blank behind every name.
int NAME_WIDTH(const CRYSTAL_STRUCTURE_TYPE& phase) {
  int width = least_name_width;
  for (int i = 1; i <= phase.NATOMS; ++i) {
    const std::string name = TRIM(MARKED_NAME(phase, i));
    while (FIRST_CHARACTERS(name, width - 1) != name) ++width;
  }
  return width;
}

bool HAS_MARKS(const CRYSTAL_STRUCTURE_TYPE& phase) {
  for (int i = 1; i <= phase.NATOMS; ++i)
    if (phase.ATOM_USE(i) != ATOM_USED) return true;
  return false;
}

// Names of the atoms of a block, ten a line, with their scattering factors below if wanted.
void WRITE_NAMES(const CRYSTAL_STRUCTURE_TYPE& phase, bool with_factors) {
  const int width = NAME_WIDTH(phase);
  for (int first = 1; first <= phase.NATOMS; first += names_per_line) {
    std::string names = "                                  Site name: ";
    std::string factors = "                          Scattering factor: ";
    for (int i = first; i < std::min(first + names_per_line, phase.NATOMS + 1); ++i) {
      names += TEXT_COLUMNS(MARKED_NAME(phase, i), width);
      factors += TEXT_COLUMNS(phase.ATOM(i).SFACSYMB, width);
    }
    WRITE_OUT(names);
    if (with_factors) WRITE_OUT(factors);
  }
}

// The listed place of one block, or all of them for block 0.
std::vector<int> PLACES_OF(int block) {
  std::vector<int> places;
  for (int place : LISTED_PLACES())
    if (block == 0 || ISORT(place) == block) places.push_back(place);
  return places;
}

}  // namespace

void FACETOR_LIST_ATOMS(std::string_view option, int block) {
  const bool with_factors = INDEXALL(option, "SCAT") > 0;
  WRITE_OUT(with_factors ? "  Site names and scattering factors in each block, in input order"
                         : "  Site names in each block, in input order");
  bool marks = false;
  for (int place : PLACES_OF(block)) {
    const CRYSTAL_STRUCTURE_TYPE& phase = PHASE(ISORT(place));
    WRITE_OUT(FACETOR_LINESTART(place));
    WRITE_NAMES(phase, with_factors);
    marks = marks || HAS_MARKS(phase);
  }
  if (!marks) return;
  WRITE_OUT("     *****Atoms marked with * are currently marked as omitted from calculations");
  WRITE_OUT("     *****Atoms marked with ! are duplicates of other atoms");
}

// ---- rows of coordinates and displacement parameters ----

namespace {

constexpr int first_value = 63;  // column of the first value of a row
constexpr int plain_step = 10;
constexpr int esd_step = 13;

int VALUE_PLACE(int k, bool esd) {
  return first_value + k * (esd ? esd_step : plain_step);
}

// The atom of a listed block that lies where an atom of the reference block does.
struct LISTED_ATOM {
  int PLACE;
  FOUND_ATOM FOUND;  // its ATOM is 0 when there is none
};

using LISTED_ATOMS = std::vector<LISTED_ATOM>;

// For each of some atoms of the reference block the atoms of the listed blocks. They are looked for
// block by block, as all searches of a block share its images.
std::vector<LISTED_ATOMS> EQUIVALENT_ATOMS(const std::vector<int>& of) {
  std::vector<LISTED_ATOMS> atoms(of.size());
  for (int place : LISTED_PLACES()) {
    const ATOM_IMAGES images = IMAGES_OF(PHASE(ISORT(place)));
    for (std::size_t k = 0; k < of.size(); ++k)
      atoms[k].push_back({place, FIND_ATOM(images, REFERENCE().ATOM(of[k]).X, "OMIT")});
  }
  return atoms;
}

using TABLE_WRITER = void (*)(int i, std::string_view option, const LISTED_ATOMS& atoms);

void WRITE_TABLES(TABLE_WRITER write, const std::vector<int>& of, std::string_view option) {
  const std::vector<LISTED_ATOMS> atoms = EQUIVALENT_ATOMS(of);
  WORK work("", static_cast<int>(of.size()));
  for (std::size_t k = 0; k < of.size(); ++k) {
    if (LIST_STOPPED(work, static_cast<int>(k) + 1)) return;
    write(of[k], option, atoms[k]);
  }
}

// Line start, operator, label and scattering factor of the atom of a row.
std::string ROW_START(int place, bool esd, const CRYSTAL_STRUCTURE_TYPE& phase,
                      const FOUND_ATOM& found) {
  const ATOM_TYPE& atom = phase.ATOM(found.ATOM);
  std::string line = FACETOR_LINESTART(place, esd);
  PUT_AT(line, 45,
         INTEGER_COLUMNS(found.OPERATOR, 1) + " " + TEXT_COLUMNS(atom.LAB, 10) + "(" +
             TEXT_COLUMNS(atom.SFACSYMB, 4) + ")");
  return line;
}

}  // namespace

// ---- coordinates ----

namespace {

constexpr int duplicate_step = 13;  // columns of a duplicate: 3 blanks, symbol, occupancy

// First column of the scattering factor of duplicate number slot.
int DUPLICATE_COLUMN(int slot, bool esd) {
  const int behind_occupancy = esd ? VALUE_PLACE(4, true) : VALUE_PLACE(3, false) + 6;
  return behind_occupancy + 3 + duplicate_step * (slot - 1);
}

void PUT_DUPLICATES(const CRYSTAL_STRUCTURE_TYPE& phase, int i, bool esd, std::string& line) {
  for (int slot = 1; slot <= MAX_DUPLICATES; ++slot) {
    const int duplicate = phase.ATOM_DUP(i, slot);
    if (duplicate <= 0) continue;
    const ATOM_TYPE& atom = phase.ATOM(duplicate);
    PUT_AT(line, DUPLICATE_COLUMN(slot, esd),
           TEXT_COLUMNS(atom.SFACSYMB, 4) + REAL_COLUMNS(atom.OCC, 6, 3));
  }
}

// A coordinate without an esd that is zero but for the rounding of the operators is zero.
std::string COORDINATE_TEXT(float x, float std) {
  constexpr float rounding = 0.000005f;  // half of the last decimal of the plain form
  const bool is_zero = !(std > 0.0f) && std::abs(x) < rounding;
  return SETNUM_STD(is_zero ? 0.0f : x, std);
}

std::string XYZ_ROW(int place, bool esd, const CRYSTAL_STRUCTURE_TYPE& phase,
                    const FOUND_ATOM& found) {
  const ATOM_TYPE& atom = phase.ATOM(found.ATOM);
  std::string line = ROW_START(place, esd, phase, found);
  const VECTOR3 stds = esd ? CALC_ESD_XYZ(phase, found.ATOM, found.OPERATOR) : VECTOR3{};
  for (int k = 0; k < 3; ++k) {
    const auto axis = static_cast<std::size_t>(k);
    if (esd)
      PUT_FIELD(line, VALUE_PLACE(k, true), esd_step, COORDINATE_TEXT(found.X[axis], stds[axis]));
    else
      PUT_AT(line, VALUE_PLACE(k, false), REAL_COLUMNS(found.X[axis], plain_step, 5));
  }
  if (esd)
    PUT_FIELD(line, VALUE_PLACE(3, true), esd_step, SETNUM_STD(atom.OCC, atom.OCC_STD));
  else
    PUT_AT(line, VALUE_PLACE(3, false), REAL_COLUMNS(atom.OCC, 6, 3));
  PUT_DUPLICATES(phase, found.ATOM, esd, line);
  return line;
}

// Most duplicates on the site in any listed block.
int MOST_DUPLICATES(const LISTED_ATOMS& atoms) {
  int most = 0;
  for (const LISTED_ATOM& atom : atoms) {
    const CRYSTAL_STRUCTURE_TYPE& phase = PHASE(ISORT(atom.PLACE));
    for (int slot = 1; atom.FOUND.ATOM > 0 && slot <= MAX_DUPLICATES; ++slot)
      if (phase.ATOM_DUP(atom.FOUND.ATOM, slot) > 0) most = std::max(most, slot);
  }
  return most;
}

void WRITE_XYZ(int i, std::string_view option, const LISTED_ATOMS& atoms) {
  const bool esd = WANTS_ESDS(option);
  WRITE_OUT("|| ATOMS EQUIVALENT TO ATOM " + REFERENCE().ATOM(i).LAB + " IN REFERENCE BLOCK (" +
            REFERENCE().BLOCK_TITLE + ")");
  std::string head =
      FACETOR_HEADSTART() + (esd ? " SITE      ATOM      X            Y            Z            OCC"
                                 : " SITE      ATOM     X         Y         Z       OCC");
  const int duplicates = MOST_DUPLICATES(atoms);
  for (int slot = 1; slot <= duplicates; ++slot)
    PUT_AT(head, DUPLICATE_COLUMN(slot, esd), "ATOM OCC");
  WRITE_OUT(head);
  for (const auto& [place, found] : atoms)
    WRITE_OUT(found.ATOM > 0
                  ? XYZ_ROW(place, esd, PHASE(ISORT(place)), found)
                  : FACETOR_LINESTART(place, esd) + "         *****No equivalent atom found");
}

}  // namespace

void FACETOR_LIST_XYZ(int i, std::string_view option) {
  WRITE_TABLES(WRITE_XYZ, {i}, option);
}

void FACETOR_LIST_ALL_XYZ(std::string_view option) {
  WRITE_TABLES(WRITE_XYZ, USED_ATOMS(), option);
}

// ---- displacement parameters ----

namespace {

constexpr std::string_view u_esd_head =
    " SITE      ATOM      U11          U22          U33          U12          U13          U23"
    "        Ueq       Beq";
constexpr std::string_view u_head =
    " SITE      ATOM     U11       U22       U33       U12       U13       U23        Ueq  Beq";
constexpr std::string_view beta_esd_head =
    " SITE      ATOM      b11          b22          b33          b12          b13          b23"
    "        Beq";
constexpr std::string_view beta_head =
    " SITE      ATOM     b11       b22       b33       b12       b13       b23        Beq";

std::string_view ADP_HEAD(bool esd, bool beta) {
  if (beta) return esd ? beta_esd_head : beta_head;
  return esd ? u_esd_head : u_head;
}

struct TENSOR {
  VECTOR6 VALUE{};
  VECTOR6 STD{};
};

// The tensor of the atom's image, as beta or as U.
TENSOR TENSOR_OF_IMAGE(const CRYSTAL_STRUCTURE_TYPE& phase, const FOUND_ATOM& found, bool beta) {
  const TENSOR image{APPLYSO_BETA(phase.SPG.SYMOP(found.OPERATOR).ROT, phase.ATOM(found.ATOM).U),
                     CALC_ESD_BETA(phase, found.ATOM, found.OPERATOR)};
  if (beta) return image;
  TENSOR as_u;
  XTAL::BETA_TO_U(image.VALUE, as_u.VALUE, phase.CELL);
  XTAL::BETA_TO_U(image.STD, as_u.STD, phase.CELL);
  return as_u;
}

// Ueq and Beq behind the tensor; with beta only Beq.
void PUT_EQUIVALENTS(const ATOM_TYPE& atom, bool esd, bool beta, std::string& line) {
  const int behind = VALUE_PLACE(6, esd);
  if (esd) {
    constexpr int second = 9;  // columns from Ueq to Beq
    if (!beta) PUT_AT(line, behind, REAL_COLUMNS(atom.UEQ, 6, 3));
    PUT_AT(line, beta ? behind : behind + second, REAL_COLUMNS(atom.BISO, 6, 3));
    return;
  }
  PUT_AT(line, behind, (beta ? "" : REAL_COLUMNS(atom.UEQ, 7, 4)) + REAL_COLUMNS(atom.BISO, 7, 3));
}

std::string ADP_ROW(int place, bool esd, bool beta, const CRYSTAL_STRUCTURE_TYPE& phase,
                    const FOUND_ATOM& found) {
  std::string line = ROW_START(place, esd, phase, found);
  const TENSOR tensor = TENSOR_OF_IMAGE(phase, found, beta);
  for (int k = 0; k < 6; ++k) {
    const auto c = static_cast<std::size_t>(k);
    if (esd)
      PUT_FIELD(line, VALUE_PLACE(k, true), esd_step, SETNUM_STD(tensor.VALUE[c], tensor.STD[c]));
    else
      PUT_AT(line, VALUE_PLACE(k, false), REAL_COLUMNS(tensor.VALUE[c], plain_step, 5));
  }
  PUT_EQUIVALENTS(phase.ATOM(found.ATOM), esd, beta, line);
  return line;
}

void WRITE_ADPS(int i, std::string_view option, const LISTED_ATOMS& atoms) {
  const bool esd = WANTS_ESDS(option);
  const bool beta = INDEXALL(option, "BETA") > 0;
  std::string title = "|| ADPs TRANSFORMED TO POSITION EQUIVALENT TO ATOM IN REFERENCE BLOCK (" +
                      REFERENCE().BLOCK_TITLE + ") AT";
  for (float x : REFERENCE().ATOM(i).X) title += REAL_COLUMNS(x, 7, 3);
  WRITE_OUT(title);
  WRITE_OUT(FACETOR_HEADSTART() + std::string(ADP_HEAD(esd, beta)));
  for (const auto& [place, found] : atoms)
    WRITE_OUT(found.ATOM > 0
                  ? ADP_ROW(place, esd, beta, PHASE(ISORT(place)), found)
                  : FACETOR_LINESTART(place, esd) + "        *****No equivalent atom found");
}

}  // namespace

void FACETOR_LIST_ADPS(int i, std::string_view option) {
  WRITE_TABLES(WRITE_ADPS, {i}, option);
}

void FACETOR_LIST_ALL_ADPS(std::string_view option) {
  WRITE_TABLES(WRITE_ADPS, USED_ATOMS(), option);
}

}  // namespace FACETOR_LIST
