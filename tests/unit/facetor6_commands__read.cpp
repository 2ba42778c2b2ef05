// READ: the readers of a block, the choice of the space group, and bad files.
#include "src/facetor6_readfiles/readfiles.h"

#include <algorithm>  // for count

#include "phases.h"
#include "structures.h"

using namespace FACETOR_READFILES;
using namespace FACETOR_CONSOLE;
using namespace STRUCTURES;

namespace {

class READING : public PHASE_TESTS::PHASES {
 protected:
  static FILE_LINES LINES(const std::string& text) {
    FILE_LINES lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);) lines.ADD(KVA_UTILITIES::CUT_LINE(line));
    return lines;
  }

  // Blocks of a text, and what was said about them.
  STRUCTURE_LIST BLOCKS;
  int COUNT = 0;
  std::string READ(const std::string& text) {
    return SAID("", [&] { READ_CIF_TO_LIST(text, BLOCKS, COUNT); });
  }

  // The symbol that a line with it gives.
  static std::string SYMBOL(const std::string& text) {
    std::string symbol;
    READ_CIF_HM(LINES("_symmetry_space_group_name_H-M " + text + "\n"), 1, 1, symbol);
    return symbol;
  }
};

const std::string cell =
    "_cell_length_a 5.0(1)\n_cell_length_b 6\n_cell_length_c 7\n_cell_angle_beta 100.0(2)\n";
const std::string atoms =
    "\nloop_\n_atom_site_label\n_atom_site_fract_x\n_atom_site_fract_y\n_atom_site_fract_z\n"
    "Si1 0.1 0.2 0.3\nO1 0.3 0.2 0.3\n";

std::string WARNED(const std::string& text) {
  return "\n*****WARNING: " + text + "\n\n";
}

}  // namespace

// ---- readers ----

TEST_F(READING, CELL_ITEMS_THAT_ARE_MISSING_KEEP_THEIR_DEFAULTS) {
  std::array<float, 6> values{};
  std::array<float, 6> stds{};
  READ_CIF_CELL(LINES(cell), 1, 4, values, stds);
  EXPECT_EQ(values, (std::array<float, 6>{5, 6, 7, 90, 100, 90}));
  EXPECT_FLOAT_EQ(stds[0], 0.1f);
  EXPECT_FLOAT_EQ(stds[4], 0.2f);
  READ_CIF_CELL(LINES("_cell_length_a ?\n_cell_length_b 5 6\n"), 1, 2, values, stds);
  EXPECT_EQ(values, (std::array<float, 6>{1, 1, 1, 90, 90, 90}));
}

TEST_F(READING, TEMPERATURE_AND_PRESSURE_BY_EITHER_NAME) {
  float v = 0;
  float s = 0;
  READ_CIF_TEMP(LINES("_x 1\n"), 1, 1, v, s);
  EXPECT_EQ(v, 298.0f);
  EXPECT_EQ(s, 0.0f);
  READ_CIF_TEMP(LINES("_cell_measurement_temperature 100(2)\n_diffrn_ambient_temperature ?\n"), 1,
                2, v, s);
  EXPECT_EQ(v, 100.0f);
  EXPECT_EQ(s, 2.0f);
  READ_CIF_TEMP(LINES("_cell_measurement_temperature 100(2)\n_diffrn_ambient_temperature 200\n"), 1,
                2, v, s);
  EXPECT_EQ(v, 200.0f) << "that of the diffraction counts when there are both";
  EXPECT_EQ(s, 0.0f);
  READ_CIF_PRESSURE(LINES("_cell_measurement_pressure 1e6\n_diffrn_ambient_pressure 2e6\n"), 1, 2,
                    v, s);
  EXPECT_FLOAT_EQ(v, 2.0f);
  READ_CIF_PRESSURE(LINES("_x 1\n"), 1, 1, v, s);
  EXPECT_EQ(v, 0.0f);
  EXPECT_EQ(s, 0.0f);
  READ_CIF_PRESSURE(LINES("_diffrn_ambient_pressure 3500000(10000)\n"), 1, 1, v, s);
  EXPECT_FLOAT_EQ(v, 3.5f);
  EXPECT_FLOAT_EQ(s, 0.01f);
  READ_CIF_PRESSURE(LINES("_diffrn_ambient_pressure 100\n"), 1, 1, v, s);
  EXPECT_FLOAT_EQ(v, 0.0001f);
  EXPECT_EQ(s, 0.0f) << "a pressure without an esd has none";
  READ_CIF_PRESSURE(LINES("_diffrn_ambient_pressure 1 2\n_cell_measurement_pressure 2e6(1)\n"), 1,
                    2, v, s);
  EXPECT_FLOAT_EQ(v, 2.0f) << "two numbers are none";
}

TEST_F(READING, SYMBOLS_AND_THEIR_SETTINGS) {
  EXPECT_EQ(SYMBOL("'P n m a'"), "P n m a");
  EXPECT_EQ(SYMBOL("\"P n m a\""), "P n m a");
  EXPECT_EQ(SYMBOL("P21/c"), "") << "an unquoted symbol reads as blank";
  EXPECT_EQ(SYMBOL("'P 1"), "") << "one quote is none";
  EXPECT_EQ(SYMBOL("?"), "");
  EXPECT_EQ(SYMBOL("# 'P 1'"), "");
  EXPECT_EQ(SYMBOL("'R -3 m :H'"), "R -3 m");
  EXPECT_EQ(SYMBOL("'R -3 m H'"), "R -3 m");
  EXPECT_EQ(SYMBOL("'R -3 m HR'"), "R -3 m");
  EXPECT_EQ(SYMBOL("'R -3 m HZ'"), "R -3 m");
  EXPECT_EQ(SYMBOL("'R -3 m HS'"), "R -3 m");
  EXPECT_EQ(SYMBOL("'R -3 m h'"), "R -3 m") << "in any case";
  EXPECT_EQ(SYMBOL("'R 3 :r'"), "R 3:R");
  EXPECT_EQ(SYMBOL("'R 3 RZ'"), "R 3:R");
  EXPECT_EQ(SYMBOL("'F d -3 m S1'"), "F d -3 m:1");
  EXPECT_EQ(SYMBOL("'F d -3 m z1'"), "F d -3 m:1");
  EXPECT_EQ(SYMBOL("\"P 'n m a'\""), "n m a") << "apostrophes are looked for first";
  EXPECT_EQ(SYMBOL("'R 3 :R'"), "R 3:R");
  EXPECT_EQ(SYMBOL("'R 3 R'"), "R 3:R");
  EXPECT_EQ(SYMBOL("'R 3 RS'"), "R 3:R");
  EXPECT_EQ(SYMBOL("'F d -3 m :2'"), "F d -3 m");
  EXPECT_EQ(SYMBOL("'F d -3 m Z'"), "F d -3 m");
  EXPECT_EQ(SYMBOL("'F d -3 m S'"), "F d -3 m");
  EXPECT_EQ(SYMBOL("'F d -3 m Z1'"), "F d -3 m:1");
  EXPECT_EQ(SYMBOL("'F d -3 m :1'"), "F d -3 m:1");
  EXPECT_EQ(SYMBOL("'P 1'"), "P 1");
  EXPECT_EQ(SYMBOL("'P 21 21 21'"), "P 21 21 21");
  EXPECT_EQ(SYMBOL("'P n m a :'"), "P n m a") << "a colon without a setting goes";
  std::string symbol;
  READ_CIF_HM(LINES("_space_group_name_H-M_alt 'P b n m'\n"), 1, 1, symbol);
  EXPECT_EQ(symbol, "P b n m");
  READ_CIF_HM(LINES("_space_group_name_H-M_alt 'P b n m'\n_symmetry_space_group_name_H-M 'P 1'\n"),
              1, 2, symbol);
  EXPECT_EQ(symbol, "P 1") << "the older name comes first";
  READ_CIF_HM(LINES("_symmetry_space_group_name_H-M ?\n_space_group_name_H-M_alt 'P b n m'\n"), 1,
              2, symbol);
  EXPECT_EQ(symbol, "") << "a question mark is a text";
}

TEST_F(READING, COMPACT_SYMBOLS_OF_FOUR_CHARACTERS_ARE_REPAIRED) {
  const auto fixed = [](std::string symbol) {
    bool flag = true;
    FIX_SPACEGROUP(symbol, flag);
    return symbol + (flag ? "?" : "");
  };
  EXPECT_EQ(fixed("Pnma"), "P n m a");
  EXPECT_EQ(fixed("'Pnma'"), "P n m a");
  EXPECT_EQ(fixed("R-3m"), "R - 3 m") << "as it is cut; the symbol is understood all the same";
  EXPECT_EQ(fixed("P21/c"), "P 21/c?");
  EXPECT_EQ(fixed("C2/c"), "C 2/c?");
  EXPECT_EQ(fixed("P n m a"), "P n m a?");
  EXPECT_EQ(fixed(""), "?");
}

TEST_F(READING, OPERATORS_IN_QUOTES_UP_TO_A_BLANK_LINE) {
  std::vector<std::string> ops;
  READ_CIF_SYMM(LINES("data_x\n_space_group_symop_operation_xyz\n'x,y,z'\n1 '-x,-y,-z'\n# '0'\n? "
                      "'1'\n\"x,-y,z\"\n"
                      "-x,y,-z\n\n'late'\n"),
                1, 10, ops);
  EXPECT_EQ(ops, (std::vector<std::string>{"x,y,z", "-x,-y,-z", "x,-y,z"}));
  READ_CIF_SYMM(LINES("data_x\n_space_group_symop_operation_xyz 'x,y,z'\n_other 'word'\n"), 1, 3,
                ops);
  EXPECT_EQ(ops, (std::vector<std::string>{"x,y,z", "word"})) << "only a blank line ends the walk";
  READ_CIF_SYMM(
      LINES("data_x\n_symmetry_equiv_pos_as_xyz\n_space_group_symop_operation_xyz\n'x,y,z\n"
            "'-x,-y,z'\n"),
      1, 5, ops);
  EXPECT_EQ(ops, (std::vector<std::string>{"-x,-y,z"})) << "one quote is none";
  READ_CIF_SYMM(LINES("_x 1\n"), 1, 1, ops);
  EXPECT_TRUE(ops.empty());
}

// Without quotes, behind a number or not, with other columns behind them; a title before the block
// is none.
TEST_F(READING, BARE_OPERATORS_OF_THEIR_OWN_BLOCK) {
  std::vector<std::string> ops;
  const FILE_LINES lines = LINES(
      "olivine, at 3 GPa, run 2\ndata_none\n_x 1\ndata_bare\nloop_\n"
      "_space_group_symop_operation_xyz\n_space_group_symop_id\n# one\n1 x,y,z 7\n-x, -y, z\nO 1 "
      "2\n"
      "x,y,-z\n");
  READ_BARE_OPERATORS(lines, 4, 12, ops);
  EXPECT_EQ(ops, (std::vector<std::string>{"x,y,z", "-x, -y, z"}));
  READ_BARE_OPERATORS(lines, 2, 3, ops);
  EXPECT_TRUE(ops.empty());
}

// ---- blocks ----

TEST_F(READING, A_BLOCK_WITHOUT_ITEMS) {
  EXPECT_EQ(
      READ("data_x\n"),
      WARNED("No symmetry detected in CIF block #  1, neither operators nor HM symbol, space "
             "group set to P1") +
          WARNED("cifdata_key of _atom_site_ not found by read_loop_cif in block #  1 in the cif"));
  ASSERT_EQ(COUNT, 1);
  EXPECT_EQ(BLOCKS(1).BLOCK_TITLE, "x");
  EXPECT_EQ(BLOCKS(1).CELL.CELL, (VECTOR3{1, 1, 1}));
  EXPECT_EQ(BLOCKS(1).NATOMS, 0);
  EXPECT_EQ(BLOCKS(1).SPG.SPG_SYMB, "P 1");
}

TEST_F(READING, A_FILE_WITHOUT_BLOCKS) {
  EXPECT_EQ(
      READ("_cell_length_a 5\n"),
      WARNED("Allocate_crystal_structurelist called with n < 1 called from expand_phase_list"));
  EXPECT_EQ(COUNT, 0);
}

TEST_F(READING, ATOMS_GET_THEIR_OCCUPANCY_AND_ARE_IN_USE) {
  EXPECT_EQ(READ("data_x\n" + cell + "_symmetry_space_group_name_H-M 'P 21/c'\n" + atoms), "");
  ASSERT_EQ(BLOCKS(1).NATOMS, 2);
  EXPECT_EQ(BLOCKS(1).ATOM(2).OCC, 1.0f);
  EXPECT_EQ(BLOCKS(1).ATOM_USE(2), ATOM_USED);
  EXPECT_EQ(BLOCKS(1).SPG.NUMSPG, 14);
  EXPECT_FLOAT_EQ(BLOCKS(1).CELL.CELL_STD[0], 0.1f);
}

TEST_F(READING, ELEVEN_BLOCKS_ARE_A_LARGE_FILE) {
  std::string text;
  for (int i = 1; i <= 11; ++i) {
    if (i == 11) {
      EXPECT_EQ(READ(text), "") << "ten are not";
    }
    text +=
        "data_b" + std::to_string(i) + "\n_symmetry_space_group_name_H-M 'P 1'\n" + atoms + "\n";
  }
  EXPECT_EQ(READ(text),
            "\n*****This is a large file, please be patient while it is read in*****\n\n");
  EXPECT_EQ(COUNT, 11);
  EXPECT_EQ(BLOCKS(11).BLOCK_TITLE, "b11");
}

TEST_F(READING, SENSELESS_CELLS_ARE_TOLD_AND_THE_OTHER_BLOCKS_READ) {
  for (const char* length : {"0", "-5", "1e38"}) {
    const std::string said =
        READ("data_bad\n_symmetry_space_group_name_H-M 'P 1'\n_cell_length_a " +
             std::string(length) + "\n_cell_length_b 1e30\n" + atoms +
             "\ndata_good\n_symmetry_space_group_name_H-M 'P 1'\n" + cell + atoms);
    EXPECT_EQ(said, WARNED("Bad cell parameters in block #  1 in the cif")) << length;
    EXPECT_EQ(BLOCKS(1).CELL.CELL, (VECTOR3{1, 1, 1}));
    EXPECT_EQ(BLOCKS(2).CELL.CELL, (VECTOR3{5, 6, 7}));
  }
}

TEST_F(READING, A_BLOCK_DOES_NOT_SEE_THE_ITEMS_OF_THE_NEXT) {
  const std::string said = READ("data_one\n" + atoms + "\ndata_two\n" + cell +
                                "_symmetry_space_group_name_H-M 'P 2'\n"
                                "_diffrn_ambient_temperature 100\n" +
                                atoms);
  EXPECT_EQ(said, WARNED("No symmetry detected in CIF block #  1, neither operators nor HM symbol, "
                         "space group set to P1"));
  EXPECT_EQ(BLOCKS(1).CELL.CELL, (VECTOR3{1, 1, 1}));
  EXPECT_EQ(BLOCKS(1).PT(TEMPERATURE, PT_VALUE), 298.0f);
  EXPECT_EQ(BLOCKS(2).CELL.CELL, (VECTOR3{5, 6, 7}));
  EXPECT_EQ(BLOCKS(2).PT(TEMPERATURE, PT_VALUE), 100.0f);
  EXPECT_EQ(BLOCKS(2).SPG.NUMSPG, 3);
}

TEST_F(READING, TITLES_ARE_WHAT_FOLLOWS_THE_FIRST_UNDERSCORE) {
  READ("data_a_b_c\n");
  EXPECT_EQ(BLOCKS(1).BLOCK_TITLE, "a_b_c");
  READ("data_" + std::string(100, 't') + "\n");
  EXPECT_EQ(BLOCKS(1).BLOCK_TITLE, std::string(80, 't'));
  READ("data_\n");
  EXPECT_EQ(BLOCKS(1).BLOCK_TITLE, "");
}

TEST_F(READING, MORE_THAN_25000_LINES_ARE_A_LARGE_FILE) {
  const std::string block = "data_x\n_symmetry_space_group_name_H-M 'P 1'\n" + cell + atoms;
  const auto lines = std::count(block.begin(), block.end(), '\n');
  const auto comments = [&](long total) {
    std::string text;
    for (long i = lines; i < total; ++i) text += "#\n";
    return text;
  };
  EXPECT_EQ(READ(block + comments(25000)), "");
  EXPECT_EQ(READ(block + comments(25001)),
            "\n*****This is a large file, please be patient while it is read in*****\n\n");
}

// ---- volume ----

TEST_F(READING, VOLUMES_ARE_COMPARED_ONLY_WITH_AN_ESD) {
  const std::string block =
      "data_x\n_symmetry_space_group_name_H-M 'P 1'\n_cell_length_a 5\n"
      "_cell_length_b 6\n_cell_length_c 7\n";
  EXPECT_EQ(READ(block + "_cell_volume 100.0\n" + atoms), "") << "however wrong it is";
  EXPECT_EQ(READ(block + "_cell_volume -100(1)\n" + atoms), "");
  EXPECT_EQ(READ(block + "_cell_volume 0(1)\n" + atoms), "");
  EXPECT_EQ(READ(block + "_cell_volume 210.02(1)\n" + atoms), "") << "two esds";
  EXPECT_FLOAT_EQ(BLOCKS(1).CELL.STDVOL, 0.01f);
  EXPECT_FLOAT_EQ(BLOCKS(1).CELL.CELLVOL, 210.0f);
  // 0.05 is five esds of 0.01: S = 0.01 prints 10 at three decimals.
  EXPECT_EQ(READ(block + "_cell_volume 210.05(1)\n" + atoms),
            "*****Warning: Volume in CIF looks inconsistent with cell parameters:\n"
            "     Volume from cif  =  210.050(10)\n"
            "     Volume from cell =  210.000(10)\n"
            "     Calculated value will be used\n");
  EXPECT_EQ(READ(block + "_cell_volume 212(2)\n" + atoms).substr(0, 12), "*****Warning")
      << "one esd, but more than half a percent";
}

TEST_F(READING, VOLUMES_MAY_BE_3_ESDS_AND_HALF_A_PERCENT_OFF) {
  const auto warns = [&](const std::string& volume) {
    return !READ(
                "data_x\n_symmetry_space_group_name_H-M 'P 1'\n_cell_length_a 5\n"
                "_cell_length_b 6\n_cell_length_c 7\n_cell_volume " +
                volume + "\n" + atoms)
                .empty();
  };
  // The cell has 210.
  EXPECT_FALSE(warns("210.028(10)")) << "2.8 esds";
  EXPECT_TRUE(warns("210.032(10)")) << "3.2 esds";
  EXPECT_TRUE(warns("209.968(10)"));
  EXPECT_FALSE(warns("210.84(200)")) << "0.84 of 210.84 are 0.40 percent";
  EXPECT_TRUE(warns("211.3(20)")) << "1.3 of 211.3 are 0.62 percent";
  EXPECT_FLOAT_EQ(BLOCKS(1).CELL.CELLVOL, 210.0f) << "the cell's own volume stays";
  EXPECT_FLOAT_EQ(BLOCKS(1).CELL.STDVOL, 2.0f);
}

TEST_F(READING, THE_VOLUME_OF_A_SENSELESS_CELL_IS_NOT_COMPARED) {
  EXPECT_EQ(READ("data_bad\n_symmetry_space_group_name_H-M 'P 1'\n_cell_length_a 0\n"
                 "_cell_volume 125(3)\n" +
                 atoms),
            WARNED("Bad cell parameters in block #  1 in the cif"));
  EXPECT_EQ(BLOCKS(1).CELL.CELLVOL, 1.0f);
  EXPECT_EQ(BLOCKS(1).CELL.STDVOL, 0.0f);
}

// ---- space group ----

TEST_F(READING, THE_SYMBOL_ALONE_AND_THE_OPERATORS_ALONE_ARE_ENOUGH) {
  EXPECT_EQ(READ("data_x\n" + cell + "_symmetry_space_group_name_H-M 'Pnma'\n" + atoms), "");
  EXPECT_EQ(BLOCKS(1).SPG.SPG_SYMB, "P n m a");
  EXPECT_EQ(READ("data_x\n" + cell + "_symmetry_equiv_pos_as_xyz\n'x,y,z'\n'-x,-y,-z'\n" + atoms),
            "");
  EXPECT_EQ(BLOCKS(1).SPG.SPG_SYMB, "P -1");
}

TEST_F(READING, OPERATORS_WIN_OVER_A_SYMBOL_THAT_DIFFERS) {
  const std::string said = READ("data_x\n" + cell +
                                "_symmetry_space_group_name_H-M 'P 21/c'\n"
                                "_symmetry_equiv_pos_as_xyz\n'x,y,z'\n'-x,-y,-z'\n" +
                                atoms);
  EXPECT_EQ(said,
            WARNED("HM symbol in CIF block #  1, does not agree with operators, space group set "
                   "to P -1 from operators"));
  EXPECT_EQ(BLOCKS(1).SPG.SPG_SYMB, "P -1");
}

TEST_F(READING, OPERATORS_WITHOUT_SYMMETRY_WIN_TOO) {
  EXPECT_EQ(READ("data_x\n" + cell +
                 "_symmetry_space_group_name_H-M 'P 21/c'\n"
                 "_symmetry_equiv_pos_as_xyz\n'x,y,z'\n" +
                 atoms),
            WARNED("HM symbol in CIF block #  1, does not agree with operators, space group set "
                   "to P 1 from operators"));
  EXPECT_EQ(BLOCKS(1).SPG.MULTIP, 1);
}

TEST_F(READING, A_SYMBOL_IS_LEFT_ADJUSTED_BEFORE_ITS_BLANKS_COUNT) {
  EXPECT_EQ(READ("data_x\n" + cell + "_symmetry_space_group_name_H-M ' P21/c'\n" + atoms),
            WARNED("No symmetry detected in CIF block #  1, no operators and HM symbol not written "
                   "with spaces, space group set to P1"));
}

TEST_F(READING, A_SYMBOL_THAT_AGREES_KEEPS_ITS_NAME) {
  EXPECT_EQ(
      READ("data_x\n" + cell +
           "_symmetry_space_group_name_H-M 'P 1 21/c 1'\n"
           "_symmetry_equiv_pos_as_xyz\n'x,1/2-y,1/2+z'\n'-x,-y,-z'\n'x,y,z'\n'-x,1/2+y,1/2-z'\n" +
           atoms),
      "");
  EXPECT_EQ(BLOCKS(1).SPG.SPG_SYMB, "P 1 21/c 1");
}

TEST_F(READING, WRONG_OPERATORS_LEAVE_THE_SYMBOL) {
  EXPECT_EQ(READ("data_x\n" + cell +
                 "_symmetry_space_group_name_H-M 'P 21/c'\n"
                 "_symmetry_equiv_pos_as_xyz\n'x,y,q'\n" +
                 atoms),
            "");
  EXPECT_EQ(BLOCKS(1).SPG.NUMSPG, 14);
}

TEST_F(READING, NO_SYMMETRY_FALLS_TO_P1_WITH_A_REASON) {
  EXPECT_EQ(
      READ("data_x\n" + cell + "_symmetry_space_group_name_H-M 'P21/c'\n" + atoms),
      WARNED("No symmetry detected in CIF block #  1, no operators and HM symbol not written with "
             "spaces, space group set to P1"));
  EXPECT_EQ(
      READ("data_x\n" + cell + "_symmetry_space_group_name_H-M P21/c\n" + atoms),
      WARNED("No symmetry detected in CIF block #  1, neither operators nor HM symbol, space group "
             "set to P1"));
  EXPECT_EQ(BLOCKS(1).SPG.SPG_SYMB, "P 1");
}

// ---- atoms ----

TEST_F(READING, AN_OCCUPANCY_BELOW_0_IS_UNSET) {
  READ("data_x\n" + cell +
       "_symmetry_space_group_name_H-M 'P 1'\n\nloop_\n_atom_site_label\n_atom_site_fract_x\n"
       "_atom_site_fract_y\n_atom_site_fract_z\n_atom_site_occupancy\nSi1 0 0 0 -0.5\n"
       "O1 0 0 0.5 0.25\n");
  ASSERT_EQ(BLOCKS(1).NATOMS, 2);
  EXPECT_EQ(BLOCKS(1).ATOM(1).OCC, 1.0f);
  EXPECT_EQ(BLOCKS(1).ATOM(2).OCC, 0.25f);
}

TEST_F(READING, MESSAGES_ABOUT_ATOMS_BUT_NOT_ABOUT_ANISO) {
  const std::string head = "data_x\n" + cell + "_symmetry_space_group_name_H-M 'P 1'\n\n";
  EXPECT_EQ(
      READ(head + "loop_\n_atom_site_label\n_atom_site_fract_x\n_b 1\n"),
      WARNED("Loop for atoms found in cif, but no atom info from cif in block #  1 in the cif"));
  EXPECT_EQ(
      READ(head + "_atom_site_label\n_atom_site_fract_x\n_atom_site_fract_y\n_atom_site_fract_z\n"
                  "Si1 0 0 0\nloop_\n_atom_site_aniso_label\n_atom_site_aniso_U_11\nSi1 1\nO1 1\n"),
      "");
  EXPECT_EQ(BLOCKS(1).NATOMS, 1);
}

TEST_F(READING, FILES_THAT_ARE_NO_CIF_DO_NO_HARM) {
  std::string noise;
  unsigned state = 1;
  for (int i = 0; i < 200000; ++i) {
    state = state * 1664525U + 1013904223U;
    noise += static_cast<char>(state >> 24U);
  }
  READ(noise);
  READ("data_x\n;\nan open text field\n" + noise);
  std::string wide = "data_x\nloop_\n";
  for (int i = 0; i < 25; ++i) wide += "_atom_site_c" + std::to_string(i) + "\n";
  READ(wide +
       "_atom_site_label\n1 2 3 4 5 6 7 8 9 10 11 12 13 14 15 16 17 18 19 20 21 22 23 24 25 26\n");
  READ("data_x\n" + cell + atoms + std::string(300, 'L') + " 0 0 0\n");
  EXPECT_EQ(BLOCKS(1).NATOMS, 2) << "the coordinates lay beyond the line that is read";
  READ("data_x\n" + cell + atoms + std::string(120, 'L') + " 0 0 0\n");
  ASSERT_EQ(BLOCKS(1).NATOMS, 3);
  EXPECT_EQ(BLOCKS(1).ATOM(3).LAB, std::string(20, 'L'));
}

// ---- size ----

TEST_F(READING, TWO_THOUSAND_ATOMS_IN_P1) {
  std::string text =
      "data_big\n_cell_length_a 40\n_cell_length_b 40\n_cell_length_c 40\n"
      "_symmetry_space_group_name_H-M 'P 1'\n\nloop_\n_atom_site_label\n_atom_site_fract_x\n"
      "_atom_site_fract_y\n_atom_site_fract_z\n";
  for (int i = 0; i < 2000; ++i)
    text += "O" + std::to_string(i) + " 0." + std::to_string(100 + i % 13 * 61) + " 0." +
            std::to_string(100 + i / 13 % 13 * 61) + " 0." + std::to_string(100 + i / 169 * 61) +
            "\n";
  EXPECT_EQ(READ(text), "");
  EXPECT_EQ(BLOCKS(1).NATOMS, 2000);
}
