// Reports as data: columns with names, units and codes, cells with values and esds; and texts of
// the user in tables.
#include "facetor6_commands__list_blocks.h"
#include "src/facetor6_list/atom_reports.h"
#include "src/facetor6_list/bond_reports.h"

using namespace LIST_TESTS;

namespace {

using STRINGS = std::vector<std::string>;

class REPORT_DATA : public BLOCKS {
 protected:
  static STRINGS NAMES(const FACETOR_LIST::REPORT& report) {
    STRINGS names;
    for (const FACETOR_LIST::REPORT_COLUMN& column : report.COLUMNS) names.push_back(column.NAME);
    return names;
  }
};

}  // namespace

TEST_F(REPORT_DATA, BONDS_WITH_THEIR_ESDS_WHATEVER_IS_PRINTED) {
  ADD("first");
  ADD("second");
  BOND(1, {1.5f, 1.6f, 1.7f}, 0.003f);
  BOND(2, {1.51f, 0.0f, 1.71f}, 0.004f);
  PHASE(1).BONDS(1, 2, BOND_SYMCODE) = 12.645f;
  for (const bool with_esds : {false, true}) {
    const FACETOR_LIST::REPORT report =
        BOND_REPORT(1, FACETOR_LIST::BOND_FORM::LENGTHS, with_esds, {2, 1});
    EXPECT_EQ(report.QUANTITY, "bond");
    EXPECT_EQ(report.CENTRE, 1);
    EXPECT_EQ(NAMES(report), (STRINGS{"Si1-O1[1]", "Si1-O2[2]", "Si1-O3[3]", "Si1_N", "Si1_mean",
                                      "Si1_QE", "Si1_AV", "Si1_V"}));
    EXPECT_EQ(report.COLUMNS[1].CODES, STRINGS{"12_645"});
    EXPECT_EQ(report.COLUMNS[1].LIGAND, 2);
    EXPECT_EQ(report.COLUMNS[1].UNIT, "A");
    EXPECT_TRUE(report.COLUMNS[1].HAS_ESD);
    EXPECT_FALSE(report.COLUMNS[4].HAS_ESD);
    EXPECT_EQ(report.COLUMNS[7].UNIT, "A^3");
    ASSERT_EQ(report.ROWS.size(), 2u);
    EXPECT_EQ(report.ROWS[0].HEAD.BLOCK, 2);
    EXPECT_EQ(report.ROWS[1].HEAD.TITLE, "first");
    EXPECT_EQ(report.ROWS[0].CELLS[0].VALUE, 1.51f);
    EXPECT_EQ(report.ROWS[0].CELLS[0].STD, 0.004f);
    EXPECT_EQ(report.ROWS[0].CELLS[1].KIND, FACETOR_LIST::CELL_KIND::NO_VALUE);
    EXPECT_EQ(report.ROWS[1].CELLS[3].COUNT, 3);
  }
}

TEST_F(REPORT_DATA, WHAT_IS_NO_NUMBER_IS_NO_VALUE_AND_NO_ESD) {
  using FACETOR_LIST::CELL_KIND;
  constexpr float infinite = std::numeric_limits<float>::infinity();
  const float none = std::numeric_limits<float>::quiet_NaN();
  for (const float value : {infinite, -infinite, none})
    EXPECT_EQ(FACETOR_LIST::REAL_CELL(value, 0.1f).KIND, CELL_KIND::NO_VALUE);
  for (const float std : {infinite, none, -0.1f}) {
    EXPECT_EQ(FACETOR_LIST::REAL_CELL(1.5f, std).KIND, CELL_KIND::REAL);
    EXPECT_EQ(FACETOR_LIST::REAL_CELL(1.5f, std).STD, 0.0f);
  }
}

TEST_F(REPORT_DATA, ANGLES_EDGES_VALENCES_CELLS_AND_ATOMS_BY_NAME) {
  ADD("first");
  BOND(1, {1.5f, 1.6f});
  EXPECT_EQ(NAMES(ANGLE_REPORT(1, true, {1})), (STRINGS{"O1-Si1-O2[1,2]", "Si1_AV"}));
  EXPECT_EQ(NAMES(EDGE_REPORT(1, true, {1})), (STRINGS{"Si1:O1-O2[1,2]", "Si1_meanedge"}));
  EXPECT_EQ(NAMES(VALENCE_REPORT(1, true, {1})),
            (STRINGS{"Si1-O1[1]_s", "Si1-O2[2]_s", "Si1_BVS"}));
  EXPECT_EQ(NAMES(FACETOR_LIST::CELL_REPORT(true, {1})),
            (STRINGS{"a", "b", "c", "alpha", "beta", "gamma", "V"}));
  STRINGS in_sheet;
  for (const auto& column :
       FACETOR_LIST::XYZ_REPORT(1, false, FACETOR_LIST::MATCH_ATOMS({1}, {1})[0]).COLUMNS)
    if (column.IN_SHEET) in_sheet.push_back(column.NAME);
  EXPECT_EQ(in_sheet, (STRINGS{"Si1_x", "Si1_y", "Si1_z", "Si1_occ"}));
}

// ---- texts of the user ----

TEST_F(REPORT_DATA, TITLES_AND_LABELS_BREAK_NO_LINE) {
  ADD("a|b\tc\x1b[1m");
  PHASE(1).ATOM(1).LAB = "Si|1";
  BOND(1, {1.5f});
  EXPECT_EQ(SAID("", FACETOR_LIST_PHASE),
            head + "\n  1: a|b c [1m     : 298.0   0.000         1\n");
  EXPECT_EQ(SAID("", [] { FACETOR_LIST_BONDS(1); }),
            "\n\n     BONDS FROM CENTRAL ATOM Si|1    (NAME IN REFERENCE BLOCK a|b c [1m)\n"
            "     BETWEEN  0.01 AND  2.20 ANGSTROM\n" +
                head + " O1       N AVERAGE  VOLUME\n" +
                "  1: a|b c [1m     : 298.0   0.000         1  1.5000    1  1.7500   2.250\n");
}

// ---- many blocks ----

TEST_F(REPORT_DATA, BLOCK_NUMBERS_ABOVE_999_WIDEN_THEIR_COLUMN) {
  for (int block = 1; block <= 1000; ++block) ADD("first");
  const std::string said = SAID("", FACETOR_LIST_PHASE);
  EXPECT_TRUE(said.starts_with(" " + head + "\n " + start_1 + "\n")) << said.substr(0, 200);
  EXPECT_TRUE(said.ends_with("\n1000: first         : 298.0   0.000         1\n"));
}
