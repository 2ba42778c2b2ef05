// Mode lists and their reading.
#include <gtest/gtest.h>
#include <sys/resource.h>  // for setrlimit

#include <sstream>

#include "common_code/Raman_module.h"
#include "sanitized.h"

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

TEST(MODE_LISTS, A_NEW_LIST_FORGETS_THE_OLD_ONE) {
  MODE_LIST_TYPE list;
  ALLOCATE_MODE_LIST(1, list);
  list.SYSTEM = "cubic";
  list.NAME = "Quartz";
  list.MODE(1).NAME = "m1";
  ALLOCATE_MODE_LIST(1, list);
  EXPECT_EQ(list.SYSTEM, "");
  EXPECT_EQ(list.NAME, "");
  EXPECT_EQ(list.MODE(1).NAME, "");
  ALLOCATE_MODE_LIST(-1, list);
  EXPECT_EQ(list.NMODES, 0);
}

TEST(MODE_LISTS, A_MODE_GETS_ITS_INITIAL_VALUES_BACK) {
  MODE_TYPE mode{0, "m1", "A1", "I", "A", 464.5f, {1, 2, 3, 4, 5, 6}};
  INIT_MODE_TYPE(mode);
  EXPECT_EQ(mode.USE, 1);
  EXPECT_EQ(mode.NAME + mode.SYMMETRY + mode.IR_ACTIVE + mode.RAMAN_ACTIVE, "");
  EXPECT_EQ(mode.W0, MODE_UNSET);
  for (float g : mode.G) EXPECT_EQ(g, MODE_UNSET);
}

// 100 million modes need more than 10 gigabytes, of which 2 are allowed.
TEST(MODE_LISTS, WITHOUT_MEMORY_THE_LIST_IS_EMPTY_AND_AN_ERROR_TELLS) {
  if (sanitized) GTEST_SKIP() << "the sanitizer ends the program when there is no memory";
  rlimit unlimited{};
  ASSERT_EQ(::getrlimit(RLIMIT_AS, &unlimited), 0);
  rlimit limited = unlimited;
  limited.rlim_cur = 2'000'000'000;
  ASSERT_EQ(::setrlimit(RLIMIT_AS, &limited), 0);
  MODE_LIST_TYPE list;
  INIT_ERR_MODE();
  ALLOCATE_MODE_LIST(100'000'000, list);
  ::setrlimit(RLIMIT_AS, &unlimited);
  EXPECT_TRUE(ERR_MODE);
  EXPECT_EQ(ERR_MODE_MESS, "Problems allocating memory for Mode_List_Type variable");
  EXPECT_EQ(list.NMODES, 0);
}

TEST(MODE_LISTS, THE_ERROR_STATE_IS_CLEARED) {
  ERR_MODE = WARN_MODE = true;
  ERR_MODE_MESS = WARN_MODE_MESS = "something";
  INIT_ERR_MODE();
  EXPECT_FALSE(ERR_MODE || WARN_MODE);
  EXPECT_EQ(ERR_MODE_MESS + WARN_MODE_MESS, "");
  ERR_MODE = WARN_MODE = true;
  READ("_cell_length_a 5\n");
  EXPECT_FALSE(ERR_MODE || WARN_MODE) << "and by reading a list";
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

TEST(MODE_LISTS, ONLY_THE_LINES_OF_THE_BLOCK_COUNT) {
  KVA_UTILITIES::FILE_LINES lines;
  for (const char* line : {"_space_group_crystal_system cubic", "loop_", "_mode_gamma_1", "1.5",
                           "_chemical_name_mineral Quartz"})
    lines.ADD(line);
  MODE_LIST_TYPE list;
  READ_MODE_LIST(lines, 2, 4, list);
  ASSERT_EQ(list.NMODES, 1);
  EXPECT_EQ(list.SYSTEM + list.NAME, "");
  READ_MODE_LIST(lines, 4, 5, list);
  EXPECT_EQ(list.NMODES, 0);
  READ_MODE_LIST(lines, 3, 99, list);
  EXPECT_EQ(list.NMODES, 1) << "the end of the file ends the block";
  READ_MODE_LIST(lines, 3, 2, list);
  EXPECT_EQ(list.NMODES, 0);
}

TEST(MODE_LISTS, TEXTS_KEEP_THEIR_CASE_AND_FLAGS_DO_NOT) {
  const MODE_LIST_TYPE list = READ(
      "loop_\n_mode_name\n_mode_symmetry\n_mode_ir_active\n_mode_raman_active\n"
      "\"soft mode\" A1g inactive? aBcDeFgHiJ\n");
  ASSERT_EQ(list.NMODES, 1);
  EXPECT_EQ(list.MODE(1).NAME, "soft mode");
  EXPECT_EQ(list.MODE(1).SYMMETRY, "A1g");
  EXPECT_EQ(list.MODE(1).IR_ACTIVE, "INACTIVE") << "8 characters";
  EXPECT_EQ(list.MODE(1).RAMAN_ACTIVE, "ABCDEFGH");
}

TEST(MODE_LISTS, UNCERTAINTIES_ARE_PASSED_OVER) {
  const MODE_LIST_TYPE list = READ("loop_\n_mode_w0\n_mode_gamma_1\n464.5(3) 1.50(12)\n");
  ASSERT_EQ(list.NMODES, 1);
  EXPECT_EQ(list.MODE(1).W0, 464.5f);
  EXPECT_EQ(list.MODE(1).G[0], 1.5f);
}

// ---- symmetry of one tensor ----

namespace {

constexpr KVA_UTILITIES::VECTOR6 general{1.5f, 1.6f, 1.7f, 1.8f, 1.9f, 2.0f};

KVA_UTILITIES::VECTOR6 APPLIED(const std::string& system) {
  MODE_TYPE mode;
  mode.G = general;
  APPLY_SYMM_GRUN(system, mode);
  return mode.G;
}

// The components, from 1, that must not be zero in that system: a zero in each in turn.
std::vector<int> EXPECTED_NON_ZERO(const std::string& system) {
  std::vector<int> expected;
  for (int k = 1; k <= 6; ++k) {
    MODE_TYPE mode;
    mode.G = general;
    mode.G[static_cast<std::size_t>(k - 1)] = 0.0f;
    INIT_ERR_MODE();
    CHECK_SYMM_GRUN(system, mode);
    if (WARN_MODE) expected.push_back(k);
  }
  return expected;
}

}  // namespace

TEST(MODE_TENSORS, FOUR_LETTERS_IN_ANY_CASE_NAME_THE_SYSTEM) {
  using G = KVA_UTILITIES::VECTOR6;
  EXPECT_EQ(APPLIED("Mono b-uni"), (G{1.5f, 1.6f, 1.7f, 0, 1.9f, 0}));
  EXPECT_EQ(APPLIED("CUBIC"), (G{1.5f, 1.5f, 1.5f, 0, 0, 0}));
  EXPECT_EQ(APPLIED("hexa"), (G{1.5f, 1.5f, 1.7f, 0, 0, 0}));
  EXPECT_EQ(APPLIED(""), general);
  EXPECT_EQ(APPLIED("cub"), general);
  EXPECT_EQ(APPLIED("triclinic"), general);
  EXPECT_EQ(APPLIED("anything"), general);
}

TEST(MODE_TENSORS, COMPONENTS_THAT_MAY_NOT_BE_ZERO) {
  using NUMBERS = std::vector<int>;
  EXPECT_EQ(EXPECTED_NON_ZERO("triclinic"), (NUMBERS{1, 2, 3, 4, 5, 6}));
  EXPECT_EQ(EXPECTED_NON_ZERO(""), (NUMBERS{1, 2, 3, 4, 5, 6}));
  EXPECT_EQ(EXPECTED_NON_ZERO("monoclinic"), (NUMBERS{1, 2, 3, 5}));
  EXPECT_EQ(EXPECTED_NON_ZERO("orthorhombic"), (NUMBERS{1, 2, 3}));
  for (const char* system : {"tetragonal", "trigonal", "hexagonal"})
    EXPECT_EQ(EXPECTED_NON_ZERO(system), (NUMBERS{1, 3})) << system;
  EXPECT_EQ(EXPECTED_NON_ZERO("cubic"), (NUMBERS{1}));
}

TEST(MODE_TENSORS, ZERO_IS_WHAT_LIES_BELOW_THE_SMALLEST_REAL_OF_EITHER_SIGN) {
  MODE_TYPE mode;
  mode.G = {1e-39f, 0, 0, 0, 0, 0};
  INIT_ERR_MODE();
  CHECK_SYMM_GRUN("cubic", mode);
  EXPECT_TRUE(WARN_MODE);
  mode.G[0] = -0.5f;
  INIT_ERR_MODE();
  CHECK_SYMM_GRUN("cubic", mode);
  EXPECT_FALSE(WARN_MODE);
}
