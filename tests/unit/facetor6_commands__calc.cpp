// CALC: its menu, its messages, and what makes no difference to a table of bond lengths.
#include "src/facetor6_calc/calc.h"

#include <csignal>

#include "phases.h"
#include "src/facetor6_list/list.h"
#include "structures.h"

using namespace FACETOR_CALC;
using namespace FACETOR_CONSOLE;
using namespace STRUCTURES;

namespace {

class CALCULATION : public PHASE_TESTS::PHASES {
 protected:
  // Rows of the bond table of the first atom, without the line starts.
  std::vector<std::string> ROWS() {
    std::istringstream said(SAID("", [] { FACETOR_LIST::FACETOR_LIST_BONDS(1, "ESD"); }));
    std::vector<std::string> rows;
    for (std::string line; std::getline(said, line);)
      if (line.size() > 44 && line[3] == ':') rows.push_back(line.substr(44));
    return rows;
  }
};

// While it lives, raises the interrupt when the text comes out, and passes all output on.
class INTERRUPT_AT : public std::streambuf {
 public:
  explicit INTERRUPT_AT(std::string text) : wanted(std::move(text)) {
    next = std::cout.rdbuf(this);
  }
  ~INTERRUPT_AT() override { std::cout.rdbuf(next); }
  INTERRUPT_AT(const INTERRUPT_AT&) = delete;
  INTERRUPT_AT& operator=(const INTERRUPT_AT&) = delete;

 private:
  int_type overflow(int_type c) override {
    said += traits_type::to_char_type(c);
    if (said.ends_with(wanted)) ::raise(SIGINT);
    return next->sputc(traits_type::to_char_type(c));
  }

  std::string wanted;
  std::string said;
  std::streambuf* next;
};

const std::vector<SITE> quartz{{"Si1", {0.4697f, 0, 0.66667f}, {0.0002f, 0, 0}},
                               {"O1", {0.4135f, 0.2669f, 0.7858f}, {0.0003f, 0.0004f, 0.0002f}}};

CRYSTAL_STRUCTURE_TYPE QUARTZ(const std::vector<SITE>& sites) {
  return MADE({4.9137f, 4.9137f, 5.4047f}, {90, 90, 120}, "P 32 2 1", sites,
              {0.0005f, 0.0005f, 0.0008f});
}

const std::string menu =
    "\n     Possible selections for Calculations:\n      1: polyhedra and bonds\n      2: valences "
    "of "
    "bonds\n      0: Exit\n\n     Enter selection by number:";

}  // namespace

TEST_F(CALCULATION, NEEDS_BLOCKS_AND_ATOMS) {
  EXPECT_EQ(SAID("", RUN_FACETOR_CALC), "\n*****WARNING: No datablocks with use flags set!\n\n");
  ADD(MADE({5, 5, 5}, {90, 90, 90}, "P 1", {}));
  CONSOLE_TESTS::PEND("poly");
  EXPECT_EQ(SAID("", RUN_FACETOR_CALC),
            "\n*****WARNING: There are no atoms in the reference block: no bond lengths can be "
            "calculated\n\n");
  CONSOLE_TESTS::PEND("val");
  EXPECT_EQ(SAID("", RUN_FACETOR_CALC),
            "\n*****WARNING: There are no atoms in the reference block: no bond valences can be "
            "calculated\n\n");
}

TEST_F(CALCULATION, THE_WHOLE_OF_OPTION_1) {
  ADD(QUARTZ(quartz));
  CONSOLE_TESTS::PEND("1");
  const std::string said = SAID("poly\n1\n\n\n", RUN_FACETOR_CALC);
  EXPECT_TRUE(said.starts_with(menu + "\n*****WARNING: Illegal value input, try again:\n\n"));
  EXPECT_NE(
      said.find("\n*************Bond lengths and angles limited by dmin and dmax in reference "
                "structure ***************\n\n\n  For calculation of atom-atom distances:\n"),
      std::string::npos);
  EXPECT_NE(
      said.find("\n\n     BONDS FROM CENTRAL ATOM Si1    (NAME IN REFERENCE BLOCK test block)\n"),
      std::string::npos);
  EXPECT_TRUE(
      said.ends_with("\n******To see angles and other polyhedral parameters, use the list and "
                     "table commands\n\n" +
                     menu));
}

TEST_F(CALCULATION, TOO_MANY_NEIGHBOURS_ARE_REPORTED_AND_THE_RUN_GOES_ON) {
  ADD(MADE({2.5f, 2.5f, 2.5f}, {90, 90, 90}, "P 1",
           {{"Si1", {0, 0, 0}}, {"O1", {0.5f, 0.5f, 0.5f}}}));
  RUN.BONDEX = {};
  const std::string said = SAID("0.5 4.5\n", RUN_FACETOR_CALC_BONDS);
  EXPECT_TRUE(said.ends_with(
      "\n*****WARNING: Bond calculation error(s) for some atoms in reference phase.\n\n"
      "     The warning message included: Too many distances around atom: try decreasing "
      "dmax-dmin\n"));
  EXPECT_EQ(PHASE(1).NBONDS(1), 20);
}

// Ligands a little to one side of Si1; C1 lies in the middle of its own.
TEST_F(CALCULATION, CENTRES_OUTSIDE_THEIR_POLYHEDRA_ARE_TOLD_ONCE) {
  const VECTOR3 all_right{90, 90, 90};
  const std::vector<SITE> sites{{"C1", {0.2f, 0.2f, 0.2f}},   {"O1", {0.3f, 0.3f, 0.3f}},
                                {"O2", {0.3f, 0.1f, 0.1f}},   {"O3", {0.1f, 0.3f, 0.1f}},
                                {"O4", {0.1f, 0.1f, 0.3f}},   {"Si1", {0.7f, 0.7f, 0.7f}},
                                {"O5", {0.85f, 0.7f, 0.72f}}, {"O6", {0.55f, 0.7f, 0.72f}},
                                {"O7", {0.7f, 0.85f, 0.75f}}, {"O8", {0.7f, 0.55f, 0.75f}}};
  ADD(MADE({10, 10, 10}, all_right, "P 1", sites));
  ADD(MADE({10, 10, 10}, all_right, "P 1", sites));
  CONSOLE_TESTS::PEND("poly");
  const std::string said = SAID("1 2.5\n0\n", RUN_FACETOR_CALC);
  const std::string warning =
      "\n*****WARNING: 1 centres lie outside their polyhedra, first Si1: quadratic elongation and "
      "angle variance mean little there\n\n";
  const std::size_t at = said.find(warning);
  ASSERT_NE(at, std::string::npos) << said;
  EXPECT_EQ(said.find("outside their polyhedra", at + warning.size()), std::string::npos);
}

// The user presses Ctrl-C in the middle of the work, when the search has just told of its errors.
TEST_F(CALCULATION, AN_INTERRUPTED_CALCULATION_LEAVES_NO_BONDS) {
  ADD(MADE({2.5f, 2.5f, 2.5f}, {90, 90, 90}, "P 1",
           {{"Si1", {0, 0, 0}}, {"O1", {0.5f, 0.5f, 0.5f}}}));
  RUN.BONDEX = {};
  CONSOLE_TESTS::PEND("poly");
  const std::string said = SAID("0.5 4.5\n", [] {
    INTERRUPT_AT interrupt("Bond calculation error(s)");
    RUN_FACETOR_CALC();
  });
  const std::string stopped =
      "\n*****WARNING: The calculation was stopped: there are no bond lengths until CALC is run "
      "again\n\n";
  EXPECT_TRUE(said.ends_with(stopped)) << "and the command ends: " << said;
  EXPECT_EQ(PHASE(1).NBONDS(1), 0);
  EXPECT_EQ(PHASE(1).NBONDS(2), 0);
}

TEST_F(CALCULATION, UNUSED_BLOCKS_STAY_EMPTY_AND_OLD_RESULTS_GO) {
  ADD(QUARTZ(quartz));
  ADD(QUARTZ(quartz));
  SAID("\n", RUN_FACETOR_CALC_BONDS);
  EXPECT_EQ(PHASE(2).NBONDS(1), 4);
  IUSE(2) = 0;
  SAID("\n", RUN_FACETOR_CALC_BONDS);
  EXPECT_EQ(PHASE(2).NBONDS(1), 0);
  EXPECT_EQ(PHASE(1).NBONDS(1), 4);
}

TEST_F(CALCULATION, ANGLES_AND_POLYHEDRA_FOLLOW_IN_EVERY_USED_BLOCK) {
  ADD(QUARTZ(quartz));
  ADD(QUARTZ(quartz));
  SAID("\n", RUN_FACETOR_CALC_BONDS);
  for (int block = 1; block <= 2; ++block) {
    EXPECT_EQ(PHASE(block).NANGLES(1), 6);
    // A regular tetrahedron with the mean bond length 1.6085 has 8 r^3 / (9 sqrt 3) = 2.14.
    EXPECT_NEAR(PHASE(block).POLYHEDRON(1, POLY_VOLUME), 2.14f, 0.02f);
  }
}

TEST_F(CALCULATION, OPTION_1_SHOWS_THE_OPERATORS_WHEN_CODES_ARE_WANTED) {
  ADD(MADE({9, 9, 9}, {90, 90, 90}, "P -1", {{"Si1", {0.1f, 0, 0}}, {"O1", {0.28f, 0, 0}}}));
  const std::string sentence =
      "\n     And these will be used in the symmetry codes for the ligands in these tables\n";
  CONSOLE_TESTS::PEND("poly");
  EXPECT_EQ(SAID("\n0\n", RUN_FACETOR_CALC).find(sentence), std::string::npos);
  RUN.LIST_SYMCODES = true;
  CONSOLE_TESTS::PEND("poly");
  const std::string said = SAID("\n0\n", RUN_FACETOR_CALC);
  EXPECT_NE(said.find("\n\n     The symmetry operators of the reference block (#1) are:\n"
                      "       1:x,y,z\n"
                      "       2:-x,-y,-z\n" +
                      sentence),
            std::string::npos)
      << said;
}

TEST_F(CALCULATION, A_SELECTION_BEYOND_THE_MENU_IS_REFUSED) {
  ADD(QUARTZ(quartz));
  EXPECT_EQ(SAID("3\n\n", RUN_FACETOR_CALC),
            menu + "     Invalid input!\n\n     Enter selection by number:");
}

TEST_F(CALCULATION, ROWS_FOLLOW_THE_REFERENCE_BLOCK) {
  ADD(QUARTZ(quartz));
  ADD(QUARTZ({quartz[1], quartz[0]}));
  IREFERENCE = 2;
  SAID("\n", RUN_FACETOR_CALC_BONDS);
  // Atom 1 of the reference is the oxygen, with 2 silicons; in block 1 it is atom 2.
  for (int block = 1; block <= 2; ++block) {
    EXPECT_EQ(PHASE(block).NBONDS(1), 2);
    EXPECT_EQ(PHASE(block).NBONDS(2), 4);
  }
  EXPECT_EQ(PHASE(1).BONDS(1, 1, BOND_CENTRE), 2.0f);
  EXPECT_EQ(PHASE(1).BONDS(1, 1, BOND_LIGAND), 1.0f);
  EXPECT_EQ(PHASE(1).BOND_CEN(1, CENTRE_ATOM), 2.0f);
}

TEST_F(CALCULATION, CENTRES_THAT_ARE_ABSENT_OR_OMITTED_AND_LIGANDS_THAT_ARE_ABSENT) {
  const std::vector<SITE> silica{
      {"Si1", {0.1f, 0, 0}}, {"O1", {0.28f, 0, 0}}, {"O2", {0.1f, 0.18f, 0}}};
  const auto in_p1 = [](const std::vector<SITE>& sites) {
    return MADE({9, 9, 9}, {90, 90, 90}, "P 1", sites);
  };
  ADD(in_p1(silica));
  ADD(in_p1({silica[0], {"O1", {0.6f, 0.6f, 0.6f}}, silica[2]}));
  ADD(in_p1(silica));
  ADD(in_p1({silica[0], silica[1]}));
  PHASE(3).ATOM_USE(1) = ATOM_OMITTED;
  SAID("\n", RUN_FACETOR_CALC_BONDS);
  EXPECT_EQ(PHASE(2).NBONDS(2), NO_CENTRE);
  EXPECT_EQ(PHASE(2).NBONDS(1), 1);
  for (int j = 1; j <= 2; ++j) {
    const bool is_o1 = PHASE(1).BONDS(1, j, BOND_LIGAND) == 2.0f;
    EXPECT_EQ(PHASE(2).BONDS(1, j, BOND_CENTRE), is_o1 ? 0.0f : 1.0f) << "rows stay aligned";
  }
  EXPECT_EQ(PHASE(3).NBONDS(1), 0) << "omitted by the user, not absent";
  EXPECT_EQ(PHASE(4).NBONDS(3), NO_CENTRE) << "a block with fewer atoms";
  EXPECT_EQ(PHASE(4).NBONDS(1), 1);
}

TEST_F(CALCULATION, AN_OMITTED_ATOM_OF_THE_REFERENCE_IS_SKIPPED_EVERYWHERE) {
  ADD(QUARTZ(quartz));
  ADD(QUARTZ(quartz));
  PHASE(1).ATOM_USE(1) = ATOM_OMITTED;
  SAID("\n", RUN_FACETOR_CALC_BONDS);
  for (int block = 1; block <= 2; ++block) EXPECT_EQ(PHASE(block).NBONDS(1), 0);
  EXPECT_EQ(SUM_NBONDS(PHASE(1)), 0) << "an omitted silicon is no ligand either";
}

// What makes no difference: order, labels, asymmetric unit, cells of the coordinates.
TEST_F(CALCULATION, THE_SAME_STRUCTURE_WRITTEN_OTHERWISE_GIVES_THE_SAME_ROWS) {
  ADD(QUARTZ(quartz));
  ADD(QUARTZ({{"Ob", quartz[1].X, quartz[1].X_STD}, {"X", quartz[0].X, quartz[0].X_STD}}));
  std::vector<SITE> moved = quartz;
  for (SITE& site : moved) site.X = XTAL::ADD(site.X, {3, -2, 1});
  ADD(QUARTZ(moved));
  std::vector<SITE> other_unit = quartz;
  // A two-fold axis that exchanges x and y, and their esds with them.
  for (SITE& site : other_unit) {
    const XTAL::SPACE_GROUP& group = PHASE(1).SPG;
    for (int op = 1; op <= group.MULTIP; ++op)
      if (group.SYMOPSYMB(op) == "y,x,-z") site.X = XTAL::APPLY_OP(group.SYMOP(op), site.X);
    std::swap(site.X_STD[0], site.X_STD[1]);
  }
  ADD(QUARTZ(other_unit));
  SAID("\n", RUN_FACETOR_CALC_BONDS);
  const std::vector<std::string> rows = ROWS();
  ASSERT_EQ(rows.size(), 4u);
  for (const std::string& row : rows) EXPECT_EQ(row, rows[0]);
}
