// Limits and answers of the editing commands: what counts as an answer of PTEDIT, how near an
// equivalent atom lies for USE and OMIT, the smallest distance, and unknown elements.
#include "facetor6_commands__check_ptedit.h"
#include "src/facetor6_atomedit/atomedit.h"
#include "src/facetor6_ptedit/ptedit.h"

using namespace BLOCK_TESTS;
using namespace FACETOR_CONSOLE;
using FACETOR_ATOMEDIT::RUN_ATOMEDIT;
using FACETOR_PTEDIT::RUN_PTEDIT;

namespace {

class EDITING_LIMITS : public BLOCK_COMMANDS {
 protected:
  // One silicon atom in a cell of 10 angstroms.
  static void ADD_SILICON(float x_frac) {
    ADD(MADE({10, 10, 10}, {90, 90, 90}, "P 1", {{"Si1", {x_frac, 0, 0}}}));
  }
};

const std::string unknown =
    "\n*****WARNING: Some atoms are not recognised as elements: use AtomEdit to set scattering "
    "factors\n\n";

}  // namespace

// ---- PTEDIT ----

TEST_F(EDITING_LIMITS, THE_FIRST_CHARACTER_SAYS_WHAT_IS_TO_BE_CHANGED) {
  ADD_BLOCKS(1);
  const std::string ask = "     Do you want to change P or T or both (blank to exit)?";
  const std::string begin = "     Input the block number or range plus ";
  const std::string said =
      SAID("xp\npressure\n1 2.5\n\nTemp\n1 400\n\nboth\n1 3.5 500\n\n\n", RUN_PTEDIT);
  const std::string changed = "\n*****These are the new P and T:\n";
  EXPECT_TRUE(HOLDS(said, ask + ask + changed + begin + "P and esdP (esd optional):")) << said;
  EXPECT_TRUE(HOLDS(said, ask + changed + begin + "T and esdT (in K, esd optional):")) << said;
  EXPECT_TRUE(HOLDS(said, ask + changed + begin + "P, T and esdP esdT (esds optional):")) << said;
  EXPECT_TRUE(HOLDS(said, "   2.500  0.020  298.0   1.0\n")) << said;
  EXPECT_TRUE(HOLDS(said, "   2.500  0.020  400.0   1.0\n")) << said;
  EXPECT_EQ(P(1), 3.5f);
  EXPECT_EQ(T(1), 500.0f);
}

TEST_F(EDITING_LIMITS, PTEDIT_SHOWS_AND_CHANGES_BLOCKS_THAT_ARE_OMITTED_AND_HIDDEN) {
  ADD_BLOCKS(2);
  for (int block : {1, 2}) IUSE(block) = 0;
  RUN.LIST_ALL_BLOCKS = false;
  ISORT(1) = 2;
  ISORT(2) = 1;
  const std::string said = SAID("p\n2 2.5\n\n\n", RUN_PTEDIT);
  EXPECT_EQ(P(2), 2.5f);
  EXPECT_TRUE(HOLDS(said,
                    "\n       BLOCKNAME              P    esdP     T    esdT\n"
                    "  1: test block            0.000  0.020  298.0   1.0\n"
                    "  2: test block            2.500  0.020  298.0   1.0\n"))
      << said;
}

// ---- USE and OMIT ----

TEST_F(EDITING_LIMITS, AN_EQUIVALENT_ATOM_LIES_WITHIN_ONE_ANGSTROM) {
  ADD_SILICON(0.1f);
  ADD_SILICON(0.197f);  // 0.97 from the silicon of the reference
  ADD_SILICON(0.203f);  // 1.03
  SAID("omit all\nSi1\n\nexit\n", RUN_ATOMEDIT);
  EXPECT_EQ(PHASE(1).ATOM_USE(1), ATOM_OMITTED);
  EXPECT_EQ(PHASE(2).ATOM_USE(1), ATOM_OMITTED);
  EXPECT_EQ(PHASE(3).ATOM_USE(1), ATOM_USED);
}

// ---- the smallest distance ----

// At 0 every atom would be a neighbour of itself.
TEST_F(EDITING_LIMITS, A_SMALLEST_DISTANCE_BELOW_A_HUNDREDTH_BECOMES_A_HUNDREDTH) {
  const std::string raised = "\n      Minimum distance cannot be negative, set to 0.01\n";
  for (const char* answer : {"0 2.5\n", "0.009 2.5\n"}) {
    RUN = RUN_PARAMETERS{};
    EXPECT_TRUE(
        SAID(answer, GET_INPUT_DMIN_DMAX)
            .ends_with(raised + "\n        Current range of distances is now:  0.01 to  2.50\n"))
        << answer;
    EXPECT_EQ(RUN.DMIN, 0.01f);
  }
  EXPECT_FALSE(HOLDS(SAID("0.01 2.5\n", GET_INPUT_DMIN_DMAX), raised));
  EXPECT_FALSE(HOLDS(SAID("0.02 2.5\n", GET_INPUT_DMIN_DMAX), raised));
  EXPECT_EQ(RUN.DMIN, 0.02f);
}

TEST_F(EDITING_LIMITS, SETTINGS_OUTLIVE_THE_BLOCKS) {
  ADD_BLOCKS(2);
  RUN = {false, true, 1.0f, 12.5f, {{true, false, true, false}}, true};
  const auto settings = [] {
    const std::string said = SAID("", RUN_SHOW_FACETOR_PARAMS);
    return said.substr(0, said.find("REFERENCE BLOCK")) + said.substr(said.find("  For calc"));
  };
  const std::string before = settings();
  ASSERT_TRUE(HOLDS(before, "  1.00 to 12.50\n"));
  SAID("", CLEAR_FACETOR_LIST);
  ADD_BLOCKS(1);
  EXPECT_EQ(settings(), before);
}

// ---- unknown elements ----

TEST_F(EDITING_LIMITS, UNKNOWN_ELEMENTS_OF_USED_BLOCKS_ARE_TOLD_ONCE) {
  for (int block = 1; block <= 3; ++block) ADD_SILICON(0.1f);
  PHASE(2).ATOM(1).CHEMSYMB = "";
  IUSE(2) = 0;
  EXPECT_EQ(SAID("", CHEMSYMB_PRESENT), "") << "its block is omitted";
  IUSE(2) = 1;
  EXPECT_EQ(SAID("", CHEMSYMB_PRESENT), unknown) << "a blank symbol";
  PHASE(1).ATOM(1).CHEMSYMB = "**";
  PHASE(3).ATOM(1).CHEMSYMB = "**";
  EXPECT_EQ(SAID("", CHEMSYMB_PRESENT), unknown);
}
