// Files that are wrong in one way each: what READ says of them, what it makes of them, and that
// CALC, TABLE and LIST live with it, all within a second of processor time.
#include <algorithm>  // for count, sort
#include <cmath>      // for isnan
#include <ctime>      // for clock

#include "phases.h"
#include "places.h"
#include "sanitized.h"
#include "src/facetor6_calc/calc.h"
#include "src/facetor6_list/list.h"
#include "src/facetor6_readfiles/readfiles.h"

using namespace FACETOR_CONSOLE;
using namespace KVA_CRYSTAL_STRUCTURES;
using KVA_UTILITIES::VECTOR3;

namespace {

// Of processor time; a sanitizer takes several times as much.
constexpr double most_seconds = sanitized ? 10.0 : 1.0;

using LINES = std::vector<std::string>;

// Lines of a text that hold the words.
LINES LINES_WITH(const std::string& text, std::string_view words) {
  LINES lines;
  std::istringstream stream(text);
  for (std::string line; std::getline(stream, line);)
    if (line.find(words) != std::string::npos) lines.push_back(line);
  return lines;
}

bool HOLDS(const std::string& text, std::string_view words) {
  return text.find(words) != std::string::npos;
}

class ODD_FILES : public PHASE_TESTS::PHASES {
 protected:
  void SetUp() override {
    PHASES::SetUp();
    BEGIN();
  }

  static std::string ODD(const std::string& name) {
    return PLACES::SOURCE() + "/tests/odd/" + name + ".cif";
  }

  // What a command says that is given the pending text, the lines, and blank lines as long as it
  // asks.
  template <class COMMAND>
  static std::string SAYS(COMMAND command, const std::string& pending, const std::string& input) {
    CONSOLE_TESTS::PEND(pending);
    const CONSOLE_TESTS::REDIRECTED console(input + std::string(100, '\n'));
    command();
    CONSOLE_TESTS::CLEAR_INPUT();
    return console.OUTPUT();
  }

  static std::string READ(const std::string& path) {
    return SAYS(FACETOR_READFILES::READ_PHASE_FROM_FILE, "cif " + path, "Y\n");
  }

  static std::string CALC() { return SAYS(FACETOR_CALC::RUN_FACETOR_CALC, "poly", "\n0\n"); }

  static std::string TABLE(const std::string& subject) {
    return SAYS(FACETOR_LIST::RUN_FACETOR_TABLE, subject, subject == "adps" ? "U\nALL\n" : "ALL\n");
  }

  static std::string LIST_ALL(const std::string& subject) {
    return SAYS(FACETOR_LIST::RUN_FACETOR_LIST, subject, subject == "adps" ? "b\nALL\n" : "ALL\n");
  }

  static int BONDS() { return SUM_NBONDS(REFERENCE()); }

  // What is shown of the blocks themselves.
  static std::string SHOW_BLOCKS() {
    return TABLE("cells") + TABLE("xyz") + LIST_ALL("block") + LIST_ALL("cells") +
           LIST_ALL("symmetry") + LIST_ALL("site") + LIST_ALL("xyz");
  }

  // What is shown of displacements and of what was calculated. Here a value may be no number: three
  // ligands on a line make no volume, a negative tensor no displacement.
  static void SHOW_RESULTS() {
    TABLE("adps");
    LIST_ALL("adps");
    if (BONDS() == 0) return;
    for (const char* subject : {"bond", "angles", "edges"}) TABLE(subject);
    for (const char* subject : {"bond", "angles", "edges", "orbix", "rigid", "displace"})
      LIST_ALL(subject);
  }

  // Processor time in seconds since BEGIN.
  double SECONDS() const {
    return static_cast<double>(std::clock() - begin) / static_cast<double>(CLOCKS_PER_SEC);
  }

  void BEGIN() { begin = std::clock(); }

  std::clock_t begin = 0;
};

// ---- a file for each way to be wrong ----

const std::string in_block_1 = " in block #  1 in the cif";
const std::string warning = "*****WARNING: ";
const std::string bad_cell = warning + "Bad cell parameters" + in_block_1;
const std::string no_length =
    "*****WARNING: Block #  1 odd: a cell length is missing or cannot be read, READ full does not "
    "read it";
const std::string no_angle =
    "*****WARNING: Block #  1 odd: a cell angle is missing or cannot be read, READ full does not "
    "read it";
const std::string no_symmetry = warning + "No symmetry detected in CIF block #  1, neither " +
                                "operators nor HM symbol, space group set to P1";
const std::string no_atom_loop =
    warning + "cifdata_key of _atom_site_ not found by read_loop_cif" + in_block_1;
const std::string no_atom_rows =
    warning + "Loop for atoms found in cif, but no atom info from cif" + in_block_1;
const LINES no_blocks{
    warning + "Allocate_crystal_structurelist called with n < 1 called from expand_phase_list",
    warning + "     No crystal structures were read from this file"};

// What the check tells of block 1.
std::string FULL_READS(const std::string& what) {
  return warning + "Block #  1 odd: READ full reads " + what;
}

constexpr int any = -1;

// Unless the case says otherwise: one block with a cell of 5 by 6 by 7 angstroms, P 1, and two
// atoms 0.3 a = 1.5 angstroms apart, which makes one bond at each.
struct ODD_FILE {
  std::string NAME;
  LINES MESSAGES;  // all lines of READ that begin with stars
  int BLOCKS = 1;
  int ATOMS = 2;
  int BONDS = 2;
  std::string GROUP = "P 1";
  VECTOR3 CELL{5, 6, 7};
};

constexpr VECTOR3 unit_cell{1, 1, 1};

const std::vector<ODD_FILE> odd_files{
    // ---- the file as a whole ----
    {"blank_lines", no_blocks, 0},
    {"no_block", no_blocks, 0},
    {"only_global",
     {no_blocks[0], warning + "READ full reads 1 structures from this file (not 0)", no_blocks[1]},
     0},
    {"two_byte_characters", no_blocks, 0},
    {"no_items", {no_symmetry, no_atom_loop}, 1, 0, 0, "P 1", unit_cell},
    {"no_name", {}},
    {"one_name_twice", {}, 2},
    // The text field hides the second block; its lines are words of a row, the last one unfinished.
    {"open_text_field",
     {warning + "Block #  1 first: READ full reads 2 sites (not 3)",
      warning + "READ full reads 2 structures from this file (not 1)"},
     1,
     3},
    {"block_in_text_field", {}},
    {"control_characters", {}},
    {"zeros_and_high_bytes", {}},
    {"byte_order_mark", {}},
    // A carriage return alone is a blank: one line, on which no loop begins.
    {"old_line_ends",
     {no_atom_loop, warning + "Block #  1 odd _cell_length_a 5 _cell_length_b 6 _cell_length_c 7 "
                              "_cell_angle_alpha 90 _cel: READ full reads 2 sites (not 0)"},
     1,
     0,
     0},
    {"no_last_line_end", {}},
    {"long_line", {FULL_READS("3 sites (not 2)")}},
    // ---- cells ----
    {"cell_zero", {bad_cell}, 1, 2, any, "P 1", unit_cell},
    {"cell_zero_with_esd", {bad_cell}, 1, 2, any, "P 1", unit_cell},
    {"cell_negative", {bad_cell}, 1, 2, any, "P 1", unit_cell},
    {"cell_too_large_to_use", {bad_cell}, 1, 2, any, "P 1", unit_cell},
    {"angle_180", {bad_cell}, 1, 2, any, "P 1", unit_cell},
    {"angle_too_large", {bad_cell}, 1, 2, any, "P 1", unit_cell},
    {"angles_flat", {bad_cell}, 1, 2, any, "P 1", unit_cell},
    {"angles_impossible", {bad_cell}, 1, 2, any, "P 1", unit_cell},
    // What is no number, or more than one, leaves the length at 1 and the angle at 90 degrees.
    {"cell_infinite", {no_length}, 1, 2, any, "P 1", {1, 1, 7}},
    {"cell_nan", {no_length}, 1, 2, any, "P 1", {1, 1, 7}},
    {"cell_too_large_to_read", {no_length}, 1, 2, any, "P 1", {1, 6, 7}},
    {"cell_unknown", {no_length}, 1, 2, any, "P 1", unit_cell},
    {"angle_missing", {no_angle}},
    {"angle_unknown", {no_angle}},
    {"cell_open_bracket", {no_length}, 1, 2, any, "P 1", unit_cell},
    {"cell_two_numbers", {FULL_READS("another cell")}, 1, 2, any, "P 1", {1, 6, 7}},
    {"angle_zero", {no_angle}},
    {"angle_negative", {no_angle}},
    {"cell_smallest", {}, 1, 2, 0, "P 1", {1e-38f, 6, 7}},
    {"cell_tiny", {}, 1, 2, any, "P 1", {0.5f, 0.5f, 0.5f}},
    {"esd_zero", {}},
    {"esd_huge", {}},
    {"esd_negative", {FULL_READS("another cell")}, 1, 2, any, "P 1", {1, 6, 7}},  // which is no
                                                                                  // number
    {"volume_wrong", {"*****Warning: Volume in CIF looks inconsistent with cell parameters:"}},
    {"volume_nonsense", {"*****Warning: Volume in CIF looks inconsistent with cell parameters:"}},
    // ---- conditions ----
    {"conditions_nonsense", {}},
    {"conditions_huge", {}},
    // ---- symmetry ----
    // READ cif goes by the symbol, READ full by the Hall symbol, which begins with another axis.
    {"hall_in_another_order", {}, 1, 2, any, "P 2 2 2"},
    {"symbol_unknown", {no_symmetry}},
    {"symbol_compact",
     {warning + "No symmetry detected in CIF block #  1, no operators and HM symbol not written "
                "with spaces, space group set to P1",
      FULL_READS("another space group (P 21/c)")}},
    {"symbol_without_quotes", {no_symmetry, FULL_READS("another space group (P 21/c)")}},
    {"symbol_one_quote", {no_symmetry}},
    // The line is no operator, which leaves the identity alone.
    {"operator_without_closing_quote",
     {warning + "HM symbol in CIF block #  1, does not agree with operators, space group set to "
                "P 1 from operators",
      FULL_READS("another space group (P -1)")}},
    {"operators_without_quotes",
     {warning + "The operators in CIF block #  1 are not read, as they are not in quotes, but they "
                "do not agree with the HM symbol: READ full reads them",
      FULL_READS("another space group (P -1)")}},
    {"operator_unknown_letter", {}, 1, 2, 2, "P -1"},
    {"operators_empty", {}, 1, 2, 2, "P -1"},
    // The name behind the operators is taken for one, so that they fail and the symbol stands.
    {"operators_no_blank_line", {}, 1, 2, 2, "P -1"},
    {"operator_two_fields", {no_symmetry}},
    {"operator_singular", {no_symmetry}},
    {"operator_without_end", {no_symmetry}},
    {"operator_with_many_digits", {no_symmetry}},
    {"operator_twice", {}, 1, 2, 2, "P -1"},
    {"operators_not_closed", {}, 1, 2, any, "P 4"},
    // ---- atoms ----
    {"atoms_none", {no_atom_loop}, 1, 0, 0},
    {"atoms_no_rows", {no_atom_rows}, 1, 0, 0},
    // A row of 25 words counts as 21, and no line is left that would fill it.
    {"atoms_in_25_columns", {no_atom_rows, FULL_READS("1 sites (not 0)")}, 1, 0, 0},
    {"atoms_last_row_short", {}},
    // The short row takes the label of the next, whose other words are surplus: z is no number.
    // O1 is then 0.3 a and 0.3 c = 2.58 angstroms away, and O3 0.3 a and 0.3 b = 2.34 angstroms.
    {"atoms_middle_row_short", {FULL_READS("other positions, first O2")}, 1, 3, 0},
    {"atoms_long_row", {FULL_READS("1 sites (not 2)")}},
    {"atoms_row_over_lines", {}},
    // All at the origin, which makes the second a duplicate of the first.
    {"atoms_no_coordinates", {}, 1, 2, 0},
    {"atoms_far_away", {FULL_READS("1 sites (not 2)")}, 1, 2, 0},
    {"atoms_on_lattice_points", {}, 1, 3, 0},
    {"atoms_one_site", {}, 1, 4, 0},
    // Atoms without an element are all of one kind, which is excluded.
    {"atoms_no_labels", {}, 1, 2, 0},
    {"atoms_unknown_elements", {FULL_READS("3 sites (not 2)")}, 1, 2, 0},
    {"atoms_one_label", {}, 1, 2, 0},
    // At 0, 0, 0.3 and 0, 0, 0: 0.3 c = 2.1 angstroms.
    {"atoms_not_numbers", {}},
    // Si to the oxygens 0.3 a = 1.5 and 0.4 a = 2 angstroms away.
    {"atoms_odd_labels", {}, 1, 4, 4},
    {"atoms_open_quote", {}, 1, 1, 0},
    {"atoms_esds", {}},
    // Si to the oxygens 0.3 a = 1.5 and 0.4 a = 2 angstroms away.
    {"atoms_occupancies", {FULL_READS("other occupancies, first Si1")}, 1, 3, 4},
    {"atoms_in_two_loops", {}, 1, 1, 0},
    {"atoms_end_in_capitals", {}, 1, 1, 0},
    // ---- displacement parameters and modes ----
    {"aniso_more_rows_than_atoms", {FULL_READS("other displacements, first Si1")}},
    {"aniso_unknown_label", {}},
    {"aniso_negative", {}},
    {"aniso_huge", {FULL_READS("other displacements, first O1")}},
    {"iso_huge", {}},
    {"aniso_before_sites",
     {warning + "The loop of displacement parameters stands before that of the sites" + in_block_1 +
          ": the atoms are not read rightly, READ full reads them",
      FULL_READS("2 sites (not 1)")},
     1,
     1,
     0},
    {"modes_no_rows", {}},
    {"modes_nonsense", {}},
};

// Lines of READ that tell the user something about the file.
LINES MESSAGES_IN(const std::string& said) {
  LINES messages;
  for (const std::string& line : LINES_WITH(said, "*****"))
    if (line.starts_with("*****")) messages.push_back(line);
  return messages;
}

}  // namespace

TEST_F(ODD_FILES, ARE_TOLD_AND_READ_AS_STATED_WITHIN_A_SECOND) {
  for (const ODD_FILE& file : odd_files) {
    SCOPED_TRACE(file.NAME);
    START();
    BEGIN();
    EXPECT_EQ(MESSAGES_IN(READ(ODD(file.NAME))), file.MESSAGES);
    EXPECT_EQ(NPHASES, file.BLOCKS);
    if (NPHASES == 0) continue;
    EXPECT_EQ(REFERENCE().CELL.CELL, file.CELL);
    EXPECT_EQ(REFERENCE().CELL.ANG, (VECTOR3{90, 90, 90}));
    EXPECT_EQ(REFERENCE().SPG.SPG_SYMB, file.GROUP);
    EXPECT_EQ(REFERENCE().NATOMS, file.ATOMS);
    const std::string calculated = CALC();
    if (file.BONDS != any) {
      EXPECT_EQ(BONDS(), file.BONDS) << calculated;
    }
    const std::string shown = SHOW_BLOCKS();
    for (const char* word : {"NaN", "INF", "Inf"}) EXPECT_EQ(LINES_WITH(shown, word), LINES{});
    SHOW_RESULTS();
    EXPECT_LT(SECONDS(), most_seconds);
  }
}

TEST_F(ODD_FILES, EVERY_FILE_IN_THE_FOLDER_IS_TESTED) {
  LINES tested{"empty"};
  for (const ODD_FILE& file : odd_files) tested.push_back(file.NAME);
  std::sort(tested.begin(), tested.end());
  LINES there;
  for (const auto& entry : CONSOLE_TESTS::fs::directory_iterator(PLACES::SOURCE() + "/tests/odd"))
    there.push_back(entry.path().stem());
  std::sort(there.begin(), there.end());
  EXPECT_EQ(there, tested);
}

// ---- what is special about single files ----

TEST_F(ODD_FILES, AN_EMPTY_FILE_IS_TOLD) {
  EXPECT_TRUE(HOLDS(READ(ODD("empty")),
                    "*****Error in reading file: " + ODD("empty") + " or it is empty\n"));
  EXPECT_EQ(NPHASES, 0);
  EXPECT_TRUE(HOLDS(CALC(), warning + "No datablocks with use flags set!"));
}

TEST_F(ODD_FILES, TWO_BLOCKS_OF_ONE_NAME_ARE_TWO_BLOCKS) {
  READ(ODD("one_name_twice"));
  ASSERT_EQ(NPHASES, 2);
  EXPECT_EQ(PHASE(1).BLOCK_TITLE, "odd");
  EXPECT_EQ(PHASE(2).BLOCK_TITLE, "odd");
  CALC();
  // 0.3 a and 0.4 a.
  EXPECT_FLOAT_EQ(PHASE(1).BONDS(1, 1, BOND_LENGTH), 1.5f);
  EXPECT_FLOAT_EQ(PHASE(2).BONDS(1, 1, BOND_LENGTH), 2.0f);
}

TEST_F(ODD_FILES, A_CELL_WITHOUT_ROOM_HAS_TOO_MANY_NEIGHBOURS) {
  READ(ODD("cell_tiny"));
  const std::string said = CALC();
  EXPECT_TRUE(
      HOLDS(said, warning + "Bond calculation error(s) for some atoms in reference phase."));
  EXPECT_TRUE(HOLDS(said,
                    "     The warning message included: Too many distances around atom: try "
                    "decreasing dmax-dmin"));
}

TEST_F(ODD_FILES, WITHOUT_ATOMS_NOTHING_IS_CALCULATED) {
  READ(ODD("atoms_none"));
  EXPECT_TRUE(HOLDS(CALC(), warning + "There are no atoms in the reference block: no bond lengths "
                                      "can be calculated"));
}

TEST_F(ODD_FILES, ATOMS_WITHOUT_AN_ELEMENT_ARE_TOLD_BY_CALC) {
  READ(ODD("atoms_unknown_elements"));
  EXPECT_TRUE(HOLDS(CALC(), warning + "Some atoms are not recognised as elements: use AtomEdit to "
                                      "set scattering factors"));
}

TEST_F(ODD_FILES, EVERY_ATOM_ON_ONE_SITE_IS_A_DUPLICATE_OF_THE_FIRST) {
  READ(ODD("atoms_one_site"));
  EXPECT_EQ(REFERENCE().ATOM_USE(1), ATOM_USED);
  for (int i = 2; i <= 4; ++i) EXPECT_EQ(REFERENCE().ATOM_USE(i), -1);
  EXPECT_EQ(REFERENCE().ATOM_DUP(1, 1), 2);
  EXPECT_EQ(REFERENCE().ATOM_DUP(1, 2), 3) << "there is room for two";
  const LINES rows = LINES_WITH(TABLE("xyz"), "Si1       (");
  ASSERT_EQ(rows.size(), 1U);
  EXPECT_TRUE(HOLDS(rows[0], "AL   1.000   FE   1.000")) << rows[0];
}

TEST_F(ODD_FILES, COORDINATES_FAR_AWAY_LOSE_THEIR_WHOLE_CELLS) {
  READ(ODD("atoms_far_away"));
  // A real of 1e30 has no fraction; 1e39 is no 32-bit real; 1e-50 is nothing.
  EXPECT_EQ(REFERENCE().ATOM(1).X, (VECTOR3{0, 0, 0.25f}));
  EXPECT_EQ(REFERENCE().ATOM(2).X, (VECTOR3{0, 0, 0.25f}));
}

TEST_F(ODD_FILES, OCCUPANCIES_THAT_ARE_NOT_POSITIVE_COUNT_AS_ABSENT) {
  READ(ODD("atoms_occupancies"));
  EXPECT_EQ(REFERENCE().ATOM(1).OCC, 1.0f);
  EXPECT_EQ(REFERENCE().ATOM(2).OCC, 1.0f);
  EXPECT_EQ(REFERENCE().ATOM(3).OCC, 1e30f);
  EXPECT_TRUE(HOLDS(TABLE("xyz"), "1.00E+30"));
}

TEST_F(ODD_FILES, THE_FIRST_OF_TWO_ATOMS_WITH_ONE_LABEL_TAKES_THE_TENSOR) {
  READ(ODD("atoms_one_label"));
  EXPECT_EQ(REFERENCE().ATOM(1).THTYPE, "Aniso");
  EXPECT_EQ(REFERENCE().ATOM(2).THTYPE, "isotr");
}

TEST_F(ODD_FILES, MORE_TENSORS_THAN_ATOMS_ARE_NOT_READ) {
  READ(ODD("aniso_more_rows_than_atoms"));
  EXPECT_EQ(REFERENCE().ATOM(1).THTYPE, "isotr");
}

TEST_F(ODD_FILES, LABELS_LOSE_THEIR_QUOTES_AND_WHAT_DOES_NOT_FIT) {
  READ(ODD("atoms_odd_labels"));
  EXPECT_EQ(REFERENCE().ATOM(1).LAB, "Si 1");
  EXPECT_EQ(REFERENCE().ATOM(2).LAB, "O1");
  EXPECT_EQ(REFERENCE().ATOM(3).LAB, "O" + std::string(19, 'x'));
  EXPECT_EQ(REFERENCE().ATOM(4).LAB, "");
}

TEST_F(ODD_FILES, A_SHORT_ROW_TAKES_WORDS_OF_THE_NEXT) {
  READ(ODD("atoms_middle_row_short"));
  EXPECT_EQ(REFERENCE().ATOM(2).LAB, "O1");
  EXPECT_EQ(REFERENCE().ATOM(2).X, (VECTOR3{0.4f, 0.2f, 0.0f}));
  EXPECT_EQ(REFERENCE().ATOM(3).LAB, "O3");
}

TEST_F(ODD_FILES, A_NEGATIVE_TENSOR_HAS_NO_DISPLACEMENT) {
  READ(ODD("aniso_negative"));
  CALC();
  // U along x is -0.01 at both ends of the bond, which lies along x.
  EXPECT_TRUE(std::isnan(REFERENCE().BONDS(1, 1, BOND_DISPL_CENTRE)));
  EXPECT_TRUE(HOLDS(LIST_ALL("displace"), " No value"));
  EXPECT_FALSE(HOLDS(LIST_ALL("displace"), "NaN"));
  EXPECT_TRUE(HOLDS(TABLE("adps"), "-0.010(10)")) << "the tensor is shown as it is";
}

// ---- conditions, esds ----

TEST_F(ODD_FILES, CONDITIONS_BELOW_ZERO_ARE_ROOM_CONDITIONS) {
  READ(ODD("conditions_nonsense"));
  EXPECT_EQ(PHASE(1).PT(TEMPERATURE, PT_VALUE), 298.0f);
  EXPECT_EQ(PHASE(1).PT(PRESSURE, PT_VALUE), 0.0001f);
}

TEST_F(ODD_FILES, CONDITIONS_AS_LONG_AS_THEY_ARE) {
  READ(ODD("conditions_huge"));
  EXPECT_EQ(LINES_WITH(LIST_ALL("block"), "odd"),
            (LINES{"  1: odd           :1000000015047466219876688855040.0 "
                   "99999993646728794492579249913856.000         1"}));
}

// The field of a and what follows it up to that of b.
TEST_F(ODD_FILES, ESDS_OF_NOTHING_A_BILLION_AND_LESS_THAN_NOTHING) {
  const auto a_in_table = [this](const std::string& name) {
    START();
    BEGIN();
    READ(ODD(name));
    const LINES rows = LINES_WITH(TABLE("cells"), "odd  ");
    return rows.empty() ? "" : rows[0].substr(46, 13);
  };
  EXPECT_EQ(a_in_table("esd_zero"), " 5.00000     ") << "an esd of 0 is none";
  EXPECT_EQ(a_in_table("esd_huge"), "5(1000000000)") << "without its leading blank it fits";
  EXPECT_EQ(a_in_table("esd_negative"), " 1.00000     ") << "with such an esd it is no number";
}

TEST_F(ODD_FILES, ESDS_OF_COORDINATES) {
  READ(ODD("atoms_esds"));
  const LINES rows = LINES_WITH(TABLE("xyz"), "Si1       (");
  ASSERT_EQ(rows.size(), 1U);
  // Columns 63, 76 and 89.
  EXPECT_EQ(rows[0].substr(62, 39), " 0.100000     0(100000000) 0.3000(5)   ");
}

TEST_F(ODD_FILES, THE_VOLUMES_THAT_DIFFER_ARE_SHOWN) {
  // 0.10 is 10 at two decimals; the cell's volume is 5 times 6 times 7.
  EXPECT_TRUE(HOLDS(READ(ODD("volume_wrong")),
                    "     Volume from cif  =  211.00(10)\n"
                    "     Volume from cell =  210.00(10)\n"
                    "     Calculated value will be used\n"));
  EXPECT_FLOAT_EQ(REFERENCE().CELL.CELLVOL, 210.0f);
}

// ---- size ----

namespace {

const std::string head =
    "data_big\n_cell_length_a 100\n_cell_length_b 100\n_cell_length_c 100\n"
    "_cell_angle_alpha 90\n_cell_angle_beta 90\n_cell_angle_gamma 90\n";
const std::string atom_head =
    "\nloop_\n_atom_site_label\n_atom_site_fract_x\n_atom_site_fract_y\n_atom_site_fract_z\n";
const std::string aniso_head =
    "\nloop_\n_atom_site_aniso_label\n_atom_site_aniso_U_11\n_atom_site_aniso_U_22\n"
    "_atom_site_aniso_U_33\n_atom_site_aniso_U_12\n_atom_site_aniso_U_13\n_atom_site_aniso_U_23\n";
const std::string p1 = "_symmetry_space_group_name_H-M 'P 1'\n";
constexpr int many_atoms = 10000;

std::string DECIMALS(int n, int of) {
  return "0." + std::to_string(of + n).substr(1);
}

}  // namespace

TEST_F(ODD_FILES, THOUSANDS_OF_OPERATORS_THAT_ARE_A_GROUP) {
  // The eight operators of P m m m, seven hundred times.
  std::string text = head + "\nloop_\n_symmetry_equiv_pos_as_xyz\n";
  for (int i = 0; i < 700; ++i)
    for (const char* x : {"x", "-x"})
      for (const char* y : {"y", "-y"})
        for (const char* z : {"z", "-z"}) text += "'" + std::string(x) + "," + y + "," + z + "'\n";
  PUT_FILE("big.cif", text + atom_head + "Si1 0.1 0.1 0.1\n");
  EXPECT_EQ(MESSAGES_IN(READ("big.cif")), LINES{});
  EXPECT_EQ(REFERENCE().SPG.SPG_SYMB, "P m m m");
  EXPECT_EQ(REFERENCE().ATOM(1).MULT, 8);
  CALC();
  TABLE("xyz");
  EXPECT_LT(SECONDS(), most_seconds);
}

TEST_F(ODD_FILES, THOUSANDS_OF_OPERATORS_THAT_ARE_NONE) {
  // Translations by 0.0001, 0.0002 ... of the cell: no space group has so many.
  std::string text = head + "\nloop_\n_symmetry_equiv_pos_as_xyz\n";
  for (int i = 1; i <= 5000; ++i) text += "'x+" + DECIMALS(i, 10000) + ",y,z'\n";
  PUT_FILE("big.cif", text + atom_head + "Si1 0.1 0.1 0.1\n");
  EXPECT_EQ(MESSAGES_IN(READ("big.cif")), LINES{no_symmetry});
  EXPECT_EQ(REFERENCE().SPG.SPG_SYMB, "P 1");
  CALC();
  TABLE("xyz");
  EXPECT_LT(SECONDS(), most_seconds);
}

TEST_F(ODD_FILES, TEN_THOUSAND_ATOMS_WITH_TENSORS) {
  // On a grid of 22 by 22 by 22 points, 4 angstroms apart, silicon and oxygen in turn along x.
  std::string text = head + p1 + atom_head;
  std::string tensors = aniso_head;
  for (int i = 0; i < many_atoms; ++i) {
    const std::string label = (i % 2 == 0 ? "Si" : "O") + std::to_string(i);
    text += label + " " + DECIMALS(i % 22 * 4, 100) + " " + DECIMALS(i / 22 % 22 * 4, 100) + " " +
            DECIMALS(i / 484 * 4, 100) + "\n";
    tensors += label + " 0.01 0.01 0.01 0 0 0\n";
  }
  PUT_FILE("big.cif", text + tensors);
  BEGIN();
  EXPECT_EQ(MESSAGES_IN(READ("big.cif")), LINES{});
  EXPECT_LT(SECONDS(), most_seconds);
  ASSERT_EQ(REFERENCE().NATOMS, many_atoms);
  EXPECT_EQ(std::count(REFERENCE().ATOM_USE.begin(), REFERENCE().ATOM_USE.end(), ATOM_USED),
            many_atoms);
  EXPECT_EQ(REFERENCE().ATOM(many_atoms).THTYPE, "Aniso");
  BEGIN();
  const std::string said = CALC();
  EXPECT_LT(SECONDS(), most_seconds) << "calc";
  EXPECT_TRUE(HOLDS(said, "NO BONDS FOUND FROM CENTRAL ATOM Si0")) << "none is below 2.2 angstroms";
  BEGIN();
  EXPECT_TRUE(HOLDS(TABLE("cells"), " 100.000 "));
  EXPECT_EQ(LINES_WITH(TABLE("xyz"), "  1: big").size(), static_cast<std::size_t>(many_atoms));
  EXPECT_LT(SECONDS(), most_seconds) << "table";
}

// Each takes a thousandth to a tenth of a second; what grows with the square takes minutes.
TEST_F(ODD_FILES, BOTH_READERS_TAKE_TIME_IN_PROPORTION) {
  constexpr int many = 50000;
  const std::string sites = atom_head + "Si1 0.1 0.1 0.1\n";
  std::string rows;
  std::string quotes;
  std::string fields;
  std::string blocks;
  for (int i = 0; i < many; ++i) {
    rows += "O" + std::to_string(i) + " 0." + std::to_string(100000 + i * 7919 % 100000) + " 0." +
            std::to_string(100000 + i * 1297 % 100000) + " 0.25\n";
    quotes += "_n" + std::to_string(i) + " 'open\n";
    fields += "_n" + std::to_string(i) + "\n;open\n_z 1\n";
    if (i % 25 == 0)
      blocks += "data_" + std::to_string(i) + head.substr(head.find('\n')) + p1 + sites;
  }
  const std::string long_line = "_x " + std::string(5000000, 'y') + "\n";
  for (const std::string& text :
       {head + p1 + atom_head + rows, head + p1 + sites + quotes, head + p1 + sites + fields,
        head + p1 + sites + long_line, blocks})
    for (const char* reader : {"cif big.cif", "full big.cif"}) {
      PUT_FILE("big.cif", text);
      FACETOR_CONSOLE::INIT_PHASE_LIST();
      BEGIN();
      SAYS(FACETOR_READFILES::READ_PHASE_FROM_FILE, reader, "Y\n");
      EXPECT_LT(SECONDS(), most_seconds) << reader << ' ' << text.substr(0, 300);
      EXPECT_GT(NPHASES, 0);
    }
}

TEST_F(ODD_FILES, TEN_THOUSAND_ATOMS_ON_ONE_SITE) {
  std::string text = head + p1 + atom_head;
  for (int i = 0; i < many_atoms; ++i) text += "O" + std::to_string(i) + " 0.5 0.5 0.5\n";
  PUT_FILE("big.cif", text);
  EXPECT_EQ(MESSAGES_IN(READ("big.cif")), LINES{});
  ASSERT_EQ(REFERENCE().NATOMS, many_atoms);
  EXPECT_EQ(std::count(REFERENCE().ATOM_USE.begin(), REFERENCE().ATOM_USE.end(), -1),
            many_atoms - 1);
  EXPECT_TRUE(HOLDS(CALC(), "NO BONDS FOUND FROM CENTRAL ATOM O0"));
  EXPECT_EQ(LINES_WITH(TABLE("xyz"), "  1: big").size(), 1U);
  EXPECT_LT(SECONDS(), most_seconds);
}
