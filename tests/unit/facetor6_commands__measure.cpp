// MEASURE: its dialogue, what is refused, default images, and series whose blocks differ in all
// that makes no difference.
#include "src/facetor6_measure/measure.h"

#include "console__dialogue.h"
#include "facetor6_commands__measuring.h"
#include "src/facetor6_calc/calc.h"
#include "src/facetor6_console/measure_list.h"
#include "src/facetor6_console/parameters.h"
#include "src/facetor6_console/phase_list.h"
#include "src/facetor6_list/list.h"
#include "structures.h"

namespace {

using namespace FACETOR_CONSOLE;
using namespace STRUCTURES;

class MEASURING : public MEASURE_TESTS::MEASURE_TEST {
 protected:
  static std::string ANSWER(const std::string& line) {
    CONSOLE_TESTS::PEND(line);
    return SAID("", [] { FACETOR_MEASURE::RUN_MEASURE(); });
  }

  static float VALUE(const std::string& text, int block = 1) {
    EXPECT_EQ(DEFINE_MEASURE("m", text), "") << text;
    const std::size_t place = KVA_CRYSTAL_STRUCTURES::FIND_MEASURE(MEASURES, "m");
    const MEASURED_VALUE value = MEASURE_BLOCKS({block}).front()[place];
    EXPECT_TRUE(value.FOUND) << text;
    return value.VALUE;
  }

  static float ESD(const std::string& text, int block = 1) {
    EXPECT_EQ(DEFINE_MEASURE("m", text), "") << text;
    return MEASURE_BLOCKS({block}).front()[KVA_CRYSTAL_STRUCTURES::FIND_MEASURE(MEASURES, "m")].ESD;
  }
};

// A cube of 10 angstroms without symmetry: positions in tenths are angstroms.
CRYSTAL_STRUCTURE_TYPE MOLECULE() {
  return MADE({10, 10, 10}, {90, 90, 90}, "P 1",
              {{"C1", {0.1f, 0.0f, 0.0f}, {0.001f, 0.001f, 0.001f}},
               {"C2", {0.1f, 0.1f, 0.0f}, {0.001f, 0.001f, 0.001f}},
               {"C3", {0.1f, 0.1f, 0.2f}, {0.001f, 0.001f, 0.001f}},
               {"C4", {0.2f, 0.1f, 0.2f}, {0.001f, 0.001f, 0.001f}},
               {"C5", {0.1f, 0.3f, 0.2f}, {0.001f, 0.001f, 0.001f}}},
              {0.01f, 0, 0});
}

// ---- arithmetic and signs ----

TEST_F(MEASURING, THE_POWER_BINDS_TO_THE_RIGHT_AND_BEFORE_A_SIGN) {
  EXPECT_EQ(DEFINE_MEASURE("m", "1"), "");  // also without blocks
  LOAD({MOLECULE()});
  EXPECT_FLOAT_EQ(VALUE("-2^2"), -4.0f);
  EXPECT_FLOAT_EQ(VALUE("2^3^2"), 512.0f);
  EXPECT_FLOAT_EQ(VALUE("2^-1"), 0.5f);
  EXPECT_FLOAT_EQ(VALUE("10 - 4 - 3"), 3.0f);
  EXPECT_FLOAT_EQ(VALUE("2*(3 + 4)/7"), 2.0f);
  EXPECT_FLOAT_EQ(VALUE("LOG(exp(2))"), 2.0f);
  EXPECT_FLOAT_EQ(VALUE("min(3, 1, 2) + max(3, 1, 2)"), 4.0f);
  EXPECT_FLOAT_EQ(VALUE("asin(sin(30)) + acos(cos(40)) + atan(tan(50))"), 120.0f);
}

TEST_F(MEASURING, FUNCTIONS_OF_RIGHT_ANGLES_ARE_EXACT) {
  LOAD({MOLECULE()});
  EXPECT_EQ(VALUE("sin(180)"), 0.0f);
  EXPECT_EQ(VALUE("cos(90) + cos(-270) + sin(-360) + tan(180)"), 0.0f);
  EXPECT_EQ(VALUE("sin(90) + sin(-270) + cos(0) + cos(360)"), 4.0f);
  EXPECT_EQ(VALUE("sin(270) + cos(180) + sin(-90) + cos(-540)"), -4.0f);
  EXPECT_FLOAT_EQ(VALUE("sin(30) + cos(120) + sin(210) + cos(300)"), 0.0f);
  EXPECT_FLOAT_EQ(VALUE("tan(45) + tan(225) + tan(-45)"), 1.0f);
  EXPECT_EQ(ANSWER("m = tan(90)"), "     m = tan(90)\n     reference block: No value\n");
  // The derivative of the sine of 60(2) degrees: cos(60), times 2 degrees in radians.
  EXPECT_NEAR(ESD("sin(60(2))"), 0.5f * 2.0f * 3.14159265f / 180.0f, 1e-6f);
  EXPECT_NEAR(ESD("cos(150(2))"), 0.5f * 2.0f * 3.14159265f / 180.0f, 1e-6f);
  EXPECT_NEAR(ESD("tan(45(2))"), 2.0f * 2.0f * 3.14159265f / 180.0f, 1e-6f);
}

// Looking from C2 to C3 (along z), C1 lies at -y and C4 at +x: from -y clockwise, seen with z
// pointing away, one comes to -x after 90 degrees and to +x after -90.
TEST_F(MEASURING, TORSIONS_HAVE_THE_SIGN_OF_THE_RULE) {
  LOAD({MOLECULE()});
  EXPECT_NEAR(VALUE("torsion(C1, C2, C3, C4)"), 90.0f, 1e-4f);
  EXPECT_NEAR(VALUE("torsion(C4, C3, C2, C1)"), 90.0f, 1e-4f);
}

// Half a turn is 180 and never -180, though the rounding of coordinates leaves atoms on either
// side of the plane of the others.
TEST_F(MEASURING, HALF_A_TURN_IS_POSITIVE) {
  CRYSTAL_STRUCTURE_TYPE flat = MOLECULE();
  LOAD({flat});
  EXPECT_EQ(VALUE("torsion(C1, C2, C3, C5)"), 180.0f);
  EXPECT_EQ(VALUE("torsion(C5, C3, C2, C1)"), 180.0f);
  for (const float off : {-1e-8f, 1e-8f}) {
    flat.ATOM(5).X[0] = 0.1f + off;
    LOAD({flat});
    IREFERENCE = NPHASES;
    EXPECT_NEAR(VALUE("torsion(C1, C2, C3, C5)", NPHASES), 180.0f, 1e-4f) << off;
  }
}

// C1, C2, C3 run anticlockwise seen from +x, where C4 lies.
TEST_F(MEASURING, PLANES_HAVE_TWO_SIDES) {
  LOAD({MOLECULE()});
  EXPECT_NEAR(VALUE("offplane(C4; C1, C2, C3)"), 1.0f, 1e-5f);
  EXPECT_NEAR(VALUE("offplane(C4; C3, C2, C1)"), -1.0f, 1e-5f);
  EXPECT_NEAR(VALUE("planes(C1, C2, C3; C2, C3, C4)"), 90.0f, 1e-4f);
  EXPECT_NEAR(VALUE("dist(C1, centroid(C2, C3))"), std::sqrt(2.0f), 1e-5f);
}

// ---- esds ----

TEST_F(MEASURING, WHAT_TWO_QUANTITIES_SHARE_IS_CORRELATED) {
  CRYSTAL_STRUCTURE_TYPE smaller = MOLECULE();
  XTAL::SET_CELL_RECORD({9, 10, 10}, {90, 90, 90}, smaller.CELL, " ", {0.01f, 0, 0}, {});
  LOAD({MOLECULE(), smaller});
  // Both atoms move by 0.01 angstroms along y.
  EXPECT_NEAR(ESD("dist(C1, C2)"), 0.01f * std::sqrt(2.0f), 1e-5f);
  EXPECT_EQ(ESD("dist(C1, C2) - dist(C1, C2)"), 0.0f);
  EXPECT_NEAR(ESD("dist(C1, C2) + dist(C1, C2)"), 0.02f * std::sqrt(2.0f), 2e-5f);
  // V is 1000 with an esd of 1, and 900 with one of 1.
  EXPECT_NEAR(ESD("V"), 1.0f, 1e-4f);
  EXPECT_EQ(ESD("V/ref(V)"), 0.0f);
  EXPECT_FLOAT_EQ(VALUE("V/ref(V)", 2), 0.9f);
  EXPECT_NEAR(ESD("V/ref(V)", 2), 0.9f * std::hypot(1.0f / 900, 1.0f / 1000), 1e-6f);
  EXPECT_NEAR(ESD("5.0347(4)*2"), 0.0008f, 1e-7f);
  EXPECT_EQ(DEFINE_MEASURE("k", "7.5(5)"), "");
  EXPECT_EQ(ESD("k - k"), 0.0f);
  EXPECT_NEAR(ESD("7.5(5) - 7.5(5)"), 0.5f * std::sqrt(2.0f), 1e-5f);  // two numbers
}

// A U of 0.000(2) was refined; one of zero without an esd was not given.
// The root has no slope at 0, which a number does not mind. C1 and C2 move by 0.01 angstroms each.
TEST_F(MEASURING, A_NUMBER_WITHOUT_AN_ESD_ADDS_NONE_AT_THE_END_OF_A_ROOT) {
  LOAD({MOLECULE()});
  EXPECT_NEAR(ESD("dist(C1, C2) + sqrt(0)"), std::hypot(0.01f, 0.01f), 1e-6f);
}

TEST_F(MEASURING, A_U_OF_ZERO_WITH_AN_ESD_IS_A_VALUE) {
  CRYSTAL_STRUCTURE_TYPE molecule = MOLECULE();
  constexpr float eight_pi_sq = 78.956835f;
  for (int i = 1; i <= 2; ++i) molecule.ATOM(i).THTYPE = "isotr";
  molecule.ATOM(1).BISO_STD = 0.002f * eight_pi_sq;
  LOAD({molecule});
  EXPECT_EQ(ANSWER("m = uiso(C1)"),
            "     m = uiso(C1[1_555])\n     reference block: 0.000(2) Å²\n");
  EXPECT_EQ(ANSWER("m = uiso(C2)"), "     m = uiso(C2[1_555])\n     reference block: No value\n");
}

// ---- the dialogue ----

TEST_F(MEASURING, A_DEFINITION_IS_ANSWERED_WITH_CODES_VALUE_AND_STEPS) {
  LOAD({MOLECULE()});
  EXPECT_EQ(ANSWER("d = dist(c1, C2)"),
            "     d = dist(c1[1_555], C2[1_555])\n"
            "     reference block: 1.000(15) Å\n"
            "     c1-C2 1.000 (1 equal, next 9.000)\n");
  EXPECT_EQ(ANSWER("D"), ANSWER("d"));
  EXPECT_EQ(ANSWER("e = 1/(x(C1[1_555]) - x(C1[1_555]))"),
            "     e = 1/(x(C1[1_555]) - x(C1[1_555]))\n     reference block: No value\n");
  EXPECT_EQ(ANSWER("f = d*2"), "     f = d*2\n     reference block: 2.00(3)\n");
  EXPECT_EQ(ANSWER("d ="), "*****used by f\n");
  EXPECT_EQ(ANSWER("f ="), "");
  EXPECT_EQ(ANSWER("d ="), "");
  EXPECT_EQ(ANSWER("d"), "*****There is no measure d: define it with d = expression\n");
}

TEST_F(MEASURING, WHAT_IS_WRONG_IS_TOLD_WITH_ITS_PLACE) {
  LOAD({MOLECULE()});
  const std::vector<std::pair<std::string, std::string>> refused{
      {"m = dist(C1, Q1)",
       "*****At character 10: the reference block has no site Q1: LIST site names shows them\n"},
      {"m = dist(C1)", "*****At character 1: dist is written as dist(A, B)\n"},
      {"m = a(C1)", "*****At character 1: a stands without brackets\n"},
      {"m = dist(C1 C2)",
       "*****At character 9: unexpected \"C\": commas stand between sites, and labels with other "
       "characters in quotes, as in 'O 1'\n"},
      {"m = dist(C1+, C2)",
       "*****At character 8: unexpected \"+\": commas stand between sites, and labels with other "
       "characters in quotes, as in 'O 1'\n"},
      {"m = foo(C1)", "*****At character 1: foo is no function: see MEASURE in the manual\n"},
      {"m = 2*Foo", "*****At character 3: Foo is no quantity and no measure: define it first\n"},
      {"m = foo", "*****At character 1: foo is no quantity and no measure: define it first\n"},
      {"m = (1 + 2",
       "*****At character 7: the end comes too early: \")\" is wanted to close a bracket\n"},
      {"m = 1)",
       "*****At character 2: unexpected \")\": a bracket is closed that was not opened\n"},
      {"m = m + 1", "*****m would use itself: give the new measure another name\n"},
      {"vol = 1", "*****vol is a quantity or a function: choose another name\n"},
      {"1a = 1",
       "*****A name has letters, digits and _, and begins with a letter: name = expression\n"},
      {"m = vol(C1)", "*****CALC polyhedra first\n"},
      {"m = dist(C1[2], C2)",
       "*****At character 6: [2] counts from the atom before: the first atom of a call takes a "
       "code "
       "as in [4_655]\n"},
      {"m = dist(C1, C1[1_555])",
       "*****At character 10: two atoms of the call are at one place: choose another symmetry code "
       "for C1\n"},
      {"m = dist(C1[2_555], C2)",
       "*****At character 6: the group has 1 operators: LIST symmetry shows them\n"},
      {"m = planes(C1, C2; C3, C4, C5)",
       "*****At character 1: planes is written as planes(A, B, C; D, E, F)\n"},
      {"m = offplane(C4; C1[1_555], C1[1_565], C1[1_575])",
       "*****At character 1: the atoms of a plane are in line: choose others\n"}};
  for (const auto& [line, answer] : refused) EXPECT_EQ(ANSWER(line), answer) << line;
  EXPECT_TRUE(MEASURES.empty());
}

TEST_F(MEASURING, LABELS_ARE_OFFERED_AS_AN_EXPRESSION_NEEDS_THEM) {
  CRYSTAL_STRUCTURE_TYPE block = MOLECULE();
  block.ATOM(1).LAB = "C(1)";
  block.ATOM(2).LAB = "C-2";
  block.ATOM(3).LAB = "3";
  block.ATOM(4).LAB = "C 4";
  block.ATOM(5).LAB = "C5'";
  LOAD({block});
  EXPECT_EQ(DEFINE_MEASURE("kink", "dist(C(1), 'C-2')"), "");
  std::vector<std::string> offered;
  for (const KVA_CONSOLE::OFFERED_WORD& word : HELP_WITH_EXPRESSIONS().WORDS)
    offered.push_back(word.WORD);
  for (const char* word : {"C(1)", "'C-2'", "'3'", "'C 4'", "C5'", "torsion", "ref", "kink"})
    EXPECT_NE(std::find(offered.begin(), offered.end(), word), offered.end()) << word;
  for (const char* word : {"C-2", "3", "C 4"})
    EXPECT_EQ(std::find(offered.begin(), offered.end(), word), offered.end()) << word;
}

TEST_F(MEASURING, LONG_AND_DEEP_TEXTS_AND_MANY_DEFINITIONS_ARE_HARMLESS) {
  LOAD({MOLECULE()});
  std::string sum = "1";
  while (sum.size() < 10000) sum += "+1";
  EXPECT_FLOAT_EQ(VALUE(sum), 5000.0f + 1.0f);
  EXPECT_NE(DEFINE_MEASURE("m", std::string(10000, '(')), "");
  EXPECT_NE(DEFINE_MEASURE("m", std::string(10000, '-') + "1"), "");
  EXPECT_EQ(DEFINE_MEASURE("m0", "1"), "");
  for (int k = 1; k < 1000; ++k)
    EXPECT_EQ(DEFINE_MEASURE("m" + std::to_string(k), "m" + std::to_string(k - 1) + " + 1"), "");
  EXPECT_FLOAT_EQ(MEASURE_BLOCKS({1}).front().back().VALUE, 1000.0f);
  EXPECT_EQ(DEFINE_MEASURE("m0", "m999"),
            "*****m0 would use itself: give the new measure another name");
}

// Each is the double of the one before: looked at for each use they would be 2^60 looks.
TEST_F(MEASURING, WHAT_IS_USED_TWICE_IS_LOOKED_AT_ONCE) {
  LOAD({MOLECULE()});
  EXPECT_EQ(DEFINE_MEASURE("m0", "1"), "");
  for (int k = 1; k <= 60; ++k) {
    const std::string before = "m" + std::to_string(k - 1);
    ASSERT_EQ(DEFINE_MEASURE("m" + std::to_string(k), before + " + " + before), "");
  }
  EXPECT_EQ(MEASURE_BLOCKS({1}).front().back().VALUE, 0x1p60f);
  EXPECT_EQ(DEFINE_MEASURE("m0", "m60"),
            "*****m0 would use itself: give the new measure another name");
}

// ---- series ----

const std::vector<SITE> quartz_sites{
    {"Si1", {0.4697f, 0.0f, 0.6666667f}, {0.0001f, 0, 0}},
    {"O1", {0.4133f, 0.2672f, 0.7855f}, {0.0003f, 0.0002f, 0.0002f}}};

CRYSTAL_STRUCTURE_TYPE QUARTZ(const std::vector<SITE>& sites) {
  return MADE({4.916f, 4.916f, 5.4054f}, {90, 90, 120}, "P 32 2 1", sites,
              {0.001f, 0.001f, 0.0004f});
}

// The second block has other labels in another order, an image of the oxygen and another cell's
// silicon; the third has no oxygen.
TEST_F(MEASURING, LABELS_ORDER_IMAGES_AND_CELLS_OF_A_BLOCK_MAKE_NO_DIFFERENCE) {
  const CRYSTAL_STRUCTURE_TYPE first = QUARTZ(quartz_sites);
  SITE oxygen = quartz_sites[1];
  oxygen.LABEL = "O77";
  for (const XTAL::SYM_OP& op : first.SPG.SYMOP)  // y, x, -z, which exchanges two esds
    if (op.ROT[0][1] == 1 && op.ROT[1][0] == 1) oxygen.X = XTAL::APPLY_OP(op, oxygen.X);
  std::swap(oxygen.X_STD[0], oxygen.X_STD[1]);
  SITE silicon = quartz_sites[0];
  silicon.LABEL = "T";
  silicon.X[0] -= 1.0f;
  SITE only = quartz_sites[0];
  LOAD({first, QUARTZ({oxygen, silicon}), QUARTZ({only})});
  for (const std::string text :
       {"dist(Si1, O1)", "angle(Si1, O1, Si1)", "torsion(Si1, O1, Si1, O1)", "dist(Si1, Si1)"}) {
    EXPECT_NEAR(VALUE(text, 2), VALUE(text, 1), 2e-5f * std::abs(VALUE(text, 1))) << text;
    EXPECT_NEAR(ESD(text, 2), ESD(text, 1), 0.02f * ESD(text, 1)) << text;
  }
  EXPECT_EQ(DEFINE_MEASURE("m", "dist(Si1, O1)"), "");
  EXPECT_FALSE(MEASURE_BLOCKS({3}).front().front().FOUND);
  EXPECT_EQ(DEFINE_MEASURE("m", "angle(Si1, O1, Si1)"), "");
  EXPECT_NEAR(MEASURE_BLOCKS({1}).front().front().VALUE, 143.7f, 0.2f);  // as published
}

TEST_F(MEASURING, ANOTHER_REFERENCE_BLOCK_KEEPS_THE_DEFINITIONS) {
  LOAD({MOLECULE(), QUARTZ(quartz_sites)});
  EXPECT_EQ(DEFINE_MEASURE("d", "dist(C1, C2)"), "");
  IREFERENCE = 2;
  EXPECT_EQ(SAID("", [] { FOLLOW_REFERENCE(); }),
            "*****The measure d does not fit the reference block: the reference block has no site "
            "C1: LIST site names shows them\n");
  EXPECT_FALSE(MEASURE_BLOCKS({1}).front().front().FOUND);
  IREFERENCE = 1;
  EXPECT_EQ(SAID("", [] { FOLLOW_REFERENCE(); }),
            "     With this reference block d = dist(C1[1_555], C2[1_555])\n");
  EXPECT_TRUE(MEASURE_BLOCKS({1}).front().front().FOUND);
}

// Of the second block's atoms only the fourth is another one, and stands where C4 does.
TEST_F(MEASURING, DOUBTFUL_MATCHES_OF_WHAT_IS_MEASURED_ARE_TOLD_BEFORE_THE_TABLE) {
  CRYSTAL_STRUCTURE_TYPE other = MOLECULE();
  other.ATOM(4).LAB = "O4";
  other.ATOM(4).Z = 8;
  other.BLOCK_TITLE = "other";
  LOAD({MOLECULE(), other});
  EXPECT_EQ(DEFINE_MEASURE("m", "dist(C1, C2)"), "");
  EXPECT_EQ(SAID("", [] { WARN_OF_MEASURED_MATCHES({1, 2}); }), "");
  EXPECT_EQ(DEFINE_MEASURE("edge1", "ref(dist(C3, C4)) + V"), "");
  EXPECT_EQ(SAID("", [] { WARN_OF_MEASURED_MATCHES({1, 2}); }), "");
  EXPECT_EQ(DEFINE_MEASURE("edge1", "dist(C3, C4)"), "");
  const std::string told =
      "In block #  2 other: 1 sites are matched with another element, first C4 "
      "with O4\n";
  EXPECT_EQ(SAID("",
                 [] {
                   WARN_OF_MEASURED_MATCHES({1, 2});
                 }).find(told) != std::string::npos,
            true);
  EXPECT_EQ(SAID("", [] { WARN_OF_MEASURED_MATCHES({1}); }), "");
  const std::string said = SAID("\n", [] { FACETOR_MEASURE::RUN_MEASURE(); });
  EXPECT_LT(said.find(told), said.find("BLOCKNAME"));
}

// What is left of it is an expression too, and another one.
TEST_F(MEASURING, A_DEFINITION_LONGER_THAN_A_LINE_IS_NOT_KEPT) {
  LOAD({QUARTZ(quartz_sites)});
  const std::string stem = "long = V";
  const std::string fits = stem + std::string(255 - stem.size() - 2, ' ') + "+1";
  const auto told = [](const std::string& line) {
    return SAID(line + "\n\n", [] { FACETOR_MEASURE::RUN_MEASURE(); });
  };
  const std::string said = told(fits + "1");
  EXPECT_NE(said.find("the rest of it is not read\n\n"
                      "*****The definition does not fit on a line: nothing is kept\n"),
            std::string::npos)
      << said;
  EXPECT_TRUE(MEASURES.empty());
  told(fits);
  EXPECT_EQ(MEASURES.size(), 1U) << "255 characters";
  told("long =" + std::string(250, ' ') + "V");
  EXPECT_EQ(MEASURES.size(), 1U) << "what is cut off does not remove one";
}

// ---- the tables ----

TEST_F(MEASURING, POLYHEDRA_ARE_THOSE_OF_THE_TABLES) {
  LOAD({QUARTZ(quartz_sites)});
  SAID("\n", [] { FACETOR_CALC::RUN_FACETOR_CALC_BONDS(); });
  const CRYSTAL_STRUCTURE_TYPE& block = REFERENCE();
  EXPECT_EQ(VALUE("mean(Si1)"), block.POLYHEDRON(1, POLY_MEAN_LENGTH));
  EXPECT_EQ(VALUE("vol(Si1)"), block.POLYHEDRON(1, POLY_VOLUME));
  EXPECT_EQ(VALUE("qe(Si1)"), block.POLYHEDRON(1, POLY_ELONGATION));
  EXPECT_EQ(VALUE("av(Si1)"), block.POLYHEDRON(1, POLY_VARIANCE));
  EXPECT_EQ(VALUE("n(Si1)"), 4.0f);
  EXPECT_NEAR(ESD("vol(Si1)"), block.POLYHEDRON(1, POLY_VOLUME_STD),
              0.1f * block.POLYHEDRON(1, POLY_VOLUME_STD));
  for (int k = 1; k <= 4; ++k) {
    const std::string bond = "bond(Si1, " + std::to_string(k) + ")";
    EXPECT_EQ(VALUE(bond), block.BONDS(1, k, BOND_LENGTH));
    EXPECT_NEAR(ESD(bond), block.BONDS(1, k, BOND_LENGTH_STD),
                0.1f * block.BONDS(1, k, BOND_LENGTH_STD));
  }
  EXPECT_EQ(VALUE("angle(Si1, 2, 1)"), block.BANGLES(1, 1, 2, ANGLE));
  EXPECT_EQ(VALUE("edge(Si1, 1, 4)"), block.BANGLES(1, 1, 4, EDGE));
  EXPECT_EQ(DEFINE_MEASURE("m", "bond(Si1, 5)"), "");
  EXPECT_FALSE(MEASURE_BLOCKS({1}).front().front().FOUND);
}

TEST_F(MEASURING, EVERY_FAULT_OF_THE_GRAMMAR_HAS_ITS_LINE) {
  LOAD({MOLECULE()});
  const std::string power = [] {
    std::string text = "m = 1";
    for (int k = 0; k < 101; ++k) text.insert(4, "(").append(")");
    return text;
  }();
  const std::vector<std::pair<std::string, std::string>> refused{
      {"m = .", "*****At character 1: \".\" is no number\n"},
      {"m = 2..5", "*****At character 3: unexpected \".\": an operator or the end is wanted\n"},
      {"m = 5.0(", "*****At character 1: an esd is written as in 5.0347(4)\n"},
      {"m = 5.0(x)", "*****At character 1: an esd is written as in 5.0347(4)\n"},
      {"m = 2 3", "*****At character 3: unexpected \"3\": an operator or the end is wanted\n"},
      {"m = 2 +",
       "*****At character 4: the end comes too early: a number, a quantity or a measure "
       "is wanted\n"},
      {"m = *2",
       "*****At character 1: unexpected \"*\": a number, a quantity or a measure is "
       "wanted\n"},
      {"m = min(1)", "*****At character 1: min takes two values or more, as in min(x, y)\n"},
      {"m = sqrt(1, 2)", "*****At character 1: sqrt takes one value\n"},
      {"m = sqrt 2", "*****At character 6: unexpected \"2\": \"(\" is wanted behind sqrt\n"},
      {"m = ref(V",
       "*****At character 6: the end comes too early: \")\" is wanted behind "
       "ref(...\n"},
      {"m = centroid(C1, C2)",
       "*****At character 1: centroid stands where an atom may, as in "
       "dist(A, centroid(B, C))\n"},
      {"m = dist(centroid(C1), C2)",
       "*****At character 6: centroid takes two atoms or more, as in centroid(A, B)\n"},
      {"m = offplane(C1; C2, C3)",
       "*****At character 1: a plane takes three atoms or more: offplane(A; B, C, D, ...)\n"},
      {"m = offplane(C1, C2, C3, C4)",
       "*****At character 1: offplane is written as offplane(A; B, C, D, ...)\n"},
      {"m = angle(C1, C2)",
       "*****At character 1: angle is written as angle(A, B, C) or angle(M, k, l)\n"},
      {"m = angle(C1, 1)", "*****At character 1: angle is written as angle(M, k, l)\n"},
      {"m = angle(C1, 2, 2)", "*****At character 1: two different bonds are wanted\n"},
      {"m = bond(C1, 0)",
       "*****At character 10: a bond number is wanted, from 1, as in bond(M, k)\n"},
      {"m = dist('C1, C2)",
       "*****At character 6: a quote is not closed: ' is wanted behind the label\n"},
      {"m = dist(C1(, C2)",
       "*****At character 9: \")\" is wanted in the site label: put other "
       "labels in quotes, as in 'O 1'\n"},
      {"m = dist(, C2)",
       "*****At character 6: a site label is wanted: put labels with other "
       "characters in quotes, as in 'O 1'\n"},
      {"m = dist(C1, 2)", "*****At character 10: a label of digits alone stands in quotes: '2'\n"},
      {"m = dist(C1, C2[1_55])",
       "*****At character 13: square brackets hold a symmetry code as in "
       "[4_655], or a number as in [2]\n"},
      {"m = dist(C1, C2[0])",
       "*****At character 13: square brackets hold a symmetry code as in "
       "[4_655], or a number as in [2]\n"},
      {"m = dist(C1, C2[9000])",
       "*****At character 10: no such image of C2 is near: give a code as in [4_655]\n"},
      {power,
       "*****At character 51: too many brackets, signs or powers within each other: define "
       "parts of it first\n"},
      {"_m = 1",
       "*****A name has letters, digits and _, and begins with a letter: name = expression\n"},
      {"= 1",
       "*****A name has letters, digits and _, and begins with a letter: name = expression\n"}};
  for (const auto& [line, answer] : refused) EXPECT_EQ(ANSWER(line), answer) << line;
  EXPECT_TRUE(MEASURES.empty());
}

TEST_F(MEASURING, WORDS_CANNOT_BE_NAMES_IN_WHATEVER_LETTERS) {
  for (const std::string word :
       {"dist", "ANGLE", "torsion", "offplane", "planes", "centroid", "X",    "y",    "z",
        "uiso", "occ",   "mean",    "vol",      "qe",     "av",       "bvs",  "N",    "baur",
        "econ", "shift", "sigma",   "bond",     "edge",   "A",        "b",    "c",    "alpha",
        "Beta", "gamma", "v",       "t",        "p",      "Ref",      "sqrt", "abs",  "exp",
        "log",  "min",   "max",     "sin",      "cos",    "tan",      "asin", "acos", "atan"})
    EXPECT_EQ(ANSWER(word + " = 1"),
              "*****" + word + " is a quantity or a function: choose another name\n");
  EXPECT_EQ(ANSWER("vol1 = 1"), "     vol1 = 1\n");
}

// ---- labels ----

TEST_F(MEASURING, LABELS_FIT_EXACTLY_OR_ELSE_IN_OTHER_LETTERS) {
  CRYSTAL_STRUCTURE_TYPE block = MOLECULE();
  block.ATOM(2).LAB = "CA";
  block.ATOM(3).LAB = "Ca";
  block.ATOM(4).LAB = "X";
  block.ATOM(5).LAB = "X";
  LOAD({block});
  EXPECT_FLOAT_EQ(VALUE("dist(c1, CA)"), 1.0f);
  EXPECT_FLOAT_EQ(VALUE("dist(c1, Ca)"), std::sqrt(5.0f));
  EXPECT_EQ(ANSWER("m2 = dist(C1, ca)"),
            "*****At character 10: several sites are called ca: give them different labels\n");
  EXPECT_EQ(ANSWER("m2 = dist(C1, X)"),
            "*****At character 10: several sites are called X: give them different labels\n");
}

// Two atoms that share a site are one in a call: its nearest other image is a cell away.
TEST_F(MEASURING, SITES_THAT_SHARE_A_PLACE_ARE_ONE) {
  CRYSTAL_STRUCTURE_TYPE block =
      MADE({4, 5, 6}, {90, 90, 90}, "P 1",
           {{"Mg1", {0, 0, 0}}, {"Fe1", {0, 0, 0}}, {"O1", {0.5f, 0, 0}}});
  LOAD({block});
  EXPECT_EQ(ANSWER("m = dist(Mg1, Fe1)"),
            "     m = dist(Mg1[1_555], Fe1[1_455])\n"
            "     reference block: 4.00000 Å\n"
            "     Mg1-Fe1 4.000 (2 equal, next 5.000)\n");
  EXPECT_EQ(ANSWER("m = dist(Mg1, Fe1[1_555])"),
            "*****At character 11: two atoms of the call are at one place: choose another symmetry "
            "code for Fe1\n");
  // Through "," and ";": the second O1 is the one that does not stand in the call yet.
  EXPECT_EQ(ANSWER("m = offplane(O1; O1, O1, Mg1[1_565])"),
            "     m = offplane(O1[1_555]; O1[1_455], O1[1_355], Mg1[1_565])\n"
            "     reference block: 0.00000 Å\n"
            "     O1-O1 4.000 (2 equal, next 5.000); O1-O1 4.000 (1 equal, next 5.000)\n");
  EXPECT_EQ(ANSWER("m = dist(Mg1, Mg1[3])"),
            "     m = dist(Mg1[1_555], Mg1[1_545])\n"
            "     reference block: 5.00000 Å\n"
            "     Mg1-Mg1 5.000 (2 equal, next 6.000)\n");
}

// Each of them has its own occupancy, in every block, whatever sites follow.
TEST_F(MEASURING, ATOMS_THAT_SHARE_A_SITE_KEEP_THEIR_OCCUPANCIES) {
  CRYSTAL_STRUCTURE_TYPE block =
      MADE({4, 5, 6}, {90, 90, 90}, "P 1",
           {{"Mg1", {0, 0, 0}}, {"Fe1", {0, 0, 0}}, {"O1", {0.5f, 0, 0}}, {"O2", {0, 0.5f, 0}}});
  block.ATOM(1).OCC = 0.75f;
  block.ATOM(2).OCC = 0.25f;
  LOAD({block, block});
  PHASE(2).ATOM(2).OCC = 0.5f;
  EXPECT_EQ(VALUE("occ(Mg1)"), 0.75f);
  EXPECT_EQ(VALUE("occ(Fe1)"), 0.25f);
  EXPECT_EQ(VALUE("occ(Fe1)", 2), 0.5f);
  EXPECT_EQ(VALUE("occ(O1)"), 1.0f);
}

TEST_F(MEASURING, CONDITIONS_ARE_THOSE_OF_THE_BLOCK) {
  CRYSTAL_STRUCTURE_TYPE block = MOLECULE();
  block.PT(TEMPERATURE, PT_VALUE) = 300.0f;
  block.PT(TEMPERATURE, PT_ESD) = 2.0f;
  block.PT(PRESSURE, PT_VALUE) = 5.0f;
  block.PT(PRESSURE, PT_ESD) = 0.25f;
  LOAD({block});
  EXPECT_EQ(VALUE("T"), 300.0f);
  EXPECT_EQ(ESD("T"), 2.0f);
  EXPECT_EQ(VALUE("P"), 5.0f);
  EXPECT_EQ(ESD("P"), 0.25f);
}

// d asin(x) / dx = 1 / sqrt(1 - x^2) radians: 1.25 at 0.6, so that 0.1 makes 7.16197 degrees.
TEST_F(MEASURING, ARCS_HAVE_ESDS) {
  LOAD({MOLECULE()});
  EXPECT_NEAR(ESD("asin(0.6(1))"), 7.16197f, 1e-4f);
  // d atan(x) / dx = 1 / (1 + x^2): 0.2 at 2, so that 0.1 makes 1.14592 degrees.
  EXPECT_NEAR(ESD("atan(2.0(1))"), 1.14592f, 1e-4f);
  EXPECT_NEAR(ESD("acos(0.6(1))"), 7.16197f, 1e-4f);
}

// In a cubic perovskite the octahedron is 4/3 of the cube of its bond, whatever the cell: the two
// grow together.
// I 4 on primitive axes a, b, (a + b + c)/2, where cos alpha = cos beta = a/(2 c'): 60 degrees when
// both are 4 angstroms. The square of the vector a + c' is 2 a^2 + c'^2, so that its length of
// sqrt(48) grows by 2 a/sqrt(48) with a and by c'/sqrt(48) with c'. The angle, in radians, turns by
// -1/(2 c' sin alpha) with a and by a/(2 c'^2 sin alpha) with c'.
TEST_F(MEASURING, AN_ANGLE_THAT_LENGTHS_RULE_FOLLOWS_THEM) {
  CRYSTAL_STRUCTURE_TYPE phase =
      MADE({4, 4, 4}, {60, 60, 90}, "P 1", {{"C1", {0, 0, 0}, {}}}, {0.01f, 0.01f, 0.02f});
  const std::vector<std::string> operators{"x,y,z", "-y-z,x,z", "-x-z,-y-z,z", "y,-x-z,z"};
  XTAL::SET_SPACEGROUP("", phase.SPG, operators, "FIX");
  ASSERT_EQ(phase.SPG.MULTIP, 4) << XTAL::ERR_SYMM_MESS;
  LOAD({phase});
  EXPECT_FLOAT_EQ(VALUE("dist(C1, C1[1_656])"), std::sqrt(48.0f));
  EXPECT_NEAR(ESD("dist(C1, C1[1_656])"), std::hypot(8 * 0.01, 4 * 0.02) / std::sqrt(48.0), 1e-6);
  const double turn = 180.0 / 3.14159265358979 / (8.0 * std::sqrt(0.75));
  EXPECT_FLOAT_EQ(VALUE("angle(C1[1_655], C1, C1[1_556])"), 60.0f);
  EXPECT_NEAR(ESD("angle(C1[1_655], C1, C1[1_556])"), turn * std::hypot(0.01, 0.02), 1e-5);
}

TEST_F(MEASURING, A_VOLUME_GROWS_WITH_ITS_BONDS) {
  LOAD({MADE({4, 4, 4}, {90, 90, 90}, "P m -3 m", {{"Ti1", {0, 0, 0}}, {"O1", {0.5f, 0, 0}}},
             {0.01f, 0.01f, 0.01f})});
  SAID("\n", [] { FACETOR_CALC::RUN_FACETOR_CALC_BONDS(); });
  const std::string ratio = "vol(Ti1) / bond(Ti1, 1)^3";
  EXPECT_NEAR(VALUE(ratio), 4.0f / 3.0f, 1e-5f);
  EXPECT_NEAR(ESD(ratio), 0.0f, 1e-5f);
  // 3 sigma(a) / a of the volume, 4/3 of 8.
  EXPECT_NEAR(ESD("vol(Ti1)"), 32.0f / 3.0f * 3.0f * 0.01f / 4.0f, 1e-4f);
}

// A unit stands behind one quantity alone, in brackets or not.
TEST_F(MEASURING, UNITS_ARE_THOSE_OF_ONE_QUANTITY) {
  LOAD({MOLECULE()});
  const std::vector<std::pair<std::string, std::string>> units{{"a", " Å"},
                                                               {"alpha", " deg"},
                                                               {"V", " Å³"},
                                                               {"T", " K"},
                                                               {"P", " GPa"},
                                                               {"2*a", ""},
                                                               {"x(C1)", ""},
                                                               {"occ(C1)", ""},
                                                               {"(a)", " Å"},
                                                               {"a/1", ""},
                                                               {"-a", ""},
                                                               {"dist(C1,C2)", " Å"},
                                                               {"angle(C1,C2,C3)", " deg"}};
  for (const auto& [text, unit] : units) {
    const std::string said = ANSWER("m = " + text);
    const std::size_t value = said.find("block: ") + 7;
    const std::size_t behind = said.find_first_of(" \n", value);
    EXPECT_EQ(said.substr(behind, said.find('\n', value) - behind), unit) << text;
  }
}

// The molecule with its fifth atom further along b.
CRYSTAL_STRUCTURE_TYPE WITH_FIFTH_MOVED(float by) {
  CRYSTAL_STRUCTURE_TYPE block = MOLECULE();
  block.ATOM(5).X[1] = 0.3f + by;
  return block;
}

// The shortest distance of the reference block is 1: atoms that have moved by 0.9 and more have no
// partner before CALC.
TEST_F(MEASURING, BEFORE_CALC_ATOMS_MATCH_WITHIN_NINE_TENTHS_OF_THE_SHORTEST_DISTANCE) {
  LOAD({MOLECULE(), WITH_FIFTH_MOVED(0.089f), WITH_FIFTH_MOVED(0.091f)});
  EXPECT_EQ(DEFINE_MEASURE("m", "dist(C3, C5)"), "");
  const std::vector<std::vector<MEASURED_VALUE>> values = MEASURE_BLOCKS({1, 2, 3});
  EXPECT_FLOAT_EQ(values[0][0].VALUE, 2.0f);
  EXPECT_FLOAT_EQ(values[1][0].VALUE, 2.89f);
  EXPECT_FALSE(values[2][0].FOUND);
}

// Of bonds from 1.5 to 2.5 angstroms the shortest are those of 2, though two sites are 1 apart.
TEST_F(MEASURING, BEHIND_CALC_ATOMS_MATCH_WITHIN_NINE_TENTHS_OF_THE_SHORTEST_BOND) {
  LOAD({MOLECULE(), WITH_FIFTH_MOVED(0.179f), WITH_FIFTH_MOVED(0.181f)});
  RUN.DMIN = 1.5f;
  RUN.DMAX = 2.5f;
  RUN.BONDEX = {};
  RUN.BONDEX_ON = false;
  SAID("\n", [] { FACETOR_CALC::RUN_FACETOR_CALC_BONDS(); });
  EXPECT_EQ(DEFINE_MEASURE("m", "dist(C3, C5)"), "");
  const std::vector<std::vector<MEASURED_VALUE>> values = MEASURE_BLOCKS({1, 2, 3});
  EXPECT_FLOAT_EQ(values[0][0].VALUE, 2.0f);
  EXPECT_FLOAT_EQ(values[1][0].VALUE, 3.79f);
  EXPECT_FALSE(values[2][0].FOUND);
}

// A number with an esd is one parameter in all blocks: its share goes out of a ratio to the
// reference block.
TEST_F(MEASURING, A_NUMBER_WITH_AN_ESD_IS_THE_SAME_IN_ALL_BLOCKS) {
  CRYSTAL_STRUCTURE_TYPE other = MOLECULE();
  XTAL::SET_CELL_RECORD({9, 10, 10}, {90, 90, 90}, other.CELL);
  CRYSTAL_STRUCTURE_TYPE first = MOLECULE();
  XTAL::SET_CELL_RECORD({10, 10, 10}, {90, 90, 90}, first.CELL);
  LOAD({first, other});
  EXPECT_EQ(DEFINE_MEASURE("k", "2.0(1)"), "");
  EXPECT_NEAR(ESD("V/k", 2), 900.0f / 2.0f * 0.05f, 1e-3f);
  EXPECT_EQ(ESD("V/k/ref(V/k)", 2), 0.0f);
  EXPECT_FLOAT_EQ(VALUE("V/k/ref(V/k)", 2), 0.9f);
}

// Values stand in twelve columns: a name of eleven letters still has a blank before it.
TEST_F(MEASURING, A_NAME_THAT_FITS_ENDS_ABOVE_ITS_VALUES) {
  LOAD({MOLECULE()});
  for (const std::string name : {"m", "ten_letter", "eleven_char"}) {
    MEASURES.clear();
    EXPECT_EQ(DEFINE_MEASURE(name, "1.5"), "");
    std::istringstream table(SAID("", [] { FACETOR_LIST::FACETOR_LIST_MEASURES(""); }));
    std::string head;
    std::string row;
    std::getline(table, head);
    std::getline(table, row);
    EXPECT_TRUE(head.ends_with(" " + name)) << head;
    EXPECT_TRUE(row.ends_with(" 1.5000")) << row;
    EXPECT_EQ(head.size(), row.size()) << head << '\n' << row;
  }
}

// A polyhedron's measure outlives the results that it was defined with.
TEST_F(MEASURING, WHAT_WAITS_FOR_CALC_IS_TOLD) {
  EXPECT_EQ(ANSWER("size = vol(Si1)"), "     size = vol(Si1)\n");
  LOAD({QUARTZ(quartz_sites)});
  SAID("", [] { FOLLOW_REFERENCE(); });
  EXPECT_EQ(ANSWER("size"), "     size = vol(Si1[1_555])\n*****CALC polyhedra first\n");
  const std::string said = SAID("\n", [] { FACETOR_MEASURE::RUN_MEASURE(); });
  EXPECT_LT(said.find("*****CALC polyhedra first\n"), said.find("BLOCKNAME")) << said;
  SAID("\n", [] { FACETOR_CALC::RUN_FACETOR_CALC_BONDS(); });
  EXPECT_NE(ANSWER("size").find("     reference block: 2."), std::string::npos);
  EXPECT_EQ(SAID("", [] { WARN_OF_MEASURED_MATCHES({1}); }), "");
}

TEST_F(MEASURING, THE_MENUS_HAVE_MEASURES_ONCE_THERE_IS_ONE) {
  LOAD({MOLECULE()});
  EXPECT_EQ(FACETOR_LIST::LIST_MENU().back(), "adps");
  EXPECT_EQ(DEFINE_MEASURE("m", "a"), "");
  EXPECT_EQ(FACETOR_LIST::LIST_MENU().back(), "measures");
  EXPECT_EQ(FACETOR_LIST::TABLE_MENU().back(), "measures");
}

}  // namespace
