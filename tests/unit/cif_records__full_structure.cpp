// What the full reader makes of a block, item by item: small files with the reading that a person
// works out, and what is told.
#include <gtest/gtest.h>

#include <chrono>
#include <cmath>  // for nextafter
#include <string>

#include "cifcode/cif_full/structure.h"

namespace {

using namespace KVA_CIFFULL;
using namespace KVA_CRYSTAL_STRUCTURES;

const std::string cubic_cell =
    "_cell_length_a 5.0(1)\n_cell_length_b 5.0(1)\n_cell_length_c 5.0(1)\n"
    "_cell_angle_alpha 90\n_cell_angle_beta 90\n_cell_angle_gamma 90\n";
const std::string one_site =
    "loop_ _atom_site_label _atom_site_fract_x _atom_site_fract_y _atom_site_fract_z\n"
    "Si1 0.1 0.2 0.3\n";
const std::string no_symmetry = "_symmetry_space_group_name_H-M 'P 1'\n";

// The first block of a text that is read.
struct READING {
  std::string BYTES;
  STRUCTURE_READER READER;
  STRUCTURE FOUND;

  explicit READING(const std::string& bytes) : BYTES(bytes), READER(STRUCTURES_OF(BYTES)) {
    while (NEXT_STRUCTURE(READER, FOUND) && FOUND.STATUS != BLOCK_STATUS::READ) {
    }
  }

  std::string TOLD() const {
    std::string told;
    for (const std::string& telling : FOUND.TELLINGS) told += (told.empty() ? "" : "|") + telling;
    return told;
  }
};

// A block with the cell, the space group and the site, where the text does not have its own.
std::string WITH_SITE(const std::string& text) {
  return "data_a\n" + cubic_cell + no_symmetry + text + one_site;
}

std::string WITH_SITES(const std::string& loop) {
  return "data_a\n" + cubic_cell + no_symmetry + loop;
}

// ---- cell ----

TEST(FULL_CELL, SIX_PARAMETERS_WITH_ESDS_BY_OLD_AND_NEW_NAMES) {
  const READING reading(
      "data_a _cell.length_a 5.1(2) _cell.length_b 6.25(3) _CELL_LENGTH_C '7'\n"
      "_cell_angle_alpha 91.5(1) _cell_angle_beta\n92 _cell_angle_gamma\n;93\n;\n" +
      no_symmetry + one_site);
  ASSERT_EQ(reading.FOUND.STATUS, BLOCK_STATUS::READ);
  EXPECT_EQ(reading.FOUND.CELL.CELL, (VECTOR3{5.1f, 6.25f, 7.0f}));
  EXPECT_EQ(reading.FOUND.CELL.ANG, (VECTOR3{91.5f, 92.0f, 93.0f}));
  EXPECT_FLOAT_EQ(reading.FOUND.CELL.CELL_STD[0], 0.2f);
  EXPECT_FLOAT_EQ(reading.FOUND.CELL.CELL_STD[1], 0.03f);
  EXPECT_FLOAT_EQ(reading.FOUND.CELL.ANG_STD[0], 0.1f);
  EXPECT_EQ(reading.TOLD(), "");
}

TEST(FULL_CELL, WITHOUT_ALL_SIX_THE_BLOCK_IS_NOT_READ) {
  for (const char* wrong : {"?", "abc", "-5", "0", "nan"}) {
    READING reading("data_a _cell_length_a " + std::string(wrong) +
                    " _cell_length_b 5 _cell_length_c 5 _cell_angle_alpha 90 _cell_angle_beta 90 "
                    "_cell_angle_gamma 90\n" +
                    one_site);
    EXPECT_EQ(reading.FOUND.STATUS, BLOCK_STATUS::PASSED_OVER) << wrong;  // the end of the file
    reading.READER = STRUCTURES_OF(reading.BYTES);
    NEXT_STRUCTURE(reading.READER, reading.FOUND);
    EXPECT_EQ(reading.FOUND.STATUS, BLOCK_STATUS::NO_CELL) << wrong;
  }
}

TEST(FULL_CELL, AN_ANGLE_THAT_IS_MISSING_OR_NONE_IS_NO_90_DEGREES) {
  for (const char* item : {"", "_cell_angle_beta ?", "_cell_angle_beta x", "_cell_angle_beta 0",
                           "_cell_angle_beta -90", "_cell_angle_betta 90"}) {
    READING reading(
        "data_a _cell_length_a 5 _cell_length_b 5 _cell_length_c 5 _cell_angle_alpha 90 "
        "_cell_angle_gamma 90 " +
        std::string(item) + "\n" + one_site);
    reading.READER = STRUCTURES_OF(reading.BYTES);
    NEXT_STRUCTURE(reading.READER, reading.FOUND);
    EXPECT_EQ(reading.FOUND.STATUS, BLOCK_STATUS::NO_CELL) << item;
    EXPECT_EQ(reading.FOUND.MISSING, "angle") << item;
  }
}

// ---- symmetry ----

// Symbol and number of operators, then what is told.
std::string GROUP(const std::string& items, const std::string& cell = cubic_cell) {
  const READING reading("data_a\n" + cell + items + one_site);
  if (reading.FOUND.STATUS != BLOCK_STATUS::READ) return "not read";
  const XTAL::SPACE_GROUP& group = reading.FOUND.SPG->GROUP;
  const std::string told = reading.TOLD();
  return group.SPG_SYMB + " " + std::to_string(group.MULTIP) + (told.empty() ? "" : "|" + told);
}

TEST(FULL_SYMMETRY, OPERATORS_QUOTED_OR_BARE_IN_A_LOOP_OF_ANY_COLUMNS) {
  EXPECT_EQ(GROUP("loop_ _symmetry_equiv_pos_as_xyz 'x, y, z' \"-x,-y,-z\"\n"), "P -1 2");
  EXPECT_EQ(GROUP("loop_ _space_group_symop_id _space_group_symop.operation_xyz _x\n"
                  "1 x,y,z a 2 -X,-Y,-Z b\n"),
            "P -1 2");
  EXPECT_EQ(GROUP("_space_group_symop_operation_xyz x,y,z\n"), "P 1 1");
  EXPECT_EQ(GROUP("loop_\n_symmetry_equiv_pos_as_xyz\nx, y, z\n-x, -y, -z\n"), "P -1 2");
  EXPECT_EQ(GROUP("loop_\n_symmetry_equiv_pos_as_xyz\nx, y, z\n- x, - y, -z\n"), "P -1 2");
  EXPECT_EQ(GROUP("loop_ _space_group_symop_magn_operation.xyz x,y,z,+1 -x,-y,-z,-1\n"
                  "loop_ _space_group_symop_magn_centering.xyz x,y,z,+1 x+1/2,y+1/2,z+1/2,-1\n"),
            "unknown 4");  // the setting I -1 has no row
}

TEST(FULL_SYMMETRY, SYMBOLS_IN_ALL_THE_WAYS_IN_WHICH_THEY_ARE_WRITTEN) {
  const auto hm = [](const std::string& symbol) {
    return GROUP("_symmetry_space_group_name_H-M \"" + symbol + "\"\n");
  };
  for (const char* symbol : {"F d -3 m", "Fd-3m", "F d -3 m :2", "Fd-3m:2", "F d -3 m Z", "Fd-3mZ",
                             "F d -3 m (origin choice 2)"})
    EXPECT_EQ(hm(symbol).substr(0, 8) + hm(symbol).substr(hm(symbol).rfind(' ')), "F d -3 m 192")
        << symbol;
  for (const char* symbol : {"F d -3 m :1", "Fd-3m:1", "F d -3 m S", "Fd-3mS",
                             "F d -3 m (origin choice 1)", "F d -3 m, origin 1"})
    EXPECT_EQ(hm(symbol), "F d -3 m:1 192") << symbol;
  for (const char* symbol : {"P n m a", "Pnma", "P_n_m_a", "P n m a S"})
    EXPECT_EQ(hm(symbol), "P n m a 8") << symbol;
  EXPECT_EQ(hm("Fd3m"), "F d 3 m 192");  // without the bar, as it was written before 1992
  EXPECT_EQ(hm("P 21 3"), "P 21 3 12");
  EXPECT_EQ(hm("P2(1)3"), "P 21 3 12");
  EXPECT_EQ(hm("P 2~1~ 3"), "P 21 3 12");
  EXPECT_EQ(GROUP("_space_group_name_H-M_alt ?\n_symmetry_space_group_name_H-M Pm-3m\n"),
            "P m -3 m 48");
}

// The words behind the first are a fault of syntax, and the symbol all the same.
TEST(FULL_SYMMETRY, A_SYMBOL_WITH_BLANKS_MAY_LACK_ITS_QUOTES) {
  const auto stray = [](std::string_view word, std::string_view more) {
    return "|Line 8: a data name was expected, not " + std::string(word) + std::string(more);
  };
  EXPECT_EQ(GROUP("_space_group_name_H-M_alt F d -3 m # cubic\n"),
            "F d -3 m 192" + stray("d", " (the first of 3)"));
  EXPECT_EQ(GROUP("_space_group_name_Hall -P 2ac 2n\n"),
            "P n m a 8" + stray("2ac", " (the first of 2)"));
  EXPECT_EQ(GROUP("_space_group_name_H-M_alt Pnma by hand\n"),
            "P n m a 8" + stray("by", " (the first of 2)"));
  EXPECT_EQ(GROUP("_space_group_name_H-M_alt 'P n m a' 21\n"), "P n m a 8" + stray("21", ""));
  EXPECT_EQ(
      GROUP("_space_group_name_H-M_alt P\n21/c\n"),
      "P 1 1|Line 9: a data name was expected, not 21/c|The space group P is not known, space "
      "group set to P 1");
}

TEST(FULL_SYMMETRY, HALL_SYMBOL_THEN_SYMBOL_THEN_NUMBER) {
  EXPECT_EQ(GROUP("_space_group_name_Hall '-P 2ac 2n'\n_space_group_IT_number 1\n"),
            "P n m a 8|The number 1 does not agree with the Hall symbol -P 2ac 2n, which is read");
  EXPECT_EQ(GROUP("_space_group_name_Hall nonsense\n_space_group_name_H-M_alt 'P n m a'\n"),
            "P n m a 8");
  EXPECT_EQ(GROUP("_space_group_name_H-M_alt 'P n m a'\n_space_group_IT_number 0\n"), "P n m a 8");
  EXPECT_EQ(GROUP("_space_group_name_H-M_alt 'P n m a'\n_space_group_IT_number 61\n"),
            "P n m a 8|The number 61 does not agree with the symbol P n m a, which is read");
  EXPECT_EQ(GROUP("_symmetry_Int_Tables_number 62\n"), "P n m a 8");
  for (const std::string number : {"62.5", "Pnma"})
    EXPECT_EQ(GROUP("_symmetry_Int_Tables_number " + number + "\n"),
              "P 1 1|No symmetry, space group set to P 1")
        << number;
  EXPECT_EQ(GROUP("_space_group_IT_number 227\n_space_group_IT_coordinate_system_code 1\n"),
            "F d -3 m:1 192");
  EXPECT_EQ(GROUP("_space_group_name_Hall '-P 2ac 2n'\n_space_group_name_H-M_alt 'P b c a'\n"),
            "P n m a 8|The symbol P b c a does not agree with the Hall symbol -P 2ac 2n, which is "
            "read");
}

// x' = x - z, as c' = a + c: the glide c of P 21/c is along the diagonal then.
TEST(FULL_SYMMETRY, A_HALL_SYMBOL_MAY_BE_ON_OTHER_AXES) {
  EXPECT_EQ(GROUP("_space_group_name_Hall '-P 1 (x-z,y,z)'\n_space_group_name_H-M_alt 'P 1'\n"),
            "P -1 2|The symbol P 1 does not agree with the Hall symbol -P 1 (x-z,y,z), which is "
            "read");
  EXPECT_EQ(GROUP("_space_group_name_Hall '-P 2ybc (x-z,y,z)'\n"), "P 21/n 4");
  EXPECT_EQ(GROUP("_space_group_name_Hall '-P 2ybc (x-z,y,2z)'\n"),
            "P 1 1|The space group -P 2ybc (x-z,y,2z) is not known, space group set to P 1");
}

// P 2 2 2 with a, b and a + c for axes: x' = x - z. The cell of 3, 6 and 5 angstroms at 53.13
// degrees is one of 3, 6 and 4 at right angles (3-4-5).
TEST(FULL_SYMMETRY, OPERATORS_MAY_HAVE_FACTORS_OF_TWO) {
  const std::string cell =
      "_cell_length_a 3 _cell_length_b 6 _cell_length_c 5 _cell_angle_alpha 90 "
      "_cell_angle_beta 53.130102 _cell_angle_gamma 90\n";
  const std::string stars = "loop_ _symmetry_equiv_pos_as_xyz x,y,z -x-2*z,-y,z x+2*z,-y,-z\n";
  const std::string bare = "loop_ _symmetry_equiv_pos_as_xyz x,y,z -x-2z,-y,z x+2z,-y,-z\n";
  EXPECT_EQ(GROUP(stars, cell), "unknown 4");
  EXPECT_EQ(GROUP(bare, cell), "unknown 4");
  EXPECT_EQ(GROUP(bare), "unknown 4|The operators do not fit the cell: one of the two is wrong");
  const READING reading("data_a\n" + cell + bare + one_site);
  EXPECT_EQ(reading.FOUND.SPG->GROUP.SYMOPSYMB.ITEMS(),
            (std::vector<std::string>{"x,y,z", "-x-2z,-y,z", "x+2z,-y,-z", "-x,y,-z"}));
}

TEST(FULL_SYMMETRY, OPERATORS_WIN_AND_A_CONTRADICTION_IS_TOLD) {
  const std::string inversion = "loop_ _symmetry_equiv_pos_as_xyz x,y,z -x,-y,-z\n";
  EXPECT_EQ(GROUP(inversion + "_symmetry_space_group_name_H-M 'P 1'\n"),
            "P -1 2|The symbol P 1 does not agree with the operators, which are read: P -1");
  EXPECT_EQ(GROUP(inversion + "_space_group_name_Hall 'P 1'\n"),
            "P -1 2|The Hall symbol P 1 does not agree with the operators, which are read: P -1");
  EXPECT_EQ(GROUP(inversion + "_space_group_IT_number 1\n"),
            "P -1 2|The number 1 does not agree with the operators, which are read: P -1");
  const std::string agrees = inversion + "_symmetry_space_group_name_H-M 'P -1'\n";
  EXPECT_EQ(GROUP(agrees + "_space_group_name_Hall '-P 1'\n_space_group_IT_number 2\n"), "P -1 2");
  EXPECT_EQ(GROUP(agrees + "_space_group_name_Hall 'P 1'\n"),
            "P -1 2|The Hall symbol P 1 does not agree with the operators, which are read: P -1");
  EXPECT_EQ(GROUP(agrees + "_space_group_IT_number 1\n"),
            "P -1 2|The number 1 does not agree with the operators, which are read: P -1");
  EXPECT_EQ(GROUP("loop_ _symmetry_equiv_pos_as_xyz x,y,z a,b,c\n"
                  "_symmetry_space_group_name_H-M 'P m'\n"),
            "P m 2|The operators make no space group, it is P m by the symbol");
}

TEST(FULL_SYMMETRY, OPERATORS_THAT_MAKE_NO_GROUP_WITHOUT_A_SYMBOL_ARE_P_1) {
  const std::string broken = "loop_ _symmetry_equiv_pos_as_xyz x,y,z a,b,c\n";
  EXPECT_EQ(GROUP(broken),
            "P 1 1|The operators make no space group and there is no symbol, space group set to "
            "P 1");
  EXPECT_EQ(GROUP(broken + "_symmetry_space_group_name_H-M 'Q 7'\n"),
            "P 1 1|The operators make no space group and Q 7 is not known, space group set to P 1");
  EXPECT_EQ(GROUP(broken + "_space_group_IT_number 6\n"),
            "P m 2|The operators make no space group, it is P m by the symbol");
}

// x - 2z is in no table of settings.
TEST(FULL_SYMMETRY, OPERATORS_OF_A_SETTING_WITHOUT_A_NAME_WIN_TOO) {
  EXPECT_EQ(GROUP("loop_ _symmetry_equiv_pos_as_xyz x,y,z -x-2z,-y,z x+2z,-y,-z\n"
                  "_symmetry_space_group_name_H-M 'P m'\n",
                  "_cell_length_a 3 _cell_length_b 6 _cell_length_c 5 _cell_angle_alpha 90 "
                  "_cell_angle_beta 53.130102 _cell_angle_gamma 90\n"),
            "unknown 4|The symbol P m does not agree with the operators, which are read: a setting "
            "without a symbol");
}

// The symbol leaves the origin open, so that operators of either are no contradiction.
TEST(FULL_SYMMETRY, A_SYMBOL_WITHOUT_A_CHOICE_AGREES_WITH_THE_OPERATORS_OF_EACH) {
  const std::string first_origin =
      "loop_ _symmetry_equiv_pos_as_xyz x,y,z -x,-y,z -x,y,-z x,-y,-z 1/2-x,1/2-y,1/2-z "
      "1/2+x,1/2+y,1/2-z 1/2+x,1/2-y,1/2+z 1/2-x,1/2+y,1/2+z\n";
  EXPECT_EQ(GROUP(first_origin + "_symmetry_space_group_name_H-M 'P n n n'\n"), "P n n n:1 8");
  EXPECT_EQ(GROUP(first_origin + "_symmetry_space_group_name_H-M 'P n n n :2'\n"),
            "P n n n:1 8|The symbol P n n n :2 does not agree with the operators, which are read: "
            "P n n n:1");
}

TEST(FULL_SYMMETRY, AN_R_SYMBOL_OVER_A_RHOMBOHEDRAL_CELL_HAS_ITS_AXES) {
  const std::string cell =
      "_cell_length_a 6 _cell_length_b 6 _cell_length_c 6 _cell_angle_alpha 50 "
      "_cell_angle_beta 50 _cell_angle_gamma 50\n";
  EXPECT_EQ(GROUP("_symmetry_space_group_name_H-M 'R -3 c'\n", cell), "R -3 c:r 12");
  EXPECT_EQ(GROUP("_space_group_IT_number 167\n", cell), "R -3 c:r 12");
  EXPECT_EQ(GROUP("_symmetry_space_group_name_H-M 'R -3 c :R'\n", cell), "R -3 c:r 12");
  EXPECT_EQ(GROUP("_symmetry_space_group_name_H-M 'R -3 c H'\n", cell),
            "R -3 c 36|The operators of R -3 c do not fit the cell: one of the two is wrong");
}

// Lengths within a thousandth and angles within 0.05 degrees are equal, and 90 degrees are none.
TEST(FULL_SYMMETRY, RHOMBOHEDRAL_AXES_ARE_EQUAL_TO_WITHIN_THEIR_ROUNDING) {
  const auto read = [](const std::string& b, const std::string& alpha, const std::string& beta,
                       const std::string& c = "6") {
    return GROUP("_symmetry_space_group_name_H-M 'R -3'\n",
                 "_cell_length_a 6 _cell_length_b " + b + " _cell_length_c " + c +
                     " _cell_angle_alpha " + alpha + " _cell_angle_beta " + beta +
                     " _cell_angle_gamma " + alpha + "\n");
  };
  const std::string on_its_axes = "R -3:r 6";
  const std::string on_others =
      "R -3 18|The operators of R -3 do not fit the cell: one of the two is wrong";
  EXPECT_EQ(read("6", "50", "50"), on_its_axes);
  EXPECT_EQ(read("6.005", "50", "50"), on_its_axes);
  EXPECT_EQ(read("6.007", "50", "50"), on_others);
  EXPECT_EQ(read("6", "50", "50", "6.005"), on_its_axes);
  EXPECT_EQ(read("6", "50", "50", "6.007"), on_others);
  EXPECT_EQ(read("6", "50", "50.04"), on_its_axes);
  EXPECT_EQ(read("6", "50", "50.06"), on_others);
  EXPECT_EQ(read("6", "90.06", "90.06"), on_its_axes);
  EXPECT_EQ(read("6", "90.04", "90.04"), on_others);
}

TEST(FULL_SYMMETRY, OPERATORS_THAT_CHANGE_THE_CELL_ARE_TOLD) {
  const std::string cell =
      "_cell_length_a 5 _cell_length_b 6 _cell_length_c 7 _cell_angle_alpha 90 "
      "_cell_angle_beta 100 _cell_angle_gamma 90\n";
  EXPECT_EQ(GROUP("_symmetry_space_group_name_H-M 'P 21/c'\n", cell), "P 21/c 4");
  EXPECT_EQ(GROUP("_symmetry_space_group_name_H-M 'P m m m'\n", cell),
            "P m m m 8|The operators of P m m m do not fit the cell: one of the two is wrong");
  EXPECT_EQ(GROUP("_symmetry_space_group_name_H-M 'P 4/m'\n", cell),
            "P 4/m 8|The operators of P 4/m do not fit the cell: one of the two is wrong");
}

TEST(FULL_SYMMETRY, NONE_IS_P1_AND_TOLD) {
  EXPECT_EQ(GROUP(""), "P 1 1|No symmetry, space group set to P 1");
  EXPECT_EQ(GROUP("_symmetry_space_group_name_H-M 'Q 9'\n"),
            "P 1 1|The space group Q 9 is not known, space group set to P 1");
}

// ---- temperature and pressure ----

std::string CONDITIONS(const std::string& items) {
  const READING reading(WITH_SITE(items));
  const auto text = [](const VALUE_STD& number) {
    return std::to_string(number.VALUE) + "(" + std::to_string(number.STD) + ")";
  };
  return text(reading.FOUND.T) + " " + text(reading.FOUND.P) +
         (reading.TOLD().empty() ? "" : "|" + reading.TOLD());
}

TEST(FULL_CONDITIONS, OF_THE_MEASUREMENT_THEN_OF_THE_CELL) {
  EXPECT_EQ(CONDITIONS(""), "0.000000(0.000000) 0.000000(0.000000)");
  EXPECT_EQ(CONDITIONS("_diffrn_ambient_temperature 150(2)\n_diffrn_ambient_pressure 2.50(5)e6\n"
                       "_cell_measurement_temperature 200\n"),
            "150.000000(2.000000) 0.000000(0.000000)|The pressure 2.50(5)e6 is not read: it is no "
            "number in kPa");
  EXPECT_EQ(CONDITIONS("_diffrn_ambient_temperature ?\n_cell_measurement_temperature 200\n"
                       "_cell_measurement_pressure 2500000(50000)\n"),
            "200.000000(0.000000) 2.500000(0.050000)");
}

TEST(FULL_CONDITIONS, A_UNIT_OF_THE_ITEM_MAY_STAND_BEHIND_ANOTHER_IS_TOLD) {
  for (const char* text : {"150 K", "150K", "'150 K'", "'150K'", "150 kelvin", "\n;150 K\n;"})
    EXPECT_EQ(CONDITIONS("_diffrn_ambient_temperature " + std::string(text) + "\n"),
              "150.000000(0.000000) 0.000000(0.000000)")
        << text;
  EXPECT_EQ(CONDITIONS("_diffrn_ambient_pressure '100 kPa'\n"),
            "0.000000(0.000000) 0.000100(0.000000)");
  EXPECT_EQ(CONDITIONS("_diffrn_ambient_temperature 20 C\n"),
            "0.000000(0.000000) 0.000000(0.000000)|The temperature 20 C is not read: it is no "
            "number in K");
  EXPECT_EQ(CONDITIONS("_diffrn_ambient_temperature 20 C\n_cell_measurement_temperature 293\n"),
            "293.000000(0.000000) 0.000000(0.000000)|The temperature 20 C is not read: it is no "
            "number in K");
  EXPECT_EQ(CONDITIONS("_diffrn_ambient_pressure '2.5 GPa'\n"),
            "0.000000(0.000000) 0.000000(0.000000)|The pressure 2.5 GPa is not read: it is no "
            "number in kPa");
}

TEST(FULL_CONDITIONS, NOTHING_STANDS_BEHIND_A_VALUE_OF_A_LOOP) {
  const READING reading(
      "data_a _diffrn_ambient_pressure 2 GPa loop_ _diffrn_ambient_temperature 150\n" + cubic_cell +
      no_symmetry + one_site);
  EXPECT_EQ(reading.FOUND.T.VALUE, 150.0f);
  EXPECT_EQ(reading.TOLD(), "The pressure 2 GPa is not read: it is no number in kPa");
}

TEST(FULL_CONDITIONS, A_STRAY_WORD_BEHIND_ANOTHER_VALUE_IS_A_FAULT_WITH_ITS_LINE) {
  EXPECT_EQ(CONDITIONS("_cell_volume 125 A\n"),
            "0.000000(0.000000) 0.000000(0.000000)|Line 9: a data name was expected, not A");
}

// ---- sites ----

// Label, element, charge, position, occupancy of each site; then what is told.
std::string SITES(const std::string& text) {
  const READING reading(text);
  std::string sites;
  for (const ATOM_TYPE& atom : reading.FOUND.ATOMS) {
    std::string numbers;
    for (float number : {atom.X[0], atom.X[1], atom.X[2], atom.OCC}) {
      std::string digits = std::to_string(number).substr(0, std::to_string(number).find('.') + 4);
      numbers += " " + digits;
    }
    sites += (sites.empty() ? "" : "; ") + atom.LAB + " " + atom.CHEMSYMB + "/" + atom.SFACSYMB +
             numbers;
  }
  return sites + (reading.TOLD().empty() ? "" : "|" + reading.TOLD());
}

const std::string site_head =
    "loop_ _atom_site_label _atom_site_type_symbol _atom_site_fract_x _atom_site_fract_y "
    "_atom_site_fract_z _atom_site_occupancy\n";

TEST(FULL_SITES, LABELS_KEEP_APOSTROPHES) {
  EXPECT_EQ(SITES(WITH_SITES(site_head + "O1' O 0.1 0.2 0.3 1 \"O1''\" O .1 -.5 +0.5 1\n"
                                         "'C a' C 1e-1 0 0 1\n")),
            "O1' O/O 0.100 0.200 0.300 1.000; O1'' O/O 0.100 -0.500 0.500 1.000; "
            "C a C/C 0.100 0.000 0.000 1.000");
}

TEST(FULL_SITES, ZERO_OCCUPANCY_STAYS_AND_NONE_IS_ONE) {
  EXPECT_EQ(SITES(WITH_SITES(site_head + "A1 O 0 0 0 0 A2 O 0 0 0 ? A3 O 0 0 0 . A4 O 0 0 0 "
                                         "0.25(1) A5 O 0 0 0 all\n")),
            "A1 O/O 0.000 0.000 0.000 0.000; A2 O/O 0.000 0.000 0.000 1.000; "
            "A3 O/O 0.000 0.000 0.000 1.000; A4 O/O 0.000 0.000 0.000 0.250; "
            "A5 O/O 0.000 0.000 0.000 1.000|"
            "1 sites with an occupancy that is no number, which is read as 1, first A5");
}

TEST(FULL_SITES, FRACTIONS_AND_BROKEN_ESDS) {
  EXPECT_EQ(SITES(WITH_SITES(site_head + "A1 O 1/3 -2/3 1/8 1\nA2 O 0.25( 0.5() 0.125(x) 1\n")),
            "A1 O/O 0.333 -0.666 0.125 1.000; A2 O/O 0.250 0.500 0.125 1.000|"
            "1 sites with an esd that cannot be read, which is left out, first A2");
}

TEST(FULL_SITES, THOSE_WITHOUT_A_POSITION_ARE_LEFT_OUT_AND_TOLD) {
  EXPECT_EQ(
      SITES(WITH_SITES(site_head + "A1 O 0 0 0 1\nA2 O ? 0 0 1\nA3 O . . . 1\nA4 O x 0 0 1\n")),
      "A1 O/O 0.000 0.000 0.000 1.000|"
      "2 sites without coordinates are left out, first A2|"
      "1 sites whose coordinates are no numbers are left out, first A4");
  EXPECT_EQ(SITES(WITH_SITES("loop_ _atom_site_calc_flag _atom_site_label _atom_site_fract_x "
                             "_atom_site_fract_y _atom_site_fract_z\nd C1 0 0 0\nDUM C2 1 0 0\n"
                             "dum C3 1 0 0\n")),
            "C1 C/C 0.000 0.000 0.000 1.000|2 sites with the flag dum are left out, first C2");
}

TEST(FULL_SITES, A_SITE_WITHOUT_A_LABEL_IS_CALLED_BY_ITS_TYPE_AND_NUMBER) {
  EXPECT_EQ(SITES(WITH_SITES("loop_ _atom_site_type_symbol _atom_site_fract_x _atom_site_fract_y "
                             "_atom_site_fract_z\nMg 0 0 0\nO .5 .5 .5\n")),
            "Mg1 Mg/Mg 0.000 0.000 0.000 1.000; O2 O/O 0.500 0.500 0.500 1.000");
}

TEST(FULL_SITES, ONE_SITE_NEEDS_NO_LOOP) {
  EXPECT_EQ(SITES(WITH_SITES("_atom_site_label Po _atom_site_fract_x 0 _atom_site_fract_y 0 "
                             "_atom_site_fract_z 0\n")),
            "Po Po/Po 0.000 0.000 0.000 1.000");
}

// ---- elements and charges ----

TEST(FULL_ELEMENTS, OF_THE_TYPE_ELSE_OF_THE_LABEL) {
  EXPECT_EQ(SITES(WITH_SITES(site_head + "X1 Fe3+ 0 0 0 1\nX2 O2- 0 0 0 1\nX3 Na+ 0 0 0 1\n"
                                         "Ca1 ? 0 0 0 1\nWat1 . 0 0 0 1\nD2 D 0 0 0 1\n"
                                         "Cl1 Xx 0 0 0 1\n")),
            "X1 Fe/Fe+3 0.000 0.000 0.000 1.000; X2 O/O-2 0.000 0.000 0.000 1.000; "
            "X3 Na/Na+1 0.000 0.000 0.000 1.000; Ca1 Ca/Ca 0.000 0.000 0.000 1.000; "
            "Wat1 O/O 0.000 0.000 0.000 1.000; D2 D/D 0.000 0.000 0.000 1.000; "
            "Cl1 Cl/Cl 0.000 0.000 0.000 1.000");
}

std::string CHARGES(const std::string& types) {
  const READING reading(WITH_SITES(types + site_head + "X1 Fe 0 0 0 1\nX2 O 0 0 0 1\n"));
  return std::to_string(reading.FOUND.ATOMS(1).CHARGE) + " " +
         std::to_string(reading.FOUND.ATOMS(2).CHARGE) + " " + reading.FOUND.ATOMS(1).SFACSYMB;
}

TEST(FULL_ELEMENTS, CHARGES_OF_THE_TYPE_LOOP) {
  EXPECT_EQ(CHARGES("loop_ _atom_type_symbol _atom_type_oxidation_number Fe 2.5 O -2\n"),
            "2.500000 -2.000000 Fe");
  EXPECT_EQ(CHARGES("loop_ _atom_type_symbol _atom_type_oxidation_number Fe 3 O ?\n"),
            "3.000000 0.000000 Fe+3");
  EXPECT_EQ(CHARGES("loop_ _atom_type_symbol _atom_type_description Fe Fe3+ O 'O-2'\n"),
            "3.000000 -2.000000 Fe+3");
  EXPECT_EQ(CHARGES("loop_ _atom_type_symbol _atom_type_description Fe iron O 'part-2'\n"),
            "0.000000 0.000000 Fe");
}

// ---- displacements ----

// Kind and the six numbers (isotropic: U, or B) of each site; then what is told.
std::string DISPLACEMENTS(const std::string& loops) {
  const READING reading(WITH_SITES(loops));
  std::string text;
  for (const ATOM_TYPE& atom : reading.FOUND.ATOMS) {
    text += (text.empty() ? "" : "; ") + atom.LAB;
    if (atom.THTYPE == "isotr") {
      text += " U " + std::to_string(atom.UEQ) + " B " + std::to_string(atom.BISO) + "(" +
              std::to_string(atom.BISO_STD) + ")";
      continue;
    }
    text += " " + atom.UTYPE;
    for (float u : atom.U) text += " " + std::to_string(u);
  }
  return text + (reading.TOLD().empty() ? "" : "|" + reading.TOLD());
}

const std::string two_sites =
    "loop_ _atom_site_label _atom_site_fract_x _atom_site_fract_y _atom_site_fract_z\n"
    "A 0 0 0\nA1 .5 .5 .5\n";
const std::string u_head =
    "loop_ _atom_site_aniso_label _atom_site_aniso_U_11 _atom_site_aniso_U_22 "
    "_atom_site_aniso_U_33 _atom_site_aniso_U_12 _atom_site_aniso_U_13 _atom_site_aniso_U_23\n";

TEST(FULL_DISPLACEMENTS, BEFORE_OR_BEHIND_THE_SITES_BY_WHOLE_LABELS) {
  const std::string expected =
      "A U 0.000000 B 0.000000(0.000000); A1 u_ij 0.010000 0.020000 0.030000 0.004000 0.005000 "
      "0.006000";
  const std::string row = "A1 .01(1) .02 .03 .004 .005 .006\n";
  EXPECT_EQ(DISPLACEMENTS(two_sites + u_head + row), expected);
  EXPECT_EQ(DISPLACEMENTS(u_head + row + two_sites), expected);
  EXPECT_EQ(DISPLACEMENTS(two_sites + u_head + row + "B9 1 1 1 1 1 1\nA ? ? ? ? ? ?\n"),
            expected + "|1 labels of displacements that no site has, which are not read, first B9");
}

// A second row of a label that one site has is nobody's.
TEST(FULL_DISPLACEMENTS, EACH_SITE_TAKES_ONE_ROW_AND_NUMBERS_ALONE) {
  const std::string none = "A U 0.000000 B 0.000000(0.000000)";
  const std::string six = "0.010000 0.020000 0.030000 0.004000 0.005000 0.006000";
  EXPECT_EQ(DISPLACEMENTS(two_sites + u_head +
                          "A1 .01 .02 .03 .004 .005 .006\n"
                          "A1 .02 .03 .04 .005 .006 .007\n"),
            none + "; A1 u_ij " + six);
  EXPECT_EQ(DISPLACEMENTS(two_sites + u_head + "A1 .01 .02 x .004 .005 .006\n"),
            none +
                "; A1 U 0.000000 B 0.000000(0.000000)|1 sites with a displacement that is no "
                "number, which is not read, first A1");
}

// 8 pi^2 = 78.9568: B of 0.789568 is U of 0.01. Beta stays what it is until the cell makes U of it.
TEST(FULL_DISPLACEMENTS, AS_B_OR_BETA) {
  EXPECT_EQ(
      DISPLACEMENTS(two_sites +
                    "loop_ _atom_site_aniso_label _atom_site_aniso_B_11 _atom_site_aniso_B_22 "
                    "_atom_site_aniso_B_33 _atom_site_aniso_B_12 _atom_site_aniso_B_13 "
                    "_atom_site_aniso_B_23\nA .789568 .789568 .789568 0 0 0\n"),
      "A u_ij 0.010000 0.010000 0.010000 0.000000 0.000000 0.000000; "
      "A1 U 0.000000 B 0.000000(0.000000)");
  EXPECT_EQ(DISPLACEMENTS(two_sites + "loop_ _atom_site_aniso.label _atom_site_aniso.beta_11 "
                                      "_atom_site_aniso.beta_22 _atom_site_aniso.beta_33 "
                                      "_atom_site_aniso.beta_12 _atom_site_aniso.beta_13 "
                                      "_atom_site_aniso.beta_23\nA .001 .002 .003 0 0 0\n"),
            "A beta 0.001000 0.002000 0.003000 0.000000 0.000000 0.000000; "
            "A1 U 0.000000 B 0.000000(0.000000)");
}

TEST(FULL_DISPLACEMENTS, U_OR_B_WITH_ESD) {
  EXPECT_EQ(DISPLACEMENTS("loop_ _atom_site_label _atom_site_fract_x _atom_site_fract_y "
                          "_atom_site_fract_z _atom_site_U_iso_or_equiv _atom_site_B_iso_or_equiv\n"
                          "A 0 0 0 .01(1) ?\nB 0 0 .5 ? .5(1)\nC .5 0 0 ? ?\nD 0 .5 0 ab ?\n"),
            "A U 0.010000 B 0.000000(0.789568); B U 0.000000 B 0.500000(0.100000); "
            "C U 0.000000 B 0.000000(0.000000); D U 0.000000 B 0.000000(0.000000)|"
            "1 sites with a displacement that is no number, which is not read, first D");
}

// Sites that share a label have their displacements in turn.
TEST(FULL_DISPLACEMENTS, OF_SITES_WITH_ONE_LABEL) {
  EXPECT_EQ(DISPLACEMENTS("loop_ _atom_site_label _atom_site_fract_x _atom_site_fract_y "
                          "_atom_site_fract_z\nA 0 0 0\nA 0 0 .5\n" +
                          u_head + "A 1 1 1 0 0 0\nA 2 2 2 0 0 0\nA 3 3 3 0 0 0\n"),
            "A u_ij 1.000000 1.000000 1.000000 0.000000 0.000000 0.000000; "
            "A u_ij 2.000000 2.000000 2.000000 0.000000 0.000000 0.000000");
}

// The columns of a loop may stand in any order.
TEST(FULL_DISPLACEMENTS, WITH_THE_LABELS_BEHIND_THEM) {
  EXPECT_EQ(DISPLACEMENTS("loop_ _atom_site_label _atom_site_fract_x _atom_site_fract_y "
                          "_atom_site_fract_z\nA 0 0 0\nB 0 0 .5\n"
                          "loop_ _atom_site_aniso_U_11 _atom_site_aniso_U_22 "
                          "_atom_site_aniso_U_33 _atom_site_aniso_U_12 _atom_site_aniso_U_13 "
                          "_atom_site_aniso_U_23 _atom_site_aniso_label\n"
                          "1 2 3 4 5 6 B\n7 8 9 0 0 0 A\n"),
            "A u_ij 7.000000 8.000000 9.000000 0.000000 0.000000 0.000000; "
            "B u_ij 1.000000 2.000000 3.000000 4.000000 5.000000 6.000000");
}

TEST(FULL_DISPLACEMENTS, IN_THE_LOOP_OF_THE_SITES) {
  EXPECT_EQ(DISPLACEMENTS("loop_ _atom_site_label _atom_site_fract_x _atom_site_fract_y "
                          "_atom_site_fract_z _atom_site_aniso_U_11 _atom_site_aniso_U_22 "
                          "_atom_site_aniso_U_33\nA 0 0 0 1 2 3\nB ? 0 0 7 7 7\nC 0 0 .5 4 5 6\n"),
            "A u_ij 1.000000 2.000000 3.000000 0.000000 0.000000 0.000000; "
            "C u_ij 4.000000 5.000000 6.000000 0.000000 0.000000 0.000000|"
            "1 sites without coordinates are left out, first B");
}

// ---- blocks ----

TEST(FULL_BLOCKS, EVERY_BLOCK_WITH_A_CELL_AND_A_SITE_IS_READ) {
  const std::string bytes = "data_text _x 1\n" + WITH_SITE("") + "data_global\n" + cubic_cell +
                            no_symmetry + one_site + "data_cell\n" + cubic_cell;
  STRUCTURE_READER reader = STRUCTURES_OF(bytes);
  STRUCTURE structure;
  std::string blocks;
  while (NEXT_STRUCTURE(reader, structure))
    blocks += std::string(structure.TITLE) +
              (structure.STATUS == BLOCK_STATUS::READ ? " read " : " passed over ");
  EXPECT_EQ(blocks, "text passed over a read global read cell passed over ");
}

// A million sites, and as many displacements in the other order.
TEST(FULL_BLOCKS, MANY_SITES_TAKE_TIME_IN_PROPORTION) {
  constexpr int many = 200000;
  constexpr double bound = 20.0;  // seconds; going through the sites for each would take hours
  std::string sites =
      "loop_ _atom_site_label _atom_site_fract_x _atom_site_fract_y _atom_site_fract_z\n";
  std::string tensors = u_head;
  for (int i = 0; i < many; ++i) {
    sites += "A" + std::to_string(i) + " 0 0 0\n";
    tensors += "A" + std::to_string(many - i) + " 1 1 1 0 0 0\n";
  }
  const auto start = std::chrono::steady_clock::now();
  const READING reading(WITH_SITES(sites + tensors));
  const double seconds =
      std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
  EXPECT_EQ(reading.FOUND.ATOMS.COUNT(), many);
  EXPECT_EQ(reading.FOUND.ATOMS(1).THTYPE, "isotr");
  EXPECT_EQ(reading.FOUND.ATOMS(many).THTYPE, "Aniso");
  EXPECT_LT(seconds, bound);
}

// ---- two readings of one block ----

// The record that agrees with a structure in everything that is compared.
CRYSTAL_STRUCTURE_TYPE PLAIN_RECORD_OF(const STRUCTURE& structure) {
  CRYSTAL_STRUCTURE_TYPE plain;
  INIT_CRYSTAL_STRUCTURE_TYPE(plain);
  plain.CELL = structure.CELL;
  plain.NATOMS = structure.ATOMS.COUNT();
  EXPAND_NATOMS(plain, plain.NATOMS);
  for (int i = 1; i <= plain.NATOMS; ++i) plain.ATOM(i) = structure.ATOMS(i);
  plain.PT(TEMPERATURE, PT_VALUE) = structure.T.VALUE;
  plain.PT(PRESSURE, PT_VALUE) = structure.P.VALUE;
  return plain;
}

TEST(TWO_READINGS, EACH_DIFFERENCE_HAS_ITS_WORDS) {
  const READING reading(WITH_SITE("_cell_measurement_temperature 100\n"));
  ASSERT_EQ(reading.FOUND.STATUS, BLOCK_STATUS::READ);
  const CRYSTAL_STRUCTURE_TYPE alike = PLAIN_RECORD_OF(reading.FOUND);
  EXPECT_EQ(DIFFERENCES(reading.FOUND, alike, true), "");
  EXPECT_EQ(DIFFERENCES(reading.FOUND, alike, false), "another space group (P 1)");
  CRYSTAL_STRUCTURE_TYPE other = alike;
  other.CELL.CELL[1] = 5.1f;
  EXPECT_EQ(DIFFERENCES(reading.FOUND, other, true), "another cell");
  other = alike;
  other.ATOM(1).X[0] = -0.1f;
  EXPECT_EQ(DIFFERENCES(reading.FOUND, other, true), "other positions, first Si1");
  other = alike;
  other.PT(TEMPERATURE, PT_VALUE) = 101.0f;
  EXPECT_EQ(DIFFERENCES(reading.FOUND, other, true), "another temperature");
  other = alike;
  other.PT(PRESSURE, PT_VALUE) = 2.0f;
  EXPECT_EQ(DIFFERENCES(reading.FOUND, other, true), "another pressure");
}

TEST(TWO_READINGS, DISPLACEMENTS_DIFFER_BY_KIND_OR_VALUE) {
  const READING reading(
      WITH_SITE("loop_ _atom_site_aniso_label _atom_site_aniso_U_11 _atom_site_aniso_U_22 "
                "_atom_site_aniso_U_33 _atom_site_aniso_U_12 _atom_site_aniso_U_13 "
                "_atom_site_aniso_U_23\nSi1 .01 .02 .03 .004 .005 .006\n"));
  ASSERT_EQ(reading.FOUND.ATOMS(1).UTYPE, "u_ij");
  const std::string told = "other displacements, first Si1";
  CRYSTAL_STRUCTURE_TYPE other = PLAIN_RECORD_OF(reading.FOUND);
  EXPECT_EQ(DIFFERENCES(reading.FOUND, other, true), "");
  other.ATOM(1).U[3] = 0.0041f;
  EXPECT_EQ(DIFFERENCES(reading.FOUND, other, true), told);
  other.ATOM(1).U = reading.FOUND.ATOMS(1).U;
  other.ATOM(1).UTYPE = "beta";
  EXPECT_EQ(DIFFERENCES(reading.FOUND, other, true), told);
  other.ATOM(1).UTYPE = "u_ij";
  other.ATOM(1).THTYPE = "isotr";
  EXPECT_EQ(DIFFERENCES(reading.FOUND, other, true), told);
}

// 1/3 read as a fraction and as a rounded text may lie a step of 32-bit reals apart.
TEST(TWO_READINGS, THE_LAST_BIT_OF_A_NUMBER_IS_NO_DIFFERENCE) {
  const READING reading(WITH_SITE(""));
  CRYSTAL_STRUCTURE_TYPE plain = PLAIN_RECORD_OF(reading.FOUND);
  for (float& x : plain.ATOM(1).X) x = std::nextafter(x, 1.0f);
  EXPECT_EQ(DIFFERENCES(reading.FOUND, plain, true), "");
  for (float& x : plain.ATOM(1).X) x *= 1.00001f;
  EXPECT_EQ(DIFFERENCES(reading.FOUND, plain, true), "other positions, first Si1");
}

// ---- more of symmetry ----

TEST(FULL_SYMMETRY, ORIGINS_AND_AXES_ARE_TOLD_IN_MANY_WAYS) {
  const auto hm = [](const std::string& symbol) {
    return GROUP("_symmetry_space_group_name_H-M \"" + symbol + "\"\n");
  };
  const std::string second = hm("F d -3 m :2");
  ASSERT_EQ(second.substr(0, 8) + second.substr(second.rfind(' ')), "F d -3 m 192");
  EXPECT_EQ(hm("F d -3 m :S"), "F d -3 m:1 192");
  EXPECT_EQ(hm("F d -3 m :Z"), second);
  EXPECT_EQ(hm("F d -3 m S (origin choice 2)"), second) << "the words go before the letter";
  EXPECT_EQ(hm("F d -3 m (origin at the centre)"), hm("F d -3 m"));
  EXPECT_EQ(hm("(origin choice 1)"),
            "P 1 1|The space group (origin choice 1) is not known, space group set to P 1");
  const std::string code = "_space_group_IT_number 227\n_space_group_IT_coordinate_system_code ";
  EXPECT_EQ(GROUP(code + "1\n"), "F d -3 m:1 192");
  EXPECT_EQ(GROUP(code + "2\n"), second);
  EXPECT_EQ(GROUP(code + "b1\n"), GROUP("_space_group_IT_number 227\n")) << "it has no such axes";
}

TEST(FULL_SYMMETRY, AXES_OF_R_GROUPS_BY_A_CODE_A_LETTER_OR_THE_CELL) {
  const auto cell = [](const std::string& gamma) {
    return "_cell_length_a 6 _cell_length_b 6 _cell_length_c 6 _cell_angle_alpha 50 "
           "_cell_angle_beta 50 _cell_angle_gamma " +
           gamma + "\n";
  };
  const std::string number = "_space_group_IT_number 167\n";
  const std::string code = "_space_group_IT_coordinate_system_code ";
  const std::string does_not_fit =
      "R -3 c 36|The operators of R -3 c do not fit the cell: one of the two is wrong";
  EXPECT_EQ(GROUP(number + code + "R\n", cell("50")), "R -3 c:r 12");
  EXPECT_EQ(GROUP(number + code + "h\n", cell("50")), does_not_fit);
  EXPECT_EQ(GROUP("_symmetry_space_group_name_H-M 'R -3 c R'\n", cell("50")), "R -3 c:r 12");
  EXPECT_EQ(GROUP("_symmetry_space_group_name_H-M 'R -3 c'\n", cell("60")), does_not_fit);
  EXPECT_EQ(GROUP("_symmetry_space_group_name_H-M 'P 1'\n", cell("50")), "P 1 1");
  EXPECT_EQ(GROUP("_symmetry_space_group_name_H-M 'P 4 R'\n"),
            "P 1 1|The space group P 4 R is not known, space group set to P 1");
}

TEST(FULL_SYMMETRY, A_NUMBER_THAT_IS_NONE_OF_A_GROUP_TELLS_NOTHING) {
  for (const char* number : {"1.5", "231", "0", "-2", "x"})
    EXPECT_EQ(GROUP("_space_group_IT_number " + std::string(number) + "\n"),
              "P 1 1|No symmetry, space group set to P 1")
        << number;
  EXPECT_EQ(GROUP("_space_group_name_Hall '-P 2ac 2n'\n_space_group_name_H-M_alt 'Q 9'\n"),
            "P n m a 8");
  EXPECT_EQ(GROUP("_symmetry_space_group_name_H-M\n;\n ?\n;\n_space_group_IT_number 2\n"),
            "P -1 2");
  EXPECT_EQ(GROUP("_symmetry_space_group_name_H-M\n; P -1 \n\n;\n"), "P -1 2");
}

TEST(FULL_SYMMETRY, OPERATORS_WITH_TABS_WITHOUT_TIME_AND_AMONG_UNKNOWN_ONES) {
  EXPECT_EQ(GROUP("loop_ _symmetry_equiv_pos_as_xyz 'x,\ty,z' '-x,-y,\t-z'\n"), "P -1 2");
  EXPECT_EQ(GROUP("loop_ _symmetry_equiv_pos_as_xyz x,y,z ? -x,-y,-z .\n"), "P -1 2");
  EXPECT_EQ(GROUP("loop_ _space_group_symop_magn_operation.xyz x,y,z -x,-y,-z\n"), "P -1 2");
  EXPECT_EQ(GROUP("loop_ _symmetry_equiv_pos_as_xyz x,y,z -x,-y,-z\n"
                  "_symmetry_space_group_name_H-M 'P 2(1)'\n"),
            "P -1 2|The symbol P 2(1) does not agree with the operators, which are read: P -1");
}

// Each block differs from the one before in one item alone.
TEST(FULL_SYMMETRY, THE_GROUP_OF_A_BLOCK_IS_NOT_THAT_OF_THE_ONE_BEFORE) {
  const std::string rhombohedral =
      "_cell_length_a 6 _cell_length_b 6 _cell_length_c 6 _cell_angle_alpha 50 "
      "_cell_angle_beta 50 _cell_angle_gamma 50\n";
  const std::string hexagonal =
      "_cell_length_a 6 _cell_length_b 6 _cell_length_c 15 _cell_angle_alpha 90 "
      "_cell_angle_beta 90 _cell_angle_gamma 120\n";
  const std::string code = "_space_group_IT_number 227 _space_group_IT_coordinate_system_code ";
  const std::string r = "_symmetry_space_group_name_H-M 'R -3'\n";
  const std::vector<std::pair<std::string, std::string>> blocks{
      {cubic_cell + "_space_group_name_Hall '-P 1'\n", "P -1"},
      {cubic_cell + "_space_group_name_Hall 'P 1'\n", "P 1"},
      {cubic_cell + "_space_group_IT_number 2\n", "P -1"},
      {cubic_cell + "_space_group_IT_number 1\n", "P 1"},
      {cubic_cell + code + "1\n", "F d -3 m:1"},
      {cubic_cell + code + "2\n", "F d -3 m"},
      {rhombohedral + r, "R -3:r"},
      {hexagonal + r, "R -3"}};
  std::string bytes;
  for (std::size_t b = 0; b < blocks.size(); ++b)
    bytes += "data_" + std::to_string(b) + "\n" + blocks[b].first + one_site;
  STRUCTURE_READER reader = STRUCTURES_OF(bytes);
  STRUCTURE found;
  for (const auto& [text, symbol] : blocks) {
    ASSERT_TRUE(NEXT_STRUCTURE(reader, found));
    const std::string read = found.SPG->GROUP.SPG_SYMB;
    EXPECT_EQ(symbol == "F d -3 m" ? read.substr(0, 8) : read, symbol) << text;
  }
}

// ---- numbers and charges ----

TEST(FULL_NUMBERS, FRACTIONS_OF_WHOLE_NUMBERS_AND_ESDS_THAT_ARE_NONE) {
  VALUE_STD number;
  EXPECT_EQ(READ_NUMBER("-2/3", number), NUMBER_FOUND::YES);
  EXPECT_FLOAT_EQ(number.VALUE, -2.0f / 3.0f);
  for (const char* none : {"a/3", "1/b", "1.5/3", "1/2.5", "1/0", "1/-2", "/", "x", "x(1)", "(1)"})
    EXPECT_EQ(READ_NUMBER(none, number), NUMBER_FOUND::NONE) << none;
  for (const char* without : {"0.25()", "0.25(?)", "0.25(.)"}) {
    EXPECT_EQ(READ_NUMBER(without, number), NUMBER_FOUND::YES) << without;
    EXPECT_EQ(number.VALUE, 0.25f) << without;
    EXPECT_EQ(number.STD, 0.0f) << without;
  }
  EXPECT_EQ(READ_NUMBER("0.25(x)", number), NUMBER_FOUND::WITH_BROKEN_ESD);
  EXPECT_EQ(number.VALUE, 0.25f);
}

TEST(FULL_NUMBERS, A_CHARGE_HAS_ONE_SIGN_AND_AT_MOST_NINE_UNITS) {
  const auto symbol = [](const std::string& type, const std::string& types) {
    const READING reading(WITH_SITES(
        types +
        "loop_ _atom_site_label _atom_site_type_symbol _atom_site_fract_x _atom_site_fract_y "
        "_atom_site_fract_z\nFe1 " +
        type + " 0.1 0.2 0.3\n"));
    return reading.FOUND.STATUS == BLOCK_STATUS::READ ? reading.FOUND.ATOMS(1).SFACSYMB : "";
  };
  EXPECT_EQ(symbol("Fe3+", ""), "Fe+3");
  EXPECT_EQ(symbol("Fe+2", ""), "Fe+2");
  for (const char* none : {"Fe", "Fe3", "Fe+-3", "Fe-+3", "Fe+x", "Fe0+", "Fe10+"})
    EXPECT_EQ(symbol(none, ""), "Fe") << none;
  EXPECT_EQ(symbol("Fe+0", ""), "Fe+0") << "as WRITE tells that there is none";
  EXPECT_EQ(symbol("Fe3+0", ""), "Fe");
  const std::string head = "loop_ _atom_type_symbol _atom_type_oxidation_number\n";
  EXPECT_EQ(symbol("Fe", head + "Fe 3\n"), "Fe+3");
  EXPECT_EQ(symbol("Fe+0", head + "Fe+0 3\n"), "Fe+0");
  EXPECT_EQ(symbol("Fe", head + "Fe three\n"), "Fe");
  EXPECT_EQ(symbol("Fe", head + "O -2\n"), "Fe");
}

// ---- more of what is told ----

// The first line behind the site is the eleventh, or the twelfth where one tells the version.
TEST(FULL_BLOCKS, FRAMES_AND_RESERVED_WORDS_ARE_TOLD_WITH_THEIR_LINES) {
  EXPECT_EQ(READING(WITH_SITE("") + "save_frame\n_x 1\n").TOLD(),
            "Line 11: save_ was expected behind the frame frame");
  EXPECT_EQ(READING(WITH_SITE("") + "save_frame\n_x 1\nglobal_\n").TOLD(),
            "Line 11: save_ was expected behind the frame frame");
  EXPECT_EQ(READING(WITH_SITE("") + "stop_\n").TOLD(),
            "Line 11: a data name was expected, not a reserved word");
  EXPECT_EQ(READING("#\\#CIF_2.0\n" + WITH_SITE("") + "_x [1 2\n_y 3\n").TOLD(),
            "Line 12: ] was expected behind the list that begins here");
  EXPECT_EQ(READING("#\\#CIF_2.0\n" + WITH_SITE("") + "_x {'a':1 \"b\":[2\n").TOLD(),
            "Line 12: } was expected behind the list that begins here");
  EXPECT_EQ(READING("#\\#CIF_2.0\n" + WITH_SITE("") + "_x [1 '2 ]'\n;3 ]\n; 4 ]\n").TOLD(), "");
}

}  // namespace
