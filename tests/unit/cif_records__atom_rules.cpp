// How an atom gets its element, charge and kind when the file says it in unusual ways.
#include <gtest/gtest.h>

#include <sstream>

#include "cifcode/cif_code_new/atom_table.h"

using namespace KVA_CIFNEW;
using KVA_CRYSTAL_STRUCTURES::ATOM_TYPE;

namespace {

LIST<ATOM_TYPE> READ(const std::string& text) {
  FILE_LINES lines;
  std::istringstream stream(text);
  for (std::string line; std::getline(stream, line);) lines.ADD(line);
  LIST<ATOM_TYPE> atoms;
  int n = 0;
  READ_CIF_ATOMARRAY(lines, 1, lines.COUNT(), atoms, n);
  EXPECT_EQ(atoms.COUNT(), n);
  return atoms;
}

const std::string types = "loop_\n_atom_type_symbol\n_atom_type_description\n";
const std::string sites = "loop_\n_atom_site_label\n_atom_site_type_symbol\n_atom_site_fract_x\n";

}  // namespace

TEST(ELEMENT_RULES, A_TYPE_SYMBOL_THAT_NAMES_NO_ELEMENT_LEAVES_IT_TO_THE_LABEL) {
  const LIST<ATOM_TYPE> atoms = READ(sites + "Si1 ? 0\nFe2 . 0\nAl3 X1 0\nX4 ? 0\n");
  ASSERT_EQ(atoms.COUNT(), 4);
  EXPECT_EQ(atoms(1).SFACSYMB, "SI");
  EXPECT_EQ(atoms(1).CHEMSYMB, "Si");
  EXPECT_EQ(atoms(1).Z, 14);
  EXPECT_EQ(atoms(2).CHEMSYMB, "Fe");
  EXPECT_EQ(atoms(3).SFACSYMB, "AL");
  EXPECT_EQ(atoms(4).SFACSYMB + atoms(4).CHEMSYMB, "");
}

TEST(ELEMENT_RULES, THE_FIRST_ATOM_TYPE_OF_THAT_SYMBOL_COUNTS) {
  const LIST<ATOM_TYPE> atoms = READ(types + "'M1' Fe3+\nM1 Mg2+\n\n" + sites + "Si1 M1 0\n");
  ASSERT_EQ(atoms.COUNT(), 1);
  EXPECT_EQ(atoms(1).SFACSYMB, "Fe+3") << "neither the label nor the second row";
  EXPECT_EQ(atoms(1).CHEMSYMB, "Fe");
  EXPECT_EQ(atoms(1).CHARGE, 3.0f);
}

TEST(ELEMENT_RULES, A_DESCRIPTION_IN_WORDS_COUNTS_BY_ITS_FIRST_FOUR_CHARACTERS) {
  const LIST<ATOM_TYPE> atoms =
      READ(types + "Si Silicon\nAl +3Al\n\n" + sites + "M Si 0\nN Al 0\n");
  ASSERT_EQ(atoms.COUNT(), 2);
  EXPECT_EQ(atoms(1).SFACSYMB, "Sili");
  EXPECT_EQ(atoms(1).CHEMSYMB, "Si");
  EXPECT_EQ(atoms(1).CHARGE, 0.0f);
  EXPECT_EQ(atoms(2).SFACSYMB, "Al") << "a description without normal form is none";
  EXPECT_EQ(atoms(2).CHARGE, 0.0f);
}

TEST(ELEMENT_RULES, WITHOUT_TYPE_SYMBOLS_AT_THE_SITES_THE_ATOM_TYPES_DO_NOT_COUNT) {
  const LIST<ATOM_TYPE> atoms =
      READ(types + "O O2-\n\nloop_\n_atom_site_label\n_atom_site_fract_x\nO 0.5\n");
  ASSERT_EQ(atoms.COUNT(), 1);
  EXPECT_EQ(atoms(1).SFACSYMB, "O");
  EXPECT_EQ(atoms(1).CHARGE, 0.0f);
}

TEST(KIND_RULES, THE_KIND_NAMED_AT_THE_SITE_MAKES_NO_TENSOR) {
  const LIST<ATOM_TYPE> atoms = READ(
      "loop_\n_atom_site_label\n_atom_site_U_iso_or_equiv\n_atom_site_adp_type\nSi1 0.01 Uani\n");
  ASSERT_EQ(atoms.COUNT(), 1);
  EXPECT_EQ(atoms(1).THTYPE, "isotr");
  EXPECT_EQ(atoms(1).UEQ, 0.01f);
}
