// Space groups, symmetry operators and site names, line by line.
#include "facetor6_commands__list_blocks.h"

using namespace LIST_TESTS;

namespace {

class SITES : public BLOCKS {
 protected:
  static std::string NAMES(std::string_view option = "", int block = 0) {
    return SAID("", [option, block] { FACETOR_LIST_ATOMS(option, block); });
  }
};

}  // namespace

// ---- symmetry ----

TEST_F(SITES, INVERSION_CENTRES_OF_THE_LISTED_BLOCKS) {
  ADD("first");
  ADD("second");
  ADD("third");
  PHASE(1).SPG.CENTRED = 0;
  PHASE(1).SPG.CENTRE_COORD = {0.125f, 0.25f, -0.125f};
  PHASE(1).SPG.SPG_SYMB = "F d -3 m";
  PHASE(3).SPG.SPG_SYMB = "a symbol of more than twenty";
  IUSE(2) = 0;
  RUN.LIST_ALL_BLOCKS = false;
  IREFERENCE = 3;
  // Number 1-7, symbol 10-29, three blanks, coordinates 33-40, 41-48, 49-56.
  EXPECT_EQ(SAID("", FACETOR_LIST_SYMM),
            "  space group                 coords of inversion centre\n"
            "      1  F d -3 m                0.12500 0.25000-0.12500\n"
            "      3  a symbol of more tha   acentric\n"
            "\n\n     The symmetry operators of the reference block (#3) are:\n"
            "       1:x,y,z\n");
}

TEST_F(SITES, SPACE_GROUPS_IN_DISPLAY_ORDER_AND_OPERATORS_OF_THE_REFERENCE) {
  ADD("first", MADE({5, 6, 7}, {90, 90, 90}, "P -1", {{"Si1", {0.1f, 0.2f, 0.3f}}}));
  ADD("second");
  ISORT(1) = 2;
  ISORT(2) = 1;
  const std::string rows =
      "  space group                 coords of inversion centre\n"
      "      2  P 1                    acentric\n"
      "      1  P -1                    0.00000 0.00000 0.00000\n";
  EXPECT_EQ(SAID("", FACETOR_LIST_SYMM),
            rows +
                "\n\n     The symmetry operators of the reference block (#1) are:\n"
                "       1:x,y,z\n"
                "       2:-x,-y,-z\n");
  IREFERENCE = 2;
  EXPECT_EQ(SAID("", FACETOR_LIST_SYMM),
            rows +
                "\n\n     The symmetry operators of the reference block (#2) are:\n"
                "       1:x,y,z\n");
}

TEST_F(SITES, OPERATORS_ARE_NUMBERED_IN_THREE_COLUMNS) {
  ADD("first", MADE({5, 5, 9}, {90, 90, 120}, "P 6/m m m", {{"Si1", {0.1f, 0.25f, 0.4f}}}));
  const std::string said = SAID("", LIST_SYMOPS);
  // The order of this group is 24; the inverted copies of its 12 rotations come last.
  EXPECT_NE(said.find("\n       1:x,y,z\n"), std::string::npos) << said;
  EXPECT_NE(said.find("\n      13:-x,-y,-z\n"), std::string::npos) << said;
  EXPECT_NE(said.find("\n      24:"), std::string::npos) << said;
  EXPECT_EQ(said.find(" 25:"), std::string::npos) << said;
}

// ---- site names ----

TEST_F(SITES, TEN_NAMES_A_LINE_EACH_IN_EIGHT_COLUMNS) {
  std::vector<SITE> sites;
  for (int k = 1; k <= 12; ++k)
    sites.push_back({"O" + std::to_string(k), {0.08f * static_cast<float>(k), 0, 0}});
  ADD("first", MADE({20, 20, 20}, {90, 90, 90}, "P 1", sites));
  const std::string names = "                                  Site name: ";
  const std::string factors = "                          Scattering factor: ";
  EXPECT_EQ(names.size(), 45u);
  EXPECT_EQ(factors.size(), 45u);
  EXPECT_EQ(
      NAMES("scat"),
      "  Site names and scattering factors in each block, in input order\n" + start_1 + "\n" +
          names + "O1      O2      O3      O4      O5      O6      O7      O8      O9      O10\n" +
          factors + "O       O       O       O       O       O       O       O       O       O\n" +
          names + "O11     O12\n" + factors + "O       O\n");
}

TEST_F(SITES, NAMES_OF_THE_LISTED_BLOCKS_OR_OF_ONE) {
  ADD("first");
  ADD("second");
  ADD("third");
  ISORT(1) = 3;
  ISORT(3) = 1;
  IUSE(2) = 0;
  RUN.LIST_ALL_BLOCKS = false;
  const std::string title = "  Site names in each block, in input order\n";
  const std::string names =
      "\n                                  Site name: Si1     O1      O2      O3\n";
  EXPECT_EQ(NAMES(), title + start_3 + names + start_1 + names);
  EXPECT_EQ(NAMES("", 1), title + start_1 + names);
  EXPECT_EQ(NAMES("", 2), title) << "the block is hidden";
  EXPECT_EQ(NAMES("", 99), title) << "there is no such block";
}

TEST_F(SITES, FIELDS_ARE_AS_WIDE_AS_THE_LONGEST_NAME_NEEDS) {
  ADD("first");
  const std::string title = "  Site names and scattering factors in each block, in input order\n" +
                            start_1 + "\n                                  Site name: ";
  const std::string factors = "                          Scattering factor: ";
  PHASE(1).ATOM(2).LAB = "\u00c4\u00d6x\u00fd1a2";  // seven characters, ten bytes
  EXPECT_EQ(NAMES("SCAT"), title + "Si1     \u00c4\u00d6x\u00fd1a2 O2      O3\n" + factors +
                               "Si      O       O       O\n")
      << "a blank is left in 8 columns";
  PHASE(1).ATOM(2).LAB = "O1234567";
  EXPECT_EQ(NAMES("SCAT"),
            title + "Si1      O1234567 O2       O3\n" + factors + "Si       O        O        O\n");
  PHASE(1).ATOM_USE(2) = ATOM_OMITTED;
  // The mark counts: 8 characters, the mark and a blank.
  EXPECT_EQ(NAMES("SCAT"),
            title + "Si1       O1234567* O2        O3\n" + factors +
                "Si        O         O         O\n"
                "     *****Atoms marked with * are currently marked as omitted from calculations\n"
                "     *****Atoms marked with ! are duplicates of other atoms\n");
}

TEST_F(SITES, MARKS_ARE_EXPLAINED_ONCE_AND_ONLY_FOR_WHAT_IS_LISTED) {
  ADD("first");
  ADD("second");
  const std::string meaning =
      "     *****Atoms marked with * are currently marked as omitted from calculations\n"
      "     *****Atoms marked with ! are duplicates of other atoms\n";
  PHASE(1).ATOM_USE(2) = ATOM_OMITTED;
  PHASE(2).ATOM_USE(4) = -3;
  const std::string names_1 =
      "\n                                  Site name: Si1     O1*     O2      O3\n";
  const std::string names_2 =
      "\n                                  Site name: Si1     O1      O2      O3!\n";
  EXPECT_EQ(NAMES(), "  Site names in each block, in input order\n" + start_1 + names_1 + start_2 +
                         names_2 + meaning);
  PHASE(1).ATOM_USE(2) = ATOM_USED;
  IUSE(2) = 0;
  RUN.LIST_ALL_BLOCKS = false;
  EXPECT_TRUE(NAMES().ends_with("O3\n"));
}
