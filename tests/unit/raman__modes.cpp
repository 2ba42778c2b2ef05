// Mode lists and their reading.
#include <gtest/gtest.h>

#include <sstream>

#include "common_code/Raman_module.h"

using namespace RAMAN;

namespace {

MODE_LIST_TYPE READ(const std::string& text) {
  KVA_UTILITIES::FILE_LINES lines;
  std::istringstream stream(text);
  for (std::string line; std::getline(stream, line);) lines.ADD(line);
  MODE_LIST_TYPE list;
  READ_MODE_LIST(lines, 1, lines.COUNT(), list);
  return list;
}

const std::string gamma_loop =
    "loop_\n_mode_name\n_mode_w0\n_mode_gamma_1\n_mode_gamma_2\n_mode_gamma_3\n_mode_gamma_4\n"
    "_mode_gamma_5\n_mode_gamma_6\n_mode_raman_active\n";
const std::string row = "m1 464.5 1.5 1.6 1.7 1.8 1.9 2.0 a\n";

}  // namespace

TEST(MODE_LISTS, ROOM_AND_INITIAL_VALUES) {
  MODE_LIST_TYPE list;
  ALLOCATE_MODE_LIST(2, list);
  EXPECT_EQ(list.NMODES, 2);
  EXPECT_EQ(list.MODE(2).USE, 1);
  EXPECT_EQ(list.MODE(2).W0, -3.40282347e+38f);
  EXPECT_EQ(list.MODE(2).G[5], MODE_UNSET);
  ALLOCATE_MODE_LIST(0, list);
  EXPECT_EQ(list.NMODES, 0);
}

TEST(MODE_LISTS, A_BLOCK_WITHOUT_MODES_HAS_NONE_AND_NO_MESSAGE) {
  EXPECT_EQ(READ("_cell_length_a 5\n").NMODES, 0);
  EXPECT_FALSE(ERR_MODE);
  EXPECT_FALSE(KVA_CIFNEW::ERR_KVACIF);
}

TEST(MODE_LISTS, A_LOOP_WITHOUT_ROWS_IS_AN_ERROR) {
  EXPECT_EQ(READ("loop_\n_mode_name\n_mode_w0\n").NMODES, 0);
  EXPECT_TRUE(ERR_MODE);
  EXPECT_EQ(ERR_MODE_MESS, "Mode loop found in cif, but no data lines read from cif");
}

TEST(MODE_LISTS, WITHOUT_A_SYSTEM_THE_TENSOR_STAYS) {
  const MODE_LIST_TYPE list = READ("_chemical_name_mineral Quartz\n" + gamma_loop + row);
  ASSERT_EQ(list.NMODES, 1);
  EXPECT_EQ(list.MODE(1).NAME, "m1");
  EXPECT_EQ(list.MODE(1).W0, 464.5f);
  EXPECT_EQ(list.MODE(1).G, (KVA_UTILITIES::VECTOR6{1.5f, 1.6f, 1.7f, 1.8f, 1.9f, 2.0f}));
  EXPECT_EQ(list.MODE(1).RAMAN_ACTIVE, "A") << "upper case";
  EXPECT_EQ(list.MODE(1).IR_ACTIVE, "");
  EXPECT_EQ(list.NAME, "Quartz");
  EXPECT_EQ(list.SYSTEM, "");
}

TEST(MODE_LISTS, THE_SYSTEM_SHAPES_THE_TENSOR) {
  const auto tensor = [](const std::string& system) {
    return READ("_space_group_crystal_system " + system + "\n" + gamma_loop + row).MODE(1).G;
  };
  using G = KVA_UTILITIES::VECTOR6;
  EXPECT_EQ(tensor("cubic"), (G{1.5f, 1.5f, 1.5f, 0, 0, 0}));
  EXPECT_EQ(tensor("tetragonal"), (G{1.5f, 1.5f, 1.7f, 0, 0, 0}));
  EXPECT_EQ(tensor("trigonal"), (G{1.5f, 1.5f, 1.7f, 0, 0, 0}));
  EXPECT_EQ(tensor("hexagonal"), (G{1.5f, 1.5f, 1.7f, 0, 0, 0}));
  EXPECT_EQ(tensor("orthorhombic"), (G{1.5f, 1.6f, 1.7f, 0, 0, 0}));
  EXPECT_EQ(tensor("monoclinic"), (G{1.5f, 1.6f, 1.7f, 0, 1.9f, 0})) << "gamma 5 is kept";
  EXPECT_EQ(tensor("triclinic"), (G{1.5f, 1.6f, 1.7f, 1.8f, 1.9f, 2.0f}));
}

TEST(MODE_LISTS, A_FREE_COMPONENT_OF_ZERO_IS_TOLD) {
  READ("_space_group_crystal_system cubic\nloop_\n_mode_name\n_mode_gamma_1\nm1 1.5\n");
  EXPECT_FALSE(WARN_MODE) << "2 and 3 follow from 1";
  READ("_space_group_crystal_system hexagonal\nloop_\n_mode_name\n_mode_gamma_1\nm1 1.5\n");
  EXPECT_TRUE(WARN_MODE);
  EXPECT_EQ(WARN_MODE_MESS, "At least one mode gamma expected to be non-zero is zero: check input");
}

TEST(MODE_LISTS, A_QUESTION_MARK_HIDES_A_ROW_ONLY_AT_THE_START_OF_ITS_LINE) {
  EXPECT_EQ(READ("loop_\n_mode_name\n_mode_symmetry\nm1 ?\n? A1\nm3 E\n").NMODES, 2);
}
