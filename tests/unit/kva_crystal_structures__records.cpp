// The phase record: initial values, room, cleaning, copies.
#include <gtest/gtest.h>

#include "structures.h"

using namespace STRUCTURES;

TEST(RECORDS, INITIAL_VALUES) {
  CRYSTAL_STRUCTURE_TYPE phase;
  INIT_CRYSTAL_STRUCTURE_TYPE(phase);
  EXPECT_EQ(phase.CELL.CELL, (VECTOR3{10, 10, 10}));
  EXPECT_EQ(phase.CELL.ANG, (VECTOR3{90, 90, 90}));
  EXPECT_EQ(phase.SPG.MULTIP, 1);
  EXPECT_EQ(phase.NATOMS, 0);
  EXPECT_EQ(CAPACITY(phase), 8);
  EXPECT_EQ(phase.PT.COUNT(), 5);
  EXPECT_EQ(phase.METADATA.COUNT(), 10);
  EXPECT_EQ(phase.MODE_LIST.NMODES, 0);
  EXPECT_EQ(phase.ATOM(1).WYCK, ".");
  EXPECT_EQ(phase.ATOM(1).UTYPE, "none");
}

TEST(RECORDS, LISTS_NEED_AT_LEAST_ONE) {
  STRUCTURE_LIST list;
  ALLOCATE_CRYSTAL_STRUCTURE_LIST(list, 0);
  EXPECT_TRUE(ERR_KVASTRUCTURES);
  EXPECT_EQ(ERR_KVASTRUCTURES_MESS, "Allocate_crystal_structurelist called with n < 1");
  ALLOCATE_CRYSTAL_STRUCTURE_LIST(list, 3);
  EXPECT_FALSE(ERR_KVASTRUCTURES);
  EXPECT_EQ(list.COUNT(), 3);
  EXPECT_EQ(CAPACITY(list(3)), 8);
  ALLOCATE_CRYSTAL_STRUCTURE_LIST(list, -1);
  EXPECT_TRUE(ERR_KVASTRUCTURES);
  EXPECT_EQ(list.COUNT(), 3) << "the list stays";
}

TEST(CLEANING, COORDINATES_COME_INTO_THE_CELL) {
  const auto phase = MADE({5, 5, 5}, {90, 90, 90}, "P 1", {{"Si1", {-0.25f, 1.0f, 2.5f}}});
  EXPECT_EQ(phase.ATOM(1).X, (VECTOR3{0.75f, 0.0f, 0.5f}));
}

TEST(CLEANING, LABELS_ON_ONE_SITE_ARE_DUPLICATES_OF_THE_FIRST) {
  // 0.001 of 5 angstroms is 0.005 angstroms: one site. 0.003 is 0.015: another.
  const auto phase = MADE({5, 5, 5}, {90, 90, 90}, "P 1",
                          {{"Mg1", {0.1f, 0, 0}},
                           {"Fe1", {0.101f, 0, 0}},
                           {"Mn1", {0.1f, 0, 0}},
                           {"Ca1", {0.1f, 0, 0}},
                           {"O1", {0.103f, 0, 0}}});
  EXPECT_EQ(phase.ATOM_USE.ITEMS, (std::vector<int>{1, -1, -1, -1, 1}));
  EXPECT_EQ(phase.ATOM_DUP(1, 1), 2);
  EXPECT_EQ(phase.ATOM_DUP(1, 2), 3);
}

TEST(GROWTH, RESULTS_GO_AND_ATOMS_STAY) {
  auto phase = MADE({5, 5, 5}, {90, 90, 90}, "P 1", {{"Si1", {0, 0, 0}}, {"O1", {0.3f, 0, 0}}});
  phase.NBONDS(1) = 1;
  phase.BONDS(1, 1, BOND_LENGTH) = 1.5f;
  phase.POLYHEDRON(1, POLY_VOLUME) = 2.0f;
  phase.ATOM_USE(2) = ATOM_OMITTED;
  EXPAND_NATOMS(phase, 12);
  EXPECT_EQ(CAPACITY(phase), 12);
  EXPECT_EQ(phase.ATOM(2).LAB, "O1");
  EXPECT_EQ(phase.NBONDS(1), 0);
  EXPECT_EQ(phase.BONDS(1, 1, BOND_LENGTH), 0.0f);
  EXPECT_EQ(phase.POLYHEDRON(1, POLY_VOLUME), 0.0f);
  EXPECT_EQ(phase.ATOM_USE(2), ATOM_USED) << "all atoms are in use again";
  EXPAND_NATOMS(phase, 1);
  EXPECT_EQ(CAPACITY(phase), 2) << "never fewer than the atoms it holds";
  EXPAND_NATOMS(phase);
  EXPECT_EQ(CAPACITY(phase), 2);
}

TEST(TABLES, ROWS_ARE_MADE_BY_WRITING_AND_READ_AS_0_BEFORE) {
  BOND_TABLE bonds;
  bonds.ASSIGN(2);
  const BOND_TABLE& read = bonds;
  EXPECT_EQ(read(1, 20, BOND_LENGTH), 0.0f);
  bonds(1, 3, BOND_VECTOR_Y) = 0.5f;
  EXPECT_EQ(bonds.CENTRES(1).size(), 3u);
  EXPECT_EQ(read.VECTOR(1, 3), (VECTOR3{0, 0.5f, 0}));
  bonds.CLEAR_ROW(1, 3);
  EXPECT_EQ(read(1, 3, BOND_VECTOR_Y), 0.0f);
  ANGLE_TABLE angles;
  angles.ASSIGN(1);
  for (int k = 2; k <= 20; ++k)
    for (int j = 1; j < k; ++j) angles(1, j, k, ANGLE) = static_cast<float>(100 * j + k);
  const ANGLE_TABLE& read_angles = angles;
  EXPECT_EQ(read_angles(1, 3, 17, ANGLE), 317.0f);
  EXPECT_EQ(read_angles(1, 17, 3, ANGLE), 0.0f) << "only pairs j < k are stored";
  EXPECT_EQ(angles.CENTRES(1).size(), 190u);
}

TEST(TABLES, A_RECORD_TAKES_MEMORY_FOR_ITS_OWN_ATOMS_ALONE) {
  CRYSTAL_STRUCTURE_TYPE phase;
  INIT_CRYSTAL_STRUCTURE_TYPE(phase);
  EXPAND_NATOMS(phase, 3);
  EXPECT_EQ(phase.ATOM.ITEMS.capacity(), 3u);
  EXPECT_EQ(phase.POLYHEDRON.ROWS.capacity(), 3u);
  EXPECT_EQ(phase.NBONDS.ITEMS.capacity(), 3u);
}

TEST(TABLES, TEXT_PAIRS_ARE_MADE_BY_WRITING_AND_BLANK_BEFORE) {
  TEXT_PAIRS pairs;
  const TEXT_PAIRS& read = pairs;
  EXPECT_EQ(read(10, 2), "");
  EXPECT_EQ(pairs.ITEMS.COUNT(), 0);
  pairs(3, 1) = "item";
  EXPECT_EQ(read(3, 1), "item");
  EXPECT_EQ(read(2, 1), "");
  EXPECT_EQ(read(4, 1), "");
  EXPECT_EQ(pairs.ITEMS.COUNT(), 3);
}

TEST(COPIES, SHARE_THE_OPERATORS_OF_THEIR_GROUP) {
  const auto phase = MADE({5, 5, 5}, {90, 90, 90}, "P m -3 m", {{"Si1", {0, 0, 0}}});
  auto copy = COPY_CRYSTAL_STRUCTURE(phase);
  EXPECT_EQ(&copy.SPG.SYMOP(48), &phase.SPG.SYMOP(48));
  EXPECT_EQ(&copy.SPG.SYMOPSYMB(48), &phase.SPG.SYMOPSYMB(48));
  XTAL::SET_SPACEGROUP("P 1", copy.SPG);
  EXPECT_EQ(copy.SPG.SYMOP.COUNT(), 1);
  EXPECT_EQ(phase.SPG.SYMOP.COUNT(), 48);
  EXPECT_EQ(XTAL::SPACE_GROUP{}.SYMOP.COUNT(), 0);
}

TEST(COPIES, USED_BLOCKS_IN_SORT_ORDER) {
  STRUCTURE_LIST source;
  ALLOCATE_CRYSTAL_STRUCTURE_LIST(source, 3);
  for (int i = 1; i <= 3; ++i) source(i).BLOCK_TITLE = "b" + std::to_string(i);
  STRUCTURE_LIST copies;
  int count = 0;
  COPY_STRUCTURES_USED(source, {{1, 0, 1}}, {{3, 2, 1, 0, 9}}, copies, count);
  ASSERT_EQ(count, 2);
  EXPECT_EQ(copies(1).BLOCK_TITLE, "b3");
  EXPECT_EQ(copies(2).BLOCK_TITLE, "b1");
}
