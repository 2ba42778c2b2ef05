// The phase list: room, order, use, and the commands that manage it.
#include "src/facetor6_console/phase_list.h"

#include "phases.h"
#include "structures.h"

using namespace FACETOR_CONSOLE;
using namespace STRUCTURES;

namespace {

class PHASE_LIST : public PHASE_TESTS::PHASES {
 protected:
  // Adds a block with natoms atoms at the pressure and temperature.
  static void ADD(const std::string& title, int natoms, float p = 0.0f, float t = 298.0f) {
    std::vector<SITE> sites;
    for (int i = 0; i < natoms; ++i)
      sites.push_back({"O" + std::to_string(i + 1), {0.1f * static_cast<float>(i), 0, 0}});
    CRYSTAL_STRUCTURE_TYPE phase = MADE({9, 9, 9}, {90, 90, 90}, "P 1", sites);
    phase.BLOCK_TITLE = title;
    phase.PT(PRESSURE, PT_VALUE) = p;
    phase.PT(TEMPERATURE, PT_VALUE) = t;
    PHASES::ADD(phase);
  }

  static std::vector<int> ORDER() { return {ISORT.ITEMS.begin(), ISORT.ITEMS.begin() + NPHASES}; }
};

constexpr const char* nothing_used = "\n*****WARNING: No datablocks with use flags set!\n\n";

}  // namespace

TEST_F(PHASE_LIST, STARTS_EMPTY_WITH_ROOM_FOR_8) {
  EXPECT_EQ(NPHASES, 0);
  EXPECT_EQ(NPHASES_ALLOCATED, 8);
  EXPECT_EQ(IREFERENCE, 1);
  EXPECT_EQ(CAPACITY(PHASE(1)), 8);
  EXPECT_EQ(NATOM_MAX(), 0);
  ALLOCATE_PHASE_LIST(0);
  EXPECT_EQ(NPHASES_ALLOCATED, 8) << "0 changes nothing";
}

TEST_F(PHASE_LIST, GROWS_WITHOUT_LOSING_BLOCKS_OR_ORDER) {
  for (int i = 1; i <= 20; ++i) ADD("b" + std::to_string(i), 1);
  EXPECT_EQ(NPHASES, 20);
  EXPECT_EQ(NPHASES_ALLOCATED, 20);
  EXPECT_EQ(PHASE(20).BLOCK_TITLE, "b20");
  EXPECT_EQ(PHASE(1).BLOCK_TITLE, "b1");
  EXPECT_EQ(ISORT(20), 20);
  EXPECT_EQ(NUMPHASES_USED(), 20);
}

TEST_F(PHASE_LIST, ALL_RECORDS_HAVE_ONE_CAPACITY_AND_GROWTH_DROPS_RESULTS) {
  ADD("small", 10);
  PHASE(1).NBONDS(1) = 3;
  PHASE(1).ATOM_USE(2) = ATOM_OMITTED;
  ADD("smaller", 4);
  EXPECT_EQ(CAPACITY(PHASE(2)), 10);
  EXPECT_EQ(PHASE(1).NBONDS(1), 3) << "fewer atoms disturb nothing";
  EXPECT_EQ(PHASE(1).ATOM_USE(2), ATOM_OMITTED);
  ADD("larger", 12);
  for (int i = 1; i <= NPHASES_ALLOCATED; ++i) EXPECT_EQ(CAPACITY(PHASE(i)), 12);
  EXPECT_EQ(PHASE(1).NBONDS(1), 0);
  EXPECT_EQ(PHASE(1).ATOM_USE(2), ATOM_USED) << "and all atoms are in use again";
}

TEST_F(PHASE_LIST, BLOCK_NUMBERS_COME_ONCE_AND_IN_ORDER) {
  for (const char* title : {"a", "b", "c"}) ADD(title, 1);
  CONSOLE_TESTS::PEND("3,1,3");
  std::vector<int> blocks;
  SAID("", [&] { blocks = ASK_BLOCKS("Which ones? "); });
  EXPECT_EQ(blocks, (std::vector<int>{1, 3}));
}

TEST_F(PHASE_LIST, CLEAR_LEAVES_ROOM_FOR_ONE) {
  ADD("a", 1);
  ADD("b", 1);
  IREFERENCE = 2;
  VALENCES_DONE = true;
  EXPECT_EQ(SAID("", CLEAR_FACETOR_LIST), "\n     All data blocks deleted from list\n");
  EXPECT_EQ(NPHASES, 0);
  EXPECT_EQ(NPHASES_ALLOCATED, 1);
  EXPECT_EQ(IREFERENCE, 1);
  EXPECT_FALSE(VALENCES_DONE);
  ADD("again", 3);
  EXPECT_EQ(NPHASES, 1);
}

TEST_F(PHASE_LIST, CLEAR_FORGETS_WHICH_BLOCK_WAS_THE_REFERENCE) {
  ADD("a", 1);
  ADD("b", 1);
  IREFERENCE = 2;
  SAID("", CLEAR_FACETOR_LIST);
  EXPECT_EQ(IREFERENCE, 1);
  EXPECT_EQ(NUMPHASES_USED(), 0);
  EXPECT_EQ(IUSE.ITEMS, (std::vector<int>{0}));
  EXPECT_EQ(ISORT.ITEMS, (std::vector<int>{1}));
}

TEST_F(PHASE_LIST, DIFFERENT_NUMBERS_OF_ATOMS_ARE_TOLD_ONCE) {
  ADD("a", 2);
  ADD("b", 2);
  EXPECT_EQ(SAID("", EQUAL_ATOMS), "");
  ADD("c", 3);
  ADD("d", 4);
  EXPECT_EQ(SAID("", EQUAL_ATOMS),
            "\n*****WARNING: Different numbers of atoms in different data blocks: read output with "
            "care!\n\n");
}

TEST_F(PHASE_LIST, A_FULL_LIST_IS_TOLD) {
  EXPECT_EQ(SAID("", [] { EXPECT_FALSE(NPHASE_MAX()); }), "");
  ALLOCATE_PHASE_LIST(1);
  ADD("a", 1);
  EXPECT_EQ(SAID("", [] { EXPECT_TRUE(NPHASE_MAX()); }),
            "\n*****WARNING: Capacity of arrays exceeded: no more space for adding new "
            "structures!\n\n");
}

// ---- USE and OMIT ----

TEST_F(PHASE_LIST, WITHOUT_BLOCKS_EVERY_COMMAND_STOPS) {
  EXPECT_EQ(SAID("", USE_FACETOR_LIST), nothing_used);
  EXPECT_EQ(SAID("", OMIT_FACETOR_LIST), nothing_used);
  EXPECT_EQ(SAID("", SORT_FACETOR_LIST), nothing_used);
  EXPECT_EQ(SAID("", UNSORT_FACETOR_LIST), nothing_used);
}

TEST_F(PHASE_LIST, BLOCKS_ARE_OMITTED_AND_USED_AGAIN) {
  for (int i = 1; i <= 4; ++i) ADD("b", 1);
  CONSOLE_TESTS::PEND("2,-4");
  EXPECT_EQ(SAID("", OMIT_FACETOR_LIST), "");
  EXPECT_EQ(NUMPHASES_USED(), 1);
  CONSOLE_TESTS::PEND("3");
  EXPECT_EQ(SAID("", USE_FACETOR_LIST), "");
  EXPECT_EQ(IUSE(3), 1);
  EXPECT_EQ(IUSE(2), 0);
}

TEST_F(PHASE_LIST, THE_LAST_USED_BLOCK_STAYS_AS_REFERENCE) {
  ADD("a", 1);
  ADD("b", 1);
  CONSOLE_TESTS::PEND("all");
  EXPECT_EQ(SAID("", OMIT_FACETOR_LIST),
            "\n*****WARNING: Previous reference block, #  1 has been set used and retained as "
            "reference\n\n");
  EXPECT_EQ(IUSE(1), 1);
  EXPECT_EQ(IUSE(2), 0);
}

TEST_F(PHASE_LIST, AN_OMITTED_REFERENCE_ASKS_FOR_ANOTHER) {
  ADD("a", 1);
  ADD("b", 1, 2.5f);
  CONSOLE_TESTS::PEND("1");
  EXPECT_EQ(SAID("\n1\n2\n", OMIT_FACETOR_LIST),
            "\n*****WARNING: The previous reference block is now omitted. You must set a new "
            "reference block!\n\n"
            "\n     REFERENCE BLOCK IS #1: a   T = 298.0 K, P =  0.000 GPa\n"
            "\n     Input number of new reference (blank for no change):"
            "\n     Reference block unchanged\n"
            "     You must set a used block as reference\n"
            "\n     Input number of new reference (blank for no change):"
            "\n     Cannot set omitted block as reference: Reference block unchanged\n"
            "     You must set a used block as reference\n"
            "\n     Input number of new reference (blank for no change):"
            "\n     REFERENCE BLOCK IS #2: b   T = 298.0 K, P =  2.500 GPa\n");
  EXPECT_EQ(IREFERENCE, 2);
}

// ---- SORT and UNSORT ----

TEST_F(PHASE_LIST, SORTS_BY_PRESSURE_OR_TEMPERATURE) {
  ADD("a", 1, 3.0f, 100.0f);
  ADD("b", 1, 0.0f, 300.0f);
  ADD("c", 1, 1.5f, 200.0f);
  EXPECT_EQ(SAID("\n\n", SORT_FACETOR_LIST),
            "Sort by P or T? (P/T) <P>?Sort increasing or decreasing? (I/D) <I>?");
  EXPECT_EQ(ORDER(), (std::vector<int>{2, 3, 1})) << "a pressure of 0 keeps its place";
  SAID("T\nD\n", SORT_FACETOR_LIST);
  EXPECT_EQ(ORDER(), (std::vector<int>{2, 3, 1}));
  SAID("P\nD\n", SORT_FACETOR_LIST);
  EXPECT_EQ(ORDER(), (std::vector<int>{1, 3, 2}));
  EXPECT_EQ(ISORT(4), 4) << "beyond the loaded blocks nothing moves";
  SAID("", UNSORT_FACETOR_LIST);
  EXPECT_EQ(ORDER(), (std::vector<int>{1, 2, 3}));
}

TEST_F(PHASE_LIST, UNSORT_WITH_ALL_OMITTED_LEAVES_THE_ORDER) {
  ADD("a", 1, 3.0f);
  ADD("b", 1, 0.0f);
  SAID("\n\n", SORT_FACETOR_LIST);
  IUSE(1) = 0;
  IUSE(2) = 0;
  EXPECT_EQ(SAID("", UNSORT_FACETOR_LIST), nothing_used);
  EXPECT_EQ(ORDER(), (std::vector<int>{2, 1}));
}

// ---- SET and SHOW ----

TEST_F(PHASE_LIST, DISTANCE_LIMITS) {
  const std::string before =
      "\n        Current range of distances is:  0.01 to  2.20\n\n      Input dmin and dmax for "
      "bond "
      "length calculation (blank for no change):";
  EXPECT_EQ(SAID("\n", GET_INPUT_DMIN_DMAX), before + "\n      Distance limits not changed\n");
  EXPECT_EQ(SAID("3 1\n", GET_INPUT_DMIN_DMAX),
            before + "\n        Current range of distances is now:  1.00 to  3.00\n");
  RUN = RUN_PARAMETERS{};
  EXPECT_EQ(SAID("-1 2.5\n", GET_INPUT_DMIN_DMAX),
            before +
                "\n      Minimum distance cannot be negative, set to 0.01\n"
                "\n        Current range of distances is now:  0.01 to  2.50\n");
  RUN = RUN_PARAMETERS{};
  EXPECT_EQ(SAID("0.005 2.5\n", GET_INPUT_DMIN_DMAX),
            before +
                "\n      Minimum distance cannot be negative, set to 0.01\n"
                "\n        Current range of distances is now:  0.01 to  2.50\n");
  EXPECT_EQ(RUN.DMIN, 0.01f);
  SAID("0.02 2.5\n", GET_INPUT_DMIN_DMAX);
  EXPECT_EQ(RUN.DMIN, 0.02f);
  RUN = RUN_PARAMETERS{};
  SAID("-5 -4\n", GET_INPUT_DMIN_DMAX);
  EXPECT_EQ(RUN.DMAX, RUN.DMIN) << "never a maximum below the minimum";
}

TEST_F(PHASE_LIST, PRESSING_RETURN_INCLUDES_ALL_CLASSES) {
  const std::string said = SAID("\n\n\nn\n", SET_BOND_EXCLUSION);
  EXPECT_EQ(RUN.BONDEX.ITEMS, (std::array<bool, 4>{false, false, false, true}));
  EXPECT_NE(said.find("     equiv same atom distances: (Y/N) <Y>?"), std::string::npos);
  EXPECT_TRUE(
      said.ends_with("\n  For calculation of atom-atom distances:\n"
                     "     equiv same atom distances are INCLUDED\n"
                     "     same element distances are INCLUDED\n"
                     "     cation-cation distances are INCLUDED\n"
                     "     anion-anion distances are EXCLUDED\n\n\n"));
  RUN.BONDEX_ON = false;
  EXPECT_EQ(SAID("", SET_BOND_EXCLUSION), "");
  EXPECT_EQ(SAID("", WRITE_BOND_EXCLUSION), "");
}

TEST_F(PHASE_LIST, OPTIONS_OF_SET) {
  CONSOLE_TESTS::PEND("hide");
  SAID("", RUN_SET_FACETOR_PARAMS);
  EXPECT_FALSE(RUN.LIST_ALL_BLOCKS);
  CONSOLE_TESTS::PEND("show");
  SAID("", RUN_SET_FACETOR_PARAMS);
  EXPECT_TRUE(RUN.LIST_ALL_BLOCKS);
  CONSOLE_TESTS::PEND("output");
  EXPECT_EQ(SAID("y\n", RUN_SET_FACETOR_PARAMS),
            "Do you want to see symcodes in bond listings? (Y/N) <N>?");
  EXPECT_TRUE(RUN.LIST_SYMCODES);
  CONSOLE_TESTS::PEND("output");
  SAID("\n", RUN_SET_FACETOR_PARAMS);
  EXPECT_FALSE(RUN.LIST_SYMCODES);
  CONSOLE_TESTS::PEND("reference");
  EXPECT_EQ(SAID("", RUN_SET_FACETOR_PARAMS), nothing_used) << "no loop without blocks";
}

TEST_F(PHASE_LIST, A_REFERENCE_OUTSIDE_THE_LIST_IS_REFUSED) {
  ADD("a", 1);
  for (const char* answer : {"2\n", "0\n", "-1\n", "1e30\n"}) {
    const std::string said = SAID(answer, SET_REFERENCE);
    EXPECT_NE(said.find("\n     Invalid block number: Reference block unchanged\n"),
              std::string::npos)
        << answer;
    EXPECT_EQ(IREFERENCE, 1);
  }
}

TEST_F(PHASE_LIST, RESULTS_OF_ANOTHER_REFERENCE_STAY_ONLY_WHEN_ITS_ATOMS_MATCH) {
  ADD("a", 2);
  ADD("b", 2);
  ADD("c", 2);
  for (int block = 1; block <= 3; ++block) {
    PHASE(block).NBONDS(1) = 1;
    PHASE(block).BONDS(1, 1, BOND_LIGAND) = block == 3 ? 1.0f : 2.0f;
    PHASE(block).BOND_CEN(1, CENTRE_ATOM) = block == 3 ? 2.0f : 1.0f;
  }
  EXPECT_EQ(SAID("2\n", SET_REFERENCE).find("WARNING"), std::string::npos);
  EXPECT_EQ(PHASE(1).NBONDS(1), 1);
  EXPECT_NE(
      SAID("3\n", SET_REFERENCE)
          .find("*****WARNING: The atoms of the new reference block do not match: run calc poly "
                "again\n"),
      std::string::npos);
  EXPECT_EQ(PHASE(1).NBONDS(1), 0);
}

TEST_F(PHASE_LIST, ATOMS_WITHOUT_ELEMENT_ARE_TOLD) {
  ADD("a", 2);
  EXPECT_EQ(SAID("", CHEMSYMB_PRESENT), "");
  PHASE(1).ATOM(2).CHEMSYMB = "**";
  EXPECT_EQ(
      SAID("", CHEMSYMB_PRESENT),
      "\n*****WARNING: Some atoms are not recognised as elements: use AtomEdit to set scattering "
      "factors\n\n");
  PHASE(1).ATOM_USE(2) = ATOM_OMITTED;
  EXPECT_EQ(SAID("", CHEMSYMB_PRESENT), "");
}

TEST_F(PHASE_LIST, DEFAULT_CHARGES_OF_THE_ELEMENTS) {
  SET_DEFAULT_CHARGES();
  const std::vector<std::pair<int, int>> charges{
      {1, 1},  {3, 1},  {6, 4},  {7, 5},   {8, -2}, {9, -1}, {14, 4}, {16, -2}, {17, -1}, {18, 0},
      {22, 4}, {24, 6}, {25, 7}, {26, 3},  {27, 3}, {28, 2}, {29, 2}, {34, 6},  {35, -1}, {42, 6},
      {46, 2}, {47, 1}, {52, 6}, {53, -1}, {58, 4}, {63, 3}, {76, 8}, {77, 5},  {80, 2},  {81, 3},
      {82, 4}, {83, 5}, {90, 4}, {92, 6},  {2, 0},  {10, 0}, {61, 0}, {84, 0},  {91, 0}};
  for (const auto& [z, charge] : charges) EXPECT_EQ(DEFAULT_CHARGES(z), charge) << z;
}
