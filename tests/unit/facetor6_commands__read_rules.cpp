// READ: symbols as databases write them, which volume stands, and numbers of blocks in messages.
#include "phases.h"
#include "src/facetor6_readfiles/readfiles.h"
#include "structures.h"

using namespace FACETOR_READFILES;
using namespace FACETOR_CONSOLE;
using namespace STRUCTURES;

namespace {

class READ_RULES : public PHASE_TESTS::PHASES {
 protected:
  // The blocks of a text and what was said about them.
  STRUCTURE_LIST BLOCKS;
  std::string READ(const std::string& text) {
    int count = 0;
    const std::string said = SAID("", [&] { READ_CIF_TO_LIST(text, BLOCKS, count); });
    EXPECT_EQ(count, BLOCKS.COUNT());
    return said;
  }
};

const std::string cell =
    "_cell_length_a 5.0(1)\n_cell_length_b 6\n_cell_length_c 7\n_cell_angle_beta 100\n";
const std::string loop =
    "\nloop_\n_atom_site_label\n_atom_site_fract_x\n_atom_site_fract_y\n_atom_site_fract_z\n";
const std::string atoms = loop + "Si1 0.1 0.2 0.3\n";
const std::string p21c_operators =
    "_symmetry_equiv_pos_as_xyz\n'x,y,z'\n'-x,y+1/2,-z+1/2'\n'-x,-y,-z'\n'x,-y+1/2,z+1/2'\n";

std::string HM(const std::string& symbol) {
  return "_symmetry_space_group_name_H-M '" + symbol + "'\n";
}

}  // namespace

// ---- space groups ----

// Most databases leave the blanks out.
TEST_F(READ_RULES, OPERATORS_STAND_IN_SILENTLY_FOR_A_SYMBOL_THAT_IS_NOT_UNDERSTOOD) {
  for (const char* symbol : {"P21/c", "P121/c1", "Q 1 2 3", "?", "P 21/q"}) {
    EXPECT_EQ(READ("data_x\n" + cell + HM(symbol) + p21c_operators + atoms), "") << symbol;
    EXPECT_EQ(BLOCKS(1).SPG.NUMSPG, 14) << symbol;
    EXPECT_EQ(BLOCKS(1).SPG.MULTIP, 4) << symbol;
  }
}

TEST_F(READ_RULES, COMPACT_SYMBOLS_OF_FOUR_CHARACTERS_NAME_THEIR_GROUP) {
  const std::vector<std::pair<std::string, int>> groups{{"Pnma", 62}, {"R-3m", 166}, {"P213", 198},
                                                        {"I-4m", 1},  {"P6/m", 1},   {"P-1", 1}};
  for (const auto& [symbol, number] : groups) {
    const std::string said = READ("data_x\n" + HM(symbol) + atoms);
    EXPECT_EQ(BLOCKS(1).SPG.NUMSPG, number) << symbol;
    EXPECT_EQ(said.empty(), number > 1) << symbol << said;
  }
}

TEST_F(READ_RULES, SETTINGS_ARE_KNOWN_IN_SMALL_LETTERS_TOO) {
  const auto symbol = [](const std::string& text) {
    KVA_UTILITIES::FILE_LINES lines;
    lines.ADD("_space_group_name_H-M_alt '" + text + "'");
    std::string found;
    READ_CIF_HM(lines, 1, 1, found);
    return found;
  };
  EXPECT_EQ(symbol("R -3 m :h"), "R -3 m");
  EXPECT_EQ(symbol("R -3 m h"), "R -3 m");
  EXPECT_EQ(symbol("R 3 :r"), "R 3:R");
  EXPECT_EQ(symbol("F d -3 m s"), "F d -3 m");
  EXPECT_EQ(symbol("F d -3 m z1"), "F d -3 m:1");
  EXPECT_EQ(symbol("F d -3 m S1"), "F d -3 m:1");
  EXPECT_EQ(symbol("P n n n:2"), "P n n n");
  EXPECT_EQ(symbol("C 1 2/c 1"), "C 1 2/c 1") << "a 1 behind a blank is no setting";
}

TEST_F(READ_RULES, MESSAGES_NUMBER_THE_BLOCKS_IN_THREE_COLUMNS) {
  std::string text;
  for (int i = 1; i <= 9; ++i) text += "data_b\n" + HM("P 1") + atoms + "\n";
  text += "data_cell\n_cell_length_a 0\n" + HM("P 1") + loop + "\n";
  text += "data_group\n" + HM("P -1") + p21c_operators + atoms + "\n";
  text += "data_none\n" + HM("P21/c") + atoms + "\n";
  const std::string large =
      "\n*****This is a large file, please be patient while it is read in*****\n\n";
  const std::string warned = "\n*****WARNING: ";
  EXPECT_EQ(READ(text),
            large + warned + "Bad cell parameters in block # 10 in the cif\n\n" + warned +
                "Loop for atoms found in cif, but no atom info from cif in block # 10 in the "
                "cif\n\n" +
                warned +
                "HM symbol in CIF block # 11, does not agree with operators, space group set to P "
                "21/c from operators\n\n" +
                warned +
                "No symmetry detected in CIF block # 12, no operators and HM symbol not written "
                "with spaces, space group set to P1\n\n");
}

// ---- volumes ----

// 5 times 6 times 7 angstroms, a with an esd of 0.1: 42 times 0.1 = 4.2.
TEST_F(READ_RULES, THE_VOLUME_IS_THAT_OF_THE_CELL_WITH_THE_ESD_OF_THE_FILE) {
  const std::string block =
      "data_x\n" + HM("P 1") + "_cell_length_a 5.0(1)\n_cell_length_b 6\n_cell_length_c 7\n";
  EXPECT_NE(READ(block + "_cell_volume 250.0(5)\n" + atoms), "");
  EXPECT_FLOAT_EQ(BLOCKS(1).CELL.CELLVOL, 210.0f);
  EXPECT_FLOAT_EQ(BLOCKS(1).CELL.STDVOL, 0.5f) << "also after the warning";
  EXPECT_EQ(READ(block + "_cell_volume 210\n" + atoms), "");
  EXPECT_NEAR(BLOCKS(1).CELL.STDVOL, 4.2f, 1e-4f) << "without an esd that of the cell's stands";
}

TEST_F(READ_RULES, THE_VOLUME_OF_A_CELL_THAT_IS_NOT_TAKEN_IS_NOT_COMPARED) {
  EXPECT_EQ(READ("data_x\n" + HM("P 1") + "_cell_length_a -5\n_cell_volume 125(3)\n" + atoms),
            "\n*****WARNING: Bad cell parameters in block #  1 in the cif\n\n");
  EXPECT_EQ(BLOCKS(1).CELL.STDVOL, 0.0f);
}

// Half a percent of 200 is 1, three esds of 1 are 3.
TEST_F(READ_RULES, A_VOLUME_MAY_DIFFER_BY_THREE_ESDS_AND_HALF_A_PERCENT) {
  const auto told = [&](const std::string& a, const std::string& volume) {
    return !READ("data_x\n" + HM("P 1") + "_cell_length_a " + a +
                 "\n_cell_length_b 10\n_cell_length_c 10\n_cell_volume " + volume + "\n" + atoms)
                .empty();
  };
  EXPECT_FALSE(told("2.009", "200.0(5)"));
  EXPECT_TRUE(told("2.011", "200.0(5)")) << "2.2 esds, but 0.55 percent";
  EXPECT_FALSE(told("2.0029", "200.0(1)"));
  EXPECT_TRUE(told("2.0031", "200.0(1)")) << "0.16 percent, but 3.1 esds";
  EXPECT_FALSE(told("1.991", "200.0(5)"));
  EXPECT_TRUE(told("1.989", "200.0(5)"));
}

// ---- the whole command ----

TEST_F(READ_RULES, EVERY_ANGLE_CAN_NAME_THE_UNIQUE_AXIS) {
  const auto system = [](const std::string& angle) {
    INIT_PHASE_LIST();
    PUT_FILE("a.cif", "data_x\n" + HM("P 1 1 2") + angle + "\n" + atoms);
    CONSOLE_TESTS::PEND("cif a");
    SAID("\n", READ_PHASE_FROM_FILE);
    return SYSTEM_TEXT(PHASE(1).SPG.CRYSTALSYS);
  };
  EXPECT_EQ(system("_cell_angle_gamma 89"), "Mono c-uni");
  EXPECT_EQ(system("_cell_angle_beta 90.02"), "Mono b-uni");
  EXPECT_EQ(system("_cell_angle_alpha 89.98"), "Mono a-uni");
  EXPECT_EQ(system("_cell_angle_alpha 90.005"), "Monoclinic");
}

TEST_F(READ_RULES, BLOCKS_WITH_MORE_ATOMS_THAN_THERE_WAS_ROOM_FOR_STAND_BESIDE_SMALL_ONES) {
  const std::string small = "data_small\n" + HM("P 1") + cell + atoms + "\n";
  std::string large = "data_large\n" + HM("P 1") + cell + loop;
  const int many = 3 * START_CAPACITY;
  for (int i = 1; i <= many; ++i)
    large += "O" + std::to_string(i) + " 0." + std::to_string(10 + 3 * i) + " 0 0." +
             std::to_string(10 + 3 * i) + "\n";
  PUT_FILE("a.cif", small + large + "\n" + small);
  CONSOLE_TESTS::PEND("cif a");
  const std::string said = SAID("\n", READ_PHASE_FROM_FILE);
  EXPECT_NE(said.find("\nThe following  3 crystal structures were read from the file:\n"),
            std::string::npos);
  ASSERT_EQ(NPHASES, 3);
  EXPECT_EQ(PHASE(1).NATOMS, 1);
  ASSERT_EQ(PHASE(2).NATOMS, many);
  EXPECT_EQ(PHASE(2).ATOM(many).LAB, "O" + std::to_string(many));
  EXPECT_EQ(PHASE(2).ATOM_USE(many), ATOM_USED);
  EXPECT_EQ(PHASE(3).NATOMS, 1);
  EXPECT_GE(CAPACITY(PHASE(3)), many);
}
