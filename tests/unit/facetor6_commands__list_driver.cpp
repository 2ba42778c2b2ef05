// The dialogue that asks for a central site: what precedes it, which site a name means, and what is
// said of it.
#include <array>
#include <span>

#include "facetor6_commands__list_reports.h"

using namespace LIST_TESTS;

namespace {

const std::string operators =
    "\n\n     The symmetry operators of the reference block (#1) are:\n"
    "       1:x,y,z\n"
    "\n     And these will be used in the symmetry codes for the ligands in these tables\n";

constexpr std::array<REPORT_CODE, 9> all_codes{REPORT_XYZ,    REPORT_ADPS,  REPORT_BONDS,
                                               REPORT_ANGLES, REPORT_EDGES, REPORT_ORBIX,
                                               REPORT_SRB,    REPORT_DISPL, REPORT_VALENCES};

}  // namespace

// ---- what precedes the question for a site ----

TEST_F(LISTING, GEOMETRY_NEEDS_BONDS_OF_THE_REFERENCE_AND_POSITIONS_DO_NOT) {
  ADD("second");
  IREFERENCE = 2;
  BOND(1, {1.5f});
  for (REPORT_CODE code : {REPORT_XYZ, REPORT_ADPS}) EXPECT_EQ(DRIVER(code, "\n"), ask);
  const auto geometry = std::span(all_codes).subspan(2);
  for (REPORT_CODE code : geometry)
    EXPECT_EQ(DRIVER(code, ""), "     No bond lengths have been loaded or calculated\n");
  PHASE(1).NBONDS(1) = 0;
  BOND(2, {1.5f}, 0.003f, 4);
  for (REPORT_CODE code : geometry) EXPECT_EQ(DRIVER(code, "\n"), ask);
}

TEST_F(LISTING, OPERATORS_COME_FIRST_IF_CODES_ARE_WANTED_BUT_NOT_FOR_POSITIONS_AND_EDGES) {
  ADD_BONDS();
  for (REPORT_CODE code : all_codes) EXPECT_EQ(DRIVER(code, "\n"), ask) << code;
  RUN.LIST_SYMCODES = true;
  for (REPORT_CODE code : all_codes) {
    const bool without = code == REPORT_XYZ || code == REPORT_ADPS || code == REPORT_EDGES;
    EXPECT_EQ(DRIVER(code, "\n"), without ? ask : operators + ask) << code;
  }
}

TEST_F(LISTING, DIFFERENT_NUMBERS_OF_ATOMS_ARE_TOLD_BEFORE_ANY_TABLE) {
  ADD_BONDS();
  ADD("second", MADE({10, 10, 10}, {90, 90, 90}, "P 1", {{"Si1", {0.1f, 0.2f, 0.3f}}}));
  RUN.LIST_SYMCODES = true;
  const std::string warning =
      "\n*****WARNING: Different numbers of atoms in different data blocks: read output with "
      "care!\n\n";
  EXPECT_EQ(DRIVER(REPORT_XYZ, "\n"), warning + ask);
  EXPECT_EQ(DRIVER(REPORT_VALENCES, "\n"), warning + operators + ask);
}

TEST_F(LISTING, TEXT_BEHIND_THE_MENU_ENTRY_IS_TOLD_AND_LOST) {
  ADD_BONDS();
  CONSOLE_TESTS::PEND("bond Si1");
  EXPECT_EQ(ANSWERED(MENU::LIST, "\n"), ask);
  CONSOLE_TESTS::PEND("bond lengths Si1 O1");
  KVA_CONSOLE::CONSOLE.BEHIND_COMMAND = true;
  const std::size_t question = ask.find("    Enter central");
  EXPECT_EQ(ANSWERED(MENU::LIST, "\n"),
            ask.substr(0, question) +
                "*****\"Si1 O1\" behind the command is not used: answer the question\n" +
                ask.substr(question));
}

// ---- the site that is named ----

TEST_F(LISTING, ALL_HAS_THE_FORM_OF_A_SINGLE_SITE) {
  ADD_BONDS();
  OMIT_THE_OTHERS();
  for (const LISTED_REPORT& report : REPORTS()) {
    EXPECT_EQ(DRIVER(report.CODE, "si1\no1\n\n", report.OPTION),
              ask + report.OF_SI + ask + report.OF_O + ask);
    EXPECT_EQ(DRIVER(report.CODE, "ALL\n\n", report.OPTION),
              ask + report.OF_SI + report.OF_O + ask);
  }
}

TEST_F(LISTING, ALL_ANYWHERE_AND_IN_ANY_CASE_MEANS_THE_SITES_IN_USE) {
  ADD_BONDS();
  PHASE(1).ATOM_USE(2) = ATOM_OMITTED;
  PHASE(1).ATOM_USE(3) = -1;
  PHASE(1).ATOM_USE(4) = ATOM_OMITTED;
  const std::string table = no_polyhedron + "Si1\n";
  EXPECT_EQ(DRIVER(REPORT_ORBIX, "call\nAll Si1\nxaLLx\n\n"),
            ask + table + ask + table + ask + table + ask);
}

TEST_F(LISTING, SITES_THAT_ARE_NOT_USED_OR_NOT_THERE) {
  ADD_BONDS();
  PHASE(1).ATOM_USE(2) = ATOM_OMITTED;
  PHASE(1).ATOM_USE(4) = -1;
  EXPECT_EQ(DRIVER(REPORT_ORBIX, "o1\no3\nXy\n1\n\n"),
            ask + "     *****Site with name = o1 in reference block marked not to be used\n" + ask +
                "\n     *****Site with name = O3 in reference block is a duplicate of Si1\n" + ask +
                "Site with name = Xy not found in reference block\n" + ask +
                "Site with name = 1 not found in reference block\n" + ask)
      << "the name must begin the label";
}

TEST_F(LISTING, THE_FIRST_LABEL_THAT_BEGINS_WITH_THE_NAME_IS_TAKEN) {
  ADD_BONDS();
  PHASE(1).ATOM(2).LAB = "O11";
  PHASE(1).ATOM(3).LAB = "O1";
  EXPECT_EQ(DRIVER(REPORT_ORBIX, "O1\no\n\n"),
            ask + no_polyhedron + "O11\n" + ask + no_polyhedron + "O11\n" + ask);
}

TEST_F(LISTING, A_NAME_HAS_TEN_CHARACTERS) {
  ADD_BONDS();
  PHASE(1).ATOM(1).LAB = "Silicon_1A";
  PHASE(1).ATOM(2).LAB = "Silicon_1B";
  PHASE(1).ATOM(3).LAB = "\u00d6xygen_12a";  // ten characters, eleven bytes
  PHASE(1).ATOM(4).LAB = "\u00d6xygen_12b";
  EXPECT_EQ(DRIVER(REPORT_ORBIX, "Silicon_1Bcd\n\u00d6xygen_12b\u00e4\nSilicon_2Abc\n\n"),
            ask + no_polyhedron + "Silicon_1B\n" + ask + no_polyhedron + "\u00d6xygen_12b\n" + ask +
                "Site with name = Silicon_2A not found in reference block\n" + ask);
}

TEST_F(LISTING, NAMES_ARE_THOSE_OF_THE_REFERENCE_BLOCK) {
  ADD("second");
  IREFERENCE = 2;
  PHASE(2).ATOM(2).LAB = "Os4";
  PHASE(2).ATOM(3).LAB = "Ob2";
  PHASE(2).ATOM_USE(3) = -2;
  PHASE(2).ATOM_USE(4) = ATOM_OMITTED;
  BOND(2, {1.5f, 1.6f});
  EXPECT_EQ(DRIVER(REPORT_ORBIX, "os4\nO1\nOb\nO3\nall\n\n"),
            ask + no_polyhedron + "Os4\n" + ask +
                "Site with name = O1 not found in reference block\n" + ask +
                "\n     *****Site with name = Ob2 in reference block is a duplicate of Os4\n" +
                ask + "     *****Site with name = O3 in reference block marked not to be used\n" +
                ask + no_polyhedron + "Si1\n" + no_polyhedron + "Os4\n" + ask);
}

// ---- the note behind all coordinates ----

TEST_F(LISTING, ALL_COORDINATES_END_WITH_A_NOTE_OF_CHANGED_SYMBOLS) {
  ADD_BONDS();
  OMIT_THE_OTHERS();
  const std::vector<LISTED_REPORT> reports = REPORTS();
  const LISTED_REPORT& xyz = reports[0];
  BV_FLAGS(BV_LABELS_BY_USER) = true;
  EXPECT_EQ(DRIVER(REPORT_XYZ, "all\n\n"), ask + xyz.OF_SI + xyz.OF_O + ask);
  BV_FLAGS(BV_LABELS_CHANGED) = true;
  const std::string rule = std::string(110, '*') + "\n";
  EXPECT_EQ(DRIVER(REPORT_XYZ, "all\nsi1\n\n"),
            ask + xyz.OF_SI + xyz.OF_O + rule +
                "     *****Scattering factor symbols of atoms have been modfied by Gemmara to "
                "match bond valence tables\n" +
                rule + ask + xyz.OF_SI + ask)
      << "a single site has no note";
  for (const LISTED_REPORT& report : reports) {
    if (report.CODE == REPORT_XYZ) continue;
    EXPECT_EQ(DRIVER(report.CODE, "all\n\n", report.OPTION),
              ask + report.OF_SI + report.OF_O + ask);
  }
}
