// SET and SHOW line by line, what a change of the reference block keeps, and the valence report.
#include "src/facetor6_console/parameters.h"

#include "phases.h"
#include "structures.h"

using namespace FACETOR_CONSOLE;
using namespace STRUCTURES;

namespace {

class PARAMETERS : public PHASE_TESTS::PHASES {
 protected:
  using PHASES::ADD;
  static void ADD(const std::string& title, const std::vector<SITE>& sites) {
    CRYSTAL_STRUCTURE_TYPE phase = MADE({9, 9, 9}, {90, 90, 90}, "P 1", sites);
    phase.BLOCK_TITLE = title;
    phase.PT(TEMPERATURE, PT_VALUE) = 298.0f;
    ADD(phase);
  }

  // Stores the bonds of the reference block as measured in every block, as CALC does.
  static void MEASURE() {
    CALC_BONDS_ALLATOMS(REFERENCE(), RUN.DMIN, RUN.DMAX, &RUN.BONDEX);
    const float radius = MATCHING_RADIUS(REFERENCE());
    const std::vector<BOND_TARGETS> targets = TARGETS_OF(REFERENCE());
    for (int block = 1; block <= NPHASES; ++block)
      MEASURE_BLOCK(targets, RULER_FOR(PHASE(block)), PHASE(block), radius);
  }
};

const std::vector<SITE> silica{
    {"Si1", {0.1f, 0, 0}}, {"O1", {0.28f, 0, 0}}, {"O2", {0.1f, 0.18f, 0}}};

// The text starts in column (100 - 16) / 2 = 42, so 41 stars precede it; 42 follow its blank.
const std::string settings_head =
    "\n" + std::string(41, '*') + "Current Settings " + std::string(42, '*') + "\n\n";

const std::string ranges = "\n        Current range of distances is:  0.01 to  2.20\n";

const std::string reference_question =
    "\n     Input number of new reference (blank for no change):";

}  // namespace

// ---- SHOW ----

TEST_F(PARAMETERS, SHOW_AT_THE_START) {
  EXPECT_EQ(SAID("", RUN_SHOW_FACETOR_PARAMS),
            settings_head + "     All data blocks will be listed in output\n" + ranges +
                "     Symmetry codes of the reference block will not be listed for bond lengths "
                "and angles\n"
                "\n     REFERENCE BLOCK IS #1:\n"
                "\n  For calculation of atom-atom distances:\n"
                "     equiv same atom distances are EXCLUDED\n"
                "     same element distances are EXCLUDED\n"
                "     cation-cation distances are EXCLUDED\n"
                "     anion-anion distances are EXCLUDED\n\n\n");
}

TEST_F(PARAMETERS, SHOW_AFTER_CHANGES) {
  ADD("quartz", silica);
  PHASE(1).PT(PRESSURE, PT_VALUE) = 12.3456f;
  RUN = {false, true, 1.0f, 12.5f, {{true, false, true, false}}, true};
  EXPECT_EQ(SAID("", RUN_SHOW_FACETOR_PARAMS),
            settings_head +
                "     Only data blocks with use flag set will be listed in output\n"
                "\n        Current range of distances is:  1.00 to 12.50\n"
                "     Symmetry codes of the reference block will be given in lists of bond lengths "
                "and angles\n"
                "\n     REFERENCE BLOCK IS #1: quartz   T = 298.0 K, P = 12.346 GPa\n"
                "\n  For calculation of atom-atom distances:\n"
                "     equiv same atom distances are EXCLUDED\n"
                "     same element distances are INCLUDED\n"
                "     cation-cation distances are EXCLUDED\n"
                "     anion-anion distances are INCLUDED\n\n\n");
}

TEST_F(PARAMETERS, THE_REFERENCE_BLOCK_IS_SHOWN_WITH_ALL_DIGITS) {
  ADD("hot", silica);
  PHASE(1).PT(TEMPERATURE, PT_VALUE) = 1234567.0f;
  PHASE(1).PT(PRESSURE, PT_VALUE) = 12345.5f;
  EXPECT_EQ(SAID("", WRITE_REFERENCE),
            "\n     REFERENCE BLOCK IS #1: hot   T =1234567.0 K, P =12345.500 GPa\n");
}

// ---- SET ----

TEST_F(PARAMETERS, SET_LEADS_TO_THE_OTHER_DIALOGUES) {
  CONSOLE_TESTS::PEND("dmin");
  EXPECT_EQ(SAID("1.2 2\n", RUN_SET_FACETOR_PARAMS),
            ranges +
                "\n      Input dmin and dmax for bond length calculation (blank for no change):"
                "\n        Current range of distances is now:  1.20 to  2.00\n");
  CONSOLE_TESTS::PEND("exclude");
  EXPECT_EQ(SAID("\nn\ny\nx\n\n", RUN_SET_FACETOR_PARAMS),
            "\n   Here you can set the types of atom-atom distances to be included or excluded "
            "from calculations\n\n"
            "    Do you want the following types of atom-atom distances to be INCLUDED in "
            "calculations?\n"
            "     equiv same atom distances: (Y/N) <Y>?"
            "     same element distances: (Y/N) <Y>?"
            "     cation-cation distances: (Y/N) <Y>?"
            "     anion-anion distances: (Y/N) <Y>?"
            "     anion-anion distances: (Y/N) <Y>?"
            "\n  For calculation of atom-atom distances:\n"
            "     equiv same atom distances are INCLUDED\n"
            "     same element distances are EXCLUDED\n"
            "     cation-cation distances are INCLUDED\n"
            "     anion-anion distances are INCLUDED\n\n\n");
}

TEST_F(PARAMETERS, A_DISTANCE_LIMIT_THAT_IS_NO_NUMBER_IS_ASKED_FOR_AGAIN) {
  const std::string question =
      "\n      Input dmin and dmax for bond length calculation (blank for no change):";
  EXPECT_EQ(SAID("short long\n1\n1e9 1\n", GET_INPUT_DMIN_DMAX),
            ranges + question + question + question +
                "\n        Current range of distances is now:  1.00 to *****\n");
  EXPECT_EQ(RUN.DMIN, 1.0f);
  EXPECT_EQ(RUN.DMAX, 1e9f);
}

// ---- the reference block ----

TEST_F(PARAMETERS, AN_UNCHANGED_REFERENCE) {
  ADD("a", silica);
  EXPECT_EQ(SAID("\n", SET_REFERENCE),
            "\n     REFERENCE BLOCK IS #1: a   T = 298.0 K, P =  0.000 GPa\n" + reference_question +
                "\n     Reference block unchanged\n");
}

TEST_F(PARAMETERS, A_BLOCK_OF_THE_SAME_ATOMS_KEEPS_THE_RESULTS_WITH_OLD_CODES) {
  ADD("a", silica);
  std::vector<SITE> moved = silica;
  moved[1] = {"Oa", {0.285f, 0.005f, 0}};
  ADD("b", moved);
  MEASURE();
  ASSERT_EQ(PHASE(1).NBONDS(1), 2);
  RUN.LIST_SYMCODES = true;
  EXPECT_EQ(SAID("2\n", SET_REFERENCE),
            "\n     REFERENCE BLOCK IS #1: a   T = 298.0 K, P =  0.000 GPa\n" + reference_question +
                "\n     REFERENCE BLOCK IS #2: b   T = 298.0 K, P =  0.000 GPa\n"
                "\n*****Run calc poly again to update the sym codes for all ligands\n");
  EXPECT_EQ(IREFERENCE, 2);
  EXPECT_EQ(PHASE(1).NBONDS(1), 2);
  RUN.LIST_SYMCODES = false;
  EXPECT_EQ(SAID("1\n", SET_REFERENCE),
            "\n     REFERENCE BLOCK IS #2: b   T = 298.0 K, P =  0.000 GPa\n" + reference_question +
                "\n     REFERENCE BLOCK IS #1: a   T = 298.0 K, P =  0.000 GPa\n")
      << "without codes in the lists there is nothing to tell";
}

TEST_F(PARAMETERS, A_BLOCK_WITH_ITS_ATOMS_IN_ANOTHER_ORDER_LOSES_THE_RESULTS) {
  ADD("a", silica);
  ADD("b", {silica[0], silica[2], silica[1]});
  MEASURE();
  ASSERT_EQ(PHASE(2).NBONDS(1), 2) << "the bonds are the same, the numbers are not";
  VALENCES_DONE = true;
  RUN.LIST_SYMCODES = true;
  EXPECT_EQ(SAID("2\n", SET_REFERENCE),
            "\n     REFERENCE BLOCK IS #1: a   T = 298.0 K, P =  0.000 GPa\n" + reference_question +
                "\n     REFERENCE BLOCK IS #2: b   T = 298.0 K, P =  0.000 GPa\n"
                "\n*****WARNING: The atoms of the new reference block do not match: run calc poly "
                "again\n\n");
  for (int block = 1; block <= 2; ++block) EXPECT_EQ(SUM_NBONDS(PHASE(block)), 0);
  EXPECT_FALSE(VALENCES_DONE);
}

// What a transformed block held is gone; what the others hold is still in its order.
TEST_F(PARAMETERS, A_REFERENCE_THAT_LOST_ITS_BONDS_LEAVES_NO_ORDER_TO_KEEP) {
  ADD("a", silica);
  ADD("b", {silica[1], silica[2], silica[0]});
  MEASURE();
  CLEAR_GEOMETRY(PHASE(1));
  for (int i : {2, 3}) PHASE(2).NBONDS(i) = NO_CENTRE;  // counted, these would hide the bonds
  EXPECT_TRUE(SAID("2\n", SET_REFERENCE)
                  .ends_with("*****WARNING: The atoms of the new reference block do not match: "
                             "run calc poly again\n\n"));
  EXPECT_EQ(PHASE(2).NBONDS(1), 0);
}

TEST_F(PARAMETERS, A_BLOCK_THAT_LACKS_A_BOND_OR_A_CENTRE_LOSES_THE_RESULTS) {
  ADD("a", silica);
  ADD("no O2", {silica[0], silica[1], {"O2", {0.5f, 0.5f, 0.5f}}});
  MEASURE();
  ASSERT_EQ(PHASE(2).NBONDS(1), 1);
  ASSERT_EQ(PHASE(2).NBONDS(3), NO_CENTRE);
  SAID("2\n", SET_REFERENCE);
  EXPECT_EQ(SUM_NBONDS(PHASE(1)), 0);
}

TEST_F(PARAMETERS, A_BLOCK_THAT_WAS_NOT_MEASURED_LOSES_THE_RESULTS) {
  ADD("a", silica);
  MEASURE();
  ADD("b", silica);
  ASSERT_EQ(PHASE(1).NBONDS(1), 2);
  SAID("2\n", SET_REFERENCE);
  EXPECT_EQ(SUM_NBONDS(PHASE(1)), 0);
}

TEST_F(PARAMETERS, WITHOUT_RESULTS_A_CHANGE_SAYS_NOTHING_OF_THEM) {
  ADD("a", silica);
  ADD("b", {silica[2]});
  EXPECT_EQ(SAID("2\n", SET_REFERENCE),
            "\n     REFERENCE BLOCK IS #1: a   T = 298.0 K, P =  0.000 GPa\n" + reference_question +
                "\n     REFERENCE BLOCK IS #2: b   T = 298.0 K, P =  0.000 GPa\n");
}

TEST_F(PARAMETERS, OMITTING_THE_REFERENCE_CHECKS_THE_NEW_ONE_TOO) {
  ADD("a", silica);
  ADD("b", {silica[0], silica[2], silica[1]});
  MEASURE();
  CONSOLE_TESTS::PEND("1");
  EXPECT_EQ(SAID("2\n", OMIT_FACETOR_LIST),
            "\n*****WARNING: The previous reference block is now omitted. You must set a new "
            "reference block!\n\n"
            "\n     REFERENCE BLOCK IS #1: a   T = 298.0 K, P =  0.000 GPa\n" +
                reference_question +
                "\n     REFERENCE BLOCK IS #2: b   T = 298.0 K, P =  0.000 GPa\n"
                "\n*****WARNING: The atoms of the new reference block do not match: run calc poly "
                "again\n\n");
  EXPECT_EQ(SUM_NBONDS(PHASE(1)), 0);
}

TEST_F(PARAMETERS, A_BLOCK_NUMBER_IS_ROUNDED) {
  for (const char* title : {"a", "b", "c"}) ADD(title, silica);
  SAID("1.6\n", SET_REFERENCE);
  EXPECT_EQ(IREFERENCE, 2);
  SAID("3.4\n", SET_REFERENCE);
  EXPECT_EQ(IREFERENCE, 3);
  SAID("3.6\n", SET_REFERENCE);
  EXPECT_EQ(IREFERENCE, 3) << "there is no block 4";
}

// ---- forgetting ----

TEST_F(PARAMETERS, CLEARING_THE_BONDS_LEAVES_ONLY_THE_CENTRES) {
  ADD("a", silica);
  ADD("b", silica);
  for (int block = 1; block <= NPHASES_ALLOCATED; ++block) {
    CRYSTAL_STRUCTURE_TYPE& phase = PHASE(block);
    phase.NBONDS(1) = 2;
    phase.BONDS(1, 2, BOND_LENGTH) = 1.6f;
    phase.BOND_CEN(1, CENTRE_ATOM) = 3.0f;
    phase.NANGLES(1) = 1;
    phase.BANGLES(1, 1, 2, ANGLE) = 90.0f;
    phase.POLYHEDRON(1, POLY_VOLUME) = 2.0f;
  }
  VALENCES_DONE = true;
  CLEAR_FACETOR_BONDS();
  for (int block = 1; block <= NPHASES_ALLOCATED; ++block) {
    const CRYSTAL_STRUCTURE_TYPE& phase = PHASE(block);
    EXPECT_EQ(phase.NBONDS(1), 0);
    EXPECT_EQ(phase.BONDS(1, 2, BOND_LENGTH), 0.0f);
    EXPECT_EQ(phase.BOND_CEN(1, CENTRE_ATOM), 3.0f);
    EXPECT_EQ(phase.NANGLES(1), 0);
    EXPECT_EQ(phase.BANGLES(1, 1, 2, ANGLE), 0.0f);
    EXPECT_EQ(phase.POLYHEDRON(1, POLY_VOLUME), 0.0f);
  }
  EXPECT_FALSE(VALENCES_DONE);
}

TEST_F(PARAMETERS, CLEARING_THE_VALENCES_FORGETS_PAIRS_FLAGS_AND_THAT_THEY_WERE_DONE) {
  BV_PAIRS.ADD({});
  BV_MISSING.ADD({"SI+4", "XX-2"});
  BV_FLAGS.FILL(true);
  VALENCES_DONE = true;
  CLEAR_FACETOR_VALENCE();
  EXPECT_EQ(BV_PAIRS.COUNT(), 0);
  EXPECT_EQ(BV_MISSING.COUNT(), 0);
  for (bool flag : BV_FLAGS) EXPECT_FALSE(flag);
  EXPECT_FALSE(VALENCES_DONE);
}

// ---- the valence report ----

// d0 has eleven digits for eleven columns, so it lacks a blank; b has nine for six and lacks four.
TEST_F(PARAMETERS, THE_VALENCE_REPORT_WIDENS) {
  BV_PAIRS.ADD({"SI+4", "O-2", 98765.4375f, 1234567.875f, "mine"});
  EXPECT_EQ(SAID("", REPORT_BVS_PARAMS),
            "\n          These are the parameters used to calculate bond valences\n"
            "\n         Bond type          d0        b      source\n"
            "      1: SI+4 -- O-2  1234567.875 98765.438  mine\n");
}

TEST_F(PARAMETERS, THE_VALENCE_REPORT_HAS_PAIRS_MISSING_PAIRS_AND_ALL_FLAGS) {
  for (int row = 1; row <= 10; ++row) {
    BV_PAIR pair;
    pair.CATION = row == 10 ? "AL+3" : "H+1";
    pair.ANION = "O-2";
    pair.D0 = 1.651f;
    pair.B = 0.37f;
    pair.SOURCE = "somewhere";
    BV_PAIRS.ADD(pair);
  }
  BV_MISSING.ADD({"SI+4", "XX-2"});
  BV_MISSING.ADD({"K+1", "O-2"});
  BV_FLAGS.FILL(true);
  const std::string said = SAID("", REPORT_BVS_PARAMS);
  EXPECT_NE(said.find("      1: H+1  -- O-2       1.651 0.370  somewhere\n"), std::string::npos);
  EXPECT_TRUE(said.ends_with(
      "     10: AL+3 -- O-2       1.651 0.370  somewhere\n"
      "\n***** Parameters for the following atom pairs were not found, use AtomEdit to set "
      "scattering factors:\n"
      "     SI+4 -- XX-2\n"
      "     K+1  -- O-2\n"
      "***** Scattering factor symbols of atoms have been modfied by Gemmara to match bond valence "
      "tables\n"
      "***** Some atoms are not recognised as elements: use AtomEdit to set scattering factors\n"
      "***** Bond valence parameters not found for these atoms: use AtomEdit to set scattering "
      "factors\n"
      "***** Scattering factor symbols of atoms have been modfied by the user to match bond "
      "valence "
      "tables\n"
      "***** Bond valence parameters for some atoms have been set by the user\n"
      "***** More than 40 cation-anion pairs found in the structures; this exceeds program "
      "capacity\n"
      "***** Bond valences cannot be calculated if both the central atom and ligand sites have "
      "multiple occupancy\n"))
      << said;
  for (std::string_view text : BV_FLAG_TEXTS) EXPECT_LE(text.size(), 100u);
}

// ---- taking in blocks ----

TEST_F(PARAMETERS, BLOCKS_COME_IN_CLEAN) {
  ADD("a", {{"Si1", {-0.25f, 1.0f, 2.5f}},
            {"Al1", {0.75f, 0.0005f, 0.5f}},
            {"Mg1", {0.75f, 0, 0.5f}},
            {"Fe1", {0.75f, 0, 0.5f}}});
  const CRYSTAL_STRUCTURE_TYPE& phase = PHASE(1);
  EXPECT_EQ(phase.ATOM(1).X, (VECTOR3{0.75f, 0.0f, 0.5f}));
  EXPECT_EQ(phase.ATOM_USE.ITEMS, (std::vector<int>{1, -1, -1, -1}));
  EXPECT_EQ(phase.ATOM_DUP(1, 1), 2) << "0.0045 angstroms away";
  EXPECT_EQ(phase.ATOM_DUP(1, 2), 3) << "the fourth label is remembered nowhere";
}

TEST_F(PARAMETERS, THE_LIST_GROWS_WITH_ITS_ORDER_AND_USE_FLAGS) {
  ALLOCATE_PHASE_LIST(2);
  ADD("a", silica);
  ADD("b", silica);
  PHASE(1).PT(PRESSURE, PT_VALUE) = 2.0f;
  SAID("\n\n", SORT_FACETOR_LIST);
  IUSE(2) = 0;
  ADD("c", silica);
  EXPECT_EQ(NPHASES_ALLOCATED, 3);
  EXPECT_EQ(ISORT.ITEMS, (std::vector<int>{2, 1, 3}));
  EXPECT_EQ(IUSE.ITEMS, (std::vector<int>{1, 0, 1}));
}

TEST_F(PARAMETERS, A_BLOCK_WITH_MORE_ATOMS_TELLS_WHAT_IT_COSTS) {
  const auto read = [](const std::vector<SITE>& sites) {
    return SAID("", [&sites] { ADD("new", sites); });
  };
  std::vector<SITE> sites = silica;
  ADD("a", sites);
  sites.push_back({"Mg1", {0.1f, 0.2f, 0.3f}});
  EXPECT_EQ(read(sites), "") << "there is nothing to lose";
  PHASE(1).NBONDS(1) = 2;
  PHASE(2).ATOM_USE(3) = 0;
  EXPECT_EQ(read(sites), "") << "there is room";
  sites.push_back({"Mg2", {0.4f, 0.2f, 0.3f}});
  EXPECT_EQ(read(sites),
            "\n*****WARNING: A new block has more atoms: the bonds are dropped, run calc poly "
            "again\n\n"
            "\n*****WARNING: A new block has more atoms: omitted atoms are used again, omit them "
            "anew\n\n");
  EXPECT_EQ(PHASE(1).NBONDS(1), 0);
  EXPECT_EQ(PHASE(2).ATOM_USE(3), 1);
}

TEST_F(PARAMETERS, NO_MORE_BLOCKS_ARE_ADDED_THAN_WERE_READ) {
  STRUCTURE_LIST newx;
  newx.ADD(MADE({9, 9, 9}, {90, 90, 90}, "P 1", silica));
  bool error = true;
  ADD_PHASE_LIST(newx, 5, error);
  EXPECT_FALSE(error);
  EXPECT_EQ(NPHASES, 1);
}

TEST_F(PARAMETERS, USE_IS_IMPOSSIBLE_WITH_ALL_BLOCKS_OMITTED) {
  ADD("a", silica);
  IUSE(1) = 0;
  CONSOLE_TESTS::PEND("1");
  EXPECT_EQ(SAID("", USE_FACETOR_LIST), "\n*****WARNING: No datablocks with use flags set!\n\n");
  EXPECT_EQ(IUSE(1), 0);
}

TEST_F(PARAMETERS, AT_THE_PROMPT_A_LIST_GOES_ON_UNTIL_A_BLANK_LINE) {
  for (const char* title : {"a", "b", "c"}) ADD(title, silica);
  const std::string hint =
      "\n  (Input negative numbers to define a range: 4,-7 means 4,5,6 and 7, or 'all' for "
      "everything)\n";
  const std::string question = "\nInput the datablock numbers to omit, <CR> to exit:";
  EXPECT_EQ(SAID("2\n3\n\n", OMIT_FACETOR_LIST), hint + question + question + question);
  EXPECT_EQ(IUSE.ITEMS[0] + IUSE.ITEMS[1] + IUSE.ITEMS[2], 1);
  EXPECT_EQ(SAID("\n", USE_FACETOR_LIST),
            hint + "\nInput the datablock numbers to use, <CR> to exit:");
}
