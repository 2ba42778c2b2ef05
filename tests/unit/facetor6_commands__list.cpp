// The menus of LIST and TABLE: their rows, and the report that follows each choice.
#include "facetor6_commands__list_reports.h"

using namespace LIST_TESTS;

namespace {

const std::string list_menu_start =
    "\n     Possible selections for List:\n"
    "      1: block names\n"
    "      2: cells\n"
    "      3: symmetry\n"
    "      4: site names\n"
    "      5: scattering factors\n"
    "      6: xyz\n"
    "      7: adps\n";
const std::string list_menu_bonds =
    "      8: bond lengths\n"
    "      9: angles between bonds\n"
    "     10: edges of polyhedra\n"
    "     11: orbix poly params\n"
    "     12: rigid bond lengths\n"
    "     13: displace along bonds\n"
    "     14: valences of bonds\n";
const std::string table_menu_start =
    "\n     Possible selections for Table:\n"
    "      1: cells\n"
    "      2: xyz\n"
    "      3: adps\n";
const std::string table_menu_bonds =
    "      4: bond lengths\n"
    "      5: angles between bonds\n"
    "      6: edges\n"
    "      7: valences of bonds\n";
const std::string menu_end = "      0: Exit\n\n     Enter selection by number:";
const std::string list_menu = list_menu_start + list_menu_bonds + menu_end;
const std::string table_menu = table_menu_start + table_menu_bonds + menu_end;

const std::string no_phases = "\n*****WARNING: No datablocks with use flags set!\n\n";

const std::string which_tensor = "Do you want to see Uij or betaij ? (U/b) <U>?";

// One pair of parameters: number 6-7, ": ", labels in 4 columns, d0 and b in 6 columns each.
const std::string parameters =
    "\n          These are the parameters used to calculate bond valences\n"
    "\n         Bond type         d0    b      source\n"
    "      1: SI+4 -- O-2       1.624 0.370  a paper\n";

}  // namespace

// ---- the menus ----

TEST_F(LISTING, MENUS_ARE_SHORT_WITHOUT_BONDS) {
  EXPECT_EQ(ANSWERED(MENU::LIST, "0\n"), list_menu_start + menu_end);
  EXPECT_EQ(ANSWERED(MENU::TABLE, "0\n"), table_menu_start + menu_end);
}

TEST_F(LISTING, MENUS_ARE_LONG_WITH_BONDS_AND_A_BLANK_ANSWER_ENDS_THEM) {
  ADD_BONDS();
  EXPECT_EQ(ANSWERED(MENU::LIST, "\n"), list_menu);
  EXPECT_EQ(ANSWERED(MENU::TABLE, "\n"), table_menu);
}

TEST_F(LISTING, ONE_BOND_OF_ANY_ATOM_MAKES_THE_MENUS_LONG) {
  BOND(1, {1.7f}, 0.003f, 4);
  EXPECT_EQ(ANSWERED(MENU::LIST, "0\n"), list_menu);
  EXPECT_EQ(ANSWERED(MENU::TABLE, "0\n"), table_menu);
}

TEST_F(LISTING, IT_IS_THE_REFERENCE_BLOCK_WHOSE_BONDS_COUNT) {
  ADD("second");
  BOND(2, {1.5f});
  EXPECT_EQ(ANSWERED(MENU::LIST, "0\n"), list_menu_start + menu_end);
  EXPECT_EQ(ANSWERED(MENU::TABLE, "0\n"), table_menu_start + menu_end);
  IREFERENCE = 2;
  EXPECT_EQ(ANSWERED(MENU::LIST, "0\n"), list_menu);
  EXPECT_EQ(ANSWERED(MENU::TABLE, "0\n"), table_menu);
}

TEST_F(LISTING, WITHOUT_A_BLOCK_IN_USE_THERE_IS_NO_MENU) {
  IUSE(1) = 0;
  EXPECT_EQ(ANSWERED(MENU::LIST, ""), no_phases);
  EXPECT_EQ(ANSWERED(MENU::TABLE, ""), no_phases);
}

TEST_F(LISTING, REPORTS_WITHOUT_A_SITE) {
  const std::string cells = head + "  a        b        c       alpha   beta    gamma     V\n" +
                            start_1 +
                            "  10.0000  10.0000  10.0000  90.000  90.000  90.000 1000.000\n";
  const std::string cells_with_esds =
      head + "  a            b            c            alpha        beta         gamma        V\n" +
      esd_start_1 +
      "   10.0000      10.0000      10.0000      90.0000      90.0000      90.0000      "
      "1000.00\n";
  const std::string symmetry =
      "  space group                 coords of inversion centre\n"
      "      1  P 1                    acentric\n"
      "\n\n     The symmetry operators of the reference block (#1) are:\n"
      "       1:x,y,z\n";
  const std::string names =
      start_1 + "\n                                  Site name: Si1     O1      O2      O3\n";
  const std::string factors =
      "                          Scattering factor: Si      O       O       O\n";
  const std::string menu = list_menu_start + menu_end;
  EXPECT_EQ(ANSWERED(MENU::LIST, "1\n"), menu + head + "\n" + start_1 + "\n");
  EXPECT_EQ(ANSWERED(MENU::LIST, "2\n"), menu + cells);
  EXPECT_EQ(ANSWERED(MENU::LIST, "3\n"), menu + symmetry);
  EXPECT_EQ(ANSWERED(MENU::LIST, "4\n"),
            menu + "  Site names in each block, in input order\n" + names);
  EXPECT_EQ(ANSWERED(MENU::LIST, "5\n"),
            menu + "  Site names and scattering factors in each block, in input order\n" + names +
                factors);
  EXPECT_EQ(ANSWERED(MENU::TABLE, "1\n"), table_menu_start + menu_end + cells_with_esds);
}

TEST_F(LISTING, REPORTS_OF_A_SITE_BY_THEIR_ROWS) {
  ADD_BONDS();
  for (const LISTED_REPORT& report : REPORTS()) {
    std::string expected = report.COMMAND == MENU::LIST ? list_menu : table_menu;
    if (report.CODE == REPORT_ADPS) expected += which_tensor;
    if (report.CODE == REPORT_VALENCES) expected += parameters;
    EXPECT_EQ(ANSWERED(report.COMMAND, report.ROW + "\nsi1\n\n"),
              expected + ask + report.OF_SI + ask);
  }
}

TEST_F(LISTING, A_MENU_ENTRY_CAN_BE_NAMED_BEHIND_THE_COMMAND) {
  CONSOLE_TESTS::PEND("block");
  EXPECT_EQ(ANSWERED(MENU::LIST, ""), head + "\n" + start_1 + "\n");
}

TEST_F(LISTING, VALENCES_THAT_WERE_NOT_CALCULATED) {
  ADD_BONDS();
  VALENCES_DONE = false;
  const std::string none = "\n ***** No bond valences have been calculated - use calc*****\n";
  EXPECT_EQ(ANSWERED(MENU::LIST, "14\n"), list_menu + none);
  EXPECT_EQ(ANSWERED(MENU::TABLE, "7\n"), table_menu + none);
}
