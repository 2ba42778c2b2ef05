// Vibrational modes: read with a block, carried with it, written with it.
#include <limits>

#include "facetor6_commands__list_blocks.h"
#include "src/facetor6_readfiles/readfiles.h"
#include "src/facetor6_writefiles/writefiles.h"

using namespace LIST_TESTS;
using CONSOLE_TESTS::PEND;
using RAMAN::MODE_UNSET;
namespace fs = std::filesystem;

namespace {

constexpr int unit = 32;

const std::string cell =
    "_cell_length_a 5\n_cell_length_b 5\n_cell_length_c 5\n_cell_angle_alpha 90\n"
    "_cell_angle_beta 90\n_cell_angle_gamma 90\n_symmetry_space_group_name_H-M 'P 1'\n";
const std::string sites =
    "loop_\n_atom_site_label\n_atom_site_type_symbol\n_atom_site_fract_x\n_atom_site_fract_y\n"
    "_atom_site_fract_z\nSi1 Si 0 0 0\n";
const std::string mode_names =
    "loop_\n_mode_name\n_mode_symmetry\n_mode_w0\n_mode_ir_active\n_mode_raman_active\n"
    "_mode_gamma_1\n_mode_gamma_2\n_mode_gamma_3\n_mode_gamma_4\n_mode_gamma_5\n_mode_gamma_6\n";
const std::string two_modes =
    "m1 A1 464.5(3) i a 1.5 1.6 1.7 1.8 1.9 2.0\n"
    "\"two words\" E -12.25 I A -.25 0 3 4 5 6\n";

class MODES : public BLOCKS {
 protected:
  // Reads a file of this text; what was said.
  static std::string READ_TEXT(const std::string& text) {
    PUT_FILE("in.cif", text);
    PEND("cif in.cif");
    return SAID("y\n", FACETOR_READFILES::READ_PHASE_FROM_FILE);
  }

  // What the loop of these modes looks like in a file.
  static std::string LOOP(const RAMAN::MODE_LIST_TYPE& modes) {
    KVA_UTILITIES::OPEN_UNIT(unit, "loop.cif", KVA_UTILITIES::UNIT_MODE::REPLACE);
    FACETOR_WRITEFILES::WRITE_CIF_MODES(modes, unit);
    KVA_UTILITIES::CLOSE_UNIT(unit);
    return TEXT_OF("loop.cif");
  }

  static void WRITE(const std::string& name) {
    PEND("cif " + name);
    SAID("y\n", FACETOR_WRITEFILES::WRITE_PHASE_TO_FILE);
  }

  static void EXPECT_TWO_MODES(const RAMAN::MODE_LIST_TYPE& modes) {
    ASSERT_EQ(modes.NMODES, 2);
    EXPECT_EQ(modes.MODE(1).USE, 1);
    EXPECT_EQ(modes.MODE(1).NAME, "m1");
    EXPECT_EQ(modes.MODE(1).SYMMETRY, "A1");
    EXPECT_EQ(modes.MODE(1).W0, 464.5f);
    EXPECT_EQ(modes.MODE(1).IR_ACTIVE, "I");
    EXPECT_EQ(modes.MODE(1).RAMAN_ACTIVE, "A");
    EXPECT_EQ(modes.MODE(1).G, (VECTOR6{1.5f, 1.6f, 1.7f, 1.8f, 1.9f, 2.0f}));
    EXPECT_EQ(modes.MODE(2).NAME, "two words");
    EXPECT_EQ(modes.MODE(2).W0, -12.25f);
    EXPECT_EQ(modes.MODE(2).G, (VECTOR6{-0.25f, 0, 3, 4, 5, 6}));
  }
};

}  // namespace

// ---- reading ----

TEST_F(MODES, ARE_READ_WITH_THEIR_BLOCK) {
  READ_TEXT("data_a\n" + cell + sites + "\ndata_b\n" + cell + sites + mode_names + two_modes +
            "\ndata_c\n" + cell + sites + mode_names + "other E 1 I A 1 1 1 1 1 1\n");
  ASSERT_EQ(NPHASES, 3);
  EXPECT_EQ(PHASE(1).MODE_LIST.NMODES, 0);
  EXPECT_TWO_MODES(PHASE(2).MODE_LIST);
  ASSERT_EQ(PHASE(3).MODE_LIST.NMODES, 1);
  EXPECT_EQ(PHASE(3).MODE_LIST.MODE(1).NAME, "other");
}

TEST_F(MODES, TAKE_THE_SYMMETRY_OF_THE_CRYSTAL_SYSTEM_NAMED_IN_THE_BLOCK) {
  READ_TEXT("data_a\n_space_group_crystal_system cubic\n" + cell + sites + mode_names + two_modes +
            "\ndata_b\n_symmetry_cell_setting Monoclinic\n" + cell + sites + mode_names +
            two_modes + "\ndata_c\n_space_group_crystal_system 'cubic'\n" + cell + sites +
            mode_names + two_modes);
  ASSERT_EQ(NPHASES, 3);
  EXPECT_EQ(PHASE(1).MODE_LIST.SYSTEM, "cubic");
  EXPECT_EQ(PHASE(1).MODE_LIST.MODE(1).G, (VECTOR6{1.5f, 1.5f, 1.5f, 0, 0, 0}));
  EXPECT_EQ(PHASE(2).MODE_LIST.SYSTEM, "monoclinic");
  EXPECT_EQ(PHASE(2).MODE_LIST.MODE(1).G, (VECTOR6{1.5f, 1.6f, 1.7f, 0, 1.9f, 0}));
  EXPECT_EQ(PHASE(3).MODE_LIST.SYSTEM, "") << "a system in quotes is none";
  EXPECT_TWO_MODES(PHASE(3).MODE_LIST);
}

TEST_F(MODES, MESSAGES_ABOUT_THEM_ARE_NOT_SHOWN) {
  const std::string without = READ_TEXT("data_a\n" + cell + sites);
  INIT_PHASE_LIST();
  EXPECT_EQ(READ_TEXT("data_a\n" + cell + sites + mode_names), without);
  EXPECT_TRUE(RAMAN::ERR_MODE);
  EXPECT_EQ(PHASE(1).MODE_LIST.NMODES, 0);
  INIT_PHASE_LIST();
  EXPECT_EQ(READ_TEXT("data_a\n_space_group_crystal_system triclinic\n" + cell + sites +
                      mode_names + "m1 A1 1 I A 0 0 0 0 0 0\n"),
            without);
  EXPECT_TRUE(RAMAN::WARN_MODE);
  EXPECT_EQ(PHASE(1).MODE_LIST.NMODES, 1);
}

TEST_F(MODES, A_COLUMN_THAT_IS_NOT_THERE_IS_0) {
  READ_TEXT("data_a\n" + cell + sites + "loop_\n_mode_name\n_mode_gamma_2\nm1 1.5\n");
  ASSERT_EQ(PHASE(1).MODE_LIST.NMODES, 1);
  EXPECT_EQ(PHASE(1).MODE_LIST.MODE(1).W0, 0.0f);
  EXPECT_EQ(PHASE(1).MODE_LIST.MODE(1).G, (VECTOR6{0, 1.5f, 0, 0, 0, 0}));
  EXPECT_EQ(PHASE(1).MODE_LIST.MODE(1).SYMMETRY, "");
}

// ---- being carried ----

TEST_F(MODES, STAY_WHEN_THE_LIST_AND_ITS_RECORDS_GROW) {
  READ_TEXT("data_a\n" + cell + sites + mode_names + two_modes);
  std::string many;
  for (int block = 1; block <= 2 * START_PHASES; ++block) {
    many += "data_b" + std::to_string(block) + "\n" + cell + sites;
    for (int atom = 2; atom <= 2 * START_CAPACITY; ++atom)
      many += "O" + std::to_string(atom) + " O 0." + std::to_string(100 + atom) + " 0.5 0.5\n";
    many += "\n";
  }
  READ_TEXT(many);
  ASSERT_EQ(NPHASES, 1 + 2 * START_PHASES);
  EXPECT_GE(CAPACITY(PHASE(1)), 2 * START_CAPACITY);
  EXPECT_TWO_MODES(PHASE(1).MODE_LIST);
  EXPECT_EQ(PHASE(2).MODE_LIST.NMODES, 0);
}

TEST_F(MODES, A_COPY_HAS_ITS_OWN) {
  READ_TEXT("data_a\n" + cell + sites + mode_names + two_modes);
  CRYSTAL_STRUCTURE_TYPE copy = COPY_CRYSTAL_STRUCTURE(PHASE(1));
  EXPECT_TWO_MODES(copy.MODE_LIST);
  copy.MODE_LIST.MODE(1).NAME = "changed";
  RAMAN::ALLOCATE_MODE_LIST(0, copy.MODE_LIST);
  EXPECT_TWO_MODES(PHASE(1).MODE_LIST);
  STRUCTURE_LIST used;
  int count = 0;
  COPY_STRUCTURES_USED(PHASE, IUSE, ISORT, used, count);
  ASSERT_EQ(count, 1);
  EXPECT_TWO_MODES(used(1).MODE_LIST);
}

TEST_F(MODES, AN_EMPTY_RECORD_HAS_NONE) {
  CRYSTAL_STRUCTURE_TYPE phase;
  INIT_CRYSTAL_STRUCTURE_TYPE(phase);
  EXPECT_EQ(phase.MODE_LIST.NMODES, 0);
  EXPECT_EQ(LOOP(phase.MODE_LIST), "");
}

// ---- writing ----

// Numbers fill 10 columns: 464.5 has 3 digits, which leaves 5 decimals; 1.5 has 7, a number that is
// not positive one less, and one between -1 and 0 stands without its leading zero.
TEST_F(MODES, ARE_WRITTEN_IN_COLUMNS) {
  RAMAN::MODE_LIST_TYPE modes;
  RAMAN::ALLOCATE_MODE_LIST(2, modes);
  modes.MODE(1) = {1, "m1", "A1g", "", "A", 464.5f, {1.5f, -0.25f, 0, 1250.75f, 0.5f, 1e12f}};
  modes.MODE(2).NAME = "two words";
  modes.MODE(2).IR_ACTIVE = "A";
  modes.MODE(2).RAMAN_ACTIVE = "I";
  EXPECT_EQ(LOOP(modes),
            " \nloop_\n     _mode_name        \n     _mode_symmetry    \n     _mode_w0          \n"
            "     _mode_ir_active   \n     _mode_raman_active\n     _mode_gamma_1\n"
            "     _mode_gamma_2\n     _mode_gamma_3\n     _mode_gamma_4\n     _mode_gamma_5\n"
            "     _mode_gamma_6\n"
            " m1           A1g  464.50000  .  A  1.5000000  -.25000000  0.0000000  1250.7500"
            "  0.50000000  1.0000E+12\n"
            " \"two words\"  .      .        A  I  .          .           .             ."
            "       .           .\n");
}

TEST_F(MODES, A_COLUMN_WITHOUT_ANY_VALUE_IS_LEFT_OUT) {
  RAMAN::MODE_LIST_TYPE modes;
  RAMAN::ALLOCATE_MODE_LIST(2, modes);
  modes.MODE(1).W0 = -std::numeric_limits<float>::infinity();
  modes.MODE(2).SYMMETRY = "E";
  modes.MODE(2).G[4] = 0.0f;
  EXPECT_EQ(LOOP(modes),
            " \nloop_\n     _mode_symmetry    \n     _mode_gamma_5\n"
            " .  .\n"
            " E  0.0000000\n")
      << "0 is a value; the unset value and minus infinity are none";
}

TEST_F(MODES, WITHOUT_ANY_VALUE_THERE_IS_NO_LOOP) {
  RAMAN::MODE_LIST_TYPE modes;
  RAMAN::ALLOCATE_MODE_LIST(3, modes);
  modes.MODE(2).W0 = std::numeric_limits<float>::quiet_NaN();
  EXPECT_EQ(LOOP(modes), "");
}

TEST_F(MODES, STAND_AT_THE_END_OF_THEIR_BLOCK) {
  READ_TEXT("data_a\n" + cell + sites + mode_names + two_modes + "\ndata_b\n" + cell + sites);
  WRITE("out.cif");
  const std::string text = TEXT_OF("out.cif");
  const std::size_t loop = text.find(LOOP(PHASE(1).MODE_LIST) + " \n \n \ndata_b\n");
  ASSERT_NE(loop, std::string::npos);
  EXPECT_LT(text.find("_atom_site_label"), loop);
  EXPECT_EQ(text.find("_mode_", text.find("data_b")), std::string::npos);
}

TEST_F(MODES, COME_BACK_AS_THEY_WERE) {
  READ_TEXT("data_a\n" + cell + sites + mode_names + two_modes);
  WRITE("first.cif");
  INIT_PHASE_LIST();
  PEND("cif first.cif");
  SAID("y\n", FACETOR_READFILES::READ_PHASE_FROM_FILE);
  EXPECT_TWO_MODES(PHASE(1).MODE_LIST);
  WRITE("second.cif");
  EXPECT_EQ(TEXT_OF("second.cif"), TEXT_OF("first.cif"));
}

TEST_F(MODES, A_NAME_THAT_WOULD_HIDE_ITS_ROW_COMES_BACK) {
  READ_TEXT("data_a\n" + cell + sites + "loop_\n_mode_w0\n_mode_name\n464.5 ?\n");
  ASSERT_EQ(PHASE(1).MODE_LIST.NMODES, 1);
  WRITE("out.cif");
  INIT_PHASE_LIST();
  PEND("cif out.cif");
  SAID("y\n", FACETOR_READFILES::READ_PHASE_FROM_FILE);
  ASSERT_EQ(PHASE(1).MODE_LIST.NMODES, 1);
  EXPECT_EQ(PHASE(1).MODE_LIST.MODE(1).NAME, "?");
  EXPECT_EQ(PHASE(1).MODE_LIST.MODE(1).W0, 464.5f);
}

// Only the first word of a line hides it: behind it "?" says that the symmetry is not known.
TEST_F(MODES, AN_UNKNOWN_SYMMETRY_STAYS_UNKNOWN) {
  READ_TEXT("data_a\n" + cell + sites +
            "loop_\n_mode_name\n_mode_symmetry\n_mode_w0\nm1 ? 464.5\n");
  WRITE("out.cif");
  EXPECT_NE(TEXT_OF("out.cif").find("\n m1  ?  464.50000  "), std::string::npos)
      << TEXT_OF("out.cif");
  INIT_PHASE_LIST();
  PEND("cif out.cif");
  SAID("y\n", FACETOR_READFILES::READ_PHASE_FROM_FILE);
  ASSERT_EQ(PHASE(1).MODE_LIST.NMODES, 1);
  EXPECT_EQ(PHASE(1).MODE_LIST.MODE(1).SYMMETRY, "?");
}
