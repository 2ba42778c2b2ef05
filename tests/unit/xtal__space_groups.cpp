// Space groups: every tabulated setting by symbol, number and operators, and single cases.
#include "foundations/XTAL_Space_Groups.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <map>
#include <set>
#include <sstream>

#include "foundations/XTAL_Space_Group_Parts.h"
#include "foundations/XTAL_Space_Group_Tables.h"
#include "places.h"
#include "sanitized.h"

using namespace XTAL;

namespace {

SPACE_GROUP GROUP(std::string_view symbol, std::string_view mode = "") {
  SPACE_GROUP group;
  SET_SPACEGROUP(symbol, group, {}, mode);
  EXPECT_FALSE(ERR_SYMM) << symbol << ": " << ERR_SYMM_MESS;
  return group;
}

SPACE_GROUP GROUP_OF(const std::vector<std::string>& operators, std::string_view mode = "GEN") {
  SPACE_GROUP group;
  SET_SPACEGROUP("", group, operators, mode);
  return group;
}

std::vector<std::string> TEXTS(const SPACE_GROUP& group) {
  return {group.SYMOPSYMB.begin(), group.SYMOPSYMB.end()};
}

EXACT_OP EXACT(const SYM_OP& op) {
  return EXACT_FROM(op.ROT, op.TR);
}

std::set<EXACT_OP> OPERATOR_SET(const SPACE_GROUP& group) {
  std::set<EXACT_OP> set;
  for (const SYM_OP& op : group.SYMOP) set.insert(EXACT(op));
  return set;
}

}  // namespace

// ---- every row of the settings table ----

TEST(SETTINGS, EVERY_SYMBOL_GIVES_THE_GROUP_OF_ITS_ROW) {
  for (const SPGR_INFO_TYPE& row : SPGR_INFO) {
    const SPACE_GROUP group = GROUP(row.HM);
    EXPECT_EQ(group.NUMSPG, row.N) << row.HM;
    EXPECT_EQ(group.HALL, row.HALL) << row.HM;
    EXPECT_EQ(group.LAUE, LAUE_CLASSES[static_cast<std::size_t>(row.LAUE - 1)]) << row.HM;
    EXPECT_EQ(group.PG, POINT_GROUPS[static_cast<std::size_t>(row.PG - 1)]) << row.HM;
    EXPECT_EQ(group.SG_SETTING, "Tabulated Setting");
    EXPECT_EQ(group.INFO, "IT (Generated from Hermann-Mauguin symbol)");
  }
}

TEST(SETTINGS, SYMBOLS_WITHOUT_BLANKS_AND_IN_ANY_CASE_GIVE_THE_SAME) {
  for (const SPGR_INFO_TYPE& row : SPGR_INFO) {
    std::string plain;
    for (char c : row.HM)
      if (c != ' ') plain += static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    EXPECT_EQ(GROUP(plain).HALL, row.HALL) << plain;
  }
}

TEST(SETTINGS, EVERY_NUMBER_GIVES_ITS_FIRST_ROW) {
  for (int number = 1; number <= 230; ++number) {
    const SPACE_GROUP group = GROUP(std::to_string(number));
    const auto first =
        std::find_if(SPGR_INFO.begin(), SPGR_INFO.end(),
                     [number](const SPGR_INFO_TYPE& row) { return row.N == number; });
    EXPECT_EQ(group.SPG_SYMB, first->HM);
  }
}

TEST(SETTINGS, EVERY_SET_OF_OPERATORS_IS_CLOSED_AND_IN_ORDER) {
  for (const SPGR_INFO_TYPE& row : SPGR_INFO) {
    const SPACE_GROUP group = GROUP(row.HM);
    const std::set<EXACT_OP> set = OPERATOR_SET(group);
    ASSERT_EQ(static_cast<int>(set.size()), group.MULTIP) << row.HM;
    for (const EXACT_OP& a : set)
      for (int i = 1; i <= std::min(group.MULTIP, 8); ++i)
        ASSERT_TRUE(set.contains(PRODUCT(a, EXACT(group.SYMOP(i))))) << row.HM;
    const int block = group.MULTIP / group.NUMLAT;
    ASSERT_EQ(block, group.CENTRED == 1 ? group.NUMOPS : 2 * group.NUMOPS) << row.HM;
    ASSERT_EQ(group.LATT_TRANS.COUNT(), group.NUMLAT);
    EXPECT_EQ(group.SYMOPSYMB(1), "x,y,z");
    for (int i = 1; i <= group.MULTIP; ++i) {
      const IMATRIX3& rot = group.SYMOP((i - 1) % block + 1).ROT;
      ASSERT_EQ(group.SYMOP(i).ROT, rot) << "centred blocks repeat the rotations, " << row.HM;
      if (i > group.NUMOPS && i <= 2 * group.NUMOPS && group.CENTRED != 1) {
        ASSERT_EQ(group.SYMOP(i).ROT, NEGATIVE(group.SYMOP(i - group.NUMOPS).ROT)) << row.HM;
      }
    }
  }
}

TEST(SETTINGS, THE_OWN_OPERATORS_FIND_THE_FIRST_ROW_THAT_HAS_THEM) {
  std::map<std::string, std::string_view> first_symbol;  // by Hall symbol
  for (const SPGR_INFO_TYPE& row : SPGR_INFO) first_symbol.emplace(std::string(row.HALL), row.HM);
  for (const SPGR_INFO_TYPE& row : SPGR_INFO) {
    const SPACE_GROUP group = GROUP(row.HM);
    const SPACE_GROUP again = GROUP_OF(TEXTS(group));
    EXPECT_EQ(again.NUMSPG, row.N) << row.HM;
    EXPECT_EQ(OPERATOR_SET(again), OPERATOR_SET(group)) << row.HM;
    EXPECT_TRUE(SPGR_EQUAL(group, again)) << row.HM;
    EXPECT_EQ(again.INFO, "IT (Identified from user-given operators)");
    EXPECT_EQ(again.SPG_SYMB, GROUP(first_symbol.at(std::string(row.HALL))).SPG_SYMB) << row.HM;
  }
}

// Numbers of operators, systems and classes of the rows as an independent table has them.
TEST(SETTINGS, AGREE_WITH_THE_TABLE_OF_FACTS) {
  std::ifstream facts(std::filesystem::path(PLACES::SAMPLES()) /
                      "../data/space_group_settings.tsv");
  if (!facts) GTEST_SKIP() << "no table of facts beside the samples";
  std::string line;
  std::getline(facts, line);
  int rows = 0;
  while (std::getline(facts, line)) {
    std::stringstream stream(line);
    std::vector<std::string> cell(1);
    while (std::getline(stream, cell.back(), '\t')) cell.emplace_back();
    const SPACE_GROUP group = GROUP(cell[2]);
    EXPECT_EQ(group.MULTIP, std::stoi(cell[7])) << cell[2];
    EXPECT_EQ(SYSTEM_TEXT(group.CRYSTALSYS), cell[4]) << cell[2];
    EXPECT_EQ(group.LAUE, cell[5]) << cell[2];
    EXPECT_EQ(group.PG, cell[6]) << cell[2];
    ++rows;
  }
  EXPECT_EQ(rows, 612);
}

namespace {

// Changes of axes and origin that leave the size of the cell.
constexpr std::array<std::string_view, 10> basis_changes{
    "",         "(x-z,y,z)",       "(z,x,y)",     "(-y,x,z)",           "(x,y-x, z+1/4)",
    "(y,x,-z)", "(X+1/8,Y-1/8,Z)", "(x-y,y+z,z)", "(2*x+y,x+y,z-1/12)", "(0 0 1)"};

// What the judge prints for standard input; "" when it fails.
std::string JUDGED(const std::string& argument, const std::string& input) {
  const std::string name = std::filesystem::temp_directory_path() /
                           ("gemmara_hall_" + std::to_string(::getpid()) + ".txt");
  std::ofstream(name) << input;
  const std::string command = "/usr/bin/python3 '" + PLACES::SOURCE() +
                              "/tests/judges/hall_operators.py' " + argument + " < " + name +
                              " > " + name + ".out";
  const bool done = std::system(command.c_str()) == 0;
  std::stringstream said;
  said << std::ifstream(name + ".out").rdbuf();
  std::filesystem::remove(name);
  std::filesystem::remove(name + ".out");
  return done ? said.str() : "";
}

// One operator of the judge: twelve whole numbers. False at the end of the line.
bool READ_JUDGED(std::istream& numbers, EXACT_OP& op) {
  for (auto& row : op.ROT)
    for (int& element : row) numbers >> element;
  for (int& shift : op.TR)
    if (numbers >> shift) shift *= UNITS_OF_24TH;
  return !numbers.fail();
}

void KEEP_EACH_TENTH(std::vector<std::string>& symbols) {
  std::size_t kept = 0;
  for (std::size_t i = 0; i < symbols.size(); i += 10) symbols[kept++] = symbols[i];
  symbols.resize(kept);
}

}  // namespace

// An independent program makes the same operators of every Hall symbol, on these axes and others:
// our own settings, and all that it knows itself.
TEST(HALL_SYMBOLS, GIVE_THE_OPERATORS_THAT_ANOTHER_PROGRAM_FINDS) {
  if (std::system("/usr/bin/python3 -c 'import gemmi' 2>/dev/null") != 0)
    GTEST_SKIP() << "python3-gemmi is not installed";
  std::set<std::string> symbols;
  for (const SPGR_INFO_TYPE& row : SPGR_INFO) symbols.emplace(row.HALL);
  for (const EXTRA_SYMBOL& row : EXTRA_SYMBOLS) symbols.emplace(row.HALL);
  std::stringstream list(JUDGED("list", ""));
  int listed = 0;
  for (std::string symbol; std::getline(list, symbol); ++listed) symbols.insert(symbol);
  EXPECT_GE(listed, 530);
  std::vector<std::string> on_all_axes;
  for (const std::string& symbol : symbols)
    for (std::string_view change : basis_changes)
      if (change.empty() || symbol.find('(') == std::string::npos)
        on_all_axes.push_back(symbol + (change.empty() ? "" : " ") + std::string(change));
  if (sanitized) KEEP_EACH_TENTH(on_all_axes);
  std::string input;
  for (const std::string& symbol : on_all_axes) input += symbol + "\n";
  std::stringstream judged(JUDGED("", input));
  for (const std::string& symbol : on_all_axes) {
    std::string line;
    ASSERT_TRUE(std::getline(judged, line)) << symbol;
    std::stringstream numbers(line);
    std::set<EXACT_OP> expected;
    for (EXACT_OP op; READ_JUDGED(numbers, op);) expected.insert(op);
    ASSERT_FALSE(expected.empty()) << symbol;
    EXPECT_TRUE(OPERATOR_SET(GROUP(symbol, "HAL")) == expected) << symbol;
  }
  EXPECT_GT(on_all_axes.size(), sanitized ? 500u : 5000u);
}

// x' = x - z leaves y and the inversion; the glide c of P 21/c goes to a + c.
TEST(HALL_SYMBOLS, CHANGE_THE_AXES) {
  const auto operators = [](const std::string& hall) {
    const SPACE_GROUP group = GROUP(hall, "HAL");
    return std::set<std::string>(group.SYMOPSYMB.begin(), group.SYMOPSYMB.end());
  };
  EXPECT_EQ(operators("-P 2ybc (x-z,y,z)"), operators("-P 2yn"));
  EXPECT_EQ(operators("P 2y (z,x,y)"), operators("P 2z"));
  EXPECT_EQ(operators("-P 2ybc (x+1/4,y,z)"), operators("-P 2ybc (3 0 0)"));
  EXPECT_EQ(GROUP("-P 2yb (x-z,y,z)", "HAL").HALL, "-P 2yb");
  EXPECT_EQ(GROUP("P 2y (x-y,y+z,z)", "HAL").HALL, "P 2y (x-y,y+z,z)") << "it fits";
  EXPECT_EQ(GROUP("-P 2y (x-y,y+z,z)", "HAL").HALL, "") << "a part would be another symbol";
  // A cell of twice the volume is centred, and back.
  EXPECT_EQ(operators("P 4 (1/2*x-1/2*y, x/2+1/2y, z)"), operators("C 4"));
  EXPECT_EQ(operators("C 4 (x+y,y-x,z)"), operators("P 4"));
  EXPECT_EQ(operators("R 3 (-y+z,x+z,-x+y+z)"), operators("P 3*")) << "rhombohedral axes";
}

TEST(HALL_SYMBOLS, ARE_NONE_WITH_AXES_THAT_ARE_NO_AXES_OF_THE_LATTICE) {
  for (const char* hall :
       {"P 2y (2x,y,z)", "P 4 (x,y/2,z)", "P 4 (x,2y,z)", "P 2y (x,x,z)", "P 2y (x,y)",
        "P 2y (x,y,z,x)", "P 2y (x,,z)", "P 2y (x,y,q)", "P 2y (x,y,z/0)", "P 2y (x,y,z/7)",
        "P 2y (a,b,c)", "P 2y (9999x,y,z)", "P 2y (7x,y,z)", "P 2y (x,y,+)"}) {
    SPACE_GROUP group;
    SET_SPACEGROUP(hall, group, {}, "HAL");
    EXPECT_TRUE(ERR_SYMM) << hall;
  }
}

// ---- generators and Wyckoff positions ----

TEST(GENERATORS, CLOSE_TO_THE_STANDARD_SETTING) {
  for (int number = 1; number <= 230; ++number) {
    const SPACE_GROUP by_generators = GROUP(std::to_string(number), "ITC");
    EXPECT_EQ(OPERATOR_SET(by_generators), OPERATOR_SET(GROUP(std::to_string(number)))) << number;
    EXPECT_EQ(by_generators.INFO, "Generated from explicit IT generators");
  }
}

TEST(WYCKOFF, MULTIPLICITIES_ARE_THOSE_OF_THE_ORBITS) {
  for (const WYCKOFF_INFO_TYPE& key : WYCKOFF_INFO) {
    const SPACE_GROUP group = GROUP(key.HM);
    ASSERT_EQ(static_cast<int>(group.WYCKOFF.ITEMS().size()), key.COUNT) << key.HM;
    EXPECT_EQ(group.WYCKOFF(1).MULTIPLICITY, group.MULTIP) << key.HM;
    EXPECT_EQ(group.WYCKOFF(1).COORDINATES, "x,y,z") << key.HM;
    for (const WYCKOFF_ORBIT& orbit : group.WYCKOFF)
      EXPECT_EQ(group.MULTIP % orbit.MULTIPLICITY, 0) << key.HM << " " << orbit.LETTER;
  }
}

TEST(WYCKOFF, ANOTHER_SYMBOL_FOR_THE_SAME_OPERATORS_HAS_THE_SAME_ORBITS) {
  EXPECT_EQ(GROUP("P 1 21/c 1").WYCKOFF.ITEMS().size(), GROUP("P 21/c").WYCKOFF.ITEMS().size());
  EXPECT_EQ(GROUP("P 21/c").WYCKOFF.ITEMS().size(), 5u) << "e to a";
}

// ---- symbols as people write them ----

TEST(SYMBOLS, OLD_AND_NEW_SPELLINGS) {
  EXPECT_EQ(GROUP("P1").SYMOPSYMB(1), "x,y,z");
  for (const char* symbol : {"P 1", "P_1", "P(1)"}) EXPECT_EQ(GROUP(symbol).MULTIP, 1) << symbol;
  for (const char* symbol : {"P 21/c", "P21/c", "P 1 21/c 1", "p 21/C", "P2(1)/c", "P 2_1/c", "14"})
    EXPECT_EQ(GROUP(symbol).HALL, "-P 2ybc") << symbol;
  EXPECT_EQ(GROUP("R - 3 m").HALL, GROUP("R -3 m").HALL) << "cut in the wrong places";
  EXPECT_EQ(GROUP("P 2 1 3").NUMSPG, 198);
  EXPECT_EQ(GROUP("F d 3 m").HALL, GROUP("F d -3 m").HALL);
  EXPECT_EQ(GROUP("F d -3 m :2").HALL, GROUP("227").HALL);
  EXPECT_EQ(GROUP("R -3 c : H").HALL, "-R 3 2\"c");
  EXPECT_EQ(GROUP("R -3 c :R").SPG_SYMB, "R -3 c:r") << "the setting in lower case";
  EXPECT_NE(GROUP("F d -3 m:1").HALL, GROUP("F d -3 m").HALL);
  EXPECT_EQ(GROUP("P n m a:").NUMSPG, 62) << "a colon without a setting";
}

TEST(SYMBOLS, THOSE_BEYOND_THE_TABLE) {
  for (const EXTRA_SYMBOL& extra : EXTRA_SYMBOLS) {
    const SPACE_GROUP group = GROUP(extra.HM);
    EXPECT_EQ(group.NUMSPG, extra.N) << extra.HM;
    // "B 2" is also the Hall symbol of a tabulated setting, and found as such.
    if (extra.HM != "B 2") {
      EXPECT_EQ(group.SG_SETTING, "Non-standard Setting") << extra.HM;
    }
  }
}

// A glide plane named by "a" in older tables is "e" in newer ones.
TEST(SYMBOLS, FULL_SYMBOLS_WITH_THE_OLDER_AND_THE_NEWER_GLIDE) {
  struct NAMES {
    const char* SHORT;
    int NUMBER;
    std::vector<const char*> FULL;
  };
  for (const NAMES& names :
       {NAMES{"C m c a", 64, {"C 2/m 2/c 21/a", "C 2/m 2/c 21/e", "C2/m2/c21/a"}},
        NAMES{"C m m a", 67, {"C 2/m 2/m 2/a", "C 2/m 2/m 2/e"}},
        NAMES{"C c c a", 68, {"C 2/c 2/c 2/a", "C 2/c 2/c 2/e"}}})
    for (const char* symbol : names.FULL) {
      const SPACE_GROUP group = GROUP(symbol);
      EXPECT_EQ(group.NUMSPG, names.NUMBER) << symbol;
      EXPECT_TRUE(SPGR_EQUAL(group, GROUP(names.SHORT))) << symbol;
    }
}

TEST(SYMBOLS, UNKNOWN_ONES_ARE_ERRORS_AND_NEVER_P1) {
  for (const char* symbol : {"", "Q 1", "P 7", "231", "0", "-1", "2.5", "P 21/c/d", "nonsense"}) {
    SPACE_GROUP group;
    SET_SPACEGROUP(symbol, group);
    EXPECT_TRUE(ERR_SYMM) << symbol;
    EXPECT_EQ(group.MULTIP, 0) << symbol;
    EXPECT_EQ(ERR_SYMM_MESS, "Error in the provided symbol/number of the space group") << symbol;
  }
}

// ---- facts of single groups ----

TEST(GROUPS, CENTRING_AND_INVERSION) {
  const SPACE_GROUP fm3m = GROUP("F m -3 m");
  EXPECT_EQ(fm3m.MULTIP, 192);
  EXPECT_EQ(fm3m.NUMLAT, 4);
  EXPECT_EQ(fm3m.NUMOPS, 24);
  EXPECT_EQ(fm3m.CENTRED, 2);
  EXPECT_EQ(fm3m.SPG_LAT, 'F');
  const SPACE_GROUP r3c = GROUP("R -3 c");
  EXPECT_EQ(r3c.NUMLAT, 3);
  EXPECT_EQ(r3c.MULTIP, 36);
  EXPECT_EQ(GROUP("P 21 21 21").CENTRED, 1);
  const SPACE_GROUP diamond = GROUP("F d -3 m:1");
  EXPECT_EQ(diamond.CENTRED, 0) << "the inversion centre is at 1/8, 1/8, 1/8";
  EXPECT_EQ(diamond.CENTRE_COORD, (VECTOR3{0.125f, 0.125f, 0.125f}));
  EXPECT_EQ(GROUP("F d -3 m").CENTRED, 2);
}

TEST(GROUPS, A_LIST_MAY_BE_GIVEN_WITH_OR_WITHOUT_ITS_PRODUCTS) {
  const SPACE_GROUP full = GROUP_OF({"x,y,z", "-x,-y,-z", "-x,1/2+y,1/2-z", "x,1/2-y,1/2+z"});
  const SPACE_GROUP generators = GROUP_OF({"-x,-y,-z", "-x,1/2+y,1/2-z"});
  EXPECT_EQ(full.SPG_SYMB, "P 21/c");
  EXPECT_TRUE(SPGR_EQUAL(full, generators));
  const SPACE_GROUP twice = GROUP_OF({"x,y,z", "x,y,z", "-x,-y,-z", "-x,-y,-z"});
  EXPECT_EQ(twice.SPG_SYMB, "P -1");
  EXPECT_EQ(twice.MULTIP, 2);
}

TEST(GROUPS, GIVEN_OPERATORS_KEEP_THEIR_ORDER) {
  const SPACE_GROUP group = GROUP_OF({"x,y,z", "-x,1/2+y,1/2-z", "-x,-y,-z", "x,1/2-y,1/2+z"});
  EXPECT_EQ(TEXTS(group),
            (std::vector<std::string>{"x,y,z", "-x,y+1/2,-z+1/2", "-x,-y,-z", "x,-y+1/2,z+1/2"}));
}

TEST(GROUPS, CENTRED_COPIES_IN_THE_LIST_ARE_SORTED_OUT) {
  const SPACE_GROUP group = GROUP_OF({"x,y,z", "-x,y,-z", "1/2+x,1/2+y,z", "1/2-x,1/2+y,-z"});
  EXPECT_EQ(group.SPG_SYMB, "C 2");
  EXPECT_EQ(group.NUMOPS, 2);
  EXPECT_EQ(group.NUMLAT, 2);
  EXPECT_EQ(group.MULTIP, 4);
}

TEST(GROUPS, THIRDS_WRITTEN_WITH_FOUR_DIGITS_CLOSE) {
  const SPACE_GROUP group = GROUP_OF({"-y,x-y,z+0.3333", "-x,-y,-z"});
  EXPECT_FALSE(ERR_SYMM);
  EXPECT_EQ(group.SYMOPSYMB(2), "-y,x-y,z+1/3");
}

TEST(GROUPS, NONSENSE_LISTS_END_QUICKLY_WITH_AN_ERROR) {
  for (const std::vector<std::string>& list : {std::vector<std::string>{"x+y,y,z"},
                                               {"x+0.013,y,z"},
                                               {"x,y"},
                                               {"a,b,c"},
                                               {"x,y,z,x"},
                                               {""}}) {
    const SPACE_GROUP group = GROUP_OF(list);
    EXPECT_TRUE(ERR_SYMM) << list[0];
    EXPECT_EQ(group.MULTIP, 0) << list[0];
  }
  std::vector<std::string> many;
  for (int i = 0; i < 5000; ++i) many.push_back("x+0." + std::to_string(1000 + i) + ",y,z");
  GROUP_OF(many);
  EXPECT_TRUE(ERR_SYMM);
}

TEST(GROUPS, A_GROUP_WITHOUT_A_ROW_IS_UNKNOWN) {
  const SPACE_GROUP group = GROUP_OF({"x,y,z", "-x+0.2,-y,-z"});
  EXPECT_FALSE(ERR_SYMM) << ERR_SYMM_MESS;
  EXPECT_EQ(group.NUMSPG, 0);
  EXPECT_EQ(group.SPG_SYMB, "unknown");
  EXPECT_EQ(group.INFO, "Non-Conventional (user-given operators)");
  EXPECT_EQ(group.SYMOPSYMB(2), "-x+0.2000,-y,-z");
  EXPECT_EQ(group.CRYSTALSYS.NAME, SYSTEM::TRICLINIC);
}

TEST(GROUPS, MODES_AND_THEIR_ERRORS) {
  GROUP_OF({}, "GEN");
  EXPECT_EQ(ERR_SYMM_MESS, " Generators should be provided in GEN calling Set_SpaceGroup");
  GROUP_OF({}, "FIX");
  EXPECT_EQ(ERR_SYMM_MESS, " Generators should be provided if FIX option is Used");
  const SPACE_GROUP fixed = GROUP_OF({"x,y,z", "-x,1/2+y,-z"}, "FIX");
  EXPECT_EQ(fixed.MULTIP, 2);
  EXPECT_EQ(fixed.INFO, "Fixed symmetry operators (no info)");
  SPACE_GROUP group;
  SET_SPACEGROUP("P nonsense", group, {}, "ITC");
  EXPECT_EQ(ERR_SYMM_MESS,
            " Problems in SpaceGroup: P nonsense=> the HM symbol or the number is incorrect");
  SET_SPACEGROUP("P 1", group, {}, "XYZ");
  EXPECT_EQ(ERR_SYMM_MESS, " Problems in SpaceGroup");
  EXPECT_EQ(GROUP("-P 2ybc", "HAL").SPG_SYMB, "P 21/c");
  EXPECT_EQ(GROUP("-P 2ybc", "HAL").INFO, "Generated from Hall symbol");
}

// ---- operator texts ----

namespace {

SYM_OP READ(std::string_view text, bool proper = false) {
  SYM_OP op;
  int start = 1;
  READ_XSYM(text, start, op.ROT, op.TR, proper);
  return op;
}

// One thing in each is no part of a Hall symbol: a screw beyond 5, another letter, an axis that its
// rotation does not have, a sign alone, factors that are no numbers or no twelfths.
TEST(HALL_SYMBOLS, ARE_NONE_WITH_A_WORD_THAT_IS_NO_ROTATION) {
  for (const char* hall :
       {"P", "P 5", "P 29", "P 2#", "P 2q", "P -", "P 4*", "P 4'", "P 3\"", "P 2 2*", "Q 2",
        "P 2y (x/a,y,z)", "P 2y (x/,y,z)", "P 2y (1/,y,z)", "P 2y (99999999999x,y,z)",
        "P 2y (x/99999999999,y,z)", "P 2y (1/24x,y,z)", "P 2y (x,y,z+1/48)"}) {
    SPACE_GROUP group;
    SET_SPACEGROUP(hall, group, {}, "HAL");
    EXPECT_TRUE(ERR_SYMM) << hall;
  }
}

}  // namespace

TEST(OPERATOR_TEXTS, TERMS_IN_ANY_ORDER_AND_NUMBERS_IN_ANY_FORM) {
  const SYM_OP first = READ("-x+1/2, y+1/2, -z");
  EXPECT_FALSE(ERR_SYMM);
  for (const char* text : {"1/2-x,1/2+y,-z", "0.5-X,.5+Y,-Z", "-x+1/2*y+1/2*-z"}) {
    const SYM_OP op = READ(text);
    EXPECT_FALSE(ERR_SYMM) << text;
    EXPECT_EQ(op.ROT, first.ROT) << text;
    EXPECT_EQ(op.TR, first.TR) << text;
  }
  EXPECT_EQ(READ("x,y,z-1/4").TR[2], -0.25f);
}

TEST(OPERATOR_TEXTS, A_TRANSLATION_WITHIN_0_002_OF_A_24TH_IS_THAT_FRACTION) {
  // 1/3 is 0.33333, 7/24 is 0.29167.
  for (const char* near : {"0.3333", "0.333", "0.3314", "0.3353"}) {
    const SPACE_GROUP group = GROUP_OF({"-y,x-y,z+" + std::string(near)});
    ASSERT_EQ(group.MULTIP, 3) << near;
    EXPECT_EQ(group.SYMOPSYMB(2), "-y,x-y,z+1/3") << near;
  }
  for (const char* off : {"0.3313", "0.3354", "0.2896", "0.2937"}) {
    GROUP_OF({"-y,x-y,z+" + std::string(off)});
    EXPECT_TRUE(ERR_SYMM) << off << ": three of them are no whole cell";
    EXPECT_EQ(READ("x,y,z+" + std::string(off)).TR[2], std::stof(off));
  }
  EXPECT_EQ(READ("x+1/4+1/4,y,z").TR[0], 0.5f) << "numbers add up";
}

// By hand, and gemmi reads the same matrices of those with a star.
TEST(OPERATOR_TEXTS, AXES_HAVE_WHOLE_FACTORS) {
  const IMATRIX3 turned{{{-1, 0, 2}, {0, 1, 0}, {0, 0, 1}}};
  for (const char* text :
       {"-x+2*z,y,z", "-x+2z,y,z", "2*Z-X,y,z", "-x + 2 z, y, z", "-x+z+z,y,z", "-x+2.0*z,y,z"}) {
    EXPECT_EQ(READ(text).ROT, turned) << text;
    EXPECT_FALSE(ERR_SYMM) << text;
  }
  EXPECT_EQ(READ("x,y,z-2x").ROT, (IMATRIX3{{{1, 0, 0}, {0, 1, 0}, {-2, 0, 1}}}));
  const SYM_OP op = READ("1/2-2y+x+1/4,-y,z+3*y-1/4");
  EXPECT_EQ(op.ROT, (IMATRIX3{{{1, -2, 0}, {0, -1, 0}, {0, 3, 1}}}));
  EXPECT_EQ(op.TR, (VECTOR3{0.75f, 0.0f, -0.25f}));
  EXPECT_EQ(READ("x*y*z-1/4").TR[2], -0.25f) << "without commas a star divides the fields";
}

TEST(OPERATOR_TEXTS, OTHER_FACTORS_ARE_ERRORS) {
  for (const char* text : {"1/2x,y,z", "x+0.5*y,y,z", "x+10y,y,z", "x+9y+y,y,z"}) {
    READ(text);
    EXPECT_EQ(ERR_SYMM_MESS, " The above operator is wrong: " + std::string(text));
  }
  for (const char* text : {"x/2,y,z", "x+/2,y,z"}) {
    READ(text);
    EXPECT_EQ(ERR_SYMM_MESS, " Invalid character... / in operator string") << text;
  }
  for (const char* text : {"x*2,y,z", "x,*y,z"}) {
    READ(text);
    EXPECT_EQ(ERR_SYMM_MESS, " Invalid character... * in operator string") << text;
  }
}

TEST(OPERATOR_TEXTS, ERRORS) {
  READ("  ");
  EXPECT_EQ(ERR_SYMM_MESS, " Blank operator field");
  READ("x,y,q");
  EXPECT_EQ(ERR_SYMM_MESS, " Invalid character... q in operator string");
  READ("x,y");
  EXPECT_EQ(ERR_SYMM_MESS, " The above operator is wrong: x,y");
  READ("x,y,z,x");
  EXPECT_TRUE(ERR_SYMM);
  READ("-x,-y,-z", true);
  EXPECT_TRUE(ERR_SYMM) << "a proper rotation was asked for";
  EXPECT_EQ(READ("x,y,1/0+z").TR, VECTOR3{}) << "a division by 0 adds nothing";
  READ("-x,-y,z", true);
  EXPECT_FALSE(ERR_SYMM);
}

TEST(OPERATOR_TEXTS, START_IS_LEFT_BEHIND_WHAT_WAS_READ) {
  SYM_OP op;
  int start = 3;
  READ_XSYM("??x,y,z", start, op.ROT, op.TR);
  EXPECT_FALSE(ERR_SYMM);
  EXPECT_EQ(start, 8);
}

// ---- questions ----

TEST(QUESTIONS, LATTICE_TRANSLATIONS_BY_LETTER) {
  EXPECT_TRUE(LATTICE_TRANS({1.0f, -2.0f, 0.0f}, 'P'));
  EXPECT_FALSE(LATTICE_TRANS({0.5f, 0.5f, 0.0f}, 'P'));
  EXPECT_TRUE(LATTICE_TRANS({0.5f, 1.5f, 0.0f}, 'c')) << "either case";
  EXPECT_TRUE(LATTICE_TRANS({0.5f, 0.0f, 0.5f}, 'F'));
  EXPECT_TRUE(LATTICE_TRANS({0.6667f, 0.3333f, 0.3333f}, 'R'));
  EXPECT_FALSE(LATTICE_TRANS({0.3333f, 0.6667f, 0.3333f}, 'R'));
  EXPECT_TRUE(LATTICE_TRANS({0.0003f, 0.0f, 0.0f}, 'P'));
  EXPECT_FALSE(LATTICE_TRANS({0.0006f, 0.0f, 0.0f}, 'P'));
  EXPECT_FALSE(LATTICE_TRANS({0.0f, 0.0f, 0.0f}, 'Q')) << "no such lattice";
  EXPECT_TRUE(LATTICE_TRANS({2e6f, -3e9f, 0.0f}, 'P')) << "beyond what is converted";
  EXPECT_FALSE(LATTICE_TRANS({2000000.5f, 0.0f, 0.0f}, 'P'));
}

TEST(QUESTIONS, STABILIZERS) {
  int order = 0;
  LIST<int> numbers;
  LIST<VECTOR3> translations;
  const SPACE_GROUP p1bar = GROUP("P -1");
  GET_STABILIZER({0.1f, 0.2f, 0.3f}, p1bar, order, numbers, translations);
  EXPECT_EQ(order, 1);
  GET_STABILIZER({0.0f, 0.0f, 0.0f}, p1bar, order, numbers, translations);
  EXPECT_EQ(order, 2);
  GET_STABILIZER({0.5f, 0.0f, 0.5f}, p1bar, order, numbers, translations);
  ASSERT_EQ(order, 2);
  EXPECT_EQ(numbers(2), 2);
  EXPECT_EQ(translations(2), (VECTOR3{1.0f, 0.0f, 1.0f})) << "-x + 1 = x";
  GET_STABILIZER({0.0f, 0.0f, 0.0f}, GROUP("P m -3 m"), order, numbers, translations);
  EXPECT_EQ(order, 48);
  GET_STABILIZER({0.0f, 0.0f, 0.0f}, GROUP("P 1"), order, numbers, translations);
  EXPECT_EQ(order, 1);
}

TEST(QUESTIONS, GROUPS_ARE_EQUAL_IN_ANY_ORDER_OF_THEIR_OPERATORS) {
  EXPECT_TRUE(SPGR_EQUAL(GROUP_OF({"x,y,z", "-x,-y,-z"}), GROUP("P -1")));
  EXPECT_TRUE(SPGR_EQUAL(GROUP_OF({"x,1/2-y,1/2+z", "-x,-y,-z"}), GROUP("P 21/c")));
  EXPECT_FALSE(SPGR_EQUAL(GROUP("P 21/c"), GROUP("P 21/n")));
  EXPECT_FALSE(SPGR_EQUAL(SPACE_GROUP{}, SPACE_GROUP{})) << "a group that failed equals none";
}

TEST(QUESTIONS, ROTATION_TYPES) {
  EXPECT_EQ(ROTATION_TYPE(READ("x,y,z").ROT), 1);
  EXPECT_EQ(ROTATION_TYPE(READ("-x,-y,-z").ROT), -1);
  EXPECT_EQ(ROTATION_TYPE(READ("-x,-y,z").ROT), 2);
  EXPECT_EQ(ROTATION_TYPE(READ("x,y,-z").ROT), -2);
  EXPECT_EQ(ROTATION_TYPE(READ("z,x,y").ROT), 3);
  EXPECT_EQ(ROTATION_TYPE(READ("-y,x,z").ROT), 4);
  EXPECT_EQ(ROTATION_TYPE(READ("y,-x,-z").ROT), -4);
  EXPECT_EQ(ROTATION_TYPE(READ("x-y,x,z").ROT), 6);
  EXPECT_EQ(ROTATION_TYPE(READ("x+y,y,z").ROT), 0) << "a shear is no rotation";
  EXPECT_EQ(ROTATION_TYPE({{{2, 0, 0}, {0, 1, 0}, {0, 0, 1}}}), 0) << "determinant 2";
  EXPECT_EQ(ROTATION_TYPE({}), 0) << "determinant 0";
  EXPECT_EQ(ROTATION_TYPE({{{1, 3, 0}, {0, -1, 0}, {0, 0, 1}}}), -2);
  EXPECT_EQ(ROTATION_TYPE({{{1, 9, 0}, {0, -1, 0}, {0, 0, 1}}}), -2);
  EXPECT_EQ(ROTATION_TYPE({{{1, 10, 0}, {0, -1, 0}, {0, 0, 1}}}), 0) << "an element above 9";
}

TEST(QUESTIONS, AN_OPERATOR_IS_APPLIED_WITHOUT_REDUCTION) {
  const SYM_OP op = READ("-x+1/2,y+1/2,-z");
  EXPECT_EQ(APPLY_OP(op, {0.75f, 0.75f, 0.25f}), (VECTOR3{-0.25f, 1.25f, -0.25f}));
}

TEST(QUESTIONS, SYMMETRY_CODES) {
  EXPECT_FLOAT_EQ(SYMTRANS_CODE(3, {1, 0, 0}), 3.655f);
  EXPECT_FLOAT_EQ(SYMTRANS_CODE(1, {0, 0, 0}), 1.555f);
  EXPECT_FLOAT_EQ(SYMTRANS_CODE(2, {-5, -4, 4}), 2.019f);
  EXPECT_FLOAT_EQ(SYMTRANS_CODE(196, {4, -5, 0}), 196.905f);
  for (int op : {0, 197, -1}) EXPECT_EQ(SYMTRANS_CODE(op, {0, 0, 0}), 0.0f);
  EXPECT_EQ(SYMTRANS_CODE(1, {5, 0, 0}), 0.0f);
  EXPECT_EQ(SYMTRANS_CODE(1, {0, -6, 0}), 0.0f);
}
