// The pieces of a written CIF, byte by byte.
#include "cifcode/cif_code_new/writer.h"

#include <gtest/gtest.h>
#include <unistd.h>  // for getpid

#include <ctime>
#include <filesystem>
#include <fstream>

#include "cifcode/cif_code_new/atom_table.h"
#include "src/kva_crystal_structures/atom_search.h"
#include "structures.h"

using namespace KVA_CIFNEW;
using namespace STRUCTURES;

namespace {

constexpr int unit = 32;

// What the routine writes to the unit.
template <class ROUTINE>
std::string WRITTEN(ROUTINE routine) {
  const std::string name = std::filesystem::temp_directory_path() /
                           ("gemmara_writer_" + std::to_string(::getpid()) + ".cif");
  INIT_ERR_KVACIF();
  EXPECT_EQ(KVA_UTILITIES::OPEN_UNIT(unit, name, KVA_UTILITIES::UNIT_MODE::REPLACE), 0);
  routine();
  KVA_UTILITIES::CLOSE_UNIT(unit);
  EXPECT_FALSE(ERR_KVACIF);
  std::ifstream file(name, std::ios::binary);
  const std::string text{std::istreambuf_iterator<char>(file), {}};
  std::filesystem::remove(name);
  return text;
}

std::string VALUE(std::string_view name, float value, float esd) {
  return WRITTEN([&] { WRITE_CIF_VALUE(name, value, esd, unit); });
}

std::string TEXT(std::string_view name, std::string_view text) {
  return WRITTEN([&] { WRITE_CIF_TEXT(name, text, unit); });
}

// The name at column 1 and the value at column 40.
std::string ITEM(const std::string& name, const std::string& value) {
  return name + std::string(39 - name.size(), ' ') + value + "\n";
}

std::string ATOMS(const CRYSTAL_STRUCTURE_TYPE& phase) {
  return WRITTEN([&] { WRITE_CIF_ATOMS(phase, unit); });
}

LIST<ATOM_TYPE> READ_ATOMS(const std::string& written) {
  std::istringstream text(written);
  FILE_LINES lines;
  for (std::string line; std::getline(text, line);) lines.ADD(line);
  LIST<ATOM_TYPE> atoms;
  int natoms = 0;
  READ_CIF_ATOMARRAY(lines, 1, lines.COUNT(), atoms, natoms);
  return atoms;
}

const std::string six_names =
    " \nloop_\n    _atom_site_label\n    _atom_site_type_symbol\n    _atom_site_fract_x\n"
    "    _atom_site_fract_y\n    _atom_site_fract_z\n    _atom_site_occupancy\n";
const std::string eight_names =
    six_names + "    _atom_site_U_iso_or_equiv\n    _atom_site_adp_type\n";
const std::string aniso_names =
    " \nloop_\n    _atom_site_aniso_label \n    _atom_site_aniso_U_11  \n"
    "    _atom_site_aniso_U_22  \n    _atom_site_aniso_U_33  \n    _atom_site_aniso_U_12  \n"
    "    _atom_site_aniso_U_13  \n    _atom_site_aniso_U_23  \n";

// Atoms of a cell of 10 by 5 by 4 angstroms without symmetry, at 0.1, 0.2, 0.3.
CRYSTAL_STRUCTURE_TYPE WITH_ATOMS(const std::vector<std::string>& labels) {
  std::vector<SITE> sites;
  for (const std::string& label : labels) {
    const float shift = 0.05f * static_cast<float>(sites.size());
    sites.push_back({label, {0.1f + shift, 0.2f, 0.3f}});
  }
  return MADE({10, 5, 4}, {90, 90, 90}, "P 1", sites);
}

void SET_ANISO(ATOM_TYPE& atom, const VECTOR6& u, const VECTOR6& esds = {}) {
  atom.THTYPE = "Aniso";
  atom.UTYPE = "u_ij";
  atom.U = u;
  atom.U_STD = esds;
}

constexpr VECTOR6 tensor{0.01f, 0.02f, 0.03f, 0.001f, -0.002f, 0};
constexpr VECTOR6 tensor_esds{0.0003f, 0.0003f, 0.0006f, 0, 0.0002f, 0};

// Rows of the loops of the tensor. With right angles Ueq is the mean of the diagonal, 0.02, and its
// esd a third of the root of 3^2 + 3^2 + 6^2, which is 2.4 and rounds up. A component without an
// esd has the decimals that fit 8 columns; a 0 has one less.
const std::string tensor_site =
    " Fe1  Fe  0.100000  0.200000  0.300000  1.00000  0.0200(3)  Uani\n";
const std::string tensor_row =
    " Fe1  0.0100(3)  0.0200(3)  0.0300(6)  0.001000  -0.0020(2)  0.00000\n";

}  // namespace

// ---- symmetry codes ----

TEST(WRITER, SYMMETRY_CODES) {
  EXPECT_EQ(WRITE_SYMCODE(1.555f), "1_555");
  EXPECT_EQ(WRITE_SYMCODE(3.655f), "3_655");
  EXPECT_EQ(WRITE_SYMCODE(12.555f), "12_555");
  EXPECT_EQ(WRITE_SYMCODE(192.554f), "192_554");
  EXPECT_EQ(WRITE_SYMCODE(0.0f), "0_000");
}

// ---- numbers ----

TEST(WRITER, A_VALUE_STANDS_AT_COLUMN_40_WITH_ITS_ESD) {
  EXPECT_EQ(VALUE("_cell_length_a", 5.4321f, 0.0012f),
            "_cell_length_a                         5.4321(12)\n");
  EXPECT_EQ(VALUE("_cell_length_a  ", 5.4321f, 0.0012f), ITEM("_cell_length_a", "5.4321(12)"));
  EXPECT_EQ(VALUE("_x", -1.25f, 0.04f), ITEM("_x", "-1.25(4)"));
  EXPECT_EQ(VALUE("_x", 3500000.0f, 2000.0f), ITEM("_x", "3500000(2000)"));
}

TEST(WRITER, A_VALUE_WITHOUT_AN_ESD_STANDS_ALONE) {
  EXPECT_EQ(VALUE("_x", 90.0f, 0.0f), ITEM("_x", "90.0000"));
  EXPECT_EQ(VALUE("_x", -0.25f, 0.0f), ITEM("_x", "-0.250000"));
  EXPECT_EQ(VALUE("_x", 3500000.0f, 0.0f), ITEM("_x", "3500000"));
  EXPECT_EQ(VALUE("_x", 10123000.0f, 0.0f), ITEM("_x", "10123000"));
  EXPECT_EQ(VALUE("_x", -10123000.0f, 0.0f), ITEM("_x", "-10123000"));
  EXPECT_EQ(VALUE("_x", -1234567.0f, 0.0f), ITEM("_x", "-1234567"));
  EXPECT_EQ(VALUE("_x", 1.0e20f, 0.0f), ITEM("_x", "1.00E+20"));
  EXPECT_EQ(VALUE("_x", 0.0f, 0.0f), ITEM("_x", "0.00000"));
}

TEST(WRITER, AN_ESD_BELOW_0_DOES_NOT_HIDE_THE_VALUE) {
  EXPECT_EQ(VALUE("_x", 90.0f, -1.0f), ITEM("_x", "90.0000"));
  EXPECT_EQ(CIF_NUMBER(1.5f, -0.1f), "1.50000");
  EXPECT_EQ(CIF_NUMBER(12345678.0f, -1.0f), "12345678");
}

TEST(WRITER, BEHIND_A_LONG_NAME_STANDS_ONE_BLANK) {
  const std::string name_38(38, 'n');
  EXPECT_EQ(VALUE(name_38, 90.0f, 0.0f), name_38 + " 90.0000\n");
  EXPECT_EQ(VALUE(name_38 + "n", 90.0f, 0.0f), name_38 + "n 90.0000\n");
  EXPECT_EQ(VALUE(name_38 + "nnn", 90.0f, 0.0f), name_38 + "nnn 90.0000\n");
  EXPECT_EQ(TEXT(name_38 + "nnn", ""), name_38 + "nnn ?\n");
}

// ---- texts ----

TEST(WRITER, A_BLANK_TEXT_IS_UNKNOWN) {
  EXPECT_EQ(TEXT("_chemical_name_mineral", ""), ITEM("_chemical_name_mineral", "?"));
  EXPECT_EQ(TEXT("_chemical_name_mineral", "   "), ITEM("_chemical_name_mineral", "?"));
}

TEST(WRITER, A_WORD_STANDS_WITHOUT_QUOTES) {
  EXPECT_EQ(TEXT("_x", "ab"), ITEM("_x", "ab"));
  EXPECT_EQ(TEXT("_x", "   ab   "), ITEM("_x", "ab"));
  EXPECT_EQ(TEXT("_x", "a'b;_c"), ITEM("_x", "a'b;_c"));
}

TEST(WRITER, A_TEXT_WITH_A_BLANK_STANDS_BETWEEN_APOSTROPHES) {
  EXPECT_EQ(TEXT("_x", "a b"), ITEM("_x", "'a b'"));
  EXPECT_EQ(TEXT("_x", "  a  b "), ITEM("_x", "'a  b'"));
  EXPECT_EQ(TEXT("_x", "the author's own"), ITEM("_x", "'the author's own'"));
}

TEST(WRITER, BARS_MAKE_LINES_BETWEEN_SEMICOLONS) {
  EXPECT_EQ(TEXT("_x", "a|b"), "_x\n;\na\nb\n;\n");
  EXPECT_EQ(TEXT("_x", " first line|  second line|"), "_x\n;\nfirst line\n  second line\n\n;\n");
  EXPECT_EQ(TEXT("_x", "|a"), "_x\n;\n\na\n;\n");
}

TEST(WRITER, A_LINE_THAT_WOULD_END_THE_TEXT_IS_MARKED) {
  EXPECT_EQ(TEXT("_x", "a|;b|  ;c"), "_x\n;\na\n>;b\n>  ;c\n;\n");
}

TEST(WRITER, WHAT_QUOTES_CANNOT_HOLD_STANDS_BETWEEN_SEMICOLONS) {
  EXPECT_EQ(TEXT("_x", "the authors' own"), "_x\n;\nthe authors' own\n;\n");
  for (const std::string text : {"_name", "#1", "$x", "'a", "\"a", "[a]", ";a", "data_1", "LOOP_"})
    EXPECT_EQ(TEXT("_x", text), "_x\n;\n" + (text == ";a" ? ">;a" : text) + "\n;\n");
}

TEST(WRITER, CONTROL_CHARACTERS_BECOME_BLANKS) {
  EXPECT_EQ(TEXT("_x", "a\tb\nc"), ITEM("_x", "'a b c'"));
}

// ---- words of a loop ----

TEST(WRITER, A_WORD_THAT_WOULD_BE_MISREAD_IS_QUOTED) {
  EXPECT_EQ(CIF_WORD(" Si1 "), "Si1");
  EXPECT_EQ(CIF_WORD(""), "");
  EXPECT_EQ(CIF_WORD("A\""), "A\"");
  EXPECT_EQ(CIF_WORD("Si 1"), "\"Si 1\"");
  EXPECT_EQ(CIF_WORD("?"), "?") << "what is not known";
  EXPECT_EQ(CIF_WORD("data_1"), "\"data_1\"");
  EXPECT_EQ(CIF_WORD("_1"), "\"_1\"");
  EXPECT_EQ(CIF_WORD("A\" 1"), "'A\" 1'");
}

TEST(WRITER, ROWS_STAND_IN_COLUMNS_AND_A_BLANK_CELL_IS_A_POINT) {
  EXPECT_EQ(WRITTEN([] {
              WRITE_CIF_LOOP_HEAD({"_a", "_b "}, unit);
              WRITE_CIF_ROWS({{"Si1", "1.5(2)"}, {"", "10"}, {"O", " "}}, unit);
            }),
            " \nloop_\n    _a\n    _b \n Si1   1.5(2)\n .    10\n O     .\n");
}

TEST(WRITER, A_QUESTION_MARK_IS_QUOTED_ONLY_WHERE_IT_WOULD_HIDE_ITS_ROW) {
  EXPECT_EQ(WRITTEN([] {
              WRITE_CIF_ROWS({{"?", "?", "1"}, {"?2", "?2", "2"}}, unit);
            }),
            " \"?\"   ?   1\n \"?2\"  ?2  2\n");
}

// ---- the cell, the audit ----

TEST(WRITER, THE_CELL_IN_SEVEN_LINES) {
  XTAL::CRYSTAL_CELL cell;
  XTAL::SET_CELL_RECORD({5.0f, 6.0f, 7.5f}, {90, 101.5f, 90}, cell, " ", {0.001f, 0.002f, 0},
                        {0, 0.03f, 0});
  cell.CELLVOL = 220.48f;
  cell.STDVOL = 0.12f;
  EXPECT_EQ(WRITTEN([&] { WRITE_CIF_CELL(cell, unit); }),
            ITEM("_cell_length_a", "5.0000(10)") + ITEM("_cell_length_b", "6.000(2)") +
                ITEM("_cell_length_c", "7.50000") + ITEM("_cell_angle_alpha", "90.0000") +
                ITEM("_cell_angle_beta", "101.50(3)") + ITEM("_cell_angle_gamma", "90.0000") +
                ITEM("_cell_volume", "220.48(12)"));
}

TEST(WRITER, THE_AUDIT_NAMES_THE_METHOD_AND_TODAY) {
  std::array<char, 11> today{};
  const std::time_t now = std::time(nullptr);
  ASSERT_EQ(std::strftime(today.data(), today.size(), "%Y-%m-%d", std::localtime(&now)), 10u);
  EXPECT_EQ(WRITTEN([] { WRITE_CIF_AUDIT("made by hand  ", unit); }),
            " \n_audit_creation_method   'made by hand'\n_audit_creation_date    " +
                std::string(today.data()) + "\n");
}

// ---- atoms ----

TEST(WRITER, ATOMS_WITH_ISOTROPIC_DISPLACEMENTS_OR_NONE) {
  CRYSTAL_STRUCTURE_TYPE phase = MADE({10, 10, 10}, {90, 90, 90}, "P 1",
                                      {{"Si1", {0.4697f, 0, 0.66667f}, {0.0002f, 0, 0}},
                                       {"O10", {0.25f, 0.125f, 0.9999f}},
                                       {"Na2", {0.1f, 0.2f, 0.3f}, {0.0012f, 0.0012f, 0.0012f}}});
  phase.ATOM(1).SFACSYMB = "Si+4";
  phase.ATOM(1).THTYPE = "Isotr";
  phase.ATOM(1).BISO = 0.7895683521f;       // U 0.01
  phase.ATOM(1).BISO_STD = 0.02368705056f;  // U 0.0003
  phase.ATOM(2).SFACSYMB = "";
  phase.ATOM(2).OCC = 0.5f;
  phase.ATOM(2).OCC_STD = 0.02f;
  phase.ATOM(3).BISO = 1.5791367042f;  // U 0.02
  EXPECT_EQ(ATOMS(phase),
            " \nloop_\n    _atom_type_symbol\n    _atom_type_description\n"
            " Si+4  Si+4\n Na    Na\n" +
                eight_names +
                " Si1  Si+4  0.4697(2)   0.00000     0.666670    1.00000  0.0100(3)  Uiso\n"
                " O10  .     0.250000    0.125000    0.999900    0.50(2)  .          .\n"
                " Na2  Na    0.1000(12)  0.2000(12)  0.3000(12)  1.00000  0.020000   Uiso\n");
}

TEST(WRITER, WITHOUT_ANY_DISPLACEMENT_THE_LOOP_HAS_SIX_COLUMNS) {
  EXPECT_EQ(ATOMS(WITH_ATOMS({"Si1"})),
            six_names + " Si1  Si  0.100000  0.200000  0.300000  1.00000\n");
}

TEST(WRITER, A_KIND_THAT_IS_NEITHER_HAS_NO_DISPLACEMENT) {
  CRYSTAL_STRUCTURE_TYPE phase = WITH_ATOMS({"Si1", "O1"});
  phase.ATOM(1).THTYPE = "other";
  phase.ATOM(1).BISO = 1.0f;
  phase.ATOM(2).BISO = 1.5791367042f;
  EXPECT_EQ(ATOMS(phase), eight_names +
                              " Si1  Si  0.100000  0.200000  0.300000  1.00000  .         .\n"
                              " O1   O   0.150000  0.200000  0.300000  1.00000  0.020000  Uiso\n");
}

TEST(WRITER, ANISOTROPIC_DISPLACEMENTS_FROM_U) {
  CRYSTAL_STRUCTURE_TYPE phase = WITH_ATOMS({"Fe1"});
  SET_ANISO(phase.ATOM(1), tensor, tensor_esds);
  EXPECT_EQ(ATOMS(phase), eight_names + tensor_site + aniso_names + tensor_row);
}

// Beta = 2 pi^2 a*_i a*_j U; the reciprocal lengths are 1/10, 1/5 and 1/4.
TEST(WRITER, ANISOTROPIC_DISPLACEMENTS_FROM_BETA) {
  constexpr float two_pi_sq = 19.7392088f;
  constexpr VECTOR6 products{0.01f, 0.04f, 0.0625f, 0.02f, 0.025f, 0.05f};
  CRYSTAL_STRUCTURE_TYPE phase = WITH_ATOMS({"Fe1"});
  SET_ANISO(phase.ATOM(1), tensor, tensor_esds);
  for (std::size_t k = 0; k < 6; ++k) {
    phase.ATOM(1).U[k] *= two_pi_sq * products[k];
    phase.ATOM(1).U_STD[k] *= two_pi_sq * products[k];
  }
  phase.ATOM(1).UTYPE = "beta";
  EXPECT_EQ(ATOMS(phase), eight_names + tensor_site + aniso_names + tensor_row);
}

TEST(WRITER, TENSORS_WITHOUT_ESDS_HAVE_NO_BRACKETS) {
  CRYSTAL_STRUCTURE_TYPE phase = WITH_ATOMS({"Fe1"});
  SET_ANISO(phase.ATOM(1), tensor);
  EXPECT_EQ(ATOMS(phase),
            eight_names + " Fe1  Fe  0.100000  0.200000  0.300000  1.00000  0.020000  Uani\n" +
                aniso_names + " Fe1  0.010000  0.020000  0.030000  0.001000  -.002000  0.00000\n");
}

TEST(WRITER, ONLY_ANISOTROPIC_ATOMS_HAVE_A_TENSOR) {
  CRYSTAL_STRUCTURE_TYPE phase = WITH_ATOMS({"O1", "Fe1", "O2"});
  phase.ATOM(1).BISO = 1.5791367042f;
  SET_ANISO(phase.ATOM(2), tensor, tensor_esds);
  phase.ATOM(2).THTYPE = "ANISO";
  EXPECT_EQ(ATOMS(phase), eight_names +
                              " O1   O   0.100000  0.200000  0.300000  1.00000  0.020000   Uiso\n"
                              " Fe1  Fe  0.150000  0.200000  0.300000  1.00000  0.0200(3)  Uani\n"
                              " O2   O   0.200000  0.200000  0.300000  1.00000  .          .\n" +
                              aniso_names + tensor_row);
}

TEST(WRITER, ATOMS_OUT_OF_USE_ARE_IN_NO_LOOP) {
  CRYSTAL_STRUCTURE_TYPE phase = WITH_ATOMS({"Fe1", "Fe2", "Fe3"});
  for (int i = 1; i <= 3; ++i) SET_ANISO(phase.ATOM(i), tensor, tensor_esds);
  phase.ATOM_USE(2) = ATOM_OMITTED;
  phase.ATOM_USE(3) = -2;  // shares the site of the omitted one
  EXPECT_EQ(ATOMS(phase), eight_names + tensor_site + aniso_names + tensor_row);
}

TEST(WRITER, ATOMS_THAT_SHARE_A_SITE_ARE_ALL_WRITTEN) {
  CRYSTAL_STRUCTURE_TYPE phase = WITH_ATOMS({"Fe1", "Mg1", "Mn1"});
  for (int i = 1; i <= 3; ++i) phase.ATOM(i).X = {0.25f, 0.5f, 0.75f};
  phase.ATOM(1).OCC = 0.5f;
  phase.ATOM(2).OCC = 0.3f;
  phase.ATOM(2).OCC_STD = 0.02f;
  phase.ATOM(3).OCC = 0.2f;
  phase.ATOM_USE(2) = -1;
  phase.ATOM_USE(3) = -1;
  EXPECT_EQ(ATOMS(phase), six_names +
                              " Fe1  Fe  0.250000  0.500000  0.750000  0.500000\n"
                              " Mg1  Mg  0.250000  0.500000  0.750000  0.30(2)\n"
                              " Mn1  Mn  0.250000  0.500000  0.750000  0.200000\n");
}

TEST(WRITER, CHARGES_ARE_READ_BACK) {
  CRYSTAL_STRUCTURE_TYPE phase = WITH_ATOMS({"Fe1", "O1", "O2", "X1"});
  const std::array<std::string, 4> symbols{"Fe+3", "O-2", "O-2", ""};
  for (int i = 1; i <= 4; ++i) phase.ATOM(i).SFACSYMB = symbols[static_cast<std::size_t>(i - 1)];
  const std::string text = ATOMS(phase);
  EXPECT_TRUE(text.starts_with(
      " \nloop_\n    _atom_type_symbol\n    _atom_type_description\n Fe+3  Fe+3\n O-2   O-2\n"))
      << text;
  const LIST<ATOM_TYPE> atoms = READ_ATOMS(text);
  ASSERT_EQ(atoms.COUNT(), 4);
  const std::array<float, 4> charges{3.0f, -2.0f, -2.0f, 0.0f};
  for (int i = 1; i <= 3; ++i) {
    EXPECT_EQ(atoms(i).SFACSYMB, phase.ATOM(i).SFACSYMB);
    EXPECT_EQ(atoms(i).CHARGE, charges[static_cast<std::size_t>(i - 1)]);
  }
  phase.ATOM(1).SFACSYMB = "Fe";
  phase.ATOM(2).SFACSYMB = phase.ATOM(3).SFACSYMB = "O";
  EXPECT_EQ(ATOMS(phase).find("_atom_type_"), std::string::npos) << "no charge, no loop";
}

TEST(WRITER, STARS_ARE_NO_SYMBOL) {
  CRYSTAL_STRUCTURE_TYPE phase = WITH_ATOMS({"Fe1", "X1"});
  phase.ATOM(1).SFACSYMB = "Fe+3";
  phase.ATOM(2).SFACSYMB = "**";
  const std::string text = ATOMS(phase);
  EXPECT_EQ(text.find('*'), std::string::npos) << text;
  EXPECT_NE(text.find("\n X1   .     "), std::string::npos) << text;
}

// Ueq = (U11 (a a*)^2 + U33 (c c*)^2 + 2 U13 a a* c c* cos(beta) + U22) / 3; with beta = 120
// degrees a a* = c c* = 1 / sin(beta), whose square is 4/3: (4/3 (0.03 + 0.015) + 0.02 - 4/3 0.006)
// / 3 = 0.024. The plain mean is 0.02167. Esds: 4/3 0.0003, 0.0002, 4/3 0.0003 and 4/3 0.0006 make
// 4/3 0.0003 (1 + 1/4 + 1 + 4)^(1/2) / 3 = 0.00033.
TEST(WRITER, UEQ_IN_AN_OBLIQUE_CELL) {
  CRYSTAL_STRUCTURE_TYPE phase =
      MADE({10, 5, 4}, {90, 120, 90}, "P 1", {{"Fe1", {0.1f, 0.2f, 0.3f}}});
  SET_ANISO(phase.ATOM(1), {0.03f, 0.02f, 0.015f, 0, 0.006f, 0},
            {0.0003f, 0.0002f, 0.0003f, 0, 0.0006f, 0});
  const std::string text = ATOMS(phase);
  EXPECT_NE(text.find("  0.0240(4)  Uani\n"), std::string::npos) << text;
}

// On the three-fold axis U11 = U22 = 2 U12 is one parameter u: Ueq = (2 u + U33) / 3, so that the
// esd is (4 0.0006^2 + 0.0005^2)^(1/2) / 3 = 0.00043. Free components would give 0.0003.
TEST(WRITER, THE_SITE_TIES_THE_COMPONENTS_OF_UEQ) {
  CRYSTAL_STRUCTURE_TYPE phase = MADE({6, 6, 9}, {90, 90, 120}, "P 3", {{"Fe1", {0, 0, 0.3f}}});
  SET_ALLATOM_MULTIP(phase);
  SET_ANISO(phase.ATOM(1), {0.012f, 0.012f, 0.009f, 0.006f, 0, 0},
            {0.0006f, 0.0006f, 0.0005f, 0.0003f, 0, 0});
  const std::string text = ATOMS(phase);
  EXPECT_NE(text.find("  0.0110(5)  Uani\n"), std::string::npos) << text;
}

TEST(WRITER, THE_LOOP_OF_TENSORS_STAYS_WHEN_ALL_ITS_ATOMS_ARE_OMITTED) {
  CRYSTAL_STRUCTURE_TYPE phase = WITH_ATOMS({"Fe1", "O1"});
  SET_ANISO(phase.ATOM(1), tensor, tensor_esds);
  phase.ATOM_USE(1) = ATOM_OMITTED;
  EXPECT_EQ(ATOMS(phase),
            eight_names + " O1  O  0.150000  0.200000  0.300000  1.00000  .  .\n" + aniso_names);
}

TEST(WRITER, A_LABEL_WITH_A_BLANK_IS_QUOTED_IN_BOTH_LOOPS) {
  CRYSTAL_STRUCTURE_TYPE phase = WITH_ATOMS({"Fe 1"});
  SET_ANISO(phase.ATOM(1), tensor, tensor_esds);
  EXPECT_EQ(ATOMS(phase),
            eight_names +
                " \"Fe 1\"  Fe  0.100000  0.200000  0.300000  1.00000  0.0200(3)  Uani\n" +
                aniso_names +
                " \"Fe 1\"  0.0100(3)  0.0200(3)  0.0300(6)  0.001000  -0.0020(2)  0.00000\n");
}

TEST(WRITER, WRITTEN_ATOMS_ARE_READ_BACK) {
  CRYSTAL_STRUCTURE_TYPE phase = WITH_ATOMS({"Fe 1", "?2", "O1"});
  SET_ANISO(phase.ATOM(1), tensor, tensor_esds);
  phase.ATOM(2).SFACSYMB = "";
  phase.ATOM(3).BISO = 1.5791367042f;
  phase.ATOM(3).X = {0.25f, 0.125f, 0.75f};
  phase.ATOM(3).X_STD = {0.0002f, 0.0003f, 0.0011f};
  const LIST<ATOM_TYPE> atoms = READ_ATOMS(ATOMS(phase));
  ASSERT_EQ(atoms.COUNT(), 3);
  EXPECT_EQ(atoms(1).LAB, "Fe 1");
  EXPECT_EQ(atoms(1).THTYPE, "Aniso");
  for (std::size_t k = 0; k < 6; ++k) {
    EXPECT_FLOAT_EQ(atoms(1).U[k], tensor[k]);
    EXPECT_FLOAT_EQ(atoms(1).U_STD[k], tensor_esds[k]);
  }
  EXPECT_EQ(atoms(2).LAB, "?2");
  EXPECT_EQ(atoms(3).LAB, "O1");
  EXPECT_EQ(atoms(3).X, (VECTOR3{0.25f, 0.125f, 0.75f}));
  for (std::size_t k = 0; k < 3; ++k) EXPECT_FLOAT_EQ(atoms(3).X_STD[k], phase.ATOM(3).X_STD[k]);
  EXPECT_FLOAT_EQ(atoms(3).UEQ, 0.02f);
  EXPECT_FALSE(ERR_KVACIF);
}

// ---- failure ----

TEST(WRITER, A_REFUSED_LINE_IS_AN_ERROR) {
  const std::string message = "Problem in writing to cif file, check file contents carefully";
  ASSERT_EQ(KVA_UTILITIES::OPEN_UNIT(unit, "/dev/full", KVA_UTILITIES::UNIT_MODE::APPEND), 0);
  INIT_ERR_KVACIF();
  WRITE_CIF_VALUE("_x", 1.0f, 0.0f, unit);
  EXPECT_TRUE(ERR_KVACIF);
  EXPECT_EQ(ERR_KVACIF_MESS, message);
  INIT_ERR_KVACIF();
  WRITE_CIF_TEXT("_x", "a|b", unit);
  EXPECT_TRUE(ERR_KVACIF);
  EXPECT_EQ(ERR_KVACIF_MESS, message);
  INIT_ERR_KVACIF();
  WRITE_CIF_ATOMS(WITH_ATOMS({"Si1"}), unit);
  EXPECT_TRUE(ERR_KVACIF);
  KVA_UTILITIES::CLOSE_UNIT(unit);
  INIT_ERR_KVACIF();
  WRITE_CIF_TEXT("_x", "a", unit);
  EXPECT_TRUE(ERR_KVACIF) << "no such unit";
}
