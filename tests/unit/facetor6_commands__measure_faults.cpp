// MEASURE: expressions that break off or are wrongly put together, atoms that cannot be placed, and
// what stands between the parts of one that is right. Characters are counted in the line from the
// one behind "m = ".
#include <cmath>

#include "console__dialogue.h"
#include "facetor6_commands__measuring.h"
#include "src/facetor6_console/measure_list.h"
#include "src/facetor6_console/parameters.h"
#include "src/facetor6_console/phase_list.h"
#include "structures.h"

namespace {

using namespace FACETOR_CONSOLE;
using namespace STRUCTURES;

class MEASURE_FAULTS : public MEASURE_TESTS::MEASURE_TEST {
 protected:
  void SetUp() override {
    MEASURE_TEST::SetUp();
    STRUCTURE_LIST list;
    // A cube of 10 angstroms without symmetry: C1, C2 and C3 in line along x.
    list.ADD(MADE({10, 10, 10}, {90, 90, 90}, "P 1",
                  {{"C1", {0.1f, 0.0f, 0.0f}},
                   {"C2", {0.2f, 0.0f, 0.0f}},
                   {"C3", {0.3f, 0.0f, 0.0f}},
                   {"C4", {0.1f, 0.3f, 0.0f}},
                   {"C 5", {0.1f, 0.0f, 0.2f}},
                   {"C6'", {0.1f, 0.3f, 0.3f}}}));
    bool error = false;
    ADD_PHASE_LIST(list, list.COUNT(), error);
    ASSERT_FALSE(error);
  }

  static void EXPECT_FAULT(const std::string& text, int character, const std::string& fault) {
    EXPECT_EQ(DEFINE_MEASURE("m", text),
              "*****At character " + std::to_string(character) + ": " + fault)
        << text;
    EXPECT_TRUE(MEASURES.empty()) << text;
  }

  static float VALUE(const std::string& text) {
    EXPECT_EQ(DEFINE_MEASURE("m", text), "") << text;
    const MEASURED_VALUE value = MEASURE_BLOCKS({1}).front().front();
    EXPECT_TRUE(value.FOUND) << text;
    MEASURES.clear();
    return value.VALUE;
  }
};

const std::string site_wanted =
    "a site label is wanted: put labels with other characters in quotes, as in 'O 1'";
const std::string commas_wanted =
    ": commas stand between sites, and labels with other characters in quotes, as in 'O 1'";
const std::string code_wanted =
    "square brackets hold a symmetry code as in [4_655], or a number as in [2]";
const std::string value_wanted = ": a number, a quantity or a measure is wanted";

TEST_F(MEASURE_FAULTS, WHAT_BREAKS_OFF_IS_TOLD_BEHIND_ITS_LAST_CHARACTER) {
  const std::string early = "the end comes too early: ";
  EXPECT_FAULT("dist(C1, C2", 12, early + "\")\" is wanted behind dist(...");
  EXPECT_FAULT("angle(C1, C2, C3", 17, early + "\")\" is wanted behind angle(...");
  EXPECT_FAULT("dist(centroid(C1, C2", 21, early + "\")\" is wanted behind the atoms of centroid");
  EXPECT_FAULT("sqrt(", 6, early + value_wanted.substr(2));
  EXPECT_FAULT("sqrt(2", 7, early + "\")\" is wanted behind sqrt(...");
  EXPECT_FAULT("min(1,", 7, early + value_wanted.substr(2));
  EXPECT_FAULT("sqrt", 5, early + "\"(\" is wanted behind sqrt");
  EXPECT_FAULT("ref", 4, early + "\"(\" is wanted behind ref");
  EXPECT_FAULT("2*", 3, early + value_wanted.substr(2));
  EXPECT_FAULT("2^", 3, early + value_wanted.substr(2));
  EXPECT_FAULT("-", 2, early + value_wanted.substr(2));
  EXPECT_FAULT("5.0(4", 1, "an esd is written as in 5.0347(4)");
  EXPECT_FAULT("dist('", 6, "a quote is not closed: ' is wanted behind the label");
  EXPECT_FAULT("dist(C1, C2[1", 13, code_wanted);
  EXPECT_FAULT("dist(C1, C2[1_", 13, code_wanted);
  EXPECT_FAULT("dist(C1, ", 10, site_wanted);
}

TEST_F(MEASURE_FAULTS, A_FAULT_WITHIN_BRACKETS_IS_TOLD_WHERE_IT_STANDS) {
  EXPECT_FAULT("(2 + )", 6, "unexpected \")\"" + value_wanted);
  EXPECT_FAULT("sqrt(2 + )", 10, "unexpected \")\"" + value_wanted);
  EXPECT_FAULT("min(1, )", 8, "unexpected \")\"" + value_wanted);
  EXPECT_FAULT("ref(2 + )", 9, "unexpected \")\"" + value_wanted);
  EXPECT_FAULT("ref V", 5, "unexpected \"V\": \"(\" is wanted behind ref");
  EXPECT_FAULT("2 * )", 5, "unexpected \")\"" + value_wanted);
  EXPECT_FAULT("2 ^ )", 5, "unexpected \")\"" + value_wanted);
  EXPECT_FAULT("- )", 3, "unexpected \")\"" + value_wanted);
  EXPECT_FAULT("\xC3\xA9", 1, "unexpected \"\xC3\xA9\"" + value_wanted);
  EXPECT_FAULT("5e", 2, "unexpected \"e\": an operator or the end is wanted");
  EXPECT_FAULT("5e+", 2, "unexpected \"e\": an operator or the end is wanted");
  EXPECT_FAULT("5Ex", 2, "unexpected \"E\": an operator or the end is wanted");
}

TEST_F(MEASURE_FAULTS, OF_THE_FORM_OF_A_QUANTITY) {
  EXPECT_FAULT("dist", 1, "dist is written as dist(A, B)");
  EXPECT_FAULT("dist(C1; C2)", 1, "dist is written as dist(A, B)");
  EXPECT_FAULT("1 + dist(C1, C2, C4)", 5, "dist is written as dist(A, B)");
  EXPECT_FAULT("angle(C1)", 1, "angle is written as angle(A, B, C) or angle(M, k, l)");
  EXPECT_FAULT("angle(, C1)", 7, site_wanted);
  EXPECT_FAULT("angle(C1, )", 11, site_wanted);
  EXPECT_FAULT("angle(C1, 2", 11, "a label of digits alone stands in quotes: '2'");
  EXPECT_FAULT("angle(centroid(C1,C2), 1, 2)", 24, "a label of digits alone stands in quotes: '1'");
  EXPECT_FAULT("torsion(C1, C2, C3)", 1, "torsion is written as torsion(A, B, C, D)");
  EXPECT_FAULT("x()", 3, site_wanted);
  EXPECT_FAULT("x(C1, C2)", 1, "x is written as x(A)");
  EXPECT_FAULT("x(C1; C2)", 5, "unexpected \";\": \")\" is wanted behind x(...");
  EXPECT_FAULT("offplane(; C1)", 10, site_wanted);
  EXPECT_FAULT("offplane(C1; )", 14, site_wanted);
  EXPECT_FAULT("offplane(C1, C2; C3, C4, C6')", 1,
               "offplane is written as offplane(A; B, C, D, ...)");
  EXPECT_FAULT("planes(C1, C2, C4; C3, C4)", 1,
               "a plane takes three atoms or more: planes(A, B, C; D, E, F)");
  EXPECT_FAULT("bond(, 1)", 6, site_wanted);
  EXPECT_FAULT("bond(C1, 10000)", 10, "a bond number is wanted, from 1, as in bond(M, k)");
  EXPECT_FAULT("edge(C1, 1)", 1, "edge is written as edge(M, k, l)");
  EXPECT_FAULT("edge(C1, 1, x)", 13, "a bond number is wanted, from 1, as in edge(M, k, l)");
}

TEST_F(MEASURE_FAULTS, OF_CENTROIDS) {
  EXPECT_FAULT("dist(centroid C1, C2)", 15, "unexpected \"C\"" + commas_wanted);
  EXPECT_FAULT("dist(centroid(C1, C2; C3), C4)", 21,
               "unexpected \";\": \")\" is wanted behind the atoms of centroid");
  EXPECT_FAULT("dist(centroid(C1, ), C4)", 19, site_wanted);
  // Each is within the sum and the factor that begin the text: the 99th is the 101st step inwards.
  std::string deep = "dist(";
  for (int k = 0; k < 99; ++k) deep += "centroid(";
  EXPECT_FAULT(deep, 5 + 98 * 9 + 8 + 1,
               "too many brackets, signs or powers within each other: define parts of it first");
}

TEST_F(MEASURE_FAULTS, OF_LABELS_AND_CODES) {
  EXPECT_FAULT("dist(C1, C2[])", 13, code_wanted);
  EXPECT_FAULT("dist(C1, C2[10000])", 13, code_wanted);
  EXPECT_FAULT("dist(C1, C2[1_555)", 13, code_wanted);
  EXPECT_FAULT("dist(C1, C2[1_5555])", 13, code_wanted);
  EXPECT_FAULT("dist(C1, C2(1]", 14,
               "\")\" is wanted in the site label: put other labels in quotes, as in 'O 1'");
  EXPECT_FAULT("dist(C1, 'C 5' C2)", 10, "a quote is not closed: ' is wanted behind the label");
  EXPECT_FAULT("dist(C1, C2[1_555] C3)", 20, "unexpected \"C\"" + commas_wanted);
}

TEST_F(MEASURE_FAULTS, OF_SITES_THAT_ARE_OMITTED) {
  PHASE(1).ATOM_USE(2) = ATOM_OMITTED;
  EXPECT_FAULT("dist(C1, C2)", 10, "site C2 is omitted: USE it in ATOMEDIT first");
}

// The plane of C1, C2, C4 is that of x and y.
TEST_F(MEASURE_FAULTS, OF_PLANES_WHOSE_ATOMS_ARE_IN_LINE) {
  const std::string fault = "the atoms of a plane are in line: choose others";
  EXPECT_FAULT("planes(C1, C2, C3; C1, C2, C4)", 1, fault);
  EXPECT_FAULT("planes(C1, C2, C4; C1, C2, C3)", 1, fault);
  EXPECT_FAULT("offplane(C4; C1, C2, C3)", 1, fault);
  EXPECT_NEAR(VALUE("offplane(C6'; C1, C2[1_555], C4)"), 3.0f, 1e-5f);
}

TEST_F(MEASURE_FAULTS, BLANKS_AND_QUOTES_ARE_NONE) {
  EXPECT_FLOAT_EQ(VALUE("\t1 +\t2 \t* 3"), 7.0f);
  EXPECT_FLOAT_EQ(VALUE("dist( 'C1' , 'C 5' )"), 2.0f);
  EXPECT_FLOAT_EQ(VALUE("dist('C 5' [1_555] ,C1 [ 1_555 ])"), 2.0f);
  EXPECT_FLOAT_EQ(VALUE("dist('C6'', C4)"), 3.0f);
  EXPECT_FLOAT_EQ(VALUE("offplane('C6''; 'C1', 'C2', C4) + dist(C4, 'C6'')"), 6.0f);
  EXPECT_FLOAT_EQ(VALUE("5E+2 + 5e-1 + 1.5e1"), 515.5f);
  // From the middle of 1 and 2.5 along x.
  EXPECT_NEAR(VALUE("dist(centroid (C1, Centroid(C2,\tC3) ) , C4)"), std::hypot(0.75f, 3.0f),
              1e-5f);
}

}  // namespace
