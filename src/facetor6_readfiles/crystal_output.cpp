// The text output of the CRYSTAL program as a phase record: found by fixed text markers, of which
// any may be missing. The first optimised geometry counts, or the first geometry of the file.
#include <algorithm>  // for min, replace
#include <array>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "cifcode/cif_code_new/scanner.h"
#include "console_code/console/output.h"
#include "console_code/console/prompts.h"
#include "console_code/kva_utilities/columns.h"
#include "console_code/kva_utilities/numbers.h"
#include "console_code/kva_utilities/text.h"
#include "foundations/XTAL_Scattering_Chemical_Tables.h"
#include "src/facetor6_readfiles/crystal_symmetry.h"
#include "src/facetor6_readfiles/readfiles.h"

namespace FACETOR_READFILES {

using namespace KVA_CONSOLE;
using namespace KVA_CRYSTAL_STRUCTURES;
using namespace KVA_UTILITIES;

namespace {

// ---- searching ----

LINE_RANGE WHOLE(const FILE_LINES& flines) {
  return {flines, 1, flines.COUNT()};
}

// First line of the range that holds the marker, 0 when there is none; behind receives what
// follows it there.
int FIND(const LINE_RANGE& range, std::string_view marker, std::string& behind) {
  const FILE_LINES& flines = range.FLINES;
  int line = range.FIRST;
  KVA_CIFNEW::FIND_KEY_STRING(flines, line, range.LAST, marker, behind);
  const bool found = line <= flines.COUNT() && INDEXALL(flines(line), LEFT_ADJUST(marker)) > 0;
  return found ? line : 0;
}

int FIND(const LINE_RANGE& range, std::string_view marker) {
  std::string behind;
  return FIND(range, marker, behind);
}

// Last line above the given one that begins with the marker, 0 when there is none.
int FIND_ABOVE(const FILE_LINES& flines, int line, std::string_view marker) {
  return line > 1 ? PREVLINE(flines, marker, 1, line - 1) : 0;
}

bool HOLDS_ALL(const std::string& line, std::span<const std::string_view> words) {
  for (std::string_view word : words)
    if (INDEXALL(line, word) == 0) return false;
  return true;
}

// First line of the range that holds all words, 0 when there is none.
int FIND_HEADING(const LINE_RANGE& range, std::span<const std::string_view> words) {
  for (int line = range.FIRST; line <= std::min(range.LAST, range.FLINES.COUNT()); ++line)
    if (HOLDS_ALL(range.FLINES(line), words)) return line;
  return 0;
}

// ---- title, input and energies ----

enum METADATA_PAIR { SOLUTION = 1, REFINEMENT = 2, DETAILS = 3 };
enum METADATA_COLUMN { ITEM = 1, TEXT = 2 };

// First line of the banner, 0 when there is none.
int BANNER_LINE(const FILE_LINES& flines) {
  return FIND(WHOLE(flines), "*******");
}

std::string WITHOUT_FRAME(std::string line) {
  std::replace(line.begin(), line.end(), '*', ' ');
  return LEFT_ADJUST(line);
}

void READ_PROGRAM(const FILE_LINES& flines, CRYSTAL_STRUCTURE_TYPE& phase) {
  const int banner = BANNER_LINE(flines);
  const int line = banner > 0 ? FIND({flines, banner, flines.COUNT()}, "CRYSTAL") : 0;
  if (line == 0) return;
  phase.METADATA(SOLUTION, ITEM) = "_computing_structure_solution";
  phase.METADATA(REFINEMENT, ITEM) = "_computing_structure_refinement";
  for (int pair : {SOLUTION, REFINEMENT})
    phase.METADATA(pair, TEXT) = "DFT simulation with " + WITHOUT_FRAME(flines(line));
}

// The last part of the input deck, which some run scripts print above the banner.
std::vector<std::string> INPUT_PIECES(const FILE_LINES& flines) {
  const int last = FIND_ABOVE(flines, BANNER_LINE(flines), "END");
  const int first = FIND_ABOVE(flines, FIND_ABOVE(flines, last, "BIPOSIZE"), "END");
  if (first == 0) return {};
  std::vector<std::string> pieces{" Input control parameters for the CRYSTAL program were:|"};
  for (int line = first + 1; line < last; ++line) pieces.push_back(LEFT_ADJUST(flines(line)) + "|");
  return pieces;
}

// The third number behind the marker, in kJ/mol, as it is spelled; blank when there is none or 0.
std::string ENERGY(const FILE_LINES& flines, std::string_view marker) {
  constexpr int in_kj_per_mol = 3;
  std::string behind;
  FIND(WHOLE(flines), marker, behind);
  int numbers = 0;
  while (!behind.empty()) {
    const std::string word = CUT_WORD(behind);
    NUMBER number;
    if (!GETNUM(word, number) || ++numbers < in_kj_per_mol) continue;
    return number.VAL != 0.0f ? word : "";
  }
  return "";
}

std::vector<std::string> ENERGY_PIECES(const FILE_LINES& flines) {
  if (FIND(WHOLE(flines), "ZERO-POINT ENERGY") == 0) return {};
  std::vector<std::string> pieces{"| Final Energies were:"};
  const std::string electronic = ENERGY(flines, "EL            :");
  const std::string zero_point = ENERGY(flines, "E0            :");
  if (!electronic.empty()) pieces.push_back("|  Electronic energy = " + electronic + " KJ/MOL");
  if (!zero_point.empty()) pieces.push_back("|  Zero-point energy = " + zero_point + " KJ/MOL");
  return pieces;
}

// Input and energies, as far as whole pieces fit.
void READ_DETAILS(const FILE_LINES& flines, CRYSTAL_STRUCTURE_TYPE& phase) {
  constexpr std::size_t metadata_length = 600;
  std::vector<std::string> pieces = INPUT_PIECES(flines);
  for (const std::string& piece : ENERGY_PIECES(flines)) pieces.push_back(piece);
  if (pieces.empty()) return;
  phase.METADATA(DETAILS, ITEM) = "_refine_special_details";
  std::string& text = phase.METADATA(DETAILS, TEXT);
  for (const std::string& piece : pieces) {
    if (text.size() + piece.size() > metadata_length) return;
    text += piece;
  }
}

// ---- space group ----

std::string ASK_FOR_GROUP() {
  const std::string number = GET_INPUT_STRING("     Input the IT space group number:");
  return number.empty() ? "1" : number;
}

std::string SYMBOL_IN(const FILE_LINES& flines) {
  std::string symbol;
  FIND(WHOLE(flines), " SPACE  GROUP  N.                     :", symbol);
  return symbol;
}

void READ_GROUP(const FILE_LINES& flines, CRYSTAL_STRUCTURE_TYPE& phase) {
  std::string symbol = SYMBOL_IN(flines);
  if (symbol.empty()) {
    WRITE_OUT("    No space group info found in file!");
    symbol = ASK_FOR_GROUP();
  }
  // The output counts from the second origin, and so does a number or a symbol without a setting.
  XTAL::SET_SPACEGROUP(symbol, phase.SPG);
  while (XTAL::ERR_SYMM) {
    WARNING("Space group " + symbol + " is not known: a number from 1 to 230 or a symbol is");
    symbol = ASK_FOR_GROUP();
    XTAL::SET_SPACEGROUP(symbol, phase.SPG);
  }
}

// ---- cell and atoms ----

// From the heading of the optimised geometry, or from the first line, to the line that closes it.
LINE_RANGE GEOMETRY_LINES(const FILE_LINES& flines) {
  LINE_RANGE geometry = WHOLE(flines);
  const int optimised = FIND(geometry, "FINAL OPTIMIZED GEOMETRY");
  if (optimised > 0) geometry.FIRST = optimised;
  const int closing = FIND(geometry, "T = ATOM BELONGING TO THE ASYMMETRIC UNIT");
  if (closing > 0) geometry.LAST = closing;
  return geometry;
}

float FIRST_REAL(const std::string& text) {
  const std::vector<NUMBER> numbers = NUM_FROM_TEXT(text);
  return numbers.empty() ? 0.0f : numbers[0].VAL;
}

// The cell that the atoms refer to: the crystallographic one where it is printed, else the
// primitive one.
struct CHOSEN_CELL {
  float VOLUME = 0.0f;  // 0 when none is printed
  bool PRIMITIVE = true;
  float LATTICE_POINTS = 0.0f;  // its volume over the primitive one, 0 when the file lacks either
};

// Leaves the range at the cell.
CHOSEN_CELL CHOOSE_CELL(LINE_RANGE& geometry) {
  CHOSEN_CELL cell;
  std::string behind;
  const int primitive = FIND(geometry, "PRIMITIVE CELL - CENTRING CODE");
  if (primitive > 0) FIND({geometry.FLINES, primitive, primitive}, "VOLUME=", behind);
  const float primitive_volume = FIRST_REAL(behind);
  const int line = FIND(geometry, "CRYSTALLOGRAPHIC CELL (VOLUME=", behind);
  cell.PRIMITIVE = line == 0;
  if (cell.PRIMITIVE) {
    if (primitive == 0) return cell;
    cell.VOLUME = primitive_volume;
    cell.LATTICE_POINTS = 1.0f;
    geometry.FIRST = primitive;
    return cell;
  }
  cell.VOLUME = FIRST_REAL(behind);
  if (primitive_volume > 0.0f) cell.LATTICE_POINTS = cell.VOLUME / primitive_volume;
  geometry.FIRST = line;
  return cell;
}

void READ_CELL(const LINE_RANGE& geometry, float volume, CRYSTAL_STRUCTURE_TYPE& phase) {
  constexpr std::string_view heading_marker =
      "A              B              C           ALPHA      BETA       GAMMA";
  const FILE_LINES& flines = geometry.FLINES;
  const int heading = FIND(geometry, heading_marker);
  if (heading == 0 || heading == flines.COUNT()) return;
  const std::vector<NUMBER> v = NUM_FROM_TEXT(flines(heading + 1));
  if (v.size() < 6) return;
  XTAL::CRYSTAL_CELL cell;
  XTAL::SET_CELL_RECORD({v[0].VAL, v[1].VAL, v[2].VAL}, {v[3].VAL, v[4].VAL, v[5].VAL}, cell, " ");
  if (!XTAL::IS_SENSIBLE(cell))
    return WARNING("Bad cell parameters in the file: the cell is not read");
  if (volume > 0.0f) cell.CELLVOL = volume;
  phase.CELL = cell;
}

// A line of the table of atoms.
struct ATOM_LINE {
  bool ASYMMETRIC = false;  // "T": in the asymmetric unit
  int Z = 0;                // atomic number, 0 for a site without an element
  std::string NAME;
  VECTOR3 X{};
};

// The fields of a line such as "   1 T   8 O    -4.4648E-01 -5.3515E-02  2.5E-01".
std::optional<ATOM_LINE> PARSE_ATOM(std::string line) {
  constexpr int pseudopotential_step = 100;  // added to the number of an atom with such a core
  NUMBER place;
  NUMBER z;
  ATOM_LINE atom;
  const bool numbered = GETNUM(CUT_WORD(line), place) && place.WHOLE;
  const std::string marker = CUT_WORD(line);
  const bool has_z = GETNUM(CUT_WORD(line), z) && z.WHOLE && z.IVAL >= 0;
  atom.NAME = CUT_WORD(line);
  if (!numbered || (marker != "T" && marker != "F") || !has_z) return std::nullopt;
  if (!READ_REALS(line, atom.X)) return std::nullopt;
  atom.ASYMMETRIC = marker == "T";
  atom.Z = z.IVAL % pseudopotential_step;
  return atom;
}

ATOM_TYPE ATOM_RECORD(const ATOM_LINE& line, int place) {
  ATOM_TYPE atom;
  atom.Z = line.Z;
  if (line.Z > 0)
    XTAL::GET_CHEMSYMB(XTAL::CHEM_INFO[static_cast<std::size_t>(line.Z - 1)].SYMB, atom.CHEMSYMB,
                       atom.Z);
  atom.SFACSYMB = atom.CHEMSYMB;
  atom.LAB = (line.Z > 0 ? atom.CHEMSYMB : line.NAME) + std::to_string(place);
  atom.X = line.X;
  atom.OCC = 1.0f;
  return atom;
}

// Stores the atoms of the asymmetric unit; listed receives the positions of all atoms.
void READ_ATOMS(const LINE_RANGE& geometry, CRYSTAL_STRUCTURE_TYPE& phase,
                std::vector<VECTOR3>& listed) {
  // The third coordinate of a slab is in angstroms: its atoms are no part of a crystal.
  constexpr std::array<std::string_view, 3> heading_words{"X/A", "Y/B", "Z/C"};
  const FILE_LINES& flines = geometry.FLINES;
  const int heading = FIND_HEADING(geometry, heading_words);
  if (heading == 0) return;
  LIST<ATOM_TYPE> atoms;
  for (int line = heading + 2; line <= flines.COUNT(); ++line) {
    const std::optional<ATOM_LINE> atom = PARSE_ATOM(flines(line));
    if (!atom) break;
    listed.push_back(atom->X);
    if (atom->ASYMMETRIC) atoms.ADD(ATOM_RECORD(*atom, atoms.COUNT() + 1));
  }
  STORE_ATOMS(atoms, atoms.COUNT(), phase);
}

// Takes the operators that the file prints behind the geometry, or else before it, when they make
// the listed atoms out of those stored.
bool TAKE_PRINTED_GROUP(const FILE_LINES& flines, int start, const std::vector<VECTOR3>& listed,
                        CRYSTAL_STRUCTURE_TYPE& phase) {
  std::vector<std::string> operators = PRINTED_OPERATORS(flines, start);
  if (operators.empty()) operators = PRINTED_OPERATORS(flines, 1);
  if (operators.empty()) return false;
  const XTAL::SPACE_GROUP asked_for = phase.SPG;
  XTAL::SET_SPACEGROUP("", phase.SPG, operators, "GEN");
  if (!XTAL::ERR_SYMM && GENERATES(phase, listed, 1.0f)) return true;
  phase.SPG = asked_for;
  return false;
}

// Tells when the group does not make the listed atoms out of those stored. Printed operators refer
// to the primitive cell; they stand in for a group of that cell, not for none at all.
void CHECK_GROUP(const FILE_LINES& flines, int start, const CHOSEN_CELL& cell,
                 const std::vector<VECTOR3>& listed, CRYSTAL_STRUCTURE_TYPE& phase) {
  if (GENERATES(phase, listed, cell.LATTICE_POINTS)) return;
  const std::string complaint =
      "The atoms listed in the file do not follow from space group " + phase.SPG.SPG_SYMB;
  const bool replaceable = cell.PRIMITIVE && phase.SPG.MULTIP > 1;
  if (replaceable && TAKE_PRINTED_GROUP(flines, start, listed, phase))
    WARNING(complaint + ", the operators in the file are used");
  else
    WARNING(complaint + ": read it again with another group, or move the origin by TRANSFORM");
}

void READ_GEOMETRY(const FILE_LINES& flines, CRYSTAL_STRUCTURE_TYPE& phase) {
  LINE_RANGE geometry = GEOMETRY_LINES(flines);
  const CHOSEN_CELL cell = CHOOSE_CELL(geometry);
  READ_CELL(geometry, cell.VOLUME, phase);
  std::vector<VECTOR3> listed;
  READ_ATOMS(geometry, phase, listed);
  CHECK_GROUP(flines, geometry.FIRST, cell, listed, phase);
}

// ---- modes ----

// What stands before the first bracket is returned, what stands in it goes to inside, and rest
// keeps what stands behind it.
std::string CUT_BRACKET(std::string& rest, std::string& inside) {
  const std::size_t open = std::min(rest.find('('), rest.size());
  const std::size_t close = std::min(rest.find(')', open), rest.size());
  const std::string before = LEFT_ADJUST(rest.substr(0, open));
  inside = open < close ? LEFT_ADJUST(rest.substr(open + 1, close - open - 1)) : "";
  rest.erase(0, std::min(close + 1, rest.size()));
  return before;
}

// Two numbers of modes, eigenvalue, frequency in 1/cm and in THz, label, activities and
// intensity: "  23-  25    0.9028E-05    659.4536   19.7699  (Fu )   A (   436.36)   I".
std::optional<RAMAN::MODE_TYPE> PARSE_MODE(std::string line) {
  RAMAN::MODE_TYPE mode;
  std::string intensity;
  std::string numbers = CUT_BRACKET(line, mode.SYMMETRY);
  mode.IR_ACTIVE = U_CASE(CUT_BRACKET(line, intensity));
  mode.RAMAN_ACTIVE = U_CASE(LEFT_ADJUST(line));
  const std::size_t dash = numbers.find('-');
  if (dash == std::string::npos) return std::nullopt;
  numbers[dash] = ' ';
  constexpr std::size_t count = 5;
  const std::vector<NUMBER> values = NUM_FROM_TEXT(numbers);
  if (values.size() != count || !values[0].WHOLE || !values[1].WHOLE) return std::nullopt;
  mode.NAME = std::to_string(values[0].IVAL);
  if (values[0].IVAL != values[1].IVAL) mode.NAME += "-" + std::to_string(values[1].IVAL);
  mode.W0 = values[3].VAL;
  return mode;
}

// The rows of the table of frequencies. Optimisers print other eigenvalues, without a table.
std::vector<RAMAN::MODE_TYPE> MODES_OF(const FILE_LINES& flines, int start) {
  constexpr std::array<std::string_view, 3> heading_words{"MODES", "EIGV", "FREQUENCIES"};
  std::vector<RAMAN::MODE_TYPE> modes;
  const int eigenvalues = FIND({flines, start, flines.COUNT()}, "EIGENVALUES");
  if (eigenvalues == 0) return modes;
  const int heading = FIND_HEADING({flines, eigenvalues, flines.COUNT()}, heading_words);
  if (heading == 0) return modes;
  for (int line = heading + 2; line < NEXTBLANK(flines, heading); ++line)
    if (const auto mode = PARSE_MODE(flines(line))) modes.push_back(*mode);
  return modes;
}

void READ_MODES(const FILE_LINES& flines, CRYSTAL_STRUCTURE_TYPE& phase) {
  const std::vector<RAMAN::MODE_TYPE> modes = MODES_OF(flines, GEOMETRY_LINES(flines).FIRST);
  if (modes.empty()) return WRITE_OUT("     No mode information found in file");
  const int count = static_cast<int>(modes.size());
  RAMAN::ALLOCATE_MODE_LIST(count, phase.MODE_LIST);
  phase.MODE_LIST.MODE.ITEMS = modes;
  WRITE_OUT("     File also contained information on " + INTEGER_AT_LEAST(count, 2) + " modes");
}

}  // namespace

bool TELLS_GROUP(const FILE_LINES& flines) {
  const std::string symbol = SYMBOL_IN(flines);
  XTAL::SPACE_GROUP group;
  if (!symbol.empty()) XTAL::SET_SPACEGROUP(symbol, group);
  return group.MULTIP > 0;
}

void READ_OUT_FILE(const FILE_LINES& flines, STRUCTURE_LIST& newx, int& nblocks) {
  nblocks = 1;
  ALLOCATE_CRYSTAL_STRUCTURE_LIST(newx, nblocks);
  if (ERR_KVASTRUCTURES) {
    nblocks = 0;
    return WARNING(ERR_KVASTRUCTURES_MESS + " called from read_out_file");
  }
  CRYSTAL_STRUCTURE_TYPE& phase = newx(1);
  READ_PROGRAM(flines, phase);
  READ_DETAILS(flines, phase);
  READ_GROUP(flines, phase);
  READ_GEOMETRY(flines, phase);
  READ_MODES(flines, phase);
}

}  // namespace FACETOR_READFILES
