// Atoms out of the loops of a CIF block.
#include "cifcode/cif_code_new/atom_table.h"

#include <gtest/gtest.h>

#include <sstream>

#include "cifcode/cif_code_new/writer.h"

using namespace KVA_CIFNEW;
using KVA_CRYSTAL_STRUCTURES::ATOM_TYPE;

namespace {

struct ATOMS {
  LIST<ATOM_TYPE> ATOM;
  int N = 0;
};

ATOMS READ(const std::string& text) {
  FILE_LINES lines;
  std::istringstream stream(text);
  for (std::string line; std::getline(stream, line);) lines.ADD(line);
  ATOMS atoms;
  READ_CIF_ATOMARRAY(lines, 1, lines.COUNT(), atoms.ATOM, atoms.N);
  return atoms;
}

const std::string types = "loop_\n_atom_type_symbol\n_atom_type_description\n";
const std::string sites =
    "loop_\n_atom_site_label\n_atom_site_type_symbol\n_atom_site_fract_x\n_atom_site_fract_y\n"
    "_atom_site_fract_z\n";
const std::string labels_only =
    "loop_\n_atom_site_label\n_atom_site_fract_x\n_atom_site_fract_y\n_atom_site_fract_z\n";
const std::string aniso =
    "loop_\n_atom_site_aniso_label\n_atom_site_aniso_U_11\n_atom_site_aniso_U_22\n"
    "_atom_site_aniso_U_33\n_atom_site_aniso_U_12\n_atom_site_aniso_U_13\n_atom_site_aniso_U_23\n";

}  // namespace

TEST(SITES, COORDINATES_OCCUPANCY_AND_ISOTROPIC_DISPLACEMENT) {
  const ATOMS atoms = READ(
      "loop_\n_atom_site_label\n_atom_site_fract_x\n_atom_site_fract_y\n_atom_site_fract_z\n"
      "_atom_site_occupancy\n_atom_site_U_iso_or_equiv\n_atom_site_B_iso_or_equiv\n"
      "Si1 0.1234(5) -0.25 1.5 0.75(2) 0.012(3) 1.1(1)\n");
  ASSERT_EQ(atoms.N, 1);
  const ATOM_TYPE& atom = atoms.ATOM(1);
  EXPECT_EQ(atom.LAB, "Si1");
  EXPECT_EQ(atom.X, (KVA_UTILITIES::VECTOR3{0.1234f, -0.25f, 1.5f})) << "as the file has them";
  EXPECT_FLOAT_EQ(atom.X_STD[0], 0.0005f);
  EXPECT_EQ(atom.OCC, 0.75f);
  EXPECT_FLOAT_EQ(atom.OCC_STD, 0.02f);
  EXPECT_EQ(atom.UEQ, 0.012f);
  EXPECT_EQ(atom.BISO, 1.1f);
  EXPECT_FLOAT_EQ(atom.BISO_STD, 0.1f);
  EXPECT_EQ(atom.THTYPE, "isotr");
  EXPECT_EQ(atom.Z, 14);
}

TEST(SITES, WITHOUT_OCCUPANCY_IT_IS_0) {
  EXPECT_EQ(READ(labels_only + "Si1 0 0 0\n").ATOM(1).OCC, 0.0f);
  const ATOMS unknown = READ(labels_only + "Si1 ? 0.5 0.5\n");
  EXPECT_EQ(unknown.ATOM(1).X[0], 0.0f);
  EXPECT_EQ(unknown.ATOM(1).X_STD[0], 0.0f);
}

TEST(SITES, NONE_AT_ALL_IS_AN_ERROR) {
  EXPECT_EQ(READ("_cell_length_a 5\n").N, 0);
  EXPECT_EQ(ERR_KVACIF_MESS, "cifdata_key of _atom_site_ not found by read_loop_cif");
  EXPECT_EQ(READ(labels_only).N, 0);
  EXPECT_TRUE(ERR_KVACIF);
  EXPECT_EQ(ERR_KVACIF_MESS, "Loop for atoms found in cif, but no atom info from cif");
  EXPECT_EQ(READ("").N, 0);
}

// ---- elements ----

TEST(ELEMENTS, BY_THE_TABLE_OF_ATOM_TYPES) {
  const ATOMS atoms =
      READ(types + "Fe3+ Fe3+\nO2- O2-\n\n" + sites + "Fe1 Fe3+ 0 0 0\nO1 o2- 0 0 0\n");
  EXPECT_EQ(atoms.ATOM(1).SFACSYMB, "Fe+3");
  EXPECT_EQ(atoms.ATOM(1).CHARGE, 3.0f);
  EXPECT_EQ(atoms.ATOM(1).CHEMSYMB, "Fe");
  EXPECT_EQ(atoms.ATOM(1).Z, 26);
  EXPECT_EQ(atoms.ATOM(2).SFACSYMB, "O-2") << "type symbols are compared in upper case";
  EXPECT_EQ(atoms.ATOM(2).CHARGE, -2.0f);
}

TEST(ELEMENTS, A_LETTER_BEHIND_THE_SIGN_IS_NO_CHARGE) {
  for (const char* description : {"Fe+x", "Fe-/", "Fe+:"}) {
    const ATOM_TYPE atom =
        READ(types + "Fe " + description + "\n\n" + sites + "Fe1 Fe 0 0 0\n").ATOM(1);
    EXPECT_EQ(atom.SFACSYMB, description);
    EXPECT_EQ(atom.CHARGE, 0.0f) << description;
  }
}

TEST(ELEMENTS, BY_THE_FIRST_EQUAL_ROW_OF_THE_TABLE) {
  const ATOM_TYPE atom = READ(types + "M Fe2+\nM Mg2+\n\n" + sites + "M1 M 0 0 0\n").ATOM(1);
  EXPECT_EQ(atom.SFACSYMB, "Fe+2");
  EXPECT_EQ(atom.CHEMSYMB, "Fe");
}

TEST(ELEMENTS, SCATTERING_NAMES_HAVE_FOUR_CHARACTERS) {
  const ATOM_TYPE atom = READ(types + "Na+ Nat+\n\n" + sites + "Na1 Na+ 0 0 0\n").ATOM(1);
  EXPECT_EQ(atom.SFACSYMB, "Nat+") << "Nat+1 is cut";
  EXPECT_EQ(atom.CHARGE, 1.0f) << "but its charge is known";
}

TEST(ELEMENTS, BY_THE_TYPE_SYMBOL_OF_THE_SITE) {
  const ATOM_TYPE atom = READ(sites + "Ow O2- 0 0 0\n").ATOM(1);
  EXPECT_EQ(atom.CHEMSYMB, "O");
  EXPECT_EQ(atom.SFACSYMB, "O");
  EXPECT_EQ(atom.CHARGE, 0.0f);
  EXPECT_EQ(atom.Z, 8);
  const ATOM_TYPE no_description =
      READ("loop_\n_atom_type_symbol\n_atom_type_number_in_cell\nFe 4\n\n" + sites +
           "M1 Fe 0 0 0\n")
          .ATOM(1);
  EXPECT_EQ(no_description.CHEMSYMB, "Fe") << "a row without description does not hide the symbol";
}

TEST(ELEMENTS, STARS_DESCRIBE_NOTHING) {
  const ATOM_TYPE atom = READ(types + "Fe **\n\n" + sites + "M1 Fe 0 0 0\n").ATOM(1);
  EXPECT_EQ(atom.CHEMSYMB, "Fe");
  EXPECT_EQ(atom.SFACSYMB, "Fe") << "by the type symbol, as without a description";
  const ATOM_TYPE unknown = READ(types + "** **\n\n" + sites + "Qq1 ** 0 0 0\n").ATOM(1);
  EXPECT_EQ(unknown.CHEMSYMB, "");
  EXPECT_EQ(unknown.SFACSYMB, "");
}

TEST(ELEMENTS, BY_THE_LABEL) {
  const ATOM_TYPE atom = READ(labels_only + "Si1 0 0 0\n").ATOM(1);
  EXPECT_EQ(atom.CHEMSYMB, "Si");
  EXPECT_EQ(atom.SFACSYMB, "SI");
  const ATOM_TYPE unknown = READ(labels_only + "X9 0 0 0\n").ATOM(1);
  EXPECT_EQ(unknown.CHEMSYMB, "");
  EXPECT_EQ(unknown.SFACSYMB, "");
  EXPECT_EQ(unknown.Z, 0);
  const ATOM_TYPE odd_type = READ(sites + "Si1 Xx 0 0 0\n").ATOM(1);
  EXPECT_EQ(odd_type.CHEMSYMB, "Si")
      << "a type symbol that names no element leaves it to the label";
  EXPECT_EQ(odd_type.SFACSYMB, "SI");
}

// ---- anisotropic displacements ----

TEST(ANISO, ROWS_GO_TO_THE_FIRST_ATOM_WITH_THE_LABEL) {
  const ATOMS atoms = READ(labels_only + "Si1 0 0 0\nSi1 0.5 0 0\nO1 0 0.5 0\n" + aniso +
                           "Si1 0.01(1) 0.02 0.03 0.001 0.002 0.003\nXX 1 1 1 1 1 1\n");
  ASSERT_EQ(atoms.N, 3);
  EXPECT_EQ(atoms.ATOM(1).THTYPE, "Aniso");
  EXPECT_EQ(atoms.ATOM(1).UTYPE, "u_ij");
  EXPECT_EQ(atoms.ATOM(1).U, (KVA_UTILITIES::VECTOR6{0.01f, 0.02f, 0.03f, 0.001f, 0.002f, 0.003f}));
  EXPECT_FLOAT_EQ(atoms.ATOM(1).U_STD[0], 0.01f);
  EXPECT_EQ(atoms.ATOM(2).THTYPE, "isotr") << "the second of the name stays isotropic";
  EXPECT_EQ(atoms.ATOM(3).THTYPE, "isotr");
}

TEST(ANISO, LABELS_ARE_COMPARED_WITH_CASE_AND_WITHOUT_THEIR_QUOTES) {
  const ATOMS atoms =
      READ(labels_only + "'Si1' 0 0 0\nO1 0 0 0\n" + aniso + "Si1 1 1 1 0 0 0\no1 1 1 1 0 0 0\n");
  EXPECT_EQ(atoms.ATOM(1).LAB, "Si1");
  EXPECT_EQ(atoms.ATOM(1).THTYPE, "Aniso");
  EXPECT_EQ(atoms.ATOM(2).THTYPE, "isotr");
}

TEST(ANISO, MORE_ROWS_THAN_ATOMS_ARE_REFUSED) {
  const ATOMS atoms =
      READ(labels_only + "Si1 0 0 0\n" + aniso + "Si1 1 1 1 0 0 0\nO1 1 1 1 0 0 0\n");
  EXPECT_EQ(atoms.N, 1);
  EXPECT_EQ(atoms.ATOM(1).THTYPE, "isotr");
  EXPECT_EQ(ERR_KVACIF_MESS, "More aniso displacement factors than atoms");
}

// ---- scattering texts ----

TEST(SCAT_FORMAT, ELEMENT_SIGN_NUMBER) {
  EXPECT_EQ(SCAT_FORMAT("Fe+2"), "Fe+2");
  EXPECT_EQ(SCAT_FORMAT("Fe2+"), "Fe+2");
  EXPECT_EQ(SCAT_FORMAT("Na+"), "Na+1");
  EXPECT_EQ(SCAT_FORMAT("O2-"), "O-2");
  EXPECT_EQ(SCAT_FORMAT("  Cl-"), "Cl-1");
  EXPECT_EQ(SCAT_FORMAT("Silicon"), "Sili") << "only four characters count";
  EXPECT_EQ(SCAT_FORMAT("Si"), "Si");
  EXPECT_EQ(SCAT_FORMAT("+2Fe"), "") << "the sign anywhere else";
  EXPECT_EQ(SCAT_FORMAT("+"), "");
  EXPECT_EQ(SCAT_FORMAT("Fe-+"), "Fe-+") << "the minus sign counts: one before the end";
  EXPECT_EQ(SCAT_FORMAT("F+2-"), "F-+2") << "letters, sign, and all between them";
  EXPECT_EQ(SCAT_FORMAT(""), "");
}

// ---- codes ----

TEST(SYMCODES, THE_POINT_BECOMES_A_BAR) {
  EXPECT_EQ(WRITE_SYMCODE(1.555f), "1_555");
  EXPECT_EQ(WRITE_SYMCODE(12.555f), "12_555");
  EXPECT_EQ(WRITE_SYMCODE(192.555f), "192_555");
  EXPECT_EQ(WRITE_SYMCODE(2.019f), "2_019");
  EXPECT_EQ(WRITE_SYMCODE(0.0f), "0_000");
}
