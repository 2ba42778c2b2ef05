// What a space group's record holds and in which order, fixed lists of operators, and the errors.
#include <gtest/gtest.h>

#include <algorithm>

#include "foundations/XTAL_Space_Group_Parts.h"
#include "foundations/XTAL_Space_Group_Tables.h"
#include "foundations/XTAL_Space_Groups.h"

using namespace XTAL;

namespace {

using STRINGS = std::vector<std::string>;

SPACE_GROUP GROUP(std::string_view symbol, std::string_view mode = "") {
  SPACE_GROUP group;
  SET_SPACEGROUP(symbol, group, {}, mode);
  EXPECT_FALSE(ERR_SYMM) << symbol << ": " << ERR_SYMM_MESS;
  return group;
}

// The error state tells whether the list was accepted.
SPACE_GROUP FROM_LIST(const STRINGS& operators, std::string_view mode) {
  SPACE_GROUP group;
  SET_SPACEGROUP("", group, operators, mode);
  return group;
}

// The message of a description that is refused, and that it leaves no group.
std::string REFUSAL(std::string_view symbol, const STRINGS& operators, std::string_view mode) {
  SPACE_GROUP group;
  SET_SPACEGROUP(symbol, group, operators, mode);
  EXPECT_TRUE(ERR_SYMM);
  EXPECT_EQ(group.MULTIP, 0);
  return ERR_SYMM_MESS;
}

STRINGS TEXTS(const SPACE_GROUP& group) {
  return {group.SYMOPSYMB.begin(), group.SYMOPSYMB.end()};
}

EXACT_OP EXACT(const SYM_OP& op) {
  return EXACT_FROM(op.ROT, op.TR);
}

constexpr const char* wrong_symbol = "Error in the provided symbol/number of the space group";
constexpr const char* tabulated = "Tabulated Setting";
constexpr const char* not_tabulated = "Non-standard Setting";

}  // namespace

// ---- the order of the operators ----

TEST(OPERATOR_ORDER, FROM_A_HALL_SYMBOL_IDENTITY_GENERATORS_THEN_PRODUCTS_ROW_BY_ROW) {
  EXPECT_EQ(TEXTS(GROUP("P 2 2 2")), (STRINGS{"x,y,z", "-x,-y,z", "x,-y,-z", "-x,y,-z"}));
  // The square of the four-fold axis comes before its cube.
  EXPECT_EQ(TEXTS(GROUP("P 4")), (STRINGS{"x,y,z", "-y,x,z", "-x,-y,z", "y,-x,z"}));
  // Hall symbol P 3 2": with a the three-fold and b the two-fold axis, row a gives aa, ab and then
  // a(ab), as the products found on the way take part.
  EXPECT_EQ(TEXTS(GROUP("P 3 2 1")),
            (STRINGS{"x,y,z", "-y,x-y,z", "y,x,-z", "-x+y,-x,z", "-x,-x+y,-z", "x-y,-y,-z"}));
}

TEST(OPERATOR_ORDER, INVERTED_COPIES_THEN_CENTRED_BLOCKS) {
  // C 1 2/c 1: reduced operators, inverted copies with -t, and both with (1/2, 1/2, 0).
  EXPECT_EQ(TEXTS(GROUP("C 2/c")),
            (STRINGS{"x,y,z", "-x,y,-z+1/2", "-x,-y,-z", "x,-y,z+1/2", "x+1/2,y+1/2,z",
                     "-x+1/2,y+1/2,-z+1/2", "-x+1/2,-y+1/2,-z", "x+1/2,-y+1/2,z+1/2"}));
}

// R and t of every copy from the operator that it is a copy of: -R and 2c - t with the centre of
// inversion c, and t + v with the centring vector v.
TEST(OPERATOR_ORDER, EVERY_COPY_OF_EVERY_SETTING_HAS_ITS_OWN_TRANSLATION) {
  for (const SPGR_INFO_TYPE& row : SPGR_INFO) {
    const SPACE_GROUP group = GROUP(row.HM);
    ASSERT_GT(group.NUMLAT, 0) << row.HM;
    const int block = group.MULTIP / group.NUMLAT;
    for (int i = group.NUMOPS + 1; i <= block; ++i) {
      const SYM_OP& op = group.SYMOP(i - group.NUMOPS);
      VECTOR3 tr{};
      for (std::size_t k = 0; k < 3; ++k) tr[k] = 2.0f * group.CENTRE_COORD[k] - op.TR[k];
      ASSERT_EQ(EXACT(group.SYMOP(i)), EXACT_FROM(NEGATIVE(op.ROT), tr)) << row.HM << " " << i;
    }
    for (int i = block + 1; i <= group.MULTIP; ++i) {
      const SYM_OP& op = group.SYMOP((i - 1) % block + 1);
      const VECTOR3& vector = group.LATT_TRANS((i - 1) / block + 1);
      ASSERT_EQ(EXACT(group.SYMOP(i)), EXACT_FROM(op.ROT, ADD(op.TR, vector)))
          << row.HM << " " << i;
    }
  }
}

// ---- single fields ----

TEST(RECORDS, GENERATORS_ARE_COUNTED_WITHOUT_INVERSION_AND_LATTICE) {
  EXPECT_EQ(GROUP("P 1").NUM_GEN, 0);
  EXPECT_EQ(GROUP("C -1").NUM_GEN, 0);
  EXPECT_EQ(GROUP("P 21/c").NUM_GEN, 1);
  EXPECT_EQ(GROUP("F d -3 m").NUM_GEN, 3) << "4vw, 2vw and 3 of -F 4vw 2vw 3";
  EXPECT_EQ(FROM_LIST({"x,y,z", "x+1/2,y+1/2,z", "-x,-y,-z", "-x,y,-z"}, "GEN").NUM_GEN, 1);
}

TEST(RECORDS, LIMITS_OF_THE_ASYMMETRIC_UNIT) {
  using LIMITS = std::array<std::array<float, 2>, 3>;
  EXPECT_EQ(GROUP("P 1").R_ASYM_UNIT, (LIMITS{{{0, 1}, {0, 1}, {0, 1}}}));
  EXPECT_EQ(GROUP("P -1").R_ASYM_UNIT, (LIMITS{{{0, 0.5f}, {0, 1}, {0, 1}}}));
  // International Tables: 0 to 1, 0 to 1/4, 0 to 1; also for the row found by its operators.
  const LIMITS quarter_of_y{{{0, 1}, {0, 0.25f}, {0, 1}}};
  EXPECT_EQ(GROUP("P 21/c").R_ASYM_UNIT, quarter_of_y);
  EXPECT_EQ(FROM_LIST({"-x,-y,-z", "-x,y+1/2,-z+1/2"}, "GEN").R_ASYM_UNIT, quarter_of_y);
  EXPECT_EQ(FROM_LIST({"-x+0.2,-y,-z"}, "GEN").R_ASYM_UNIT, LIMITS{}) << "no row fits";
}

TEST(RECORDS, A_HALL_SYMBOL_WITHOUT_A_ROW_IS_KEPT) {
  const SPACE_GROUP group = GROUP(" -A 2yb ", "HAL");
  EXPECT_EQ(group.HALL, "-A 2yb");
  EXPECT_EQ(group.GHALL, "-A 2yb");
  EXPECT_EQ(group.NUMSPG, 0);
  EXPECT_EQ(group.SPG_SYMB, "unknown");
  EXPECT_EQ(group.SG_SETTING, not_tabulated);
  EXPECT_EQ(group.INFO, "Generated from Hall symbol");
  EXPECT_EQ(group.SPG_LAT, 'A');
  EXPECT_EQ(group.MULTIP, 8);
}

TEST(RECORDS, A_SYMBOL_TAKEN_FOR_A_HALL_SYMBOL_SAYS_SO) {
  for (const char* mode : {"", "HMS", "hms"}) {
    const SPACE_GROUP hall = GROUP("-P 2ybc", mode);
    EXPECT_EQ(hall.INFO, "Generated from Hall symbol") << mode;
    EXPECT_EQ(hall.SPG_SYMB, "P 21/c") << mode;
    EXPECT_EQ(hall.SG_SETTING, tabulated) << mode;
    const SPACE_GROUP symbol = GROUP("P 21/c", mode);
    EXPECT_EQ(symbol.INFO, "IT (Generated from Hermann-Mauguin symbol)") << mode;
    EXPECT_TRUE(SPGR_EQUAL(symbol, hall)) << mode;
  }
}

TEST(RECORDS, MODES_MAY_BE_IN_LOWER_CASE) {
  EXPECT_EQ(GROUP("P 21/c", "itc").INFO, "Generated from explicit IT generators");
  EXPECT_EQ(GROUP("-P 2ybc", "hal").NUMSPG, 14);
  EXPECT_EQ(FROM_LIST({"x,y,z", "-x,-y,-z"}, "gen").NUMSPG, 2);
  EXPECT_EQ(FROM_LIST({"x,y,z", "-x,-y,-z"}, "fix").NUMSPG, 2);
}

// ---- operators exactly as they are given ----

TEST(FIXED_LISTS, ARE_NAMED_AND_CLASSED_LIKE_OTHERS) {
  const SPACE_GROUP group = FROM_LIST({"x,y,z", "-x,1/2+y,-z"}, "FIX");
  EXPECT_FALSE(ERR_SYMM) << ERR_SYMM_MESS;
  EXPECT_EQ(group.INFO, "Fixed symmetry operators (no info)");
  EXPECT_EQ(group.MULTIP, 2);
  EXPECT_EQ(group.NUMOPS, 2);
  EXPECT_EQ(group.NUMLAT, 1);
  EXPECT_EQ(group.SPG_LAT, 'P');
  EXPECT_EQ(group.CENTRED, 1);
  EXPECT_EQ(TEXTS(group), (STRINGS{"x,y,z", "-x,y+1/2,-z"}));
  EXPECT_EQ(group.NUMSPG, 4);
  EXPECT_EQ(group.SPG_SYMB, "P 21");
  EXPECT_EQ(group.SG_SETTING, tabulated);
  EXPECT_EQ(group.LAUE, "2/m");
  EXPECT_EQ(group.PG, "2");
  EXPECT_EQ(group.CRYSTALSYS.NAME, SYSTEM::MONOCLINIC);
  EXPECT_EQ(SYSTEM_TEXT(group.CRYSTALSYS), "Monoclinic") << "no cell has shown its unique axis";
}

TEST(FIXED_LISTS, KEEP_THEIR_ORDER_AND_GIVE_THE_LATTICE) {
  // Each operator with its centred copy behind it, which no other mode gives.
  const STRINGS given{"x,y,z", "x+1/2,y+1/2,z", "-x,-y,-z", "1/2-x,1/2-y,-z"};
  const SPACE_GROUP group = FROM_LIST(given, "FIX");
  EXPECT_FALSE(ERR_SYMM) << ERR_SYMM_MESS;
  EXPECT_EQ(TEXTS(group), (STRINGS{"x,y,z", "x+1/2,y+1/2,z", "-x,-y,-z", "-x+1/2,-y+1/2,-z"}));
  EXPECT_EQ(group.SYMOP(2).TR, (VECTOR3{0.5f, 0.5f, 0.0f}));
  EXPECT_EQ(group.MULTIP, 4);
  EXPECT_EQ(group.NUMOPS, 1);
  EXPECT_EQ(group.SPG_LAT, 'C');
  EXPECT_EQ(group.NUMLAT, 2);
  EXPECT_EQ(group.LATT_TRANS(2), (VECTOR3{0.5f, 0.5f, 0.0f}));
  EXPECT_EQ(group.CENTRED, 2);
  EXPECT_EQ(group.PG, "-1");
  EXPECT_EQ(group.CRYSTALSYS.NAME, SYSTEM::TRICLINIC);
  EXPECT_EQ(group.NUMSPG, 0) << "C -1 is no tabulated setting";
  EXPECT_EQ(group.SG_SETTING, not_tabulated);
}

TEST(FIXED_LISTS, AN_INVERSION_CENTRE_OFF_THE_ORIGIN) {
  const SPACE_GROUP group = FROM_LIST({"x,y,z", "1/2-x,-y,-z"}, "FIX");
  EXPECT_FALSE(ERR_SYMM) << ERR_SYMM_MESS;
  EXPECT_EQ(group.CENTRED, 0);
  EXPECT_EQ(group.CENTRE_COORD, (VECTOR3{0.25f, 0.0f, 0.0f}));
}

TEST(FIXED_LISTS, NOTHING_IS_GENERATED_SO_WHAT_LACKS_IS_AN_ERROR) {
  const std::string no_lattice = "Lattice Type couldn't be determined";
  EXPECT_EQ(REFUSAL("", {"x,y,z", "x+1/2,y+1/2,z", "-x,-y,-z"}, "FIX"), no_lattice)
      << "the inversion has no centred copy";
  EXPECT_EQ(REFUSAL("", {"x,y,z", "x,y,z"}, "FIX"), no_lattice);
  EXPECT_EQ(REFUSAL("", {"x,y,z", "-x,-y,z", "x,y,-z"}, "FIX"), "Point Group Number Incorrect")
      << "a two-fold axis and a mirror without the inversion";
  EXPECT_EQ(REFUSAL("", {"x,y,z", "x+y,y,z"}, "FIX"), "Rotation Not Determined");
  EXPECT_EQ(REFUSAL("", {"x,y,z", "x,y"}, "FIX"), " The above operator is wrong: x,y");
}

TEST(FIXED_LISTS, OF_MORE_OPERATORS_THAN_THE_LARGEST_GROUP) {
  STRINGS many;
  for (int i = 0; i < 193; ++i) many.push_back("x+0.0" + std::to_string(100 + i) + ",y,z");
  EXPECT_EQ(REFUSAL("", many, "FIX"), "Dimension of Table exceeded (II)");
  STRINGS all = TEXTS(GROUP("F m -3 m"));
  EXPECT_EQ(all.size(), 192u);
  EXPECT_EQ(FROM_LIST(all, "FIX").NUMSPG, 225) << "the largest group fits";
}

// ---- errors ----

TEST(ERRORS, LATTICE_LETTERS_THAT_ARE_NONE) {
  const std::string unconventional = "Unconventional Lattice Symbol Z needs centring vectors";
  EXPECT_EQ(REFUSAL("Z 2", {}, "HAL"), unconventional);
  EXPECT_EQ(REFUSAL("-z 2y", {}, "HAL"), unconventional);
  EXPECT_EQ(REFUSAL("Q 2", {}, "HAL"), "Wrong Lattice Symbol");
  EXPECT_EQ(REFUSAL("-q 2y", {}, "HAL"), "Wrong Lattice Symbol");
  for (const char* text : {"", "-", "P", "P 7", "2 2", "nonsense"})
    EXPECT_EQ(REFUSAL(text, {}, "HAL"), wrong_symbol) << text;
}

TEST(ERRORS, A_GROUP_THAT_NEVER_CLOSES) {
  EXPECT_EQ(REFUSAL("", {"x+0.0137,y,z"}, "GEN"), "Dimension of Table exceeded (I)");
}

TEST(ERRORS, A_RECORD_WITHOUT_OPERATORS_HAS_NO_CLASSES) {
  SPACE_GROUP empty;
  ERR_SYMM = false;
  SET_CLASSES(empty);
  EXPECT_TRUE(ERR_SYMM);
  EXPECT_EQ(ERR_SYMM_MESS, "No symmetry operators are given");
}

TEST(ERRORS, A_TRANSLATION_THAT_IS_NOT_FINITE_IS_A_WRONG_OPERATOR) {
  const std::string wrong = " The above operator is wrong: ";
  const std::string nines(45, '9');
  const std::string long_nines(400, '9');
  // Beyond 3.4e38 in 32 bits; beyond 1.8e308; and infinite over infinite.
  EXPECT_EQ(REFUSAL("", {"x+" + nines + ",y,z"}, "GEN"), wrong + "x+" + nines + ",y,z");
  EXPECT_EQ(REFUSAL("", {"x,y,z-" + nines}, "GEN"), wrong + "x,y,z-" + nines);
  for (const std::string& number : {long_nines, long_nines + "/" + long_nines})
    EXPECT_TRUE(REFUSAL("", {"x,y+" + number + ",z"}, "FIX").starts_with(wrong)) << number.size();
  EXPECT_LE(ERR_SYMM_MESS.size(), 150u);
  int start = 1;
  SYM_OP op;
  READ_XSYM("x+" + nines + ",y,z", start, op.ROT, op.TR);
  EXPECT_TRUE(ERR_SYMM);
  EXPECT_EQ(op.TR, VECTOR3{}) << "nothing that is no number is handed back";
}

TEST(ERRORS, ARE_FORGOTTEN_BY_THE_NEXT_CALL) {
  REFUSAL("nonsense", {}, "");
  GROUP("P 1");
  EXPECT_FALSE(ERR_SYMM);
  EXPECT_EQ(ERR_SYMM_MESS, "");
  REFUSAL("nonsense", {}, "");
  int start = 1;
  SYM_OP op;
  READ_XSYM("x,y,z", start, op.ROT, op.TR);
  EXPECT_FALSE(ERR_SYMM);
  EXPECT_EQ(ERR_SYMM_MESS, "");
}

// ---- questions ----

TEST(LATTICES, TRANSLATIONS_OF_EVERY_LETTER) {
  const VECTOR3 a{0.0f, 0.5f, 0.5f};
  const VECTOR3 b{0.5f, 0.0f, 0.5f};
  const VECTOR3 c{0.5f, 0.5f, 0.0f};
  const VECTOR3 body{0.5f, 0.5f, 0.5f};
  struct LETTER {
    char NAME;
    std::vector<VECTOR3> OWN;
    std::vector<VECTOR3> OTHERS;
  };
  for (const LETTER& letter : std::vector<LETTER>{{'A', {a}, {b, c, body}},
                                                  {'B', {b}, {a, c, body}},
                                                  {'C', {c}, {a, b, body}},
                                                  {'I', {body}, {a, b, c}},
                                                  {'F', {a, b, c}, {body}},
                                                  {'Z', {}, {a, b, c, body}}}) {
    EXPECT_TRUE(LATTICE_TRANS({-2.0f, 0.0f, 3.0f}, letter.NAME)) << letter.NAME;
    for (const VECTOR3& v : letter.OWN) {
      EXPECT_TRUE(LATTICE_TRANS(v, letter.NAME)) << letter.NAME;
      EXPECT_TRUE(LATTICE_TRANS(SUBTRACT(v, {1.0f, 1.0f, 1.0f}), letter.NAME)) << letter.NAME;
    }
    for (const VECTOR3& v : letter.OTHERS)
      EXPECT_FALSE(LATTICE_TRANS(v, letter.NAME)) << letter.NAME;
  }
}

TEST(LATTICES, VECTORS_OF_NO_LETTER_ARE_KNOWN_TO_THEIR_GROUP) {
  const SPACE_GROUP group = FROM_LIST({"x+1/2,y,z"}, "GEN");
  EXPECT_EQ(group.SPG_LAT, 'Z');
  EXPECT_EQ(group.NUMLAT, 2);
  EXPECT_TRUE(LATTICE_TRANS({0.5f, 0.0f, -1.0f}, group));
  EXPECT_FALSE(LATTICE_TRANS({0.5f, 0.5f, 0.0f}, group));
}

TEST(MATRICES, ARE_EQUAL_ELEMENT_BY_ELEMENT) {
  EXPECT_TRUE(EQUAL_MATRIX(INVERSION, NEGATIVE(IDENTITY)));
  for (std::size_t i = 0; i < 3; ++i)
    for (std::size_t j = 0; j < 3; ++j) {
      IMATRIX3 other = IDENTITY;
      ++other[i][j];
      EXPECT_FALSE(EQUAL_MATRIX(IDENTITY, other)) << i << j;
    }
}

TEST(STABILIZER, IS_THE_SAME_IN_AND_OUTSIDE_THE_CELL) {
  const SPACE_GROUP group = GROUP("P -1");
  int order = 0;
  LIST<int> numbers;
  LIST<VECTOR3> translations;
  GET_STABILIZER({0.5f, -0.5f, 0.0f}, group, order, numbers, translations);
  ASSERT_EQ(order, 2) << "-x is one cell from x";
  EXPECT_EQ(translations(2), (VECTOR3{1.0f, -1.0f, 0.0f}));
  GET_STABILIZER({1.0f, 0.0f, 0.0f}, group, order, numbers, translations);
  ASSERT_EQ(order, 2) << "-x is two cells from x";
  EXPECT_EQ(translations(2), (VECTOR3{2.0f, 0.0f, 0.0f}));
  GET_STABILIZER({1.0f, 0.1f, 0.0f}, group, order, numbers, translations);
  EXPECT_EQ(order, 1);
}

TEST(STABILIZER, TOLERATES_A_SUM_OF_THE_DIFFERENCES) {
  const SPACE_GROUP group = GROUP("P -1");
  int order = 0;
  LIST<int> numbers;
  LIST<VECTOR3> translations;
  // -x - x = -2x on each of two axes: sums 0.00036 and 0.0006, the latter from two of 0.0003.
  GET_STABILIZER({0.00009f, 0.00009f, 0.0f}, group, order, numbers, translations);
  EXPECT_EQ(order, 2);
  GET_STABILIZER({0.00015f, 0.00015f, 0.0f}, group, order, numbers, translations);
  EXPECT_EQ(order, 1);
}
